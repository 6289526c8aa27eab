#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <string>

#include "controls/desk_thread.h"
#include "core/lighting_desk.h"
#include "dmx/discovery.h"

namespace velgrove {

/// The whole desk on the real clock: its lock, the thread that carries the light, and the interface that is
/// attached.
class LiveDesk {
 public:
  struct Options {
    std::string show;        ///< opened at the end of the start-up
    std::string portByHand;  ///< the only port looked at; empty: all interfaces are
    MessageBoxes boxes;
    /// The interface's window changed; called with the desk taken.
    std::function<void(const VelgroveComm&)> statusChanged;
    /// The folder of fixture shapes and cursors; empty where nobody sees the plot.
    std::filesystem::path graphics = {};
  };

  explicit LiveDesk(Options options);

  /// Begins the start-up on the desk thread; it takes some seconds.
  void start();
  /// Whether the start-up is over and the desk plays.
  [[nodiscard]] bool started() const { return m_started; }
  /// Whether the desk has come to its end, by an error or because the operator chose Abort.
  [[nodiscard]] bool ended() const { return m_thread.ended(); }
  /// Ends it in good order: all waits, the thread, and behind a whole last frame the port. Passes on the
  /// error that it ended with.
  void close();

  /// When the show had been opened and the levels cleared.
  [[nodiscard]] Nanoseconds startTime() const { return m_startTime; }
  [[nodiscard]] Nanoseconds now() const { return m_clock.now(); }

  /// Runs an action of the operator, with the desk taken.
  void act(const std::function<void(LightingDesk&)>& action);

 private:
  [[nodiscard]] LightingDesk::Wiring wiring();

  Options m_options;
  MachineRoots m_roots;
  Clock m_clock = steadyClock();
  Desk m_lock;
  LightingDesk m_desk;
  std::atomic<bool> m_started = false;
  std::atomic<Nanoseconds> m_startTime{};
  DeskThread m_thread{m_lock, m_desk.machine.timers};
};

}  // namespace velgrove
