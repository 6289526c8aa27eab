#pragma once

#include "controls/timer.h"

namespace velgrove {

/// A clock that is moved by hand, for tests, rehearsal and benchmarks: an hour of show runs in seconds, the
/// same way every time.
class HandClock {
 public:
  HandClock() = default;
  HandClock(const HandClock&) = delete;
  HandClock& operator=(const HandClock&) = delete;

  [[nodiscard]] Clock clock() {
    return {[this] { return m_now; }};
  }
  [[nodiscard]] Nanoseconds now() const { return m_now; }

  /// Moves the time without running anything, as a handler does that sleeps.
  void pass(Nanoseconds time) { m_now += time; }

  /// Moves the time to an instant and runs all timers due up to and including it, each at its own instant.
  void advanceTo(Nanoseconds instant, TimerSet& timers) {
    for (auto due = timers.nextDue(); due && *due <= instant; due = timers.nextDue()) {
      m_now = std::max(m_now, *due);
      timers.runOne(m_now);
    }
    m_now = std::max(m_now, instant);
  }

 private:
  Nanoseconds m_now{};
};

}  // namespace velgrove
