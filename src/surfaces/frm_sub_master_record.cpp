#include "surfaces/frm_sub_master_record.h"

#include "surfaces/frm_sub_pane.h"

namespace velgrove {

frmSubMasterRecord::frmSubMasterRecord(ShowState& show, Machine& machine, frmSubPane& panel)
    : m_show(show), m_machine(machine), m_panel(panel) {}

void frmSubMasterRecord::cmdRecord_Click() {
  m_machine.errors.steps([&] { store(); }, [&] { Unload(); });
}

/// The number in the name of one without counts from 0, so that it is one less than the button's. The name's
/// box stays empty then, until the show is opened again.
void frmSubMasterRecord::store() {
  const auto view = m_panel.currentView();
  const ChannelBytes look = stageLook(*view);
  auto& submasters = view->colSubMasters();
  int position = 1;
  while (submasters.item(position)->Identifier != m_show.CurrentSubMasterIndex) ++position;
  clsSubMaster& target = *submasters.item(position);
  const std::string& name = txtName.text();
  target.SubMasterName = name.empty() ? "Slider " + std::to_string(m_show.CurrentSubMasterIndex) : name;
  target.Level = 0;
  target.setDimmerLevel(look);
  m_panel.name(target.Identifier).setText(name);
}

/// What the plot shows: of several fixtures on a channel the last one.
ChannelBytes frmSubMasterRecord::stageLook(clsView& view) const {
  ChannelBytes look{};
  for (int position = 1; position <= view.colFixtures().count(); ++position)
    m_machine.errors.run([&] {
      const auto fixture = view.colFixtures().item(position);
      look[channelIndex(fixture->Channel)] = fixture->Level;
    });
  return look;
}

void frmSubMasterRecord::Command2_Click() {
  const Box question{.text = "Are you sure?",
                     .title = "Confirm Deletion",
                     .buttons = BoxButtons::YesNo,
                     .icon = BoxIcon::Question};
  bool agreed = false;
  m_machine.errors.run([&] { agreed = m_machine.boxes.show(question) == BoxAnswer::Yes; });
  if (agreed) m_machine.errors.run([&] { removeSubMaster(); });
}

void frmSubMasterRecord::removeSubMaster() {
  const auto view = m_panel.currentView();
  auto& submasters = view->colSubMasters();
  const int count = submasters.count();
  for (int position = 1; position <= count; ++position) {
    const auto submaster = submasters.item(position);
    if (submaster->Identifier != m_show.CurrentSubMasterIndex) continue;
    submaster->SubMasterName.clear();
    m_panel.name(submaster->Identifier).setText("");
    submasters.Remove(position);
  }
}

}  // namespace velgrove
