#include "desktop/plot_voice.h"

#include <algorithm>
#include <cmath>

#include "desktop/marks.h"
#include "desktop/plot_picture.h"
#include "desktop/spoken.h"

namespace velgrove {

PlotVoice::PlotVoice(QWidget& plot, Bindings& bindings, FindDocument find)
    : m_plot(plot), m_find(std::move(find)) {
  const auto at = [this](int part) -> const Fixture& { return m_fixtures[static_cast<std::size_t>(part)]; };
  speak(plot, {.role = QAccessible::List},
        {.count = [this] { return static_cast<int>(m_fixtures.size()); },
         .name = [at](int part) { return QString::fromStdString(at(part).words); },
         .place = [at](int part) { return at(part).place; },
         .current = [this] { return m_current; }});
  bindings.add({.copy = [this] { return copy(); }, .apply = [this] { speakCurrent(m_plot); }});
}

/// True when another fixture is picked; levels that change are told to whoever asks.
bool PlotVoice::copy() {
  const frmDocument* document = someoneListens() ? m_find() : nullptr;
  if (document == nullptr) return false;
  const auto picked = document->pickedByKeys();
  const bool another = m_picked.lock() != picked;
  const unsigned revision = document->FlpCAD1.revision();
  if (std::exchange(m_revision, revision) == revision && !another) return false;
  const auto fixtures = document->fixturesByChannel();
  m_fixtures.clear();
  for (const auto& fixture : fixtures) m_fixtures.push_back(told(*document, *fixture));
  const auto place = std::ranges::find(fixtures, picked);
  m_current = picked == nullptr || place == fixtures.end() ? -1 : static_cast<int>(place - fixtures.begin());
  m_picked = picked;
  return another;
}

PlotVoice::Fixture PlotVoice::told(const frmDocument& document, const clsFixture& fixture) {
  const Drawing& drawing = document.FlpCAD1;
  std::string words = std::to_string(fixture.Channel);
  const auto type = static_cast<std::size_t>(fixture.IconShape - 1);
  if (type < FixtureTypes.size()) words += " " + std::string(FixtureTypes[type]);
  if (!fixture.FixtureName.empty()) words += ", " + fixture.FixtureName;
  words += ", " + std::to_string(std::lround(DMXToPct(fixture.Level))) + " %";
  const Shape* const level = drawing.find(fixture.LevelTextShape);
  if (level != nullptr && fixture.Level > 0)
    words += std::string(", ") + wordsOf(plot_look::sourceOf(level->colour));
  if (const Shape* blind = drawing.find(fixture.DMXInTextShape)) words += ", blind " + blind->text;
  const Extents box = drawing.extents(fixture.Shape);
  const Pixel from = drawing.toPixels({.x = box.left, .y = box.top});
  const Pixel to = drawing.toPixels({.x = box.right, .y = box.bottom});
  return {.words = std::move(words),
          .place = QRectF(QPointF(from.x, from.y), QPointF(to.x, to.y)).toAlignedRect()};
}

}  // namespace velgrove
