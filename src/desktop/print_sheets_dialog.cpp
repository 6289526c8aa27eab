#include "desktop/print_sheets_dialog.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "desktop/dress.h"

namespace velgrove {

PrintSheetsDialog::PrintSheetsDialog(QWidget* above, Face& face, frmPrintSheets& form)
    : FormDialog("frmPrintSheets", above, face, form.Window, [&form] { form.Unload(); }) {
  dress();
  layOut();
  bindings().bind(&m_sheets, [&form] { return &form.lblSheets; });
  bindings().bind(&m_xy, [&form] { return &form.chkXY; });
  bindings().bind(&m_ab, [&form] { return &form.chkAB; });
  bindings().bind(&m_patch, [&form] { return &form.chkPatch; });
  bindings().bind(&m_submasters, [&form] { return &form.chkSubmasters; });
  bindings().bind(&m_print, [&form] { return &form.cmdPrint; });
  bindings().bind(&m_savePdf, [&form] { return &form.cmdSavePDF; });
  bindings().bind(&m_cancel, [&form] { return &form.cmdCancel; });
}

void PrintSheetsDialog::dress() {
  dressAll({{&m_sheets, "lblSheets", "What is printed"},
            {&m_xy, "chkXY", "Print the XY cue list"},
            {&m_ab, "chkAB", "Print the AB cue list"},
            {&m_patch, "chkPatch", "Print the patch"},
            {&m_submasters, "chkSubmasters", "Print the submasters"},
            {&m_print, "cmdPrint", "Print"},
            {&m_savePdf, "cmdSavePDF", "Save as PDF"},
            {&m_cancel, "cmdCancel", "Cancel"}});
  for (QPushButton* button : {&m_print, &m_savePdf, &m_cancel}) button->setProperty("role", "dialog");
  setDefault(m_print);
}

/// Tab goes in the order in which the widgets come into the window.
void PrintSheetsDialog::layOut() {
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(20, 16, 20, 16);
  all->setSpacing(4);
  all->addWidget(&m_sheets);
  all->addSpacing(4);
  for (QCheckBox* box : {&m_xy, &m_ab, &m_patch, &m_submasters}) all->addWidget(box);
  all->addSpacing(12);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(8);
  buttons->addStretch(1);
  for (QPushButton* button : {&m_print, &m_savePdf, &m_cancel}) buttons->addWidget(button);
  all->addLayout(buttons);
  all->setSizeConstraint(QLayout::SetFixedSize);
}

}  // namespace velgrove
