#include "playback/crossfade.h"

#include <algorithm>

#include "controls/numbers.h"

namespace velgrove {
namespace {

constexpr double MsPerSecond = 1000.0;
constexpr int Full = 255;

/// Percent of a ramp done `left` milliseconds before its end, in 32-bit steps as the percentages are kept.
float rampPct(std::int32_t left, std::int32_t span, bool reverse) {
  if (span == 0) return reverse ? 0.0F : 100.0F;
  const float toGo = static_cast<float>(left) / static_cast<float>(span);
  const float pct = toGo * 100.0F;
  return reverse ? pct : 100.0F - pct;
}

std::int16_t levelOfPct(float pct) {
  return roundTo<std::int16_t>(static_cast<double>(pct) / 100.0 * Full);
}

/// `weight` x `level` / 255, rounded to nearest. No product of two whole numbers lies halfway between two
/// results, so that integer arithmetic gives just what floats would.
constexpr int share(int weight, int level) {
  return (weight * level + Full / 2) / Full;
}

}  // namespace

void buildTimeline(QueuePlayerState& state, std::int32_t start) {
  state.FadeStartTime = start;
  state.FadeEndTime =
      roundTo<std::int32_t>(state.FadeDelay * MsPerSecond + start + state.FadeUp * MsPerSecond);
  state.DownEndTime = roundTo<std::int32_t>(state.FadeDown * MsPerSecond + start);
  state.UpStartTime = roundTo<std::int32_t>(state.FadeDelay * MsPerSecond + start);
  state.UpEndTime = roundTo<std::int32_t>(state.FadeUp * MsPerSecond + state.UpStartTime);
  state.DownSpan = roundTo<std::int32_t>(state.FadeDown * MsPerSecond);
  state.UpSpan = narrow<std::int32_t>(std::int64_t{state.UpEndTime} - state.UpStartTime);
}

std::int16_t GetCurrentLookPctDone(QueuePlayerState& state, std::int32_t now) {
  if (now > state.DownEndTime) return Full;
  state.CurrentLookPct =
      rampPct(narrow<std::int32_t>(std::int64_t{state.DownEndTime} - now), state.DownSpan, state.Reverse);
  return state.CurrentLookLevel = levelOfPct(state.CurrentLookPct);
}

std::int16_t GetNextLookPctDone(QueuePlayerState& state, std::int32_t now) {
  if (now < state.UpStartTime || now > state.UpEndTime) return 0;
  state.NextLookPct =
      rampPct(narrow<std::int32_t>(std::int64_t{state.UpEndTime} - now), state.UpSpan, state.Reverse);
  return state.NextLookLevel = levelOfPct(state.NextLookPct);
}

void DoScale(const QueuePlayerState& state, std::array<std::int16_t, ChannelCount>& levels, int channels) {
  const int stageWeight = Full - state.CurrentLookLevel;
  const int nextWeight = state.NextLookLevel;
  const bool balanced = stageWeight + nextWeight <= Full;
  const int last = std::min(channels, ChannelCount);

  for (int i = 0; i < last; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const int stage = share(stageWeight, state.CurrentLook[at]);
    const int next = share(nextWeight, state.NextLook[at]);
    int out = stage + next;
    if (!balanced)
      out = stage >= next ? stage + (Full - stageWeight) * state.NextLook[at]
                          : next + (Full - nextWeight) * state.CurrentLook[at];
    if (out > Full) {
      levels.back() = narrow<std::int16_t>(out);
      return;
    }
    levels[at] = static_cast<std::int16_t>(out);
  }
  if (channels > ChannelCount) (void)channelIndex(ChannelCount + 1);
}

}  // namespace velgrove
