// The window of the effects under real keys and a real mouse.

#include "desktop/effects_window.h"

#include <QMdiSubWindow>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/desk_on_screen.h"

namespace velgrove::test {
namespace {

struct EffectsOnScreen : testing::Test {
  EffectsOnScreen() {
    house.open();
    screen.click(named("band/ID_Effects"));
  }

  enum TitleButton { Close, Maximise, Minimise };
  void clickTitle(TitleButton button) {
    constexpr int Frame = 3;
    constexpr int Wide = 22;
    screen.click(window(), {window().width() - Frame - button * Wide - Wide / 2, Frame + 12});
  }
  static QMdiSubWindow& window() {
    return *qobject_cast<QMdiSubWindow*>(named("EffectsQueue").parentWidget());
  }
  static ListTable& list() { return named<ListTable>("EffectsQueue/ListViewEffects"); }
  void clickRow(int row) {
    screen.click(*list().viewport(), list().visualItemRect(list().topLevelItem(row - 1)).center());
  }
  static QString row(int row) {
    QStringList texts;
    for (int column = 0; column < 5; ++column) texts.push_back(list().topLevelItem(row - 1)->text(column));
    return texts.join("|");
  }
  static QWidget* focus() { return QApplication::focusWidget(); }
  void tabTo(const QString& name) {
    for (int step = 0; step < 10 && focus()->objectName() != name; ++step) screen.key(Qt::Key_Tab);
    EXPECT_EQ(focus()->objectName(), name);
  }

