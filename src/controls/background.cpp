#include "controls/background.h"

#include <utility>

namespace velgrove {

Background::Background() : m_thread([this] { serve(); }) {}

Background::~Background() {
  {
    const std::lock_guard lock(m_mutex);
    m_closing = true;
  }
  m_told.notify_one();
  m_thread.join();
}

void Background::run(std::function<void()> work) {
  {
    const std::lock_guard lock(m_mutex);
    m_waiting.swap(work);
  }
  m_told.notify_one();  // and what was replaced goes without the lock
}

void Background::serve() {
  std::unique_lock lock(m_mutex);
  for (;;) {
    m_told.wait(lock, [this] { return m_closing || m_waiting; });
    if (!m_waiting) return;
    const auto work = std::exchange(m_waiting, nullptr);
    lock.unlock();
    work();
    lock.lock();
  }
}

}  // namespace velgrove
