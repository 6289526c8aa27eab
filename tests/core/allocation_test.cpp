// The real-time path: merge, fade step and send never allocate.

#include <gtest/gtest.h>

#include "support/allocation_count.h"
#include "support/scripted_desk.h"

namespace velgrove::test {
namespace {

TEST(RealTimePath, DoesNotAllocateWhileBothPlayersFadeAChaseRunsAndFramesGoOut) {
  ShowMaker maker;
  maker.channels.clear();
  Look bright;
  for (int channel = 1; channel <= 512; ++channel) {
    maker.channels.push_back(channel);
    bright.emplace_back(channel, channel % 200);
  }
  maker.blackoutUp = maker.blackoutDown = 5;
  maker.ab = maker.xy = {{.number = 1, .look = bright}};
  ScriptedDesk desk(maker);
  desk.tool("ID_Go");
  desk.ab().cmdGoForward.click();
  EffectsQueue& effects = desk.house.desk.windows.Effects;
  effects.addEffectToList("1", "5", "20", "99");
  effects.doEffect("1");
  desk.runTo(200);

  const int framesBefore = desk.frames;
  const auto before = allocationCount();
  desk.runTo(3000);
  EXPECT_EQ(allocationCount() - before, 0U);
  EXPECT_EQ(desk.frames - framesBefore, 94);
  EXPECT_GT(desk.wire(199), 0);
}

}  // namespace
}  // namespace velgrove::test
