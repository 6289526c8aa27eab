#include "desktop/plot_picture.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velgrove {
namespace {

constexpr double WidestPen = 2.2;
constexpr Colour ManualText = 255;
constexpr Colour InputText = 16777215;
constexpr Colour SubmasterText = 16744703;

/// A block as if its outline filled its extents, which is quick to turn.
QRectF boxOfInsert(const Shape& insert, const WorldView& view) {
  if (insert.block == nullptr) return {view.at(insert.at), QSizeF(0, 0)};
  const Extents& drawn = insert.block->extents;
  const double turn = insert.angle * std::numbers::pi / 180;
  const double scale = insert.scale * view.pixelsPerUnit;
  const double c = std::cos(turn) * scale;
  const double s = std::sin(turn) * scale;
  const Point middle = drawn.middle();
  const QPointF at = view.at(insert.at) + QPointF(middle.x * c - middle.y * s, -middle.x * s - middle.y * c);
  const double halfWidth = std::abs(c) * drawn.width() / 2 + std::abs(s) * drawn.height() / 2;
  const double halfHeight = std::abs(s) * drawn.width() / 2 + std::abs(c) * drawn.height() / 2;
  return {at.x() - halfWidth, at.y() - halfHeight, 2 * halfWidth, 2 * halfHeight};
}

QRectF boxOfText(const Shape& text, PlotPicture::Role role, const WorldView& view) {
  const double pixels = plot_look::textPixels(view);
  const double halfWidth = pixels * static_cast<double>(text.text.size()) / 2 + plot_look::Halo;
  const double halfHeight = pixels * 0.7 + plot_look::Halo;
  const QPointF middle = plot_look::middleOfText(text, role, view);
  return {middle.x() - halfWidth, middle.y() - halfHeight, 2 * halfWidth, 2 * halfHeight};
}

QRectF boxOfRectangle(const Shape& box, const WorldView& view) {
  const double corner = std::hypot(box.to.x, box.to.y);
  const double across = (box.angle == 0 ? box.to.x : corner) * view.pixelsPerUnit;
  const double up = (box.angle == 0 ? box.to.y : corner) * view.pixelsPerUnit;
  return QRectF(view.at(box.at), QSizeF(0, 0)).adjusted(-across, -up, across, up);
}

/// The source mark stands right of the body at the height of the level.
QRectF withMark(const QRectF& body, const Shape& level, const WorldView& view) {
  using namespace plot_look;
  const double y = middleOfText(level, PlotPicture::Role::Level, view).y();
  return body.united({body.right() + MarkAway, y - MarkSize / 2, MarkSize, MarkSize});
}

/// Gathers boxes. Many small ones are dearer than a whole paint.
class Area {
 public:
  Area(const WorldView& view, const QRect& whole) : m_view(view), m_whole(whole) {}

  void add(const PlotPicture& plot, std::size_t shape) {
    if (m_boxes > MostBoxes) return;
    take(plot, shape);
    const auto part = plot.partOf(shape);
    if (part.role != PlotPicture::Role::Level) return;
    const Shape* const body = plot.find(plot.fixtures[part.fixture].body);
    if (body != nullptr) take(plot, static_cast<std::size_t>(body - plot.drawing.shapes.data()));
  }
  [[nodiscard]] QRegion region() const { return m_boxes > MostBoxes ? QRegion(m_whole) : m_region; }

 private:
  static constexpr int MostBoxes = 200;

  void take(const PlotPicture& plot, std::size_t shape) {
    const QRectF box = boxOf(plot, shape, m_view).intersected(m_whole);
    if (box.isEmpty()) return;
    ++m_boxes;
    m_region += box.toAlignedRect();
  }

  const WorldView& m_view;
  QRect m_whole;
  QRegion m_region;
  int m_boxes = 0;
};

}  // namespace

Source plot_look::sourceOf(Colour levelText) {
  switch (levelText) {
    case ManualText:
      return Source::Manual;
    case InputText:
      return Source::Input;
    case SubmasterText:
      return Source::Submaster;
    default:
      return Source::Queue;
  }
}

