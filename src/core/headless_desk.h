#pragma once

#include <filesystem>
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
  /// `onBox` is the operator's answer to each box. `graphics` holds the fixture shapes; without it fixtures
  /// are plain boxes, since nobody looks.
  explicit HeadlessDesk(const std::function<BoxAnswer(const Box&)>& onBox,
                        const std::filesystem::path& graphics = {});

  HandClock clock;
  InterfaceBox box;
  LightingDesk desk;

  /// Starts the desk with a show. False when the show didn't open.
  bool start(const std::string& showFile);

  /// Runs the timers up to and including an instant in milliseconds.
  void runTo(std::int64_t ms) { clock.advanceTo(Milliseconds(ms), desk.machine.timers); }

 private:
  [[nodiscard]] LightingDesk::Wiring wiring(const std::filesystem::path& graphics);

  std::string m_showFile;
};

}  // namespace velgrove
