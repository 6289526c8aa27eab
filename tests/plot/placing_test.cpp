// Placing and deleting fixtures by hand: where they land, which channels they take and give back.

#include <array>

#include <gmock/gmock.h>

#include "support/plot_rig.h"

namespace velgrove::test {
namespace {

constexpr Colour Black = 0;

class Placing : public PlotRig {
 protected:
  /// The hand on the drawing, in world units.
  void press(int button, Point at, int flags = 0) {
    plot->FlpCAD1.press(button, flags, plot->FlpCAD1.toPixels(at));
    plot->FlpCAD1.release(button, flags, plot->FlpCAD1.toPixels(at));
  }
  void place(std::int32_t type, Point at) {
    show.SelectedFixtureType = type;
    plot->LightTool();
    press(mouse::Left, at);
  }
  [[nodiscard]] std::vector<int> channels() const {
    std::vector<int> all;
    for (const auto& fixture : view->colFixtures()) all.push_back(fixture->Channel);
    return all;
  }
  [[nodiscard]] clsFixture& at(int position) const { return *view->colFixtures().item(position); }
  [[nodiscard]] std::size_t shapeCount() const {
    return plot->FlpCAD1.shapesOf(1).size() + plot->FlpCAD1.shapesOf(2).size();
  }
};

TEST_F(Placing, SnapsAWholePitchOffTheNearestGridPointMirroredInTheAxes) {
  open();
  struct Row {
    double x, y;
    Point snapped;
  };
  // 25 and 125 lie halfway behind an even grid point, 75 halfway before one.
  for (const auto& [x, y, snapped] :
       {Row{500, 500, {450, 550}}, Row{510, 490, {450, 550}}, Row{524, 526, {450, 600}},
        Row{525, 525, {550, 450}}, Row{25, 25, {50, -50}}, Row{75, 75, {50, 150}}, Row{125, 125, {150, 50}},
        Row{0, 0, {-50, 50}}, Row{-30, 1000, {-100, 1050}}}) {
    const Point before = plot->SnapPos;
    plot->GetCurrentSnapPos(x, y);
    EXPECT_EQ(plot->SnapPos, snapped) << x << ", " << y;
    EXPECT_EQ(plot->LastSnapPos, before);
  }
}

TEST_F(Placing, ALightStandsWhereItSnappedOrWhereThePointerIs) {
  open();
  show.ProjectDirty = false;
  place(2, {500, 500});
  EXPECT_EQ((Point{at(1).x, at(1).y}), (Point{450, 550}));
  EXPECT_EQ(shape(at(1).Shape).at, (Point{450, 550}));
  EXPECT_TRUE(show.ProjectDirty);
  EXPECT_EQ(at(1).IconShape, 2);
  EXPECT_EQ(at(1).FixtureType, "Light ");
  EXPECT_EQ(at(1).EdFocus + at(1).Mood + at(1).Effect + at(1).ColorNumber, "0000");

  plot->GridTool();
  EXPECT_EQ(plot->MouseMode, tools::Select);
  place(1, {512, 333});
  EXPECT_EQ((Point{at(2).x, at(2).y}), (Point{512, 333}));
  plot->SliderTool();
  press(mouse::Left, {100, 100});
  EXPECT_EQ(channels(), (std::vector{1, 2, 3})) << "the slider tool places a light too";
}

TEST_F(Placing, TheRightButtonEndsTheLightToolAndPlacesNothing) {
  open();
  plot->LightTool();
  EXPECT_EQ(plot->FlpCAD1.cursor(), "light");
  press(mouse::Right, {500, 500});
  EXPECT_EQ(plot->MouseMode, tools::Select);
  press(mouse::Left, {500, 500});
  plot->LightTool();
  press(mouse::Left, {500, 500}, mouse::Ctrl);
  EXPECT_EQ(view->colFixtures().count(), 0);
}

TEST_F(Placing, TheSnapMarkGoesBeforeTheHandAndWithTheTool) {
  open();
  plot->LightTool();
  EXPECT_EQ(plot->SnapCursor, 0) << "the mouse is elsewhere";
  plot->FlpCAD1.move(0, 0, plot->FlpCAD1.toPixels({500, 500}));
  expectExtents(extents(plot->SnapCursor), {425, 575, 475, 525});
  EXPECT_EQ((Point{plot->SnapPos.x, plot->SnapPos.y}), (Point{0, 0})) << "nothing has snapped yet";
  const ShapeNumber mark = plot->SnapCursor;
  plot->FlpCAD1.move(0, 0, plot->FlpCAD1.toPixels({501, 499}));
  EXPECT_EQ(plot->SnapCursor, mark);
  plot->DelTool();
  EXPECT_EQ(plot->SnapCursor, 0);
  EXPECT_EQ(shapeCount(), 0U);
}

TEST_F(Placing, AMovingLightTakesThreeChannelsOfWhichTwoStandOutOfSight) {
  open();
  place(1, {200, 200});
  place(6, {500, 500});
  place(1, {300, 300});
  EXPECT_EQ(channels(), (std::vector{1, 2, 3, 4, 5}));
  EXPECT_EQ((Point{at(2).x, at(2).y}), (Point{450, 550}));
  for (int position : {3, 4}) {
    EXPECT_EQ((Point{at(position).x, at(position).y}), (Point{2450, 2550}));
    EXPECT_EQ(at(position).IconShape, 6);
  }
}

TEST_F(Placing, TheDeleteToolTakesAFixtureAwayWithItsLevelAndGivesTheHighestChannelBack) {
  open();
  plot->GridTool();
  for (double x : {100.0, 300.0, 500.0}) place(1, {x, 500});
  const std::size_t three = shapeCount();
  show.ManualLevels.fill(77);
  show.ProjectDirty = false;
  plot->DelTool();
  EXPECT_EQ(plot->FlpCAD1.cursor(), "delete");
  press(mouse::Left, {500, 500});
  EXPECT_EQ(channels(), (std::vector{1, 2}));
  EXPECT_TRUE(show.ProjectDirty);
  EXPECT_EQ((std::pair<int, int>(show.ManualLevels[2], show.ManualLevels[1])), (std::pair<int, int>(0, 77)));
  EXPECT_EQ(shapeCount(), three / 3 * 2) << "nothing of it stays on the plot";
  EXPECT_EQ(show.CurrentFixture->Channel, 3);
  press(mouse::Left, {500, 500});
  EXPECT_EQ(plot->LastChannel, 2) << "a click on the ground does nothing";
  place(1, {700, 500});
  EXPECT_EQ(channels(), (std::vector{1, 2, 3}));

  plot->DelTool();
  press(mouse::Left, {300, 500});
  place(1, {900, 500});
  EXPECT_EQ(channels(), (std::vector{1, 3, 4})) << "one in the middle leaves a gap";
  EXPECT_TRUE(boxes.empty());
}

TEST_F(Placing, TheDeleteToolTakesTheItemThatStandsWhereTheChannelCounts) {
  add(7, 1, {100, 500});
  add(3, 1, {300, 500});
  add(9, 1, {500, 500});
  open();
  plot->DelTool();
  press(mouse::Left, {300, 500});
  EXPECT_EQ(channels(), (std::vector{7, 3}));
  press(mouse::Left, {500, 500});
  EXPECT_EQ(channels(), (std::vector{7, 3})) << "it isn't in the show any more";
  EXPECT_TRUE(boxes.empty());
}

TEST_F(Placing, DeletingAMovingLightGivesItsThreeChannelsBack) {
  open();
  plot->GridTool();
  place(1, {100, 500});
  place(6, {500, 500});
  EXPECT_EQ(plot->LastChannel, 4);
  plot->DelTool();
  press(mouse::Left, {500, 500});
  EXPECT_EQ(plot->LastChannel, 1);
  EXPECT_EQ(channels(), (std::vector{1, 3, 4})) << "the channels of its position stay patched";
}

TEST_F(Placing, AFixtureWithoutAChannelIsDeletedToo) {
  add(0);
  open();
  boxes.clear();
  plot->DelTool();
  press(mouse::Left, {500, 500});
  EXPECT_TRUE(boxes.empty());
  EXPECT_EQ(plot->FlpCAD1.shapeAt({500, 500}), -1);
  EXPECT_EQ(view->colFixtures().count(), 0);
}

TEST_F(Placing, TheDeleteKeyPaintsTheSelectionIntoTheGround) {
  for (int channel : {1, 2, 3}) add(channel, 1, {channel * 200.0, 500});
  open();
  for (double x : {200.0, 600.0}) press(mouse::Left, {x, 500}, mouse::Ctrl);
  const clsFixture gone = at(3);
  plot->Form_KeyDown(13);
  EXPECT_EQ(view->colFixtures().count(), 3);
  show.ProjectDirty = false;
  plot->Form_KeyDown(46);
  EXPECT_TRUE(show.ProjectDirty);
  EXPECT_EQ(channels(), (std::vector{2, 3})) << "channel 3 isn't at the third place any more";
  EXPECT_EQ(plot->LastChannel, 2);
  EXPECT_EQ(show.SelectionCount, 0);
  EXPECT_EQ(show.SelectedFixture, nullptr);
  for (const ShapeNumber number : {gone.Shape, gone.RectShape, gone.CenterShape1, gone.CenterShape2})
    EXPECT_EQ(shape(number).colour, Black);
  EXPECT_EQ(plot->FlpCAD1.find(gone.ChannelTextShape), nullptr);
  EXPECT_EQ(plot->FlpCAD1.shapeAt({600, 500}), -1) << "what can't be seen can't be picked";
  plot->DoDelete();
  EXPECT_EQ(plot->LastChannel, 1) << "also with nothing selected";
  plot->UndoDelete();
  EXPECT_EQ(view->colFixtures().count(), 2);
}

TEST_F(Placing, DialogsOpenForTheFixtureUnderTheRightButtonAndCloseWhenOneGoes) {
  std::vector<std::string> calls;
  wiring.openFixture = [&](Pixel pixel) {
    calls.push_back("open " + std::to_string(show.CurrentFixture->Channel) + " at " +
                    std::to_string(std::lround(pixel.x)) + "," + std::to_string(std::lround(pixel.y)));
  };
  wiring.closeFixture = [&] { calls.emplace_back("close"); };
  add(1, 1, {200, 500});
  add(2, 6, {600, 500});
  open();
  show.ProjectDirty = false;
  press(mouse::Right, {610, 500});
  press(mouse::Right, {900, 900});
  EXPECT_EQ(show.SelectedFixtureType, 6);
  EXPECT_TRUE(show.ProjectDirty);
  press(mouse::Left, {200, 500}, mouse::Ctrl);
  plot->DoDelete();
  plot->DelTool();
  press(mouse::Left, {600, 500});
  plot->LockTool();
  press(mouse::Right, {600, 500});
  EXPECT_EQ(calls, (std::vector<std::string>{"open 2 at 610,500", "close", "close"}));
}

}  // namespace
}  // namespace velgrove::test