int plot_look::textPixels(const WorldView& view) {
  constexpr int Smallest = 13;
  constexpr int Largest = 200;  // what stands closer than that is read anyhow
  return static_cast<int>(
      std::clamp(std::round(TextUnits * view.pixelsPerUnit), double{Smallest}, double{Largest}));
}

QPointF plot_look::middleOfText(const Shape& text, PlotPicture::Role role, const WorldView& view) {
  const double apart = std::max(textPixels(view) - LineUnits * view.pixelsPerUnit, 0.0);
  const double down = role == PlotPicture::Role::Channel ? -apart
                      : role == PlotPicture::Role::Blind ? apart
                                                         : 0;
  return view.at(text.at) + QPointF(0, TextUnits * view.pixelsPerUnit / 2 + down);
}

const Shape* PlotPicture::find(ShapeNumber number) const {
  for (auto layer = drawing.shapes.begin(); number > 0 && layer != drawing.shapes.end();) {
    const auto end = std::ranges::upper_bound(layer, drawing.shapes.end(), layer->layer, {}, &Shape::layer);
    const auto found = std::ranges::lower_bound(layer, end, number, {}, &Shape::number);
    if (found != end && found->number == number) return &*found;
    layer = end;
  }
  return nullptr;
}

void PlotPicture::giveRoles() {
  m_parts.assign(drawing.shapes.size(), {});
  const auto give = [this](ShapeNumber number, Role role, std::uint32_t fixture) {
    if (const Shape* const shape = find(number))
      m_parts[static_cast<std::size_t>(shape - drawing.shapes.data())] = {.role = role, .fixture = fixture};
  };
  for (std::uint32_t at = 0; at < fixtures.size(); ++at) {
    give(fixtures[at].body, Role::Body, at);
    give(fixtures[at].channelText, Role::Channel, at);
    give(fixtures[at].levelText, Role::Level, at);
    give(fixtures[at].blindText, Role::Blind, at);
  }
  if (snapMark == 0) return;
  for (std::size_t at = 0; at < m_parts.size(); ++at)
    if (drawing.shapes[at].group == snapMark) m_parts[at].role = Role::SnapMark;
}

QRectF boxOf(const PlotPicture& plot, std::size_t place, const WorldView& view) {
  const Shape& shape = plot.drawing.shapes[place];
  const auto part = plot.partOf(place);
  if (!plot.isPainted(place)) return {};
  QRectF box;
  switch (shape.kind) {
    case Shape::Kind::Line:
      box = QRectF(view.at(shape.at), view.at(shape.to)).normalized();
      break;
    case Shape::Kind::Rectangle:
      box = boxOfRectangle(shape, view);
      break;
    case Shape::Kind::Text:
      return boxOfText(shape, part.role, view);
    case Shape::Kind::Insert:
      box = boxOfInsert(shape, view);
      if (const Shape* const level = plot.levelOn(part)) box = withMark(box, *level, view);
      break;
  }
  // One more for the rounding to whole pixels, and one for soft edges.
  constexpr double Reach = WidestPen / 2 + 2;
  return box.adjusted(-Reach, -Reach, Reach, Reach);
}

QRegion changedArea(const PlotPicture& before, const PlotPicture& now, const WorldView& view,
                    const QRect& whole) {
  Area area(view, whole);
  const auto& old = before.drawing.shapes;
  const auto& fresh = now.drawing.shapes;
  std::size_t gone = 0;
  std::size_t come = 0;
  while (gone < old.size() || come < fresh.size()) {
    const bool isOld =
        come == fresh.size() || (gone < old.size() && orderOf(old[gone]) <= orderOf(fresh[come]));
    const bool isNew =
        gone == old.size() || (come < fresh.size() && orderOf(fresh[come]) <= orderOf(old[gone]));
    if (!isOld || !isNew || old[gone] != fresh[come]) {
      if (isOld) area.add(before, gone);
      if (isNew) area.add(now, come);
    }
    gone += isOld ? 1 : 0;
    come += isNew ? 1 : 0;
  }
  return area.region();
}

}  // namespace velgrove
