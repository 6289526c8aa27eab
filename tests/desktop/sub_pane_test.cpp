// The strip of the submasters, their fader and their dialog under real keys and a real mouse.

#include <QAccessible>
#include <QScrollBar>
#include <QSplitter>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/fader.h"
#include "desktop/sub_strip.h"
#include "desktop/theme.h"
#include "support/desk_on_screen.h"

namespace velgrove::test {
namespace {

using Part = SubCell::Part;

struct SubmastersOnScreen : testing::Test {
  explicit SubmastersOnScreen(QSize size = {1280, 800}) : house(size) {
    house.open();
    screen.onDesk([&] { desk.frame.SubPaneVisible = true; });
  }

  static SubStrip& strip() { return named<SubStrip>("SSScroll1"); }
  static SubCell& cell(int index) { return named<SubCell>(QString("SSScroll1/Command1_%1").arg(index)); }
  static QWidget& window(const QString& name) { return named("frmSubMaster" + name); }
  static Fader& fader() { return named<Fader>("frmSubMasterSmall/Pot"); }
  static QPoint onFader(int value) { return fader().placeOf(value).toPoint(); }
  static QString shownLevel() { return named<QLineEdit>("frmSubMasterSmall/Text2").text(); }
  static QWidget* focus() { return QApplication::focusWidget(); }
  void click(int index, Part part, Qt::MouseButton button = Qt::LeftButton) {
    screen.click(cell(index), cell(index).place(part).center(), button);
  }
  [[nodiscard]] const std::string& level(std::size_t index) const { return panel.Label1[index].Caption; }
  /// The panel follows the DMX input, as the preferences set it.
  void follow(std::uint8_t first) {
    screen.onDesk([&] {
      desk.show.DMXSubmasters = true;
      desk.show.NUMSubs = 2;
      desk.show.DMXInput[0] = first;
      panel.SubsInput_Timer();
    });
  }

  DeskOnScreen house;
  Screen& screen = house.screen;
  LightingDesk& desk = house.desk;
  frmSubPane& panel = desk.windows.SubPane;
};

TEST_F(SubmastersOnScreen, StandInTheStripWithTheirNamesAndLevels) {
  EXPECT_EQ(cell(3).look().name, panel.Text1[3].text());
  EXPECT_EQ(cell(23).look().number, "24");
  const QRect bar = cell(3).place(Part::Level).adjusted(2, 2, -2, -2);
  const auto frame = [] { return colourAt(cell(3), QPoint(cell(3).width() / 2, 0)); };
  EXPECT_EQ(frame(), theme::colour("edge"));
  screen.onDesk([&] { panel.Label1[3].Caption = "60"; });
  EXPECT_EQ(colourAt(cell(3), bar.topLeft()), theme::colour("subFill"));
  EXPECT_EQ(colourAt(cell(3), bar.topRight()), theme::colour("well"));
  EXPECT_EQ(frame(), theme::colour("sub")) << "which submasters are up is seen from afar";
  const QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&cell(3));
  EXPECT_EQ(spoken->role(), QAccessible::Button);
  EXPECT_EQ(spoken->text(QAccessible::Name), "Submaster 4, Top blue, 60 per cent");
}

TEST_F(SubmastersOnScreen, AClickOnALevelTurnsItFullAndOffAndTheWheelLeavesItAlone) {
  click(2, Part::Level);
  EXPECT_EQ(level(2), "100");
  screen.wheel(cell(2), -120);
  EXPECT_EQ(level(2), "100");
  click(2, Part::Level);
  EXPECT_EQ(level(2), "0");
}

TEST_F(SubmastersOnScreen, TheFaderStandsOnTheStripAboveItsButtonAndGoesWithTheHand) {
  for (const int index : {0, 7, 23}) {
    click(index, Part::Button);
    const QRect place = window("Small").frameGeometry();
    EXPECT_LE(place.bottom(), strip().mapToGlobal(QPoint(0, 0)).y());
    const int end = house.frame().screen()->availableGeometry().right() + 1;
    EXPECT_EQ(place.left(), std::min(cell(index).mapToGlobal(QPoint(0, 0)).x(), end - place.width()));
    EXPECT_EQ(window("Small").windowTitle(), QString::number(index + 1));
    EXPECT_EQ(focus(), &fader());
  }
  screen.press(fader(), onFader(30));
  screen.moveTo(fader(), onFader(70));
  EXPECT_EQ(shownLevel(), "70");
  EXPECT_EQ(level(23), "70");
  screen.release(fader(), onFader(70));
  EXPECT_FALSE(window("Small").isVisible());
  EXPECT_EQ(level(23), "70");

  click(23, Part::Button);
  screen.press(fader(), onFader(70));
  screen.release(fader(), onFader(70));
  EXPECT_FALSE(window("Small").isVisible()) << "let go without a motion";
  EXPECT_EQ(level(23), "70");
}

TEST_F(SubmastersOnScreen, TheLastMotionComesBeforeTheReleaseWhileTheDeskIsBusy) {
  click(0, Part::Button);
  screen.press(fader(), onFader(30));
  screen.whileBusy([] {
    hand::mouse(QTest::MouseMove, fader(), onFader(50));
    hand::mouse(QTest::MouseMove, fader(), onFader(80));
    hand::mouse(QTest::MouseRelease, fader(), onFader(80));
  });
  EXPECT_EQ(level(0), "80");
  EXPECT_FALSE(window("Small").isVisible());
}

TEST_F(SubmastersOnScreen, AreWorkedByKeysAlone) {
  screen.key(Qt::Key_F6);
  screen.key(Qt::Key_F6);
  screen.key(Qt::Key_F6);
  EXPECT_EQ(focus(), &cell(0));
  screen.key(Qt::Key_Right);
  screen.key(Qt::Key_Down);
  screen.key(Qt::Key_Return);
  EXPECT_EQ(level(1), "100");
  screen.key(Qt::Key_Up);
  for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Escape}) {
    screen.key(Qt::Key_Return);
    EXPECT_TRUE(window("Small").isVisible());
    screen.key(Qt::Key_PageDown);
    screen.wheel(named("frmSubMasterSmall/Text2"), -120);
    screen.key(end);
    EXPECT_FALSE(window("Small").isVisible());
    EXPECT_EQ(focus(), &cell(1));
  }
  EXPECT_EQ(level(1), "72") << "it opens at the level that it was left at";
}

