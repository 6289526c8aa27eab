// The texts on the fixtures.

#include "support/allocation_count.h"
#include "support/plot_rig.h"
#include "support/scripted_desk.h"

namespace velgrove::test {
namespace {

constexpr Colour Red = 255, Yellow = 65535, White = 16777215, Pink = 16744703, Blue = 16711680;

class LevelTexts : public PlotRig {
 protected:
  void put(int channel, int level, Source source = Source::Queue) {
    show.DMXOutput[channelIndex(channel)] = static_cast<std::uint8_t>(level);
    show.LevelSource[channelIndex(channel)] = static_cast<std::int16_t>(source);
    plot->TallyInputs.setEnabled(false);  // the test stands for the merge
  }
  [[nodiscard]] std::string text(ShapeNumber number) const { return shape(number).text; }
};

TEST_F(LevelTexts, ReadInPercentWithDashAndFull) {
  const auto& fixture = add(3);
  open();
  struct Case {
    int level;
    std::string text;
  };
  for (const auto& [level, expected] :
       std::vector<Case>{{0, "-"}, {8, "-"}, {9, "4"}, {128, "50"}, {246, "96"}, {247, "FL"}, {255, "FL"}}) {
    put(3, level);
    tick();
    EXPECT_EQ(text(fixture.LevelTextShape), expected) << level;
    EXPECT_EQ(fixture.Level, level);
  }
  EXPECT_EQ(text(fixture.ChannelTextShape), "3");
}

TEST_F(LevelTexts, TheColourSaysWhichSourceHoldsTheChannel) {
  const auto& fixture = add(3);
  open();
  for (const auto& [source, colour] : {std::pair(Source::Manual, Red), std::pair(Source::Queue, Yellow),
                                       std::pair(Source::Input, White), std::pair(Source::Submaster, Pink)}) {
    put(3, 128, source);
    tick();
    EXPECT_EQ(shape(fixture.LevelTextShape).colour, colour);
    EXPECT_EQ(shape(fixture.ChannelTextShape).colour, White);
  }
}

TEST_F(LevelTexts, StandInLinesBelowTheTopOfTheFixture) {
  auto& fixture = add(3, 1, {400, 300});
  show.BlindOn = true;
  open();
  const double top = extents(fixture.Shape).top;
  const ShapeNumber lines[] = {fixture.ChannelTextShape, fixture.LevelTextShape, fixture.DMXInTextShape};
  for (int line = 0; line < 3; ++line) {
    EXPECT_EQ(shape(lines[line]).at, (Point{400, top - 10 - (line * 30)}));
    EXPECT_EQ(shape(lines[line]).align, Align::Centre);
  }
}

TEST_F(LevelTexts, InBlindEveryFixtureShowsItsBlindLevelInBlue) {
  const auto& one = add(1);
  const auto& two = add(2);
  open();
  EXPECT_EQ(one.DMXInTextShape, 0);
  show.BlindOn = true;
  show.BlindLevels[1] = 128;
  tick();
  EXPECT_EQ(text(one.DMXInTextShape), "-");
  EXPECT_EQ(text(two.DMXInTextShape), "50");
  EXPECT_EQ(shape(two.DMXInTextShape).colour, Blue);
  show.BlindOn = false;
  tick();
  EXPECT_EQ(one.DMXInTextShape, 0);
  EXPECT_EQ(plot->FlpCAD1.shapesOf(2).size(), 4U);
}

TEST_F(LevelTexts, TwoFixturesOnOneChannelShowTheSame) {
  const auto& one = add(4);
  const auto& two = add(4, 2, {100, 100});
  open();
  put(4, 200, Source::Submaster);
  tick();
  EXPECT_EQ(text(one.LevelTextShape), text(two.LevelTextShape));
  EXPECT_EQ(shape(two.LevelTextShape).colour, Pink);
}

TEST_F(LevelTexts, WhatChangedIsWrittenAndAllElseIsLeftAlone) {
  const auto& one = add(1);
  const auto& two = add(2);
  open();
  put(1, 100);
  put(2, 100);
  tick();
  const unsigned before = plot->FlpCAD1.revision();
  const ShapeNumber number = two.LevelTextShape;
  show.ProjectDirty = false;
  tick();
  EXPECT_EQ(plot->FlpCAD1.revision(), before);
  EXPECT_TRUE(show.ProjectDirty) << "each display tick marks the show changed";
  put(2, 101);
  tick();
  EXPECT_EQ(plot->FlpCAD1.revision(), before + 1);
  EXPECT_EQ(text(two.LevelTextShape), "40");
  EXPECT_EQ(two.LevelTextShape, number) << "in place";
  EXPECT_EQ(text(one.LevelTextShape), "39");
}

TEST_F(LevelTexts, FollowTheirFixtureAndTakeTheirColoursBack) {
  const auto& fixture = add(1);
  open();
  plot->FlpCAD1.move(fixture.Shape, 50, -20);
  plot->FlpCAD1.setColour(fixture.ChannelTextShape, 65280);
  tick();
  EXPECT_EQ(shape(fixture.ChannelTextShape).at.x, extents(fixture.Shape).middle().x);
  EXPECT_EQ(shape(fixture.ChannelTextShape).colour, White);
}

TEST_F(LevelTexts, ADisplayTickWithoutChangesAllocatesNothing) {
  for (int channel = 1; channel <= 512; ++channel) add(channel);
  open();
  tick();
  const auto before = allocationCount();
  plot->UpdateDisplay_Timer();
  EXPECT_EQ(allocationCount(), before);
}

TEST_F(LevelTexts, AnUnpatchedFixtureShowsChannelZeroAndRaisesItsBoxOncePerOnset) {
  auto& fixture = add(0);
  open();
  EXPECT_TRUE(boxes.empty());
  EXPECT_EQ(text(fixture.ChannelTextShape), "0");
  tick();
  tick();
  EXPECT_EQ(boxes.size(), 1U);
  fixture.Channel = 8;
  tick();
  EXPECT_EQ(text(fixture.ChannelTextShape), "8");
  fixture.Channel = 513;
  tick();
  EXPECT_EQ(boxes.size(), 2U);
}

TEST_F(LevelTexts, AreTakenAwayAndWrittenAnew) {
  auto& fixture = add(2);
  show.BlindOn = true;
  open();
  plot->DeleteTextOnShape(fixture);
  EXPECT_TRUE(plot->FlpCAD1.shapesOf(2).empty());
  EXPECT_EQ(fixture.ChannelTextShape, 0);
  plot->DeleteTextOnShape(fixture);
  plot->DrawTextOnShape(fixture);
  EXPECT_EQ(plot->FlpCAD1.shapesOf(2).size(), 3U);
}

TEST_F(LevelTexts, TheStageCuesShowUntilTheNextDisplayTick) {
  const auto& one = add(1);
  const auto& two = add(2);
  ChannelBytes ab{};
  ChannelBytes xy{};
  ab[0] = xy[1] = 255;
  xy[0] = 30;
  wiring.abStageCue = [&] { return &ab; };
  wiring.xyStageCue = [&] { return &xy; };
  open();
  plot->topLevels();
  EXPECT_EQ(text(one.LevelTextShape) + text(two.LevelTextShape), "FLFL");
  wiring.abStageCue = nullptr;
  tick();
  EXPECT_EQ(text(one.LevelTextShape) + text(two.LevelTextShape), "--");
}

TEST_F(LevelTexts, OneViewModeAtATimeHolds) {
  open();
  plot->SetBlindMode();
  EXPECT_TRUE(show.BlindMode && !show.LiveMode && !show.StageMode);
  plot->SetLiveMode();
  EXPECT_TRUE(!show.BlindMode && show.LiveMode && !show.StageMode);
  plot->SetStageMode();
  EXPECT_TRUE(!show.BlindMode && !show.LiveMode && show.StageMode);
  EXPECT_FALSE(show.BlindOn);
}

TEST(LevelTextsOfTheDesk, StartDarkAndCanShowTheStageCuesOfThePlayers) {
  ShowMaker maker;
  maker.ab = {{.number = 1, .look = {{1, 255}, {2, 10}}}};
  maker.xy = {{.number = 1, .look = {{2, 128}}}};
  ScriptedDesk desk(maker);
  auto& plot = *desk.house.desk.windows.ActiveDocument;
  const auto levels = [&] {
    std::string texts;
    for (const auto& fixture : plot.GetCurrentView()->colFixtures())
      texts += plot.FlpCAD1.find(fixture->LevelTextShape)->text + " ";
    return texts;
  };
  EXPECT_EQ(levels(), "- - - ");
  desk.ab().State.StageCue = desk.xy().State.StageCue = 2;
  plot.topLevels();
  EXPECT_EQ(levels(), "FL 50 - ");
  desk.ab().State.StageCue = 0;
  plot.topLevels();
  EXPECT_EQ(levels(), "- 50 - ");
}

}  // namespace
}  // namespace velgrove::test
