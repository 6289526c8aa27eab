// What a player shows to the eye alone: the colours of its rows, the bars of a fade and the time left.

#include <algorithm>

#include "playback/queue_list.h"

namespace velgrove {
namespace {

float shareOf(std::int16_t level) {
  return static_cast<float>(level) / 255.0F;
}

}  // namespace

/// Where both marks meet the next one shows. While a drag is painted, the mark that stays put shows over the
/// one in the hand.
Colour QueueList::rowColour(int row) const {
  const bool drags = State.DraggingStage || State.DraggingNext;
  if (!State.ListRepainting || State.ListRepaintDone || !drags)
    return row == State.NextCue ? Green : row == State.StageCue ? Red : White;
  if (State.DraggingNext && row == State.StageCue) return Red;
  if (State.DraggingStage && row == State.NextCue) return Green;
  if (row == State.DragPrevRow) return State.DragPrevColor;
  return row == State.DragRow ? State.DragColor : White;
}

RowPaint QueueList::rowPaint(int row) const {
  if (row == State.NextCue && State.NextProgress)
    return {.left = PaleGreen, .right = Green, .split = shareOf(*State.NextProgress)};
  if (row == State.StageCue && State.StageProgress)
    return {.left = Red, .right = PaleRed, .split = 1 - shareOf(*State.StageProgress)};
  const Colour colour = rowColour(row);
  return {.left = colour, .right = colour};
}

void QueueList::SetCurrentLookProgress(std::int16_t level) {
  State.StageProgress = level;
}

void QueueList::SetNextLookProgress(std::int16_t level) {
  State.NextProgress = level;
}

/// Fresh rows have no bars. A running fade draws its own again at once; those of a stopped one come back when
/// it goes on, since whoever repaints has moved a mark or brought a look on stage meanwhile.
void QueueList::repaintRows() {
  State.StageProgress.reset();
  State.NextProgress.reset();
  if (!State.Fading) return;
  SetCurrentLookProgress(State.CurrentLookLevel);
  SetNextLookProgress(State.NextLookLevel);
}

/// Rows are painted from what the player remembers, so that a repaint is done as soon as it is asked for.
/// Only a drag goes on being painted as one, from step to step.
void QueueList::UpdateListView() {
  State.ListRepainting = true;
  State.ListRepaintDone = false;
  repaintRows();
  if (!State.Dragging) endRepaint();
}

void QueueList::endRepaint() {
  State.ListRepainting = false;
  State.ListRepaintDone = true;
}

std::int64_t QueueList::restOfFade() const {
  if (State.Paused) return State.RestAtStop;
  if (!State.Fading) return 0;
  const std::int64_t end = std::max(State.UpEndTime, State.DownEndTime);
  return std::max<std::int64_t>(end - m_machine.timeGetTime(), 0);
}

/// Rounded up: "0.0" would stand over a fade that still runs.
std::string QueueList::timeLeft() const {
  constexpr std::int64_t Tenth = 100;  // ms
  constexpr std::int64_t TenSeconds = 100;
  const std::int64_t tenths = (restOfFade() + Tenth - 1) / Tenth;
  if (tenths == 0) return "";
  if (tenths < TenSeconds) return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
  return std::to_string((tenths + 9) / 10);
}

}  // namespace velgrove
