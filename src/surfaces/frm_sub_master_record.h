#pragma once

#include "controls/form.h"
#include "controls/machine.h"
#include "controls/widgets.h"
#include "core/show_state.h"

namespace velgrove {

class frmSubPane;

/// The dialog that stores what the stage shows into a submaster, or deletes it. It works on the current view
/// and on the submaster whose Identifier is CurrentSubMasterIndex.
class frmSubMasterRecord {
 public:
  frmSubMasterRecord(ShowState& show, Machine& machine, frmSubPane& panel);
  frmSubMasterRecord(const frmSubMasterRecord&) = delete;
  frmSubMasterRecord& operator=(const frmSubMasterRecord&) = delete;

  Form Window{.Caption = "Sub Master"};
  Label Label1{.Caption = "Sub Master:"};
  Label lblSM;  ///< the button's caption, "1" to "24"
  Label Label2{.Caption = "Name:"};
  TextBox txtName;
  Button cmdRecord{.Caption = "Record", .Click = [this] { cmdRecord_Click(); }};
  Button Command1{.Caption = "Cancel", .Click = [this] { Command1_Click(); }};
  Button Command2{.Caption = "Delete", .Click = [this] { Command2_Click(); }};

  /// Stores the `Level` of each fixture of the view under the name, and closes. Channels without a fixture
  /// are stored dark. Neither the running level nor SubLevels changes. A submaster that was deleted is
  /// Fault::Subscript, and nothing is stored.
  void cmdRecord_Click();
  void Command1_Click() { Window.Visible = false; }
  /// Takes the submaster out of the view, if the operator agrees; the others stay at their buttons' places
  /// less one. The walk goes on to the old count, so that it ends in an error unless the last one went.
  void Command2_Click();
  void Unload() { Window.Unload(); }

 private:
  void store();
  void removeSubMaster();
  [[nodiscard]] ChannelBytes stageLook(clsView& view) const;

  ShowState& m_show;
  Machine& m_machine;
  frmSubPane& m_panel;
};

}  // namespace velgrove
