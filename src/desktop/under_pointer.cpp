#include "desktop/under_pointer.h"

#include <algorithm>
#include <cmath>

namespace velgrove {
namespace {

int percent(std::int16_t level) {
  return static_cast<int>(std::lround(DMXToPct(level)));
}

int whole(double units) {
  constexpr double Farthest = 99999;
  return static_cast<int>(std::lround(std::clamp(units, -Farthest, Farthest)));
}

UnderPointer::Fixture told(const clsFixture& fixture, const ShowState& show) {
  UnderPointer::Fixture now{.channel = fixture.Channel, .type = {}, .level = percent(fixture.Level)};
  const auto type = static_cast<std::size_t>(fixture.IconShape - 1);
  if (type < FixtureTypes.size()) now.type = FixtureTypes[type];
  const auto at = static_cast<std::size_t>(fixture.Channel - 1);
  if (show.BlindOn && at < show.BlindLevels.size()) now.blind = percent(show.BlindLevels[at]);
  return now;
}

}  // namespace

UnderPointer::Look UnderPointer::read(const LightingDesk& desk) {
  for (const auto& document : desk.windows.Documents) {
    const auto& at = document->FlpCAD1.pointer();
    if (at) return read(desk.show, *document, *at);
  }
  for (const auto& document : desk.windows.Documents)
    if (const auto fixture = document->pickedByKeys())
      return {.place = {}, .fixture = told(*fixture, desk.show), .name = fixture->FixtureName};
  return {};
}

UnderPointer::Look UnderPointer::read(const ShowState& show, const frmDocument& document, Point at) {
  const Known now{.document = document.Window.Identity, .revision = document.FlpCAD1.revision(), .at = at};
  if (std::exchange(m_known, now) != now) m_shape = document.FlpCAD1.shapeAt(at);

  Look look{.place = std::pair(whole(at.x), whole(at.y)), .fixture = {}};
  if (m_shape <= 0 || document.ActiveView == nullptr) return look;
  for (const auto& fixture : document.ActiveView->colFixtures()) {
    if (fixture->Shape != m_shape) continue;
    look.fixture = told(*fixture, show);
    break;
  }
  return look;
}

std::string UnderPointer::Look::placeText() const {
  if (!place) return name;
  return "X " + std::to_string(place->first) + "  Y " + std::to_string(place->second);
}

std::string UnderPointer::Look::fixtureText() const {
  if (!fixture) return {};
  std::string text = std::to_string(fixture->channel) + " " + std::string(fixture->type) + ", " +
                     std::to_string(fixture->level) + " %";
  if (fixture->blind) text += ", blind " + std::to_string(*fixture->blind) + " %";
  return text;
}

}  // namespace velgrove
