#pragma once

#include <QDialog>

#include "controls/face.h"
#include "controls/form.h"
#include "controls/widgets.h"
#include "desktop/notches.h"

namespace velgrove {

/// The wheel of a dialog: wherever it is turned over it, its whole notches go to the mouse that the form
/// watches, and no field or fader under the mouse takes it.
class DialogWheel : public QObject {
  Q_OBJECT

 public:
  DialogWheel(QDialog& dialog, Face& face, const Form& form, const MouseSource& mouse);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void turn(const QWheelEvent& wheel);

  QDialog& m_dialog;
  Face& m_face;
  const Form& m_form;
  const MouseSource& m_mouse;
  Notches m_notches;
};

}  // namespace velgrove
