#include "ending_signals.h"

#include <algorithm>

namespace velgrove {

EndingSignals::EndingSignals() {
  sigemptyset(&m_signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&m_signals, signal);
  pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
}

bool EndingSignals::comeWithin(Nanoseconds time) const {
  const Nanoseconds wait = std::max(time, Nanoseconds::zero());
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(wait);
  const timespec most{.tv_sec = seconds.count(), .tv_nsec = (wait - seconds).count()};
  return sigtimedwait(&m_signals, nullptr, &most) > 0;
}

}  // namespace velgrove
