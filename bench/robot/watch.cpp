#include "robot/watch.h"

#include <algorithm>
#include <set>

#include "model/show_file.h"

namespace velgrove::robot {
namespace {

constexpr Milliseconds FrameInterval{30};
constexpr Milliseconds BackWithin{2000};  // after the cable is whole again

[[noreturn]] void found(const std::string& what) {
  throw Finding(what);
}

std::string milliseconds(Nanoseconds time) {
  return std::to_string(std::chrono::duration_cast<Milliseconds>(time).count()) + " ms";
}

/// Cues of which the list can show each: in order of number a tenth apart, and none above 256, where the list
/// ends when a show is opened.
bool canAllShow(const colQueueEntries& entries, int mark) {
  constexpr float Highest = 256;
  std::set<float> numbers;
  for (const auto& entry : entries) {
    const bool shows = entry->EntryNum >= 0 && entry->EntryNum <= Highest;
    if (entry->EntryQueueList != mark || !shows) return false;
    if (!numbers.insert(entry->EntryNum).second) return false;
  }
  float floor = 0;
  for (const float number : numbers) {
    if (number < floor) return false;
    floor = tenthAbove(number);
  }
  return true;
}

/// A number as a row tells it, with two decimals.
float asShown(float number) {
  return toCueNumber(formatCueNumber(number));
}

}  // namespace

Watch::Watch(HeadlessDesk& house, Cable& cable) : m_house(house), m_cable(cable) {
  m_cable.frameBegins = [this] { frameBegins(); };
  m_cable.deskWaits = [this] { excuseFrame(); };
  m_house.box.onFrame = [this](InterfaceBox::Frame frame) { frameArrives(frame); };
}

Watch::~Watch() {
  m_cable.frameBegins = m_cable.deskWaits = [] {};
  m_house.box.onFrame = {};
}

// ---- The wire

/// The send keeps 01 off the wire, the head of a command, on all channels that are in use.
void Watch::frameBegins() {
  m_begun = m_house.desk.show.DMXOutput;
  const auto used = std::clamp<int>(m_house.desk.show.NumChannels, 0, ChannelCount);
  if (std::count(m_begun.begin(), m_begun.begin() + used, 1) > 0) found("a level of 1 goes on the wire");
  const Nanoseconds now = m_house.clock.now();
  if (m_lastFrame && m_excused == 0) checkFrameTime(now - *m_lastFrame);
  m_lastFrame = now;
  m_excused = m_cable.isWhole() ? std::max(m_excused - 1, 0) : UntilOnTheGrid;
}

void Watch::frameArrives(InterfaceBox::Frame frame) {
  ++m_frames;
  if (!std::ranges::equal(frame, m_begun)) found("a frame isn't what the desk put out");
}

void Watch::checkFrameTime(Nanoseconds gap) {
  if (gap != FrameInterval) found("a frame comes " + milliseconds(gap) + " after the one before");
}

void Watch::checkLine() {
  const auto& counters = m_house.box.counters();
  if (counters.garbageBytes > 0) found("bytes on the wire belong to no command");
  const bool cut = std::exchange(m_halves, counters.halfFrames) != counters.halfFrames;
  if (cut && m_excused == 0) found("half a frame on the wire");
  const Nanoseconds now = m_house.clock.now();
  if (!m_cable.isWhole()) m_lastCut = now;
  if (!m_house.desk.windows.Comm.SendTimer.enabled() || !m_lastFrame) return;
  const Nanoseconds since = now - std::max(*m_lastFrame, m_lastCut);
  if (since >= (m_excused > 0 ? Nanoseconds(BackWithin) : Nanoseconds(FrameInterval)))
    found("no frame for " + milliseconds(since));
}

// ---- The players

/// Behind a delete or a loop a mark can stand behind the last row: the operator is told when it is used.
void Watch::checkMarks(const QueueList& player) {
  const auto& state = player.State;
  const auto tell = [&](const char* mark, int row) {
    found(player.Window.Caption + std::string(": ") + mark + " stands on " + std::to_string(row) + " of " +
          std::to_string(player.ListView2.count()));
  };
  if (state.StageCue < 0) tell("the stage", state.StageCue);
  if (state.NextCue < -1) tell("the next", state.NextCue);
  if (state.PointerCue < 0) tell("the pointer", state.PointerCue);
}

/// A fade that nobody stopped goes on.
void Watch::checkFade(const QueueList& player) {
  if (player.State.Fading && !player.q_timer.enabled())
    found(player.Window.Caption + " fades without its timer");
}

void Watch::checkRows(const QueueList& player) {
  if (m_apart[player.Window.Identity % Remembered] == player.Window.Identity) return;
  if (player.State.QueueData == nullptr) return;
  const auto& entries = player.State.QueueData->colQueueEntries();
  const bool isAB = player.Window.Caption == AB.Caption;
  if (!canAllShow(entries, (isAB ? AB : XY).Mark)) return excuseRows(player);  // also when a cue goes later
  std::multiset<float> wanted;
  for (const auto& entry : entries) wanted.insert(asShown(entry->EntryNum));
  std::multiset<float> rows;
  for (int row = 1; row <= player.ListView2.count(); ++row)
    rows.insert(toCueNumber(player.ListView2.text(row)));
  if (!std::ranges::equal(wanted, rows))
    found(player.Window.Caption + std::string(" shows ") + std::to_string(rows.size()) + " rows of " +
          std::to_string(wanted.size()) + " cues, or others");
  if (player.State.CueCount != player.ListView2.count()) found("the count of cues isn't that of the rows");
}

// ---- The windows

/// A handler that waited is over, and so is what it waited for.
void Watch::checkForms() const {
  for (const OpenForm& open : m_house.desk.openForms())
    if (open.form->Visible && open.form->Modal) found(open.form->Caption + " is left open");
}

/// Each plot merges, as long as it is open.
void Watch::checkPlots() const {
  for (const auto& document : m_house.desk.windows.Documents)
    if (!document->TallyInputs.enabled()) found("a plot is open whose merge stands");
}

// ---- The show

void Watch::checkShowKeeps() const {
  auto& show = m_house.desk.show;
  if (show.Projects.count() == 0) return;
  std::string bytes;
  try {
    bytes = writeShow(*show.Projects.item(show.Projects.count()));
  } catch (const RunTimeError&) {
    return;  // a text longer than the format holds: the save says so
  }
  const ShowRead read = readShow(bytes, DMXInputRecords::Read);
  if (!read.faults.empty()) found("the show that was written reads with faults: " + describe(read.faults[0]));
  if (writeShow(*read.project) != bytes) found("the show that was written reads as another");
}

void Watch::afterStep() {
  if (m_house.quit) return;
  checkLine();
  checkForms();
  checkPlots();
  for (const auto* player : {m_house.desk.windows.ABQ.get(), m_house.desk.windows.XYQ.get()}) {
    if (player == nullptr) continue;
    checkMarks(*player);
    checkFade(*player);
    checkRows(*player);
  }
}

}  // namespace velgrove::robot
