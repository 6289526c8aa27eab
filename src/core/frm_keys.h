#pragma once

#include "controls/form.h"
#include "controls/list_view.h"

namespace velgrove {

/// The list of all keys.
class frmKeys {
 public:
  frmKeys();
  frmKeys(const frmKeys&) = delete;
  frmKeys& operator=(const frmKeys&) = delete;

  Form Window{.Caption = "Keys"};
  ListView ListViewKeys;  ///< key, where it works, what it does

  void Show();
  void Unload();
};

}  // namespace velgrove
