#include "desktop/check_window.h"

#include <QHBoxLayout>
#include <QShowEvent>
#include <QVBoxLayout>

#include "desktop/dress.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

constexpr QSize Content(560, 380);  // what stands inside the child window
constexpr int LinesOfFinding = 3;

}  // namespace

CheckWindow::CheckWindow(Face& face, frmCheckShow& form) : m_bindings(face) {
  setObjectName("frmCheckShow");
  dress();
  layOut();
  bindControls(form);
  setFocusProxy(&m_list);
}

QSize CheckWindow::sizeHint() const {
  return Content.expandedTo(minimumSizeHint());
}

void CheckWindow::dress() {
  dressAll({{&m_result, "lblResult", "Result of the check"},
            {&m_list, "ListViewFindings", "Findings"},
            {&m_finding, "lblFinding", "Selected finding"},
            {&m_again, "cmdCheckAgain", "Check again"}});
  m_finding.setWordWrap(true);
  m_finding.setAlignment(Qt::AlignLeft | Qt::AlignTop);
  m_again.setProperty("role", "key");
  m_again.setProperty("place", "dialog");
  m_again.setAutoDefault(false);
}

/// Tab goes in the order in which the widgets come into the window.
void CheckWindow::layOut() {
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(14, 14, 14, 14);
  all->setSpacing(12);
  all->addWidget(&m_result);
  all->addWidget(&m_list, 1);
  m_list.setMinimumHeight(theme::sized(80, 102));  // its header and two rows
  auto* foot = new QHBoxLayout;
  foot->setSpacing(12);
  foot->addWidget(&m_finding, 1);
  foot->addWidget(&m_again, 0, Qt::AlignBottom);
  all->addLayout(foot);
  m_finding.setMinimumHeight(LinesOfFinding * m_finding.fontMetrics().lineSpacing());
}

void CheckWindow::bindControls(frmCheckShow& form) {
  m_bindings.bind(&m_result, [&form] { return &form.lblResult; });
  m_bindings.bind(&m_finding, [&form] { return &form.lblFinding; });
  m_bindings.bind(&m_again, [&form] { return &form.cmdCheckAgain; });
  m_list.bind(
      m_bindings, form.ListViewFindings, [&form](int row) { form.ListViewFindings_MouseDown(row); },
      [&form](int row) { form.ListViewFindings_DblClick(row); });
  m_list.widenLastColumn();
}

void CheckWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!event->spontaneous()) m_list.setFocus();
}

}  // namespace velgrove
