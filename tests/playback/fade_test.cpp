// What a Go and a stop do to the marks, the players and the wire. The rehearsal's tests reckon the levels of
// fades frame by frame.

#include <gtest/gtest.h>

#include "support/scripted_desk.h"

namespace velgrove::test {
namespace {

/// Blackout, a bright cue 1 and the cue that the case fades to; the times of cue 1 govern that fade.
ShowMaker twoLooks(int up, int down, int delay, Look from, Look to) {
  ShowMaker maker;
  maker.xy = {{.number = 1, .up = up, .down = down, .delay = delay, .look = std::move(from)},
              {.number = 2, .look = std::move(to)}};
  return maker;
}

/// The desk with cue 1 on stage at time 0.
struct OnStage : ScriptedDesk {
  explicit OnStage(const ShowMaker& maker) : ScriptedDesk(maker) { tool("ID_QPlus"); }
};

TEST(Fade, FallsAndRisesLinearlyAndStopsShortOfTheLastTick) {
  OnStage desk(twoLooks(2, 2, 0, {{1, 200}}, {{1, 100}}));
  ASSERT_EQ(desk.xy().State.StageCue, 2);
  desk.tool("ID_Go");
  desk.runTo(990);
  EXPECT_NEAR(desk.level(1), 150, 2);
  desk.runTo(1980);
  const int lastMixed = desk.level(1);
  EXPECT_EQ(desk.xy().State.StageCue, 2);
  desk.runTo(2010);
  EXPECT_EQ(desk.xy().State.StageCue, 3) << "the marks move at the end";
  EXPECT_EQ(desk.level(1), lastMixed) << "and no last mix corrects the level";
  EXPECT_NEAR(lastMixed, 100, 3);
  EXPECT_FALSE(desk.xy().q_timer.enabled());
}

TEST(Fade, ZeroTimesMoveTheMarksAtTheFirstTickOrBehindTheDelay) {
  for (const int delay : {0, 1}) {
    OnStage desk(twoLooks(0, 0, delay, {{1, 200}}, {{1, 90}}));
    desk.tool("ID_Go");
    EXPECT_EQ(desk.level(1), 90);
    desk.runTo(1000 * delay);
    EXPECT_EQ(desk.xy().State.StageCue, 2);
    desk.runTo(1000 * delay + 30);
    EXPECT_EQ(desk.xy().State.StageCue, 3);
    EXPECT_EQ(desk.level(1), delay == 0 ? 90 : 0) << "the look of a delayed zero-time cue never comes";
  }
}

TEST(Fade, AZeroUpMovesTheMarksAndKeepsTheOldLook) {
  OnStage desk(twoLooks(0, 5, 0, {{1, 200}}, {{1, 90}}));
  desk.tool("ID_Go");
  desk.runTo(30);
  EXPECT_EQ(desk.xy().State.StageCue, 3);
  EXPECT_EQ(desk.level(1), 200);
}

TEST(Fade, BothPlayersRunAtOnceAndTheHigherOneWins) {
  ShowMaker maker = twoLooks(1, 1, 0, {}, {{1, 100}, {2, 50}});
  maker.ab = {{.number = 1, .look = {{1, 40}, {2, 80}}}};
  maker.blackoutUp = maker.blackoutDown = 1;
  OnStage desk(maker);
  desk.tool("ID_Go");
  desk.ab().cmdGoForward.click();
  desk.runTo(1200);
  EXPECT_NEAR(desk.wire(1), 97, 3);
  EXPECT_NEAR(desk.wire(2), 78, 3);
  EXPECT_EQ(desk.ab().State.StageCue, 2);
}

TEST(Fade, ARunningFadeKeepsTheLooksThatItTookAtItsStart) {
  OnStage desk(twoLooks(2, 2, 0, {{1, 0}}, {{1, 200}}));
  desk.tool("ID_Go");
  desk.xy().State.QueueData->colQueueEntries().item(3)->Values.fill(0);
  desk.runTo(1020);
  EXPECT_NEAR(desk.level(1), 100, 3);
}

TEST(Stop, HoldsTheLevelsAndGoResumesWhereTheDownRampStood) {
  OnStage desk(twoLooks(10, 10, 0, {{1, 200}}, {{2, 200}}));
  desk.tool("ID_Go");
  desk.runTo(4000);
  desk.tool("ID_StopFade");
  const int held = desk.level(1);
  EXPECT_NEAR(held, 120, 2);
  desk.runTo(9000);
  EXPECT_EQ(desk.level(1), held);
  desk.tool("ID_Go");
  desk.runTo(9030);
  EXPECT_NEAR(desk.level(1), held, 2);
  desk.runTo(14970);
  EXPECT_EQ(desk.xy().State.StageCue, 2);
  desk.runTo(15060);
  EXPECT_EQ(desk.xy().State.StageCue, 3) << "six seconds after the resume";
}

TEST(Stop, WithoutAFadeMakesTheNextGoAResume) {
  OnStage desk(twoLooks(2, 2, 0, {{1, 200}}, {{1, 100}}));
  desk.tool("ID_StopFade");
  desk.tool("ID_Go");
  EXPECT_TRUE(desk.xy().State.Fading);
  EXPECT_EQ(desk.xy().State.NextLook[0], 0) << "no look was set up";
  EXPECT_FALSE(desk.xy().State.Paused);
}

TEST(Go, WhileAFadeRunsBeginsTheSameCrossfadeAgain) {
  OnStage desk(twoLooks(2, 2, 0, {{1, 200}}, {{1, 0}}));
  desk.tool("ID_Go");
  desk.runTo(1500);
  desk.tool("ID_Go");
  desk.runTo(1530);
  EXPECT_NEAR(desk.level(1), 197, 2);
  EXPECT_EQ(desk.xy().State.StageCue, 2);
}

TEST(Go, AtTheEndOfTheShowSaysSoAndChangesNothing) {
  OnStage desk(twoLooks(0, 0, 0, {{1, 200}}, {{1, 90}}));
  desk.tool("ID_Go");
  desk.runTo(60);
  desk.expectBox("At end of show - no more cues left");
  desk.tool("ID_Go");
  EXPECT_FALSE(desk.xy().State.Fading);
  EXPECT_FALSE(desk.xy().State.Paused);
  EXPECT_EQ(desk.level(1), 90);
}

TEST(Go, WipesManualLevelsUntilTheFadeEnds) {
  OnStage desk(twoLooks(1, 1, 0, {}, {{2, 10}}));
  desk.show.ManualLevels[0] = 77;
  desk.runTo(90);
  EXPECT_EQ(desk.wire(1), 77);
  desk.tool("ID_Go");
  desk.runTo(150);
  EXPECT_EQ(desk.show.ManualLevels[0], 0);
  desk.show.ManualLevels[0] = 55;
  desk.runTo(300);
  EXPECT_EQ(desk.wire(1), 0);
  desk.runTo(1110);
  desk.show.ManualLevels[0] = 55;
  desk.runTo(1200);
  EXPECT_EQ(desk.wire(1), 55);
}

TEST(Go, AnUnpatchedFixtureRaisesOneBoxAndTheOthersFollow) {
  ShowMaker maker = twoLooks(1, 1, 0, {}, {{2, 200}});
  maker.channels = {1, 0, 2};
  ScriptedDesk desk(maker);
  desk.expectSystemError();
  desk.tool("ID_QPlus");
  desk.expectSystemError();
  desk.tool("ID_Go");
  desk.expectSystemError();  // the display's first tick; later ones say nothing new
  desk.runTo(2000);
  EXPECT_NEAR(desk.wire(2), 200, 8);
}

}  // namespace
}  // namespace velgrove::test
