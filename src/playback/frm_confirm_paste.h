#pragma once

#include "controls/form.h"
#include "controls/widgets.h"

namespace velgrove {

/// A warning before a paste. Nothing opens it: pasting over the selected cue never asks.
class frmConfirmPaste {
 public:
  frmConfirmPaste() = default;
  frmConfirmPaste(const frmConfirmPaste&) = delete;
  frmConfirmPaste& operator=(const frmConfirmPaste&) = delete;

  Form Window{.Caption = "Confirm Paste Cue Entry"};
  Label Question{.Caption = "This command will permanently overwrite the entry. Do you want to continue?"};
  Label Warning{.Caption = "If you click Yes, you won't be able to undo the deletion."};
  Button Yes{.Caption = "&Yes", .Click = [this] { Unload(); }};
  Button No{.Caption = "&No", .Click = [this] { Unload(); }};

  void Show() {
    Window.Loaded = true;
    Window.Show();
  }
  void Unload() { Window.Unload(); }
};

}  // namespace velgrove
