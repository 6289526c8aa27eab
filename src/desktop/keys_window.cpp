#include "desktop/keys_window.h"

#include <QShowEvent>
#include <QVBoxLayout>

#include "desktop/theme.h"

namespace velgrove {

KeysWindow::KeysWindow(Face& face, frmKeys& form) : m_bindings(face) {
  setObjectName("frmKeys");
  m_list.setObjectName("ListViewKeys");
  m_list.setAccessibleName("Keys");
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(14, 14, 14, 14);
  all->addWidget(&m_list);
  m_list.bind(m_bindings, form.ListViewKeys, [&form](int row) { form.ListViewKeys.select(row); });
  m_list.widenLastColumn();
  setFocusProxy(&m_list);
}

QSize KeysWindow::sizeHint() const {
  return theme::sized(QSize(620, 460), QSize(760, 620)).expandedTo(minimumSizeHint());
}

void KeysWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!event->spontaneous()) m_list.setFocus();
}

}  // namespace velgrove
