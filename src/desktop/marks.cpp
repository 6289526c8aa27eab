#include "desktop/marks.h"

#include <QPixmapCache>
#include <QPolygonF>

#include "desktop/theme.h"

namespace velgrove {
namespace {

/// The mark of a square, and how far the arrow's tip stands out of it.
void draw(QPainter& painter, const QRectF& square, double tip, bool next, const QColor& body,
          const QColor& letter) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(body);
  QRectF middle = square;
  if (next) {
    middle.setRight(square.right() - tip);
    painter.drawPolygon(QPolygonF{middle.topLeft(), middle.topRight() - QPointF(tip, 0),
                                  QPointF(square.right() + tip, square.center().y()),
                                  middle.bottomRight() - QPointF(tip, 0), middle.bottomLeft()});
  } else {
    painter.drawRoundedRect(square, square.width() / 8, square.width() / 8);
  }
  painter.setFont(theme::font(qRound(square.height() * 0.8), true));
  painter.setPen(letter);
  painter.drawText(middle, Qt::AlignCenter, next ? "N" : "S");
}

}  // namespace

/// Kept as a picture: a running fade paints it thirty times a second.
void drawLetterMark(QPainter& painter, const QRect& area, bool next, const QColor& body,
                    const QColor& letter) {
  const double ratio = painter.device()->devicePixelRatioF();
  const int tip = area.width() / 8;
  const QString key = QString("mark/%1/%2/%3/%4/%5")
                          .arg(next)
                          .arg(area.width())
                          .arg(body.rgba())
                          .arg(letter.rgba())
                          .arg(ratio);
  QPixmap kept;
  if (!QPixmapCache::find(key, &kept)) {
    kept = QPixmap(QSizeF((area.width() + tip + 1) * ratio, area.height() * ratio).toSize());
    kept.fill(Qt::transparent);
    kept.setDevicePixelRatio(ratio);
    QPainter first(&kept);
    draw(first, QRectF(QPointF(0, 0), area.size()), tip, next, body, letter);
    first.end();
    QPixmapCache::insert(key, kept);
  }
  painter.drawPixmap(area.topLeft(), kept);
}

void drawInputMark(QPainter& painter, QPointF left, double size) {
  const double half = size * 5 / 12;  // of its height
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme::colour("input"));
  painter.drawPolygon(
      QPolygonF{left + QPointF(0, -half), left + QPointF(size, -half), left + QPointF(size / 2, half)});
}

const char* wordsOf(Source source) {
  switch (source) {
    case Source::Manual:
      return "manual";
    case Source::Queue:
      return "queue";
    case Source::Input:
      return "DMX input";
    case Source::Submaster:
      return "submaster";
  }
  return "";
}

const char* wordsOf(InterfaceState::Lamp lamp) {
  switch (lamp) {
    case InterfaceState::Lamp::Up:
      return "Interface up";
    case InterfaceState::Lamp::Starting:
      return "Interface starts";
    case InterfaceState::Lamp::None:
      return "No interface";
  }
  return "";
}

void drawLamp(QPainter& painter, InterfaceState::Lamp lamp, const QRectF& area, const QColor& colour) {
  const double unit = area.width() / 12;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(colour, 2 * unit));
  painter.setBrush(lamp == InterfaceState::Lamp::Up ? QBrush(colour) : QBrush(Qt::NoBrush));
  if (lamp == InterfaceState::Lamp::None)
    painter.drawPolygon(QPolygonF{area.topLeft() + QPointF(6, 2) * unit,
                                  area.topLeft() + QPointF(11, 10) * unit,
                                  area.topLeft() + QPointF(1, 10) * unit});
  else
    painter.drawEllipse(area.adjusted(2 * unit, 2 * unit, -2 * unit, -2 * unit));
}

void drawSourceMark(QPainter& painter, Source source, const QColor& colour, const QRectF& area) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  switch (source) {
    case Source::Manual:
      painter.drawRect(area);
      break;
    case Source::Input:
      painter.drawPolygon(
          QPolygonF{area.topLeft(), area.topRight(), QPointF(area.center().x(), area.bottom())});
      break;
    case Source::Submaster:
      painter.drawEllipse(area);
      break;
    case Source::Queue:
      break;
  }
}

}  // namespace velgrove
