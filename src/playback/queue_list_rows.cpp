// The list of a player: how rows come from cues, the status panels, and where the pointer stands.

#include "playback/cue_rows.h"
#include "playback/queue_list.h"

namespace velgrove {
void QueueList::FillList() {
  m_errors.steps(
      [&] {
        if (entries().count() > 1) {
          rowPass();
        } else {
          const auto entry = entryByKey(0);
          ListView2.add(ListView2.count() + 1, formatFixed2(0));
          writeCells(ListView2.count(), *entry);
        }
      },
      [&] {
        if (m_traits.FillSortsRows) ListView2.sort(CompareValues);
      },
      [&] {
        if (State.CueCount < 2) return;
        State.StageCue = 1;
        State.NextCue = 2;
        UpdateHeader("Next", State.NextCue);
      },
      [&] { repaintRows(); });
}

/// Brings the cues into ascending order, round by round the lowest that is left. Cues closer than a tenth
/// can't both show, and none above 256 is found; a round that finds no cue is an error and ends the pass.
void QueueList::rowPass() {
  if (m_traits.RowPassClearsList) ListView2.clear();
  float last = -1.0F;
  State.CueCount = 0;
  while (entries().count() != State.CueCount) {
    last = nextRowNumber(entries(), last);
    ++State.CueCount;

    const auto entry = entryByKey(last);
    const int row = entry->EntryNum == 0 ? ListView2.count() + 1 : State.CueCount;
    ListView2.add(row, rowText(entry->EntryNum));
    if (entry->EntryNum == 0) ListView2.setIcon(row, PointerIcon);
    writeCells(row, *entry);
  }
}

void QueueList::writeCells(int row, const clsQueueEntry& entry) {
  ListView2.setText(row, DownCell, std::to_string(entry.Down));
  ListView2.setText(row, DelayCell, std::to_string(entry.Delay));
  ListView2.setText(row, UpCell, std::to_string(entry.Up));
  ListView2.setText(row, DescCell, entry.EntryDesc);
  ListView2.setText(row, ListCell, entry.QueueListMasterGo);
  ListView2.setText(row, TargetCell, entry.QueueNumberMasterGo.value_or(""));
}

int QueueList::CompareValues(const ListView::Row& a, const ListView::Row& b) {
  const double left = toNumber(a.Texts[NumberCell]);
  const double right = toNumber(b.Texts[NumberCell]);
  return left < right ? -1 : left > right ? 1 : 0;
}

void QueueList::UpdateHeader(const std::string& panel, int row) {
  m_errors.run([&] {
    if ((row == -1 && panel != "Next") || (row == 0 && panel != "Stage")) return;
    if (State.PointerCue >= 1 && State.StageCue >= 1) UpdateCueInfo();
    if (panel != "Stage" && panel != "Next") return;
    if (m_traits.HeaderEndsRepaint) State.ListRepaintDone = true;
    if (panel == "Next") return showNextPanel(row);
    showStagePanel(row);
    if (isRow(row)) m_wiring.showCuePanel("Queue # " + lblStageNum.Caption + " " + StageDescText.Caption);
  });
}

void QueueList::showStagePanel(int row) {
  if (!isRow(row)) return;
  const auto& cells = ListView2.row(row).Texts;
  lblStageNum.Caption = cells[NumberCell];
  lblStageDown2.Caption = cells[DownCell];
  lblStageDelay2.Caption = cells[DelayCell];
  lblStageUp2.Caption = cells[UpCell];
  StageDescText.Caption = cells[DescCell];
}

void QueueList::showNextPanel(int row) {
  const ListView::Row none{.Texts = {"N/A", "N/A", "N/A", "N/A", "N/A"}};
  const auto& cells = (State.NextCue == -1 || !isRow(row) ? none : ListView2.row(row)).Texts;
  lblNextNum.Caption = cells[NumberCell];
  lblNextDown.Caption = cells[DownCell];
  lblNextDelay.Caption = cells[DelayCell];
  lblNextUp.Caption = cells[UpCell];
  NextDescText.Caption = cells[DescCell];
}

void QueueList::showMarksInPanels() {
  showNextPanel(State.NextCue);
  showStagePanel(State.StageCue);
}

void QueueList::updateMarkHeaders() {
  UpdateHeader("Next", State.NextCue);
  UpdateHeader("Stage", State.StageCue);
}

void QueueList::UpdateCueInfo() {
  if (!isRow(State.PointerCue)) return;
  m_errors.run([&] {
    const auto& cells = ListView2.row(State.PointerCue).Texts;
    CueNum.setText(cells[NumberCell]);
    CueDown.setText(cells[DownCell]);
    CueDelay.setText(cells[DelayCell]);
    CueUp.setText(cells[UpCell]);
    CueDesc.setText(cells[DescCell]);
  });
}

void QueueList::selectchange() {
  m_errors.run([&] {
    ListView2.select(State.PointerCue);
    if (State.PointerCue < ListView2.count()) ListView2.ensureVisible(State.PointerCue + 1);
    if (State.PointerCue > 1) ListView2.ensureVisible(State.PointerCue - 1);
  });
}

void QueueList::AttachPointerToStageCue() {
  m_errors.steps(
      [&] {
        for (int row = 1; row <= ListView2.count(); ++row)
          if (!m_traits.AttachKeepsLoopMarks || ListView2.row(row).SmallIcon == PointerIcon)
            ListView2.setIcon(row, 0);
      },
      [&] {
        if (isRow(State.StageCue)) ListView2.setIcon(State.StageCue, PointerIcon);
      },
      [&] { State.PointerCue = State.StageCue; }, [&] { repaintRows(); });
}

}  // namespace velgrove
