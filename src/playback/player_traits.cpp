#include "playback/player_traits.h"

namespace velgrove {

const PlayerTraits AB{
    .Caption = "AB - CueList",
    .Levels = &ShowState::ABLevels,
    .OtherLevels = &ShowState::XYLevels,
    .Player = 1,
    .Mark = 2,
    .FadeRank = TimerRank::FadeAB,
    .EndsManualClear = &ShowState::ABEndsManualClear,
    .GoColoursButtons = false,
    .FadeEndColoursButtons = false,
    .AttachKeepsLoopMarks = false,
    .StageButtonsAttach = false,
    .MinimisedSkipsRedraw = false,
    .ResetClearsLevels = false,
    .ResetAttachesPointer = false,
    .LoopTimesRow = PlayerTraits::LoopTimes::OfRowBeforeNext,
    .BlindCallSetsMode = false,
    .LinkLists = {"None", "AB", "AB", "EF"},
    .RowPassClearsList = false,
    .FillSortsRows = true,
    .LoadShowsHeaders = true,
    .HeaderEndsRepaint = false,
};

const PlayerTraits XY{
    .Caption = "XY - CueList",
    .Levels = &ShowState::XYLevels,
    .OtherLevels = &ShowState::ABLevels,
    .Player = 2,
    .Mark = 1,
    .FadeRank = TimerRank::FadeXY,
    .EndsManualClear = &ShowState::XYEndsManualClear,
    .GoColoursButtons = true,
    .FadeEndColoursButtons = true,
    .AttachKeepsLoopMarks = true,
    .StageButtonsAttach = true,
    .MinimisedSkipsRedraw = true,
    .ResetClearsLevels = true,
    .ResetAttachesPointer = true,
    .LoopTimesRow = PlayerTraits::LoopTimes::OfStageRow,
    .BlindCallSetsMode = true,
    .LinkLists = {"None", "XY", "AB", "EF"},
    .RowPassClearsList = true,
    .FillSortsRows = false,
    .LoadShowsHeaders = false,
    .HeaderEndsRepaint = true,
};

}  // namespace velgrove
