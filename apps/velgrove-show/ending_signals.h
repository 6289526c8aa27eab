#pragma once

#include <csignal>

#include "controls/clock.h"

namespace velgrove {

/// The signals that end a program: interrupt, terminate, hang-up. They are blocked in this thread and all
/// that it starts, and picked up by asking.
class EndingSignals {
 public:
  EndingSignals();
  /// Waits for such a signal, at the latest for the time given; true when one came.
  [[nodiscard]] bool comeWithin(Nanoseconds time) const;

 private:
  sigset_t m_signals{};
};

}  // namespace velgrove
