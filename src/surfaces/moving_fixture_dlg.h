#pragma once

#include "surfaces/fixture_form.h"

namespace velgrove {

/// The dialog of a moving light: its brightness stands on its channel, its position across the stage and up
/// and down the stage on the two channels behind, a byte each. The fixture keeps no position: opening sends
/// it to the middle. The hand moves it by the sliders, or by the mouse, which is then watched and never held.
class MovingFixtureDlg {
 public:
  MovingFixtureDlg(ShowState& show, Machine& machine, FixtureForm::Wiring wiring);
  MovingFixtureDlg(const MovingFixtureDlg&) = delete;
  MovingFixtureDlg& operator=(const MovingFixtureDlg&) = delete;

  Slider VSlider2{0, 255};  ///< brightness, a DMX value
  Slider VSlider3{0, 255};  ///< X, a DMX value
  Slider VSlider4{0, 255};  ///< Y, a DMX value
  FixtureForm Dialog;
  Label xlev{.Caption = "X:0"};
  Label YLEV{.Caption = "Y:0"};
  OptionButton res_8bit{.Caption = "8 - Bit", .Value = true, .Click = [this] { res_8bit_Click(); }};
  OptionButton res_16Bit{.Caption = "16 - Bit", .Click = [this] { res_16Bit_Click(); }};
  Button cmdAttachMouse{.Caption = "Attach Mouse", .ToolTip = "Attach Mouse to Move Light", .Click = [this] {
                          cmdAttachMouse_Click();
                        }};
  Timer Mouse_Attach;  ///< on while the mouse moves the light

  std::int16_t PositionResolution = 8;  ///< bits; either way a position is one byte on each axis
  std::int32_t MouseLastX = 0;          ///< where the mouse was at the last tick, pixels
  std::int32_t MouseLastY = 0;

  void SetFixtureID(std::int16_t id) { Dialog.FixtureID = id; }
  /// Opens the dialog for the current fixture; one that is open comes to the front.
  void Show();
  [[nodiscard]] bool shows(const clsFixture& fixture) const { return Dialog.shows(fixture); }
  /// Lets go of the mouse. Channel, levels and position stay as they are.
  void Unload();

  void Form_Load();
  void Form_Activate();
  void VSlider2_Scroll() { Dialog.scrollLevel(); }
  void VSlider2_Change();
  void VSlider3_Change();
  void VSlider4_Change();
  void VSlider3_Scroll() { VSlider3_Change(); }
  void VSlider4_Scroll() { VSlider4_Change(); }
  void MouseHelper1_MouseWheel(int rotation, bool& handled);
  void cmdAttachMouse_Click();
  void Mouse_Attach_Timer();
  void res_8bit_Click();
  void res_16Bit_Click();
  void Command1_Click();
  void CancelButton_Click() { Unload(); }

 private:
  void setDesign();
  void setPosition(const Slider& slider, Label& label, const char* axis, int channelsBehind);
  void followMouse();
  void detachMouse();

  ShowState& m_show;
  ErrorPattern& m_errors;
  FixtureForm::Wiring m_wiring;
};

}  // namespace velgrove
