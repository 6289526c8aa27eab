#include "desktop/marks.h"

#include <QPolygonF>

#include "desktop/theme.h"

namespace velgrove {

void drawLetterMark(QPainter& painter, const QRectF& area, bool next, const QColor& body,
                    const QColor& letter) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(body);
  QRectF square = area;
  if (next) {
    const double tip = area.width() / 4;
    square.setRight(area.right() - tip / 2);
    painter.drawPolygon(QPolygonF{square.topLeft(), square.topRight() - QPointF(tip / 2, 0),
                                  QPointF(area.right() + tip / 2, area.center().y()),
                                  square.bottomRight() - QPointF(tip / 2, 0), square.bottomLeft()});
  } else {
    painter.drawRoundedRect(square, area.width() / 8, area.width() / 8);
  }
  painter.setFont(theme::font(qRound(area.height() * 0.8), true));
  painter.setPen(letter);
  painter.drawText(square, Qt::AlignCenter, next ? "N" : "S");
  painter.restore();
}

}  // namespace velgrove
