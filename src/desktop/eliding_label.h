#pragma once

#include <QLabel>
#include <QPainter>

namespace velgrove {

/// A label for words of any length: it asks for no room of its own, and ends in dots where they don't fit.
class ElidingLabel : public QLabel {
  Q_OBJECT

 public:
  ElidingLabel() {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    const QRect room = contentsRect();
    painter.drawText(room, static_cast<int>(alignment()) | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, room.width()));
  }
};

}  // namespace velgrove
