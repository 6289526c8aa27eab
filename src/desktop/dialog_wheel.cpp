#include "desktop/dialog_wheel.h"

#include <QApplication>
#include <QWindow>
#include <cstdlib>

namespace velgrove {

DialogWheel::DialogWheel(QDialog& dialog, Face& face, const Form& form, const MouseSource& mouse)
    : m_dialog(dialog), m_face(face), m_form(form), m_mouse(mouse) {
  dialog.installEventFilter(this);
}

/// The wheel comes through the system's window, which is made when the dialog is first shown.
bool DialogWheel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &m_dialog) {
    if (event->type() == QEvent::Show) m_dialog.windowHandle()->installEventFilter(this);
    return false;
  }
  if (event->type() != QEvent::Wheel) return false;
  const QWidget* before = QApplication::activeModalWidget();
  if (m_dialog.isEnabled() && (before == nullptr || before == &m_dialog))
    turn(*static_cast<QWheelEvent*>(event));
  return true;
}

void DialogWheel::turn(const QWheelEvent& wheel) {
  constexpr int Notch = QWheelEvent::DefaultDeltasPerStep;
  const int notches = m_notches.take(wheel);
  for (int done = 0; done < std::abs(notches); ++done)
    m_face.deliver([this, rotation = notches > 0 ? Notch : -Notch] {
      bool handled = false;
      if (m_form.Visible && m_mouse.MouseWheel) m_mouse.MouseWheel(rotation, handled);
    });
}

}  // namespace velgrove
