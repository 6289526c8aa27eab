// What assistive tools are told when they ask.

#include "desktop/spoken.h"

#include <QAccessible>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/plot_view.h"
#include "support/desk_on_screen.h"

namespace velgrove::test {
namespace {

QAccessibleInterface& spoken(QObject& widget) {
  return *QAccessible::queryAccessibleInterface(&widget);
}
QString nameOf(QAccessibleInterface* part) {
  return part == nullptr ? QString() : part->text(QAccessible::Name);
}
QString behind(QObject& widget) {
  return spoken(widget).text(QAccessible::Description);
}

/// A screen reader is there. It makes itself known to those who wait for one, and this screen tells no
/// others.
class Reader {
 public:
  Reader() {
    (void)someoneListens();
    QAccessible::setActive(true);
  }
  ~Reader() { QAccessible::setActive(false); }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;
};

struct Listening : testing::Test {
  Listening() { house.open(); }
  QString row(const QString& player, int row) {
    return house.table(player).model()->index(row - 1, 0).data(Qt::AccessibleTextRole).toString();
  }
  QAccessibleInterface& plot() { return spoken(named("frmDocument/FlpCAD1")); }

  const Reader reader;
  DeskOnScreen house;
  Screen& screen = house.screen;
};

TEST_F(Listening, ARowSaysItsMarks) {
  const QString number = house.table("XYQueueList").model()->index(1, 0).data().toString();
  EXPECT_EQ(row("XYQueueList", 1).section(", ", 1), "stage");
  EXPECT_EQ(row("XYQueueList", 2), number + ", next");
  screen.click(named("band/ID_QPlus"));
  EXPECT_EQ(row("XYQueueList", 1).section(", ", 1), "");
  EXPECT_EQ(row("XYQueueList", 2), number + ", stage");
  EXPECT_EQ(row("XYQueueList", 3).section(", ", 1), "next");
  EXPECT_EQ(row("ABQueueList", 1).section(", ", 1), "stage") << "the other list is where it was";
  screen.onDesk([this] { house.xy().ListView2.setIcon(3, QueueList::LoopIcon); });
  EXPECT_EQ(row("XYQueueList", 3).section(", ", 1), "next, looping");
}

TEST_F(Listening, TheStateOfAButtonIsSaidBehindItsTip) {
  auto& go = named("XYQueueList/cmdGoForward");
  EXPECT_EQ(behind(go), "Run Cue");
  screen.onDesk([this] { house.xy().SetActionButtons(true, true); });
  EXPECT_EQ(behind(go), "Run Cue, ready");
  EXPECT_EQ(behind(named("band/ID_Go")), "Go (Space), ready");
  EXPECT_EQ(behind(named("XYQueueList/cmdStop")), "Stop Cue, ready");
  screen.click(named("XYQueueList/cmdBlindView"));
  EXPECT_TRUE(behind(named("XYQueueList/cmdBlindView")).endsWith(", on"));
  EXPECT_TRUE(behind(named("XYQueueList/cmdLiveView")).endsWith(", off"));
}

TEST_F(Listening, TheStatusOfAListIsOneSentence) {
  EXPECT_TRUE(behind(*named("ABQueueList/lblNextNum").parentWidget())
                  .startsWith("Stage " + named<QLabel>("ABQueueList/lblStageNum").text() + " "));
  const auto related = spoken(named("ABQueueList/QListCombo")).relations(QAccessible::Label);
  EXPECT_TRUE(std::ranges::any_of(
      related, [](const auto& relation) { return nameOf(relation.first) == "List to start"; }));
}

TEST_F(Listening, WhatIsWrongWithTheInterfaceIsAnAlert) {
  QWidget& banner = named("banner");
  EXPECT_EQ(spoken(banner).role(), QAccessible::AlertMessage);
  screen.onDesk([this] { house.desk.windows.Comm.Condition.Caption = "The interface was unplugged."; });
  EXPECT_EQ(nameOf(&spoken(banner)), "The interface was unplugged.");
}

// ---- Painted things

TEST_F(Listening, ThePlotIsAListOfItsFixturesAndSaysWhichTheKeysPick) {
  const auto fixtures = house.desk.frame.ActiveForm().fixturesByChannel();
  ASSERT_EQ(plot().childCount(), std::ssize(fixtures));
  named("frmDocument/FlpCAD1").setFocus();
  screen.key(Qt::Key_Right);
  screen.key(Qt::Key_Right);
  const clsFixture& second = *fixtures[1];
  QAccessibleInterface* const now = plot().focusChild();
  ASSERT_NE(now, nullptr);
  EXPECT_EQ(plot().indexOfChild(now), 1);
  const QString channel = QString::number(second.Channel);
  EXPECT_TRUE(nameOf(now).startsWith(channel + " ")) << nameOf(now).toStdString();
  EXPECT_TRUE(nameOf(now).contains(QString::fromStdString(second.FixtureName))) << nameOf(now).toStdString();
  EXPECT_TRUE(nameOf(now).endsWith(", 0 %")) << nameOf(now).toStdString();
  const QPoint middle = now->rect().center();
  EXPECT_EQ(plot().childAt(middle.x(), middle.y()), now);
  EXPECT_EQ(named<QLabel>("pointerPlace").text(), QString::fromStdString(second.FixtureName));
  EXPECT_TRUE(named<QLabel>("pointerFixture").text().startsWith(channel + " "));
  EXPECT_FALSE(named("pointerPlace").geometry().intersects(named("pointerFixture").geometry()));
  screen.onDesk([this] { house.desk.frame.ActiveForm().letPickedGo(); });
  EXPECT_EQ(named<QLabel>("pointerFixture").text(), "");
}

TEST_F(Listening, TheLevelOfAFixtureIsToldWithItsSourceToWhoeverAsks) {
  screen.onDesk([this] {
    frmDocument& document = house.desk.frame.ActiveForm();
    const auto first = document.fixturesByChannel().front();
    house.desk.show.ManualLevels[static_cast<std::size_t>(first->Channel - 1)] = 255;
  });
  house.runTo(1500);
  EXPECT_TRUE(nameOf(plot().child(0)).endsWith(", 100 %, manual")) << nameOf(plot().child(0)).toStdString();
}

TEST_F(Listening, TheBarsAreAListOfChannelsThatTheArrowKeysWalk) {
  screen.onDesk([this] {
    house.desk.show.BarRows = 8;
    house.desk.show.BarColumns = 24;
    house.desk.show.BarGap = 100;
  });
  screen.click(named("band/ID_BarsOutput"));
  QWidget& bars = named("frmBars");
  QAccessibleInterface& list = spoken(bars);
  ASSERT_EQ(list.childCount(), 8 * 24);
  bars.setFocus();
  screen.key(Qt::Key_Right);
  screen.key(Qt::Key_Right);
  EXPECT_EQ(nameOf(list.focusChild()), "Channel 2: 0 %");
  screen.key(Qt::Key_Down);
  const QString below = nameOf(list.focusChild());
  EXPECT_TRUE(below.startsWith("Channel ")) << below.toStdString();
  EXPECT_EQ(list.focusChild()->rect().left(), list.child(1)->rect().left()) << "the one below";
  screen.key(Qt::Key_End);
  screen.key(Qt::Key_Right);
  EXPECT_EQ(list.indexOfChild(list.focusChild()), list.childCount() - 1);
}

}  // namespace
}  // namespace velgrove::test
