#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "controls/clock.h"
#include "controls/error_pattern.h"

namespace velgrove {

class Timer;

/// The order of timers that are due at the same instant.
enum class TimerRank {
  Send,
  FadeAB,
  FadeXY,
  Chase,
  Merge,
  SubmasterInput,
  Display,
  Bars,
  Dialog,
  Trigger,
  Receive,
  Recovery,
};

/// All timers of a desk. Whoever owns the time asks `nextDue` and calls `runOne`: the desk thread on the real
/// clock, HandClock in tests and rehearsal.
class TimerSet {
 public:
  explicit TimerSet(Clock clock) : m_clock(std::move(clock)) {}
  TimerSet(const TimerSet&) = delete;
  TimerSet& operator=(const TimerSet&) = delete;

  [[nodiscard]] const Clock& clock() const { return m_clock; }

  /// When the next timer is due whose handler isn't running; nothing when none will ever be.
  [[nodiscard]] std::optional<Nanoseconds> nextDue() const;

  /// Runs the timer that has been due longest, at `until` the latest; equals in order of rank. False when
  /// none is.
  bool runOne(Nanoseconds until);

  /// Whether any handler runs at this moment, on this thread or under a box that it has open.
  [[nodiscard]] bool isRunning() const;

  /// Turns every timer off, for the end of the desk.
  void stopAll();

  /// Called with an error that the operator answered with Abort and nobody else took.
  std::function<void(const RunTimeError&)> onUnhandled;

 private:
  friend class Timer;
  [[nodiscard]] Timer* firstDue() const;

  Clock m_clock;
  std::vector<Timer*> m_timers;  ///< in order of rank, then of making
};

/// A periodic call of one handler. The grid of ticks begins when the timer goes from off to on, or when its
/// interval is set. A handler is never entered again while it runs; ticks missed meanwhile are dropped; a
/// late tick rejoins the grid.
class Timer {
 public:
  /// `interval` in milliseconds; 0 never ticks. A timer is off until it is enabled.
  Timer(TimerSet& timers, TimerRank rank, int interval, std::function<void()> handler,
        ErrorPattern::Waits waits = ErrorPattern::Waits::ForAnswer);
  ~Timer();
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  [[nodiscard]] bool enabled() const { return m_enabled; }
  void setEnabled(bool enabled);  ///< True on True changes nothing
  [[nodiscard]] int interval() const { return m_interval; }
  void setInterval(int milliseconds);  ///< Fault::Overflow below 0, and the interval stays

 private:
  friend class TimerSet;
  [[nodiscard]] bool ticks() const { return m_enabled && m_interval > 0; }
  class Running;
  void beginGrid();
  void dropMissed();
  void run();

  TimerSet& m_timers;
  TimerRank m_rank;
  int m_interval;
  std::function<void()> m_handler;
  ErrorPattern::Waits m_waits;
  FaultMemory m_faults;
  bool m_enabled = false;
  bool m_running = false;
  bool* m_gone = nullptr;  ///< while the handler runs: where to say that the timer was taken away
  Nanoseconds m_due{};
};

}  // namespace velgrove
