#include "desktop/wheel_over.h"

#include <QApplication>
#include <QWindow>
#include <cstdlib>

namespace velgrove {

WheelOver::WheelOver(QWidget& window, std::function<void(int rotation)> turned)
    : m_window(window), m_turned(std::move(turned)) {}

/// Through the system's window the wheel comes, whatever it stands over.
void WheelOver::watch() {
  m_window.windowHandle()->installEventFilter(this);
}

bool WheelOver::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Wheel) return QObject::eventFilter(watched, event);
  const QWidget* before = QApplication::activeModalWidget();
  if (!m_window.isEnabled() || (before != nullptr && before != &m_window)) return true;
  constexpr int Notch = QWheelEvent::DefaultDeltasPerStep;
  const int notches = m_notches.take(*static_cast<QWheelEvent*>(event));
  for (int done = 0; done < std::abs(notches); ++done) m_turned(notches > 0 ? Notch : -Notch);
  return true;
}

}  // namespace velgrove
