// Whoever has no mouse reaches every control of every window.

#include <QAbstractItemView>
#include <QHeaderView>
#include <QMdiSubWindow>
#include <QMenu>
#include <QScrollBar>
#include <QTabBar>
#include <set>

#include "desktop/bars_window.h"
#include "desktop/plot_view.h"
#include "desktop/sub_cell.h"
#include "support/desk_on_screen.h"

namespace velgrove::test {
namespace {

using Controls = std::set<QWidget*>;

template <class... Kinds>
bool isOne(QWidget* widget) {
  return ((qobject_cast<Kinds*>(widget) != nullptr) || ...);
}

/// What the hand can use in a window, in which no other stands.
Controls controlsOf(QWidget& window) {
  Controls controls;
  QWidgetList all = window.findChildren<QWidget*>();
  all.push_back(&window);
  for (QWidget* widget : all) {
    if (!widget->isVisibleTo(&window) || !widget->isEnabled() || widget->window() != window.window())
      continue;
    if (isOne<QHeaderView>(widget)) continue;  // tells what the columns are
    if (widget->focusPolicy() == Qt::NoFocus && isOne<QLineEdit>(widget)) continue;  // only shows
    const QString above =
        widget->parentWidget() == nullptr ? QString() : widget->parentWidget()->objectName();
    if (widget->objectName().startsWith("qt_") || above.startsWith("qt_scrollarea"))
      continue;  // another's part
    if (isOne<QAbstractButton, QLineEdit, QComboBox, QAbstractItemView, QAbstractSlider, QTabBar, PlotView,
              BarsWindow, SubCell>(widget))
      controls.insert(widget);
  }
  return controls;
}

std::string namesOf(const Controls& controls) {
  std::string names;
  for (const QWidget* control : controls)
    names +=
        std::string(control->metaObject()->className()) + " " + control->objectName().toStdString() + "\n";
  return names;
}

struct Keyboard : testing::Test {
  Keyboard() { house.open(); }