TEST_F(SubmastersOnScreen, ARightClickAndTheMenuKeyOpenTheDialogThatRecords) {
  click(4, Part::Button, Qt::RightButton);
  EXPECT_EQ(named<QLabel>("frmSubMasterRecord/lblSM").text(), "5");
  screen.type("Moon");
  EXPECT_LE(window("Record").frameGeometry().bottom(), strip().mapToGlobal(QPoint(0, 0)).y());
  screen.key(Qt::Key_Return);
  EXPECT_FALSE(window("Record").isVisible());
  EXPECT_EQ(cell(4).look().name, "Moon");

  cell(4).focusOn(Part::Button);
  screen.key(Qt::Key_Menu);
  screen.type("Sun");
  screen.key(Qt::Key_Escape);
  EXPECT_EQ(cell(4).look().name, "Moon");
  EXPECT_FALSE(window("Record").isVisible());
  EXPECT_TRUE(panel.Record.Window.Loaded) << "the fields stay until the next right click";
}

TEST_F(SubmastersOnScreen, TheHandCanOnlyRecordWhileTheInputDrivesThem) {
  follow(128);
  EXPECT_EQ(cell(0).look().level, "50");
  EXPECT_EQ(colourAt(cell(0), QPoint(7, cell(0).place(Part::Level).center().y() - 1)),
            theme::colour("input"));
  EXPECT_EQ(colourAt(cell(5), QPoint(6, 6)), theme::colour("panel"));
  click(5, Part::Level);
  click(5, Part::Button);
  EXPECT_EQ(level(5), "0");
  EXPECT_FALSE(window("Small").isVisible());
  click(5, Part::Button, Qt::RightButton);
  EXPECT_TRUE(window("Record").isVisible());
}

struct SubmastersOnASmallScreen : SubmastersOnScreen {
  SubmastersOnASmallScreen() : SubmastersOnScreen({700, 600}) {}
};

TEST_F(SubmastersOnASmallScreen, ScrollToTheOneWithTheFocusAndTakeNoMoreRoomThanTheyNeed) {
  const auto fills = [] {
    return strip().geometry().bottom() == named<QSplitter>("SSSplitter1").rect().bottom();
  };
  cell(0).focusOn(Part::Button);
  screen.key(Qt::Key_End);
  EXPECT_FALSE(cell(23).visibleRegion().isEmpty());
  EXPECT_EQ(cell(23).visibleRegion().boundingRect(), cell(23).rect());
  EXPECT_TRUE(fills());
  house.frame().resize(1280, 800);
  screen.settle();
  EXPECT_EQ(strip().height(), 72);
  EXPECT_TRUE(fills());
}

}  // namespace
}  // namespace velgrove::test
