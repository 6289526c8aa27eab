// The window of the check under real keys and a real mouse.

#include "desktop/check_window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/desk_on_screen.h"
#include "support/show_maker.h"

namespace velgrove::test {
namespace {

using testing::ElementsAre;
using testing::Pair;

/// Findings in the middle of both lists and in the patch.
std::string faultyShow() {
  ShowMaker maker = showOf(40);
  for (auto* list : {&maker.ab, &maker.xy}) list->at(29).list = "AB";
  for (auto* list : {&maker.ab, &maker.xy}) list->at(29).target = "99.00";
  maker.channels = {1, 2, 2};
  return maker.write("faulty.kel");
}

struct CheckOnScreen : testing::Test {
  CheckOnScreen() { std::filesystem::remove(file); }
  void open() {
    house.open();
    check();
  }
  void check() {
    screen.onDesk([this] { house.desk.frame.SSActiveToolBars1_ToolClick("ID_CheckShow"); });
  }
  static ListTable& list() { return named<ListTable>("frmCheckShow/ListViewFindings"); }
  static QLabel& label(const char* name) { return named<QLabel>(QString("frmCheckShow/") + name); }
  static std::vector<std::pair<std::string, std::string>> places() {
    std::vector<std::pair<std::string, std::string>> places;
    for (int row = 0; row < list().topLevelItemCount(); ++row)
      places.emplace_back(list().topLevelItem(row)->text(0).toStdString(),
                          list().topLevelItem(row)->text(1).toStdString());
    return places;
  }
  static QPoint inRow(int row) { return list().visualItemRect(list().topLevelItem(row - 1)).center(); }
  static bool isSeen(CueTable& table, int row) {
    return table.viewport()->rect().contains(table.visualRect(table.model()->index(row - 1, 0)));
  }
  static auto marks(const QueueList& player) {
    return std::pair(player.State.StageCue, player.State.NextCue);
  }

  std::string file = faultyShow();
  DeskOnScreen house{{1280, 800}, file};
  Screen& screen = house.screen;
  frmCheckShow& form = house.desk.windows.CheckShow;
};

TEST_F(CheckOnScreen, LeadsToTheCueAndLeavesMarksAndStageAlone) {
  open();
  EXPECT_THAT(places(), ElementsAre(Pair("AB", "30.00"), Pair("XY", "30.00"), Pair("Patch", "2")));
  EXPECT_EQ(label("lblResult").text(), "2 findings, 1 note");
  EXPECT_EQ(QApplication::focusWidget(), &list());
  CueTable& xy = house.table("XYQueueList");
  EXPECT_FALSE(isSeen(xy, 31));
  const auto before = std::pair(marks(house.ab()), marks(house.xy()));
  const auto levels = house.desk.show.XYLevels;

  screen.key(Qt::Key_Down);
  EXPECT_EQ(label("lblFinding").text(), "its Go starts AB \"99.00\", which isn't in that list");
  screen.key(Qt::Key_Return);
  EXPECT_EQ(house.xy().State.PointerCue, 31);
  EXPECT_TRUE(isSeen(xy, 31));
  screen.doubleClick(*list().viewport(), inRow(1));
  EXPECT_EQ(house.ab().State.PointerCue, 31);
  EXPECT_TRUE(isSeen(house.table("ABQueueList"), 31));
  EXPECT_EQ(std::pair(marks(house.ab()), marks(house.xy())), before);
  EXPECT_EQ(house.desk.show.XYLevels, levels);

  screen.onDesk([this] { house.desk.windows.DocumentForm->Window.WindowState = WindowState::Minimised; });
  screen.doubleClick(*list().viewport(), inRow(3));
  EXPECT_EQ(house.desk.windows.DocumentForm->Window.WindowState, WindowState::Normal);
}

TEST_F(CheckOnScreen, FindingsStayAsOfTheCheckUntilItIsDoneAgain) {
  open();
  screen.onDesk([this] {
    house.xy().selectRow(31);
    house.xy().cmdDeleteCue_Click();
  });
  EXPECT_EQ(places().size(), 3U);
  screen.doubleClick(*list().viewport(), inRow(2));
  EXPECT_EQ(house.desk.frame.StatusMessage, "No row shows XY 30.00");
  EXPECT_EQ(house.xy().State.StageCue, 1);
  screen.click(named("frmCheckShow/cmdCheckAgain"));
  EXPECT_EQ(label("lblResult").text(), "1 finding, 1 note");

  const auto beside = house.xy().State.NextCue;
  screen.click(named("band/ID_Go"));
  house.runTo(200);
  EXPECT_EQ(house.xy().State.StageCue, beside) << "the show goes on beside it";
  screen.onDesk([this] {
    auto& ab = house.ab();
    ab.selectRow(31);
    ab.cmdDeleteCue_Click();
  });
  screen.click(named("frmCheckShow/cmdCheckAgain"));
  EXPECT_EQ(label("lblResult").text(), "Nothing would go wrong: no findings, 1 note");
}

/// The desk is given back while the check runs.
TEST_F(CheckOnScreen, ACheckWhoseShowIsClosedMeanwhileShowsNothing) {
  open();
  const auto aside = house.desk.machine.aside;
  house.desk.machine.aside = [&](const auto& work) {
    aside(work);
    house.desk.windows.unloadPlayers();
  };
  check();
  house.desk.machine.aside = aside;
  EXPECT_FALSE(form.Window.Visible);
  EXPECT_EQ(form.ListViewFindings.count(), 0);
}

}  // namespace
}  // namespace velgrove::test
