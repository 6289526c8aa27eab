// The scene of numbered shapes: what stands where, what the hand meets, and what the face gets to paint.

#include "controls/drawing.h"

#include <cmath>

#include <gtest/gtest.h>

#include "support/fault_of.h"

namespace velgrove {
namespace {

constexpr double Close = 1e-9;

void expectNear(const Extents& actual, const Extents& expected) {
  EXPECT_NEAR(actual.left, expected.left, Close);
  EXPECT_NEAR(actual.top, expected.top, Close);
  EXPECT_NEAR(actual.right, expected.right, Close);
  EXPECT_NEAR(actual.bottom, expected.bottom, Close);
}

void expectNear(Point actual, Point expected) {
  EXPECT_NEAR(actual.x, expected.x, Close);
  EXPECT_NEAR(actual.y, expected.y, Close);
}

std::shared_ptr<const Block> blockOf(std::vector<Primitive> primitives) {
  return makeBlock("test", std::move(primitives));
}

/// Twenty wide, ten high, its origin in the left bottom corner.
std::shared_ptr<const Block> plank() {
  return blockOf({Polyline{.points = {{0, 0}, {20, 0}, {20, 10}, {0, 10}}, .closed = true}});
}

class Scene : public testing::Test {
 protected:
  Drawing drawing;
  ShapeNumber planks = drawing.addBlock(plank());
};

TEST_F(Scene, ARotatedBlockHasTheExtentsOfItsTrueOutline) {
  const ShapeNumber shape = drawing.insertBlock(planks, {100, 100});
  drawing.scale(shape, {100, 100}, 2);
  expectNear(drawing.extents(shape), {.left = 100, .top = 120, .right = 140, .bottom = 100});
  drawing.rotate(shape, {100, 100}, 90);
  expectNear(drawing.extents(shape), {.left = 80, .top = 140, .right = 100, .bottom = 100});
  drawing.rotate(shape, {100, 100}, -45);
  const double half = std::sqrt(0.5);
  expectNear(
      drawing.extents(shape),
      {.left = 100 - (20 * half), .top = 100 + (60 * half), .right = 100 + (40 * half), .bottom = 100});

  const ShapeNumber round = drawing.insertBlock(drawing.addBlock(blockOf({Circle{{5, 0}, 3}})), {0, 0});
  drawing.rotate(round, {0, 0}, 90);
  expectNear(drawing.extents(round), {.left = -3, .top = 8, .right = 3, .bottom = 2});
}

TEST_F(Scene, AnArcTakesJustTheSpaceOfItsTurn) {
  struct Case {
    Arc arc;
    double turn;
    Extents extents;
  };
  const double half = std::sqrt(0.5) * 10;
  for (const auto& [arc, turn, extents] : {
           Case{.arc = {{0, 0}, 10, 0, 90}, .turn = 0, .extents = {0, 10, 10, 0}},
           Case{.arc = {{0, 0}, 10, 0, 90}, .turn = 45, .extents = {-half, 10, half, half}},
           Case{.arc = {{0, 0}, 10, 270, 450}, .turn = 0, .extents = {0, 10, 10, -10}},
           Case{.arc = {{0, 0}, 10, 45, 315}, .turn = 0, .extents = {-10, 10, half, -10}},
           Case{.arc = {{0, 0}, 10, 30, 60}, .turn = -30, .extents = {half * std::sqrt(1.5), 5, 10, 0}},
       })
    expectNear(extentsOf(*blockOf({arc}), {.at = {}, .scale = 1, .angle = turn}), extents);
}

TEST_F(Scene, AGroupMovesTurnsScalesAndGoesAsAWhole) {
  const ShapeNumber across = drawing.addLine({0, 10}, {20, 10});
  const ShapeNumber down = drawing.addLine({10, 0}, {10, 20});
  const ShapeNumber other = drawing.addRectangle({.left = 0, .top = 4, .right = 8, .bottom = 0});
  const ShapeNumber group = drawing.createGroup();
  for (const ShapeNumber member : {across, down}) drawing.addToGroup(group, member);
  EXPECT_EQ(drawing.shapeType(group), 18);
  EXPECT_EQ(drawing.groupOf(down), group);

  drawing.move(group, 100, 50);
  expectNear(drawing.extents(group), {.left = 100, .top = 70, .right = 120, .bottom = 50});
  drawing.rotate(group, {110, 60}, 90);
  expectNear(drawing.find(across)->at, {110, 50});
  drawing.scale(group, {110, 60}, 0.5);
  expectNear(drawing.extents(group), {.left = 105, .top = 65, .right = 115, .bottom = 55});
  drawing.setColour(group, 255);
  EXPECT_EQ(drawing.find(down)->colour, 255);
  EXPECT_NE(drawing.find(other)->colour, 255);

  drawing.removeFromGroup(across);
  drawing.remove(group);
  EXPECT_EQ(drawing.find(down), nullptr);
  EXPECT_EQ(drawing.shapeType(group), 0);
  EXPECT_NE(drawing.find(across), nullptr);
  drawing.rotate(other, {4, 2}, 90);
  expectNear(drawing.extents(other), {.left = 2, .top = 6, .right = 6, .bottom = -2});
}

TEST_F(Scene, NumbersAreNeverGivenOutTwiceAndUnknownOnesDoNothing) {
  std::vector<ShapeNumber> numbers;
  for (int i = 0; i < 20; ++i) numbers.push_back(drawing.addLine({0, 0}, {1, 1}));
  for (const ShapeNumber number : numbers) drawing.remove(number);
  drawing.clear();
  const ShapeNumber fresh = drawing.addText({5, 5}, "7", 0, Align::Centre);
  EXPECT_GT(fresh, numbers.back());

  const unsigned before = drawing.revision();
  for (const ShapeNumber gone : {numbers[3], ShapeNumber{0}, ShapeNumber{-4}, ShapeNumber{999}}) {
    drawing.move(gone, 1, 1);
    drawing.setColour(gone, 3);
    EXPECT_FALSE(drawing.setText(gone, {1, 1}, "x", 0));
    drawing.ShapeText(gone, "x");
    drawing.remove(gone);
    drawing.removeFromGroup(gone);
    drawing.addToGroup(gone, fresh);
    EXPECT_EQ(drawing.extents(gone), Extents{});
    EXPECT_EQ(drawing.shapeType(gone), 0);
  }
  EXPECT_EQ(drawing.insertBlock(999, {1, 1}), 0);
  EXPECT_EQ(drawing.revision(), before);
}

TEST_F(Scene, ABlockIsTakenByItsWholeBodyAlsoWhereATextLiesOverIt) {
  const ShapeNumber under = drawing.insertBlock(planks, {100, 100});
  const ShapeNumber onTop = drawing.insertBlock(planks, {110, 100});
  const ShapeNumber box = drawing.addRectangle({.left = 95, .top = 115, .right = 125, .bottom = 95});
  const auto font = drawing.fontHandle("Arial,25,BN");
  (void)drawing.addText({105, 108}, "12", font, Align::Centre);
  EXPECT_EQ(drawing.shapeAt({104, 105}), under);
  EXPECT_EQ(drawing.shapeAt({115, 105}), onTop);
  EXPECT_EQ(drawing.shapeAt({96, 113}), box);
  EXPECT_LT(drawing.shapeAt({300, 300}), 0);

  drawing.rotate(onTop, {120, 105}, 45);
  EXPECT_EQ(drawing.shapeAt({120, 105}), onTop);
  EXPECT_NE(drawing.shapeAt({128, 98}), onTop) << "inside its extents, but beside its turned body";
}

TEST_F(Scene, TheViewIsFittedAndCentredWithSquareUnits) {
  drawing.setPixelSize(800, 400);
  EXPECT_EQ(drawing.pixelsPerUnit(), 0.4);
  const Pixel corner = drawing.toPixels({0, 1000});
  EXPECT_EQ(corner.x, 200);
  EXPECT_EQ(corner.y, 0);
  drawing.setLimits({.left = 100, .top = 300, .right = 200, .bottom = 250});
  EXPECT_EQ(drawing.toPixels({200, 250}).x, 800);
  EXPECT_EQ(drawing.toPixels({200, 250}).y, 400);
  expectNear(drawing.toWorld(drawing.toPixels({123, 275})), {123, 275});
}

TEST_F(Scene, LimitsThatNoScreenCouldShowChangeNothing) {
  const Extents before = drawing.limits();
  const double odd = std::nan("");
  for (const Extents& limits : {Extents{5, 5, 5, 5}, Extents{10, 0, 0, 10}, Extents{0, 1e300, 1e300, 0},
                                Extents{odd, 10, 10, 0}, Extents{0, odd, 10, odd}})
    drawing.setLimits(limits);
  EXPECT_EQ(drawing.limits(), before);
}

TEST_F(Scene, TheFaceGetsLowerLayersFirstAndNothingThatWasDeleted) {
  const int upper = drawing.addLayer("Layer 2");
  drawing.setCurrentLayer(upper);
  const ShapeNumber text = drawing.addText({1, 1}, "over", 0, Align::Left);
  drawing.setCurrentLayer(1);
  const ShapeNumber gone = drawing.addLine({0, 0}, {1, 1});
  const ShapeNumber line = drawing.addLine({0, 0}, {1, 1});
  Picture picture;
  drawing.copyTo(picture);
  EXPECT_EQ(picture.shapes.size(), 3U);
  drawing.remove(gone);
  drawing.copyTo(picture);
  ASSERT_EQ(picture.shapes.size(), 2U);
  EXPECT_EQ(picture.shapes[0].number, line);
  EXPECT_EQ(picture.shapes[1].number, text);
  EXPECT_EQ(drawing.shapesOf(upper), std::vector{text});
  EXPECT_EQ(drawing.layerName(upper), "Layer 2");
}

TEST_F(Scene, TheRevisionGrowsOnlyWithVisibleChanges) {
  const ShapeNumber text = drawing.addText({1, 1}, "FL", 0, Align::Left);
  unsigned before = drawing.revision();
  drawing.setText(text, {1, 1}, "FL", drawing.find(text)->colour);
  drawing.setColour(text, drawing.find(text)->colour);
  drawing.setLimits(drawing.limits());
  EXPECT_EQ(drawing.revision(), before);
  drawing.setText(text, {1, 1}, "50", 65535);
  EXPECT_GT(drawing.revision(), before);
  EXPECT_EQ(drawing.find(text)->text, "50");
  EXPECT_EQ(drawing.find(text)->colour, 65535);
  drawing.ShapeText(text, "127");
  EXPECT_EQ(drawing.find(text)->text, "127");
  EXPECT_EQ(drawing.find(text)->at, (Point{1, 1}));
  EXPECT_EQ(drawing.find(text)->colour, 65535);

  drawing.setRedraw(false);
  before = drawing.revision();
  drawing.setColour(text, 255);
  EXPECT_EQ(drawing.revision(), before);
  drawing.setRedraw(true);
  EXPECT_GT(drawing.revision(), before);
}

TEST_F(Scene, APressPicksABlockOnlyWhileSelectionIsOn) {
  std::string log;
  const ShapeNumber shape = drawing.insertBlock(planks, {100, 100});
  drawing.WorldMouseDown = [&](int button, int flags, double x, double y) {
    log += "down " + std::to_string(button) + " " + std::to_string(flags) + " " +
           std::to_string(std::lround(x)) + "," + std::to_string(std::lround(y)) + "; ";
  };
  drawing.ShapeNumberSelected = [&](int type, ShapeNumber number) {
    EXPECT_EQ(number, shape);
    log += "picked " + std::to_string(type) + "; ";
  };
  drawing.press(mouse::Left, mouse::Ctrl, {105, 895});
  drawing.Selection = true;
  drawing.press(mouse::Left, 0, {105, 895});
  drawing.press(mouse::Right, 0, {105, 895});
  drawing.press(mouse::Left, 0, {500, 500});
  EXPECT_EQ(log, "down 1 8 105,105; down 1 0 105,105; picked 18; down 2 0 105,105; down 1 0 500,500; ");
}

TEST_F(Scene, TheHandDrawsARubberBandOrPansAsTheToolHasSetIt) {
  std::vector<Extents> bands;
  drawing.WorldRectPos = [&](double left, double top, double right, double bottom) {
    bands.push_back({.left = left, .top = top, .right = right, .bottom = bottom});
  };
  int moved = 0;
  drawing.ViewMoved = [&] { ++moved; };
  const auto drag = [&](Pixel from, Pixel to) {
    drawing.press(mouse::Left, 0, from);
    drawing.move(mouse::Left, 0, to);
    drawing.release(mouse::Left, 0, to);
  };
  drag({100, 100}, {300, 200});
  EXPECT_TRUE(bands.empty());
  drawing.RubberBand = true;
  drag({300, 200}, {100, 100});
  drag({300, 200}, {301, 201});
  ASSERT_EQ(bands.size(), 1U) << "a click that trembles draws no rectangle";
  expectNear(bands[0], {.left = 100, .top = 900, .right = 300, .bottom = 800});
  EXPECT_FALSE(drawing.rubberBand());

  drawing.RubberBand = false;
  drawing.PanMode = true;
  drag({300, 200}, {350, 280});
  expectNear(drawing.limits(), {.left = -50, .top = 1080, .right = 950, .bottom = 80});
  EXPECT_EQ(moved, 1);
}

TEST(Drawing, FontsAndCursorsHaveHandlesAndSettingsNumbers) {
  Drawing drawing;
  const auto font = drawing.fontHandle("Arial,25,BN");
  EXPECT_EQ(drawing.fonts().at(static_cast<std::size_t>(font) - 1).Size, 25);
  EXPECT_TRUE(drawing.fonts().front().Bold);
  EXPECT_EQ(errorOf([&] { (void)drawing.fontHandle("Arial"); }).fault(), Fault::TypeMismatch);
  EXPECT_EQ(drawing.cursor(), "default");
  drawing.setCursor(drawing.addCursor("/opt/desk/graphics/zoom.ico"));
  EXPECT_EQ(drawing.cursor(), "zoom");
  drawing.setCursor(77);
  EXPECT_EQ(drawing.cursor(), "default");
  drawing.setProperty(223, 1);
  EXPECT_EQ(std::pair(drawing.property(223), drawing.property(6)), std::pair(1, 0));
}

TEST(Drawing, PrintingGoesToWhoeverWasHandedIn) {
  const Drawing* printed = nullptr;
  const Drawing drawing([&](const Drawing& what) { printed = &what; });
  drawing.PrintView();
  EXPECT_EQ(printed, &drawing);
}

}  // namespace
}  // namespace velgrove
