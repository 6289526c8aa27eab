// The mouse over the list: a click on a row, and the drag of the stage and next marks.

#include "playback/queue_list.h"

namespace velgrove {

void QueueList::ListView2_MouseDown(int row) {
  State.DragMoved = false;
  State.MouseIsDown = true;
  State.Dragging = false;
  State.DragStartRow = narrow<std::int16_t>(row);
}

void QueueList::ListView2_MouseMove(int row) {
  if (!State.MouseIsDown) return;
  m_errors.run([&] {
    if (State.Dragging)
      stepDrag(row);
    else
      startDrag(row);
  });
}

/// Only a mark can be dragged. The drag begins on its own row; the next move is its first step.
void QueueList::startDrag(int row) {
  const auto start = State.DragStartRow;
  const bool left = row != 0 && start != 0 && row != start;
  State.DraggingStage = left && start == State.StageCue;
  State.DraggingNext = left && start == State.NextCue && !State.DraggingStage;
  if (!State.DraggingStage && !State.DraggingNext) return;
  State.Dragging = true;
  State.ListRepainting = true;
  State.DragRow = State.DragPrevRow = start;
  State.DragColor = State.DragPrevColor = State.DraggingStage ? Red : Green;
}

void QueueList::stepDrag(int row) {
  if (row == 0) return;
  State.DragRow = narrow<std::int16_t>(row);
  if (State.DragRow == State.DragPrevRow) return;
  State.DragMoved = true;
  ListView2.MousePointer = dropForbidden() ? ListView::Pointer::Forbidden : ListView::Pointer::Arrow;
  UpdateListView();
  State.DragPrevRow = State.DragRow;
  State.DragPrevColor = State.DragColor;
}

/// Blackout is no place for a mark, and neither is the row of the other one.
bool QueueList::dropForbidden() const {
  return State.DragRow == 1 || State.DragRow > ListView2.count() ||
         State.DragRow == (State.DraggingStage ? State.NextCue : State.StageCue);
}

void QueueList::ListView2_MouseUp(int row) {
  switch (endDrag()) {
    case Release::Click:
      if (row != 0) selectRow(row);
      break;
    case Release::Refused:
      repaintRows();
      break;
    case Release::NextDropped:
      State.NextCue = State.DragRow;
      break;
    case Release::StageDropped:
      dropStage();
      break;
  }
}

/// Takes the mark out of the hand before anything else, so that no fault can leave it there. What the pointer
/// refused stays refused; it's asked again besides, since a fade that ended after the last step has moved the
/// marks.
QueueList::Release QueueList::endDrag() {
  Release release = Release::Click;
  if (State.Dragging && State.DragMoved) {
    const bool refused = ListView2.MousePointer == ListView::Pointer::Forbidden || dropForbidden();
    release = refused ? Release::Refused : State.DraggingStage ? Release::StageDropped : Release::NextDropped;
  }
  if (State.Dragging) endRepaint();
  State.Dragging = State.DraggingStage = State.DraggingNext = false;
  State.DragMoved = State.MouseIsDown = false;
  State.DragStartRow = 0;
  ListView2.MousePointer = ListView::Pointer::Arrow;
  return release;
}

/// The look comes at once, and the next mark follows behind the stage but for the end of the list.
void QueueList::dropStage() {
  m_errors.steps([&] { State.StageCue = State.DragRow; },
                 [&] { ShowFixtureLevelsForSelectedCue(State.StageCue, "live"); },
                 [&] {
                   if (State.StageCue >= State.CueCount) return;
                   State.NextCue = narrow<std::int16_t>(State.DragRow + 1);
                   repaintRows();
                 });
}

void QueueList::selectRow(int row) {
  m_errors.run([&] {
    ListView2.select(0);
    const bool looped = State.LoopStartRow != State.LoopLastRow;
    for (int r = 1; r <= ListView2.count(); ++r) {
      const bool inside = r >= State.LoopStartRow && r <= State.LoopLastRow;
      if (!inside)
        ListView2.setIcon(r, 0);
      else if (looped)
        ListView2.setIcon(r, LoopIcon);
    }
    ListView2.setIcon(row, PointerIcon);
    enableCueButtons(true);
    State.PointerCue = narrow<std::int16_t>(row);
    selectchange();
    UpdateCueInfo();
    m_wiring.showStatus(R"(Please select "Live" or "Blind" mode to modify this Cue.)");
  });
}

}  // namespace velgrove
