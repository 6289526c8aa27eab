#include "desktop/plot_painter.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr Colour Black = 0;
constexpr Colour AtRest = 255;
constexpr Colour ManualText = 255;
constexpr Colour InputText = 16777215;
constexpr Colour SubmasterText = 16744703;

constexpr double TextUnits = 27;  // height of the plot's texts, which hang by their top
constexpr int SmallestText = 13;  // pixels, so that a level is read at any zoom
constexpr double Halo = 3;
constexpr double GridPitch = 50;
constexpr int MostKept = 4000;

QPointF at(Point world, const PlotPainter::View& view) {
  return {view.origin.x() + world.x * view.pixelsPerUnit, view.origin.y() - world.y * view.pixelsPerUnit};
}

QRectF at(const Extents& world, const PlotPainter::View& view) {
  return QRectF(at(Point{.x = world.left, .y = world.top}, view),
                at(Point{.x = world.right, .y = world.bottom}, view));
}

Placing placingOf(const Shape& insert) {
  return {.at = insert.at, .scale = insert.scale, .angle = insert.angle};
}

QPointF middleOf(const Shape& text, const PlotPainter::View& view) {
  return at(text.at, view) + QPointF(0, TextUnits * view.pixelsPerUnit / 2);
}

/// Draws the parts of a block, in its own units with y upwards.
struct Pen {
  QPainterPath& path;

  void operator()(const Polyline& line) const {
    QPolygonF points;
    for (const Point& point : line.points) points << QPointF(point.x, point.y);
    if (line.closed && !points.isEmpty()) points << points.first();
    path.addPolygon(points);
  }
  void operator()(const Circle& circle) const {
    path.addEllipse(QPointF(circle.middle.x, circle.middle.y), circle.radius, circle.radius);
  }
  void operator()(const Arc& arc) const {
    const QRectF box(arc.middle.x - arc.radius, arc.middle.y - arc.radius, 2 * arc.radius, 2 * arc.radius);
    // The path's angles run the other way where y grows upwards.
    path.arcMoveTo(box, -arc.from);
    path.arcTo(box, -arc.from, -(arc.to - arc.from));
  }
};

/// What a level text says, 0 to 1.
double levelOf(const Shape& text) {
  if (text.text == "FL") return 1;
  return QString::fromStdString(text.text).toInt() / 100.0;  // "-" is dark
}

/// A fixture's body glows in the colour of what lights it.
QColor glowOf(const Shape& levelText) {
  constexpr double Steps = 16;
  constexpr double Faintest = 0.10;
  constexpr double Brightest = 0.44;
  QColor glow = theme::ofLevelText(levelText.colour);
  const double step = std::round(levelOf(levelText) * Steps) / Steps;
  glow.setAlphaF(static_cast<float>(Faintest + (Brightest - Faintest) * step));
  return glow;
}

/// A mark beside the level tells its source without its colour: a square for manual, a triangle for the
/// input, a disc for a submaster. The cue players, from which most light comes, have none.
void paintSourceMark(QPainter& painter, Colour source, QPointF left) {
  constexpr double Size = 7;
  QRectF box(left.x(), left.y() - Size / 2, Size, Size);
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme::ofLevelText(source));
  switch (source) {
    case ManualText:
      painter.drawRect(box);
      break;
    case InputText:
      painter.drawPolygon(QPolygonF{box.topLeft(), box.topRight(), QPointF(box.center().x(), box.bottom())});
      break;
    case SubmasterText:
      painter.drawEllipse(box);
      break;
    default:
      break;
  }
}

void paintGrid(QPainter& painter, const PlotPainter::View& view, const QRectF& area) {
  constexpr int Last = 20;
  painter.setPen(QPen(theme::colour("grid"), 1.5));
  for (int column = 0; column <= Last; ++column) {
    for (int row = 0; row <= Last; ++row) {
      const QPointF dot = at(Point{.x = column * GridPitch, .y = row * GridPitch}, view);
      if (area.contains(dot)) painter.drawPoint(dot);
    }
  }
}

}  // namespace

const QPainterPath& PlotPainter::outline(const std::shared_ptr<const Block>& block) {
  auto& [held, path] = m_outlines[block.get()];
  if (held == nullptr) {
    held = block;
    path.setFillRule(Qt::WindingFill);
    for (const Primitive& primitive : block->primitives) std::visit(Pen{path}, primitive);
  }
  return path;
}

const PlotPainter::Kept& PlotPainter::keep(const Look& look, const Kept& kept) {
  if (m_kept.size() >= MostKept) m_kept.clear();
  return *m_kept.insert(look, kept);
}

