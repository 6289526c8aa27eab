#include "soak/evening.h"

#include <cmath>
#include <fstream>
#include <iostream>
#include <unistd.h>

#include "support/show_maker.h"

namespace velgrove::soak {
namespace {

constexpr int Rows = 10;         // of each list, Blackout among them
constexpr int LinkingRow = 5;    // of XY; it starts AB
constexpr int LinkedRow = 3;     // of AB
constexpr int ChasingRow = 7;    // of XY; it starts the chase
constexpr int LoopLast = 3;      // row, from row 2
constexpr int RoundsToLoop = 7;  // of XY
constexpr int Half = 12;         // channels of each list, XY's first

std::string numberOf(int row) {
  return formatCueNumber(row - 1);
}

/// Up never below Down, so that both looks together never leave the range of a level.
test::Cue cueOf(int row, int firstChannel) {
  test::Cue cue{.number = static_cast<float>(row - 1), .up = row % 3, .down = row % 3 == 2 ? 1 : row % 3};
  for (int channel = 0; channel < Half; ++channel)
    cue.look.emplace_back(firstChannel + channel, (row * 67 + channel * 31) % 256);
  return cue;
}

[[noreturn]] void found(const std::string& what) {
  throw Finding(what);
}

}  // namespace

void Evening::write(const std::filesystem::path& file) {
  test::ShowMaker maker;
  maker.channels.clear();
  for (int channel = 1; channel <= 2 * Half; ++channel) maker.channels.push_back(channel);
  for (int row = 2; row <= Rows; ++row) {
    maker.xy.push_back(cueOf(row, 1));
    maker.ab.push_back(cueOf(row, 1 + Half));
  }
  constexpr int BehindBlackout = 2;
  maker.xy[LinkingRow - BehindBlackout].list = "AB";
  maker.xy[LinkingRow - BehindBlackout].target = numberOf(LinkedRow);
  maker.xy[ChasingRow - BehindBlackout].list = "EF";
  maker.xy[ChasingRow - BehindBlackout].target = "1";
  const auto project = maker.project();
  int at = 0;
  for (const auto& fixture : project->colViews().item(1)->colFixtures()) {
    fixture->x = 100 + at % Half * 70;
    fixture->y = at < Half ? 300 : 700;
    ++at;
  }
  std::ofstream(file, std::ios::binary) << writeShow(*project);
}

void Evening::begin() {
  m_hands.act([this] {
    m_house.desk.frame.SSActiveToolBars1_ToolClick("ID_manualOn");
    m_house.desk.windows.Effects.addEffectToList("30", "40", "50", "2");
  });
}

// ---- Gos

void Evening::go() {
  m_hands.runTo((m_gos + 1) * BetweenGos);
  moveOthers();
  m_gos % 2 == 0 ? goXY() : goAB();
  ++m_gos;
}

void Evening::goXY() {
  QueueList& player = m_house.desk.windows.xyPlayer();
  arrive("XY", player, m_xy);
  bool loops = false;
  if (m_xy.stage == Rows) {
    m_hands.act([this] { m_house.desk.frame.SSActiveToolBars1_ToolClick("ID_CueReset"); });
    m_xy.stage = 1;
    m_ab.dark = true;  // the reset of XY clears the levels of both
    loops = ++m_xy.rounds % RoundsToLoop == 0;
    if (loops) loop(player);
  }
  m_hands.act([this] { m_house.desk.frame.SSActiveToolBars1_ToolClick("ID_Go"); });
  if (!player.State.Fading) found("a Go of XY started nothing");
  m_xy.stage = loops ? LoopLast : m_xy.stage + 1;
  m_xy.dark = false;
  if (m_xy.stage != LinkingRow) return;
  m_ab.stage = LinkedRow;
  m_ab.dark = false;
  ++m_byLinks;
}

void Evening::goAB() {
  QueueList& player = m_house.desk.windows.abPlayer();
  arrive("AB", player, m_ab);
  if (m_ab.stage == Rows) {
    m_hands.act([&player] { player.ResetStageCue(); });
    m_ab.stage = 1;
  }
  m_hands.act([&player] { player.cmdGoForward.click(); });
  if (!player.State.Fading) found("a Go of AB started nothing");
  ++m_ab.stage;
  m_ab.dark = false;
}

/// Two passes over rows 2 and 3: three fades on one Go.
void Evening::loop(QueueList& player) {
  m_hands.whenAsked([this] {
    frmLoop& dialog = m_house.desk.windows.Loop;
    m_hands.act([&dialog] {
      dialog.txtStartCue.setText(numberOf(2));
      dialog.txtLastCue.setText(numberOf(LoopLast));
      dialog.txtLoopCount.setText("2");
      dialog.Command1.click();
    });
  });
  m_hands.act([&player] { player.cmdLoop.click(); });
}

/// Every few Gos a submaster, and with each the levels that come in.
void Evening::moveOthers() {
  constexpr int InputChannel = 41;
  constexpr int Levels = 256;
  constexpr int GosToSubMaster = 20;
  constexpr int Percent = 101;
  m_house.box.setInput(InputChannel, static_cast<int>(m_gos % Levels));
  if (m_gos % GosToSubMaster != 0) return;
  m_hands.act([this] {
    frmSubPane& panel = m_house.desk.windows.SubPane;
    panel.SetSubLevel(3, static_cast<std::int16_t>(m_gos % Percent));
    panel.Fader.Pot.letGo();
  });
}

// ---- What must be

void Evening::arrive(const char* list, QueueList& player, const Expected& expected) const {
  const auto& state = player.State;
  const int next = expected.stage == Rows ? -1 : expected.stage + 1;
  if (state.Fading) found(std::string(list) + " still fades at its Go " + std::to_string(m_gos));
  if (state.StageCue != expected.stage || state.NextCue != next)
    found(std::string(list) + " stands on rows " + std::to_string(state.StageCue) + " and " +
          std::to_string(state.NextCue) + " before Go " + std::to_string(m_gos) + ", not on " +
          std::to_string(expected.stage) + " and " + std::to_string(next));
  if (!expected.dark) checkLevels(player, expected.stage);
}

/// A fade ends with its last step, which lies up to 30 ms before the end of its second.
void Evening::checkLevels(QueueList& player, int row) {
  constexpr int LastStep = 9;
  const ChannelBytes* const look = [&]() -> const ChannelBytes* {
    const float number = toCueNumber(player.ListView2.text(row));
    for (const auto& entry : player.State.QueueData->colQueueEntries())
      if (entry->EntryNum == number) return &entry->Values;
    return nullptr;
  }();
  if (look == nullptr) found("a row without a cue");
  for (int channel = 1; channel <= 2 * Half; ++channel) {
    const auto at = channelIndex(channel);
    if (std::abs(player.levels()[at] - (*look)[at]) > LastStep)
      found(player.Window.Caption + " leaves channel " + std::to_string(channel) + " at " +
            std::to_string(player.levels()[at]) + ", not at " + std::to_string((*look)[at]));
  }
}

// ---- Memory

long residentMemory() {
  std::ifstream statm("/proc/self/statm");
  long all = 0;
  long resident = 0;
  statm >> all >> resident;
  constexpr long BytesPerKilobyte = 1024;
  return resident * (::sysconf(_SC_PAGESIZE) / BytesPerKilobyte);
}

void MemoryWatch::look(double share) {
  constexpr double Tenth = 0.1;
  const long now = residentMemory();
  if (m_start == 0) m_start = now;
  if (share <= Tenth) m_tenth = now;
  m_end = now;
}

void MemoryWatch::report(long room) const {
  std::cout << "memory: " << m_start << " kB at the start, " << m_tenth << " kB after a tenth, " << m_end
            << " kB at the end\n";
  if (m_end > m_tenth + room) found("memory grows");
}

}  // namespace velgrove::soak
