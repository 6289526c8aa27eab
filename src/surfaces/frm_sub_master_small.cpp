#include "surfaces/frm_sub_master_small.h"

#include "surfaces/frm_sub_pane.h"

namespace velgrove {

frmSubMasterSmall::frmSubMasterSmall(ShowState& show, Machine& machine, frmSubPane& panel)
    : m_show(show), m_machine(machine), m_panel(panel) {
  Pot.Scroll = [this] { Pot_Scroll(); };
  Pot.MouseUp = [this] { Pot_MouseUp(); };
  MouseHelper2.MouseWheel = [this](int rotation, bool& handled) {
    MouseHelper2_MouseWheel(rotation, handled);
  };
}

void frmSubMasterSmall::load() {
  if (!Window.Loaded) Form_Load();
}

void frmSubMasterSmall::Form_Load() {
  Window.Loaded = true;
  Pot.reset();
  Text2.reset("0");
  Pot_Scroll();
}

void frmSubMasterSmall::Pot_Scroll() {
  const auto value = [this] { return std::to_string(Pot.value()); };
  m_machine.errors.steps(
      [&] {
        m_show.LevelTextSource = static_cast<std::int16_t>(Source::Submaster);
        Pot.setMax(100);
      },
      [&] { m_panel.level(m_panel.ActiveSubIndex).Caption = value(); }, [&] { Text2.setText(value()); },
      [&] { m_panel.writeWhereHighest(m_panel.ActiveSubIndex); });
}

/// A hand that lets go of a fader that has gone already says nothing: the text would bring its level to 0.
void frmSubMasterSmall::Pot_MouseUp() {
  if (!Window.Visible) return;
  m_machine.errors.steps([&] { Window.Visible = false; },
                         [&] { m_panel.level(m_panel.ActiveSubIndex).Caption = Text2.text(); },
                         [&] { Text2.setText("0"); });
}

/// No notch is refused: the fader's own range holds it at its ends.
void frmSubMasterSmall::MouseHelper2_MouseWheel(int rotation, bool& handled) {
  handled = true;
  m_machine.errors.steps([&] { Pot.setValue(Pot.value() + (rotation < 1 ? -WheelStep : WheelStep)); },
                         [&] { Text2.setText(std::to_string(Pot.value())); }, [&] { Pot_Scroll(); });
}

}  // namespace velgrove
