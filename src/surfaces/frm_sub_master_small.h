#pragma once

#include "controls/form.h"
#include "controls/machine.h"
#include "controls/widgets.h"
#include "core/show_state.h"

namespace velgrove {

class frmSubPane;

/// The one fader of all submasters. It opens above the button of the submaster that it works on, and closes
/// when the hand lets go; the level stays.
class frmSubMasterSmall {
 public:
  /// Steps of the wheel, percent.
  static constexpr int WheelStep = 4;

  frmSubMasterSmall(ShowState& show, Machine& machine, frmSubPane& panel);
  frmSubMasterSmall(const frmSubMasterSmall&) = delete;
  frmSubMasterSmall& operator=(const frmSubMasterSmall&) = delete;

  Form Window;
  Slider Pot{0, 100};  ///< percent
  TextBox Text2{"0"};  ///< what Pot stands at
  MouseSource MouseHelper2;

  /// Loads the window where it isn't; everything that touches it does so first.
  void load();
  void Form_Load();
  void Unload() { Window.Unload(); }

  /// Every movement of the fader. A channel is written only by the submaster that holds it at this moment or
  /// ties for it: one that is pulled below another leaves the channel at the last value that it wrote.
  void Pot_Scroll();
  void Pot_MouseUp();
  void MouseHelper2_MouseWheel(int rotation, bool& handled);

 private:
  ShowState& m_show;
  Machine& m_machine;
  frmSubPane& m_panel;
};

}  // namespace velgrove
