#pragma once

#include <cstdint>

#include "controls/form.h"
#include "controls/machine.h"
#include "controls/widgets.h"
#include "core/show_state.h"

namespace velgrove {

/// The grand master: while it is open, its slider shifts all levels that were lit when it opened, 2.5 DMX
/// steps for each of its own. It adds and doesn't multiply, so that what was off stays off, and a channel
/// above 250 is still faintly lit at the bottom. There is no master value behind it: OK leaves the levels as
/// they are, Cancel brings those of the opening back.
class frmGrandMaster {
 public:
  static constexpr int Bottom = -100;
  static constexpr int Top = 100;
  static constexpr int WheelStep = 4;
  static constexpr double LevelsAStep = 2.5;  ///< DMX values

  frmGrandMaster(ShowState& show, Machine& machine);
  frmGrandMaster(const frmGrandMaster&) = delete;
  frmGrandMaster& operator=(const frmGrandMaster&) = delete;

  Form Window{.Caption = "Grand Master"};
  Slider VSlider1{Bottom, Top};
  TextBox Level{"0"};
  UpDown UpDown1{Bottom, Top, 0};
  Label Label1{.Caption = "Level:"};
  Button cmdOK{.Caption = "OK", .Click = [this] { cmdOK_Click(); }};
  Button cmdCancel{.Caption = "Cancel", .Click = [this] { cmdCancel_Click(); }};
  MouseSource MouseHelper3;

  /// Opens it; one that is open comes to the front and keeps its snapshot.
  void Show();
  void showAtBottom();
  void Unload() { Window.Unload(); }

  void Form_Load();
  void VSlider1_Scroll();
  void UpDown1_Change();
  void MouseHelper3_MouseWheel(int rotation, bool& handled);
  void cmdOK_Click() { Unload(); }
  void cmdCancel_Click();

 private:
  /// The five arrays that the merge starts from.
  struct Sources {
    decltype(ShowState::DMXInput) DMXInput{};
    decltype(ShowState::SubLevels) SubLevels{};
    decltype(ShowState::XYLevels) XYLevels{};
    decltype(ShowState::ABLevels) ABLevels{};
    decltype(ShowState::ManualLevels) ManualLevels{};
  };
  void setTo(int value);

  ShowState& m_show;
  Machine& m_machine;
  Sources m_snapshot;
};

}  // namespace velgrove
