#include "dmx/merge.h"

#include <gtest/gtest.h>

namespace velgrove {
namespace {

struct MergeCase {
  const char* name;
  int ab, xy, input, manual, submaster;
  int output;
  Source winner;
};

TEST(Merge, GivesTheHighestAndNamesItsSource) {
  const MergeCase cases[] = {
      {"AllEqual", 200, 0, 200, 200, 200, 200, Source::Queue},
      {"InputBeforeManual", 50, 0, 100, 100, 0, 100, Source::Input},
      {"InputBeforeSubmaster", 0, 0, 100, 0, 100, 100, Source::Input},
      {"ManualBeforeSubmaster", 0, 0, 0, 100, 100, 100, Source::Manual},
      {"SubmasterStrictlyAbove", 100, 100, 100, 100, 101, 101, Source::Submaster},
      {"QueueBeforeManual", 90, 100, 0, 100, 0, 100, Source::Queue},
      {"SubmasterAboveAll", 50, 0, 40, 60, 70, 70, Source::Submaster},
      {"ABAlone", 255, 0, 0, 0, 0, 255, Source::Queue},
      {"XYAlone", 0, 255, 0, 0, 0, 255, Source::Queue},
      {"LevelOnePasses", 1, 0, 0, 0, 0, 1, Source::Queue},
  };
  for (const MergeCase& c : cases) {
    ShowState show;
    show.DMXDimmers = true;
    show.ABLevels[7] = static_cast<std::int16_t>(c.ab);
    show.XYLevels[7] = static_cast<std::int16_t>(c.xy);
    show.DMXInput[7] = static_cast<std::uint8_t>(c.input);
    show.ManualLevels[7] = static_cast<std::uint8_t>(c.manual);
    show.SubLevels[7] = static_cast<std::uint8_t>(c.submaster);
    mergeLevels(show);
    EXPECT_EQ(show.DMXOutput[7], c.output) << c.name;
    EXPECT_EQ(show.LevelSource[7], static_cast<std::int16_t>(c.winner)) << c.name;
    EXPECT_EQ(show.DMXOutput[6], 0);
    EXPECT_EQ(show.LevelSource[6], static_cast<std::int16_t>(Source::Queue))
        << "a dark channel is the players'";
  }
}

TEST(Merge, ClearManualWipesTheHandsLevelsForGood) {
  ShowState show;
  show.ManualLevels[0] = 255;
  show.ClearManual = true;
  mergeLevels(show);
  show.ClearManual = false;
  mergeLevels(show);
  EXPECT_EQ(show.DMXOutput[0], 0);
}

TEST(Merge, InputActsByItsMode) {
  ShowState show;
  show.DMXInput[0] = 99;
  show.DMXSubmasters = true;
  mergeLevels(show);
  EXPECT_EQ(show.DMXOutput[0], 0);
  EXPECT_EQ(show.DMXInput[0], 99) << "kept for the submasters";
  show.DMXDimmers = true;
  mergeLevels(show);
  EXPECT_EQ(show.DMXOutput[0], 0) << "with both set the submasters have it";
  show.DMXSubmasters = false;
  mergeLevels(show);
  EXPECT_EQ(show.DMXOutput[0], 99);
  show.DMXDimmers = false;
  mergeLevels(show);
  EXPECT_EQ(show.DMXInput[0], 0) << "thrown away without a mode";
}

TEST(Merge, ALevelThatIsNoByteEndsThePassAtItsChannel) {
  ShowState show;
  show.ManualLevels.fill(10);
  show.XYLevels[511] = 256;
  EXPECT_THROW(mergeLevels(show), RunTimeError);
  EXPECT_EQ(show.DMXOutput[510], 10);
  EXPECT_EQ(show.DMXOutput[511], 0);

  show = ShowState{};
  show.ManualLevels.fill(10);
  show.ABLevels[100] = show.XYLevels[100] = -1;
  EXPECT_THROW(mergeLevels(show), RunTimeError);
  EXPECT_EQ(show.DMXOutput[99], 10);
  EXPECT_EQ(show.DMXOutput[101], 0);
}

TEST(Merge, NumChannelsBoundsThePass) {
  ShowState show;
  show.ManualLevels.fill(10);
  show.NumChannels = 100;
  mergeLevels(show);
  EXPECT_EQ(show.DMXOutput[99], 10);
  EXPECT_EQ(show.DMXOutput[100], 0);
  show.NumChannels = 0;
  show.ManualLevels.fill(20);
  mergeLevels(show);
  EXPECT_EQ(show.DMXOutput[99], 10);
  show.NumChannels = 513;
  EXPECT_THROW(mergeLevels(show), RunTimeError);
  EXPECT_EQ(show.DMXOutput[511], 20);
}

TEST(ShowState, PercentSnapsAtBothEndsAndLevelsDoNot) {
  const std::pair<int, float> percents[] = {{255, 100}, {0, 0},    {248, 100}, {8, 0},
                                            {128, 50},  {246, 96}, {10, 4}};
  for (const auto& [level, pct] : percents)
    EXPECT_EQ(DMXToPct(static_cast<std::int16_t>(level)), pct) << level;
  EXPECT_EQ(PctToDMX(100), 255);
  EXPECT_EQ(PctToDMX(50), 128);
  EXPECT_EQ(PctToDMX(1), 3);
  EXPECT_EQ(PctToDMX(0), 0);
}

}  // namespace
}  // namespace velgrove
