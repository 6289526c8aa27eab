// What the operator sees of a cue list beside its texts: row colours, drags of the marks, the bars of a fade
// and the time left.

#include <algorithm>

#include <gtest/gtest.h>

#include "support/scripted_desk.h"

namespace velgrove::test {
namespace {

using Marks = std::pair<int, int>;  ///< stage and next

Marks marksOf(const QueueList& player) {
  return {player.State.StageCue, player.State.NextCue};
}

void putMarks(QueueList& player, Marks marks) {
  player.State.StageCue = static_cast<std::int16_t>(marks.first);
  player.State.NextCue = static_cast<std::int16_t>(marks.second);
}

char letterOf(const RowPaint& paint) {
  if (paint.split > 0 && paint.split < 1 && paint.left != paint.right) return '/';
  switch (paint.split > 0 ? paint.left : paint.right) {
    case 0xFFFFFF:
      return '.';
    case 0x0000FF:
      return 'S';
    case 0x00C000:
      return 'N';
    default:
      return '?';
  }
}

/// A letter a row: . white, S red as the stage, N green as the next, / a bar under way; ! when the mouse
/// pointer says that a drop is forbidden.
std::string painted(const QueueList& player) {
  std::string letters;
  for (int row = 1; row <= player.ListView2.count(); ++row) letters += letterOf(player.rowPaint(row));
  if (player.ListView2.MousePointer == ListView::Pointer::Forbidden) letters += '!';
  return letters;
}

TEST(RowColours, TellStageAndNextAndGreenWinsWhereTheyMeet) {
  ScriptedDesk desk(showOf(5));
  for (QueueList* player : {&desk.ab(), &desk.xy()}) {
    EXPECT_EQ(painted(*player), "SN...");
    putMarks(*player, {5, -1});
    EXPECT_EQ(painted(*player), "....S");
    putMarks(*player, {3, 3});
    EXPECT_EQ(painted(*player), "..N..");
    putMarks(*player, {2, 4});
    EXPECT_EQ(painted(*player), ".S.N.");
  }
}

/// The button goes down on the first row and stays down while the mouse moves over the others: what the list
/// shows after each move.
std::string drag(QueueList& player, const std::vector<int>& path) {
  std::string seen;
  player.ListView2_MouseDown(path.front());
  for (std::size_t move = 1; move < path.size(); ++move) {
    player.ListView2_MouseMove(path[move]);
    seen += (seen.empty() ? "" : " ") + painted(player);
  }
  return seen;
}

struct Drag {
  const char* name;
  std::vector<int> path;  ///< where the button goes down, then every move; it goes up at the last
  std::string seen;       ///< the list after each move
  Marks after;
  int pointer;  ///< row of the pointer afterwards; it begins on row 1, and a click moves it
  int level;    ///< of channel 1 afterwards
};

const Drag Drags[] = {
    {"NextToAFreeRow", {3, 4, 4, 5}, ".SN.. .S.N. .S..N", {2, 5}, 1, 0},
    {"NextBackToItsOwnRow", {3, 4, 4, 3}, ".SN.. .S.N. .SN..", {2, 3}, 1, 0},
    {"NextOntoTheStageIsRefused", {3, 4, 2}, ".SN.. .S...!", {2, 3}, 1, 0},
    {"NextOntoBlackoutIsRefused", {3, 2, 1}, ".SN.. NS...!", {2, 3}, 1, 0},
    {"NextOffTheStageAgain", {3, 2, 2, 4}, ".SN.. .S...! .S.N.", {2, 4}, 1, 0},
    {"NextLetGoBesideTheRows", {3, 4, 4, 0}, ".SN.. .S.N. .S.N.", {2, 4}, 1, 0},
    {"StageTakesNextAlong", {2, 3, 4}, ".SN.. ..NS.", {4, 5}, 1, 30},
    {"StageToTheLastRowLeavesNext", {2, 3, 5}, ".SN.. ..N.S", {5, 3}, 1, 40},
    {"StageOntoBlackoutIsRefused", {2, 3, 1}, ".SN.. S.N..!", {2, 3}, 1, 0},
    {"StageOntoNextIsRefused", {2, 4, 3}, ".SN.. ..N..!", {2, 3}, 1, 0},
    {"AnUnmarkedRowIsNoHandle", {4, 5, 5}, ".SN.. .SN..", {2, 3}, 5, 0},
    {"BesideTheRowsIsNoHandle", {0, 3, 4}, ".SN.. .SN..", {2, 3}, 4, 0},
    {"ASingleMoveIsStillAClick", {3, 4}, ".SN..", {2, 3}, 4, 0},
    {"AClickOnAMark", {3}, "", {2, 3}, 3, 0},
    {"AClickBesideTheRows", {0}, "", {2, 3}, 1, 0},
};

TEST(Dragging, ShowsEachStepAndMovesTheMarks) {
  for (const Drag& c : Drags) {
    ScriptedDesk desk(showOf(5));
    for (QueueList* player : {&desk.ab(), &desk.xy()}) {
      SCOPED_TRACE(c.name + (", " + player->Window.Caption));
      putMarks(*player, {2, 3});
      EXPECT_EQ(drag(*player, c.path), c.seen);
      player->ListView2_MouseUp(c.path.back());
      EXPECT_EQ(marksOf(*player), c.after);
      EXPECT_EQ(player->State.PointerCue, c.pointer);
      EXPECT_EQ(player->levels()[0], c.level);

      EXPECT_FALSE(player->State.ListRepainting);
      const std::string after = painted(*player);
      player->ListView2_MouseMove(4);
      player->ListView2_MouseMove(5);
      EXPECT_EQ(painted(*player), after) << "the button is up";
      EXPECT_EQ(std::ranges::count(after, 'S') + std::ranges::count(after, 'N'), 2);
      EXPECT_EQ(after.size(), 5U) << "the pointer is an arrow again";
    }
  }
}

TEST(Dragging, LeavesTheStatusPanelsAsTheyWere) {
  ScriptedDesk desk(showOf(5));
  QueueList& player = desk.xy();
  drag(player, {2, 4, 4});
  player.ListView2_MouseUp(4);
  EXPECT_EQ(player.State.NextCue, 4);
  EXPECT_EQ(player.lblNextNum.Caption, "1.00");
}

TEST(Dragging, AMarkBesideTheListIsNotTakenByAPressBesideTheRows) {
  ScriptedDesk desk(showOf(5));
  QueueList& player = desk.ab();
  player.State.StageCue = 0;  // as a link to row 1 leaves it
  drag(player, {0, 3, 4});
  player.ListView2_MouseUp(4);
  EXPECT_EQ(player.State.StageCue, 0);
  EXPECT_EQ(player.State.PointerCue, 4);
}

/// Both players fade from Blackout to row 2 in one second.
ShowMaker fadingShow() {
  ShowMaker maker = showOf(5);
  maker.blackoutUp = maker.blackoutDown = 1;
  return maker;
}

TEST(Dragging, GoesOnOverAGoAndAFadeEnd) {
  ScriptedDesk desk(fadingShow());
  for (QueueList* player : {&desk.ab(), &desk.xy()}) {
    drag(*player, {2, 3, 4});
    EXPECT_EQ(painted(*player), "S..N.");
  }
  desk.tool("ID_Go");
  desk.ab().cmdGoForward.click();
  desk.runTo(510);
  for (QueueList* player : {&desk.ab(), &desk.xy()}) {
    player->ListView2_MouseMove(5);
    EXPECT_EQ(painted(*player), "//..N") << "the fade and the mark in the hand";
  }
  desk.runTo(1500);
  for (QueueList* player : {&desk.ab(), &desk.xy()}) {
    EXPECT_EQ(marksOf(*player), Marks(2, 3));
    EXPECT_EQ(painted(*player), ".S..N");
    player->ListView2_MouseUp(5);
    EXPECT_EQ(marksOf(*player), Marks(2, 5));
    EXPECT_EQ(painted(*player), ".S..N");
  }
}

TEST(Dragging, IsRefusedWhereAFadeHasBroughtTheOtherMarkMeanwhile) {
  ScriptedDesk desk(fadingShow());
  QueueList& player = desk.xy();
  desk.tool("ID_Go");
  drag(player, {2, 3, 3, 2});
  desk.runTo(1500);
  ASSERT_EQ(marksOf(player), Marks(2, 3));
  player.ListView2_MouseUp(2);
  EXPECT_EQ(marksOf(player), Marks(2, 3));
  EXPECT_EQ(painted(player), ".SN..");
}

TEST(Dragging, StaysRefusedWhenAFadeTakesTheOtherMarkAwayUnderThePointer) {
  ScriptedDesk desk(showOf(5));
  QueueList& player = desk.xy();
  desk.tool("ID_QPlus");
  EXPECT_EQ(drag(player, {3, 4, 2}), ".SN.. .S...!");
  desk.tool("ID_Go");
  desk.runTo(60);
  ASSERT_EQ(marksOf(player), Marks(3, 4));
  player.ListView2_MouseUp(2);
  EXPECT_EQ(marksOf(player), Marks(3, 4));
}

TEST(Dragging, AToolThatMovesTheMarksLeavesTheListRight) {
  ScriptedDesk desk(showOf(5));
  QueueList& player = desk.xy();
  drag(player, {2, 3, 4});
  desk.tool("ID_QPlus");
  EXPECT_EQ(painted(player), ".SN..");
  player.ListView2_MouseMove(5);
  EXPECT_EQ(painted(player), ".S..N") << "the next step shows the drag again";
  player.ListView2_MouseUp(5);
  EXPECT_EQ(painted(player), ".S..N");
  desk.tool("ID_CueReset");
  EXPECT_EQ(painted(player), "SN...");
  EXPECT_FALSE(player.State.ListRepainting);
}

TEST(Dragging, BeginsOnItsOwnRowWhateverWasDraggedBefore) {
  ScriptedDesk desk(showOf(5));
  QueueList& player = desk.ab();
  drag(player, {2, 3, 5});
  player.ListView2_MouseUp(5);
  click(player, 3);
  player.cmdMakeNextCue.click();
  drag(player, {3, 4});
  player.cmdAdvanceStageCue.click();
  EXPECT_EQ(painted(player), ".SN..");
}

/// Cue 1 stands on stage; Go waits a second and brings cue 2 in two, while cue 1 goes in one.
struct DelayedFade : ScriptedDesk {
  DelayedFade() : ScriptedDesk(show()) {
    tool("ID_QPlus");
    tool("ID_Go");
  }

