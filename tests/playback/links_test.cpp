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
  EXPECT_EQ(desk.ab().lblStageNum.Caption + " " + desk.ab().lblNextNum.Caption, "4.00 5.00");
  EXPECT_EQ(desk.house.desk.frame.SSActiveToolBars1.tool("ID_CueWindow").Caption.find("4.00"),
            std::string::npos)
      << "the cue panel stays with XY";
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

TEST(Link, ToBlackoutFadesOutWithTheTimesOfTheLastFadeAlsoOfOneThatWasStopped) {
  ScriptedDesk desk(linked("AB", "0.00"));
  QueueList& ab = desk.ab();
  click(ab, 2);
  ab.cmdMakeStageCue.click();
  ab.cmdGoForward.click();
  desk.runTo(100);
  ab.cmdStop.click();
  ab.cmdGoForward.click();
  desk.runTo(20000);
  desk.tool("ID_Go");
  EXPECT_EQ(ab.State.StageCue, 0);
  EXPECT_EQ(ab.State.NextCue, 1);
  EXPECT_EQ(ab.State.UpSpan, 3000) << "the seconds of cue 4";
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

}  // namespace
}  // namespace velgrove::test
