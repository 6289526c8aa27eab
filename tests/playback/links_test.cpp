// Cue links, loops and the trigger: Gos that start other Gos.

#include <gtest/gtest.h>

#include "support/scripted_desk.h"

namespace velgrove::test {
namespace {

ShowMaker linked(const std::string& list, std::optional<std::string> target) {
  ShowMaker maker;
  maker.blackoutUp = maker.blackoutDown = 2;
  maker.xy = {
      {.number = 1, .up = 2, .down = 2, .look = {{1, 100}}, .list = list, .target = std::move(target)},
      {.number = 2, .look = {{1, 200}}}};
  maker.ab = {{.number = 4, .up = 3, .down = 3, .look = {{2, 60}}}, {.number = 5, .look = {{2, 160}}}};
  return maker;
}

TEST(Link, OfXYStartsABFromTheRowBeforeItsTarget) {
  ScriptedDesk desk(linked("AB", "5.00"));
  desk.tool("ID_Go");
  EXPECT_EQ(desk.ab().State.StageCue, 2);
  EXPECT_EQ(desk.ab().State.NextCue, 3);
  EXPECT_TRUE(desk.ab().State.Fading);
  EXPECT_TRUE(desk.show.ClearManual);
  EXPECT_TRUE(desk.show.XYEndsManualClear);
  EXPECT_FALSE(desk.show.ABEndsManualClear);
  EXPECT_EQ(desk.ab().Window.WindowState, WindowState::Minimised) << "the Go came from the frame";
  desk.runTo(2010);
  EXPECT_FALSE(desk.show.ClearManual) << "XY's end lowers it";
  EXPECT_TRUE(desk.ab().State.Fading) << "AB runs on its own times";
  desk.runTo(3030);
  EXPECT_EQ(desk.ab().State.StageCue, 3);
  EXPECT_NEAR(desk.wire(2), 160, 5);
}

TEST(Link, OfABStartsXYWhichThenEndsTheManualClear) {
  ShowMaker maker = linked("None", "None");
  maker.ab[0].list = "XY";
  maker.ab[0].target = "1.00";
  ScriptedDesk desk(maker);
  desk.ab().cmdGoForward.click();
  EXPECT_TRUE(desk.xy().State.Fading);
  EXPECT_EQ(desk.xy().State.NextCue, 2);
  desk.runTo(2040);
  EXPECT_FALSE(desk.show.ClearManual);
  EXPECT_EQ(desk.ab().State.StageCue, 2);
}

TEST(Link, WithoutListOrTargetStartsNothingAndLeavesTheFlags) {
  for (const auto& [list, target] : {std::pair("None", "5.00"), std::pair("AB", "None")}) {
    ScriptedDesk desk(linked(list, target));
    desk.tool("ID_Go");
    EXPECT_FALSE(desk.ab().State.Fading);
    EXPECT_TRUE(desk.show.ABEndsManualClear);
    EXPECT_TRUE(desk.show.XYEndsManualClear);
  }
}

TEST(Link, ToARowThatIsNotThereLeavesTheMarks) {
  ScriptedDesk desk(linked("AB", "9.00"));
  desk.expectSystemError();
  desk.tool("ID_Go");
  EXPECT_EQ(desk.ab().State.StageCue, 1);
  EXPECT_EQ(desk.ab().State.NextCue, 2);
  EXPECT_TRUE(desk.xy().State.Fading);
}

TEST(Link, ThatStartsItselfEndsWithOneError) {
  ScriptedDesk desk(linked("XY", "1.00"));
  desk.expectSystemError();
  desk.tool("ID_Go");
  EXPECT_TRUE(desk.xy().State.Fading);
  desk.runTo(2010);
  EXPECT_EQ(desk.xy().State.StageCue, 2);
}

TEST(Trigger, EachByteIsAGoOfXY) {
  ScriptedDesk desk(linked("None", "None"));
  desk.house.box.addTriggers(1);
  desk.xy().Window.Visible = false;
  desk.runTo(1000);
  EXPECT_TRUE(desk.xy().State.Fading);
  EXPECT_FALSE(desk.ab().State.Fading);
  EXPECT_TRUE(desk.xy().Window.Visible);
  EXPECT_EQ(desk.xy().Window.WindowState, WindowState::Minimised);
  EXPECT_TRUE(desk.xy().State.ListRepaintDone);
  EXPECT_FALSE(desk.show.GoFromInput);
}

TEST(Loop, WalksItsRowsAndStopsOnTheLast) {
  ShowMaker maker;
  for (int n = 1; n <= 4; ++n)
    maker.xy.push_back({.number = static_cast<float>(n), .up = 1, .down = 1, .look = {{1, 10 * n}}});
  maker.ab = maker.xy;
  ScriptedDesk desk(maker);
  for (QueueList* player : {&desk.ab(), &desk.xy()}) {
    auto& state = player->State;
    state.LoopStartRow = 2;
    state.LoopLastRow = 4;
    state.LoopCount = 2;
    state.LoopSkipAdvance = true;
    state.StageCue = 2;
    state.NextCue = 3;
    std::string walk;
    const auto start = std::chrono::duration_cast<Milliseconds>(desk.house.clock.now()).count();
    player->cmdGoForward.click();
    for (int ms = 30; state.Fading && ms < 20000; ms += 30) {
      const auto from = state.StageCue;
      const auto to = state.NextCue;
      desk.runTo(start + ms);
      if (state.StageCue != from) walk += std::to_string(from) + ">" + std::to_string(to) + " ";
    }
    EXPECT_EQ(walk, "2>3 3>4 4>2 2>3 3>4 ") << player->Window.Caption;
    EXPECT_EQ(state.StageCue, 4);
    EXPECT_EQ(state.NextCue, 5);
    EXPECT_FALSE(state.LoopSkipAdvance);
  }
}

}  // namespace
}  // namespace velgrove::test
