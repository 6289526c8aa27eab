#pragma once

#include <QLabel>
#include <QPushButton>

#include "desktop/binding.h"
#include "desktop/list_table.h"
#include "surfaces/frm_check_show.h"

namespace velgrove {

/// The window of the check, frmCheckShow: how many findings, their list, and the selected one at full length.
class CheckWindow : public QWidget {
  Q_OBJECT

 public:
  CheckWindow(Face& face, frmCheckShow& form);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void dress();
  void layOut();
  void bindControls(frmCheckShow& form);

  QLabel m_result, m_finding;
  ListTable m_list;
  QPushButton m_again;
  Bindings m_bindings;
};

}  // namespace velgrove
