#include <algorithm>

#include "boxes.h"
#include "commands.h"
#include "console.h"
#include "core/live_desk.h"
#include "ending_signals.h"
#include "messages.h"
#include "model/registry_settings.h"
#include "model/settings_store.h"

namespace velgrove {
namespace {

using namespace std::chrono_literals;

std::string portByHand() {
  const SettingsStore settings(defaultSettingsPath());
  if (const auto& message = settings.message()) complain(*message);
  try {
    return GetStringSetting(settings, "Velgrove", "Interface", "Port", "");
  } catch (const RunTimeError& error) {
    throw RunTimeError(error.fault(),
                       settings.file().string() + ": Velgrove, Interface, Port: " + error.what());
  }
}

/// The desk on the real clock, played by a script.
class Performance {
 public:
  Performance(const RunOptions& options, const std::string& port)
      : m_options(options),
        m_house({.show = options.show,
                 .portByHand = port,
                 .boxes = {.show = [this](const Box& box) { return m_boxes.answer(box); },
                           .post = [this](const Box& box) { (void)m_boxes.answer(box); }},
                 .statusChanged = [this](const VelgroveComm& comm) { tellStatus(comm); }}) {}

  int run() {
    m_house.start();
    while (!m_house.started() && !isOver(20ms)) continue;
    bool ready = false;
    if (m_house.started()) m_house.act([&](LightingDesk& desk) { ready = isReady(desk); });
    try {
      if (ready) perform();
    } catch (const ScriptError&) {
      finish();
      throw;
    }
    finish();
    if (m_boxes.tooMany()) complain(BoxLog::TooMany);
    return (ready || m_interrupted) && !m_boxes.tooMany() ? 0 : 1;
  }

 private:
  [[nodiscard]] std::int64_t now() const {
    return std::chrono::duration_cast<Milliseconds>(m_house.now() - m_house.startTime()).count();
  }

  void finish() {
    m_house.close();
    tellBlocks();
    m_console.write();
  }

  static bool isReady(const LightingDesk& desk) {
    return desk.windows.Comm.getCurrentStatus() == Link::Up && desk.show.CurrentProjectIndex > 0;
  }

  /// Waits for a time; true when the run is to end before it has passed.
  bool isOver(Nanoseconds time) {
    m_interrupted = m_interrupted || m_signals.comeWithin(time);
    m_console.write();
    return m_interrupted || m_boxes.tooMany() || m_house.ended();
  }

  bool isOverBefore(std::int64_t ms) {
    constexpr Nanoseconds LookAtLeastEvery = 100ms;
    while (now() < ms) {
      const Nanoseconds left = m_house.startTime() + Milliseconds(ms) - m_house.now();
      if (isOver(std::min(left, LookAtLeastEvery))) return true;
    }
    return false;
  }

  void perform() {
    const std::int64_t end = m_options.until.value_or(LongestRun);
    std::int64_t lastBusy = 0;
    for (const ScriptStep& step : m_options.script) {
      if (isOverBefore(std::min(step.ms, end)) || step.ms > end) return;
      m_house.act([&](LightingDesk& desk) { actOn(desk, step); });
      lastBusy = step.ms;
    }
    if (m_options.until)
      (void)isOverBefore(end);
    else
      waitUntilQuiet(lastBusy);
  }

  void waitUntilQuiet(std::int64_t lastBusy) {
    constexpr std::int64_t LookEvery = 20;
    do {
      m_house.act([&](const LightingDesk& desk) {
        if (isFading(desk)) lastBusy = now();
      });
    } while (now() <= std::min(lastBusy + QuietTime, LongestRun) && !isOverBefore(now() + LookEvery));
  }

  void actOn(LightingDesk& desk, const ScriptStep& step) {
    const auto note = [this](const std::string& what) {
      m_console.leave(std::to_string(now()) + " note: " + what);
    };
    Operator performer{.desk = desk,
                       .input = [&](int, int) { note("input is the box's own on a real line"); },
                       .trigger = [&](int) { note("trigger is the box's own on a real line"); },
                       .note = note,
                       .onWait = m_house.onWait};
    step.act(performer);
  }

  void tellBlocks() {
    SerialPort::Counters blocks;
    m_house.act([&](const LightingDesk& desk) { blocks = desk.windows.Comm.VelgroveCom.counters(); });
    m_console.leave("sent " + std::to_string(blocks.sent) + ", dropped " + std::to_string(blocks.dropped) +
                    ", swallowed " + std::to_string(blocks.swallowed) + " blocks");
  }

  void tellStatus(const VelgroveComm& comm) {
    for (const auto& [told, words] : {std::pair(&m_toldVersion, &comm.Version.Caption),
                                      std::pair(&m_toldCondition, &comm.Condition.Caption)}) {
      if (*told == *words) continue;
      *told = *words;
      m_console.leave("interface: " + (words->empty() ? "all is well again" : *words));
    }
  }

  const RunOptions& m_options;
  EndingSignals m_signals;
  bool m_interrupted = false;
  Console m_console;
  BoxLog m_boxes{[this] { return now(); }, [this](const std::string& line) { m_console.leave(line); }};
  std::string m_toldVersion;
  std::string m_toldCondition;
  LiveDesk m_house;
};

}  // namespace

int play(const RunOptions& options) {
  if (!isWholeShow(options.show)) return 1;
  try {
    const std::string port = portByHand();
    if (findInterfaces(MachineRoots(), port).empty()) {
      complain("no interface box is attached");
      return 1;
    }
    return Performance(options, port).run();
  } catch (const ScriptError&) {
    throw;
  } catch (const std::exception& error) {
    complain(error.what());
    return 1;
  }
}

}  // namespace velgrove
