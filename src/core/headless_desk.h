#pragma once

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

#include "controls/hand_clock.h"
#include "core/lighting_desk.h"
#include "dmx/interface_box.h"

namespace velgrove {

/// A handler waits for something that nobody brings about.
class EndlessWait : public std::logic_error {
 public:
  EndlessWait() : std::logic_error("the desk waits, and nobody ends it") {}
};

/// The whole desk on a clock that is moved by hand, with an interface box that is always there: for
/// rehearsal, tests and benchmarks. The waits of the start-up take no time, so that everything begins at 0.
class HeadlessDesk {
 public:
  /// Where the desk's files lie; by default it has none, and looks at no disk but for its show.
  struct Folders {
    std::filesystem::path settings = {};
    std::filesystem::path data = {};
    std::filesystem::path graphics = {};  ///< without it fixtures are plain boxes, since nobody looks
    DriveRoots drives = {};
    std::filesystem::path manual = {};
    Disk disk = systemDisk();
    std::filesystem::path firstShows = {};
    std::filesystem::path offered = {};  ///< a show on which the first dialog stands
  };

  /// `onBox` is the operator's answer to each box.
  explicit HeadlessDesk(const std::function<BoxAnswer(const Box&)>& onBox);
  /// `cable` gets the line to the box, and gives back the one that the desk is to see.
  HeadlessDesk(const std::function<BoxAnswer(const Box&)>& onBox, const Folders& folders,
               const std::function<SerialLine(SerialLine)>& cable = {});

  HandClock clock;
  InterfaceBox box;
  bool boxAttached = true;
  LightingDesk desk;
  bool quit = false;  ///< the desk has ended

  /// What the operator does while a handler waits; called until the wait is over. EndlessWait when that
  /// doesn't help.
  std::function<void()> onWait;
  /// What other handlers do while work that waits for the disk is done aside.
  std::function<void()> onAside;

  /// Starts the desk with a show. False when the show didn't open.
  bool start(const std::string& showFile);
  /// Starts the desk; the open dialog is `onWait`'s to answer.
  void start();

  /// Runs the timers up to and including an instant in milliseconds.
  void runTo(std::int64_t ms) { clock.advanceTo(Milliseconds(ms), desk.machine.timers); }

 private:
  [[nodiscard]] LightingDesk::Wiring wiring(const Folders& folders,
                                            const std::function<SerialLine(SerialLine)>& cable);
  void waitUntil(const std::function<bool()>& condition) const;
};

}  // namespace velgrove
