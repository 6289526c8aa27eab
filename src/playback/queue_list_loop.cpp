// Loops of a player: a stretch of its list that runs again and again on one Go.

#include <algorithm>

#include "playback/crossfade.h"
#include "playback/queue_list.h"

namespace velgrove {

/// The marks jump to the loop, the levels don't: the next Go fades from its first cue. A loop that is cleared
/// leaves the stage on row 0, and the next fade end or stage button brings the marks back.
void QueueList::cmdLoop_Click() {
  if (m_traits.LoopSetsPlayer) m_show.CurrentPlayer = m_traits.Player;
  if (ListView2.count() < FewestRows) {
    m_machine.boxes.show({.text = "There must be more Queues to loop in order to use this function.",
                          .title = "Loop Function not Ready"});
    return;
  }
  m_errors.run([&] { m_wiring.configureLoop(); });
  if (!Window.Loaded) return;  // the show was closed under the dialog
  m_errors.steps([&] { State.LoopSkipAdvance = true; }, [&] { findLoopRows(); }, [&] { markLoopRows(); },
                 [&] {
                   State.StageCue = State.LoopStartRow;
                   State.NextCue = narrow<std::int16_t>(State.StageCue + 1);
                   updateMarkHeaders();
                   repaintRows();
                   m_show.ProjectDirty = true;
                 });
}

/// A number that no row holds leaves its row as it was.
void QueueList::findLoopRows() {
  for (int row = 1; row <= ListView2.count(); ++row) {
    const float number = numberOfRow(row);
    if (number == State.LoopStartCue) State.LoopStartRow = narrow<std::int16_t>(row);
    if (number == State.LoopLastCue) State.LoopLastRow = narrow<std::int16_t>(row);
  }
}

void QueueList::markLoopRows() {
  const bool armed = State.LoopCount != 0;
  const int last = std::min<int>(State.LoopLastRow, ListView2.count());
  for (int row = std::max<int>(State.LoopStartRow, 1); row <= last; ++row)
    ListView2.setIcon(row, armed ? LoopIcon : 0);
  if (armed) return;
  State.LoopStartCue = State.LoopLastCue = 0;
  State.LoopStartRow = State.LoopLastRow = 0;
}

/// Asked at each fade end: starts the next fade of an armed loop and says whether it did. A pass runs on the
/// times of the row before the marks move.
bool QueueList::ProcessLoop() {
  bool goesOn = false;
  if (State.LoopCount > 0) {
    m_errors.steps(
        [&] {
          const bool ofStage = m_traits.LoopTimesRow == PlayerTraits::LoopTimes::OfStageRow;
          takeTimes(entryOfRow(ofStage ? State.StageCue : State.NextCue - 1).get());
        },
        [&] { buildTimeline(State, m_machine.timeGetTime()); }, [&] { takeLoopStep(); });
    UpdateListView();
    goesOn = State.LoopCount > 0;
  }
  updateMarkHeaders();
  return goesOn;
}

void QueueList::takeLoopStep() {
  const auto fadeTo = [&](int row) {
    State.NextCue = narrow<std::int16_t>(row);
    SetupCrossFade();
    q_timer.setEnabled(true);
  };
  ++State.StageCue;
  if (State.StageCue < State.LoopLastRow) {
    fadeTo(State.StageCue + 1);
  } else if (State.StageCue == State.LoopLastRow) {
    if (--State.LoopCount != 0)
      fadeTo(State.LoopStartRow);
    else
      State.NextCue = narrow<std::int16_t>(State.StageCue + 1);
  } else {
    State.StageCue = State.LoopStartRow;
    fadeTo(State.StageCue + 1);
  }
}

}  // namespace velgrove
