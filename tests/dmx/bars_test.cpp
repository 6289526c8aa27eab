// The bars: their grid, what they read, and what happens when there are more channels than bars.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "controls/hand_clock.h"
#include "dmx/frm_bars.h"

namespace velgrove::test {
namespace {

struct LevelBars : testing::Test {
  void load(std::int16_t rows, std::int16_t columns, std::int16_t gap = 100) {
    show.BarRows = rows;
    show.BarColumns = columns;
    show.BarGap = gap;
    bars.Form_Load();
  }
  void resize(float width, float height) {
    bars.Window.Width = width;
    bars.Window.Height = height;
    bars.Form_Resize();
  }
  void runTo(std::int64_t ms) { clock.advanceTo(Milliseconds(ms), machine.timers); }
  [[nodiscard]] std::pair<int, int> grid() const { return {bars.Rows, bars.Columns}; }
  [[nodiscard]] int shown() const {
    return static_cast<int>(std::ranges::count(bars.Bars, true, &LevelBar::Visible));
  }
  [[nodiscard]] const LevelBar& bar(int channel) const {
    return bars.Bars[static_cast<std::size_t>(channel - 1)];
  }

  [[nodiscard]] std::vector<int> values(int channels) const {
    std::vector<int> all;
    for (int channel = 1; channel <= channels; ++channel) all.push_back(bar(channel).Value);
    return all;
  }

  std::vector<std::string> boxes;
  HandClock clock;
  ShowState show;
  Machine machine{clock.clock(),
                  {.show =
                       [this](const Box& box) {
                         boxes.push_back(box.text);
                         return box.buttons == BoxButtons::AbortRetryIgnore ? BoxAnswer::Ignore
                                                                            : BoxAnswer::Ok;
                       },
                   .post = {}}};
  frmBars bars{show, machine};
};

const std::string TooMany = "Only 200 Bars allowed.";
const std::string SystemError = "Application may close, Would you like to continue?";

TEST_F(LevelBars, StandInRowsOverTheInsideOfTheWindow) {
  load(2, 3);
  EXPECT_EQ(shown(), 6);
  // 16500 x 10500: 306 of the width and 370 of the height go to the gaps
  EXPECT_EQ(std::tuple(bar(5).Caption, bar(5).Left, bar(5).Top, bar(5).Width, bar(5).Height),
            std::tuple("5:", 5398 + 100, 5065 + 100, 5398, 5065));
  show.DMXOutput[4] = 255;
  bars.StartUpdate("Output");
  runTo(33);
  resize(6306, 4370);
  EXPECT_EQ(std::tuple(bar(5).Value, bar(5).Left, bar(5).Top, bar(5).Width, bar(5).Height),
            std::tuple(0, 2100, 2100, 2000, 2000));
  runTo(66);
  EXPECT_EQ(bar(5).Value, 100);
  const unsigned layouts = bars.Layouts;
  for (const auto& [width, height] : {std::pair(306.9F, 4370.F), std::pair(6306.F, 370.9F)})
    resize(width, height);  // too small for the grid
  EXPECT_EQ(bars.Layouts, layouts);
  EXPECT_EQ(bar(5).Width, 2000);
}

TEST_F(LevelBars, TakeTwoHundredAndOneTryToKeepToThem) {
  load(8, 25);
  EXPECT_THAT(boxes, testing::IsEmpty());
  EXPECT_EQ(shown(), 200);
  load(20, 20);
  EXPECT_THAT(boxes, testing::ElementsAre(TooMany));
  EXPECT_EQ(grid(), std::pair(1, 20));
  load(2, 180);
  EXPECT_EQ(grid(), std::pair(2, 90));
}

TEST_F(LevelBars, ThatRunOutAreToldOfOnceAtTheLoadAndOnceWhileTheyGoOn) {
  show.DMXOutput.fill(255);
  load(1, 300);
  EXPECT_EQ(grid(), std::pair(3, 100));
  EXPECT_THAT(boxes, testing::ElementsAre(TooMany, SystemError));
  boxes.clear();
  bars.StartUpdate("Output");
  runTo(1000);
  EXPECT_EQ(bar(200).Value, 100);
  resize(20000, 20000);
  resize(30000, 20000);
  runTo(2000);
  EXPECT_THAT(boxes, testing::ElementsAre(SystemError));
}

TEST_F(LevelBars, WithoutRowsOrColumnsStayEmpty) {
  for (const auto& [rows, columns] : {std::pair(0, 24), std::pair(8, 0), std::pair(0, 0), std::pair(-3, 8)}) {
    load(static_cast<std::int16_t>(rows), static_cast<std::int16_t>(columns));
    bars.StartUpdate("Output");
    runTo(clock.now() / Milliseconds(1) + 100);
    EXPECT_EQ(shown(), 0);
  }
  EXPECT_THAT(boxes, testing::IsEmpty());
}

TEST_F(LevelBars, RoundToPercentAndInputIsFullOneStepEarly) {
  load(1, 6);
  bars.StartUpdate("Output");
  show.DMXOutput = {253, 255, 1, 2, 128};
  runTo(33);
  EXPECT_THAT(values(6), testing::ElementsAre(99, 100, 0, 1, 50, 0));

  load(1, 6);  // turns the timers off
  bars.StartUpdate("input");
  show.DMXInput = {253, 255, 1, 2, 127, 252};
  runTo(100);
  EXPECT_EQ(bar(1).Value, 0);
  bars.StartUpdate("Input");
  runTo(132);
  EXPECT_EQ(bar(1).Value, 0);
  runTo(133);
  EXPECT_THAT(values(6), testing::ElementsAre(100, 100, 0, 1, 50, 99));
  EXPECT_EQ(bar(1).BarColour, 16777215U);
}

TEST_F(LevelBars, TakeTheColourOfTheSourceWhenTheLevelChangesAndOnlyThen) {
  load(1, 4);
  bars.StartUpdate("Output");
  show.DMXOutput = {10, 10, 10, 10};
  show.LevelSource = {0, 1, 2, 3};
  runTo(33);
  const auto colours = [this] {
    std::vector<std::pair<Colour, Colour>> all;
    for (int channel = 1; channel <= 4; ++channel)
      all.emplace_back(bar(channel).BarColour, bar(channel).TextColour);
    return all;
  };
  using Pair = std::pair<Colour, Colour>;
  const std::vector expected{Pair(255, 16777215), Pair(65535, 16711680), Pair(16777215, 16711935),
                             Pair(16711935, 16777215)};
  EXPECT_EQ(colours(), expected);
  show.LevelSource = {3, 3, 3, 3};
  runTo(66);
  EXPECT_EQ(colours(), expected);
  show.DMXOutput[0] = 20;
  runTo(99);
  EXPECT_EQ(colours().front(), Pair(16711935, 16777215));
}

}  // namespace
}  // namespace velgrove::test
