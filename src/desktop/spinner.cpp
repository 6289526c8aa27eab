#include "desktop/spinner.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QWheelEvent>
#include <algorithm>
#include <cstdlib>

#include "desktop/theme.h"

namespace velgrove {

Spinner::Spinner(Field& field, Width width) : QWidget(&field), m_field(field) {
  constexpr int PaddingOfField = 5;
  setFixedWidth(width);
  setCursor(Qt::ArrowCursor);
  setMouseTracking(true);
  setFocusPolicy(Qt::NoFocus);
  field.setTextMargins(0, 0, width - PaddingOfField, 0);
  field.installEventFilter(this);
  m_repeat.setObjectName("repeat");
  m_repeat.setSingleShot(true);
  connect(&m_repeat, &QTimer::timeout, this, &Spinner::repeat);
  place();
}

void Spinner::place() {
  constexpr int Edge = 2;  // as wide as the frame of the focus
  setGeometry(m_field.width() - Edge - width(), Edge, width(), m_field.height() - 2 * Edge);
}

bool Spinner::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::Resize:
      place();
      return false;
    case QEvent::FocusOut:  // a box came up, or the field went away
      letGo();
      return false;
    case QEvent::KeyPress:
      return stepByKey(*static_cast<QKeyEvent*>(event));
    case QEvent::Wheel:
      if (!isEnabled() || !m_field.hasFocus()) return false;
      wheelEvent(static_cast<QWheelEvent*>(event));
      return true;
    default:
      return false;
  }
}

// ---- Steps

/// The new text is marked, so that what is typed next takes its place.
void Spinner::step(bool up) {
  emit stepped(up);
  if (m_field.hasFocus()) m_field.selectAll();
}

bool Spinner::stepByKey(const QKeyEvent& key) {
  if ((key.modifiers() & ~Qt::KeypadModifier) != 0) return false;
  if (key.key() != Qt::Key_Up && key.key() != Qt::Key_Down) return false;
  step(key.key() == Qt::Key_Up);
  return true;
}

void Spinner::wheelEvent(QWheelEvent* event) {
  event->setAccepted(m_field.hasFocus());  // a hand that passes over it changes nothing
  if (!event->isAccepted()) return;
  const int notches = m_notches.turn(*event);
  for (int turned = 0; turned < std::abs(notches); ++turned) step(notches > 0);
}

// ---- The mouse

Spinner::Arrow Spinner::arrowAt(QPointF point) const {
  if (!rect().contains(point.toPoint())) return Arrow::None;
  return point.y() < height() / 2.0 ? Arrow::Up : Arrow::Down;
}

void Spinner::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  m_field.setFocus(Qt::MouseFocusReason);
  m_under = m_held = arrowAt(event->position());
  repeat();
  if (m_held != Arrow::None) m_repeat.start(style()->styleHint(QStyle::SH_SpinBox_ClickAutoRepeatThreshold));
}

/// The next step waits for the one before it, and for a mouse that has left the arrow.
void Spinner::repeat() {
  update();
  if (m_held == Arrow::None) return;
  if (m_under == m_held) step(m_held == Arrow::Up);
  if (m_held != Arrow::None) m_repeat.start(style()->styleHint(QStyle::SH_SpinBox_ClickAutoRepeatRate));
}

void Spinner::letGo() {
  m_held = Arrow::None;
  m_repeat.stop();
  update();
}

void Spinner::mouseMoveEvent(QMouseEvent* event) {
  m_under = arrowAt(event->position());
  update();
}

void Spinner::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) letGo();
}

void Spinner::leaveEvent(QEvent* event) {
  m_under = Arrow::None;
  update();
  QWidget::leaveEvent(event);
}

// ---- Painting

void Spinner::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const double half = std::min(width() / 5.0, 8.0);  // of an arrow's width
  const double apart = width() < InLevel ? 2 : 7;    // of the middle
  const double middle = width() / 2.0;
  for (const bool up : {true, false}) {
    const Arrow arrow = up ? Arrow::Up : Arrow::Down;
    const QRectF ground(0, up ? 0 : height() / 2.0, width(), height() / 2.0);
    if (m_held == arrow || (m_held == Arrow::None && m_under == arrow))
      painter.fillRect(ground, theme::colour(m_held == arrow ? "raised" : "hover"));
    const double base = up ? height() / 2.0 - apart : height() / 2.0 + apart;
    painter.setBrush(theme::colour(isEnabled() ? "text" : "disabled"));
    painter.drawPolygon(QPolygonF{QPointF(middle - half, base), QPointF(middle + half, base),
                                  QPointF(middle, up ? base - half - 1 : base + half + 1)});
  }
}

}  // namespace velgrove
