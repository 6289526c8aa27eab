#include "desktop/child_window.h"

#include <QCloseEvent>
#include <QScopedValueRollback>
#include <QWindowStateChangeEvent>

#include "desktop/child_area.h"
#include "desktop/twips.h"

namespace velgrove {
namespace {

WindowState stateOf(Qt::WindowStates states) {
  if ((states & Qt::WindowMinimized) != 0) return WindowState::Minimised;
  return (states & Qt::WindowMaximized) != 0 ? WindowState::Maximised : WindowState::Normal;
}

}  // namespace

ChildWindow::ChildWindow(QWidget* content, Face& face, FindForm find, std::function<void()> close)
    : m_find(std::move(find)), m_close(std::move(close)), m_bindings(face) {
  setWidget(content);
  setFocusProxy(content);
  setOption(QMdiSubWindow::RubberBandResize, false);
  setSystemMenu(nullptr);
  QPixmap nothing(1, 1);  // the toolkit shows its own sign beside the menus when the window fills the frame
  nothing.fill(Qt::transparent);
  setWindowIcon(nothing);
  // The style fills it to its edges. Said so, what lies below isn't painted with each change of its content.
  setAttribute(Qt::WA_OpaquePaintEvent);
  m_look = m_bindings.mirror(
      [this]() -> Look {
        const Form* form = m_find();
        if (form == nullptr) return {};
        return {.identity = form->Identity,
                .caption = form->Caption,
                .visible = form->Visible,
                .enabled = form->Enabled,
                .state = form->WindowState,
                .place = placeOf(*form),
                .fronts = form->Fronts};
      },
      [this](const Look& look) { show(look); });
}

void ChildWindow::show(const Look& look) {
  const bool newToForm = !isVisible() || m_shown.identity != look.identity;
  obey(look);
  if (newToForm) noteGeometry();
}

void ChildWindow::obey(const Look& look) {
  const QScopedValueRollback writing(m_writing, true);
  const Look before = std::exchange(m_shown, look);
  setWindowTitle(QString::fromStdString(look.caption));
  widget()->setWindowTitle(windowTitle());
  widget()->setEnabled(look.enabled);
  if (!look.visible) {
    hide();
    return;
  }
  auto* const area = qobject_cast<ChildArea*>(mdiArea());
  const bool appears = !isVisible();
  switch (look.state) {
    case WindowState::Minimised:
      if (isMinimized()) break;
      showMinimized();
      if (area != nullptr) area->keepInFront();
      break;
    case WindowState::Maximised:
      if (!isMaximized()) showMaximized();
      break;
    case WindowState::Normal:
      if (isMinimized() || isMaximized() || appears) showNormal();
      break;
  }
  if (appears) widget()->show();
  const bool isNew = before.identity != look.identity;
  if (area != nullptr && (isNew || before.fronts != look.fronts))
    area->bringForward(*this, look.fronts > 0 || !isNew);
}

/// The form knows where its window stands, as long as it's neither minimised nor fills the frame.
void ChildWindow::noteGeometry() {
  if (!m_notesPlace || m_writing || !isVisible() || isMinimized() || isMaximized() || !m_look->known) return;
  if (m_look->value.place == geometry()) return;
  m_look->value.place = geometry();
  m_bindings.face().deliver([this, place = geometry()] {
    if (Form* form = m_find()) setPlace(*form, place);
  });
}

void ChildWindow::moveEvent(QMoveEvent* event) {
  QMdiSubWindow::moveEvent(event);
  noteGeometry();
}

void ChildWindow::resizeEvent(QResizeEvent* event) {
  QMdiSubWindow::resizeEvent(event);
  noteGeometry();
}

void ChildWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  m_bindings.face().deliver(m_close);
}

/// The hand minimised, enlarged or restored the window. That it became active, or another one did, says
/// nothing of what the desk may have asked for meanwhile.
void ChildWindow::changeEvent(QEvent* event) {
  QMdiSubWindow::changeEvent(event);
  if (event->type() != QEvent::WindowStateChange || m_writing) return;
  const WindowState state = stateOf(windowState());
  if (stateOf(static_cast<QWindowStateChangeEvent*>(event)->oldState()) == state) return;
  if (!m_look->known || m_look->value.state == state) return;
  m_look->value.state = state;
  m_bindings.face().deliver([this, state] {
    if (Form* form = m_find()) form->WindowState = state;
  });
}

void ChildWindow::mousePressEvent(QMouseEvent* event) {
  m_pressed = geometry();
  QMdiSubWindow::mousePressEvent(event);
}

void ChildWindow::mouseReleaseEvent(QMouseEvent* event) {
  QMdiSubWindow::mouseReleaseEvent(event);
  if (geometry() != m_pressed) emit movedByHand();
}

}  // namespace velgrove
