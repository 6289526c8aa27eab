#pragma once

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QWidget>

#include "desktop/binding.h"
#include "desktop/fader.h"
#include "desktop/mouse_watch.h"
#include "surfaces/moving_fixture_dlg.h"

namespace velgrove {

/// The position of a moving light: a fader for each axis, their resolution, and the mouse that moves both.
class PositionPanel : public QWidget {
  Q_OBJECT

 public:
  PositionPanel(Bindings& bindings, MovingFixtureDlg& dialog);

  /// In the way of the focus.
  [[nodiscard]] std::vector<QWidget*> controls();

 private:
  void handFocusOn(bool attached);
  void dress();
  void layOut();

  Fader m_x, m_y;
  QLabel m_xCaption, m_yCaption;
  QRadioButton m_8bit, m_16bit;
  QPushButton m_attach;
  MouseWatch m_watch;
  bool m_lentFocus = false;  ///< by the button to a fader, until the mouse is let go
};

}  // namespace velgrove
