#pragma once

#include <cstdint>
#include <optional>

#include "model/cues.h"

namespace velgrove {

/// What a crossfade comes to that a player would run.
struct FadeOutcome {
  /// A channel's mix leaves the range of a level, and the merge stops there.
  struct Excess {
    std::int32_t ms = 0;  ///< since the Go, at the first step that does
    int channel = 0;      ///< the first one then
    /// The highest mix of the fade; nothing when not even the mix could hold it (16 bits).
    std::optional<int> highest;
  };
  /// The channel that ends farthest from the look that the fade went to.
  struct Rest {
    int channel = 0;
    int level = 0;   ///< what stands when the marks move
    int wanted = 0;  ///< what the cue has
  };
  std::optional<Excess> excess;
  /// Nothing where the levels end as near as the last step of a ramp brings them, nor behind an excess.
  std::optional<Rest> rest;
};

/// Runs a crossfade as a player does after a Go, with the steps of its timer and `crossfade`'s arithmetic.
/// `times` has its seconds; both looks hold the fixtures' channels alone. Steps that mix alike are taken
/// once, so that a fade of hours costs no more than one of seconds. Doesn't allocate.
[[nodiscard]] FadeOutcome tryFade(const clsQueueEntry& times, const ChannelBytes& stage,
                                  const ChannelBytes& next);

}  // namespace velgrove
