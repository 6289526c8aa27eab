// Fixtures under the hand: picking one or many, and moving one.

#include <algorithm>
#include <cmath>
#include <span>

#include "controls/numbers.h"
#include "plot/document.h"

namespace velgrove {
namespace {

using colours::Black;
using colours::Blue;
using colours::Green;
using colours::Red;
using colours::White;
constexpr int FirstLayer = 1;
constexpr double SnapMarkLength = 50;  // world units

/// Whether a place lies half a pitch behind the grid point that is its nearest. Places in the middle count to
/// the even one of their two.
bool isHalfway(double at, double pitch, double nearest) {
  return pitch / 2 <= at - (nearest * pitch);
}

double snappedX(double x, double pitch) {
  const double n = roundHalfEven(x / pitch);
  return (isHalfway(x, pitch, n) ? n + 1 : n - 1) * pitch;
}

double snappedY(double y, double pitch) {
  const double n = roundHalfEven(y / pitch);
  return (isHalfway(y, pitch, n) ? n - 1 : n + 1) * pitch;
}

}  // namespace

// ---- What is selected: the windows of several plots share it, and each leaves to the others what is theirs

bool frmDocument::holds(const clsFixture& fixture) const {
  return ActiveView != nullptr && std::ranges::any_of(ActiveView->colFixtures(),
                                                      [&](const auto& one) { return one.get() == &fixture; });
}

std::shared_ptr<clsFixture> frmDocument::picked() const {
  const auto& fixture = m_show.SelectedFixture;
  return FixtureSelected && fixture != nullptr && holds(*fixture) ? fixture : nullptr;
}

std::vector<std::shared_ptr<clsFixture>> frmDocument::ownSelection() const {
  std::vector<std::shared_ptr<clsFixture>> own;
  for (const auto& fixture : m_show.SelectedFixtures)
    if (fixture != nullptr && holds(*fixture)) own.push_back(fixture);
  return own;
}

void frmDocument::deselect(const clsFixture& fixture) {
  const auto isIt = [&](const auto& one) { return one.get() == &fixture; };
  const std::span selected(m_show.SelectedFixtures.begin(), static_cast<std::size_t>(m_show.SelectionCount));
  const auto gone = std::ranges::remove_if(selected, isIt);
  std::ranges::fill(gone, nullptr);
  m_show.SelectionCount = narrow<std::int16_t>(m_show.SelectionCount - std::ssize(gone));
  if (isIt(m_show.SelectedFixture)) m_show.SelectedFixture = nullptr;
}

// ---- The marks of the selection

void frmDocument::paint(Colour colour, std::initializer_list<ShapeNumber> shapes) {
  for (const ShapeNumber shape : shapes) FlpCAD1.setColour(shape, colour);
}

void frmDocument::mark(const clsFixture& fixture) {
  paint(Green, {fixture.Shape, fixture.ChannelTextShape, fixture.LevelTextShape, fixture.DMXInTextShape});
}

void frmDocument::unmark(const clsFixture& fixture) {
  const Shape* const body = FlpCAD1.find(fixture.Shape);
  if (body == nullptr || body->colour != Green) return;
  paint(Red, {fixture.Shape, fixture.LevelTextShape, fixture.ChannelTextShape});
  if (fixture.Selected != 0) paint(Blue, {fixture.Shape});
}

void frmDocument::addToSelection(const std::shared_ptr<clsFixture>& fixture) {
  if (m_show.SelectionCount >= ShowState::MostSelected)
    throw RunTimeError(Fault::Subscript, "no more than 251 fixtures can be selected");
  fixture->Selected = 1;
  fixture->SelectIndex = static_cast<std::uint8_t>(m_show.SelectionCount);
  m_show.SelectedFixtures[static_cast<std::size_t>(m_show.SelectionCount)] = fixture;
  ++m_show.SelectionCount;
  paint(Blue, {fixture->Shape});
  paint(Green, {fixture->RectShape, fixture->CenterShape1});
}

void frmDocument::clearSelection() {
  if (m_show.SelectionCount < 1) return;
  for (const auto& fixture : ownSelection()) {
    paint(Red, {fixture->Shape, fixture->CenterShape1});
    paint(Black, {fixture->RectShape});
  }
  forgetSelection();
}

void frmDocument::forgetSelection() {
  for (const auto& fixture : m_show.SelectedFixtures)
    if (fixture != nullptr) fixture->Selected = fixture->SelectIndex = 0;
  m_show.SelectedFixtures.fill(nullptr);
  m_show.SelectionCount = 0;
  m_show.SelectedFixture = nullptr;
}

/// From now on it is the one that turns.
void frmDocument::pick(const std::shared_ptr<clsFixture>& fixture) {
  if (const auto before = picked()) unmark(*before);
  m_show.SelectedFixture = fixture;
  FixtureSelected = true;
  if (MouseMode == tools::Select) m_show.SelectedFixtureType = fixture->IconShape;
}

void frmDocument::FlpCAD1_ShapeNumberSelected(int type, ShapeNumber number) {
  if (type != shape_types::BlockOrGroup) return;
  m_errors.run([&] {
    const auto fixture = GetFixtureObject(number);
    pick(fixture);
    m_byKeys = false;
    const bool selecting = MouseMode == tools::Select;
    if (selecting && (FlpCAD1.keys() & mouse::Ctrl) != 0) return addToSelection(fixture);
    mark(*fixture);
    if (selecting) startDrag(*fixture);
    if (RotateActive) AGauge2.show(fixture->Angle);
  });
}

// ---- Moving

void frmDocument::startDrag(clsFixture& fixture) {
  DragActive = true;
  DeleteTextOnShape(fixture);
  if (FlpCAD1.Snap) FlpCAD1.setCursor(cursorOf(ToolCursor::Blank));
}

/// Where it stands: its release won't come, or isn't meant for it any more.
void frmDocument::stopDrag() {
  if (!std::exchange(DragActive, false)) return;
  SetSnapCursor(0, 0, false);
  FlpCAD1.setCursor(Drawing::ArrowCursor);
  if (const auto fixture = picked()) unmark(*fixture);
}

void frmDocument::dragTo(Point at) {
  if (m_show.SelectedFixture == nullptr) return;
  if (FlpCAD1.Snap) {
    GetCurrentSnapPos(at.x, at.y);
    if (SnapPos == LastSnapPos) return;
    SetSnapCursor(SnapPos.x, SnapPos.y, true);
    at = SnapPos;
  }
  moveFixture(*m_show.SelectedFixture, at);
}

/// The display writes a fixture's texts while it is being moved, and they come along.
void frmDocument::moveFixture(clsFixture& fixture, Point to) {
  for (const ShapeNumber shape : {fixture.Shape, fixture.RectShape, fixture.CenterShape,
                                  fixture.ChannelTextShape, fixture.LevelTextShape, fixture.DMXInTextShape})
    FlpCAD1.move(shape, to.x - fixture.x, to.y - fixture.y);
  fixture.x = to.x;
  fixture.y = to.y;
}

/// A moved fixture is built new at its place.
void frmDocument::endDrag(const std::shared_ptr<clsFixture>& fixture) {
  m_errors.steps([&] { eraseOutline(*fixture); }, [&] { SetSnapCursor(0, 0, false); },
                 [&] { DeleteTextOnShape(*fixture); },
                 [&] {
                   m_show.SelectedFixtureType = fixture->IconShape;
                   DrawShape(fixture->x, fixture->y, DrawMode::Again, fixture);
                 },
                 [&] {
                   FixtureSelected = false;
                   m_show.ProjectDirty = true;
                   FlpCAD1.setCursor(Drawing::ArrowCursor);
                 });
}

// ---- Snap

Point frmDocument::snapped(Point at) const {
  return {.x = snappedX(at.x, GridPitchX), .y = snappedY(at.y, GridPitchY)};
}

void frmDocument::GetCurrentSnapPos(double x, double y) {
  LastSnapPos = std::exchange(SnapPos, snapped({.x = x, .y = y}));
}

void frmDocument::SetSnapCursor(double x, double y, bool draw) {
  FlpCAD1.remove(std::exchange(SnapCursor, 0));
  if (!draw) return;
  constexpr double Arm = SnapMarkLength / 2;
  FlpCAD1.setCurrentLayer(FirstLayer);
  const ShapeNumber across = FlpCAD1.addLine({.x = x - Arm, .y = y}, {.x = x + Arm, .y = y});
  const ShapeNumber upwards = FlpCAD1.addLine({.x = x, .y = y - Arm}, {.x = x, .y = y + Arm});
  paint(White, {across});
  paint(Black, {upwards});
  SnapCursor = FlpCAD1.createGroup();
  for (const ShapeNumber line : {across, upwards}) FlpCAD1.addToGroup(SnapCursor, line);
}

/// Before a press the mark shows where a light would land.
void frmDocument::showSnap(Point at) {
  if (!FlpCAD1.Snap) return;
  const Point place = snapped(at);
  if (SnapCursor != 0 && FlpCAD1.extents(SnapCursor).middle() == place) return;
  SetSnapCursor(place.x, place.y, true);
}

}  // namespace velgrove
