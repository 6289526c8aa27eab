#include "surfaces/fixture_dlg.h"

namespace velgrove {

FixtureDlg::FixtureDlg(ShowState& show, Machine& machine, FixtureForm::Wiring wiring)
    : m_show(show), m_machine(machine), m_wiring(std::move(wiring)) {
  Dialog.Window.Caption = "Fixture";
  VSlider1.ToolTip = Dialog.Level.ToolTip;
}

}  // namespace velgrove
