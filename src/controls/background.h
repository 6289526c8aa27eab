#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace velgrove {

/// A thread for work that nobody waits for. One work runs and one waits at most: a newer one takes the place
/// of the one that waits, so that nothing piles up behind a disk that stands still.
class Background {
 public:
  Background();
  ~Background();  ///< when the work that waits has been done, too
  Background(const Background&) = delete;
  Background& operator=(const Background&) = delete;

  /// Hands a work in, from any thread, and returns at once. A work lets no exception out.
  void run(std::function<void()> work);

 private:
  void serve();

  std::mutex m_mutex;
  std::condition_variable m_told;
  std::function<void()> m_waiting;
  bool m_closing = false;
  std::thread m_thread;
};

}  // namespace velgrove
