// Every move of the marks, row by row, in both players; the modes; and where the two players differ.

#include <gtest/gtest.h>

#include "support/scripted_desk.h"

namespace velgrove::test {
namespace {

using Marks = std::pair<int, int>;  ///< stage and next

struct Move {
  const char* name;
  void (*act)(QueueList&);
  int rows;
  Marks before;
  int pointer;
  Marks after;
};

constexpr auto advance = [](QueueList& player) { player.cmdAdvanceStageCue.click(); };
constexpr auto decrement = [](QueueList& player) { player.cmdDecrementStageCue.click(); };
constexpr auto makeStage = [](QueueList& player) { player.cmdMakeStageCue.click(); };
constexpr auto makeNext = [](QueueList& player) { player.cmdMakeNextCue.click(); };
constexpr auto reset = [](QueueList& player) { player.ResetStageCue(); };
constexpr auto fadeEnds = [](QueueList& player) { player.AdvanceQueues(); };
constexpr auto pauseEnds = [](QueueList& player) { player.ProcessPause(); };
constexpr auto go = [](QueueList& player) { player.cmdGoForward.click(); };

const Move Moves[] = {
    {"LoadOfOneRow", [](QueueList&) {}, 1, {1, -1}, 1, {1, -1}},
    {"GoLeavesTheMarks", go, 4, {1, 2}, 1, {1, 2}},
    {"FadeEndWithoutNext", fadeEnds, 4, {2, -1}, 1, {2, -1}},
    {"FadeEndBeforeTheLast", fadeEnds, 4, {3, 4}, 1, {4, -1}},
    {"FadeEndOfTwoRows", fadeEnds, 2, {1, 2}, 1, {2, -1}},
    {"FadeEndOnTheLast", fadeEnds, 4, {4, 2}, 1, {1, 2}},
    {"FadeEndInTheMiddle", fadeEnds, 4, {1, 2}, 1, {2, 3}},
    {"FadeEndDoesNotFollowAMovedNext", fadeEnds, 5, {1, 4}, 1, {2, 3}},
    {"AdvanceFromTheLastWrapsPastBlackout", advance, 4, {4, -1}, 1, {2, 3}},
    {"AdvanceOntoTheLast", advance, 4, {3, 4}, 1, {4, -1}},
    {"AdvanceInTheMiddle", advance, 4, {1, 2}, 1, {2, 3}},
    {"AdvanceNeedsThreeRows", advance, 2, {1, 2}, 1, {1, 2}},
    {"DecrementOnTheFirst", decrement, 4, {1, 3}, 1, {1, 3}},
    {"Decrement", decrement, 4, {3, 4}, 1, {2, 3}},
    {"DecrementFromBesideTheList", decrement, 4, {0, 1}, 1, {1, 2}},
    {"DecrementNeedsThreeRows", decrement, 2, {2, -1}, 1, {2, -1}},
    {"ResetOnTheFirst", reset, 4, {1, 3}, 1, {1, 3}},
    {"Reset", reset, 4, {4, -1}, 1, {1, 2}},
    {"ResetNeedsThreeRows", reset, 2, {2, -1}, 1, {2, -1}},
    {"MakeStageOfTheStage", makeStage, 4, {2, 3}, 2, {2, 3}},
    {"MakeStage", makeStage, 5, {1, 2}, 3, {3, 2}},
    {"MakeStageOfTheNext", makeStage, 5, {1, 3}, 3, {3, 4}},
    {"MakeStageOfTheLast", makeStage, 5, {1, 2}, 5, {5, -1}},
    {"MakeNext", makeNext, 5, {1, 2}, 4, {1, 4}},
    {"MakeNextOfTheStage", makeNext, 5, {2, 3}, 2, {2, 3}},
    {"PauseEndFollowsNext", pauseEnds, 5, {1, 4}, 1, {4, 5}},
    {"PauseEndAtTheLast", pauseEnds, 5, {1, 5}, 1, {5, -1}},
    {"PauseEndOfThreeAndTwo", pauseEnds, 5, {3, 2}, 1, {2, 3}},
    {"PauseEndBackwards", pauseEnds, 5, {5, 3}, 1, {3, 4}},
};

TEST(Marks, MoveAsTheTableSaysInBothPlayers) {
  for (const Move& move : Moves) {
    ScriptedDesk desk(showOf(move.rows));
    for (QueueList* player : {&desk.ab(), &desk.xy()}) {
      player->State.StageCue = static_cast<std::int16_t>(move.before.first);
      player->State.NextCue = static_cast<std::int16_t>(move.before.second);
      player->State.PointerCue = static_cast<std::int16_t>(move.pointer);
      move.act(*player);
      EXPECT_EQ(Marks(player->State.StageCue, player->State.NextCue), move.after)
          << move.name << ", " << player->Window.Caption;
    }
  }
}

TEST(Marks, AFadeThatEndsWhileStoppedGoesOnAloneOnlyWhenItWentForward) {
  ScriptedDesk desk(showOf(5));
  QueueList& player = desk.xy();
  const auto stillPaused = [&player](std::int16_t stage, std::int16_t next) {
    player.State.StageCue = stage;
    player.State.NextCue = next;
    player.State.Paused = true;
    player.ProcessPause();
    return player.State.Paused;
  };
  EXPECT_FALSE(stillPaused(1, 4));
  EXPECT_TRUE(stillPaused(3, 2));
  EXPECT_TRUE(stillPaused(5, 3));
}

TEST(Marks, AStageButtonBringsTheLookAtOnce) {
  ScriptedDesk desk(showOf(4));
  for (QueueList* player : {&desk.ab(), &desk.xy()}) {
    player->cmdAdvanceStageCue.click();
    player->cmdAdvanceStageCue.click();
    EXPECT_EQ(player->levels()[0], 20);
    player->cmdDecrementStageCue.click();
    EXPECT_EQ(player->levels()[0], 10);
    click(*player, 4);
    EXPECT_EQ(player->levels()[0], 10) << "a click alone changes nothing on stage";
    player->cmdMakeStageCue.click();
    EXPECT_EQ(player->levels()[0], 30);
  }
}

TEST(Marks, TheStageButtonsSwitchEachOtherAtTheEnds) {
  ScriptedDesk desk(showOf(3));
  QueueList& player = desk.xy();
  player.cmdAdvanceStageCue.click();
  player.cmdAdvanceStageCue.click();
  EXPECT_FALSE(player.cmdAdvanceStageCue.Enabled);
  EXPECT_EQ(player.State.StageCue, 3);
  player.cmdAdvanceStageCue_Click();
  EXPECT_EQ(player.State.StageCue, 3) << "a disabled button does nothing";
  for (int i = 0; i < 3; ++i) player.cmdDecrementStageCue.click();
  EXPECT_FALSE(player.cmdDecrementStageCue.Enabled);
  EXPECT_TRUE(player.cmdAdvanceStageCue.Enabled);
  EXPECT_EQ(player.State.StageCue, 1);
}

TEST(Marks, ResetOfXYAlsoZeroesBothPlayersAndOfABNeither) {
  ScriptedDesk desk(showOf(2));
  desk.show.ABLevels.fill(9);
  desk.show.XYLevels.fill(9);
  desk.ab().ResetStageCue();
  EXPECT_EQ(desk.show.ABLevels[5], 9);
  desk.xy().ResetStageCue();
  EXPECT_EQ(desk.show.ABLevels[5], 0) << "even in a list of fewer than three rows";
  EXPECT_EQ(desk.show.XYLevels[5], 0);
}

TEST(Modes, LiveShowsThePointerCueAndGoesBackToTheStageCue) {
  ScriptedDesk desk(showOf(4));
  QueueList& player = desk.xy();
  player.cmdAdvanceStageCue.click();
  click(player, 4);
  player.cmdLiveView.click();
  EXPECT_TRUE(desk.show.LiveOn);
  EXPECT_EQ(desk.level(1), 30);
  EXPECT_EQ(player.State.StageCue, 2) << "the marks stay";
  EXPECT_EQ(player.cmdLiveView.BackColour, QueueList::Green);
  player.cmdLiveView.click();
  EXPECT_FALSE(desk.show.LiveOn);
  EXPECT_EQ(desk.level(1), 10);
  EXPECT_EQ(player.State.PointerCue, 2);
}

TEST(Modes, BlindNeverReachesTheStage) {
  ScriptedDesk desk(showOf(4));
  QueueList& player = desk.ab();
  player.cmdAdvanceStageCue.click();
  click(player, 4);
  player.cmdBlindView.click();
  EXPECT_TRUE(desk.show.BlindOn);
  EXPECT_EQ(desk.show.BlindLevels[0], 30);
  EXPECT_EQ(player.levels()[0], 10);
  player.cmdBlindView.click();
  EXPECT_FALSE(desk.show.BlindOn);
  EXPECT_EQ(player.State.PointerCue, 2);
}

TEST(Modes, LiveThenBlindBringsTheStageLookBack) {
  ScriptedDesk desk(showOf(4));
  QueueList& player = desk.xy();
  player.cmdAdvanceStageCue.click();
  click(player, 4);
  player.cmdLiveView.click();
  player.cmdBlindView.click();
  EXPECT_TRUE(desk.show.BlindOn);
  EXPECT_FALSE(desk.show.LiveOn);
  EXPECT_EQ(desk.level(1), 10);
  EXPECT_EQ(desk.show.BlindLevels[0], 30);
}

TEST(Modes, AreSharedByBothPlayers) {
  ScriptedDesk desk(showOf(4));
  desk.ab().cmdBlindView.click();
  EXPECT_EQ(desk.xy().cmdBlindView.BackColour, QueueList::Green);
  desk.xy().cmdLiveView.click();
  EXPECT_TRUE(desk.show.LiveOn);
  EXPECT_FALSE(desk.show.BlindOn);
  for (const QueueList* player : {&desk.ab(), &desk.xy()}) {
    EXPECT_EQ(player->cmdLiveView.BackColour, QueueList::Green) << player->Window.Caption;
    EXPECT_EQ(player->cmdBlindView.BackColour, 0);
  }
}

TEST(Rows, ComeInOrderOfNumberAndSkipWhatIsCloserThanATenth) {
  ShowMaker maker;
  maker.xy = {{.number = 10}, {.number = 1.5F}, {.number = 1}, {.number = 1.1F}};
  ScriptedDesk desk(maker);
  std::vector<std::string> rows;
  for (const auto& row : desk.xy().ListView2.rows()) rows.push_back(row.Texts[0]);
  EXPECT_EQ(rows, (std::vector<std::string>{"0.00", "1.00", "1.10", "1.50", "10.00"}));
  EXPECT_EQ(desk.xy().State.CueCount, 5);
  EXPECT_EQ(desk.xy().lblNextNum.Caption, "1.00");
}

TEST(Rows, ACueAbove256EndsThePassWithOneBox) {
  ShowMaker maker;
  maker.xy = {{.number = 1}, {.number = 300}};
  ScriptedDesk desk(maker, 1);
  EXPECT_EQ(desk.xy().ListView2.count(), 2);
}

TEST(Rows, AClickSelectsAndFillsTheEditors) {
  ScriptedDesk desk(showOf(4));
  QueueList& player = desk.ab();
  player.cmdDeleteCue.Enabled = false;
  click(player, 3);
  EXPECT_EQ(player.State.PointerCue, 3);
  EXPECT_EQ(player.CueNum.text(), "2.00");
  EXPECT_TRUE(player.cmdDeleteCue.Enabled);
  EXPECT_EQ(player.ListView2.row(3).SmallIcon, QueueList::PointerIcon);
  EXPECT_EQ(player.ListView2.row(1).SmallIcon, 0);
  click(player, 0);
  EXPECT_EQ(player.State.PointerCue, 3);
}

}  // namespace
}  // namespace velgrove::test
