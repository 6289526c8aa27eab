#pragma once

#include <atomic>
#include <exception>
#include <functional>
#include <thread>

#include "controls/desk.h"
#include "controls/timer.h"

namespace velgrove {

/// The thread that carries the light: sleeps on absolute deadlines until the next timer is due, takes the
/// desk and runs it.
class DeskThread {
 public:
  DeskThread(Desk& desk, TimerSet& timers) : m_desk(desk), m_timers(timers) {}
  ~DeskThread();  ///< closes the desk
  DeskThread(const DeskThread&) = delete;
  DeskThread& operator=(const DeskThread&) = delete;

  /// Starts the thread: it runs `setup` with the desk taken, then its timers until the desk closes.
  void start(std::function<void()> setup);
  /// Whether the thread has come to its end, by the desk's closing or by an error.
  [[nodiscard]] bool ended() const { return m_ended; }
  /// Closes the desk and waits for the thread's end. Passes on the error that it ended with.
  void join();

  /// The one way to wait on this thread, also for a handler: gives the desk, runs the timers that come due
  /// (never one that is running) and returns when the condition holds. Ends by `Closing` when the desk
  /// closes.
  void until(const std::function<bool()>& condition);
  /// Runs all timers that are due now, nested.
  void doEvents();

 private:
  void run(const std::function<void()>& setup);
  void waitForTimer();

  Desk& m_desk;
  TimerSet& m_timers;
  std::thread m_thread;
  std::atomic<bool> m_ended = false;
  std::exception_ptr m_failure;
};

}  // namespace velgrove
