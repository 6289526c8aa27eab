// Fixtures under the hand: picked, moved, turned, and how they show it.

#include "support/plot_rig.h"

namespace velgrove::test {
namespace {

constexpr Colour Black = 0;
constexpr Colour Red = 255;
constexpr Colour Green = 65280;
constexpr Colour Blue = 16711680;

class Picking : public PlotRig {
 protected:
  void SetUp() override {
    for (int channel : {1, 2, 3}) add(channel, channel, {channel * 200.0, 500});
    open();
  }
  Drawing& drawing() { return plot->FlpCAD1; }
  void press(Point at, int flags = 0) { drawing().press(mouse::Left, flags, drawing().toPixels(at)); }
  void moveTo(Point at, int flags = 0) { drawing().move(mouse::Left, flags, drawing().toPixels(at)); }
  void release(Point at, int flags = 0) { drawing().release(mouse::Left, flags, drawing().toPixels(at)); }
  void click(Point at, int flags = 0) {
    press(at, flags);
    release(at, flags);
  }
  clsFixture& fixture(int channel) { return *view->colFixtures().item(channel); }
  Point place(int channel) { return {fixture(channel).x, fixture(channel).y}; }
  /// Of body, box, first line of the centre, channel and level text.
  std::array<Colour, 5> colours(int channel) {
    const clsFixture& of = fixture(channel);
    std::array<Colour, 5> all{};
    std::ranges::transform(
        std::array{of.Shape, of.RectShape, of.CenterShape1, of.ChannelTextShape, of.LevelTextShape},
        all.begin(), [&](ShapeNumber number) {
          const Shape* const found = drawing().find(number);
          return found == nullptr ? -1 : found->colour;
        });
    return all;
  }
  using Colours = std::array<Colour, 5>;
};

TEST_F(Picking, ColoursTellTheStateOfAFixture) {
  tick();
  constexpr Colour White = 16777215;
  constexpr Colour Yellow = 65535;
  EXPECT_EQ(colours(1), (Colours{Red, Black, Red, White, Yellow})) << "at rest, lit by the players";
  plot->RotateTool();
  click({200, 500});
  EXPECT_EQ(colours(1), (Colours{Green, Black, Red, Green, Green})) << "picked";
  click({400, 500});
  EXPECT_EQ(colours(1), (Colours{Red, Black, Red, Red, Red})) << "let go";
  EXPECT_EQ(plot->AGauge2.value(), 0);
  plot->SelectTool();
  EXPECT_EQ(colours(2), (Colours{Red, Black, Red, Red, Red})) << "the tool is put away";
  tick();
  click({200, 500}, mouse::Ctrl);
  click({400, 500}, mouse::Ctrl);
  for (int channel : {1, 2}) {
    EXPECT_EQ(colours(channel)[0], Blue);
    EXPECT_EQ(colours(channel)[3], White) << "no text tells of a selection";
    EXPECT_EQ(colours(channel)[1], Green);
    EXPECT_EQ(colours(channel)[2], Green);
  }
  plot->RotateTool();
  plot->RotateTool();
  EXPECT_EQ(colours(2)[0], Blue) << "turning leaves the selection as it is";

  show.BlindOn = true;
  tick();
  plot->RotateTool();
  click({600, 500});
  EXPECT_EQ(shape(fixture(3).DMXInTextShape).colour, Green);
}

TEST_F(Picking, AFixtureIsMovedFromSnapToSnapAndBuiltNewAtItsPlace) {
  show.ProjectDirty = false;
  const std::size_t shapes = drawing().shapesOf(1).size();
  press({205, 495});
  EXPECT_TRUE(plot->DragActive && plot->FixtureSelected);
  EXPECT_EQ(drawing().find(fixture(1).LevelTextShape), nullptr);
  EXPECT_EQ(drawing().cursor(), "blank") << "the snap mark is the cursor";
  moveTo({310, 300});
  EXPECT_EQ(place(1), (Point{250, 350}));
  EXPECT_EQ(shape(fixture(1).Shape).at, (Point{250, 350}));
  expectExtents(extents(plot->SnapCursor), {225, 375, 275, 325});
  const unsigned revision = drawing().revision();
  moveTo({315, 305});
  EXPECT_EQ(drawing().revision(), revision) << "nothing moves and nothing is painted";
  tick();
  moveTo({360, 305});
  EXPECT_EQ(shape(fixture(1).LevelTextShape).at.x, extents(fixture(1).Shape).middle().x);
  drawing().release(mouse::Right, 0, drawing().toPixels({360, 305}));
  EXPECT_TRUE(plot->DragActive) << "the other button";
  show.SelectedFixtureType = 4;
  release({360, 305});
  EXPECT_EQ(fixture(1).IconShape, 1);
  EXPECT_EQ(place(1), (Point{300, 350}));
  expectExtents(extents(fixture(1).RectShape), [&] {
    const Extents body = extents(fixture(1).Shape);
    return Extents{body.left - 5, body.top + 5, body.right + 5, body.bottom - 5};
  }());
  EXPECT_EQ(colours(1)[0], Red);
  EXPECT_FALSE(plot->DragActive || plot->FixtureSelected);
  EXPECT_TRUE(show.ProjectDirty);
  EXPECT_EQ(drawing().shapesOf(1).size(), shapes) << "no mark and no cross stays behind";
  EXPECT_EQ(drawing().cursor(), "arrow");
  moveTo({900, 900});
  EXPECT_EQ(place(1), (Point{300, 350}));
}

TEST_F(Picking, WithoutSnapAFixtureFollowsThePointer) {
  plot->GridTool();
  press({200, 500});
  moveTo({333, 444});
  EXPECT_EQ(shape(fixture(1).Shape).at, (Point{333, 444}));
  release({333, 444});
  EXPECT_EQ(place(1), (Point{333, 444}));
}

TEST_F(Picking, LockedFixturesStayAndADragEndsWithItsTool) {
  show.FixturesLocked = true;
  press({200, 500});
  moveTo({500, 300});
  EXPECT_FALSE(plot->DragActive);
  EXPECT_EQ(drawing().cursor(), "arrow");
  EXPECT_EQ(colours(1)[0], Red);
  release({500, 300});
  EXPECT_EQ(place(1), (Point{200, 500}));
  show.FixturesLocked = false;
  press({200, 500});
  plot->FluidZoomTool();
  moveTo({500, 300});
  EXPECT_EQ(place(1), (Point{200, 500}));
}

TEST_F(Picking, CtrlAddsToTheSelectionWhichTheEndOfADragClears) {
  click({200, 500}, mouse::Ctrl);
  click({400, 500}, mouse::Ctrl);
  EXPECT_EQ(show.SelectionCount, 2);
  EXPECT_EQ(show.SelectedFixtures[1].get(), &fixture(2));
  EXPECT_EQ((std::pair<int, int>(fixture(2).Selected, fixture(2).SelectIndex)), (std::pair<int, int>(1, 1)));
  EXPECT_FALSE(plot->DragActive);
  click({900, 900});
  EXPECT_EQ(show.SelectionCount, 2) << "a click on the ground does nothing";
  press({600, 500});
  release({600, 500}, mouse::Ctrl);
  EXPECT_EQ(show.SelectionCount, 2) << "Ctrl at the release keeps it";
  click({600, 500});
  EXPECT_EQ(show.SelectionCount, 0);
  EXPECT_EQ(show.SelectedFixture, nullptr);
  for (int channel : {1, 2}) {
    EXPECT_EQ(fixture(channel).Selected + fixture(channel).SelectIndex, 0);
    EXPECT_EQ(colours(channel)[0], Red);
    EXPECT_EQ(colours(channel)[1], Black);
    EXPECT_EQ(colours(channel)[2], Red);
  }
}

TEST_F(Picking, WhatGoesIsNotSelectedAnyMore) {
  click({200, 500}, mouse::Ctrl);
  click({600, 500}, mouse::Ctrl);
  plot->DelTool();
  click({600, 500});
  EXPECT_EQ(show.SelectionCount, 1);
  EXPECT_EQ(show.SelectedFixture, nullptr);
  plot->RotateTool();
  const std::size_t shapes = drawing().shapesOf(1).size();
  plot->RotateObject(90, 1, false);
  EXPECT_EQ(drawing().shapesOf(1).size(), shapes) << "what was deleted isn't turned";
  plot->RotateTool();

  press({400, 500});
  moveTo({410, 600});
  const auto selected = view->colFixtures().item(1);
  plot->DoDelete();
  EXPECT_FALSE(plot->DragActive);
  EXPECT_EQ(plot->SnapCursor, 0);
  EXPECT_EQ(drawing().cursor(), "arrow");
  EXPECT_EQ(selected->Selected, 0);
  EXPECT_EQ(view->colFixtures().count(), 1);
}

TEST_F(Picking, ASelectionThatWasSavedBeginsAnew) {
  fixture(2).Selected = fixture(2).SelectIndex = 1;
  plot->Form_Load();
  EXPECT_EQ(fixture(2).Selected + fixture(2).SelectIndex, 0);
}

TEST_F(Picking, PlotsLeaveEachOthersFixturesAlone) {
  auto other = std::make_shared<clsView>();
  for (int channel : {11, 12, 13}) {
    auto one = std::make_shared<clsFixture>();
    one->Channel = static_cast<std::int16_t>(channel);
    one->IconShape = 1;
    other->colFixturesAdd(std::move(one));
  }
  show.Projects.item(1)->colViewsAdd(other);
  show.CurrentViewIndex = 2;
  frmDocument second(show, machine, wiring);
  second.Form_Load();
  click({200, 500}, mouse::Ctrl);
  second.FixtureSelected = true;
  second.RotateObject(90, 1, false);
  second.DoDelete();
  EXPECT_EQ(fixture(1).Angle, 0);
  EXPECT_EQ(view->colFixtures().count() + other->colFixtures().count(), 6);
  for (const auto& one : other->colFixtures()) EXPECT_EQ(second.FlpCAD1.find(one->Shape)->colour, Red);
}

TEST_F(Picking, OneFixtureTooManyIsOneErrorAndKeepsTheSelection) {
  for (int i = 0; i < 251; ++i) click({200, 500}, mouse::Ctrl);
  EXPECT_EQ(show.SelectionCount, 251);
  EXPECT_TRUE(boxes.empty());
  click({400, 500}, mouse::Ctrl);
  EXPECT_EQ(boxes.size(), 1U);
  EXPECT_EQ(show.SelectionCount, 251);
  EXPECT_EQ(fixture(2).Selected, 0);
  plot->DoDelete();
  EXPECT_EQ(boxes.size(), 1U);
}

TEST_F(Picking, AShapeThatIsNoFixtureOfTheShowDoesNoHarm) {
  const ShapeNumber stray = drawing().insertBlock(plot->ShapeTable.item(1)->ShapeNumber, {800, 800});
  drawing().scale(stray, {800, 800}, plot->ShapeTable.item(1)->ScaleFactor);
  const std::size_t texts = drawing().shapesOf(2).size();
  press({800, 800});
  moveTo({700, 700});
  release({700, 700});
  plot->DelTool();
  click({800, 800});
  EXPECT_EQ(drawing().shapesOf(2).size(), texts);
  EXPECT_EQ(view->colFixtures().count(), 3);
  EXPECT_TRUE(boxes.empty());
}

// ---- Turning

TEST_F(Picking, TheGaugeTurnsThePickedFixtureClockwiseToItsValue) {
  plot->RotateTool();
  EXPECT_TRUE(plot->AGauge2.Visible && plot->RotateActive);
  EXPECT_EQ(drawing().cursor(), "rotate");
  plot->AGauge2.setValue(30);
  EXPECT_EQ(fixture(1).Angle, 0) << "nothing is picked";
  fixture(1).Angle = 10;
  click({200, 500});
  EXPECT_FALSE(plot->DragActive);
  EXPECT_EQ(plot->AGauge2.value(), 10);
  for (const double value : {55.0, 20.0, 19.6, -100.0, 400.0}) {
    const double before = fixture(1).Angle;
    const double turned = shape(fixture(1).Shape).angle;
    plot->AGauge2.setValue(value);
    EXPECT_NEAR(fixture(1).Angle, value, 0.5);
    EXPECT_EQ(fixture(1).Angle, std::nearbyint(fixture(1).Angle)) << "whole degrees";
    EXPECT_NEAR(shape(fixture(1).Shape).angle - turned, before - fixture(1).Angle, 1e-9);
  }
  EXPECT_EQ(drawing().groupOf(fixture(1).RectShape), drawing().groupOf(fixture(1).Shape));
  plot->RotateTool();
  EXPECT_FALSE(plot->AGauge2.Visible);
  EXPECT_EQ(plot->MouseMode, tools::Select);
}

TEST_F(Picking, CommandsTurnThePickedFixtureAndTheGaugesHand) {
  plot->RotateObject(90, 1, false);
  EXPECT_EQ(fixture(1).Angle, 0) << "nothing is picked";
  plot->RotateTool();
  click({200, 500});
  const Point middle = extents(fixture(1).Shape).middle();
  plot->RotateObject(90, 1, false);
  EXPECT_NEAR(extents(fixture(1).Shape).middle().x, middle.x, 1e-6);
  EXPECT_NEAR(extents(fixture(1).Shape).middle().y, middle.y, 1e-6);
  EXPECT_EQ(shape(fixture(1).RectShape).layer, 1);
  EXPECT_EQ(std::pair(fixture(1).Angle, shape(fixture(1).Shape).angle), std::pair(90.0, -90.0));
  EXPECT_EQ(plot->AGauge2.value(), 90);
  plot->RotateObject(45, 0, false);
  EXPECT_EQ(std::pair(fixture(1).Angle, plot->AGauge2.value()), std::pair(45.0, 45.0));
  const Extents body = extents(fixture(1).Shape);
  expectExtents(extents(fixture(1).RectShape),
                {body.left - 5, body.top + 5, body.right + 5, body.bottom - 5});

  const Point pivot = extents(fixture(2).Shape).middle();
  plot->InitRotateFixture(fixture(2), 30, 1, true);
  EXPECT_EQ(fixture(2).Angle, 30);
  EXPECT_EQ(plot->Pivot, pivot);
  EXPECT_EQ(std::pair(fixture(1).Angle, plot->AGauge2.value()), std::pair(45.0, 45.0));
}

TEST_F(Picking, AMovedFixtureKeepsItsTurn) {
  plot->RotateTool();
  click({200, 500});
  plot->RotateObject(90, 1, false);
  plot->RotateTool();
  press({200, 500});
  moveTo({500, 300});
  release({500, 300});
  EXPECT_EQ(shape(fixture(1).Shape).angle, -90);
  EXPECT_EQ(place(1), (Point{450, 350}));
}

}  // namespace
}  // namespace velgrove::test
