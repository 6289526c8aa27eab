// Turning a fixture, by the gauge and by command.

#include "controls/numbers.h"
#include "plot/document.h"

namespace velgrove {
namespace {

constexpr std::int16_t Clockwise = 1;
constexpr std::int16_t Anticlockwise = 2;

}  // namespace

void frmDocument::AGauge2_Change() {
  m_errors.run([&] {
    const auto fixture = picked();
    if (fixture == nullptr) return;
    const auto back = roundTo<std::int16_t>((AGauge2.value() - fixture->Angle) * -1);
    if (back >= 1)
      RotateObject(narrow<std::int16_t>(-back), Clockwise, true);
    else
      RotateObject(back, Anticlockwise, true);
  });
}

void frmDocument::RotateObject(std::int16_t change, std::int16_t direction, bool fromGauge) {
  if (const auto fixture = picked()) turn(*fixture, change, direction, fromGauge);
}

void frmDocument::InitRotateFixture(clsFixture& fixture, std::int16_t change, std::int16_t direction,
                                    bool fromGauge) {
  Pivot = FlpCAD1.extents(fixture.Shape).middle();
  turn(fixture, change, direction, fromGauge);
}

void frmDocument::turn(clsFixture& fixture, std::int16_t change, std::int16_t direction, bool fromGauge) {
  const double clockwise = direction == Clockwise ? change : -change;
  m_errors.steps([&] { FlpCAD1.rotate(fixture.Shape, FlpCAD1.extents(fixture.Shape).middle(), -clockwise); },
                 [&] { fixture.Angle += clockwise; },
                 [&] {
                   if (!fromGauge) AGauge2.show(fixture.Angle);
                 },
                 [&] {
                   FlpCAD1.removeFromGroup(fixture.RectShape);
                   FlpCAD1.remove(fixture.RectShape);
                   drawHitBox(fixture);
                   m_show.ProjectDirty = true;
                 });
}

}  // namespace velgrove
