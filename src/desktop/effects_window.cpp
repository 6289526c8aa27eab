#include "desktop/effects_window.h"

#include <QHBoxLayout>
#include <QShowEvent>
#include <QVBoxLayout>
#include <array>

#include "desktop/dress.h"
#include "desktop/spoken.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

/// What stands inside a child window of 440 x 456.
QSize content() {
  return {434, theme::sized(429, 425)};
}

}  // namespace

EffectsWindow::EffectsWindow(Face& face, EffectsQueue& effects) : m_bindings(face) {
  setObjectName("EffectsQueue");
  dress();
  layOut();
  speakLabel(m_choice, "Kind of effect");
  bindControls(effects);
  setFocusProxy(&m_list);
}

QSize EffectsWindow::sizeHint() const {
  return content().expandedTo(minimumSizeHint());
}

void EffectsWindow::dress() {
  dressAll({{&m_list, "ListViewEffects", "Effects"},
            {&m_choice, "cmboEffects", "Kind of effect"},
            {&m_custom, "frmCustomChase", "Custom chase"},
            {&m_start, "txtChannelStart", "Start channel"},
            {&m_stop, "txtChannelStop", "Stop channel"},
            {&m_speed, "txtSpeedMS", "Speed, milliseconds a step"},
            {&m_loops, "txtDurationSec", "Loops"},
            {&m_add, "cmdAddEffect", "Add effect"},
            {&m_remove, "cmdRemoveEffect", "Remove the last effect"},
            {&m_test, "cmdTest", "Test effect"}});
  for (QLabel* caption : {&m_startCaption, &m_stopCaption, &m_speedCaption, &m_loopsCaption})
    caption->setProperty("type", "caption");
  for (QPushButton* button : {&m_add, &m_remove, &m_test}) {
    button->setProperty("role", "key");
    button->setProperty("place", "dialog");
    button->setAutoDefault(false);
  }
}

/// Tab goes in the order in which the widgets come into the window.
void EffectsWindow::layOut() {
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(14, 14, 14, 14);
  all->setSpacing(12);
  all->addWidget(&m_list, 1);
  m_list.setMinimumHeight(theme::sized(80, 102));  // its header and two rows
  all->addWidget(&m_choice);
  auto* fields = new QGridLayout(&m_custom);
  fields->setContentsMargins(10, 8, 10, 10);
  fields->setHorizontalSpacing(8);
  fields->setVerticalSpacing(4);
  int column = 0;
  for (const auto& [caption, field] :
       {std::pair(&m_startCaption, &m_start), std::pair(&m_stopCaption, &m_stop),
        std::pair(&m_speedCaption, &m_speed), std::pair(&m_loopsCaption, &m_loops)}) {
    fields->addWidget(caption, 0, column);
    fields->addWidget(field, 1, column);
    fields->setColumnStretch(column++, 1);
  }
  all->addWidget(&m_custom);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(8);
  for (QPushButton* button : {&m_add, &m_remove, &m_test}) buttons->addWidget(button, 1);
  all->addLayout(buttons);
}

void EffectsWindow::bindControls(EffectsQueue& effects) {
  m_list.bind(m_bindings, effects.ListViewEffects,
              [&effects](int row) { effects.ListViewEffects_MouseDown(row); });
  m_bindings.bind(&m_choice, [&effects] { return &effects.cmboEffects; });
  m_bindings.bind(&m_custom, [&effects] { return &effects.frmCustomChase; });
  m_bindings.bind(&m_startCaption, [&effects] { return &effects.lblChannelStart; });
  m_bindings.bind(&m_stopCaption, [&effects] { return &effects.lblChannelStop; });
  m_bindings.bind(&m_speedCaption, [&effects] { return &effects.lblSpeedMS; });
  m_bindings.bind(&m_loopsCaption, [&effects] { return &effects.lblDurationSec; });
  m_bindings.bind(&m_start, [&effects] { return &effects.txtChannelStart; });
  m_bindings.bind(&m_stop, [&effects] { return &effects.txtChannelStop; });
  m_bindings.bind(&m_speed, [&effects] { return &effects.txtSpeedMS; });
  m_bindings.bind(&m_loops, [&effects] { return &effects.txtDurationSec; });
  m_bindings.bind(&m_add, [&effects] { return &effects.cmdAddEffect; });
  m_bindings.bind(&m_remove, [&effects] { return &effects.cmdRemoveEffect; });
  m_bindings.bind(&m_test, [&effects] { return &effects.cmdTest; });
}

void EffectsWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!event->spontaneous()) m_list.setFocus();
}

}  // namespace velgrove
