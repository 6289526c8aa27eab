#include "controls/clock.h"

namespace velgrove {

Clock steadyClock() {
  const auto start = std::chrono::steady_clock::now();
  return {[start] { return Nanoseconds(std::chrono::steady_clock::now() - start); }};
}

}  // namespace velgrove
