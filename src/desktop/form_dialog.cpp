#include "desktop/form_dialog.h"

#include <QCloseEvent>
#include <QLayout>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>

namespace velgrove {
namespace {

constexpr QSize LikelyDecoration(2, 30);

}  // namespace

FormDialog::FormDialog(const QString& name, QWidget* above, Face& face, Form& form,
                       std::function<void()> close, Qt::WindowFlags flags)
    : QDialog(above, flags), m_close(std::move(close)), m_bindings(face) {
  setObjectName(name);
  m_bindings.mirror(
      [&form]() -> Look {
        return {.caption = form.Caption,
                .visible = form.Visible,
                .enabled = form.Enabled,
                .modal = form.Modal,
                .fronts = form.Fronts};
      },
      [this](const Look& look) { show(look); });
}

void FormDialog::show(const Look& look) {
  if (!look.caption.empty()) setWindowTitle(QString::fromStdString(look.caption));
  setEnabled(look.enabled);
  if (!look.visible) {
    hide();
    return;
  }
  const bool appears = !isVisible();
  if (appears) {
    setWindowModality(look.modal ? Qt::ApplicationModal : Qt::NonModal);
    takePlace();
    QDialog::show();
  }
  if (appears || std::exchange(m_fronts, look.fronts) != look.fronts) {
    raise();
    if (look.modal || !appears) activateWindow();
  }
  m_fronts = look.fronts;
  if (!appears) return;
  appear();
  if (m_default != nullptr) m_default->setDefault(true);  // the button that closed it was the default then
}

void FormDialog::appear() {
  if (m_default != nullptr) m_default->setFocus();
}

void FormDialog::layOutAround(QScrollArea& scroll, QWidget& page, QHBoxLayout& buttons, int margin) {
  scroll.setFrameShape(QFrame::NoFrame);
  scroll.setFocusPolicy(Qt::NoFocus);
  scroll.setWidgetResizable(true);
  scroll.setWidget(&page);
  buttons.setContentsMargins(margin, 0, margin, 0);
  buttons.setSpacing(8);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, margin);
  all->setSpacing(margin);
  all->addWidget(&scroll, 1);
  all->addLayout(&buttons);
}

void FormDialog::fitAround(const QScrollArea& scroll, QSize usual) {
  constexpr int Frame = 2;  // of the scrolling part
  const QSize beside = layout()->sizeHint() - scroll.sizeHint();
  const QSize whole = (scroll.widget()->sizeHint() + QSize(Frame, Frame) + beside).expandedTo(usual);
  const QSize room =
      parentWidget()->screen()->availableGeometry().size() - decoration().expandedTo(LikelyDecoration);
  const int bar = whole.height() > room.height() ? scroll.verticalScrollBar()->sizeHint().width() : 0;
  setFixedSize((whole + QSize(bar, 0)).boundedTo(room));
}

QSize FormDialog::decoration() const {
  const QSize known = frameGeometry().size() - geometry().size();
  return known.isNull() ? LikelyDecoration : known;
}

void FormDialog::setDefault(QPushButton& button) {
  m_default = &button;
  button.setDefault(true);
}

void FormDialog::closeEvent(QCloseEvent* event) {
  event->ignore();
  m_bindings.face().deliver(m_close);
}

void FormDialog::reject() {
  m_bindings.face().deliver(m_close);
}

}  // namespace velgrove
