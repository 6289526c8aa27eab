#include "player_commands.h"

namespace velgrove {
namespace {

using PlayerCommand = Command<Action (*)(Player, Words)>;

QueueList& listOf(const Operator& op, Player player) {
  return (op.desk.windows.*player)();
}

template <Button QueueList::*Control>
Action press(Player player, Words) {
  return [player](Operator& op) { (listOf(op, player).*Control).click(); };
}

Action reset(Player player, Words) {
  return [player](Operator& op) { listOf(op, player).ResetStageCue(); };
}

// ---- Rows

int readRow(std::string_view word) {
  constexpr int MostRows = 32767;
  return static_cast<int>(readWhole("ROW", word, 1, MostRows));
}

/// A click on a row; false when the list has none there.
bool clickRow(QueueList& list, int row) {
  if (row > list.ListView2.count()) return false;
  list.ListView2_MouseDown(row);
  list.ListView2_MouseUp(row);
  return true;
}

std::string noRow(const QueueList& list, int row) {
  return list.Window.Caption + " has no row " + std::to_string(row);
}

/// A click on a row, then on the button that moves a mark there. A show goes on without a mark that isn't
/// there.
template <Button QueueList::*Control>
Action mark(Player player, Words words) {
  return [player, row = readRow(words[1])](Operator& op) {
    QueueList& list = listOf(op, player);
    if (clickRow(list, row))
      (list.*Control).click();
    else
      op.note(noRow(list, row));
  };
}

/// Editing doesn't go on without its row: the next command would change another cue.
Action select(Player player, Words words) {
  return [player, row = readRow(words[1])](Operator& op) {
    QueueList& list = listOf(op, player);
    if (!clickRow(list, row)) wrong(noRow(list, row));
  };
}

// ---- Editors

template <TextBox QueueList::*Editor>
Action type(Player player, Words words) {
  return [player, text = asTyped(words.subspan(1))](Operator& op) {
    (listOf(op, player).*Editor).setText(text);
  };
}

/// The items in a sentence: "None, 0.00 or 1.00".
std::string choicesOf(const ComboBox& combo) {
  std::string text;
  const auto& items = combo.items();
  for (std::size_t at = 0; at < items.size(); ++at) {
    if (at > 0) text += at + 1 < items.size() ? ", " : " or ";
    text += asTyped(wordsOf(items[at]));
  }
  return text;
}

/// The blanks around an item are for the eye.
template <ComboBox QueueList::*Editor>
Action choose(Player player, Words words) {
  return [player, wanted = asTyped(words.subspan(1))](Operator& op) {
    QueueList& list = listOf(op, player);
    ComboBox& combo = list.*Editor;
    const auto& items = combo.items();
    const auto item = std::ranges::find_if(
        items, [&](const std::string& each) { return asTyped(wordsOf(each)) == wanted; });
    if (item == items.end()) wrong(list.Window.Caption + " offers " + choicesOf(combo) + ", not " + wanted);
    combo.choose(static_cast<int>(item - items.begin()));
  };
}

constexpr PlayerCommand Fields[] = {
    {"up", 1, 1, type<&QueueList::CueUp>},
    {"down", 1, 1, type<&QueueList::CueDown>},
    {"delay", 1, 1, type<&QueueList::CueDelay>},
    {"desc", 0, AnyNumber, type<&QueueList::CueDesc>},
    {"num", 1, 1, type<&QueueList::CueNum>},
    {"list", 1, 1, choose<&QueueList::QListCombo>},
    {"number", 1, 1, choose<&QueueList::QListNumberCombo>},
};

Action set(Player player, Words words) {
  const Words field = words.subspan(1);
  return commandOf(Fields, field, "no such field of a player").make(player, field);
}

// ---- The loop dialog

/// Fills it in and presses OK. Where the texts are no numbers it stays, and leaves by its close box.
void fillIn(frmLoop& dialog, const std::string& start, const std::string& last, const std::string& count) {
  dialog.txtStartCue.setText(start);
  dialog.txtLastCue.setText(last);
  dialog.txtLoopCount.setText(count);
  dialog.Command1.click();
  if (dialog.Window.Visible) dialog.Unload();
}

Action loop(Player player, Words words) {
  return [player, start = std::string(words[1]), last = std::string(words[2]),
          count = std::string(words[3])](Operator& op) {
    op.onWait = [&] { fillIn(op.desk.windows.Loop, start, last, count); };
    listOf(op, player).cmdLoop.click();
    op.onWait = {};
  };
}

constexpr PlayerCommand Commands[] = {
    {"go", 0, 0, press<&QueueList::cmdGoForward>},
    {"stop", 0, 0, press<&QueueList::cmdStop>},
    {"plus", 0, 0, press<&QueueList::cmdAdvanceStageCue>},
    {"minus", 0, 0, press<&QueueList::cmdDecrementStageCue>},
    {"reset", 0, 0, reset},
    {"live", 0, 0, press<&QueueList::cmdLiveView>},
    {"blind", 0, 0, press<&QueueList::cmdBlindView>},
    {"stage", 1, 1, mark<&QueueList::cmdMakeStageCue>},
    {"next", 1, 1, mark<&QueueList::cmdMakeNextCue>},
    {"select", 1, 1, select},
    {"set", 1, AnyNumber, set},
    {"record", 0, 0, press<&QueueList::cmdRecord>},
    {"update", 0, 0, press<&QueueList::cmdUpdate>},
    {"insert", 0, 0, press<&QueueList::cmdInsertCue>},
    {"delete", 0, 0, press<&QueueList::cmdDeleteCue>},
    {"copy", 0, 0, press<&QueueList::cmdCopy>},
    {"paste", 0, 0, press<&QueueList::cmdPaste>},
    {"loop", 3, 3, loop},
};

}  // namespace

Action onPlayer(Player player, Words words) {
  return commandOf(Commands, words, "no such command of a player").make(player, words);
}

}  // namespace velgrove
