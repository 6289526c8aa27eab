#include "desktop/sub_fader.h"

#include <QKeyEvent>
#include <QVBoxLayout>

#include "desktop/dress.h"

namespace velgrove {

/// It ends by its close box and by Escape as by a release: unloaded, it would begin at 0 the next time.
SubFader::SubFader(FrameWindow& frame, Face& face, frmSubPane& panel)
    : SubDialog(frame, face,
                {.name = "frmSubMasterSmall",
                 .form = panel.Fader.Window,
                 .size = {94, 270},
                 .index = [&panel] { return panel.ActiveSubIndex; },
                 .close = [&panel] { panel.Fader.Pot_MouseUp(); }}),
      m_wheel(*this, face, panel.Fader.Window, panel.Fader.MouseHelper2) {
  dressAll({{&m_level, "Text2", "Level, per cent"}, {&m_fader, "Pot", "Level, 0 to 100"}});
  m_level.setProperty("type", "sub");
  m_level.setReadOnly(true);
  m_level.setFocusPolicy(Qt::NoFocus);
  m_level.setAlignment(Qt::AlignCenter);
  m_fader.setFill("sub");
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(11, 9, 11, 8);
  column->setSpacing(6);
  column->addWidget(&m_level);
  column->addWidget(&m_fader, 1, Qt::AlignHCenter);
  bindings().bind(&m_level, [&panel] { return &panel.Fader.Text2; });
  bindings().bind(&m_fader, [&panel] { return &panel.Fader.Pot; });
  bindings().mirror(
      [&panel] { return panel.Command1[static_cast<std::size_t>(panel.ActiveSubIndex)].Caption; },
      [this](const std::string& number) { setWindowTitle(QString::fromStdString(number)); });
  bindPlace();
}

void SubFader::begin() {
  m_fader.setFocus();
}

/// The Enter that opened it by the keyboard may still be down.
void SubFader::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter)
    SubDialog::keyPressEvent(event);
  else if (!event->isAutoRepeat())
    reject();
}

}  // namespace velgrove
