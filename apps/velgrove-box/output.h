#pragma once

#include <chrono>
#include <string_view>

namespace velgrove {

/// Writes a text to standard output or standard error. When whoever reads it doesn't make room in the time
/// given, the text is dropped: frames don't wait for a reader.
void say(std::string_view text, std::chrono::milliseconds patience = std::chrono::milliseconds(0));
void complain(std::string_view text);

}  // namespace velgrove
