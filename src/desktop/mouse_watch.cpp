#include "desktop/mouse_watch.h"

#include <QApplication>
#include <QCursor>
#include <QMouseEvent>

namespace velgrove {

MouseWatch::MouseWatch(QObject* parent, Bindings& bindings, const Timer& mode, MouseSource& source)
    : QObject(parent), m_face(bindings.face()), m_source(source) {
  constexpr int Interval = 30;  // ms
  m_poll.setObjectName("poll");
  m_poll.setInterval(Interval);
  connect(&m_poll, &QTimer::timeout, this, [this] { tell(QCursor::pos()); });
  bindings.mirror([&mode] { return mode.enabled(); }, [this](bool on) { setOn(on); });
}

void MouseWatch::setOn(bool on) {
  if (std::exchange(m_on, on) == on) return;
  if (!on) {
    m_poll.stop();
    if (!m_pressed) qApp->removeEventFilter(this);
    return;
  }
  qApp->installEventFilter(this);
  m_poll.start();
  m_told = QCursor::pos() - QPoint(1, 0);  // so that it is told now
  tell(QCursor::pos());
}

void MouseWatch::tell(QPoint at) {
  if (std::exchange(m_told, at) == at) return;
  m_face.deliver([this, at] {
    m_source.X = at.x();
    m_source.Y = at.y();
  });
}

/// For the desk it stays down until the mode has ended: a click is shorter than the desk looks.
void MouseWatch::tellButton() {
  m_pressed = true;
  if (!m_on) return;
  m_face.deliver([this] { m_source.ButtonDown = true; });
}

bool MouseWatch::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseMove:
      if (m_on) tell(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
      return m_pressed;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
      tellButton();
      return true;
    case QEvent::MouseButtonRelease:
      if (static_cast<QMouseEvent*>(event)->buttons() == Qt::NoButton && std::exchange(m_pressed, false) &&
          !m_on)
        qApp->removeEventFilter(this);
      return true;
    default:
      return false;
  }
}

}  // namespace velgrove