  /// Tab all the way round, with the arrow keys where a group of controls is one stop.
  Controls walk() {
    constexpr int Longest = 300;
    Controls reached;
    QWidget* const start = QApplication::focusWidget();
    for (int step = 0; step < Longest; ++step) {
      alongArrows(reached);
      screen.key(Qt::Key_Tab);
      if (QApplication::focusWidget() == start) break;
    }
    return reached;
  }
  void alongArrows(Controls& reached) {
    QWidget* const start = QApplication::focusWidget();
    reached.insert(start);
    if (!isOne<SubCell, QRadioButton>(start)) return;
    QWidget* before = nullptr;
    while (std::exchange(before, QApplication::focusWidget()) != QApplication::focusWidget()) {
      screen.key(Qt::Key_Right);
      if (!reached.insert(QApplication::focusWidget()).second) break;
    }
  }
  void expectReached(QWidget& window, const Controls& reached) {
    Controls missed = controlsOf(window);
    EXPECT_FALSE(missed.empty());
    for (QWidget* control : reached) missed.erase(control);
    EXPECT_TRUE(missed.empty()) << window.objectName().toStdString() << " leaves to the mouse:\n"
                                << namesOf(missed);
  }
  void expectAllReached(const QString& window) {
    QWidget& shown = named(window);
    ASSERT_TRUE(shown.isVisible()) << window.toStdString();
    shown.activateWindow();
    QApplication::processEvents();
    expectReached(shown, walk());
  }
  void tool(const char* id) {
    screen.onDesk([&] { house.desk.frame.SSActiveToolBars1_ToolClick(id); });
  }
  DeskOnScreen house;
  Screen& screen = house.screen;
  Windows& windows = house.desk.windows;
};

TEST_F(Keyboard, ReachesEveryControlOfTheFrameAndItsWindows) {
  for (const char* id :
       {"ID_Effects", "ID_CheckShow", "ID_Keys", "ID_BarsInput", "ID_BarsOutput", "ID_Rotate"})
    tool(id);
  screen.onDesk([this] { house.desk.frame.SubPaneVisible = true; });
  screen.onDesk([] {});  // the windows that came up last
  QList<QMdiSubWindow*> open = named<QMdiArea>("children").subWindowList();
  open.removeIf([](const QMdiSubWindow* window) { return !window->isVisible(); });
  EXPECT_EQ(open.size(), 8);
  Controls reached;
  Controls windowsReached;
  for (qsizetype window = 0; window < open.size(); ++window) {
    screen.key(Qt::Key_Tab, Qt::ControlModifier);
    windowsReached.insert(named<QMdiArea>("children").activeSubWindow());
    reached.merge(walk());
  }
  for (int part = 0; part < 4; ++part) {
    screen.key(Qt::Key_F6);
    reached.merge(walk());
  }
  for (QMdiSubWindow* window : open) {
    EXPECT_TRUE(windowsReached.contains(window)) << window->windowTitle().toStdString();
    expectReached(*window->widget(), reached);
  }
  for (const char* part : {"band", "toolColumn", "frmSubPane"}) expectReached(named(part), reached);
}

TEST_F(Keyboard, ReachesEveryControlOfTheDialogs) {
  tool("ID_GrandMaster");
  expectAllReached("frmGrandMaster");
  tool("mnuEditPreferences");
  expectAllReached("frmPreferences");
  screen.expectBox("Modifying the default timings");
  screen.onDesk([this] { windows.Timings.Show(); });
  expectAllReached("frmTimings");
  screen.onDesk([this] { windows.SubPane.Command1[0].click(); });
  expectAllReached("frmSubMasterSmall");
  screen.onDesk([this] { windows.SubPane.Command1_MouseDown(0, 2, 0, 0, 0); });
  expectAllReached("frmSubMasterRecord");
}

TEST_F(Keyboard, OpensEachKindOfFixtureFromThePlotAndReachesBothTabsOfItsDialog) {
  for (const auto& [moving, dialog] : {std::pair(false, "FixtureDlg"), std::pair(true, "MovingFixtureDlg")}) {
    named("frmMain").activateWindow();
    named("frmDocument/FlpCAD1").setFocus();
    const auto wanted = [&] {
      const auto picked = house.desk.frame.ActiveForm().pickedByKeys();
      return picked != nullptr && (picked->IconShape == MovingLight) == moving;
    };
    while (!wanted()) screen.key(Qt::Key_Right);
    screen.key(Qt::Key_Return);
    expectAllReached(dialog);
    auto& tabs = *named(dialog).findChild<QTabBar*>();
    tabs.setFocus();
    screen.key(Qt::Key_Right);
    EXPECT_EQ(tabs.currentIndex(), 1);
    expectAllReached(dialog);
    screen.key(Qt::Key_Escape);
  }
}

TEST_F(Keyboard, ReachesEveryControlOfTheDialogsThatHoldTheDesk) {
  screen.whenAsked([this] {
    expectAllReached("frmLoop");
    screen.key(Qt::Key_Escape);
  });
  screen.onDesk([this] { house.xy().cmdLoop_Click(); });
  tool("mnuHelpAbout");
  expectAllReached("frmAbout");
  screen.key(Qt::Key_Escape);
  screen.onDesk([this] { house.desk.show.ProjectDirty = true; });
  screen.whenAsked([this] {
    expectAllReached("frmWanttoSave");
    screen.click(named("frmWanttoSave/DontSave"));
  });
  tool("mnuFileOpen");
  auto& tabs = *named("frmOpenProject").findChild<QTabBar*>();
  for (const int tab : {0, 1}) {
    tabs.setFocus();
    screen.key(tab == 0 ? Qt::Key_Left : Qt::Key_Right);
    EXPECT_EQ(tabs.currentIndex(), tab);
    expectAllReached("frmOpenProject");
  }
}

TEST_F(Keyboard, ReachesEveryItemOfTheMenus) {
  const auto enabled = [](const QWidget& menu) {
    std::set<QAction*> actions;
    for (QAction* action : menu.actions())
      if (action->isEnabled() && !action->isSeparator()) actions.insert(action);
    return actions;
  };
  auto& bar = *named("frmMain").findChild<QMenuBar*>();
  screen.key(Qt::Key_F, Qt::AltModifier);
  std::set<QAction*> menus;
  for (qsizetype step = 0; step <= bar.actions().size() && QApplication::activePopupWidget() != nullptr;
       ++step) {
    auto& menu = *qobject_cast<QMenu*>(QApplication::activePopupWidget());
    menus.insert(menu.menuAction());
    std::set<QAction*> reached;
    for (qsizetype item = 0; item <= menu.actions().size(); ++item) {
      reached.insert(menu.activeAction());
      screen.key(Qt::Key_Down);
    }
    reached.erase(nullptr);
    EXPECT_EQ(reached, enabled(menu)) << menu.title().toStdString();
    screen.key(Qt::Key_Left);
  }
  EXPECT_EQ(menus, enabled(bar));
}

TEST_F(Keyboard, PutsAWindowAwayAndBringsItBackFromItsIcon) {
  tool("ID_Effects");
  screen.key(Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(windows.Effects.Window.Visible);
  named("frmDocument/FlpCAD1").setFocus();
  screen.key(Qt::Key_W, Qt::ControlModifier);
  Form& plot = house.desk.frame.ActiveForm().Window;
  ASSERT_EQ(plot.WindowState, WindowState::Minimised);
  screen.key(Qt::Key_F2);
  for (int tab = 0; tab < 3 && plot.WindowState != WindowState::Normal; ++tab)
    screen.key(Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(plot.WindowState, WindowState::Normal);
  EXPECT_EQ(QApplication::focusWidget()->objectName(), "FlpCAD1");
}

}  // namespace
}  // namespace velgrove::test
