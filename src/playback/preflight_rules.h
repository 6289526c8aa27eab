#pragma once

#include <array>
#include <bitset>
#include <memory>
#include <string>
#include <vector>

#include "playback/player_traits.h"
#include "playback/preflight.h"

/// The rules of the check, a function each, and what they look at: the lists as a player would show them.
namespace velgrove::preflight {

/// A row as the row pass makes it.
struct Row {
  std::string text;
  std::shared_ptr<const clsQueueEntry> shown;  ///< the cue that it was made for
  std::shared_ptr<const clsQueueEntry> found;  ///< the cue that its text leads to; null when there is none
};

/// One of the two lists. Rows count from 1.
struct CueList {
  const PlayerTraits* traits = nullptr;
  Finding::Where where = Finding::Where::Show;
  bool present = false;
  std::vector<Row> rows{};
  std::vector<std::shared_ptr<const clsQueueEntry>> hidden{};  ///< cues without a row
  SetLoop loop{};

  [[nodiscard]] int count() const { return static_cast<int>(rows.size()); }
  /// The cue that a player takes for a row; null for a row that isn't there or leads nowhere.
  [[nodiscard]] const clsQueueEntry* cueOf(int row) const;
  /// The row that a link finds by a text; 0 when there is none.
  [[nodiscard]] int rowOf(const std::string& text) const;
};

/// Everything that a rule can look at, and where it puts its findings.
struct Check {
  const CheckedShow& show;
  std::array<CueList, 2> lists;         ///< AB, XY
  std::bitset<ChannelCount> patched{};  ///< channels with a fixture, on any view
  std::vector<Finding> findings{};

  /// The list that a link names; null for other names.
  [[nodiscard]] const CueList* listOf(const std::string& name) const;
};

/// A finding about a cue.
[[nodiscard]] Finding about(const CueList& list, const clsQueueEntry& cue, Finding::What what,
                            std::string text);

[[nodiscard]] CueList makeList(const CheckedShow& show, const PlayerTraits& traits);
[[nodiscard]] std::bitset<ChannelCount> patchedChannels(clsProject& project);

// Of the file and the lists
void findDamage(Check& check);
void findListsWithoutPlayer(Check& check);
void findHiddenCues(Check& check);
void findUnknownNumbers(Check& check);
void findTimesBelowZero(Check& check);
// Of the fades
void findBadFades(Check& check);
void findBadLoops(Check& check);
void findDarkChannels(Check& check);
// Of the links
void findMissingTargets(Check& check);
void findEndlessLinks(Check& check);
// Of the patch
void findMissingChannels(Check& check);
void findSharedChannels(Check& check);
void findPositionChannels(Check& check);

}  // namespace velgrove::preflight
