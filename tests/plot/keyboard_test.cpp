// The plot by the keyboard: walking its fixtures, and what can be done with the one that is picked.

#include "support/plot_rig.h"

namespace velgrove::test {
namespace {

constexpr Colour Red = 255;
constexpr Colour Green = 65280;

class PlotByKeys : public PlotRig {
 protected:
  void SetUp() override {
    wiring.openFixture = [this](Pixel at) { opened.push_back(at); };
    for (const int channel : {9, 2, 5}) add(channel, 1, {channel * 100.0, 500});
    add(12, MovingLight, {100, 200});
    for (const int position : {13, 14}) add(position, MovingLight, {100 + OutOfSight, 200 + OutOfSight});
    open();
  }
  int picked() {
    const auto fixture = plot->pickedByKeys();
    return fixture == nullptr ? 0 : fixture->Channel;
  }
  clsFixture& fixture(int channel) {
    for (const auto& one : view->colFixtures())
      if (one->Channel == channel) return *one;
    throw std::runtime_error("no fixture on that channel");
  }
  Colour outline(int channel) { return shape(fixture(channel).Shape).colour; }
  void click(Point at) {
    plot->FlpCAD1.press(mouse::Left, 0, plot->FlpCAD1.toPixels(at));
    plot->FlpCAD1.release(mouse::Left, 0, plot->FlpCAD1.toPixels(at));
  }
  std::vector<Pixel> opened;
};

TEST_F(PlotByKeys, FixturesAreWalkedByChannelUpToBothEndsWithoutThoseOutOfSight) {
  std::vector<int> way;
  for (int step = 0; step < 5; ++step) {
    plot->pickByKeys(1);
    way.push_back(picked());
  }
  EXPECT_EQ(way, (std::vector{2, 5, 9, 12, 12}));
  plot->pickByKeys(-1);
  EXPECT_EQ(picked(), 9);
  plot->pickByKeys(-10);
  EXPECT_EQ(picked(), 2);
  EXPECT_EQ(outline(2), Green);
  EXPECT_EQ(outline(9), Red) << "it was left";
}

TEST_F(PlotByKeys, WhatIsPickedStaysWhereItIsWhenTheMouseMovesOverThePlot) {
  show.ProjectDirty = false;
  plot->pickByKeys(1);
  EXPECT_FALSE(plot->DragActive);
  for (const double x : {300.0, 600.0}) plot->FlpCAD1.move(0, 0, plot->FlpCAD1.toPixels({.x = x, .y = 300}));
  EXPECT_EQ(fixture(2).x, 200);
  EXPECT_EQ(picked(), 2);
  EXPECT_FALSE(show.ProjectDirty);
}

TEST_F(PlotByKeys, TheDialogOfThePickedOneOpensAtItsPlaceWithToolsThatSelectAlone) {
  plot->openPicked();
  EXPECT_TRUE(opened.empty()) << "nothing is picked";
  plot->pickByKeys(1);
  plot->openPicked();
  ASSERT_EQ(opened.size(), 1U);
  EXPECT_EQ(show.CurrentFixture->Channel, 2);
  EXPECT_NEAR(plot->FlpCAD1.toWorld(opened.front()).x, extents(fixture(2).Shape).middle().x, 1e-6);
  plot->LightTool();
  show.SelectedFixtureType = 4;
  plot->pickByKeys(1);
  plot->openPicked();
  EXPECT_EQ(opened.size(), 1U);
  EXPECT_EQ(show.SelectedFixtureType, 4) << "what the tool will place";
}

TEST_F(PlotByKeys, SeveralAreTakenIntoTheSelectionAndOffTheShow) {
  for (int taken = 0; taken < 2; ++taken) {
    plot->pickByKeys(1);
    plot->addPicked();
    plot->addPicked();
  }
  EXPECT_EQ(show.SelectionCount, 2) << "each once";
  plot->Form_KeyDown(46);
  EXPECT_EQ(view->colFixtures().count(), 4);
  EXPECT_EQ(show.SelectionCount, 0);
  EXPECT_EQ(picked(), 0);
}

TEST_F(PlotByKeys, ThePickEndsWithEscapeAnotherToolAndTheMouse) {
  plot->pickByKeys(1);
  plot->addPicked();
  plot->letPickedGo();
  EXPECT_EQ(picked(), 0);
  EXPECT_EQ(show.SelectionCount, 0);
  EXPECT_EQ(outline(2), Red);
  plot->pickByKeys(1);
  EXPECT_EQ(picked(), 2) << "the walk begins anew behind a selection";
  plot->DelTool();
  EXPECT_EQ(picked(), 0);
  EXPECT_EQ(outline(2), Red);
  plot->SelectTool();
  plot->pickByKeys(1);
  EXPECT_EQ(picked(), 5) << "it goes on from where it was";
  click({900, 500});
  EXPECT_EQ(picked(), 0);
  plot->pickByKeys(1);
  EXPECT_EQ(picked(), 12) << "and from what the mouse picked";
}

TEST_F(PlotByKeys, ALockedPlotAndOneInTheHandLeaveThem) {
  plot->FlpCAD1.press(mouse::Left, 0, plot->FlpCAD1.toPixels({.x = 500, .y = 500}));
  ASSERT_TRUE(plot->DragActive);
  plot->pickByKeys(1);
  EXPECT_EQ(show.SelectedFixture->Channel, 5);
  plot->FlpCAD1.release(mouse::Left, 0, plot->FlpCAD1.toPixels({.x = 500, .y = 500}));
  show.FixturesLocked = true;
  plot->pickByKeys(1);
  EXPECT_EQ(picked(), 0);
}

TEST_F(PlotByKeys, TheViewFollowsNoFurtherThanItMust) {
  plot->WorldZoom(true, 0.5, 500, 500);
  const Extents before = plot->FlpCAD1.limits();
  plot->pickByKeys(1);
  const Extents whole = extents(fixture(2).Shape);
  EXPECT_NEAR(plot->FlpCAD1.limits().left, whole.left, 1e-6);
  EXPECT_EQ(plot->FlpCAD1.limits().top, before.top);
  EXPECT_EQ(plot->HScroll1.value(), std::lround(whole.left));
  const Extents now = plot->FlpCAD1.limits();
  plot->pickByKeys(1);
  EXPECT_EQ(plot->FlpCAD1.limits(), now) << "in view already";
}

TEST_F(PlotByKeys, TheRotateToolTurnsWhatTheyPick) {
  plot->RotateTool();
  plot->pickByKeys(1);
  EXPECT_EQ(plot->AGauge2.value(), 0);
  plot->RotateObject(90, 1, false);
  EXPECT_EQ(fixture(2).Angle, 90);
  plot->pickByKeys(1);
  EXPECT_EQ(plot->AGauge2.value(), 0);
}

}  // namespace
}  // namespace velgrove::test
