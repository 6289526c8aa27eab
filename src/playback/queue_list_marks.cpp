// Marks and modes of a player: which cue is on stage, which comes next, and what Live and Blind show.

#include <algorithm>

#include "playback/queue_list.h"

namespace velgrove {

void QueueList::cmdAdvanceStageCue_Click() {
  if (!cmdAdvanceStageCue.Enabled || State.CueCount < FewestRows) return;
  m_errors.steps(
      [&] {
        if (State.StageCue == State.CueCount) {  // round the end, past Blackout
          State.StageCue = 2;
          State.NextCue = 3;
        } else if (++State.StageCue == State.CueCount) {
          State.NextCue = -1;
          cmdDecrementStageCue.Enabled = true;
          cmdAdvanceStageCue.Enabled = false;
        } else {
          State.NextCue = narrow<std::int16_t>(State.StageCue + 1);
          cmdDecrementStageCue.Enabled = true;
        }
      },
      [&] { jumpToStageCue(); },
      [&] {
        if (m_traits.MinimisedSkipsRedraw && Window.WindowState == WindowState::Minimised)
          endRepaint();
        else
          UpdateListView();
        updateMarkHeaders();
      });
}

void QueueList::cmdDecrementStageCue_Click() {
  if (!cmdDecrementStageCue.Enabled || State.CueCount < FewestRows) return;
  m_errors.steps(
      [&] {
        cmdAdvanceStageCue.Enabled = true;
        if (State.StageCue == 1) {
          cmdDecrementStageCue.Enabled = false;
        } else {
          State.StageCue =
              narrow<std::int16_t>(std::max(State.StageCue - 1, 1));  // from beside the list, too
          State.NextCue = narrow<std::int16_t>(State.StageCue + 1);
          cmdGoForward.Enabled = true;
        }
      },
      [&] { jumpToStageCue(); }, [&] { showMovedMarks(); });
}

void QueueList::ResetStageCue() {
  if (m_traits.ResetClearsLevels) {
    m_show.XYLevels.fill(0);
    m_show.ABLevels.fill(0);
  }
  if (State.CueCount < FewestRows) return;
  m_errors.steps(
      [&] {
        cmdAdvanceStageCue.Enabled = true;
        if (State.StageCue == 1) {
          cmdDecrementStageCue.Enabled = false;
        } else {
          State.StageCue = 1;
          State.NextCue = 2;
          cmdGoForward.Enabled = true;
        }
      },
      [&] {
        if (m_traits.ResetAttachesPointer) AttachPointerToStageCue();
      },
      [&] { ShowFixtureLevelsForSelectedCue(State.StageCue, "live"); }, [&] { showMovedMarks(); });
}

void QueueList::showMovedMarks() {
  UpdateListView();
  updateMarkHeaders();
}

/// What every stage button ends with: the pointer goes along, and the look of the new stage cue comes at
/// once.
void QueueList::jumpToStageCue() {
  if (m_traits.StageButtonsAttach)
    AttachPointerToStageCue();
  else
    movePointer(State.StageCue);
  ShowFixtureLevelsForSelectedCue(State.StageCue, "live");
}

/// Moves the pointer and its icon to a row; all other icons stay.
void QueueList::movePointer(int row) {
  m_errors.steps(
      [&] {
        if (isRow(State.PointerCue)) ListView2.setIcon(State.PointerCue, 0);
      },
      [&] {
        if (isRow(row)) ListView2.setIcon(row, PointerIcon);
      },
      [&] { State.PointerCue = narrow<std::int16_t>(row); });
}

void QueueList::cmdMakeStageCue_Click() {
  if (State.PointerCue == State.StageCue) return;
  m_errors.steps(
      [&] {
        State.StageCue = State.PointerCue;
        if (State.NextCue == State.StageCue) State.NextCue = narrow<std::int16_t>(State.StageCue + 1);
        if (State.StageCue == State.CueCount) State.NextCue = -1;
      },
      [&] { ShowFixtureLevelsForSelectedCue(State.StageCue, "live"); }, [&] { showMovedMarks(); });
}

void QueueList::cmdMakeNextCue_Click() {
  if (State.PointerCue == State.StageCue || State.PointerCue == State.NextCue) return;
  m_errors.run([&] {
    State.NextCue = State.PointerCue;
    showMovedMarks();
  });
}

/// While Blind takes over from Live, both are on for a moment; Blind is then the mode.
void QueueList::showModes() {
  cmdLiveView.BackColour = m_show.LiveOn && !m_show.BlindOn ? Green : 0;
  cmdBlindView.BackColour = m_show.BlindOn ? Green : 0;
}

void QueueList::cmdLiveView_Click() {
  if (m_show.LiveOn) {
    m_show.LiveOn = false;
    returnToStageCue("Live");
    return;
  }
  m_show.BlindOn = false;
  m_show.LiveOn = true;
  m_wiring.modesChanged();
  ShowFixtureLevelsForSelectedCue(State.PointerCue, "live");
  UpdateHeader("Live", State.PointerCue);
}

void QueueList::cmdBlindView_Click() {
  if (m_show.BlindOn) {
    m_show.BlindOn = false;
    returnToStageCue("Blind");
    return;
  }
  const bool wasLive = m_show.LiveOn;
  m_show.BlindOn = true;
  m_wiring.modesChanged();
  ShowFixtureLevelsForSelectedCue(State.PointerCue, "blind");
  if (wasLive) {
    m_show.LiveOn = false;
    ShowFixtureLevelsForSelectedCue(State.StageCue, "live");
  }
  ShowFixtureLevelsForSelectedCue(State.PointerCue, "blind");
  UpdateHeader("Blind", State.PointerCue);
}

void QueueList::returnToStageCue(const std::string& panel) {
  m_wiring.modesChanged();
  m_wiring.showStatus("Returning to Stage Cue");
  m_errors.steps([&] { movePointer(State.StageCue); }, [&] { repaintRows(); },
                 [&] { ShowFixtureLevelsForSelectedCue(State.StageCue, "live"); });
  UpdateHeader(panel, State.PointerCue);
}

}  // namespace velgrove
