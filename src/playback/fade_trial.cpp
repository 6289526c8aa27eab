#include "playback/fade_trial.h"

#include <algorithm>
#include <cstdlib>
#include <ranges>

#include "controls/faults.h"
#include "playback/crossfade.h"

namespace velgrove {
namespace {

constexpr int Full = 255;
constexpr std::int16_t Unmixed = -1;  // no mix of two looks gives it
using Levels = std::array<std::int16_t, ChannelCount>;

/// One mix of both looks.
struct Mix {
  int channel = 0;             ///< the first one whose level is none; 0 when all are
  std::optional<int> highest;  ///< its level, when 16 bits hold it
};

class FadeTrial {
 public:
  FadeTrial(const clsQueueEntry& times, const ChannelBytes& stage, const ChannelBytes& next) {
    m_state.CurrentLook = stage;
    m_state.NextLook = next;
    m_state.FadeUp = times.Up;
    m_state.FadeDown = times.Down;
    m_state.FadeDelay = times.Delay;
    const bool atOnce = times.Up == 0 && times.Down == 0;
    std::ranges::copy(atOnce ? next : stage, m_levels.begin());
    buildTimeline(m_state, 0);
  }

  FadeOutcome run() {
    FadeOutcome outcome;
    const int last = (m_state.FadeEndTime - 1) / FadeStepInterval;
    for (int step = 1; step <= last; step = nextOther(step, last)) {
      (void)weights(step);
      const Mix mixed = mix();
      if (mixed.channel != 0) note(outcome.excess, step, mixed);
    }
    if (!outcome.excess) outcome.rest = rest();
    return outcome;
  }

 private:
  struct Weights {
    std::int16_t gone;
    std::int16_t come;
    friend bool operator==(const Weights&, const Weights&) = default;
  };

  Weights weights(int step) {
    const std::int32_t now = step * FadeStepInterval;
    m_state.CurrentLookLevel = GetCurrentLookPctDone(m_state, now);
    m_state.NextLookLevel = GetNextLookPctDone(m_state, now);
    return {.gone = m_state.CurrentLookLevel, .come = m_state.NextLookLevel};
  }

  /// The first step behind this one that weighs the looks otherwise. Neither weight ever turns back.
  int nextOther(int step, int last) {
    const Weights now = weights(step);
    const auto later = std::views::iota(step + 1, last + 1);
    const auto other = std::ranges::partition_point(later, [&](int at) { return weights(at) == now; });
    return step + 1 + static_cast<int>(other - later.begin());
  }

  Mix mix() {
    Levels mixed;
    mixed.fill(Unmixed);
    std::optional<int> highest;
    try {
      DoScale(m_state, mixed, ChannelCount);
      highest = mixed.back();
    } catch (const RunTimeError&) {  // NOLINT(bugprone-empty-catch): the sum left 16 bits
    }
    const auto stopped = std::ranges::find(mixed, Unmixed) - mixed.begin();
    if (stopped < std::ssize(mixed)) return {.channel = channelOf(stopped), .highest = highest};
    if (mixed.back() > Full) return {.channel = ChannelCount, .highest = highest};
    m_levels = mixed;
    return {};
  }

  static void note(std::optional<FadeOutcome::Excess>& excess, int step, const Mix& mixed) {
    if (!excess) {
      excess = {.ms = step * FadeStepInterval, .channel = mixed.channel, .highest = mixed.highest};
    } else if (!mixed.highest || !excess->highest) {
      excess->highest.reset();
    } else {
      excess->highest = std::max(*excess->highest, *mixed.highest);
    }
  }

  /// How far a level may be from the look's at the last step: what both ramps still had to go, and rounding.
  [[nodiscard]] int tolerance(std::size_t at) const {
    constexpr int Rounding = 2;
    const auto step = [](int level, std::int32_t span) {
      return span <= 0 ? 0 : level * FadeStepInterval / span;
    };
    return step(m_state.NextLook[at], m_state.UpSpan) + step(m_state.CurrentLook[at], m_state.DownSpan) +
           Rounding;
  }

  [[nodiscard]] std::optional<FadeOutcome::Rest> rest() const {
    std::optional<FadeOutcome::Rest> rest;
    int farthest = 0;
    for (std::size_t at = 0; at < m_levels.size(); ++at) {
      const int off = std::abs(m_levels[at] - m_state.NextLook[at]);
      if (off <= farthest || off <= tolerance(at)) continue;
      farthest = off;
      rest = {.channel = channelOf(static_cast<std::ptrdiff_t>(at)),
              .level = m_levels[at],
              .wanted = m_state.NextLook[at]};
    }
    return rest;
  }

  static int channelOf(std::ptrdiff_t index) { return static_cast<int>(index) + 1; }

  QueuePlayerState m_state;
  Levels m_levels{};
};

}  // namespace

FadeOutcome tryFade(const clsQueueEntry& times, const ChannelBytes& stage, const ChannelBytes& next) {
  return FadeTrial(times, stage, next).run();
}

}  // namespace velgrove
