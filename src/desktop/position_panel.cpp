#include "desktop/position_panel.h"

#include <QGridLayout>

#include "desktop/dress.h"

namespace velgrove {

PositionPanel::PositionPanel(Bindings& bindings, MovingFixtureDlg& dialog)
    : m_watch(this, bindings, dialog.Mouse_Attach, dialog.Dialog.MouseHelper1) {
  dress();
  layOut();
  bindings.bind(&m_x, [&dialog] { return &dialog.VSlider3; });
  bindings.bind(&m_y, [&dialog] { return &dialog.VSlider4; });
  bindings.bind(&m_xCaption, [&dialog] { return &dialog.xlev; });
  bindings.bind(&m_yCaption, [&dialog] { return &dialog.YLEV; });
  bindings.bind(&m_8bit, [&dialog] { return &dialog.res_8bit; });
  bindings.bind(&m_16bit, [&dialog] { return &dialog.res_16Bit; });
  // Tied before the button, which can't keep the focus while the mouse is attached.
  bindings.mirror([&dialog] { return dialog.Mouse_Attach.enabled(); },
                  [this](bool attached) { handFocusOn(attached); });
  bindings.bind(&m_attach, [&dialog] { return &dialog.cmdAttachMouse; });
  bindings.mirror([&dialog] { return dialog.cmdAttachMouse.Enabled; },
                  [this](bool enabled) {
                    if (enabled && window()->focusWidget() == &m_x && std::exchange(m_lentFocus, false))
                      m_attach.setFocus();
                  });
}

void PositionPanel::handFocusOn(bool attached) {
  if (!attached || window()->focusWidget() != &m_attach) return;
  m_lentFocus = true;
  m_x.setFocus();
}

void PositionPanel::dress() {
  dressAll({{&m_x, "VSlider3", "Position across the stage, 0 to 255"},
            {&m_y, "VSlider4", "Position up and down the stage, 0 to 255"},
            {&m_xCaption, "xlev", "Position across the stage"},
            {&m_yCaption, "YLEV", "Position up and down the stage"},
            {&m_8bit, "res_8bit", "Resolution of 8 bits"},
            {&m_16bit, "res_16Bit", "Resolution of 16 bits"},
            {&m_attach, "cmdAttachMouse", "Attach mouse to moving light"}});
  constexpr int Middle = 128;
  constexpr int Far = 255;
  for (Fader* fader : {&m_x, &m_y}) {
    fader->setFill("edge", Middle);
    fader->setPageStep(16);
    fader->setScale({{.value = Far, .words = "255"}, {.value = Middle, .words = "128"}, {.words = "0"}});
  }
  constexpr int AboveTheGroove = 14;
  for (QLabel* caption : {&m_xCaption, &m_yCaption}) {
    caption->setProperty("type", "position");
    caption->setIndent(AboveTheGroove);
  }
  m_attach.setProperty("role", "dialog");
}

void PositionPanel::layOut() {
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(4);
  grid->setVerticalSpacing(4);
  int column = 0;
  for (const auto& [caption, fader] : {std::pair(&m_xCaption, &m_x), std::pair(&m_yCaption, &m_y)}) {
    grid->addWidget(caption, 0, column);
    grid->addWidget(fader, 1, column++, Qt::AlignHCenter);
  }
  grid->setRowStretch(1, 1);
  grid->addWidget(&m_8bit, 2, 0, Qt::AlignLeft);
  grid->addWidget(&m_16bit, 2, 1, Qt::AlignLeft);
  grid->addWidget(&m_attach, 3, 0, 1, 2);
}

std::vector<QWidget*> PositionPanel::controls() {
  return {&m_x, &m_y, &m_8bit, &m_16bit, &m_attach};
}

}  // namespace velgrove
