// The crossfades of both lists, each as the players would run it, and what of a cue stays dark.

#include <algorithm>
#include <cstdlib>

#include "controls/numbers.h"
#include "playback/fade_trial.h"
#include "playback/preflight_rules.h"

namespace velgrove::preflight {
namespace {

using What = Finding::What;

bool hasTimes(const clsQueueEntry& cue) {
  return cue.Up >= 0 && cue.Down >= 0 && cue.Delay >= 0;
}

ChannelBytes onFixtures(const ChannelBytes& levels, const std::bitset<ChannelCount>& patched) {
  ChannelBytes look{};
  for (std::size_t at = 0; at < look.size(); ++at)
    if (patched[at]) look[at] = levels[at];
  return look;
}

std::string seconds(double value) {
  return formatPlain(value) + " s";
}

bool isCutOff(const clsQueueEntry& times) {
  return times.Down > times.Delay + times.Up;
}

std::string downIsLonger(const clsQueueEntry& times) {
  return "Down " + seconds(times.Down) + " is longer than Delay + Up " + seconds(times.Delay + times.Up);
}

/// Why a fade doesn't end with its look.
std::string whyWrong(const clsQueueEntry& times) {
  if (times.Up == 0 && times.Down == 0) return "Up and Down are 0, and the Delay darkens what came at once";
  if (times.Up == 0) return "Up is 0 and Down isn't, so that the next look never comes";
  return downIsLonger(times) + ", and its rest stays";
}

std::string excessText(const std::string& fade, const FadeOutcome::Excess& excess,
                       const clsQueueEntry& times) {
  constexpr double MsPerSecond = 1000;
  const std::string highest = excess.highest ? std::to_string(*excess.highest) : "more than 32767";
  return fade + " leaves the range after " + seconds(excess.ms / MsPerSecond) + ", first on channel " +
         std::to_string(excess.channel) + " (up to " + highest + ", full is 255)" +
         (isCutOff(times) ? ": " + downIsLonger(times) : "");
}

std::string restText(const std::string& fade, const FadeOutcome::Rest& rest, const clsQueueEntry& times) {
  return fade + " ends with channel " + std::to_string(rest.channel) + " at " + std::to_string(rest.level) +
         " instead of " + std::to_string(rest.wanted) + ": " + whyWrong(times);
}

/// A fade between two rows, by the times of a third; without the cues there is none to run. `times` gets the
/// finding, since that is where it's mended.
void tryRows(Check& check, const CueList& list, int timesRow, int stageRow, int nextRow, const char* kind) {
  const clsQueueEntry* const times = list.cueOf(timesRow);
  const clsQueueEntry* const stage = list.cueOf(stageRow);
  const clsQueueEntry* const next = list.cueOf(nextRow);
  if (times == nullptr || stage == nullptr || next == nullptr || !hasTimes(*times)) return;
  const auto outcome =
      tryFade(*times, onFixtures(stage->Values, check.patched), onFixtures(next->Values, check.patched));
  const auto text = [&](int row) { return list.rows[static_cast<std::size_t>(row) - 1].text; };
  const std::string fade = kind + ("from " + text(stageRow)) + " to " + text(nextRow);
  if (outcome.excess) {
    Finding finding = about(list, *times, What::OutOfRange, excessText(fade, *outcome.excess, *times));
    finding.excess = {
        .ms = outcome.excess->ms, .channel = outcome.excess->channel, .highest = outcome.excess->highest};
    check.findings.push_back(std::move(finding));
  } else if (outcome.rest) {
    check.findings.push_back(about(list, *times, What::WrongLook, restText(fade, *outcome.rest, *times)));
  }
}

/// "7, 9-12"
std::string rangesOf(const std::bitset<ChannelCount>& channels) {
  std::string text;
  for (std::size_t first = 0; first < channels.size();) {
    std::size_t end = first;
    while (end < channels.size() && channels[end]) ++end;
    if (end > first) {
      text += (text.empty() ? "" : ", ") + std::to_string(first + 1);
      if (end > first + 1) text += "-" + std::to_string(end);
    }
    first = end + 1;
  }
  return text;
}

/// What a loop plays behind its Go: each pass runs on the times of the row before, and the first fade of the
/// next one on those that the player takes there.
void tryLoop(Check& check, const CueList& list) {
  const auto [passes, first, last] = list.loop;
  constexpr const char* Kind = "in the loop, the fade ";
  for (int row = first + 1; row < last; ++row) tryRows(check, list, row - 1, row, row + 1, Kind);
  if (passes < 2) return;
  tryRows(check, list, last - 1, last, first, Kind);
  const bool ofStage = list.traits->LoopTimesRow == PlayerTraits::LoopTimes::OfStageRow;
  tryRows(check, list, ofStage ? last : first - 1, first, first + 1, Kind);
}

}  // namespace

std::bitset<ChannelCount> patchedChannels(clsProject& project) {
  std::bitset<ChannelCount> patched;
  for (const auto& view : project.colViews())
    for (const auto& fixture : view->colFixtures())
      if (isChannel(fixture->Channel)) patched.set(channelIndex(fixture->Channel));
  return patched;
}

// ---- The rules

/// Go after Go the cue before stands on stage, and its times govern. A link puts the stage there as well.
void findBadFades(Check& check) {
  for (const CueList& list : check.lists)
    for (int row = 1; row < list.count(); ++row) tryRows(check, list, row, row, row + 1, "the fade ");
}

void findBadLoops(Check& check) {
  for (const CueList& list : check.lists) {
    const auto [passes, first, last] = list.loop;
    if (passes <= 0) continue;
    const auto say = [&, where = list.where](const std::string& what) {
      check.findings.push_back({.what = What::LoopRows,
                                .where = where,
                                .text = "the loop that is set from row " + std::to_string(first) +
                                        " to row " + std::to_string(last) + " " + what});
    };
    if (first < 1 || last > list.count())
      say("leaves the list of " + std::to_string(list.count()) + " rows");
    else if (last <= first)
      say("never ends");
    else
      tryLoop(check, list);
  }
}

void findDarkChannels(Check& check) {
  for (const CueList& list : check.lists)
    for (const Row& row : list.rows) {
      std::bitset<ChannelCount> dark;
      for (std::size_t at = 0; at < dark.size(); ++at)
        dark[at] = row.shown->Values[at] > 0 && !check.patched[at];
      if (dark.none()) continue;
      check.findings.push_back(about(list, *row.shown, What::NoFixture,
                                     "no fixture has " +
                                         std::string(dark.count() == 1 ? "channel " : "channels ") +
                                         rangesOf(dark) + ", lit in this cue"));
    }
}

}  // namespace velgrove::preflight
