#include "playback/cue_rows.h"

#include <algorithm>

#include "controls/numbers.h"

namespace velgrove {

float nextRowNumber(const colQueueEntries& entries, float last) {
  const float floor = tenthAbove(last);
  float best = HighestRowNumber;
  for (const auto& entry : entries)
    if (entry->EntryNum >= floor && entry->EntryNum <= best) best = entry->EntryNum;
  return best;
}

std::string rowText(float number) {
  return number == 0 ? formatFixed2(0) : formatCueNumber(number);
}

std::shared_ptr<clsQueueEntry> findCue(const colQueueEntries& entries, float number, std::int16_t mark) {
  const auto found = std::ranges::find_if(
      entries, [&](const auto& entry) { return entry->EntryNum == number && entry->EntryQueueList == mark; });
  return found == entries.end() ? nullptr : *found;
}

}  // namespace velgrove
