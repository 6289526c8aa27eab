#pragma once

#include <string>

#include "robot/chance.h"

namespace velgrove::robot {

/// What lands in a field for a number: mostly one of the range, else whatever fingers do.
[[nodiscard]] std::string numberText(Chance& chance, int lowest, int highest);
/// What lands in a field for words.
[[nodiscard]] std::string wordText(Chance& chance);
/// A text as a log shows it: in quotes, and a long one by its length.
[[nodiscard]] std::string shown(const std::string& text);

}  // namespace velgrove::robot
