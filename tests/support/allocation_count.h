#pragma once

#include <cstddef>

namespace velgrove {

/// How often this program has asked for memory so far. Two readings with the same result have nothing between
/// them that allocates.
[[nodiscard]] std::size_t allocationCount();

}  // namespace velgrove
