#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

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

  // Forced repaint of the list
  bool ListRepainting = false;
  bool ListRepaintDone = false;
};

}  // namespace velgrove