  DeskOnScreen house;
  Screen& screen = house.screen;
  EffectsQueue& effects = house.desk.windows.Effects;
};

TEST_F(EffectsOnScreen, AreBuiltByKeysAlone) {
  EXPECT_EQ(focus(), &list());
  auto& choice = named<QComboBox>("EffectsQueue/cmboEffects");
  EXPECT_EQ(choice.placeholderText(), "Select Effect");
  EXPECT_FALSE(named("EffectsQueue/frmCustomChase").isEnabled());
  tabTo("cmboEffects");
  screen.key(Qt::Key_Down);
  EXPECT_EQ(choice.currentText(), "Default Chase, 1-100");
  EXPECT_TRUE(named("EffectsQueue/frmCustomChase").isEnabled());
  tabTo("cmdAddEffect");  // past the fields, which a default entry leaves closed
  screen.key(Qt::Key_Return);
  EXPECT_EQ(row(1), " 1    |001|100|500|1");

  choice.setFocus();
  screen.key(Qt::Key_End);
  for (const char* text : {"21", "25", "110", "8"}) {
    screen.key(Qt::Key_Tab);
    screen.type(text);
  }
  screen.key(Qt::Key_Tab);
  screen.key(Qt::Key_Return);
  EXPECT_EQ(row(2), " 2    |21|25|110|8");

  list().setFocus();
  for (const auto& [key, selected] :
       {std::pair(Qt::Key_Down, 1), std::pair(Qt::Key_Down, 2), std::pair(Qt::Key_Down, 2),
        std::pair(Qt::Key_Home, 1), std::pair(Qt::Key_Up, 1), std::pair(Qt::Key_PageDown, 2)}) {
    screen.key(key);
    EXPECT_EQ(effects.selectedEffect, selected);
    EXPECT_EQ(list().currentIndex().row() + 1, selected) << "what assistive tools speak";
  }
}

TEST_F(EffectsOnScreen, AreReachedFromTheBandByKeysAlone) {
  screen.onDesk([this] { effects.Unload(); });
  screen.key(Qt::Key_F6);
  EXPECT_TRUE(named("band").isAncestorOf(focus()));
  tabTo("ID_Effects");
  screen.key(Qt::Key_Return);
  EXPECT_EQ(focus(), &list());
  screen.key(Qt::Key_F6);
  screen.key(Qt::Key_F6);
  EXPECT_EQ(focus()->objectName(), "ID_SelectPointer");
  screen.key(Qt::Key_F6);
  EXPECT_EQ(focus(), &list());
}

TEST_F(EffectsOnScreen, AreTestedAndRemovedByTheMouse) {
  screen.onDesk([this] {
    effects.addEffectToList("3", "5", "110", "2");
    effects.addEffectToList("7", "9", "110", "2");
  });
  clickRow(1);
  screen.click(*list().viewport(), {20, list().viewport()->height() - 3});  // beside the rows
  EXPECT_EQ(effects.selectedEffect, 1);
  EXPECT_EQ(named("EffectsQueue/cmdTest").toolTip(), "Clear Effect Queue List");
  const QString question = "approximately 0.66 Seconds to complete \\n are you sure";
  screen.expectBox(question, "&No");
  screen.click(named("EffectsQueue/cmdTest"));
  EXPECT_FALSE(effects.ChaseTimer.enabled());
  screen.expectBox(question, "&Yes",
                   [] { EXPECT_EQ(QApplication::activeWindow()->windowTitle(), "Testing Effect"); });
  screen.click(named("EffectsQueue/cmdTest"));
  house.runTo(house.house.clock.now() / Milliseconds(1) + 110);
  EXPECT_EQ(house.desk.show.DMXOutput[2], 255);

  QWidget& remove = named("EffectsQueue/cmdRemoveEffect");
  screen.click(remove);
  EXPECT_EQ(list().topLevelItemCount(), 1);
  EXPECT_EQ(row(1), " 1    |3|5|110|2");
  screen.click(remove);
  screen.expectBox("No more Effects to remove", "OK",
                   [] { EXPECT_EQ(QApplication::activeWindow()->windowTitle(), "Empty Effects List"); });
  screen.click(remove);
}

TEST_F(EffectsOnScreen, GoAwayWithTheirWindowAndItComesBackAsNew) {
  auto& choice = named<QComboBox>("EffectsQueue/cmboEffects");
  choice.setFocus();
  screen.key(Qt::Key_End);
  screen.click(named("EffectsQueue/cmdAddEffect"));
  EXPECT_TRUE(named("EffectsQueue/txtSpeedMS").isEnabled());
  EXPECT_TRUE(named<QToolButton>("band/ID_Effects").isChecked());
  clickTitle(Close);
  EXPECT_FALSE(window().isVisible());
  EXPECT_FALSE(effects.Window.Loaded);
  EXPECT_FALSE(named<QToolButton>("band/ID_Effects").isChecked());
  screen.click(named("band/ID_Effects"));
  EXPECT_TRUE(window().isVisible());
  EXPECT_EQ(list().topLevelItemCount(), 0);
  EXPECT_EQ(choice.currentIndex(), -1);
  EXPECT_EQ(named<QLineEdit>("EffectsQueue/txtSpeedMS").text(), "");
  EXPECT_FALSE(named("EffectsQueue/txtSpeedMS").isEnabled());
}

TEST_F(EffectsOnScreen, StandOverTheDeskWhereTheHandPutsThemAndAreMinimisedToAnIcon) {
  const QPoint title(80, 12);
  const QRect plot = named("frmDocument").parentWidget()->geometry();
  EXPECT_EQ(window().size(), QSize(440, 456));
  screen.press(window(), title);
  screen.moveTo(window(), title + QPoint(200, 60));
  screen.release(window(), title);
  const QRect moved = window().geometry();
  screen.onDesk([this] { effects.Window.WindowState = WindowState::Minimised; });
  EXPECT_TRUE(window().isMinimized());
  screen.click(named("band/ID_Effects"));
  EXPECT_FALSE(window().isMinimized());
  EXPECT_EQ(window().geometry(), moved);
  screen.click(named("frmDocument/FlpCAD1"), {5, 5});
  screen.click(named("EffectsQueue/cmdAddEffect"));
  EXPECT_EQ(list().topLevelItemCount(), 1) << "a click on the plot has hidden it";
  clickTitle(Minimise);
  EXPECT_EQ(effects.Window.WindowState, WindowState::Minimised);
  house.frame().resize(1400, 800);
  screen.settle();
  EXPECT_GT(named("frmDocument").parentWidget()->width(), plot.width())
      << "the others are laid out as before";
}

}  // namespace
}  // namespace velgrove::test
