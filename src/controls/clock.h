#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace velgrove {

using Nanoseconds = std::chrono::nanoseconds;
using Milliseconds = std::chrono::milliseconds;

/// The one source of time: steady, counted from the start of the process.
struct Clock {
  std::function<Nanoseconds()> now;

  /// Whole milliseconds as a signed 32-bit value, which lasts 24 days; differences are taken in 32 bits.
  [[nodiscard]] std::int32_t timeGetTime() const {
    return static_cast<std::int32_t>(std::chrono::duration_cast<Milliseconds>(now()).count());
  }
};

/// The machine's monotonic clock.
[[nodiscard]] Clock steadyClock();

}  // namespace velgrove
