#include "controls/timer.h"

#include <algorithm>

namespace velgrove {

Timer* TimerSet::firstDue() const {
  Timer* first = nullptr;
  for (Timer* timer : m_timers)
    if (timer->ticks() && !timer->m_running && (first == nullptr || timer->m_due < first->m_due))
      first = timer;
  return first;
}

std::optional<Nanoseconds> TimerSet::nextDue() const {
  const Timer* first = firstDue();
  if (first == nullptr) return std::nullopt;
  return first->m_due;
}

bool TimerSet::runOne(Nanoseconds until) {
  Timer* first = firstDue();
  if (first == nullptr || first->m_due > until) return false;
  first->run();
  return true;
}

void TimerSet::stopAll() {
  for (Timer* timer : m_timers) timer->setEnabled(false);
}

bool TimerSet::isRunning() const {
  return std::ranges::any_of(m_timers, &Timer::m_running);
}

Timer::Timer(TimerSet& timers, TimerRank rank, int interval, std::function<void()> handler,
             ErrorPattern::Waits waits)
    : m_timers(timers), m_rank(rank), m_interval(interval), m_handler(std::move(handler)), m_waits(waits) {
  auto& all = m_timers.m_timers;
  const auto behind =
      std::ranges::upper_bound(all, m_rank, {}, [](const Timer* timer) { return timer->m_rank; });
  all.insert(behind, this);
}

Timer::~Timer() {
  std::erase(m_timers.m_timers, this);
  if (m_gone != nullptr) *m_gone = true;
}

void Timer::setEnabled(bool enabled) {
  if (enabled == m_enabled) return;
  m_enabled = enabled;
  beginGrid();
}

void Timer::setInterval(int milliseconds) {
  if (milliseconds < 0)
    throw RunTimeError(Fault::Overflow, "a timer can't tick every " + std::to_string(milliseconds) + " ms");
  m_interval = milliseconds;
  beginGrid();
}

void Timer::beginGrid() {
  m_due = m_timers.m_clock.now() + Milliseconds(m_interval);
}

/// Marks a timer as running; notices when its own handler takes it away.
class Timer::Running {
 public:
  explicit Running(Timer& timer) : m_timer(timer) {
    timer.m_running = true;
    timer.m_gone = &m_gone;
  }
  ~Running() {
    if (m_gone) return;
    m_timer.m_running = false;
    m_timer.m_gone = nullptr;
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  [[nodiscard]] bool gone() const { return m_gone; }

 private:
  Timer& m_timer;
  bool m_gone = false;
};

void Timer::run() {
  const Nanoseconds step = Milliseconds(m_interval);
  m_due += ((m_timers.m_clock.now() - m_due) / step + 1) * step;

  const Running running(*this);
  TimerSet& timers = m_timers;
  try {
    const ErrorPattern::Tick tick(m_faults, m_waits);
    if (m_handler) m_handler();
  } catch (const RunTimeError& error) {
    if (timers.onUnhandled) timers.onUnhandled(error);
  }
  if (!running.gone()) dropMissed();
}

/// Ticks that came due while the handler ran are gone; the grid stays.
void Timer::dropMissed() {
  const Nanoseconds missed = m_timers.m_clock.now() - m_due;
  if (!ticks() || missed <= Nanoseconds::zero()) return;
  const Nanoseconds step = Milliseconds(m_interval);
  m_due += (missed + step - Nanoseconds(1)) / step * step;
}

}  // namespace velgrove
