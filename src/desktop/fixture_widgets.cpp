#include "desktop/fixture_widgets.h"

#include <QPainter>
#include <algorithm>

#include "desktop/marks.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr Colour Picked = 0x00FF00;

/// The place of a text on the plot, which hangs by the middle of its top.
Extents reachOf(const Shape& text) {
  constexpr double HalfWidth = 30;
  constexpr double Height = 27;
  return {.left = text.at.x - HalfWidth,
          .top = text.at.y,
          .right = text.at.x + HalfWidth,
          .bottom = text.at.y - Height};
}

Extents both(const Extents& one, const Extents& other) {
  return {.left = std::min(one.left, other.left),
          .top = std::max(one.top, other.top),
          .right = std::max(one.right, other.right),
          .bottom = std::min(one.bottom, other.bottom)};
}

}  // namespace

// ---- The symbol

FixtureSymbol::FixtureSymbol(Bindings& bindings, std::function<Subject()> find) : m_find(std::move(find)) {
  constexpr QSize Place(134, 136);
  setFixedSize(Place);
  setObjectName("Light");
  setAccessibleName("The fixture on the plot");
  bindings.add({.copy = [this] { return copy(); }, .apply = [this] { update(); }});
}

/// The plot's other shapes may have changed alone, so the few of this fixture are compared.
bool FixtureSymbol::copy() {
  const auto [plot, fixture] = m_find();
  if (plot == nullptr || fixture == nullptr) return false;
  PlotPicture now;
  now.fixtures = {{.body = fixture->Shape,
                   .channelText = fixture->ChannelTextShape,
                   .levelText = fixture->LevelTextShape,
                   .blindText = fixture->DMXInTextShape}};
  for (const ShapeNumber number :
       {fixture->Shape, fixture->ChannelTextShape, fixture->LevelTextShape, fixture->DMXInTextShape}) {
    const Shape* shape = plot->FlpCAD1.find(number);
    if (shape == nullptr) continue;
    now.drawing.shapes.push_back(*shape);
    if (number == fixture->Shape) {
      now.drawing.shapes.back().colour = Picked;
      now.drawing.limits = plot->FlpCAD1.extents(number);
    } else {
      now.drawing.limits = both(now.drawing.limits, reachOf(*shape));
    }
  }
  std::ranges::sort(now.drawing.shapes, {}, orderOf);
  if (now.drawing.shapes == m_picture.drawing.shapes) return false;
  now.giveRoles();
  m_picture = std::move(now);
  return true;
}

/// At the size that the plot has at its own scale, or smaller.
PlotPainter::View FixtureSymbol::view() const {
  constexpr double Margin = 14;  // the mark of the source stands in it
  const Extents& world = m_picture.drawing.limits;
  const double scale =
      std::min({1.0, (width() - 2 * Margin) / world.width(), (height() - 2 * Margin) / world.height()});
  const Point middle = world.middle();
  return {.origin = {width() / 2.0 - middle.x * scale, height() / 2.0 + middle.y * scale},
          .pixelsPerUnit = scale,
          .ratio = devicePixelRatioF()};
}

void FixtureSymbol::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), theme::colour("well"));
  painter.setPen(theme::colour("line"));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  if (!m_picture.drawing.shapes.empty()) m_painter.paint(painter, m_picture, view(), rect());
}

// ---- What the input holds

InputHolds::InputHolds() {
  constexpr int WordsFrom = 22;
  setObjectName("DmxHolds");
  setProperty("type", "hint");
  setContentsMargins(WordsFrom, 0, 0, 0);
  setTextFormat(Qt::PlainText);
}

void InputHolds::setLevel(int percent) {
  setText(percent > 0 ? QString("DMX input holds %1").arg(percent) : QString());
  update();  // the mark too, which stands beside the words' place
}

void InputHolds::paintEvent(QPaintEvent* event) {
  QLabel::paintEvent(event);
  if (text().isEmpty()) return;
  QPainter painter(this);
  drawInputMark(painter, {1, height() / 2.0});
}

}  // namespace velgrove
