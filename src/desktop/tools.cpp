#include "desktop/tools.h"

#include <QSignalBlocker>
#include <algorithm>
#include <iterator>

#include "desktop/theme.h"

namespace velgrove {
namespace {

/// Tools that show a state. What the state is stands in `pressed`.
constexpr std::string_view Toggles[] = {
    "ID_SelectPointer", "ID_SelectGrid",   "ID_FluidZoom", "ID_Pan",      "ID_AddLight", "ID_DelLight",
    "ID_Rotate",        "ID_ABQ",          "ID_XYQ",       "ID_Effects",  "ID_noInput",  "ID_manualOn",
    "ID_subsOn",        "ID_LockFixtures", "mnuViewGrid",  "ID_ShowView", "ID_DimScreen"};

bool isToggle(std::string_view id) {
  return std::ranges::find(Toggles, id) != std::end(Toggles);
}

/// The mouse mode that a plot tool stands for; 0 for other tools.
int mouseModeOf(std::string_view id) {
  if (id == "ID_SelectPointer") return tools::Select;
  if (id == "ID_AddLight") return tools::Light;
  if (id == "ID_Rotate") return tools::Rotate;
  if (id == "ID_FluidZoom") return tools::FluidZoom;
  return id == "ID_DelLight" ? tools::Delete : 0;
}

const MenuSet* popUpSet(std::string_view id) {
  const auto sets = ToolBars::popUps();
  const auto found = std::ranges::find(sets, id, &MenuSet::Caption);
  return found == sets.end() ? nullptr : &*found;
}

/// A set inside a menu has the caption of its tool, and is enabled with it.
QMenu* addSubmenu(QMenu& menu, const QAction& tool) {
  auto* inner = menu.addMenu(tool.text());
  const auto follow = [inner, &tool] {
    inner->setTitle(tool.text());
    inner->setEnabled(tool.isEnabled());
  };
  QObject::connect(&tool, &QAction::changed, inner, follow);
  follow();
  return inner;
}

}  // namespace

Tools::Tools(LightingDesk& desk, Bindings& bindings) : m_desk(desk), m_face(bindings.face()) {
  makeActions();
  bindings.add({.copy = [this] { return copy(); }, .apply = [this] { show(); }});
}

/// The tools' ids never change once the desk stands.
void Tools::makeActions() {
  for (const Tool& tool : m_desk.frame.SSActiveToolBars1.tools()) {
    auto* action = new QAction(theme::icon(QString::fromStdString(tool.Id)), QString(), this);
    action->setObjectName(QString::fromStdString(tool.Id));
    action->setCheckable(isToggle(tool.Id));
    action->setMenuRole(QAction::NoRole);
    const auto press = [this, action, id = tool.Id] {
      const auto at = static_cast<std::size_t>(std::ranges::find(m_ids, id) - m_ids.begin());
      if (at < m_shown.size()) {
        const QSignalBlocker quiet(action);
        action->setChecked(m_shown[at].pressed);  // the desk says what is pressed, not the click
      }
      click(id);
    };
    // An assistive tool turns over what shows a state, and clicks nothing.
    if (action->isCheckable())
      connect(action, &QAction::toggled, this, press);
    else
      connect(action, &QAction::triggered, this, press);
    m_ids.push_back(tool.Id);
    m_actions.emplace(tool.Id, action);
  }
}

void Tools::click(const std::string& id) {
  m_face.deliver([this, id] { m_desk.frame.SSActiveToolBars1_ToolClick(id); });
}

QAction* Tools::action(std::string_view id) const {
  const auto found = m_actions.find(id);
  return found == m_actions.end() ? nullptr : found->second;
}

bool Tools::pressed(const Tool& tool) const {
  const auto visible = [](const std::unique_ptr<QueueList>& player) {
    return player != nullptr && player->Window.Visible;
  };
  if (tool.Id == "ID_ABQ") return visible(m_desk.windows.ABQ);
  if (tool.Id == "ID_XYQ") return visible(m_desk.windows.XYQ);
  if (tool.Id == "ID_ShowView") return m_desk.windows.ShowView.Window.Visible;
  if (tool.Id == "ID_Effects") return m_desk.windows.Effects.Window.Visible;
  if (const frmDocument* document = m_desk.windows.ActiveDocument) {
    if (const int mode = mouseModeOf(tool.Id); mode != 0) return document->MouseMode == mode;
    if (tool.Id == "ID_Pan") return document->FlpCAD1.PanMode;
    if (tool.Id == "ID_SelectGrid" || tool.Id == "mnuViewGrid") return document->FlpCAD1.Snap;
  }
  return tool.Pressed;
}

/// There are many tools and they seldom change: each is compared in its place.
bool Tools::copy() {
  const auto& tools = m_desk.frame.SSActiveToolBars1.tools();
  m_now.resize(tools.size());
  bool changed = false;
  for (std::size_t i = 0; i < tools.size(); ++i) {
    const Tool& tool = tools[i];
    const bool down = isToggle(tool.Id) && pressed(tool);
    Look& now = m_now[i];
    if (now.caption == tool.Caption && now.tip == tool.ToolTip && now.key == tool.Key &&
        now.enabled == tool.Enabled && now.pressed == down && !m_shown.empty())
      continue;
    now = {.caption = tool.Caption,
           .tip = tool.ToolTip,
           .key = tool.Key,
           .enabled = tool.Enabled,
           .pressed = down};
    changed = true;
  }
  return changed;
}

/// A key that is heard elsewhere stands in the column of the menu all the same.
QString Tools::textOf(const Look& look, const QAction& action) {
  const QString words = QString::fromStdString(look.caption);
  const bool elsewhere = !look.key.empty() && action.shortcut().isEmpty();
  return elsewhere ? words + '\t' + QString::fromStdString(look.key) : words;
}

QString Tools::tipOf(const Look& look) {
  const QString words = QString::fromStdString(look.tip.empty() ? look.caption : look.tip).remove('&');
  return look.key.empty() ? words : words + " (" + QString::fromStdString(look.key) + ")";
}

void Tools::show() {
  m_shown.resize(m_now.size());
  for (std::size_t i = 0; i < m_now.size() && i < m_ids.size(); ++i) {
    const Look& look = m_now[i];
    if (m_shown[i] == look) continue;
    m_shown[i] = look;
    QAction* action = m_actions.at(m_ids[i]);
    action->setText(textOf(look, *action));
    action->setIconText(QString::fromStdString(look.caption).remove('&'));
    action->setToolTip(tipOf(look));
    action->setEnabled(look.enabled);
    const QSignalBlocker quiet(action);
    action->setChecked(look.pressed);
  }
}

void Tools::addItems(QMenu& menu, const MenuSet& set) const {
  for (const std::string_view item : set.Items) {
    if (item == "-")
      menu.addSeparator();
    else if (const MenuSet* inner = popUpSet(item))
      addItems(*addSubmenu(menu, *action(item)), *inner);
    else if (QAction* known = action(item))
      menu.addAction(known);
  }
}

void Tools::fill(QMenuBar& bar) {
  for (const MenuSet& set : ToolBars::menus()) {
    QMenu* menu =
        bar.addMenu(QString::fromUtf8(set.Caption.data(), static_cast<qsizetype>(set.Caption.size())));
    addItems(*menu, set);
  }
}

QMenu* Tools::popUp(std::string_view set, QWidget* parent) {
  const MenuSet* known = popUpSet(set);
  if (known == nullptr) return nullptr;
  auto* menu = new QMenu(parent);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  addItems(*menu, *known);
  return menu;
}

QToolButton* Tools::button(std::string_view id, bool caption, QWidget* parent) const {
  auto* button = new QToolButton(parent);
  button->setDefaultAction(action(id));
  button->setObjectName(action(id)->objectName());
  button->setFocusPolicy(Qt::StrongFocus);
  button->setToolButtonStyle(caption ? Qt::ToolButtonTextUnderIcon : Qt::ToolButtonIconOnly);
  if (caption) button->setProperty("place", "bar");
  return button;
}

}  // namespace velgrove
