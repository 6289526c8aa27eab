#pragma once

#include "core/show_state.h"

namespace velgrove {

/// One merge pass over channels 1 to NumChannels: per channel the highest of cue players, DMX input, manual
/// level and submasters goes to DMXOutput, and which of them won to LevelSource. On equal levels the order of
/// that list decides, so that a submaster wins only with a strictly higher level.
///
/// A player's level that is no byte ends the pass at its channel (Fault::Overflow), a NumChannels above 512
/// behind channel 512 (Fault::Subscript); the channels before keep their new values. The pass doesn't
/// allocate.
void mergeLevels(ShowState& state);

}  // namespace velgrove
