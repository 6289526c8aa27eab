#pragma once

#include "surfaces/fixture_form.h"

namespace velgrove {

/// The dialog of a moving light: its brightness stands on its channel, its position across the stage and up
/// and down the stage on the two channels behind.
class MovingFixtureDlg {
 public:
  MovingFixtureDlg(ShowState& show, Machine& machine, FixtureForm::Wiring wiring);
  MovingFixtureDlg(const MovingFixtureDlg&) = delete;
  MovingFixtureDlg& operator=(const MovingFixtureDlg&) = delete;

  FixtureForm Dialog;
  Slider VSlider2{0, 255};  ///< brightness, a DMX value
  Slider VSlider3{0, 255};  ///< X, a DMX value
  Slider VSlider4{0, 255};  ///< Y, a DMX value
  Label xlev{.Caption = "X:0"};
  Label YLEV{.Caption = "Y:0"};
  OptionButton res_8bit{.Caption = "8 - Bit", .Value = true};
  OptionButton res_16Bit{.Caption = "16 - Bit"};
  Button cmdAttachMouse{.Caption = "Attach Mouse", .ToolTip = "Attach Mouse to Move Light"};

 private:
  ShowState& m_show;
  Machine& m_machine;
  FixtureForm::Wiring m_wiring;
};

}  // namespace velgrove
