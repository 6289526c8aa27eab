#pragma once

#include "desktop/dialog_wheel.h"
#include "desktop/fader.h"
#include "desktop/sub_dialog.h"

namespace velgrove {

/// The fader of the submasters, frmSubMasterSmall. It has gone when the hand lets go.
class SubFader : public SubDialog {
  Q_OBJECT

 public:
  SubFader(FrameWindow& frame, Face& face, frmSubPane& panel);

 protected:
  void begin() override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  Field m_level;
  Fader m_fader;
  DialogWheel m_wheel;
};

}  // namespace velgrove
