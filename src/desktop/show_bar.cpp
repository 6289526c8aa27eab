#include "desktop/show_bar.h"

#include <QEvent>
#include <QFrame>
#include <QMenu>

#include "desktop/spoken.h"
#include "desktop/theme.h"

namespace velgrove {

ShowBar::ShowBar(LightingDesk& desk, Tools& tools, Bindings& bindings)
    : m_tools(tools), m_row(new QHBoxLayout(this)), m_panel(new CuePanel(desk, bindings)) {
  setObjectName("band");
  setAttribute(Qt::WA_StyledBackground);
  m_row->setContentsMargins(8, 6, 8, 6);
  m_row->setSpacing(3);
  for (const auto* id : {"ID_OpenProject", "ID_Save"}) addTool(id, false);
  addLine();
  for (const auto* id :
       {"ID_ABQ", "ID_XYQ", "ID_Effects", "ID_GrandMaster", "ID_LevelWheel", "ID_BarsInput", "ID_BarsOutput"})
    addTool(id, false);
  m_overflow.setObjectName("overflow");
  m_overflow.setText("...");
  m_overflow.setToolTip("More tools");
  m_overflow.setAccessibleName("More tools");
  m_overflow.setPopupMode(QToolButton::InstantPopup);
  m_overflow.setMenu(new QMenu(&m_overflow));
  m_row->addWidget(&m_overflow);
  addLine();
  m_blackout = m_tools.button("ID_Blackout", true, this);
  m_row->addWidget(m_blackout);
  m_row->addSpacing(6);
  m_row->addWidget(m_panel, 1);
  m_row->addSpacing(6);
  for (const auto* id : {"ID_QMinus", "ID_QPlus", "ID_CueReset"}) addTool(id, true);
  m_row->addSpacing(6);
  addMove(m_stop, "ID_StopFade", "stop", &QueueList::cmdStop, desk, bindings);
  m_row->addSpacing(4);
  addMove(m_go, "ID_Go", "go", &QueueList::cmdGoForward, desk, bindings);
  size();
}

void ShowBar::addTool(std::string_view id, bool caption) {
  QToolButton* button = m_tools.button(id, caption, this);
  (caption ? m_steps : m_files).push_back(button);
  m_row->addWidget(button);
}

void ShowBar::addLine() {
  auto* line = new QFrame;
  line->setFrameShape(QFrame::VLine);
  line->setProperty("type", "line");
  m_row->addSpacing(4);
  m_row->addWidget(line);
  m_row->addSpacing(4);
}

/// Go and Stop of the frame look as those of the XY player, which they move.
void ShowBar::addMove(QPushButton& button, const char* id, const char* role, Button QueueList::*state,
                      LightingDesk& desk, Bindings& bindings) {
  button.setObjectName(id);
  button.setProperty("role", role);
  button.setProperty("place", "bar");
  button.setFocusPolicy(Qt::StrongFocus);
  button.setAutoDefault(false);
  const QAction* action = m_tools.action(id);
  button.setText(action->iconText());
  const auto follow = [&button, action] {
    button.setToolTip(action->toolTip());
    speakState(button, button.property("state").toString());
    if (button.text() != action->iconText()) button.setText(action->iconText());
    button.setEnabled(action->isEnabled());
  };
  connect(action, &QAction::changed, &button, follow);
  connect(&button, &QPushButton::clicked, this, [this, id] { m_tools.click(id); });
  bindings.mirror(
      [&desk, state] {
        const QueueList* player = desk.windows.XYQ.get();
        return player == nullptr ? Colour{0} : (player->*state).BackColour;
      },
      [this, &button](Colour colour) {
        theme::setState(&button, "state", colour == QueueList::BrightGreen ? "ready" : "quiet");
        speakState(button, button.property("state").toString());
        dressIcon(button);
      });
  m_row->addWidget(&button);
}

/// The icon in the ink of the button's state.
void ShowBar::dressIcon(QPushButton& button) const {
  const bool ready = button.property("state") == "ready";
  const bool go = &button == &m_go;
  const QColor ink = theme::colour(go ? (ready ? "goInk" : "goQuietText") : (ready ? "text" : "text2"));
  const int size = go ? theme::sized(36, 54) : theme::sized(18, 26);
  button.setIconSize(QSize(size, size));
  button.setIcon(theme::picture(button.objectName(), size, ink, button.devicePixelRatioF()));
}

void ShowBar::size() {
  setFixedHeight(theme::sized(70, 98));
  const int height = theme::sized(58, 84);
  m_go.setFixedSize(theme::sized(142, 210), height);
  m_stop.setFixedSize(theme::sized(94, 136), height);
  m_blackout->setFixedSize(theme::sized(60, 86), height);
  for (QToolButton* step : m_steps) step->setFixedSize(theme::sized(42, 60), height);
  for (QToolButton* file : m_files) {
    file->setFixedSize(theme::sized(34, 44), theme::sized(34, 44));
    file->setIconSize(theme::sized(QSize(24, 24), QSize(28, 28)));
  }
  const QSize icon = theme::sized(QSize(24, 24), QSize(32, 32));
  for (QToolButton* step : m_steps) step->setIconSize(icon);
  m_blackout->setIconSize(icon);
  m_panel->setFixedHeight(height);
  dressIcon(m_go);
  dressIcon(m_stop);
  fit();
}

/// Drops what can be dropped until the cue panel has room to be read.
void ShowBar::fit() {
  const int panel = theme::sized(300, 460);
  constexpr int Spaces = 110;
  int used = m_go.width() + m_stop.width() + m_blackout->width() + panel + Spaces;
  QMenu* menu = m_overflow.menu();
  menu->clear();
  bool dropped = false;
  for (const auto* group : {&m_files, &m_steps}) {
    for (QToolButton* button : *group) {
      used += button->width() + 3;
      const bool fits = used <= width();
      button->setVisible(fits);
      if (!fits) menu->addAction(button->defaultAction());
      dropped = dropped || !fits;
    }
  }
  m_overflow.setVisible(dropped);
}

void ShowBar::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  fit();
}

void ShowBar::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::StyleChange && m_blackout != nullptr) size();
}

}  // namespace velgrove
