// Chases on the hand-moved clock, between merge and send, and the cue link that starts one.

#include <gtest/gtest.h>

#include "support/scripted_desk.h"

namespace velgrove::test {
namespace {

ShowMaker linkedToEffect(const std::string& number) {
  ShowMaker maker;
  maker.xy = {{.number = 1, .list = "EF", .target = number}};
  return maker;
}

TEST(Chase, LightsOneChannelAfterTheOtherUntilItsTimeIsUp) {
  ScriptedDesk desk(linkedToEffect(" 1    "));
  EffectsQueue& effects = desk.house.desk.windows.Effects;
  effects.addEffectToList("1", "3", "110", "2");
  desk.tool("ID_Go");
  std::string lit;
  for (int tick = 1; tick <= 7; ++tick) {
    desk.runTo(tick * 110);  // no merge falls on these instants, but for the fourth
    for (int channel = 1; channel <= 4; ++channel)
      if (desk.show.DMXOutput[channelIndex(channel)] == 255) lit += std::to_string(channel);
    lit += '.';
  }
  EXPECT_EQ(lit, "1.2.3..2...") << "the last channel of the last pass stays dark";
  EXPECT_FALSE(effects.ChaseTimer.enabled());
  EXPECT_EQ(effects.Window.WindowState, WindowState::Minimised) << "the Go came from the frame";
}

TEST(Chase, OfAnEffectThatIsNotThereSaysSo) {
  ScriptedDesk beyond(linkedToEffect(" 40000 "));
  beyond.expectBox("Effect  40000  not registered");
  beyond.tool("ID_Go");
  EXPECT_TRUE(beyond.xy().State.Fading);

  ScriptedDesk next(linkedToEffect("1"));
  next.expectSystemError();  // one past the last row
  next.tool("ID_Go");
  EXPECT_FALSE(next.house.desk.windows.Effects.ChaseTimer.enabled());
}

TEST(Chase, OutsideTheUniverseFailsAtItsStepOncePerOnset) {
  ScriptedDesk desk(linkedToEffect("1"));
  desk.house.desk.windows.Effects.addEffectToList("511", "600", "50", "1");
  desk.tool("ID_Go");
  desk.expectSystemError();
  desk.runTo(1000);
}

}  // namespace
}  // namespace velgrove::test
