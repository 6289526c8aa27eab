#include "desktop/mouse_watch.h"

#include <QApplication>
#include <QCursor>

namespace velgrove {

MouseWatch::MouseWatch(QObject* parent, Bindings& bindings, const Timer& mode, MouseSource& source)
    : QObject(parent), m_face(bindings.face()), m_source(source) {
  constexpr int Interval = 30;  // ms
  m_poll.setObjectName("poll");
  m_poll.setInterval(Interval);
  connect(&m_poll, &QTimer::timeout, this, [this] { look(); });
  bindings.mirror([&mode] { return mode.enabled(); }, [this](bool on) { setOn(on); });
}

void MouseWatch::setOn(bool on) {
  if (std::exchange(m_on, on) == on) return;
  if (!on) return keepDown(m_swallowed);
  qApp->installEventFilter(this);
  m_poll.start();
  m_told = QCursor::pos() - QPoint(1, 0);  // so that it is told now
  tell(QCursor::pos());
}

/// What isn't down any more was let go, wherever its release went. The mode is over for the mouse when the
/// press that ended it is let go: nothing of the next click is swallowed.
void MouseWatch::keepDown(Qt::MouseButtons down) {
  m_swallowed &= down;
  if (m_on || m_swallowed != Qt::NoButton) return;
  m_poll.stop();
  qApp->removeEventFilter(this);
}

void MouseWatch::look() {
  if (m_on) tell(QCursor::pos());
  keepDown(QGuiApplication::mouseButtons());
}

void MouseWatch::tell(QPoint at) {
  if (std::exchange(m_told, at) == at) return;
  m_face.deliver([this, at] {
    m_source.X = at.x();
    m_source.Y = at.y();
  });
}

bool MouseWatch::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseMove:
      return moves(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonPress:
      m_swallowed.setFlag(static_cast<QMouseEvent*>(event)->button(), false);  // its release was lost
      [[fallthrough]];
    case QEvent::MouseButtonDblClick:
      return presses(static_cast<QMouseEvent*>(event)->button());
    case QEvent::MouseButtonRelease:
      return releases(static_cast<QMouseEvent*>(event)->button());
    default:
      return false;
  }
}

bool MouseWatch::moves(const QMouseEvent& event) {
  if (m_on) tell(event.globalPosition().toPoint());
  keepDown(event.buttons());
  return m_swallowed != Qt::NoButton;
}

/// For the desk it stays down until the mode has ended: a click is shorter than the desk looks.
bool MouseWatch::presses(Qt::MouseButton button) {
  keepDown(m_swallowed);
  if (!m_on && m_swallowed == Qt::NoButton) return false;
  m_swallowed.setFlag(button);
  if (m_on) m_face.deliver([this] { m_source.ButtonDown = true; });
  return true;
}

bool MouseWatch::releases(Qt::MouseButton button) {
  const bool itsPressToo = m_swallowed.testFlag(button);
  keepDown(m_swallowed & ~Qt::MouseButtons(button));
  return itsPressToo;
}

}  // namespace velgrove
