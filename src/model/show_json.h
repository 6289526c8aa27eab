#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "model/show.h"

namespace velgrove {

/// A show as JSON, with the field names of its records, for people and tools to look at, compare and edit.
/// Nothing is lost: floats are written in the shortest form that reads back to the same value, those that
/// aren't finite as texts ("NaN", "-Infinity", "NaN(0x7fc00001)" for a NaN of other bits). Recounts all
/// counts.
[[nodiscard]] std::string showToJson(clsProject& project);

/// The show of such a text. Counts are made anew from the arrays, whether they are there or not. Fault::File
/// with the path of what is wrong ("colViews[0].colFixtures[2].Channel: 70000 is outside -32768 to 32767")
/// or, for what is no JSON, line and column.
[[nodiscard]] std::shared_ptr<clsProject> showFromJson(std::string_view json);

}  // namespace velgrove
