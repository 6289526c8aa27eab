#include "surfaces/moving_fixture_dlg.h"

namespace velgrove {

MovingFixtureDlg::MovingFixtureDlg(ShowState& show, Machine& machine, FixtureForm::Wiring wiring)
    : m_show(show), m_machine(machine), m_wiring(std::move(wiring)) {
  Dialog.Window.Caption = "Moving Fixture";
  VSlider2.ToolTip = Dialog.Level.ToolTip;
  VSlider3.ToolTip = "Stage Left & Right";
  VSlider4.ToolTip = "Stage Forward & Back";
}

}  // namespace velgrove
