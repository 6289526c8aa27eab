// How the cues of a player become levels: the two looks of a crossfade, and a look shown at once.

#include "playback/queue_list.h"

namespace velgrove {

/// Resolves both looks over the fixtures of the current view, once for a whole fade. A cue that isn't found
/// leaves its look dark, and so does a mark that stands on no row.
void QueueList::SetupCrossFade() {
  std::shared_ptr<clsQueueEntry> stage;
  std::shared_ptr<clsQueueEntry> next;
  m_errors.steps([&] { stage = entryOfRow(State.StageCue); }, [&] { next = entryOfRow(State.NextCue); });
  State.NextLookLevel = 0;
  State.CurrentLookLevel = 0;
  State.CurrentLook.fill(0);
  State.NextLook.fill(0);
  forEachFixture([&](const clsFixture& fixture) {
    const auto at = channelIndex(fixture.Channel);
    if (stage != nullptr) State.CurrentLook[at] = stage->Values[at];
    if (next != nullptr) State.NextLook[at] = next->Values[at];
  });
}

void QueueList::ShowFixtureLevelsForSelectedCue(int row, const std::string& mode) {
  if (mode == "blind") showBlind(row);
  if (mode == "live" || mode.empty()) showOnStage(row, false);
  if (mode == "changecue") showOnStage(row, true);
}

/// A look that comes at once. A cue that isn't found leaves the stage dark.
void QueueList::showOnStage(int row, bool yields) {
  std::shared_ptr<clsQueueEntry> entry;
  m_errors.run([&] { entry = searchRow(row); });
  levels().fill(0);
  if (entry == nullptr) return;
  const auto& others = m_show.*m_traits.OtherLevels;
  forEachFixture([&](clsFixture& fixture) {
    const auto at = channelIndex(fixture.Channel);
    if (!yields || entry->Values[at] >= others[at]) {
      fixture.Level = entry->Values[at];
      levels()[at] = fixture.Level;
    }
    m_wiring.redrawLevel(fixture);
  });
}

/// A look that only the plot shows. The cue is taken by its number alone, whoever owns it.
void QueueList::showBlind(int row) {
  if (m_traits.BlindCallSetsMode) m_show.BlindOn = true;
  std::shared_ptr<clsQueueEntry> entry;
  if (isRow(row)) m_errors.run([&] { entry = entryByNumber(numberOfRow(row)); });
  if (entry == nullptr) return;
  forEachFixture([&](clsFixture& fixture) {
    const auto at = channelIndex(fixture.Channel);
    m_show.BlindLevels[at] = entry->Values[at];
    m_wiring.redrawLevel(fixture);
  });
}

}  // namespace velgrove
