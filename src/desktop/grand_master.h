#pragma once

#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include "desktop/dialog_wheel.h"
#include "desktop/fader.h"
#include "desktop/form_dialog.h"
#include "desktop/frame_window.h"
#include "desktop/spinner.h"
#include "surfaces/frm_grand_master.h"

namespace velgrove {

/// The grand master, frmGrandMaster: its fader from -100 to 100 about a marked zero, the number, OK and
/// Cancel. At the bottom number and frame turn to the colour of the stage. The wheel anywhere over it turns
/// the fader. It never stays over the band with Go and the cue panel.
class GrandMasterDialog : public FormDialog {
  Q_OBJECT

 public:
  GrandMasterDialog(FrameWindow& frame, Face& face, frmGrandMaster& form);

 protected:
  void takePlace() override;
  void appear() override;
  void paintEvent(QPaintEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  /// Escape presses Cancel: after a blackout it is the way back. The close box leaves the light as it is.
  void reject() override { m_cancel.click(); }

 private:
  void dress();
  void bindControls(frmGrandMaster& form);
  void layOut();
  void showBottom(bool atBottom);
  void fit();
  [[nodiscard]] QRect room() const;
  void stepAside();

  FrameWindow& m_frame;
  QLabel m_caption;
  Field m_level;
  Spinner m_arrows{m_level, Spinner::InDialog};
  Fader m_fader;
  QPushButton m_ok, m_cancel;
  DialogWheel m_wheel;
  QTimer m_moving{this};  ///< runs until it has come to rest
  bool m_atBottom = false;
};

}  // namespace velgrove
