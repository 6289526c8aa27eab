#pragma once

#include <memory>
#include <string>

#include "model/cues.h"

/// How the cues of a list come to rows, and how a row is found back to its cue.
namespace velgrove {

/// No row shows a cue above this number.
inline constexpr float HighestRowNumber = 256.0F;

/// The number that the next row takes behind a row numbered `last` (-1 before the first): the lowest number
/// a tenth or more above it, whoever owns the cue; HighestRowNumber when there is none.
[[nodiscard]] float nextRowNumber(const colQueueEntries& entries, float last);

/// What a row says of its cue's number: "12.50", and "0.00" for Blackout.
[[nodiscard]] std::string rowText(float number);

/// The first cue with exactly this number and owner mark; null when there is none.
[[nodiscard]] std::shared_ptr<clsQueueEntry> findCue(const colQueueEntries& entries, float number,
                                                     std::int16_t mark);

}  // namespace velgrove
