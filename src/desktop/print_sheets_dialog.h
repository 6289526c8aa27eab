#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

#include "desktop/form_dialog.h"
#include "surfaces/frm_print_sheets.h"

namespace velgrove {

/// The choice of the sheets to print, frmPrintSheets.
class PrintSheetsDialog : public FormDialog {
  Q_OBJECT

 public:
  PrintSheetsDialog(QWidget* above, Face& face, frmPrintSheets& form);

 private:
  void dress();
  void layOut();

  QLabel m_sheets;
  QCheckBox m_xy, m_ab, m_patch, m_submasters;
  QPushButton m_print, m_savePdf, m_cancel;
};

}  // namespace velgrove
