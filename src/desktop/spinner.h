#pragma once

#include <QTimer>
#include <QWidget>

#include "desktop/field.h"
#include "desktop/notches.h"

namespace velgrove {

/// The two arrows at the right end of a field. They are pressed with the mouse, and repeat while it is held;
/// the wheel over the field with the focus and its Up and Down keys do the same, so that the arrows need no
/// place of their own in the way of the focus. They never rest: what a step does at the end of a range is the
/// desk's business.
class Spinner : public QWidget {
  Q_OBJECT

 public:
  enum Width { InWindow = 16, InDialog = 22, InLevel = 48 };  ///< pixels

  /// Stands in the field as long as it lives.
  explicit Spinner(Field& field, Width width = InWindow);

 signals:
  void stepped(bool up);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  enum class Arrow { None, Up, Down };

  [[nodiscard]] Arrow arrowAt(QPointF point) const;
  void place();
  void step(bool up);
  [[nodiscard]] bool stepByKey(const QKeyEvent& key);
  void repeat();
  void letGo();

  Field& m_field;
  QTimer m_repeat{this};
  Arrow m_under = Arrow::None;  ///< the mouse
  Arrow m_held = Arrow::None;
  Notches m_notches;
};

}  // namespace velgrove
