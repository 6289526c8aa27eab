// The editors of a player: the texts of the selected cue, their spinners, and the choices of its link.

#include <algorithm>

#include "playback/queue_list.h"

namespace velgrove {
namespace {

constexpr int EnterKey = 13;

/// Steps a time by seconds. There is no lower bound. Fault::TypeMismatch or Fault::Overflow, with the text as
/// it was, when it's no time or leaves 16 bits.
std::string stepped(const TextBox& time, int by) {
  return std::to_string(narrow<std::int16_t>(toInteger<std::int16_t>(time.text()) + by));
}

}  // namespace

void QueueList::tieEditors() {
  CueNum.KeyUp = [this](int keyCode) { CueNum_KeyUp(keyCode); };
  UpDownCueNum.Change = [this] { UpDownCueNum_Change(); };
  UpDownCueUp.UpClick = [this] { UpDownCueUp_UpClick(); };
  UpDownCueUp.DownClick = [this] { UpDownCueUp_DownClick(); };
  UpDownCueDown.UpClick = [this] { UpDownCueDown_UpClick(); };
  UpDownCueDown.DownClick = [this] { UpDownCueDown_DownClick(); };
  UpDownCueDelay.UpClick = [this] { UpDownCueDelay_UpClick(); };
  UpDownCueDelay.DownClick = [this] { UpDownCueDelay_DownClick(); };
  QListCombo.Click = [this] { QListCombo_Click(); };
}

void QueueList::writeDefaultTimes() {
  CueUp.setText(std::to_string(m_show.DefaultUp));
  CueDown.setText(std::to_string(m_show.DefaultDown));
  CueDelay.setText(std::to_string(m_show.DefaultDelay));
}

void QueueList::CueNum_KeyUp(int keyCode) {
  if (keyCode != EnterKey) return;
  m_errors.run([&] {
    const float wanted = toCueNumber(CueNum.text());
    int row = 1;
    while (row < ListView2.count() && numberOfRow(row) != wanted) ++row;
    goToRow(row);
  });
}

/// One row down the list for each step down, one up for each step up.
void QueueList::UpDownCueNum_Change() {
  if (State.StageCue < 1) return;
  const bool down = UpDownCueNum.value() <= State.CueSpinValue;
  State.CueSpinValue = narrow<std::int16_t>(UpDownCueNum.value());
  m_errors.run([&] {
    const int from = ListView2.findItem(CueNum.text());
    if (from == 0) throw RunTimeError(Fault::ObjectMissing, "no row " + CueNum.text());
    goToRow(down ? std::min(from + 1, ListView2.count()) : std::max(from - 1, 1));
  });
}

/// The editors follow, so that an update never writes one cue's times into another.
void QueueList::goToRow(int row) {
  movePointer(row);
  selectchange();
  UpdateCueInfo();
}

void QueueList::stepUp(int by) {
  m_errors.run([&] { CueUp.setText(stepped(CueUp, by)); });
}

/// Down and Up are meant to move as one crossfade time.
void QueueList::stepDownAndUp(int by) {
  m_errors.run([&] {
    std::string down = stepped(CueDown, by);
    std::string up = stepped(CueUp, by);
    CueDown.setText(std::move(down));
    CueUp.setText(std::move(up));
  });
}

void QueueList::stepDelay(int by) {
  m_errors.run([&] { CueDelay.setText(stepped(CueDelay, by)); });
}

void QueueList::UpDownCueUp_UpClick() {
  stepUp(1);
}
void QueueList::UpDownCueUp_DownClick() {
  stepUp(-1);
}
void QueueList::UpDownCueDown_UpClick() {
  stepDownAndUp(1);
}
void QueueList::UpDownCueDown_DownClick() {
  stepDownAndUp(-1);
}
void QueueList::UpDownCueDelay_UpClick() {
  stepDelay(1);
}
void QueueList::UpDownCueDelay_DownClick() {
  stepDelay(-1);
}

void QueueList::ResetCombos() {
  m_errors.run([&] {
    QListCombo.clear();
    for (const char* list : m_traits.LinkLists) QListCombo.add(list);
    QListCombo.setListIndex(0);
    offerTargets({});
  });
}

void QueueList::QListCombo_Click() {
  m_errors.run([&] { offerTargets(m_wiring.linkTargets(QListCombo.text())); });
}

void QueueList::offerTargets(const std::vector<std::string>& targets) {
  QListNumberCombo.clear();
  QListNumberCombo.add("None");
  for (const std::string& target : targets) QListNumberCombo.add(target);
  QListNumberCombo.setListIndex(0);
}

}  // namespace velgrove
