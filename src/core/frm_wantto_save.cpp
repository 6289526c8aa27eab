#include "core/frm_wantto_save.h"

#include "model/text.h"

namespace velgrove {

frmWanttoSave::frmWanttoSave(ShowState& show, Machine& machine, Wiring wiring)
    : m_show(show), m_machine(machine), m_wiring(std::move(wiring)) {}

void frmWanttoSave::ShowModal() {
  Form_Load();
  m_machine.showModal(Window);
}

void frmWanttoSave::Form_Load() {
  constexpr std::size_t Shown = 15;  // characters of the caption
  Window.Loaded = true;
  m_machine.errors.steps([&] { m_show.SaveDialogResult = SaveAnswer::None; },
                         [&] {
                           const std::string caption = m_wiring.frameCaption();
                           Label1.Caption = "Save changes to " +
                                            fixedText(caption, std::min(Shown, characterCount(caption)));
                         });
}

void frmWanttoSave::Save_Click() {
  bool saved = false;
  m_machine.errors.steps([&] { m_show.SaveDialogResult = SaveAnswer::Save; },
                         [&] { saved = m_wiring.SaveAll(); });
  answer(saved ? SaveAnswer::Save : SaveAnswer::Cancel);
}

void frmWanttoSave::DontSave_Click() {
  answer(SaveAnswer::DontSave);
}

void frmWanttoSave::Cancel_Click() {
  answer(SaveAnswer::Cancel);
}

void frmWanttoSave::answer(SaveAnswer result) {
  m_show.SaveDialogResult = result;
  Unload();
}

void frmWanttoSave::Unload() {
  Window.Unload();
}

}  // namespace velgrove
