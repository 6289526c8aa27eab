#pragma once

#include <string_view>

/// How people read file names.
namespace velgrove {

/// Whether a name stands before another: without regard to case, and numbers by their value, so that "Act 2"
/// stands before "Act 10". No two different names are equal.
[[nodiscard]] bool standsBefore(std::string_view name, std::string_view other);

/// Whether a name matches one of the patterns with "*" and "?", ";" between them; without regard to case. No
/// pattern at all and "*.*" match every name.
[[nodiscard]] bool matchesPattern(std::string_view name, std::string_view patterns);

}  // namespace velgrove
