// How a fixture stands on the plot: its outline, the box around it and the mark of its centre.

#include <algorithm>

#include "controls/numbers.h"
#include "plot/document.h"
#include "plot/shapes.h"

namespace velgrove {
namespace {

using colours::Black;
using colours::Red;
constexpr int FirstLayer = 1;
constexpr double HitMargin = 5;       // world units
constexpr double RotateHandle = 100;  // above the middle

/// Where nobody looks, a fixture needs a body and no more.
std::shared_ptr<const Block> plainBox() {
  constexpr double Half = CommonSize / 2;
  return makeBlock("box", {Polyline{.points = {{-Half, Half}, {Half, Half}, {Half, -Half}, {-Half, -Half}},
                                    .closed = true}});
}

double scaleToCommonSize(const Extents& drawing) {
  const double size = std::max(drawing.width(), drawing.height());
  return size > 0 ? CommonSize / size : 1;
}

}  // namespace

void frmDocument::GetFixtureShape(const std::string& name, std::int16_t id) {
  std::shared_ptr<const Block> block;
  if (m_wiring.graphics.empty())
    block = plainBox();
  else
    onShapeFile(m_machine, [&] { block = loadShape(m_wiring.graphics, name); });

  // A shape that wasn't loaded keeps its row, so that the others keep theirs.
  m_errors.steps([&] {
    auto shape = std::make_shared<clsFixtureType>();
    shape->id = id;
    shape->fname = name;
    shape->ScaleFactor = scaleToCommonSize(block == nullptr ? Extents{} : block->extents);
    shape->ShapeNumber = block == nullptr ? 0 : FlpCAD1.addBlock(std::move(block));
    ShapeTable.add(std::move(shape));
    ++ShapeCount;
  });
}

void frmDocument::SetViewFixtures() {
  walkFixtures([&](const std::shared_ptr<clsFixture>& fixture) {
    m_errors.steps([&] { m_show.SelectedFixtureType = fixture->IconShape; },
                   [&] { DrawShape(fixture->x, fixture->y, DrawMode::Existing, fixture); },
                   [&] { SelectTool(); });
  });
  m_errors.run([&] { SelectTool(); });
}

std::shared_ptr<clsFixture> frmDocument::DrawShape(double x, double y, DrawMode mode,
                                                   std::shared_ptr<clsFixture> fixture) {
  m_errors.run([&] { beginFixture(mode, fixture); });
  if (fixture == nullptr || (mode == DrawMode::Again && fixture->IconShape == 0)) return fixture;
  m_errors.steps([&] { drawOutline(*fixture, {.x = x, .y = y}); }, [&] { drawHitBox(*fixture); },
                 [&] { drawCentre(*fixture); },
                 [&] {
                   if (mode == DrawMode::New) GetCurrentView()->colFixturesAdd(fixture);
                 },
                 [&] {
                   fixture->IconShape = m_show.SelectedFixtureType;
                   fixture->x = x;
                   fixture->y = y;
                 },
                 [&] {
                   const Point middle = FlpCAD1.extents(fixture->Shape).middle();
                   FlpCAD1.rotate(FlpCAD1.groupOf(fixture->Shape), middle, -fixture->Angle);
                 },
                 [&] { DrawTextOnShape(*fixture); });
  return fixture;
}

void frmDocument::beginFixture(DrawMode mode, std::shared_ptr<clsFixture>& fixture) {
  if (mode == DrawMode::New) {
    LastChannel = narrow<std::int16_t>(LastChannel + 1);
    fixture = std::make_shared<clsFixture>();
    fixture->Channel = LastChannel;
  }
  if (mode == DrawMode::Existing) {
    LastChannel = std::max(LastChannel, fixture->Channel);
    // The file holds the numbers of another evening's drawing.
    fixture->Shape = fixture->RectShape = fixture->CenterShape = fixture->CenterShape1 =
        fixture->CenterShape2 = 0;
    fixture->ChannelTextShape = fixture->LevelTextShape = fixture->DMXInTextShape = 0;
  }
}

void frmDocument::drawOutline(clsFixture& fixture, Point at) {
  FlpCAD1.setCurrentLayer(FirstLayer);
  const bool seen = !m_wiring.graphics.empty();
  const clsFixtureType& shape = *ShapeTable.item(seen ? m_show.SelectedFixtureType : 1);
  fixture.Shape = FlpCAD1.insertBlock(shape.ShapeNumber, at);
  FlpCAD1.scale(fixture.Shape, at, shape.ScaleFactor);
  FlpCAD1.setColour(fixture.Shape, Red);
}

void frmDocument::drawHitBox(clsFixture& fixture) {
  FlpCAD1.setCurrentLayer(FirstLayer);
  const Extents outline = FlpCAD1.extents(fixture.Shape);
  fixture.RectShape = FlpCAD1.addRectangle({.left = outline.left - HitMargin,
                                            .top = outline.top + HitMargin,
                                            .right = outline.right + HitMargin,
                                            .bottom = outline.bottom - HitMargin});
  FlpCAD1.setColour(fixture.RectShape, Black);
  const ShapeNumber group = FlpCAD1.createGroup();
  for (const ShapeNumber shape : {fixture.RectShape, fixture.Shape}) FlpCAD1.addToGroup(group, shape);
}

void frmDocument::drawCentre(clsFixture& fixture) {
  const Extents outline = FlpCAD1.extents(fixture.Shape);
  const Point middle = outline.middle();
  fixture.PerpX = middle.x;
  fixture.PerpY = middle.y + RotateHandle;
  const auto arm = roundTo<std::int32_t>(outline.width() / 8);
  fixture.CenterShape1 =
      FlpCAD1.addLine({.x = middle.x - arm, .y = middle.y}, {.x = middle.x + arm + 2, .y = middle.y});
  fixture.CenterShape2 =
      FlpCAD1.addLine({.x = middle.x, .y = middle.y - arm}, {.x = middle.x, .y = middle.y + arm + 2});
  fixture.CenterShape = FlpCAD1.createGroup();
  for (const ShapeNumber line : {fixture.CenterShape1, fixture.CenterShape2})
    FlpCAD1.addToGroup(fixture.CenterShape, line);
  FlpCAD1.setColour(fixture.CenterShape, Red);
}

std::shared_ptr<clsFixture> frmDocument::findFixture(std::int32_t clsFixture::*field,
                                                     ShapeNumber shape) const {
  for (const auto& fixture : GetCurrentView()->colFixtures())
    if ((*fixture).*field == shape) return fixture;
  auto none = std::make_shared<clsFixture>();
  none->FixtureName = "Not Found";
  return none;
}

std::shared_ptr<clsFixture> frmDocument::GetFixtureObject(ShapeNumber shape) const {
  return findFixture(&clsFixture::Shape, shape);
}

std::shared_ptr<clsFixture> frmDocument::GetFixtureByRect(ShapeNumber shape) const {
  return findFixture(&clsFixture::RectShape, shape);
}

}  // namespace velgrove
