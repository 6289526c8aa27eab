#pragma once

#include "desktop/fader.h"
#include "desktop/sub_dialog.h"
#include "desktop/wheel_over.h"

namespace velgrove {

/// The fader of the submasters, frmSubMasterSmall. It has gone when the hand lets go.
class SubFader : public SubDialog {
  Q_OBJECT

 public:
  SubFader(FrameWindow& frame, Face& face, frmSubPane& panel);

 protected:
  void appear() override;
  void begin() override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void turn(int rotation);

  frmSubMasterSmall& m_form;
  Field m_level;
  Fader m_fader;
  WheelOver m_wheel{*this, [this](int rotation) { turn(rotation); }};
};

}  // namespace velgrove
