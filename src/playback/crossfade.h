#pragma once

#include <array>
#include <cstdint>

#include "playback/player_state.h"

/// The arithmetic of a crossfade: a timeline, how far both looks are at an instant, and the mix of the two.
namespace velgrove {

inline constexpr int FadeStepInterval = 30;  ///< ms between the steps of a fade, unless the timings change it

/// Lays the timeline from `start` on out of FadeUp, FadeDown and FadeDelay in seconds: the stage look falls
/// over Down from the start; the next look waits Delay and rises over Up; the fade lasts Delay + Up, whatever
/// Down is. Fault::Overflow when an instant leaves 32 bits.
void buildTimeline(QueuePlayerState& state, std::int32_t start);

/// How much of the stage look has gone at an instant, 0 to 255.
[[nodiscard]] std::int16_t GetCurrentLookPctDone(QueuePlayerState& state, std::int32_t now);

/// How much of the next look has come at an instant, 0 to 255; 0 before its ramp and after it.
[[nodiscard]] std::int16_t GetNextLookPctDone(QueuePlayerState& state, std::int32_t now);

/// Mixes both looks by CurrentLookLevel and NextLookLevel into a player's levels, channels 1 to `channels`.
///
/// While the weights of both looks sum up to no more than full, a channel is the plain sum. Above that the
/// stronger look takes the channel and the other's missing weight is added unscaled; the first channel whose
/// sum passes 255 goes to channel 512 instead and ends the pass. Operators know how such fades behave and
/// build cues on it. Fault::Overflow when a sum leaves 16 bits, Fault::Subscript behind channel 512; the
/// channels before are mixed. Doesn't allocate.
void DoScale(const QueuePlayerState& state, std::array<std::int16_t, ChannelCount>& levels, int channels);

}  // namespace velgrove
