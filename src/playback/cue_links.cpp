#include "playback/cue_links.h"

namespace velgrove {
namespace {

/// Counts the Gos of links that are under way inside each other.
class Depth {
 public:
  explicit Depth(int& depth) : m_depth(depth) {
    if (m_depth + 1 >= CueLinks::Deepest)
      throw RunTimeError(Fault::Recursion, "cue links start each other without end");
    ++m_depth;
  }
  ~Depth() { --m_depth; }
  Depth(const Depth&) = delete;
  Depth& operator=(const Depth&) = delete;

 private:
  int& m_depth;
};

}  // namespace

std::string linkText(const std::string& list, const std::string& number) {
  if (list == "None" || number == "None") return "";
  if (list == "EF") {
    const auto first = number.find_first_not_of(' ');  // the effects' rows stand off from their edge
    if (first == std::string::npos) return "";
    return "effect " + number.substr(first, number.find_last_not_of(' ') + 1 - first);
  }
  return list == "AB" || list == "XY" ? list + " " + number : "";
}

void CueLinks::SimultaneousStart(const std::string& list, const std::string& number) {
  if (list == "None" || number == "None") return;
  if (list == "AB")
    startAB(number);
  else if (list == "XY")
    startXY(number);
  else if (list == "EF")
    m_wiring.startEffect(number);
  m_show.XYEndsManualClear = true;
  m_show.ABEndsManualClear = false;
}

/// Puts the stage on the row before the target and goes; a target that isn't there leaves the marks alone.
void CueLinks::goTo(QueueList& player, const std::string& number) {
  m_errors.steps(
      [&] {
        const int row = player.ListView2.findItem(number);
        if (row == 0) throw RunTimeError(Fault::ObjectMissing, "no row " + number + " to start");
        player.State.NextCue = narrow<std::int16_t>(row);
        player.State.StageCue = narrow<std::int16_t>(row - 1);
        player.showMarksInPanels();
      },
      [&] {
        const Depth depth(m_depth);
        player.cmdGoForward_Click();
      });
}

void CueLinks::startAB(const std::string& number) {
  QueueList& player = m_wiring.ABQ();
  player.Window.Visible = true;
  m_show.ClearManual = true;
  goTo(player, number);
  if (m_show.GoFromInput) player.Window.WindowState = WindowState::Minimised;
  if (player.Window.WindowState == WindowState::Minimised) player.endRepaint();
}

void CueLinks::startXY(const std::string& number) {
  QueueList& player = m_wiring.XYQ();
  player.Window.Visible = true;
  goTo(player, number);
}

}  // namespace velgrove
