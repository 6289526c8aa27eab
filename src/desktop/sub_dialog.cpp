#include "desktop/sub_dialog.h"

#include <QEvent>

#include "desktop/room.h"

namespace velgrove {

SubDialog::SubDialog(FrameWindow& frame, Face& face, const Parts& parts)
    : FormDialog(parts.name, &frame, face, parts.form, parts.close),
      m_frame(frame),
      m_form(parts.form),
      m_usual(parts.size),
      m_index(parts.index) {}

void SubDialog::bindPlace() {
  m_asked = bindings().mirror(
      [this]() -> Asked { return {.visible = m_form.Visible, .fronts = m_form.Fronts, .index = m_index()}; },
      [this](const Asked& asked) {
        if (!asked.visible) return;
        stand();
        begin();
      });
}

/// On a screen that has no room for it above the strip it is as high as that room.
void SubDialog::stand() {
  const QRect room = m_frame.aboveStrip();
  m_around = decoration();
  setFixedSize(m_usual.boundedTo(room.size() - m_around).expandedTo(minimumSizeHint()));
  const QSize whole = size() + m_around;
  const QPoint corner(m_frame.subButton(m_asked->value.index).left(), room.bottom() + 1 - whole.height());
  move(within({corner, whole}, room).topLeft());
}

/// The system tells what it draws around a window only when the window has come up.
void SubDialog::changeEvent(QEvent* event) {
  FormDialog::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && m_around != decoration()) stand();
}

}  // namespace velgrove
