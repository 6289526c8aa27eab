#include "controls/desk_thread.h"

#include <pthread.h>
#include <sched.h>
#include <utility>

namespace velgrove {
namespace {

/// Asks for a place before ordinary threads. An ordinary user is refused, and the timing holds on an idle
/// machine all the same.
void askForPriority() {
  constexpr int Priority = 10;
  const sched_param wish{.sched_priority = Priority};
  (void)pthread_setschedparam(pthread_self(), SCHED_RR | SCHED_RESET_ON_FORK, &wish);
}

}  // namespace

void DeskThread::start(std::function<void()> setup) {
  m_thread = std::thread([this, setup = std::move(setup)] {
    askForPriority();
    run(setup);
  });
}

void DeskThread::run(const std::function<void()>& setup) {
  const DeskTurn turn(m_desk);
  try {
    setup();
    until([] { return false; });
  } catch (const Closing&) {  // NOLINT(bugprone-empty-catch): the way that every wait ends
  } catch (...) {
    m_failure = std::current_exception();
  }
  m_ended = true;
}

DeskThread::~DeskThread() {
  m_desk.close();
  if (m_thread.joinable()) m_thread.join();
}

void DeskThread::join() {
  m_desk.close();
  if (m_thread.joinable()) m_thread.join();
  if (m_failure) std::rethrow_exception(std::exchange(m_failure, nullptr));
}

void DeskThread::until(const std::function<bool()>& condition) {
  for (;;) {
    if (m_desk.closing()) throw Closing{};
    if (condition()) return;
    if (m_timers.runOne(m_timers.clock().now())) {
      m_desk.give();
      m_desk.take();
    } else {
      waitForTimer();
    }
  }
}

/// A sleeper wakes a tenth of a millisecond late, now more and now less, and that would be the unsteadiness
/// of the frames. So the thread wakes early and watches the clock for the rest, with the desk free meanwhile.
void DeskThread::waitForTimer() {
  constexpr Nanoseconds WakingLag{120'000};
  const auto now = [this] { return m_timers.clock().now(); };
  const auto due = m_timers.nextDue();
  if (!due) {
    m_desk.wait(std::nullopt, m_timers.clock());
  } else if (*due - now() > WakingLag) {
    m_desk.wait(*due - WakingLag, m_timers.clock());
  } else {
    m_desk.give();
    while (now() < *due && !m_desk.closing()) continue;
    m_desk.take();
  }
}

void DeskThread::doEvents() {
  const Nanoseconds start = m_timers.clock().now();
  do {
    if (m_desk.closing()) throw Closing{};
  } while (m_timers.runOne(start));
}

}  // namespace velgrove
