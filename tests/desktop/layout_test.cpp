// Where things stand: nothing is cut off, the way of the focus, and what never goes when it gets tight.

#include <QGroupBox>
#include <QMdiSubWindow>
#include <QStyleOptionButton>
#include <QToolButton>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/desk_on_screen.h"

namespace velgrove::test {
namespace {

/// What the letters of a button take.
QSize inkOf(const QAbstractButton& button) {
  const QString text = button.text().remove('&');
  return {button.fontMetrics().horizontalAdvance(text),
          button.fontMetrics().tightBoundingRect(text).height()};
}
bool holds(QSize room, QSize content) {
  return content.width() <= room.width() && content.height() <= room.height();
}

/// Whether a widget shows its text and icon whole.
bool fits(const QLabel& label) {
  if (qobject_cast<const ElidingLabel*>(&label) != nullptr) return label.width() >= 40;
  if (label.text().isEmpty() || label.wordWrap()) return true;
  if (label.property("type") == "number")  // has nothing below the line
    return holds(label.size(), label.fontMetrics().tightBoundingRect(label.text()).size());
  return holds(label.size(), label.sizeHint());
}
bool fits(const QPushButton& button) {
  QStyleOptionButton option;
  option.initFrom(&button);
  const QSize room = button.style()->subElementRect(QStyle::SE_PushButtonContents, &option, &button).size();
  const int icon = button.icon().isNull() ? 0 : button.iconSize().width() + 4;
  return button.text().isEmpty() ? holds(button.size(), button.iconSize())
                                 : holds(room, inkOf(button) + QSize(icon, 0));
}
bool fits(const QToolButton& button) {
  constexpr int Padding = 2 * 3;
  const bool words = button.toolButtonStyle() != Qt::ToolButtonIconOnly;
  return holds(button.size() - QSize(Padding, Padding),
               words
                   ? QSize(inkOf(button).width(), button.iconSize().height() + button.fontMetrics().height())
                   : button.iconSize());
}
bool fits(const QComboBox& combo) {
  QStyleOptionComboBox option;
  option.initFrom(&combo);
  const int room = combo.style()
                       ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &combo)
                       .width();
  for (int item = 0; item < combo.count(); ++item)
    if (combo.fontMetrics().horizontalAdvance(combo.itemText(item)) > room) return false;
  return combo.fontMetrics().height() <= combo.contentsRect().height();
}
/// A number must be read at a glance, beside its arrows if it has any; other texts scroll.
bool fits(const QLineEdit& field) {
  if (field.fontMetrics().height() > field.contentsRect().height()) return false;
  const auto* arrows = field.findChild<Spinner*>();
  if (arrows == nullptr && field.width() >= 80) return true;
  QStyleOptionFrame option;
  option.initFrom(&field);
  option.lineWidth = 1;
  const QRect inner = field.style()->subElementRect(QStyle::SE_LineEditContents, &option, &field);
  constexpr int BesideText = 2;
  const int left = inner.left() + field.textMargins().left() + BesideText;
  const int right = inner.right() + 1 - field.textMargins().right() - BesideText;
  return field.fontMetrics().horizontalAdvance(field.text()) <= right - left &&
         (arrows == nullptr || (right <= arrows->x() && field.rect().contains(arrows->geometry())));
}
bool fits(const QCheckBox& box) {
  return holds(box.size(), box.sizeHint());
}
bool fits(const QGroupBox& group) {
  constexpr int Beside = 18;
  return group.fontMetrics().horizontalAdvance(group.title()) + Beside <= group.width();
}

template <class Widget>
void expectAllFit(QWidget& window) {
  for (const Widget* widget : window.findChildren<Widget*>()) {
    if (!widget->isVisible()) continue;
    EXPECT_TRUE(fits(*widget)) << widget->metaObject()->className() << " "
                               << widget->objectName().toStdString() << " " << widget->width() << " x "
                               << widget->height() << ", wants " << widget->sizeHint().width() << " x "
                               << widget->sizeHint().height();
  }
}

void expectNothingCutOff(QWidget& window) {
  expectAllFit<QLabel>(window);
  expectAllFit<QPushButton>(window);
  expectAllFit<QToolButton>(window);
  expectAllFit<QComboBox>(window);
  expectAllFit<QLineEdit>(window);
  expectAllFit<QGroupBox>(window);
  expectAllFit<QCheckBox>(window);
}

/// The longest numbers that a player shows, in its editors and lines.
void showLongest(QueueList& player) {
  player.CueNum.setText("888.88");
  for (TextBox* time : {&player.CueDown, &player.CueDelay, &player.CueUp}) time->setText("-28888");
  player.QListNumberCombo.add("888.88");
  for (Label* number : {&player.lblStageNum, &player.lblNextNum}) number->Caption = "888.88";
  for (Label* time : {&player.lblStageDown2, &player.lblStageDelay2, &player.lblStageUp2, &player.lblNextDown,
                      &player.lblNextDelay, &player.lblNextUp})
    time->Caption = "N/A";
}

void expectWhollyVisible(const QString& name) {
  QWidget& widget = named(name);
  EXPECT_TRUE(widget.isVisible()) << name.toStdString();
  EXPECT_EQ(widget.visibleRegion(), QRegion(widget.rect())) << name.toStdString();
}

void expectApart(const QList<QMdiSubWindow*>& windows) {
  for (const QMdiSubWindow* one : windows)
    for (const QMdiSubWindow* other : windows)
      EXPECT_TRUE(one == other || !one->isVisible() || !other->isVisible() ||
                  !one->geometry().intersects(other->geometry()))
          << one->windowTitle().toStdString() << " over " << other->windowTitle().toStdString();
}

TEST(Layout, NothingIsCutOffInTheFrameOrItsDialogs) {
  for (const QSize size : {QSize(1280, 800), QSize(1600, 900), QSize(1920, 1080)}) {
    SCOPED_TRACE(size.width());
    DeskOnScreen house(size);
    house.screen.whenAsked([&] {
      QWidget& dialog = named("frmOpenProject");
      expectNothingCutOff(dialog);
      auto& tabs = *named("frmOpenProject/Tabs").findChild<QTabBar*>();
      house.screen.click(tabs, tabs.tabRect(1).center());
      expectNothingCutOff(dialog);
      house.screen.click(tabs, tabs.tabRect(0).center());
      house.screen.key(Qt::Key_Down);
      house.screen.key(Qt::Key_Return);
    });
    house.start();
    house.screen.onDesk([&] {
      house.desk.windows.Comm.Condition.Caption = "The interface is gone. Plug it in again.";
      house.desk.About.Form_Load();
    });
    expectApart(house.frame().findChildren<QMdiSubWindow*>());
    for (int cue = 0; cue < 11; ++cue) house.screen.click(named("band/ID_QPlus"));
    house.screen.click(named("band/ID_Effects"));
    house.screen.onDesk([&] {
      showLongest(house.xy());
      showLongest(house.ab());
      house.desk.windows.ConfirmPaste.Show();
      house.desk.windows.CheckShow.Show();
      house.desk.windows.PrintSheets.Show();
    });
    house.screen.whenAsked([&] {
      expectNothingCutOff(named("frmLoop"));
      house.screen.key(Qt::Key_Escape);
    });
    house.screen.click(named("ABQueueList/cmdLoop"));
    for (const char* window : {"frmMain", "VelgroveComm", "frmAbout", "frmConfirmPaste", "frmPrintSheets"})
      expectNothingCutOff(named(window));
    house.screen.onDesk([&] {
      auto& windows = house.desk.windows;
      house.desk.show.CurrentFixture = windows.ActiveDocument->ActiveView->colFixtures().item(1);
      windows.Fixture.Show();
      windows.MovingFixture.Show();
      house.desk.show.DMXInput.fill(250);
      windows.MovingFixture.VSlider3.setValue(255);
    });
    for (const auto& [window, width] : {std::pair("FixtureDlg", 476), std::pair("MovingFixtureDlg", 660)}) {
      QWidget& dialog = named(window);
      auto& tabs = *dialog.findChild<QTabBar*>();
      for (const int page : {1, 0}) {
        house.screen.onDesk([&] {
          auto& form = std::string(window) == "FixtureDlg" ? house.desk.windows.Fixture.Dialog
                                                           : house.desk.windows.MovingFixture.Dialog;
          form.TabStrip1.choose(page + 1);
        });
        EXPECT_EQ(tabs.currentIndex(), page);
        EXPECT_EQ(dialog.width(), width);
        expectNothingCutOff(dialog);
      }
    }
    house.screen.onDesk([&] {
      auto& windows = house.desk.windows;
      windows.GrandMaster.showAtBottom();
      windows.Preferences.Show();
      windows.Preferences.txtUp.setText("-28888");
      windows.Preferences.txtNumSubs.setText("24");
    });
    house.screen.expectBox("Warning: Modifying the default timings");
    house.screen.click(named("frmPreferences/buttonTimings"));
    for (const char* window : {"frmGrandMaster", "frmPreferences", "frmTimings"})
      expectNothingCutOff(named(window));
    house.runTo(500);
    house.screen.whenAsked([&] {
      expectNothingCutOff(named("frmWanttoSave"));
      house.screen.key(Qt::Key_Escape);
    });
    house.frame().close();
  }
}

TEST(Layout, GoStopAndTheCuePanelNeverGo) {
  for (const int left : {0, 1920}) {
    DeskOnScreen house({1280, 800}, SHOW_DATA_DIR "/demo.kel", left);
    house.open();
    EXPECT_EQ(house.frame().devicePixelRatio(), left == 0 ? 1 : 2);
    for (const QSize size : {QSize(800, 600), QSize(1000, 700), QSize(1600, 900)}) {
      house.frame().resize(size);
      house.screen.onDesk([&] { showLongest(house.xy()); });
      EXPECT_EQ(house.frame().size(), size);
      for (const char* name : {"band/ID_Go", "band/ID_StopFade", "band/ID_CueWindow", "band/ID_Blackout"})
        expectWhollyVisible(name);
      expectNothingCutOff(house.frame());
      EXPECT_GE(named("band/ID_CueWindow").width(), 250);
    }
  }
}

TEST(Layout, ToolsThatFindNoRoomStandInTheOverflowMenu) {
  DeskOnScreen house({800, 600});
  house.open();
  auto& overflow = named<QToolButton>("overflow");
  EXPECT_TRUE(overflow.isVisible());
  EXPECT_FALSE(named("band/ID_CueReset").isVisible());
  QStringList hidden;
  for (const QAction* action : overflow.menu()->actions()) hidden.push_back(action->objectName());
  EXPECT_TRUE(hidden.contains("ID_CueReset"));
  house.frame().resize(1400, 800);
  house.screen.settle();
  EXPECT_FALSE(overflow.isVisible());
  EXPECT_TRUE(named("band/ID_CueReset").isVisible());
}

TEST(Layout, TabWalksThroughACueWindowInTheOrderOfTheHand) {
  DeskOnScreen house;
  house.open();
  CueTable& table = house.table("XYQueueList");
  house.screen.click(*table.viewport(), house.inRow(table, 2));
  QStringList way;
  for (int step = 0; step < 23; ++step) {
    way.push_back(QApplication::focusWidget()->objectName());
    house.screen.key(Qt::Key_Tab);
  }
  const QStringList wanted{
      "ListView1",          "CueNum1",      "CueDown1",          "CueDelay1",    "CueUp1",
      "CueDesc1",           "QListCombo1",  "QListNumberCombo1", "cmdRecord",    "cmdUpdate",
      "cmdInsertCue",       "cmdDeleteCue", "cmdCopy",           "cmdPaste",     "cmdMakeStageCue",
      "cmdMakeNextCue",     "cmdLoop",      "cmdLiveView",       "cmdBlindView", "cmdDecrementStageCue",
      "cmdAdvanceStageCue", "cmdStop",      "cmdGoForward"};
  EXPECT_EQ(way.join(" "), wanted.join(" "));
  EXPECT_EQ(QApplication::focusWidget(), &table);
  house.screen.key(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(QApplication::focusWidget()->objectName(), "cmdGoForward");
}

TEST(Layout, EnterInAFieldOfACueWindowIsNoGo) {
  DeskOnScreen house;
  house.open();
  house.screen.click(named("XYQueueList/CueDesc1"));
  house.screen.key(Qt::Key_Return);
  EXPECT_FALSE(house.xy().State.Fading);
}

}  // namespace
}  // namespace velgrove::test
