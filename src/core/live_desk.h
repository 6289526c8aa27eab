#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "controls/background.h"
#include "controls/desk_thread.h"
#include "controls/face.h"
#include "core/lighting_desk.h"
#include "core/places.h"
#include "dmx/discovery.h"

namespace velgrove {

/// The whole desk on the real clock: its lock, the thread that carries the light, the interface that is
/// attached, and the face when it has one.
class LiveDesk {
 public:
  struct Options {
    std::string show;        ///< opened at the end of the start-up by a desk without a face; one with a face
                             ///< offers it in its first dialog
    std::string portByHand;  ///< the only port looked at; empty: as the settings say, else all interfaces are
    MessageBoxes boxes;      ///< of a desk without a face
    /// The interface's window changed; called with the desk taken.
    std::function<void(const VelgroveComm&)> statusChanged;
    std::optional<Face::Loop> loop = {};  ///< of the toolkit that shows the desk
    std::optional<Places> places = {};    ///< none: default settings, and nothing is kept
  };

  explicit LiveDesk(Options options);

  /// Begins the start-up on the desk thread; it takes some seconds.
  void start();
  /// Whether the start-up is over and the desk plays.
  [[nodiscard]] bool started() const { return m_started; }
  /// Whether the desk has come to its end, by an error or because the operator left.
  [[nodiscard]] bool ended() const { return m_lock.closing() || m_thread.ended(); }
  /// Ends all waits, from any thread; `close` does the rest.
  void end();
  /// Ends it in good order: all waits, the thread, and behind a whole last frame the port. Passes on the
  /// error that it ended with.
  void close();

  /// When the show had been opened and the levels cleared.
  [[nodiscard]] Nanoseconds startTime() const { return m_startTime; }
  [[nodiscard]] Nanoseconds now() const { return m_clock.now(); }

  /// Runs an action with the desk taken.
  void act(const std::function<void(LightingDesk&)>& action);

  /// What the operator of a desk without a face does when a handler of his action begins to wait. Touched
  /// only with the desk held.
  std::function<void()> onWait;

  /// For the face: the windows to show. Touched only with the desk held, or before `start`.
  [[nodiscard]] LightingDesk& desk() { return m_desk; }
  /// Only for a desk made with a loop.
  [[nodiscard]] Face& face() { return *m_face; }

 private:
  [[nodiscard]] LightingDesk::Wiring wiring();
  [[nodiscard]] MessageBoxes boxes();
  [[nodiscard]] std::string portByHand() const;
  [[nodiscard]] bool onFace() const { return m_face != nullptr && m_face->here(); }
  void statusChanged() const;
  void sleep(Milliseconds time);
  void waitUntil(const std::function<bool()>& condition);
  void aside(const std::function<void()>& work);
  void asideOfDeskThread(const std::function<void()>& work);
  void inBackground(std::function<void()> work, std::function<void(const std::string&)> failed);

  Options m_options;
  MachineRoots m_roots;
  Clock m_clock = steadyClock();
  Desk m_lock;
  std::unique_ptr<Face> m_face;
  LightingDesk m_desk;
  std::atomic<bool> m_started = false;
  std::atomic<Nanoseconds> m_startTime{};
  Background m_background;
  DeskThread m_thread{m_lock, m_desk.machine.timers};
};

}  // namespace velgrove
