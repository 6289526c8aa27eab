#include "core/headless_desk.h"

#include "dmx/box_line.h"

namespace velgrove {
namespace {

InterfaceDevice boxOfRehearsal() {
  return {.path = "box", .vendor = "", .product = "", .serial = ""};
}

}  // namespace

HeadlessDesk::HeadlessDesk(const std::function<BoxAnswer(const Box&)>& onBox)
    : HeadlessDesk(onBox, Folders{}) {}

HeadlessDesk::HeadlessDesk(const std::function<BoxAnswer(const Box&)>& onBox, const Folders& folders,
                           const std::function<SerialLine(SerialLine)>& cable)
    : desk(clock.clock(), {.show = onBox, .post = [onBox](const Box& posted) { (void)onBox(posted); }},
           wiring(folders, cable)) {
  desk.machine.Sleep = [](Milliseconds) {};
  desk.machine.DoEvents = [] {};
  desk.machine.waitUntil = [this](const auto& condition) { waitUntil(condition); };
  desk.machine.aside = [this](const auto& work) {
    raise(onAside);
    work();
  };
  desk.Splash.Painted = true;  // there is no screen to wait for
}

LightingDesk::Wiring HeadlessDesk::wiring(const Folders& folders,
                                          const std::function<SerialLine(SerialLine)>& cable) {
  SerialLine line = boxOnALine(box, [this](Milliseconds time) { clock.pass(time); });
  return {
      .windows = {.interface = {
                      .line = cable ? cable(std::move(line)) : std::move(line),
                      .findInterfaces =
                          [this] {
                            return boxAttached ? std::vector{boxOfRehearsal()}
                                               : std::vector<InterfaceDevice>{};
                          },
                      .findAgain = [](const InterfaceDevice& lost) { return std::optional(lost.path); },
                      .triggerEnabled = {},
                      .triggerGo = {},
                      .repaint = [] {}},
                  .showCuePanel = {},
                  .showStatus = {},
                  .graphics = folders.graphics},
      .settingsFolder = folders.settings,
      .applicationFolder = {},
      .manualFolder = folders.manual,
      .dataFolder = folders.data,
      .firstShows = folders.firstShows,
      .offered = folders.offered,
      .drives = folders.drives,
      .disk = folders.disk,
      .raisePriority = [] {},
      .quit = [this] { quit = true; },
  };
}

/// The operator gets some goes at it: one action may lead to the next.
void HeadlessDesk::waitUntil(const std::function<bool()>& condition) const {
  constexpr int Goes = 100;
  for (int go = 0; !condition(); ++go) {
    if (!onWait || go == Goes) throw EndlessWait();
    onWait();
  }
}

bool HeadlessDesk::start(const std::string& showFile) {
  onWait = [this, showFile] {
    desk.OpenProject.Window.Visible = false;
    desk.show.ProjectFileName = showFile;
    desk.frame.LoadProject(1);
  };
  start();
  onWait = {};
  return desk.show.CurrentProjectIndex > 0;
}

void HeadlessDesk::start() {
  desk.Main();
}

}  // namespace velgrove
