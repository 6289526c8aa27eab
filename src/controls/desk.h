#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <pthread.h>

#include "controls/clock.h"

namespace velgrove {

/// Ends every wait when the desk closes. Not a run-time error: the error pattern lets it through.
struct Closing {};

/// The one lock of the desk's behaviour. A handler takes the desk, runs to its end and gives it back, so that
/// behaviour is single-threaded to itself. Two threads come in: the desk thread with its timers, and the face
/// with the operator's actions.
///
/// The lock inherits priority, also among threads of equal priority: it is handed to whoever waits, where a
/// plain mutex would let the desk thread starve.
class Desk {
 public:
  Desk();
  ~Desk();
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;

  void take();                      ///< the turn, for a handler; waits for a sleeper too
  bool takeIfFree();                ///< as take, but false at once while a handler sleeps
  void takeToCopy();                ///< only to copy values; also while a handler sleeps
  void give();                      ///< then wakes the face, if `onGiven` is set
  void giveUnchanged();             ///< after copying: there is nothing that the face doesn't know
  [[nodiscard]] bool mine() const;  ///< whether this thread has the desk

  /// Gives the desk, waits for `tell` or the instant (none: for `tell` alone), takes it again.
  void wait(std::optional<Nanoseconds> until, const Clock& clock);
  void tell();  ///< ends waits; called with or without the desk

  /// Lets the lock go for the time of some work that waits, but keeps the turn: no handler runs meanwhile.
  void keepTurn(const std::function<void()>& work);
  /// Waits and keeps the turn. Ends by `Closing` when the desk closes.
  void sleep(Nanoseconds time);

  /// From here on every wait ends by `Closing`.
  void close();
  [[nodiscard]] bool closing() const { return m_closing; }

  /// Called whenever the desk is given, so that what was changed is seen; with or without the desk, so it may
  /// not take it.
  std::function<void()> onGiven;

 private:
  class Kept;
  void lock();
  void unlock();

  pthread_mutex_t m_mutex{};
  pthread_cond_t m_told{};
  pthread_cond_t m_turnFree{};
  std::atomic<pthread_t> m_owner{};
  std::atomic<bool> m_owned = false;
  std::atomic<bool> m_closing = false;
  bool m_turnKept = false;
};

/// Takes the desk for one block.
class DeskTurn {
 public:
  explicit DeskTurn(Desk& desk) : m_desk(desk) { m_desk.take(); }
  ~DeskTurn() { m_desk.give(); }
  DeskTurn(const DeskTurn&) = delete;
  DeskTurn& operator=(const DeskTurn&) = delete;

 private:
  Desk& m_desk;
};

}  // namespace velgrove
