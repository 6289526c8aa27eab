// The keys of the frame under the operator's hand, with the focus anywhere.

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>

#include "support/desk_on_screen.h"
#include "support/show_maker.h"

namespace velgrove::test {
namespace {

struct KeysOnScreen : testing::Test {
  KeysOnScreen() {
    std::filesystem::remove(file);
    house.open();
  }

  /// A press with its time, as a keyboard gives it; presses of other keys lie far apart.
  void press(Qt::Key key, ulong at, bool heldDown = false) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, key == Qt::Key_Space ? " " : "", heldDown);
    event.setTimestamp(at);
    QWidget* before = QApplication::activePopupWidget();
    if (before == nullptr) before = QApplication::activeWindow();
    QApplication::sendEvent(before->windowHandle(), &event);
    screen.settle();
    house.runTo(m_clock += 100);  // the fades take no time
  }
  void go() { press(Qt::Key_Space, m_now += 1000); }
  int stage() { return house.xy().State.StageCue; }
  void tool(const char* id) {
    screen.onDesk([&] { house.desk.frame.SSActiveToolBars1_ToolClick(id); });
  }
  static QWidget* focus() { return QApplication::focusWidget(); }

  static constexpr int Cues = 300;
  std::string file = showOf(Cues).write("keys.kel");
  DeskOnScreen house{{1280, 800}, file};
  Screen& screen = house.screen;

 private:
  ulong m_now = 0;
  std::int64_t m_clock = 20000;  // ms
};

TEST_F(KeysOnScreen, GoWithTheFocusOnEachControlOfAllWindowsAndPressNothingElse) {
  for (const char* id :
       {"mnuEditPreferences", "ID_GrandMaster", "ID_Effects", "ID_BarsOutput", "ID_CheckShow"})
    tool(id);
  screen.onDesk([this] { house.desk.frame.SubPaneVisible = true; });
  std::vector<QPointer<QWidget>> controls;
  for (QWidget* widget : QApplication::allWidgets())
    if (widget->isVisible() && widget->isEnabled() && widget->focusPolicy() != Qt::NoFocus &&
        qobject_cast<QLineEdit*>(widget) == nullptr)
      controls.emplace_back(widget);
  EXPECT_GT(controls.size(), 90U);
  int expected = stage();
  for (const auto& control : controls) {
    ASSERT_NE(control, nullptr) << "a Go before took a window away";
    control->window()->activateWindow();
    control->setFocus();
    QApplication::processEvents();
    go();
    EXPECT_EQ(stage(), ++expected) << control->objectName().toStdString();
  }
  EXPECT_EQ(house.ab().State.QueueData->colQueueEntries().count(), Cues);
}

TEST_F(KeysOnScreen, GoOutOfAnOpenMenuAndAnOpenChoiceWhichClose) {
  const int first = stage();
  auto* menu = named("frmMain").findChild<QMenu*>();
  menu->popup({0, 0});
  go();
  EXPECT_FALSE(menu->isVisible());
  auto& links = named<QComboBox>("XYQueueList/QListCombo1");
  links.showPopup();
  go();
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  EXPECT_EQ(stage(), first + 2);
}

TEST_F(KeysOnScreen, LeaveATextAloneThatIsBeingTyped) {
  const int first = stage();
  auto& description = named<QLineEdit>("XYQueueList/CueDesc1");
  description.setFocus();
  description.clear();
  screen.type("Anna enters");
  EXPECT_EQ(description.text(), "Anna enters");
  EXPECT_EQ(stage(), first);
  screen.key(Qt::Key_F8);
  EXPECT_EQ(stage(), first + 1) << "no letter";
}

TEST_F(KeysOnScreen, GoOnceHoweverLongTheyAreHeldAndForADoubleTap) {
  const int first = stage();
  press(Qt::Key_Space, 5000);
  for (ulong at = 5400; at < 6000; at += 30) press(Qt::Key_Space, at, true);
  EXPECT_EQ(stage(), first + 1);
  press(Qt::Key_Space, 9000);
  press(Qt::Key_Space, 9060);
  EXPECT_EQ(stage(), first + 2);
  EXPECT_EQ(named<QLabel>("message").text(), "The Go key was pressed twice within 100 ms: it counted once");
}

TEST_F(KeysOnScreen, OfABoxAreItsOwn) {
  const int first = stage();
  screen.expectBox("Lamp", "OK", [] { hand::key(Qt::Key_Space); });
  screen.onDesk([this] { house.desk.machine.boxes.show({.text = "Lamp"}); });
  EXPECT_EQ(stage(), first);
}

TEST_F(KeysOnScreen, PressTheirToolsFromAnotherWindow) {
  tool("mnuEditPreferences");
  named("frmPreferences").activateWindow();
  screen.key(Qt::Key_F4);
  EXPECT_TRUE(named("frmGrandMaster").isVisible());
  const int first = stage();
  screen.key(Qt::Key_F8);
  screen.key(Qt::Key_F8);
  screen.key(Qt::Key_F7);
  EXPECT_EQ(stage(), first + 1);
  tool("ID_Go");
  EXPECT_TRUE(house.xy().q_timer.enabled());
  screen.key(Qt::Key_F9);
  EXPECT_FALSE(house.xy().q_timer.enabled());
  screen.onDesk([this] { house.ab().Window.Visible = false; });
  screen.key(Qt::Key_F2);
  EXPECT_TRUE(named("ABQueueList").isVisible());
}

TEST_F(KeysOnScreen, EnterPressesWhatHasTheFocusOnceHoweverLongItIsHeld) {
  tool("mnuEditPreferences");
  auto& box = *named("frmPreferences").findChild<QCheckBox*>();
  const bool ticked = box.isChecked();
  box.window()->activateWindow();
  box.setFocus();
  screen.key(Qt::Key_Return);
  EXPECT_NE(box.isChecked(), ticked);
  EXPECT_TRUE(named("frmPreferences").isVisible());
  named("frmMain").activateWindow();
  named("ID_QPlus").setFocus();
  QApplication::processEvents();
  const int first = stage();
  press(Qt::Key_Return, 100);
  press(Qt::Key_Return, 600, true);
  EXPECT_EQ(stage(), first + 1);
}

TEST_F(KeysOnScreen, StandInMenusTipsAndTheirList) {
  EXPECT_EQ(named("ID_Go").toolTip(), "Go (Space)");
  EXPECT_EQ(named("ID_Save").toolTip(), "Save Show (Ctrl+S)");
  std::map<QString, const QAction*> items;
  for (const QMenu* menu : named("frmMain").findChildren<QMenu*>())
    for (const QAction* action : menu->actions()) items.emplace(action->objectName(), action);
  EXPECT_EQ(items.at("ID_Blackout")->shortcut(), QKeySequence(Qt::Key_F12));
  EXPECT_EQ(items.at("ID_Go")->text(), "Go\tSpace");
  EXPECT_EQ(named<QPushButton>("ID_Go").text(), "Go");
  tool("ID_Keys");
  EXPECT_TRUE(named("frmKeys/ListViewKeys").isVisible());
}

}  // namespace
}  // namespace velgrove::test
