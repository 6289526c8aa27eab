#pragma once

#include "core/frm_keys.h"
#include "desktop/binding.h"
#include "desktop/list_table.h"

namespace velgrove {

/// The list of all keys, frmKeys.
class KeysWindow : public QWidget {
  Q_OBJECT

 public:
  KeysWindow(Face& face, frmKeys& form);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  ListTable m_list;
  Bindings m_bindings;
};

}  // namespace velgrove
