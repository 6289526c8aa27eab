#pragma once

#include <functional>

#include "controls/error_pattern.h"
#include "controls/timer.h"

namespace velgrove {

/// What the desk's behaviour asks of the machine that it runs on. On the real clock the desk thread stands
/// behind it, in tests and rehearsal a clock that is moved by hand.
struct Machine {
  Machine(Clock clock, const MessageBoxes& toOperator)
      : timers(std::move(clock)), boxes(neverHoldingUp(toOperator)) {}
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

 private:
  /// A box that comes up in the merge, the send or a fade step is posted: the light never waits for its
  /// answer.
  static MessageBoxes neverHoldingUp(const MessageBoxes& toOperator) {
    auto show = [toOperator](const Box& box) {
      if (!ErrorPattern::mustNotWait()) return toOperator.show(box);
      toOperator.post(box);
      return BoxAnswer::Ok;
    };
    return {.show = std::move(show), .post = toOperator.post};
  }
};

}  // namespace velgrove