PlotPainter::Roles PlotPainter::rolesIn(const PlotPicture& plot) {
  Roles roles;
  for (const FixtureShapes& fixture : plot.fixtures) {
    roles.bodies.emplace(fixture.body, &fixture);
    roles.channels.insert(fixture.channelText);
  }
  for (const Shape& shape : plot.drawing.shapes)
    if (shape.kind == Shape::Kind::Text) roles.texts.emplace(shape.number, &shape);
  return roles;
}

void PlotPainter::paint(QPainter& painter, const PlotPicture& plot, const View& view, const QRectF& area) {
  const Roles roles = rolesIn(plot);
  forgetOtherScales(view);
  painter.setRenderHint(QPainter::Antialiasing);
  if (plot.grid && m_medium == Medium::Screen) paintGrid(painter, view, area);
  for (const Shape& shape : plot.drawing.shapes) {
    if (!isSeen(shape, view, area)) continue;
    if (shape.kind == Shape::Kind::Insert)
      paintInsert(painter, shape, roles, view);
    else if (shape.colour == Black)
      continue;  // black on the black plot is there to be painted by a tool
    else if (shape.kind == Shape::Kind::Text)
      paintText(painter, shape, roles.channels.contains(shape.number), view);
    else
      paintFigure(painter, shape, view);
  }
}

/// Bodies and texts are kept for one scale only: a zoom draws them anew.
void PlotPainter::forgetOtherScales(const View& view) {
  const double at = view.pixelsPerUnit * view.ratio;
  if (std::exchange(m_keptAt, at) != at) m_kept.clear();
}

bool PlotPainter::isSeen(const Shape& shape, const View& view, const QRectF& area) {
  constexpr double Reach = 60;  // halo, marks, and the width of a text
  QRectF box(at(shape.at, view), QSizeF(0, 0));
  if (shape.kind == Shape::Kind::Insert && shape.block != nullptr)
    box = at(extentsOf(*shape.block, placingOf(shape)), view);
  else if (shape.kind == Shape::Kind::Line)
    box = QRectF(at(shape.at, view), at(shape.to, view)).normalized();
  else if (shape.kind == Shape::Kind::Rectangle)
    box.adjust(-shape.to.x * view.pixelsPerUnit, -shape.to.y * view.pixelsPerUnit,
               shape.to.x * view.pixelsPerUnit, shape.to.y * view.pixelsPerUnit);
  const double reach = Reach + TextUnits * 2 * view.pixelsPerUnit;
  return box.adjusted(-reach, -reach, reach, reach).intersects(area);
}

void PlotPainter::paintFigure(QPainter& painter, const Shape& shape, const View& view) const {
  QColor line = m_medium == Medium::Paper ? QColor(Qt::black) : theme::ofFixture(shape.colour);
  if (shape.colour == AtRest) line.setAlphaF(0.25F);  // a fixture's centre stands behind its level
  painter.setPen(QPen(line, 1));
  painter.setBrush(Qt::NoBrush);
  if (shape.kind == Shape::Kind::Line) {
    painter.drawLine(at(shape.at, view), at(shape.to, view));
    return;
  }
  const QPointF half(shape.to.x * view.pixelsPerUnit, shape.to.y * view.pixelsPerUnit);
  painter.save();
  painter.translate(at(shape.at, view));
  painter.rotate(-shape.angle);
  painter.drawRect(QRectF(-half, half));
  painter.restore();
}

void PlotPainter::paintInsert(QPainter& painter, const Shape& shape, const Roles& roles, const View& view) {
  if (shape.block == nullptr || shape.colour == Black) return;
  if (m_medium == Medium::Paper) {
    painter.save();
    painter.translate(at(shape.at, view));
    drawBody(painter, shape, Qt::black, Qt::transparent, view);
    painter.restore();
    return;
  }
  const auto fixture = roles.bodies.find(shape.number);
  const auto level =
      fixture == roles.bodies.end() ? roles.texts.end() : roles.texts.find(fixture->second->levelText);
  if (level == roles.texts.end() || levelOf(*level->second) <= 0) {
    paintBody(painter, shape, Qt::transparent, view);
    return;
  }
  const Colour source = level->second->colour;
  paintBody(painter, shape, glowOf(*level->second), view);
  constexpr double Away = 5;
  const QRectF body = at(extentsOf(*shape.block, placingOf(shape)), view);
  paintSourceMark(painter, source, {body.right() + Away, middleOf(*level->second, view).y()});
}

