#pragma once

#include <string>

#include "model/show.h"

namespace velgrove {

/// A show as a stage manager reads it: the cue sheets by number, the patch by channel, and the submasters
/// that are in use.
[[nodiscard]] std::string showSheet(clsProject& project);

}  // namespace velgrove
