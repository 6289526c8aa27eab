// The operator at the cue lists.

#include "robot/hand.h"

namespace velgrove::robot {
namespace {

/// A player whose window shows; none otherwise.
QueueList* playerAtHand(Hand& hand) {
  QueueList* const player = (hand.chance.oneIn(2) ? hand.windows().ABQ : hand.windows().XYQ).get();
  if (player == nullptr || !player->Window.Visible) return nullptr;
  hand.note(player->Window.Caption.substr(0, 2));
  return player;
}

template <class Work>
bool atPlayer(Hand& hand, Work work) {
  QueueList* const player = playerAtHand(hand);
  if (player == nullptr) return false;
  work(*player);
  return true;
}

struct NamedButton {
  const char* name;
  Button QueueList::*button;
};

template <std::size_t count>
bool pressOneOf(Hand& hand, const NamedButton (&buttons)[count]) {
  return atPlayer(hand, [&](const QueueList& player) {
    const NamedButton& chosen = hand.chance.of(buttons);
    hand.press(player.*chosen.button, chosen.name);
  });
}

bool go(Hand& hand) {
  return atPlayer(hand, [&](const QueueList& player) { hand.press(player.cmdGoForward, "Go"); });
}

bool moveStage(Hand& hand) {
  static constexpr NamedButton Buttons[] = {{"Stop", &QueueList::cmdStop},
                                            {"Q+", &QueueList::cmdAdvanceStageCue},
                                            {"Q-", &QueueList::cmdDecrementStageCue},
                                            {"Make Stage", &QueueList::cmdMakeStageCue},
                                            {"Make Next", &QueueList::cmdMakeNextCue},
                                            {"Live", &QueueList::cmdLiveView},
                                            {"Blind", &QueueList::cmdBlindView},
                                            {"Loop", &QueueList::cmdLoop}};
  return pressOneOf(hand, Buttons);
}

// ---- Editing

constexpr int MostCues = 60;  // what a long run settles at

bool lengthen(Hand& hand) {
  return atPlayer(hand, [&](const QueueList& player) {
    if (player.ListView2.count() > MostCues) return hand.press(player.cmdDeleteCue, "Delete");
    const bool insert = hand.chance.oneIn(3);
    // Its rows are filled anew without being cleared when a cue lands between two others.
    if (insert && player.Window.Caption == AB.Caption) hand.watch.excuseRows(player);
    insert ? hand.press(player.cmdInsertCue, "Insert") : hand.press(player.cmdRecord, "Record");
  });
}

/// Copy saves the number that stands in the editor as well, and leaves its row.
bool isRenumbered(const QueueList& player) {
  const int row = player.State.PointerCue;
  return row < 1 || row > player.ListView2.count() || player.CueNum.text() != player.ListView2.text(row);
}

bool changeCue(Hand& hand) {
  return atPlayer(hand, [&](const QueueList& player) {
    switch (hand.chance.below(4)) {
      case 0:
        return hand.press(player.cmdUpdate, "Update");
      case 1:
        if (isRenumbered(player)) hand.watch.excuseRows(player);
        return hand.press(player.cmdCopy, "Copy");
      case 2:
        return hand.press(player.cmdPaste, "Paste");
      default:
        return hand.press(player.cmdDeleteCue, "Delete");
    }
  });
}

bool typeTimes(Hand& hand) {
  return atPlayer(hand, [&](QueueList& player) {
    constexpr int Longest = 20;  // seconds
    hand.typeNumber(player.CueUp, "Up", 0, Longest);
    hand.typeNumber(player.CueDown, "Down", 0, Longest);
    hand.typeNumber(player.CueDelay, "Delay", 0, hand.chance.oneIn(4) ? Longest : 0);
  });
}

bool typeNumber(Hand& hand) {
  return atPlayer(hand, [&](QueueList& player) {
    hand.typeNumber(player.CueNum, "Num", 0, player.ListView2.count());
    if (hand.chance.oneIn(3)) return;
    constexpr int Enter = 13;
    constexpr int SomeOtherKey = 65;
    player.CueNum.KeyUp(hand.chance.oneIn(8) ? SomeOtherKey : Enter);
  });
}

bool typeDescription(Hand& hand) {
  return atPlayer(hand, [&](QueueList& player) { hand.type(player.CueDesc, "Desc", wordText(hand.chance)); });
}

bool spin(Hand& hand) {
  return atPlayer(hand, [&](QueueList& player) {
    UpDown* const spinners[] = {&player.UpDownCueNum, &player.UpDownCueUp, &player.UpDownCueDown,
                                &player.UpDownCueDelay};
    static constexpr const char* Names[] = {"Num", "Up", "Down", "Delay"};
    const auto which = static_cast<std::size_t>(hand.chance.below(4));
    for (int times = hand.chance.between(1, 5); times > 0; --times) hand.step(*spinners[which], Names[which]);
  });
}

bool link(Hand& hand) {
  return atPlayer(hand, [&](QueueList& player) {
    hand.choose(player.QListCombo, "link list");
    hand.choose(player.QListNumberCombo, "link number");
  });
}

// ---- The mouse over the rows

/// A row, a mark's row, or beside them all.
int someRow(Hand& hand, const QueueList& player) {
  const int rows = player.ListView2.count();
  switch (hand.chance.below(4)) {
    case 0:
      return player.State.StageCue >= 0 && player.State.StageCue <= rows ? player.State.StageCue : 0;
    case 1:
      return player.State.NextCue >= 0 && player.State.NextCue <= rows ? player.State.NextCue : 0;
    default:
      return hand.chance.below(rows + 1);
  }
}

bool clickRow(Hand& hand) {
  return atPlayer(hand, [&](QueueList& player) {
    const int row = someRow(hand, player);
    hand.note("click row " + std::to_string(row));
    player.ListView2_MouseDown(row);
    player.ListView2_MouseUp(row);
  });
}

bool pressRow(Hand& hand) {
  return atPlayer(hand, [&](QueueList& player) {
    const int row = someRow(hand, player);
    hand.note("press row " + std::to_string(row));
    player.ListView2_MouseDown(row);
  });
}

bool moveOverRows(Hand& hand) {
  return atPlayer(hand, [&](QueueList& player) {
    for (int times = hand.chance.between(1, 4); times > 0; --times) {
      const int row = someRow(hand, player);
      hand.note("move to row " + std::to_string(row));
      player.ListView2_MouseMove(row);
    }
  });
}

bool releaseRow(Hand& hand) {
  return atPlayer(hand, [&](QueueList& player) {
    if (!player.State.MouseIsDown) return;
    const int row = someRow(hand, player);
    hand.note("release at row " + std::to_string(row));
    player.ListView2_MouseUp(row);
  });
}

// ---- The window

bool changeWindow(Hand& hand) {
  return atPlayer(hand, [&](QueueList& player) {
    if (hand.chance.oneIn(2)) {
      hand.note("close");
      static_cast<void>(player.Form_QueryUnload(false));
      return;
    }
    constexpr WindowState States[] = {WindowState::Normal, WindowState::Minimised, WindowState::Maximised};
    player.Window.WindowState = hand.chance.of(States);
  });
}

constexpr Deed Deeds[] = {
    {"Go", 40, go},
    {"buttons of the marks", 30, moveStage},
    {"Record or Insert", 12, lengthen},
    {"Update, Copy, Paste, Delete", 14, changeCue},
    {"times", 12, typeTimes},
    {"number of the cue", 8, typeNumber},
    {"description", 6, typeDescription},
    {"spinners", 10, spin},
    {"link", 8, link},
    {"click on a row", 20, clickRow},
    {"press on a row", 8, pressRow},
    {"motion over rows", 12, moveOverRows},
    {"release over a row", 10, releaseRow},
    {"player's window", 2, changeWindow},
};

}  // namespace

std::span<const Deed> playerDeeds() {
  return Deeds;
}

}  // namespace velgrove::robot