 private:
  static ShowMaker show() {
    ShowMaker maker;
    maker.xy = {{.number = 1, .up = 2, .down = 1, .delay = 1}, {.number = 2}, {.number = 3}};
    return maker;
  }
};

void expectPaint(const RowPaint& paint, Colour left, Colour right, int level) {
  EXPECT_EQ(paint.left, left);
  EXPECT_EQ(paint.right, right);
  EXPECT_NEAR(paint.split * 255, level, 0.01);
}

TEST(FadeBars, RunOutOfTheStageRowAndFillTheNextRow) {
  struct Instant {
    int ms;
    int stageLeft;  ///< of 255
    int nextCome;
  };
  DelayedFade desk;
  const QueueList& player = desk.xy();
  for (const Instant& at :
       {Instant{0, 255, 0}, {510, 125, 0}, {990, 3, 0}, {1020, 0, 3}, {2010, 0, 129}, {2970, 0, 251}}) {
    SCOPED_TRACE(at.ms);
    desk.runTo(at.ms);
    expectPaint(player.rowPaint(2), 0x0000FF, 0x8080FF, at.stageLeft);
    expectPaint(player.rowPaint(3), 0x80FF80, 0x00C000, at.nextCome);
    EXPECT_EQ(player.rowPaint(4), (RowPaint{.left = 0xFFFFFF, .right = 0xFFFFFF}));
  }
  desk.runTo(3060);
  EXPECT_EQ(player.rowPaint(2), (RowPaint{.left = 0xFFFFFF, .right = 0xFFFFFF}));
  EXPECT_EQ(player.rowPaint(3), (RowPaint{.left = 0x0000FF, .right = 0x0000FF}));
  EXPECT_EQ(player.rowPaint(4), (RowPaint{.left = 0x00C000, .right = 0x00C000}));
}

TEST(FadeBars, StandStillWhileStoppedUntilTheRowsArePaintedAgain) {
  DelayedFade desk;
  QueueList& player = desk.xy();
  desk.runTo(510);
  desk.tool("ID_StopFade");
  desk.runTo(5000);
  click(player, 4);
  expectPaint(player.rowPaint(2), 0x0000FF, 0x8080FF, 125);
  player.cmdMakeNextCue.click();
  EXPECT_EQ(painted(player), ".S.N");
  desk.tool("ID_Go");
  desk.runTo(5250);
  expectPaint(player.rowPaint(2), 0x0000FF, 0x8080FF, 64);
}

TEST(FadeBars, OfARunningFadeNeverFlickerAndFollowTheMarks) {
  DelayedFade desk;
  QueueList& player = desk.xy();
  desk.runTo(2010);
  click(player, 4);
  player.cmdMakeNextCue.click();
  expectPaint(player.rowPaint(2), 0x0000FF, 0x8080FF, 0);
  expectPaint(player.rowPaint(4), 0x80FF80, 0x00C000, 129);
  EXPECT_EQ(letterOf(player.rowPaint(3)), '.');
  player.cmdGoForward.click();
  expectPaint(player.rowPaint(2), 0x0000FF, 0x8080FF, 255);
  expectPaint(player.rowPaint(4), 0x80FF80, 0x00C000, 0);
}

TEST(FadeBars, OfALastPassThatKeepsTheMarksGoToo) {
  DelayedFade desk;
  desk.xy().State.LoopSkipAdvance = true;
  desk.runTo(3060);
  EXPECT_EQ(painted(desk.xy()), ".SN.");
}

TEST(TimeLeft, IsTheLongerRestOfBothRampsAndStandsStillWhileStopped) {
  DelayedFade desk;
  const QueueList& player = desk.xy();
  EXPECT_EQ(player.restOfFade(), 3000);
  desk.runTo(600);
  EXPECT_EQ(player.restOfFade(), 2400);
  desk.tool("ID_StopFade");
  desk.runTo(2000);
  desk.tool("ID_StopFade");
  desk.runTo(4000);
  EXPECT_EQ(player.restOfFade(), 2400) << "however often Stop is pressed";
  desk.tool("ID_Go");
  EXPECT_EQ(player.restOfFade(), 2400);
  desk.runTo(6390);
  EXPECT_EQ(player.restOfFade(), 10);
  desk.runTo(6450);
  EXPECT_EQ(player.restOfFade(), 0);
  desk.tool("ID_StopFade");
  EXPECT_EQ(player.restOfFade(), 0) << "nothing was stopped";
}

TEST(TimeLeft, CountsAFallThatOutlastsTheRiseAndAFadeThatRunsBack) {
  ShowMaker maker = showOf(3);
  maker.blackoutUp = 1;
  maker.blackoutDown = 5;
  ScriptedDesk desk(maker);
  QueueList& player = desk.ab();
  player.cmdGoForward.click();
  desk.runTo(510);
  EXPECT_EQ(player.restOfFade(), 4490);
  player.cmdStop.click();
  player.State.Reverse = true;
  player.State.CurrentLookPct = 40;
  desk.runTo(800);
  player.cmdGoForward.click();
  EXPECT_EQ(player.restOfFade(), 2) << "a fade back takes its seconds as milliseconds";
}

TEST(Clicks, MarkTheLoopsRowsAroundThePointer) {
  ScriptedDesk desk(showOf(6));
  QueueList& player = desk.xy();
  const auto icons = [&] {
    std::string digits;
    for (const auto& row : player.ListView2.rows()) digits += std::to_string(row.SmallIcon);
    return digits;
  };
  player.State.LoopStartRow = 2;
  player.State.LoopLastRow = 4;
  click(player, 3);
  EXPECT_EQ(icons(), "021200");
  click(player, 6);
  EXPECT_EQ(icons(), "022201");
  player.State.LoopLastRow = 2;
  click(player, 5);
  EXPECT_EQ(icons(), "020010") << "a range of one row is no loop; what its row shows stays";
}

TEST(Clicks, SelectTheRowAndBringItsNeighboursIntoView) {
  ScriptedDesk desk(showOf(5));
  QueueList& player = desk.ab();
  const ListView& list = player.ListView2;
  click(player, 3);
  EXPECT_EQ(list.selected(), 3);
  EXPECT_EQ(list.visibleRows(), (std::array{4, 2}));
  const unsigned requests = list.visibleRequests();
  click(player, 5);
  EXPECT_EQ(list.visibleRows().back(), 4);
  EXPECT_EQ(list.visibleRequests(), requests + 1) << "there is no row below the last";
}

TEST(CueRows, KeepTheirIdentityWhenTheListIsFilledAgain) {
  ScriptedDesk desk(showOf(4));
  QueueList& player = desk.xy();
  const auto before = player.ListView2.rows();
  player.State.QueueData->colQueueEntriesAdd(entryOf({.number = 1.5F}, 1));
  player.FillList();
  const auto& after = player.ListView2.rows();
  ASSERT_EQ(after.size(), 5U);
  for (std::size_t row = 0; row < before.size(); ++row)
    EXPECT_EQ(after[row < 2 ? row : row + 1].Identity, before[row].Identity);
}

TEST(CueRows, AreNotTouchedByTheStepsOfAFadeOrADrag) {
  DelayedFade desk;
  QueueList& player = desk.xy();
  const unsigned revision = player.ListView2.revision();
  drag(player, {3, 4, 4, 2, 1});
  player.ListView2_MouseUp(1);
  desk.runTo(2900);
  EXPECT_EQ(player.ListView2.revision(), revision);
  desk.runTo(3060);
  EXPECT_NE(player.ListView2.revision(), revision) << "the pointer follows the stage";
}

}  // namespace
}  // namespace velgrove::test
