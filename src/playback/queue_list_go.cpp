// Go, Stop and resume of a player, and what happens when a fade ends.

#include "playback/crossfade.h"
#include "playback/queue_list.h"

namespace velgrove {

void QueueList::cmdGoForward_Click() {
  if (State.Paused) {
    cmdGoResume_Click();
    return;
  }
  if (State.NextCue == -1) {
    m_machine.boxes.show({.text = "At end of show - no more cues left"});
    return;
  }
  if (!cmdGoForward.Enabled) return;

  if (m_traits.GoColoursButtons) SetActionButtons(false, true);
  m_errors.steps([&] { takeTimes(searchRow(State.StageCue).get()); },
                 [&] {
                   const auto next = searchRow(State.NextCue);
                   State.MasterGoList = next == nullptr ? "None" : next->QueueListMasterGo;
                   State.MasterGoNumber = next == nullptr ? "None" : next->QueueNumberMasterGo.value_or("");
                 },
                 [&] {
                   if (State.FadeUp == 0 && State.FadeDown == 0)
                     ShowFixtureLevelsForSelectedCue(State.NextCue, "live");
                 });
  m_show.XYEndsManualClear = true;
  m_show.ABEndsManualClear = true;
  // Copies: the link can come back to this list and take the next cue's link there.
  m_errors.run([&, list = State.MasterGoList, number = State.MasterGoNumber] {
    m_wiring.SimultaneousStart(list, number);
  });
  m_show.ClearManual = true;
  m_errors.run([&] { buildTimeline(State, m_machine.timeGetTime()); });
  SetupCrossFade();
  startTimer(false);
  AttachPointerToStageCue();
}

void QueueList::startTimer(bool reverse) {
  State.Paused = false;
  State.Reverse = reverse;
  State.Fading = true;
  if (Window.Loaded) q_timer.setEnabled(true);  // the show can be closed while a box holds up its Go
}

/// The times of a cue in seconds. Where there is none, since a loop was cleared or a link went to row 1, the
/// last fade's times stay.
void QueueList::takeTimes(const clsQueueEntry* entry) {
  if (entry == nullptr) return keepTimes();
  State.FadeUp = entry->Up;
  State.FadeDown = entry->Down;
  State.FadeDelay = entry->Delay;
}

/// Reads the last fade's times back from its timeline: a resume has left them in milliseconds.
void QueueList::keepTimes() {
  constexpr double MsPerSecond = 1000;
  const std::int64_t delay = std::int64_t{State.UpStartTime} - State.DownEndTime + State.DownSpan;
  State.FadeUp = State.UpSpan / MsPerSecond;
  State.FadeDown = State.DownSpan / MsPerSecond;
  State.FadeDelay = static_cast<double>(delay) / MsPerSecond;
}

void QueueList::cmdStop_Click() {
  State.RestAtStop = restOfFade();
  SetActionButtons(true, false);
  State.Fading = false;
  q_timer.setEnabled(false);
  State.Paused = true;
}

void QueueList::cmdGoResume_Click() {
  SetActionButtons(false, true);
  if (State.Reverse)
    cmdGoReverse_Click();
  else
    cmdForward_Click();
}

/// Slides the whole timeline so that the down ramp goes on where it stopped; the up ramp follows from that.
void QueueList::cmdForward_Click() {
  SetActionButtons(false, true);
  const std::int32_t now = m_machine.timeGetTime();
  m_errors.steps(
      [&] {
        takeTimes(searchRow(State.StageCue).get());
        constexpr double MsPerSecond = 1000;
        State.FadeUp *= MsPerSecond;
        State.FadeDown *= MsPerSecond;
        State.FadeDelay *= MsPerSecond;
      },
      [&] {
        const auto left = static_cast<float>((100.0 - State.CurrentLookPct) / 100.0);
        State.DownEndTime = roundTo<std::int32_t>(now + roundHalfEven(left * State.FadeDown));
        State.UpStartTime = roundTo<std::int32_t>(State.DownEndTime - State.FadeDown + State.FadeDelay);
        State.UpEndTime =
            roundTo<std::int32_t>(State.DownEndTime - State.FadeDown + State.FadeDelay + State.FadeUp);
        State.DownSpan = roundTo<std::int32_t>(State.FadeDown);
        State.UpSpan = narrow<std::int32_t>(std::int64_t{State.UpEndTime} - State.UpStartTime);
        State.FadeEndTime = State.UpEndTime;
      });
  State.FadeStartTime = m_machine.timeGetTime();
  startTimer(false);
}

/// The resume of a fade that runs back. Its times are taken as they stand, in seconds on a timeline of
/// milliseconds; no command starts a fade backwards.
void QueueList::cmdGoReverse_Click() {
  const std::int32_t now = m_machine.timeGetTime();
  m_errors.steps(
      [&] { takeTimes(searchRow(State.NextCue - 1).get()); },
      [&] {
        State.DownEndTime = roundTo<std::int32_t>(State.CurrentLookPct / 100.0 * State.FadeDown + now);
        State.UpStartTime = roundTo<std::int32_t>(now + State.FadeDelay);
        State.UpEndTime = roundTo<std::int32_t>(State.NextLookPct / 100.0 * State.FadeUp + State.UpStartTime);
        State.DownSpan = roundTo<std::int32_t>(State.FadeDown);
        State.UpSpan = roundTo<std::int32_t>(State.FadeUp);
        State.FadeEndTime = State.UpEndTime;
      });
  State.FadeStartTime = m_machine.timeGetTime();
  startTimer(true);
}

void QueueList::SetActionButtons(bool go, bool stop) {
  cmdGoForward.Enabled = true;
  cmdStop.Enabled = stop;
  cmdGoForward.BackColour = go ? BrightGreen : Grey;
  cmdStop.BackColour = stop ? BrightGreen : Grey;
}

void QueueList::q_timer_Timer() {
  const std::int32_t now = m_machine.timeGetTime();
  if (now >= State.FadeEndTime) {
    q_timer.setEnabled(false);
    bool goesOn = false;
    m_errors.run([&] { goesOn = ProcessLoop(); });
    if (!goesOn) {
      endFade();
      return;
    }
  }
  m_errors.run([&] {
    State.CurrentLookLevel = GetCurrentLookPctDone(State, now);
    SetCurrentLookProgress(State.CurrentLookLevel);
    State.NextLookLevel = GetNextLookPctDone(State, now);
    SetNextLookProgress(State.NextLookLevel);
    DoScale(State, levels(), m_show.NumChannels);
  });
}

void QueueList::endFade() {
  State.Fading = false;
  q_timer.setEnabled(false);
  if (State.Paused) {
    ProcessPause();
  } else if (State.Reverse) {
    State.Reverse = false;
  } else {
    if (State.LoopSkipAdvance)
      State.LoopSkipAdvance = false;
    else
      AdvanceQueues();
    if (m_traits.FadeEndColoursButtons) SetActionButtons(true, false);
  }
  UpdateListView();
}

/// The stage moves on by one row, wherever the next mark stood.
void QueueList::AdvanceQueues() {
  if (State.NextCue == -1) return;
  m_errors.steps(
      [&] {
        if (State.StageCue == State.CueCount - 1) {
          ++State.StageCue;
          State.NextCue = -1;
        } else if (State.CueCount == 2) {
          State.StageCue = 2;
          State.NextCue = -1;
        } else if (State.StageCue == State.CueCount) {
          State.StageCue = 1;
          State.NextCue = 2;
        } else {
          ++State.StageCue;
          State.NextCue = narrow<std::int16_t>(State.StageCue + 1);
        }
      },
      [&] {
        if (m_show.*m_traits.EndsManualClear) m_show.ClearManual = false;
      },
      [&] { AttachPointerToStageCue(); },
      [&] {
        State.PointerCue = State.StageCue;
        updateMarkHeaders();
      });
}

/// The answer for a fade that ends while stopped; unlike AdvanceQueues it follows the next mark.
void QueueList::ProcessPause() {
  m_errors.steps(
      [&] {
        if (State.StageCue <= State.NextCue) {
          if (State.StageCue < State.CueCount) {
            State.StageCue = State.NextCue;
            State.NextCue = narrow<std::int16_t>(State.StageCue + 1);
          }
          State.Paused = false;
        } else if (State.NextCue == 2 && State.StageCue == 3) {
          State.StageCue = 2;
          State.NextCue = 3;
        } else {
          State.StageCue = State.NextCue;
          State.NextCue = narrow<std::int16_t>(State.StageCue + 1);
        }
        if (State.NextCue > State.CueCount) State.NextCue = -1;
      },
      [&] { updateMarkHeaders(); });
}

}  // namespace velgrove
