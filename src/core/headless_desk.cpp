#include "core/headless_desk.h"

#include "dmx/box_line.h"

namespace velgrove {
namespace {

InterfaceDevice boxOfRehearsal() {
  return {.path = "box", .vendor = "", .product = "", .serial = ""};
}

}  // namespace

HeadlessDesk::HeadlessDesk(const std::function<BoxAnswer(const Box&)>& onBox,
                           const std::filesystem::path& graphics)
    : desk(clock.clock(), {.show = onBox, .post = [onBox](const Box& posted) { (void)onBox(posted); }},
           wiring(graphics)) {
  desk.machine.Sleep = [](Milliseconds) {};
  desk.machine.DoEvents = [] {};
}

LightingDesk::Wiring HeadlessDesk::wiring(const std::filesystem::path& graphics) {
  const auto nothing = [](const std::string&) {};
  return {
      .windows = {.interface = {
                      .line = boxOnALine(box, [this](Milliseconds time) { clock.pass(time); }),
                      .findInterfaces = [] { return std::vector{boxOfRehearsal()}; },
                      .findAgain = [](const InterfaceDevice& lost) { return std::optional(lost.path); },
                      .triggerEnabled = [] { return true; },
                      .triggerGo = {},
                      .repaint = [] {}},
                  .showCuePanel = nothing,
                  .showStatus = nothing,
                  .graphics = graphics},
      .settingsFolder = {},
      .applicationFolder = {},
      .dataFolder = {},
      .raisePriority = [] {},
      .openShow =
          [this] {
            desk.show.ProjectFileName = m_showFile;
            desk.frame.LoadProject(1);
          },
      .quit = [] {},
  };
}

bool HeadlessDesk::start(const std::string& showFile) {
  m_showFile = showFile;
  desk.Main();
  return desk.show.CurrentProjectIndex > 0;
}

}  // namespace velgrove
