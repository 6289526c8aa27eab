#include "controls/desk.h"

#include <algorithm>
#include <cassert>
#include <cerrno>
#include <ctime>
#include <system_error>

namespace velgrove {
namespace {

void check(int error, const char* what) {
  if (error != 0) throw std::system_error(error, std::generic_category(), what);
}

timespec monotonicIn(Nanoseconds time) {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const auto then =
      std::chrono::seconds(now.tv_sec) + Nanoseconds(now.tv_nsec) + std::max(time, Nanoseconds::zero());
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(then);
  return {.tv_sec = seconds.count(), .tv_nsec = (then - seconds).count()};
}

}  // namespace

Desk::Desk() {
  pthread_mutexattr_t inherits;
  check(pthread_mutexattr_init(&inherits), "lock");
  check(pthread_mutexattr_setprotocol(&inherits, PTHREAD_PRIO_INHERIT), "lock");
  check(pthread_mutex_init(&m_mutex, &inherits), "lock");
  pthread_mutexattr_destroy(&inherits);

  pthread_condattr_t monotonic;
  check(pthread_condattr_init(&monotonic), "condition");
  check(pthread_condattr_setclock(&monotonic, CLOCK_MONOTONIC), "condition");
  check(pthread_cond_init(&m_told, &monotonic), "condition");
  check(pthread_cond_init(&m_turnFree, &monotonic), "condition");
  pthread_condattr_destroy(&monotonic);
}

Desk::~Desk() {
  pthread_cond_destroy(&m_turnFree);
  pthread_cond_destroy(&m_told);
  pthread_mutex_destroy(&m_mutex);
}

void Desk::lock() {
  assert(!mine());
  pthread_mutex_lock(&m_mutex);
  m_owner = pthread_self();
  m_owned = true;
}

void Desk::unlock() {
  assert(mine());
  m_owned = false;
  pthread_mutex_unlock(&m_mutex);
}

bool Desk::mine() const {
  return m_owned && pthread_equal(m_owner, pthread_self()) != 0;
}

void Desk::take() {
  lock();
  while (m_turnKept) {
    m_owned = false;
    pthread_cond_wait(&m_turnFree, &m_mutex);
    m_owner = pthread_self();
    m_owned = true;
  }
}

bool Desk::takeIfFree() {
  lock();
  if (!m_turnKept) return true;
  unlock();
  return false;
}

void Desk::takeToCopy() {
  lock();
}

void Desk::giveUnchanged() {
  unlock();
}

void Desk::give() {
  unlock();
  pthread_cond_broadcast(&m_told);
  if (onGiven) onGiven();
}

void Desk::wait(std::optional<Nanoseconds> until, const Clock& clock) {
  assert(mine());
  if (onGiven) onGiven();
  m_owned = false;
  if (until) {
    const timespec deadline = monotonicIn(*until - clock.now());
    pthread_cond_timedwait(&m_told, &m_mutex, &deadline);
  } else {
    pthread_cond_wait(&m_told, &m_mutex);
  }
  while (m_turnKept) pthread_cond_wait(&m_turnFree, &m_mutex);
  m_owner = pthread_self();
  m_owned = true;
}

void Desk::tell() {
  // Whoever looked at the condition before it changed is by now in its wait, and no longer on the way to it.
  if (!mine()) {
    lock();
    unlock();
  }
  pthread_cond_broadcast(&m_told);
}

/// While it lives the lock is free and the turn is kept.
class Desk::Kept {
 public:
  explicit Kept(Desk& desk) : m_desk(desk) {
    assert(desk.mine() && !desk.m_turnKept);
    desk.m_turnKept = true;
    desk.unlock();
    if (desk.onGiven) desk.onGiven();
  }
  ~Kept() {
    m_desk.lock();
    m_desk.m_turnKept = false;
    pthread_cond_broadcast(&m_desk.m_turnFree);
  }
  Kept(const Kept&) = delete;
  Kept& operator=(const Kept&) = delete;

 private:
  Desk& m_desk;
};

void Desk::keepTurn(const std::function<void()>& work) {
  const Kept kept(*this);
  work();
}

void Desk::sleep(Nanoseconds time) {
  const timespec until = monotonicIn(time);
  {
    const Kept kept(*this);
    pthread_mutex_lock(&m_mutex);
    while (!m_closing && pthread_cond_timedwait(&m_told, &m_mutex, &until) != ETIMEDOUT) {
    }
    pthread_mutex_unlock(&m_mutex);
  }
  if (m_closing) throw Closing{};
}

void Desk::close() {
  m_closing = true;
  tell();
}

}  // namespace velgrove
