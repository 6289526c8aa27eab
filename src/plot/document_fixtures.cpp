// Fixtures come and go: placing, the dialog, deleting.

#include "controls/numbers.h"
#include "plot/document.h"

namespace velgrove {
// ---- Placing

void frmDocument::placeLight(Point at) {
  if (FlpCAD1.Snap) {
    GetCurrentSnapPos(at.x, at.y);
    at = SnapPos;
  }
  placeFixture(at);
  if (m_show.SelectedFixtureType != MovingLight) return;
  // The channels of its position are fixtures too, so that nobody else is given them.
  for (int channel = 1; channel < MovingLightChannels; ++channel)
    placeFixture({.x = at.x + OutOfSight, .y = at.y + OutOfSight});
}

void frmDocument::placeFixture(Point at) {
  const auto fixture = DrawShape(at.x, at.y, DrawMode::New, nullptr);
  if (fixture == nullptr) return;
  fixture->Effect = fixture->Mood = fixture->PatternMFG = fixture->EdFocus = fixture->PatternNumber =
      fixture->ColorMFG = fixture->ColorNumber = "0";
  fixture->Wattage = 0;
  fixture->Level = 0;
  fixture->FixtureName = "";
  fixture->FixtureType = "Light ";
  fixture->Selected = 0;
  fixture->Channel = LastChannel;
  m_show.ProjectDirty = true;
}

// ---- The fixture at a place

std::shared_ptr<clsFixture> frmDocument::fixtureAt(Point at) const {
  const ShapeNumber shape = FlpCAD1.shapeAt(at);
  return FlpCAD1.shapeType(shape) == shape_types::BlockOrGroup ? GetFixtureObject(shape) : nullptr;
}

void frmDocument::openFixtureAt(Point at) {
  if (const auto fixture = fixtureAt(at)) openFixture(fixture, at);
}

void frmDocument::openFixture(const std::shared_ptr<clsFixture>& fixture, Point at) {
  m_show.CurrentFixture = fixture;
  if (m_wiring.openFixture) m_wiring.openFixture(FlpCAD1.toPixels(at));
  m_show.SelectedFixtureType = fixture->IconShape;
  m_show.ProjectDirty = true;
}

// ---- Deleting

void frmDocument::deleteFixtureAt(Point at) {
  const auto fixture = fixtureAt(at);
  if (fixture == nullptr) return;
  raise(m_wiring.closeFixture);
  m_show.CurrentFixture = fixture;
  deselect(*fixture);
  m_errors.steps([&] { eraseOutline(*fixture); }, [&] { DeleteTextOnShape(*fixture); },
                 [&] {
                   // One without a channel has nothing on the wire.
                   if (isChannel(fixture->Channel)) m_show.ManualLevels[channelIndex(fixture->Channel)] = 0;
                 },
                 [&] { m_show.ProjectDirty = true; }, [&] { giveChannelBack(*fixture); },
                 [&] { takeOffShow(*fixture); });
}

/// Fixtures go by their channel. One that has none can only go by itself.
void frmDocument::takeOffShow(const clsFixture& fixture) const {
  auto& fixtures = GetCurrentView()->colFixtures();
  if (fixture.Channel != 0) return SearchRemove(fixtures, fixture.Channel);
  for (int position = 1; position <= fixtures.count(); ++position)
    if (fixtures.item(position).get() == &fixture) return fixtures.Remove(position);
}

void frmDocument::giveChannelBack(const clsFixture& fixture) {
  if (fixture.Channel == LastChannel) LastChannel = narrow<std::int16_t>(LastChannel - 1);
  if (fixture.IconShape == MovingLight && fixture.Channel == LastChannel - (MovingLightChannels - 1))
    LastChannel = narrow<std::int16_t>(LastChannel - MovingLightChannels);
}

/// The mark of the centre goes along, or the plot would keep a cross wherever a fixture ever stood.
void frmDocument::eraseOutline(clsFixture& fixture) {
  FlpCAD1.removeFromGroup(fixture.RectShape);
  for (std::int32_t* shape : {&fixture.RectShape, &fixture.Shape, &fixture.CenterShape})
    FlpCAD1.remove(std::exchange(*shape, 0));
  fixture.CenterShape1 = fixture.CenterShape2 = 0;
}

void frmDocument::DoDelete() {
  m_errors.run([&] { LastChannel = narrow<std::int16_t>(LastChannel - 1); });
  if (m_show.SelectionCount < 1) return;
  raise(m_wiring.closeFixture);
  stopDrag();
  const auto fixtures = ownSelection();
  for (const auto& fixture : fixtures) m_errors.run([&] { takeOffShow(*fixture); });
  for (const auto& fixture : fixtures) m_errors.run([&] { hide(*fixture); });
  forgetSelection();
  m_show.ProjectDirty = true;
}

void frmDocument::hide(clsFixture& fixture) {
  paint(colours::Black,
        {fixture.Shape, fixture.RectShape, fixture.CenterShape, fixture.CenterShape1, fixture.CenterShape2});
  DeleteTextOnShape(fixture);
}

}  // namespace velgrove
