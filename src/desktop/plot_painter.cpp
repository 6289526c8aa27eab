#include "desktop/plot_painter.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "desktop/marks.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr Colour AtRest = 255;
constexpr Colour InputText = 16777215;

constexpr double GridPitch = 50;
// Device pixels: what is larger is drawn where it stands, sharp at any zoom and without a picture of it.
constexpr double LargestBody = 256;
constexpr double LargestText = 64;

Placing placingOf(const Shape& insert) {
  return {.at = insert.at, .scale = insert.scale, .angle = insert.angle};
}

/// The nearest place at which a picture's pixels fall on the device's, or, for the middle of a line so many
/// pixels wide, at which the line's edges do.
QPointF onPixels(const QPainter& painter, QPointF at, double lineWidth = 0) {
  const QTransform& device = painter.deviceTransform();
  const double half = (qRound(lineWidth * device.m11()) % 2) / 2.0;
  const QPointF there = device.map(at) - QPointF(half, half);
  return device.inverted().map(QPointF(std::round(there.x()) + half, std::round(there.y()) + half));
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

/// A text about its middle. It is shaped once, since a large plot has a thousand texts.
class Lettering {
 public:
  Lettering(const std::string& text, const QFont& font) : m_metrics(font) {
    QTextLayout layout(QString::fromStdString(text), font);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    m_width = line.isValid() ? line.naturalTextWidth() : 0;
    m_runs = layout.glyphRuns();
  }

  [[nodiscard]] QRect box() const {
    using plot_look::Halo;
    return QRectF(corner().x() - Halo, corner().y() - Halo, m_width + 2 * Halo, m_metrics.height() + 2 * Halo)
        .toAlignedRect();
  }
  /// `halo` draws, about 0, 0, what keeps a letter apart from what it stands on.
  template <class Halo>
  void draw(QPainter& painter, const QColor& colour, Halo halo) const {
    for (const QGlyphRun& run : m_runs) {
      const auto letters = run.glyphIndexes();
      const auto places = run.positions();
      for (qsizetype i = 0; i < letters.size(); ++i)
        halo(painter, run.rawFont(), letters[i], corner() + places[i]);
    }
    painter.setPen(colour);
    for (const QGlyphRun& run : m_runs) painter.drawGlyphRun(corner(), run);
  }

 private:
  /// Digits stand on the line, as tall as capitals: their middle is the text's.
  [[nodiscard]] QPointF corner() const {
    return {-m_width / 2, m_metrics.capHeight() / 2 - m_metrics.ascent()};
  }

  QFontMetricsF m_metrics;
  double m_width = 0;
  QList<QGlyphRun> m_runs;
};

void paintSourceMark(QPainter& painter, Colour text, QPointF left) {
  using plot_look::MarkSize;
  drawSourceMark(painter, plot_look::sourceOf(text), theme::ofLevelText(text),
                 QRectF(left.x(), left.y() - MarkSize / 2, MarkSize, MarkSize));
}

void paintGrid(QPainter& painter, const WorldView& view, const QRegion& area) {
  constexpr int Last = 20;
  painter.setPen(QPen(theme::colour("grid"), 1.5));
  for (int column = 0; column <= Last; ++column) {
    for (int row = 0; row <= Last; ++row) {
      const QPointF dot = view.at(Point{.x = column * GridPitch, .y = row * GridPitch});
      if (area.intersects(QRectF(dot - QPointF(1, 1), QSizeF(2, 2)).toAlignedRect())) painter.drawPoint(dot);
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

template <class Draw>
const PlotPainter::Kept& PlotPainter::keep(const Look& look, Draw draw) {
  if (const Kept* const known = m_kept.object(look)) return *known;
  auto* const made = new Kept(draw());
  const QSize size = made->picture.size();
  constexpr int BytesOfPixel = 4;
  m_kept.insert(look, made, qsizetype{size.width()} * size.height() * BytesOfPixel);
  return *made;
}

void PlotPainter::paint(QPainter& painter, const PlotPicture& plot, const View& view, const QRegion& area) {
  forgetOtherScales(view);
  painter.setRenderHint(QPainter::Antialiasing);
  if (plot.grid && m_medium == Medium::Screen) paintGrid(painter, view, area);
  const QRectF around = area.boundingRect();
  for (std::size_t number = 0; number < plot.drawing.shapes.size(); ++number) {
    const QRectF box = boxOf(plot, number, view);
    if (!box.intersects(around) || !area.intersects(box.toAlignedRect())) continue;
    const Shape& shape = plot.drawing.shapes[number];
    const auto role = plot.partOf(number).role;
    if (shape.kind == Shape::Kind::Insert)
      paintInsert(painter, plot, number, view);
    else if (shape.kind == Shape::Kind::Text)
      paintText(painter, shape, role, view);
    else
      paintFigure(painter, shape, role, view);
  }
}

/// Bodies and texts are kept for one scale only: a zoom draws them anew.
void PlotPainter::forgetOtherScales(const View& view) {
  const double at = view.pixelsPerUnit * view.ratio;
  if (std::exchange(m_keptAt, at) != at) m_kept.clear();
}

void PlotPainter::paintFigure(QPainter& painter, const Shape& shape, PlotPicture::Role role,
                              const View& view) const {
  QColor line = m_medium == Medium::Paper ? QColor(Qt::black) : theme::ofFixture(shape.colour);
  if (shape.colour == AtRest) line.setAlphaF(0.25F);  // a fixture's centre stands behind its level
  if (shape.colour == 0 && role == PlotPicture::Role::SnapMark) line = theme::colour("edge");
  const double width = shape.colour == AtRest ? 1 : 2;
  painter.setPen(QPen(line, width));
  painter.setBrush(Qt::NoBrush);
  if (shape.kind == Shape::Kind::Line) {
    painter.drawLine(onPixels(painter, view.at(shape.at), width),
                     onPixels(painter, view.at(shape.to), width));
    return;
  }
  const QPointF half(shape.to.x * view.pixelsPerUnit, shape.to.y * view.pixelsPerUnit);
  const QPointF middle = view.at(shape.at);
  if (shape.angle == 0) {
    painter.drawRect(
        QRectF(onPixels(painter, middle - half, width), onPixels(painter, middle + half, width)));
    return;
  }
  painter.save();
  painter.translate(middle);
  painter.rotate(-shape.angle);
  painter.drawRect(QRectF(-half, half));
  painter.restore();
}

void PlotPainter::paintInsert(QPainter& painter, const PlotPicture& plot, std::size_t number,
                              const View& view) {
  const Shape& shape = plot.drawing.shapes[number];
  if (shape.block == nullptr) return;
  if (m_medium == Medium::Paper) {
    painter.save();
    painter.translate(view.at(shape.at));
    drawBody(painter, shape, Qt::black, Qt::transparent, view);
    painter.restore();
    return;
  }
  const Shape* const level = plot.levelOn(plot.partOf(number));
  if (level == nullptr || levelOf(*level) <= 0) {
    paintBody(painter, shape, Qt::transparent, view);
    return;
  }
  paintBody(painter, shape, glowOf(*level), view);
  const double right = view.at(extentsOf(*shape.block, placingOf(shape))).right();
  paintSourceMark(
      painter, level->colour,
      {right + plot_look::MarkAway, plot_look::middleOfText(*level, PlotPicture::Role::Level, view).y()});
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

/// A picture of what `draw` paints about 0, 0.
template <class Draw>
PlotPainter::Kept PlotPainter::drawnApart(const QRect& box, double ratio, Draw draw) {
  QPixmap picture(box.size() * ratio);
  picture.setDevicePixelRatio(ratio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(-box.topLeft());
  draw(painter);
  return {.picture = picture, .corner = box.topLeft()};
}

void PlotPainter::paintBody(QPainter& painter, const Shape& shape, const QColor& fill, const View& view) {
  const QColor line = theme::ofFixture(shape.colour);
  const double scale = shape.scale * view.pixelsPerUnit;
  const Extents& drawn = shape.block->extents;
  if (std::max(drawn.width(), drawn.height()) * scale * view.ratio > LargestBody) {
    painter.save();
    painter.translate(view.at(shape.at));
    drawBody(painter, shape, line, fill, view);
    painter.restore();
    return;
  }
  const Look look{.block = shape.block.get(),
                  .scale = scale * view.ratio,
                  .angle = shape.angle,
                  .outline = line.rgba(),
                  .fill = fill.rgba(),
                  .text = {},
                  .letter = 0,
                  .pixels = 0};
  const Kept& kept = keep(look, [&] {
    const Placing placing{.at = {}, .scale = shape.scale, .angle = shape.angle};
    const View own{.origin = {}, .pixelsPerUnit = view.pixelsPerUnit, .ratio = view.ratio};
    const QRect box = own.at(extentsOf(*shape.block, placing)).adjusted(-3, -3, 3, 3).toAlignedRect();
    return drawnApart(box, view.ratio, [&](QPainter& body) { drawBody(body, shape, line, fill, own); });
  });
  painter.drawPixmap(onPixels(painter, view.at(shape.at) + kept.corner), kept.picture);
}

/// To stroke an outline costs more than the rest of a text, so a letter's halo is drawn once.
const PlotPainter::Kept& PlotPainter::haloOf(const QRawFont& font, quint32 letter, double ratio) {
  const Look look{.block = nullptr,
                  .scale = ratio,
                  .angle = 0,
                  .outline = 0,
                  .fill = static_cast<QRgb>(font.weight()),
                  .text = font.familyName().toStdString(),
                  .letter = letter,
                  .pixels = qRound(font.pixelSize())};
  return keep(look, [&] {
    using plot_look::Halo;
    const QPainterPath outline = font.pathForGlyph(letter);
    const QRect box = outline.boundingRect().adjusted(-Halo, -Halo, Halo, Halo).toAlignedRect();
    const QPen pen(theme::colour("well"), Halo, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    return drawnApart(box, ratio, [&](QPainter& halo) { halo.strokePath(outline, pen); });
  });
}

void PlotPainter::paintText(QPainter& painter, const Shape& shape, PlotPicture::Role role, const View& view) {
  const bool channel = role == PlotPicture::Role::Channel;
  const int pixels = plot_look::textPixels(view);
  const QPointF middle = plot_look::middleOfText(shape, role, view);
  if (m_medium == Medium::Paper) {
    const QFont font = theme::font(pixels, !channel);
    const QString text = QString::fromStdString(shape.text);
    const QSizeF size(QFontMetricsF(font).horizontalAdvance(text) + 2, 2.0 * pixels);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(QRectF(middle - QPointF(size.width() / 2, size.height() / 2), size), Qt::AlignCenter,
                     text);
    return;
  }
  const bool plain = channel && shape.colour == InputText;
  const QColor colour = plain ? theme::colour("chanText") : theme::ofLevelText(shape.colour);
  const auto halo = [&](QPainter& letters, const QRawFont& font, quint32 letter, QPointF at) {
    const Kept& around = haloOf(font, letter, view.ratio);
    letters.drawPixmap(onPixels(letters, at + around.corner), around.picture);
  };
  if (pixels * view.ratio > LargestText) {
    painter.save();
    painter.translate(middle);
    Lettering(shape.text, theme::font(pixels, !channel)).draw(painter, colour, halo);
    painter.restore();
    return;
  }
  const Look look{.block = nullptr,
                  .scale = view.ratio,
                  .angle = 0,
                  .outline = colour.rgba(),
                  .fill = channel ? 1U : 0U,
                  .text = shape.text,
                  .letter = 0,
                  .pixels = pixels};
  const Kept& kept = keep(look, [&] {
    const Lettering text(shape.text, theme::font(pixels, !channel));
    return drawnApart(text.box(), view.ratio, [&](QPainter& letters) { text.draw(letters, colour, halo); });
  });
  painter.drawPixmap(onPixels(painter, middle + kept.corner), kept.picture);
}

}  // namespace velgrove
