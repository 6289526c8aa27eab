#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "playback/queue_list.h"

namespace velgrove::test {

/// The numbers of a player's rows as it shows them: "0.00 1.00 2.00".
inline std::string rows(const QueueList& player) {
  std::string all;
  for (int row = 1; row <= player.ListView2.count(); ++row)
    all += (row == 1 ? "" : " ") + player.ListView2.text(row);
  return all;
}

/// The numbers of a player's cues, in ascending order, written like rows.
inline std::string cues(const QueueList& player) {
  std::vector<float> numbers;
  for (const auto& cue : player.State.QueueData->colQueueEntries()) numbers.push_back(cue->EntryNum);
  std::ranges::sort(numbers);
  std::string all;
  for (const float number : numbers) all.append(all.empty() ? "" : " ").append(formatFixed2(number));
  return all;
}

/// The cells of a row behind its number: "0 0 0 Blackout None None".
inline std::string cells(const QueueList& player, int row) {
  const auto& texts = player.ListView2.row(row).Texts;
  std::string all = texts[1];
  for (std::size_t column = 2; column <= 6; ++column) all += " " + texts[column];
  return all;
}

/// The small icons of all rows, one digit each.
inline std::string icons(const QueueList& player) {
  std::string all;
  for (const auto& row : player.ListView2.rows()) all += std::to_string(row.SmallIcon);
  return all;
}

/// Stage, next and pointer: "1 2 1".
inline std::string marks(const QueueList& player) {
  const auto& state = player.State;
  return std::to_string(state.StageCue) + " " + std::to_string(state.NextCue) + " " +
         std::to_string(state.PointerCue);
}

/// The cue of a number, which must be there.
inline clsQueueEntry& cue(const QueueList& player, float number) {
  for (const auto& entry : player.State.QueueData->colQueueEntries())
    if (entry->EntryNum == number) return *entry;
  throw RunTimeError(Fault::ObjectMissing, "the test's cue " + formatFixed2(number));
}

/// Types the three times into the editors.
inline void typeTimes(QueueList& player, const char* down, const char* delay, const char* up) {
  player.CueDown.setText(down);
  player.CueDelay.setText(delay);
  player.CueUp.setText(up);
}

}  // namespace velgrove::test
