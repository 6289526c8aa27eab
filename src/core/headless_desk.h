#pragma once

#include <functional>
#include <string>

#include "controls/hand_clock.h"
#include "core/lighting_desk.h"
#include "dmx/interface_box.h"

namespace velgrove {

/// The whole desk on a clock that is moved by hand, with an interface box that is always there: for
/// rehearsal, tests and benchmarks. The waits of the start-up take no time, so that everything begins at 0.
class HeadlessDesk {
 public:
  struct Options {
    std::function<BoxAnswer(const Box&)> onBox;  ///< the operator's answer to each box
    /// A setting's text; without it all settings have their defaults, but for the electronic trigger, which
    /// is on.
    std::function<std::string(const std::string& section, const std::string& key,
                              const std::string& fallback)>
        setting;
  };

  explicit HeadlessDesk(Options options);

  HandClock clock;
  InterfaceBox box;
  LightingDesk desk;

  /// Starts the desk with a show. False when the show didn't open.
  bool start(const std::string& showFile);

  /// Runs the timers up to and including an instant in milliseconds.
  void runTo(std::int64_t ms) { clock.advanceTo(Milliseconds(ms), desk.machine.timers); }

 private:
  [[nodiscard]] MessageBoxes answering() const;
  [[nodiscard]] LightingDesk::Wiring wiring();

  Options m_options;
  std::string m_showFile;
};

}  // namespace velgrove
