#pragma once

#include <functional>

#include "controls/error_pattern.h"
#include "controls/timer.h"

namespace velgrove {

/// What the desk's behaviour asks of the machine that it runs on. On the real clock the desk thread stands
/// behind it, in tests and rehearsal a clock that is moved by hand.
struct Machine {
  Machine(Clock clock, MessageBoxes messageBoxes)
      : timers(std::move(clock)), boxes(std::move(messageBoxes)) {}
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  TimerSet timers;
  MessageBoxes boxes;
  ErrorPattern errors{boxes};
  /// Waits without letting a handler run.
  std::function<void(Milliseconds)> Sleep;
  /// Lets all timers run that are due at its start.
  std::function<void()> DoEvents;

  [[nodiscard]] std::int32_t timeGetTime() const { return timers.clock().timeGetTime(); }
};

}  // namespace velgrove
