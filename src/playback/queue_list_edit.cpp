// Editing the cues of a player: record, update, insert, delete, copy and paste. Each command changes the row
// and its cue together. What can fail on a text is read before anything changes.

#include <algorithm>

#include "playback/cue_rows.h"
#include "playback/queue_list.h"

namespace velgrove {
namespace {

constexpr const char* NewDescription = "Queue Description";
constexpr float LastWithoutRoom = 0.99F;

bool isPatched(const clsFixture& fixture) {
  return fixture.Channel >= 1 && fixture.Channel <= ChannelCount;
}

}  // namespace

/// The levels of the fixtures on the plot; 0 on channels without one.
ChannelBytes QueueList::levelsOnPlot() {
  ChannelBytes levels{};
  forEachFixture([&](const clsFixture& fixture) {
    if (isPatched(fixture)) levels[channelIndex(fixture.Channel)] = fixture.Level;
  });
  return levels;
}

/// What the merge puts out on the channels of the fixtures on the plot.
ChannelBytes QueueList::outputOnPlot() {
  ChannelBytes levels{};
  forEachFixture([&](const clsFixture& fixture) {
    if (!isPatched(fixture)) return;
    const auto at = channelIndex(fixture.Channel);
    levels[at] = m_show.DMXOutput[at];
  });
  return levels;
}

/// Writes the editors into a cue. Fault::TypeMismatch or Fault::Overflow for a time that is none; the cue is
/// then as it was.
void QueueList::takeEditors(clsQueueEntry& cue) const {
  const auto up = toInteger<std::int16_t>(CueUp.text());
  const auto down = toInteger<std::int16_t>(CueDown.text());
  const auto delay = toInteger<std::int16_t>(CueDelay.text());
  cue.Up = up;
  cue.Down = down;
  cue.Delay = delay;
  cue.EntryDesc = CueDesc.text();
  cue.QueueListMasterGo = QListCombo.text();
  cue.QueueNumberMasterGo = QListNumberCombo.text();
}

std::shared_ptr<clsQueueEntry> QueueList::cueOfEditors(float number) const {
  auto cue = std::make_shared<clsQueueEntry>();
  takeEditors(*cue);
  cue->EntryNum = number;
  cue->EntryQueueList = m_traits.Mark;
  return cue;
}

void QueueList::noteEdit() {
  m_show.ProjectDirty = true;
  m_wiring.cueEdited();
}

// ---- Record

void QueueList::cmdRecord_Click() {
  std::shared_ptr<clsQueueEntry> cue;
  m_errors.steps(
      [&] {
        if (m_traits.RecordTakesDefaults) writeDefaultTimes();
      },
      [&] {
        float highest = 0;
        for (int row = 1; row <= ListView2.count(); ++row) highest = std::max(highest, numberOfRow(row));
        cue = cueOfEditors(highest + 1.0F);
        cue->Values = m_traits.RecordTakesOutput ? outputOnPlot() : levelsOnPlot();
      });
  if (cue == nullptr) return;
  m_errors.steps([&] { nameCue(*cue); }, [&] { addLastCue(cue); },
                 [&] {
                   ListView2.sort(CompareValues);
                   selectchange();
                   repaintRows();
                 });
  noteEdit();
  ResetCombos();
}

/// A cue that would be called like the one before it gets a name from a number.
void QueueList::nameCue(clsQueueEntry& cue) {
  const int last = ListView2.count();
  if (last == 0 || CueDesc.text() != ListView2.row(last).Texts[DescCell]) return;
  const std::string number = m_traits.AutoNameLags ? ListView2.text(last) : formatCueNumber(cue.EntryNum);
  CueDesc.setText("Cue_" + number);
  cue.EntryDesc = CueDesc.text();
}

/// Adds a cue behind all others. The editors stay with it while the panels show the marks anew.
void QueueList::addLastCue(const std::shared_ptr<clsQueueEntry>& cue) {
  const auto before = std::pair(State.StageCue, State.NextCue);
  const auto count = narrow<std::int16_t>(State.CueCount + 1);
  if (State.StageCue == State.CueCount) State.NextCue = count;
  State.CueCount = count;
  entries().add(cue);
  if (count <= 2) {
    State.StageCue = 1;
    State.NextCue = count == 2 ? 2 : -1;
  }
  addRow(count, formatCueNumber(cue->EntryNum));
  CueNum.setText(formatCueNumber(cue->EntryNum));
  if (before != std::pair(State.StageCue, State.NextCue)) showMarksInPanels();
}

void QueueList::addRow(int position, const std::string& number) {
  ListView2.add(position, number);
  writeEditedCells(position);
}

void QueueList::writeEditedCells(int row) {
  ListView2.setText(row, DownCell, CueDown.text());
  ListView2.setText(row, DelayCell, CueDelay.text());
  ListView2.setText(row, UpCell, CueUp.text());
  ListView2.setText(row, DescCell, CueDesc.text());
  ListView2.setText(row, ListCell, QListCombo.text());
  ListView2.setText(row, TargetCell, QListNumberCombo.text());
}

// ---- Update

/// A number typed into the editor renumbers nothing: it sends the row's texts to the stage cue, and the
/// levels to the cue of that number.
void QueueList::cmdUpdate_Click() {
  const std::string number = CueNum.text();  // as typed: the panels write the row's own over it
  bool updated = false;
  m_errors.run([&] {
    if (number != ListView2.text(State.PointerCue)) State.PointerCue = State.StageCue;
    writeEditedCells(State.PointerCue);
    repaintRows();
    updateMarkHeaders();
    const auto cue = entryByKey(toCueNumber(number));
    takeEditors(*cue);
    cue->EntryQueueList = m_traits.Mark;
    cue->Values = m_show.BlindOn ? m_show.BlindLevels : levelsOnPlot();
    updated = true;
  });
  if (!updated) return;
  noteEdit();
  const bool onStage = !m_show.BlindOn && !m_show.LiveOn;
  if (m_show.BlindOn) cmdBlindView_Click();
  if (m_show.LiveOn) cmdLiveView_Click();
  if (onStage) ShowFixtureLevelsForSelectedCue(State.PointerCue, "live");
}

// ---- Insert

void QueueList::cmdInsertCue_Click() {
  CueDesc.setText(NewDescription);
  writeDefaultTimes();
  const bool recorded = State.CueCount > 1 && State.PointerCue == State.CueCount;
  bool inserted = recorded;
  if (recorded)
    cmdRecord_Click();
  else
    m_errors.run([&] { inserted = State.CueCount <= 1 ? insertFirst() : insertBehindPointer(); });
  if (!inserted) return;
  m_errors.run([&] { ListView2.sort(CompareValues); });
  noteEdit();
  AttachPointerToStageCue();
  if (!recorded) UpdateCueInfo();
}

/// The first cue of a list, or its Blackout when even that has gone.
bool QueueList::insertFirst() {
  const auto cue = cueOfEditors(State.CueCount);
  ++State.CueCount;
  addRow(State.CueCount, formatCueNumber(cue->EntryNum));
  entries().add(cue);
  return true;
}

/// The room between two cues holds the tenths above the lower one; below 1 there is none.
bool QueueList::insertBehindPointer() {
  const float selected = numberOfRow(State.PointerCue);
  const float number = tenthAbove(selected);
  if (number == numberOfRow(State.PointerCue + 1) || selected <= LastWithoutRoom) {
    m_machine.boxes.show({.text = "Cue Partition Full, please add to Next Cue.",
                          .title = "Warning",
                          .icon = BoxIcon::Information});
    return false;
  }
  const std::string text = number > 1 ? formatCueNumber(number) : formatFixed2(number);
  const auto cue = cueOfEditors(toCueNumber(text));
  ++State.CueCount;
  addRow(State.PointerCue + 1, text);
  entries().add(cue);
  m_errors.run([&] { landOnInserted(); });
  return true;
}

/// The new cue becomes the stage cue without a change of the output. The rows are then filled anew; AB keeps
/// the old ones as well, so that its list shows every cue twice until the next load.
void QueueList::landOnInserted() {
  State.StageCue = narrow<std::int16_t>(State.PointerCue + 1);
  State.NextCue = narrow<std::int16_t>(State.PointerCue + 2);
  UpdateHeader("Stage", State.StageCue);
  UpdateHeader("Next", State.NextCue);
  movePointer(State.StageCue);
  rowPass();
  repaintRows();
}

// ---- Delete

void QueueList::cmdDeleteCue_Click() {
  std::optional<float> number;
  m_errors.steps([&] { m_show.CurrentPlayer = m_traits.Player; },
                 [&] {
                   number = numberOfRow(State.PointerCue);
                   ListView2.remove(State.PointerCue);
                   repaintRows();
                 });
  if (!number) return;
  m_errors.steps(
      [&] { SearchRemove(dataInProject()->colQueueEntries(), *number, m_traits.Mark - 1, m_machine.boxes); },
      [&] { enableCueButtons(false); }, [&] { closeRanks(); });
  noteEdit();
}

/// The marks keep their rows, so that they mark other cues when one above them has gone. The panels keep
/// their texts until the next refresh: panel names in small letters are none.
void QueueList::closeRanks() {
  --State.CueCount;
  if (State.StageCue >= State.CueCount) {
    State.StageCue = State.CueCount;
    State.NextCue = -1;
  }
  if (State.CueCount < 1) {
    State.StageCue = 0;
    State.NextCue = -1;
    return;
  }
  for (int row = 1; row <= ListView2.count(); ++row) ListView2.setIcon(row, 0);
  if (isRow(State.StageCue)) ListView2.setIcon(State.StageCue, PointerIcon);
  State.PointerCue = State.StageCue;
  UpdateHeader("stage", State.StageCue);
  UpdateHeader("next", State.NextCue);
}

/// The commands that work on the selected cue.
void QueueList::enableCueButtons(bool enabled) {
  for (Button* button : {&cmdDeleteCue, &cmdUpdate, &cmdCopy, &cmdPaste, &cmdMakeNextCue, &cmdMakeStageCue})
    button->Enabled = enabled;
}

// ---- Copy and paste

/// Whether a cue of this player has the number. Two cues of one number would make a list that can't be read.
bool QueueList::isTaken(float number) {
  return findCue(entries(), number, m_traits.Mark) != nullptr;
}

/// Copy saves what stands in the editors as well. The levels it takes are those of the plot.
void QueueList::cmdCopy_Click() {
  m_errors.steps(
      [&] {
        const auto cue = searchRow(State.PointerCue);
        if (cue == nullptr) throw RunTimeError(Fault::ObjectMissing, "no cue is selected");
        const float number = toCueNumber(CueNum.text());
        takeEditors(*cue);
        if (!isTaken(number)) cue->EntryNum = number;
        State.CopiedUp = cue->Up;
        State.CopiedDown = cue->Down;
        State.CopiedDelay = cue->Delay;
        State.CopiedDesc = cue->EntryDesc;
      },
      [&] {
        forEachFixture([&](const clsFixture& fixture) {
          if (isPatched(fixture)) State.CopiedLevels[channelIndex(fixture.Channel)] = fixture.Level;
        });
      },
      [&] { m_wiring.cueEdited(); });
}

/// Writes over the selected cue without asking; its links become what the combos hold.
void QueueList::cmdPaste_Click() {
  m_errors.steps(
      [&] {
        CueUp.setText(formatSingle(State.CopiedUp));
        CueDown.setText(formatSingle(State.CopiedDown));
        CueDelay.setText(formatSingle(State.CopiedDelay));
        CueDesc.setText(State.CopiedDesc);
      },
      [&] {
        forEachFixture([&](clsFixture& fixture) {
          if (isPatched(fixture)) fixture.Level = State.CopiedLevels[channelIndex(fixture.Channel)];
        });
      },
      [&] { cmdUpdate_Click(); });
  noteEdit();
  updateMarkHeaders();
}

}  // namespace velgrove
