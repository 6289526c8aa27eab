#pragma once

#include <array>
#include <cstdint>

#include "controls/timer.h"
#include "core/show_state.h"

namespace velgrove {

/// Everything in which the two players differ. All else is one design with two instances, and nothing asks
/// which of the two it is. What they only do in another order has no trait, since nobody can tell: AB looks
/// for a reversed fade first, moves its pointer after its icon, and refreshes its panels before the list.
struct PlayerTraits {
  using PlayerLevels = std::array<std::int16_t, ChannelCount> ShowState::*;
  using Flag = bool ShowState::*;
  enum class LoopTimes { OfRowBeforeNext, OfStageRow };

  const char* Caption;         ///< of the window
  PlayerLevels Levels;         ///< what this player puts out
  PlayerLevels OtherLevels;    ///< what the other one puts out
  std::int16_t Player;         ///< CurrentPlayer, and the position of its list in the project
  std::int16_t Mark;           ///< EntryQueueList of its cues
  TimerRank FadeRank;          ///< place of its fade step among the timers
  Flag EndsManualClear;        ///< its fade end lowers ClearManual while this is True
  bool GoColoursButtons;       ///< Go shows the running state on the Go and Stop buttons
  bool FadeEndColoursButtons;  ///< so does the end of a forward fade
  bool AttachKeepsLoopMarks;   ///< attaching the pointer leaves the icons of a loop's rows
  bool StageButtonsAttach;     ///< the stage buttons attach the pointer; else they set two icons in line
  bool MinimisedSkipsRedraw;   ///< advancing the stage cue of a minimised window doesn't redraw
  bool ResetClearsLevels;      ///< resetting the stage cue first zeroes the levels of both players
  bool ResetAttachesPointer;   ///< and moves the pointer to the stage row
  bool RecordTakesDefaults;    ///< Record first writes the default times into the editors
  bool RecordTakesOutput;      ///< Record takes the merged output of a fixture, not its own level
  bool AutoNameLags;           ///< a cue without a name of its own is called after the cue before it
  bool LoopSetsPlayer;         ///< the loop dialog is this player's, whoever was addressed last
  LoopTimes LoopTimesRow;      ///< whose times a pass of a loop runs on
  bool BlindCallSetsMode;      ///< showing a look blind also switches Blind on
  std::array<const char*, 4> LinkLists;  ///< choices of the link's list
  bool RowPassClearsList;                ///< the row pass begins with an empty list
  bool FillSortsRows;                    ///< filling the list ends with a sort
  bool LoadShowsHeaders;                 ///< loading ends by filling the status panels
  bool HeaderEndsRepaint;                ///< a status panel's refresh counts as a repaint done
};

extern const PlayerTraits AB;
extern const PlayerTraits XY;

}  // namespace velgrove
