#pragma once

#include "script_words.h"

namespace velgrove {

/// Finds one of the two players.
using Player = QueueList& (Windows::*)() const;

/// What a script can do at a player: press its buttons, select a row, type into its editors, ask for a loop.
/// ScriptError for words that say none of it.
[[nodiscard]] Action onPlayer(Player player, Words words);

}  // namespace velgrove
