// What the window shows of the plot: zoom, scrolling, rubber bands, and the tools of looking.

#include "support/plot_rig.h"

namespace velgrove::test {
namespace {

class View : public PlotRig {
 protected:
  [[nodiscard]] Extents limits() const { return plot->FlpCAD1.limits(); }
};

TEST_F(View, ZoomingCentresOnAPointAndShrinksByTheStep) {
  open();
  plot->WorldZoom(true, 0.1, 600, 300);
  expectExtents(limits(), {150, 750, 1050, -150});
  plot->WorldZoom(true, -0.1, 500, 500);
  expectExtents(limits(), {5, 995, 995, 5});
  plot->WorldZoom(false, 0.5, 0, 0);
  expectExtents(limits(), {252.5, 747.5, 747.5, 252.5});
}

TEST_F(View, TheZoomToolZoomsInWithTheLeftButtonAndOutWithTheRight) {
  open();
  auto& drawing = plot->FlpCAD1;
  drawing.press(mouse::Left, 0, {600, 700});
  EXPECT_EQ(limits().width(), 1000) << "no zoom with the pointer";
  plot->FluidZoomTool();
  drawing.press(mouse::Left, 0, {600, 700});
  expectExtents(limits(), {150, 750, 1050, -150});
  drawing.press(mouse::Right, 0, {500, 500});
  expectExtents(limits(), {105, 795, 1095, -195});
  drawing.press(mouse::Left, mouse::Ctrl, {500, 500});
  EXPECT_NEAR(limits().width(), 990, 1e-6);
}

TEST_F(View, ScrollingMovesTheViewByTheDifference) {
  open();
  plot->HScroll1.setValue(200);
  plot->VScroll1.setValue(100);
  expectExtents(limits(), {200, 900, 1200, -100});
  plot->HScroll1.drag(150);
  plot->VScroll1.drag(160);
  expectExtents(limits(), {150, 840, 1150, -160});
}

TEST_F(View, TheScrollBarsStandWhereTheViewStands) {
  open();
  plot->WorldZoom(true, 0.5, 500, 400);
  EXPECT_EQ(std::pair(plot->HScroll1.value(), plot->VScroll1.value()), std::pair(250, 350));
  expectExtents(limits(), {250, 650, 750, 150});
  plot->FlpCAD1.panBy(-100, 40);
  EXPECT_EQ(std::pair(plot->HScroll1.value(), plot->VScroll1.value()), std::pair(300, 330));
  expectExtents(limits(), {300, 670, 800, 170});
  plot->HScroll1.setValue(310);
  expectExtents(limits(), {310, 670, 810, 170});
  plot->WorldZoom(true, -3, 500, 500);
  EXPECT_EQ(plot->HScroll1.value(), 0) << "the bar ends where the world does";
}

TEST_F(View, TheScrollBarsAreAsLongAsTheControlLessTheirCorner) {
  open();
  plot->FlpCAD1.setPixelSize(600, 400);
  EXPECT_EQ(std::pair(plot->HScrollLength, plot->VScrollLength), std::pair(580, 380));
}

TEST_F(View, ARubberBandIsRememberedAndShownWhenTheWindowComesToTheFront) {
  open();
  plot->Form_Activate();
  EXPECT_EQ(limits(), (Extents{0, 1000, 1000, 0})) << "nothing drawn yet";
  plot->NetSelectTool();
  auto& drawing = plot->FlpCAD1;
  drawing.press(mouse::Left, 0, {100, 100});
  drawing.move(mouse::Left, 0, {300, 400});
  drawing.release(mouse::Left, 0, {300, 400});
  ASSERT_EQ(view->colZooms().count(), 2);
  const auto& zoom = *view->colZooms().item(2);
  expectExtents({zoom.lt, zoom.tp, zoom.rt, zoom.bt}, {100, 900, 300, 600});
  EXPECT_EQ(limits().width(), 1000);
  const unsigned before = drawing.revision();
  plot->Form_Activate();
  expectExtents(limits(), {100, 900, 300, 600});
  EXPECT_GT(drawing.revision(), before);
  EXPECT_EQ(plot->HScroll1.value(), 100);

  plot->NetSelectTool();
  drawing.press(mouse::Left, 0, {100, 100});
  drawing.move(mouse::Left, 0, {300, 400});
  plot->SelectTool();
  drawing.release(mouse::Left, 0, {300, 400});
  EXPECT_EQ(view->colZooms().count(), 2) << "another tool ends the one before";
}

TEST_F(View, EachToolSetsItsModeItsCursorAndTheControl) {
  open();
  struct Case {
    void (frmDocument::*tool)();
    std::int16_t mode;
    std::string cursor;
    bool selection, band, pan;
  };
  for (const Case& one : {
           Case{&frmDocument::FluidZoomTool, 6, "zoom", false, false, false},
           Case{&frmDocument::NetSelectTool, 6, "arrow", false, true, false},
           Case{&frmDocument::PanTool, -1, "pan", false, false, true},
           Case{&frmDocument::LockTool, -1, "default", false, false, false},
           Case{&frmDocument::SelectTool, 1, "arrow", true, false, false},
           Case{&frmDocument::GridTool, 1, "arrow", true, false, false},
       }) {
    ((*plot).*one.tool)();
    const Drawing& drawing = plot->FlpCAD1;
    EXPECT_EQ(plot->MouseMode, one.mode) << one.cursor;
    EXPECT_EQ(drawing.cursor(), one.cursor);
    EXPECT_EQ(drawing.Selection, one.selection) << one.cursor;
    EXPECT_EQ(drawing.RubberBand, one.band) << one.cursor;
    EXPECT_EQ(drawing.PanMode, one.pan) << one.cursor;
  }
  EXPECT_FALSE(plot->FlpCAD1.Snap) << "the grid tool flipped it";
  plot->GridTool();
  EXPECT_TRUE(plot->FlpCAD1.Snap);
}

TEST_F(View, TheZoomButtonsZoomByATenthAboutTheMiddle) {
  open();
  plot->WorldZoom(true, 0, 300, 400);
  plot->ZoomInTool();
  expectExtents(limits(), {-150, 850, 750, -50});
  plot->ZoomOutTool();
  expectExtents(limits(), {-195, 895, 795, -95});
}

TEST_F(View, AnotherToolEndsTheGaugeAndThePickedFixturesColours) {
  add(1);
  open();
  const auto fixture = show.SelectedFixture = view->colFixtures().item(1);
  for (const ShapeNumber number : {fixture->Shape, fixture->LevelTextShape, fixture->ChannelTextShape})
    plot->FlpCAD1.setColour(number, 65280);
  plot->clearControls();
  EXPECT_EQ(shape(fixture->Shape).colour, 65280) << "not picked";
  plot->FixtureSelected = plot->RotateActive = plot->AGauge2.Visible = true;
  plot->PanTool();
  EXPECT_FALSE(plot->RotateActive || plot->AGauge2.Visible);
  for (const ShapeNumber number : {fixture->Shape, fixture->LevelTextShape, fixture->ChannelTextShape})
    EXPECT_EQ(shape(number).colour, 255);
  plot->UndoDelete();
  EXPECT_EQ(view->colFixtures().count(), 1);
}

TEST_F(View, PrintingAsksThePlatform) {
  const Drawing* printed = nullptr;
  machine.Dialogs.printView = [&](const Drawing& drawing) { printed = &drawing; };
  open();
  plot->FlpCAD1.PrintRationSameasView = true;
  plot->FlpCAD1.PrintView();
  EXPECT_EQ(printed, &plot->FlpCAD1);
}

}  // namespace
}  // namespace velgrove::test
