#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "controls/widgets.h"
#include "model/cues.h"

namespace velgrove {

/// What one cue player remembers. There are two independent blocks; nothing of them is saved with the show.
/// Rows are numbered from 1 in list order; clock values are milliseconds of `timeGetTime`.
struct QueuePlayerState {
  // Cue position
  std::int16_t StageCue = 1;    ///< row whose look is on stage; 0 only when the list has been emptied
  std::int16_t NextCue = -1;    ///< row that Go fades to; -1 none
  std::int16_t PointerCue = 1;  ///< row that the operator has selected; the editors and Blind show it
  std::int16_t CueCount = 1;    ///< rows in the list
  std::shared_ptr<clsQueueData> QueueData;
  std::int16_t CueSpinValue = 999;  ///< last value of the cue spinner, to tell up from down

  // Fade run
  bool Fading = false;   ///< from Go or resume until the fade ends or Stop
  bool Paused = false;   ///< Stop was pressed; the next Go resumes
  bool Reverse = false;  ///< the fade runs backwards
  double FadeUp = 0;     ///< seconds when set by Go or a loop pass, milliseconds when set by a resume
  double FadeDown = 0;
  double FadeDelay = 0;
  std::int32_t FadeStartTime = 0;
  std::int32_t FadeEndTime = 0;
  std::int32_t DownEndTime = 0;
  std::int32_t UpStartTime = 0;
  std::int32_t UpEndTime = 0;
  std::int32_t DownSpan = 0;  ///< lengths of the ramps, milliseconds
  std::int32_t UpSpan = 0;
  float CurrentLookPct = 0;           ///< percent of the stage look gone, 0 to 100
  float NextLookPct = 0;              ///< percent of the next look risen
  std::int16_t CurrentLookLevel = 0;  ///< the same, 0 to 255
  std::int16_t NextLookLevel = 0;
  ChannelBytes
      CurrentLook{};        ///< levels of the look that goes out, on the patched channels of the current view
  ChannelBytes NextLook{};  ///< levels of the look that comes up

  // Loop
  float LoopStartCue = 0;
  float LoopLastCue = 0;
  std::int16_t LoopCount = 0;  ///< passes still to run; 0 no loop
  std::int16_t LoopStartRow = 0;
  std::int16_t LoopLastRow = 0;
  bool LoopSkipAdvance = false;  ///< the next fade end doesn't move the marks

  // Link of the next cue, copied at Go
  std::string MasterGoList;
  std::string MasterGoNumber;

  // Clipboard of the editing commands
  float CopiedUp = 0;  ///< seconds
  float CopiedDown = 0;
  float CopiedDelay = 0;
  std::string CopiedDesc;
  ChannelBytes CopiedLevels{};

  // Drag of the stage and next marks
  bool MouseIsDown = false;
  bool Dragging = false;   ///< from the first move off a marked row until the drop
  bool DragMoved = false;  ///< the mark has been over another row, so that the release is a drop and no click
  bool DraggingStage = false;
  bool DraggingNext = false;
  std::int16_t DragStartRow = 0;  ///< row where the button went down; 0 over no row
  std::int16_t DragRow = 0;       ///< row that the mark is over
  std::int16_t DragPrevRow = 0;   ///< row of the step before
  Colour DragColor = 0;
  Colour DragPrevColor = 0;

  // Forced repaint of the list: a drag is painted from a step that asked for it, Repainting, until something
  // else counts as its end, Done
  bool ListRepainting = false;
  bool ListRepaintDone = false;

  // What of a fade is for the eye
  std::optional<std::int16_t> StageProgress;  ///< bar in the stage row, how much has gone, 0 to 255
  std::optional<std::int16_t> NextProgress;   ///< bar in the next row, how much has come
  std::int64_t RestAtStop = 0;                ///< milliseconds that the stopped fade had still to run
};

}  // namespace velgrove
