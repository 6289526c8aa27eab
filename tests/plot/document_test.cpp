// The document: how it starts, and how fixtures stand on the plot.

#include <filesystem>

#include "support/plot_rig.h"
#include "support/temp_folder.h"

namespace velgrove::test {
namespace {

constexpr Colour Red = 255;

class Document : public PlotRig {};

TEST_F(Document, StartsWithItsShapesTheWholeWorldAndItsTimers) {
  bool rebuilt = false;
  wiring.rebuildSubMasters = [&] { rebuilt = view->colSubMasters().count() == 24; };
  open();
  EXPECT_EQ(plot->ShapeCount, 6);
  EXPECT_EQ(plot->ShapeTable.item(6)->id, 6);
  EXPECT_EQ(plot->ShapeTable.item(2)->fname.str().substr(0, 5), "leko ");
  EXPECT_EQ(plot->FlpCAD1.limits(), (Extents{0, 1000, 1000, 0}));
  EXPECT_EQ(std::pair(plot->GridPitchX, plot->GridPitchY), std::pair(50.0, 50.0));
  EXPECT_EQ(plot->FlpCAD1.layerName(2), "Layer 2");
  EXPECT_EQ(plot->FlpCAD1.fonts().at(static_cast<std::size_t>(plot->LevelFont) - 1).Family, "Arial");
  EXPECT_TRUE(plot->FlpCAD1.Snap);
  EXPECT_EQ(plot->MouseMode, tools::Select);
  EXPECT_TRUE(rebuilt);
  EXPECT_TRUE(plot->TallyInputs.enabled() && plot->UpdateDisplay.enabled());
  ASSERT_EQ(view->colZooms().count(), 1);
  const auto& zoom = *view->colZooms().item(1);
  EXPECT_EQ((Extents{zoom.lt, zoom.tp, zoom.rt, zoom.bt}), (Extents{0, 1000, 1000, 0}));
  EXPECT_TRUE(boxes.empty());
}

TEST_F(Document, EveryShapeComesToTheCommonSize) {
  for (int type = 1; type <= 6; ++type) add(type, type);
  open();
  for (const auto& fixture : view->colFixtures()) {
    const Extents outline = extents(fixture->Shape);
    EXPECT_NEAR(std::max(outline.width(), outline.height()), 80, 1e-6) << fixture->IconShape;
    EXPECT_EQ(plot->FlpCAD1.shapeType(fixture->Shape), 18);
  }
}

TEST_F(Document, AFixtureIsAnOutlineWithABoxAroundItAndACentre) {
  auto& fixture = add(7, 3, {400, 300});
  fixture.Shape = fixture.LevelTextShape = 3;  // as another evening's drawing numbered them
  open();
  const Extents outline = extents(fixture.Shape);
  EXPECT_EQ(shape(fixture.Shape).at, (Point{400, 300}));
  EXPECT_EQ(shape(fixture.Shape).colour, Red);
  expectExtents(extents(fixture.RectShape),
                {outline.left - 5, outline.top + 5, outline.right + 5, outline.bottom - 5});
  EXPECT_EQ(shape(fixture.RectShape).colour, 0);
  EXPECT_EQ(plot->FlpCAD1.groupOf(fixture.RectShape), plot->FlpCAD1.groupOf(fixture.Shape));
  EXPECT_EQ(fixture.PerpX, outline.middle().x);
  EXPECT_EQ(fixture.PerpY, outline.middle().y + 100);
  const double arm = std::nearbyint(outline.width() / 8);
  expectExtents(extents(fixture.CenterShape), {outline.middle().x - arm, outline.middle().y + arm + 2,
                                               outline.middle().x + arm + 2, outline.middle().y - arm});
  EXPECT_EQ(shape(fixture.CenterShape2).colour, Red);
  EXPECT_EQ(shape(fixture.LevelTextShape).kind, Shape::Kind::Text);
  EXPECT_EQ(shape(fixture.LevelTextShape).layer, 2);
  EXPECT_EQ(shape(fixture.Shape).layer, 1);
}

TEST_F(Document, ATurnedFixtureStandsByTheNegativeOfItsAngle) {
  auto& fixture = add(1, 2, {400, 300}, 90);
  open();
  EXPECT_EQ(shape(fixture.Shape).angle, -90);
  const Extents outline = extents(fixture.Shape);
  EXPECT_NEAR(outline.width(), 80, 1e-6) << "a leko is longer than wide";
  EXPECT_LT(outline.height(), 60);
  expectExtents(extents(fixture.RectShape),
                {outline.left - 5, outline.top + 5, outline.right + 5, outline.bottom - 5});
}

TEST_F(Document, TheNextLightTakesTheChannelAboveTheHighest) {
  add(5);
  add(9);
  open();
  EXPECT_EQ(plot->LastChannel, 9);
  show.SelectedFixtureType = 4;
  const auto light = plot->DrawShape(100, 200, DrawMode::New, nullptr);
  EXPECT_EQ(light->Channel, 10);
  EXPECT_EQ(light->IconShape, 4);
  EXPECT_EQ((Point{light->x, light->y}), (Point{100, 200}));
  EXPECT_EQ(view->colFixtures().item(3), light);
  EXPECT_EQ(shape(light->ChannelTextShape).text, "10");
}

TEST_F(Document, OnAnEmptyViewTheFirstLightGetsChannelOne) {
  open();
  show.SelectedFixtureType = 1;
  EXPECT_EQ(plot->DrawShape(0, 0, DrawMode::New, nullptr)->Channel, 1);
}

TEST_F(Document, AMovedFixtureIsDrawnAgainWithItsChannel) {
  add(5);
  open();
  const auto fixture = view->colFixtures().item(1);
  const ShapeNumber before = fixture->Shape;
  plot->DrawShape(700, 600, DrawMode::Again, fixture);
  EXPECT_NE(fixture->Shape, before);
  EXPECT_EQ(shape(fixture->Shape).at, (Point{700, 600}));
  EXPECT_EQ(fixture->x, 700);
  EXPECT_EQ(view->colFixtures().count(), 1);
  EXPECT_EQ(plot->LastChannel, 5);
}

TEST_F(Document, AFixtureIsFoundByItsOutlineAndByItsBox) {
  const auto& one = add(1, 1, {100, 100});
  const auto& two = add(2, 1, {300, 300});
  open();
  EXPECT_EQ(plot->FlpCAD1.shapeAt({300, 300}), two.Shape);
  EXPECT_EQ(plot->GetFixtureObject(two.Shape).get(), &two);
  EXPECT_EQ(plot->GetFixtureByRect(one.RectShape).get(), &one);
  EXPECT_EQ(plot->GetFixtureObject(one.RectShape)->FixtureName, "Not Found");
  EXPECT_EQ(plot->GetFixtureByRect(99999)->FixtureName, "Not Found");
}

TEST_F(Document, AMissingShapeFileIsToldAndTheOthersKeepTheirPlaces) {
  TempFolder folder;
  std::filesystem::copy(GRAPHICS_DIR, folder / "graphics");
  std::filesystem::remove(folder / "graphics/leko.cad");
  wiring.graphics = folder / "graphics";
  auto& leko = add(1, 2);
  auto& icue = add(2, 6);
  open();
  ASSERT_EQ(boxes.size(), 2U);
  EXPECT_EQ(boxes[0].title, "SYSTEM ERROR");
  EXPECT_TRUE(boxes[1].text.starts_with((wiring.graphics / "leko.cad").string())) << boxes[1].text;
  EXPECT_EQ(boxes[1].buttons, BoxButtons::Ok);
  EXPECT_EQ(leko.Shape, 0);
  EXPECT_EQ(shape(icue.Shape).block->name, "icue");
  boxes.clear();
  tick();
  EXPECT_TRUE(boxes.empty()) << "a fixture without a body keeps its texts";
}

TEST_F(Document, AFixtureOfNoKnownTypeRaisesTheErrorPatternAndTheNextOneFollows) {
  add(1, 0);
  auto& good = add(2, 1);
  open();
  EXPECT_EQ(boxes.size(), 1U);
  EXPECT_NE(plot->FlpCAD1.find(good.Shape), nullptr);
}

TEST_F(Document, WhereNobodyLooksEveryFixtureIsAPlainBoxAndNoFileIsRead) {
  wiring.graphics = "";
  auto& known = add(1, 6, {200, 200});
  auto& odd = add(2, 0, {500, 500});
  open();
  EXPECT_TRUE(boxes.empty());
  expectExtents(extents(known.Shape), {160, 240, 240, 160});
  expectExtents(extents(odd.Shape), {460, 540, 540, 460});
}

TEST_F(Document, ClosingTheViewTakesTheDrawingAway) {
  add(1);
  open();
  plot->CloseView();
  Picture picture;
  plot->FlpCAD1.copyTo(picture);
  EXPECT_TRUE(picture.shapes.empty());
}

}  // namespace
}  // namespace velgrove::test
