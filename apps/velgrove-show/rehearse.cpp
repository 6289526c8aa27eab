#include <algorithm>
#include <cstdio>

#include "boxes.h"
#include "commands.h"
#include "core/headless_desk.h"
#include "frame_lines.h"
#include "messages.h"

namespace velgrove {
namespace {

/// Ends a rehearsal out of the handler that showed the last box.
struct TooManyBoxes {};

class Rehearsal {
 public:
  explicit Rehearsal(const RunOptions& options)
      : m_options(options),
        m_frames(options.changesOnly),
        m_house([this](const Box& box) { return answer(box); }) {
    m_house.box.onFrame = [this](InterfaceBox::Frame frame) { m_frames.write(now(), frame); };
  }

  int run() {
    if (!m_house.start(m_options.show)) return 1;
    perform();
    const bool printed = printedAll();
    return saved() && printed ? 0 : 1;
  }

 private:
  [[nodiscard]] std::int64_t now() const {
    return std::chrono::duration_cast<Milliseconds>(m_house.clock.now()).count();
  }

  [[nodiscard]] bool saved() const {
    const ShowState& show = m_house.desk.show;
    return !m_options.save || saveShow(*show.Projects.item(show.CurrentProjectIndex), *m_options.save);
  }

  BoxAnswer answer(const Box& box) {
    const BoxAnswer answer = m_boxes.answer(box);
    if (m_boxes.tooMany()) throw TooManyBoxes{};
    return answer;
  }

  void perform() {
    const std::int64_t end = m_options.until.value_or(LongestRun);
    for (const ScriptStep& step : m_options.script) {
      if (step.ms > end) return m_house.runTo(end);
      runToJustBefore(step.ms);
      m_house.desk.act([&] { step.act(m_operator); });
      m_lastBusy = step.ms;
    }
    if (m_options.until)
      m_house.runTo(end);
    else
      runUntilQuiet();
  }

  /// Commands come before the timers that are due at their instant.
  void runToJustBefore(std::int64_t ms) {
    const Nanoseconds instant = Milliseconds(ms);
    constexpr Nanoseconds Tick{1};
    if (instant <= m_house.clock.now()) return;
    m_house.clock.advanceTo(instant - Tick, m_house.desk.machine.timers);
    m_house.clock.pass(Tick);
  }

  void runUntilQuiet() {
    constexpr Nanoseconds Never = Milliseconds(LongestRun + 1);
    for (;;) {
      const Nanoseconds due = m_house.desk.machine.timers.nextDue().value_or(Never);
      const auto ms = std::chrono::duration_cast<Milliseconds>(due).count();
      if (isFading(m_house.desk)) m_lastBusy = ms;
      if (ms > std::min(m_lastBusy + QuietTime, LongestRun)) return;
      m_house.clock.advanceTo(due, m_house.desk.machine.timers);
    }
  }

  const RunOptions& m_options;
  FrameLines m_frames;
  BoxLog m_boxes{[this] { return now(); }, say};
  HeadlessDesk m_house;
  Operator m_operator{
      .desk = m_house.desk,
      .input = [this](int channel, int level) { m_house.box.setInput(channel, level); },
      .trigger = [this](int count) { m_house.box.addTriggers(count); },
      .note = [this](const std::string& what) { say(std::to_string(now()) + " note: " + what); },
      .onWait = m_house.onWait};
  std::int64_t m_lastBusy = 0;
};

}  // namespace

bool isFading(const LightingDesk& desk) {
  const auto fades = [](const std::unique_ptr<QueueList>& player) {
    return player != nullptr && player->q_timer.enabled();
  };
  return fades(desk.windows.ABQ) || fades(desk.windows.XYQ);
}

int rehearse(const RunOptions& options) {
  if (!isWholeShow(options.show)) return 1;
  try {
    return Rehearsal(options).run();
  } catch (const TooManyBoxes&) {
    complain(BoxLog::TooMany);
    return 1;
  }
}

}  // namespace velgrove
