#include "core/headless_desk.h"

#include "dmx/box_line.h"

namespace velgrove {
namespace {

InterfaceDevice boxOfRehearsal() {
  return {.path = "box", .vendor = "", .product = "", .serial = ""};
}

}  // namespace

HeadlessDesk::HeadlessDesk(Options options)
    : desk(clock.clock(),
           {.show = options.onBox, .post = [on = options.onBox](const Box& posted) { (void)on(posted); }},
           wiring()),
      m_options(std::move(options)) {
  desk.machine.Sleep = [](Milliseconds) {};
  desk.machine.DoEvents = [] {};
}

LightingDesk::Wiring HeadlessDesk::wiring() {
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
                  .startEffect = nothing},
      .frame = {.setting =
                    [this](const std::string& section, const std::string& key, const std::string& fallback) {
                      return m_options.setting ? m_options.setting(section, key, fallback) : fallback;
                    }},
      .dataFolder = {},
      .raisePriority = [] {},
      .openShow =
          [this] {
            desk.show.ProjectFileName = m_showFile;
            desk.frame.LoadProject(1);
          },
  };
}

bool HeadlessDesk::start(const std::string& showFile) {
  m_showFile = showFile;
  desk.Main();
  return desk.show.CurrentProjectIndex > 0;
}

}  // namespace velgrove