/// The body about the shape's own point.
void PlotPainter::drawBody(QPainter& painter, const Shape& shape, const QColor& line, const QColor& fill,
                           const View& view) {
  QTransform placing;
  placing.scale(view.pixelsPerUnit, -view.pixelsPerUnit);
  placing.rotate(shape.angle);
  placing.scale(shape.scale, shape.scale);
  // Paper has many more pixels to a line than the screen.
  const double onScreen = shape.colour == AtRest ? 1.5 : 2.2;
  const double width = m_medium == Medium::Paper ? onScreen * view.pixelsPerUnit : onScreen;
  painter.setPen(QPen(line, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(fill);
  painter.drawPath(placing.map(outline(shape.block)));
}

void PlotPainter::paintBody(QPainter& painter, const Shape& shape, const QColor& fill, const View& view) {
  const QColor line = theme::ofFixture(shape.colour);
  constexpr double LargestKept = 256;  // pixels; a larger body is drawn where it stands
  if (extentsOf(*shape.block, placingOf(shape)).width() * view.pixelsPerUnit > LargestKept) {
    painter.save();
    painter.translate(at(shape.at, view));
    drawBody(painter, shape, line, fill, view);
    painter.restore();
    return;
  }
  const Look look{.block = shape.block.get(),
                  .scale = shape.scale * view.pixelsPerUnit * view.ratio,
                  .angle = shape.angle,
                  .outline = line.rgba(),
                  .fill = fill.rgba(),
                  .text = {},
                  .pixels = 0};
  const auto draw = [&] {
    const Placing placing{.at = {}, .scale = shape.scale, .angle = shape.angle};
    const View own{.origin = {}, .pixelsPerUnit = view.pixelsPerUnit, .ratio = view.ratio};
    const QRect box = at(extentsOf(*shape.block, placing), own).adjusted(-3, -3, 3, 3).toAlignedRect();
    QPixmap picture(box.size() * view.ratio);
    picture.setDevicePixelRatio(view.ratio);
    picture.fill(Qt::transparent);
    QPainter body(&picture);
    body.setRenderHint(QPainter::Antialiasing);
    body.translate(-box.topLeft());
    drawBody(body, shape, line, fill, own);
    return Kept{.picture = picture, .corner = box.topLeft()};
  };
  const auto found = m_kept.constFind(look);
  const Kept& kept = found != m_kept.constEnd() ? *found : keep(look, draw());
  painter.drawPixmap((at(shape.at, view) + kept.corner).toPoint(), kept.picture);
}

void PlotPainter::paintText(QPainter& painter, const Shape& shape, bool channel, const View& view) {
  constexpr int LargestText = 200;  // pixels: what stands closer than that is read anyhow
  const int pixels = std::clamp(qRound(TextUnits * view.pixelsPerUnit), SmallestText, LargestText);
  const QFont font = theme::font(pixels, !channel);
  const QString text = QString::fromStdString(shape.text);
  const QPointF middle = middleOf(shape, view);
  if (m_medium == Medium::Paper) {
    const QSizeF size(QFontMetricsF(font).horizontalAdvance(text) + 2, 2.0 * pixels);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(QRectF(middle - QPointF(size.width() / 2, size.height() / 2), size), Qt::AlignCenter,
                     text);
    return;
  }
  const bool plain = channel && shape.colour == InputText;
  const QColor colour = plain ? theme::colour("chanText") : theme::ofLevelText(shape.colour);
  const Look look{.block = nullptr,
                  .scale = view.ratio,
                  .angle = 0,
                  .outline = colour.rgba(),
                  .fill = channel ? 1U : 0U,
                  .text = text,
                  .pixels = pixels};
  const Kept& kept = keptText(look, font, view.ratio);
  painter.drawPixmap((middle + kept.corner).toPoint(), kept.picture);
}

const PlotPainter::Kept& PlotPainter::keptText(const Look& look, const QFont& font, double ratio) {
  const auto found = m_kept.constFind(look);
  if (found != m_kept.constEnd()) return *found;
  QPainterPath letters;
  letters.addText(0, 0, font, look.text);
  const QFontMetricsF metrics(font);
  const double width = metrics.horizontalAdvance(look.text);
  // Digits stand on the line, as tall as capitals: their middle is the text's.
  const QPointF base(Halo - width / 2, metrics.capHeight() / 2);
  const QRect box =
      QRectF(-width / 2 - Halo, -metrics.ascent() - Halo, width + 4 * Halo, metrics.height() + 2 * Halo)
          .toAlignedRect();
  QPixmap picture(box.size() * ratio);
  picture.setDevicePixelRatio(ratio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(base - QPointF(Halo, 0) - box.topLeft());
  painter.strokePath(letters, QPen(theme::colour("well"), Halo, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setFont(font);
  painter.setPen(QColor::fromRgba(look.outline));
  painter.drawText(QPointF(0, 0), look.text);
  painter.end();
  return keep(look, {.picture = picture, .corner = box.topLeft()});
}

}  // namespace velgrove
