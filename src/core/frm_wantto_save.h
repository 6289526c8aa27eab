#pragma once

#include <functional>
#include <string>

#include "controls/form.h"
#include "controls/machine.h"
#include "controls/widgets.h"
#include "core/show_state.h"

namespace velgrove {

/// Asks what becomes of unsaved changes. It saves by itself; the answer stands in SaveDialogResult.
class frmWanttoSave {
 public:
  struct Wiring {
    /// Whether the show now stands in its file.
    std::function<bool()> SaveAll;
    std::function<std::string()> frameCaption;
  };

  frmWanttoSave(ShowState& show, Machine& machine, Wiring wiring);
  frmWanttoSave(const frmWanttoSave&) = delete;
  frmWanttoSave& operator=(const frmWanttoSave&) = delete;

  Form Window{.Caption = "Exiting... Would you like to save your changes?"};
  Label Label1;
  Button Save{.Caption = "Save", .Click = [this] { Save_Click(); }};
  Button DontSave{.Caption = "Don't Save", .Click = [this] { DontSave_Click(); }};
  Button Cancel{.Caption = "Cancel", .Click = [this] { Cancel_Click(); }};

  /// Shows the question and waits for its answer.
  void ShowModal();

  void Form_Load();
  /// A save that fails counts as Cancel: nobody loses a show for a full disk.
  void Save_Click();
  void DontSave_Click();
  void Cancel_Click();
  /// The close box: whoever doesn't answer wants to go on.
  void Form_QueryUnload() { Cancel_Click(); }
  void Unload();

 private:
  void answer(SaveAnswer result);

  ShowState& m_show;
  Machine& m_machine;
  Wiring m_wiring;
};

}  // namespace velgrove
