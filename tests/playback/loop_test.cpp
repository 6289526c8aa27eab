#include <gtest/gtest.h>

#include "support/cue_rows.h"
#include "support/scripted_desk.h"

namespace velgrove::test {
namespace {

/// Opens the dialog and closes it by its close box, when it has been looked at.
void lookAtLoop(ScriptedDesk& desk, QueueList& player, const std::function<void(frmLoop&)>& look) {
  frmLoop& form = desk.house.desk.windows.Loop;
  desk.house.onWait = [&] {
    look(form);
    form.Unload();
  };
  player.cmdLoop.click();
  desk.house.onWait = nullptr;
}

/// Presses Go and tells the fades that follow by themselves: "2>3 3>4 ".
std::string walk(ScriptedDesk& desk, QueueList& player) {
  const auto& state = player.State;
  const auto start = std::chrono::duration_cast<Milliseconds>(desk.house.clock.now()).count();
  std::string fades;
  player.cmdGoForward.click();
  std::int32_t end = 0;
  for (int ms = 10; state.Fading && ms < 60000; ms += 10) {
    if (std::exchange(end, state.FadeEndTime) != state.FadeEndTime)
      fades += std::to_string(state.StageCue) + ">" + std::to_string(state.NextCue) + " ";
    desk.runTo(start + ms);
  }
  return fades;
}

ShowMaker rowsOfOneSecond(int rows) {
  ShowMaker maker = showOf(rows);
  for (auto* list : {&maker.ab, &maker.xy})
    for (Cue& cue : *list) cue.up = cue.down = 1;
  maker.blackoutUp = maker.blackoutDown = 1;
  return maker;
}

TEST(Loop, WalksItsRowsSoManyTimesAndStopsOnTheLast) {
  struct Case {
    const char* start;
    const char* last;
    const char* count;
    const char* fades;
    const char* marks;
  };
  const Case cases[] = {
      {"1.00", "2.00", "1", "2>3 ", "3 4 2"},
      {"1.00", "3.00", "2", "2>3 3>4 4>2 2>3 3>4 ", "4 5 2"},
      {"1.00", "2.00", "3", "2>3 3>2 2>3 3>2 2>3 ", "3 4 2"},
      {"0.00", "1.00", "2", "1>2 2>1 1>2 ", "2 3 1"},
      // A last cue before the first: every fade ends above it, and the loop goes on and on.
      {"3.00", "2.00", "1", nullptr, nullptr},
      // One row: the stage stands beyond the range after the first fade already.
      {"2.00", "2.00", "1", nullptr, nullptr},
  };
  for (const Case& c : cases) {
    ScriptedDesk desk(rowsOfOneSecond(6));
    for (QueueList* player : {&desk.ab(), &desk.xy()}) {
      SCOPED_TRACE(player->Window.Caption + " " + c.start + " to " + c.last);
      address(desk, *player);
      loop(desk, *player, c.start, c.last, c.count);
      const std::string fades = walk(desk, *player);
      if (c.fades == nullptr) {
        EXPECT_GT(fades.size(), 100U);
        EXPECT_TRUE(player->State.Fading);
        continue;
      }
      EXPECT_EQ(fades, c.fades);
      EXPECT_EQ(marks(*player), c.marks);
      EXPECT_FALSE(player->State.LoopSkipAdvance);
      EXPECT_EQ(player->State.LoopCount, 0);
    }
  }
}

TEST(Loop, ArmedMovesTheMarksAndMarksItsRowsAndLeavesTheLight) {
  ScriptedDesk desk(showOf(6));
  QueueList& player = desk.xy();
  desk.show.XYLevels[0] = 55;
  desk.show.ProjectDirty = false;
  loop(desk, player, "1", "3.00", " 2 ");
  EXPECT_EQ(marks(player), "2 3 1");
  EXPECT_EQ(icons(player), "122200");
  EXPECT_EQ(player.lblStageNum.Caption, "1.00");
  EXPECT_EQ(player.lblNextNum.Caption, "2.00");
  EXPECT_EQ(desk.level(1), 55);
  EXPECT_TRUE(desk.show.ProjectDirty);
  lookAtLoop(desk, player, [](frmLoop& form) {
    EXPECT_EQ(form.txtStartCue.text() + " " + form.txtLastCue.text() + " " + form.txtLoopCount.text(),
              "1.00 3.00 2");
  });
  click(player, 5);
  EXPECT_EQ(icons(player), "022210");
}

TEST(Loop, ThatIsStoppedGoesOnWhenItIsResumed) {
  ScriptedDesk desk(rowsOfOneSecond(4));
  QueueList& player = desk.xy();
  loop(desk, player, "1.00", "2.00", "2");
  player.cmdGoForward.click();
  desk.runTo(1500);
  player.cmdStop.click();
  desk.runTo(5000);
  EXPECT_EQ(marks(player), "3 2 2");
  EXPECT_EQ(walk(desk, player), "3>2 2>3 ");
}

TEST(Loop, ClearedTakesTheStageOffTheListUntilTheNextFadeOrStageButton) {
  ScriptedDesk desk(showOf(5));
  QueueList& player = desk.xy();
  loop(desk, player, "1.00", "3.00", "2");
  loop(desk, player, "1.00", "3.00", "0");
  EXPECT_EQ(icons(player), "10000");
  EXPECT_EQ(marks(player), "0 1 1");
  EXPECT_EQ(player.State.LoopLastRow, 0);
  player.cmdGoForward.click();
  desk.runTo(100);
  EXPECT_EQ(marks(player), "0 1 0") << "an end of a fade after the dialog moves no mark";
  player.cmdGoForward.click();
  desk.runTo(200);
  EXPECT_EQ(marks(player), "1 2 1");

  lookAtLoop(desk, player, [](frmLoop& form) {
    EXPECT_EQ(form.txtStartCue.text() + " " + form.txtLastCue.text() + " " + form.txtLoopCount.text(),
              "1.00 2.00 1");
  });
  EXPECT_EQ(marks(player), "0 1 1") << "looking and closing counts as a clear";
  player.cmdAdvanceStageCue.click();
  EXPECT_EQ(marks(player), "1 2 1");
  EXPECT_TRUE(player.State.LoopSkipAdvance);
}

TEST(Loop, AddressesTheXYListFromXYAndTheListUsedLastFromAB) {
  ScriptedDesk desk(showOf(5));
  EXPECT_EQ(desk.show.CurrentPlayer, 2) << "the list that was loaded last";
  frmLoop& form = desk.house.desk.windows.Loop;
  desk.house.onWait = [&] {
    form.txtLoopCount.setText("7");
    form.Command1.click();
  };
  desk.ab().cmdLoop.click();
  EXPECT_EQ(desk.ab().State.LoopCount, 0);
  EXPECT_EQ(desk.xy().State.LoopCount, 7);
  click(desk.ab(), 5);
  desk.ab().cmdDeleteCue.click();
  desk.ab().cmdLoop.click();
  EXPECT_EQ(desk.ab().State.LoopCount, 7);
  desk.xy().cmdLoop.click();
  EXPECT_EQ(desk.show.CurrentPlayer, 2);
}

TEST(Loop, ThatEndsOnTheLastRowLeavesNoNextCueToBeFound) {
  ScriptedDesk desk(rowsOfOneSecond(3));
  for (QueueList* player : {&desk.ab(), &desk.xy()}) {
    address(desk, *player);
    loop(desk, *player, "1.00", "2.00", "1");
    EXPECT_EQ(walk(desk, *player), "2>3 ");
    EXPECT_EQ(marks(*player), "3 4 2");
    EXPECT_EQ(player->lblNextNum.Caption, "N/A");
    desk.expectSystemError();  // the link of a cue that isn't there
    desk.expectSystemError();  // and its look
    EXPECT_EQ(walk(desk, *player), "3>4 ") << "a fade to dark, and round to the top";
    EXPECT_EQ(player->levels()[0], 0);
    EXPECT_EQ(marks(*player), "1 2 1");
  }
}

TEST(Loop, OverBlackoutKeepsItsTimesThroughAStop) {
  ScriptedDesk desk(rowsOfOneSecond(4));
  QueueList& player = desk.ab();
  address(desk, player);
  loop(desk, player, "0.00", "1.00", "3");
  player.cmdGoForward.click();
  desk.runTo(1500);
  ASSERT_EQ(marks(player), "2 1 1") << "on its way back to Blackout";
  player.cmdStop.click();
  player.cmdGoForward.click();
  desk.runTo(2200);
  EXPECT_EQ(marks(player), "1 2 1");
  EXPECT_EQ(player.State.UpSpan, 1000) << "the pass behind row 0 goes on with the last times";
}

TEST(Loop, NeedsThreeRows) {
  ScriptedDesk desk(showOf(2));
  for (QueueList* player : {&desk.ab(), &desk.xy()}) {
    desk.expectBox("There must be more Queues to loop in order to use this function.");
    player->cmdLoop.click();
    EXPECT_EQ(marks(*player), "1 2 1");
    EXPECT_FALSE(player->State.LoopSkipAdvance);
  }
}

TEST(Loop, KeepsTheRowOfANumberThatNoRowHolds) {
  ScriptedDesk desk(showOf(5));
  QueueList& player = desk.xy();
  loop(desk, player, "1.00", "2.00", "2");
  loop(desk, player, "2.00", "9.99", "2");
  EXPECT_EQ(player.State.LoopStartRow, 3);
  EXPECT_EQ(player.State.LoopLastRow, 3);
}

TEST(LoopDialog, StoresNothingWhileAFieldIsNoNumber) {
  ScriptedDesk desk(showOf(5));
  frmLoop& form = desk.house.desk.windows.Loop;
  lookAtLoop(desk, desk.xy(), [&](frmLoop&) {
    for (TextBox* field : {&form.txtStartCue, &form.txtLastCue, &form.txtLoopCount}) {
      const std::string before = field->text();
      for (const char* text : {"x", "", "1e60"}) {
        field->setText(text);
        desk.expectSystemError();
        form.Command1.click();
        EXPECT_TRUE(form.Window.Visible) << "for another try";
      }
      field->setText(before);
    }
    form.cmdCancel.click();
    form.cmdClear.click();
    EXPECT_TRUE(form.Window.Visible);
    desk.expectBox("OLE DRAGDROP");
    form.Form_OLEDragDrop();
  });
  EXPECT_EQ(desk.xy().State.LoopCount, 0);
}

TEST(LoopDialog, OpensUnderItsPlayerWithWhatItsListHas) {
  ShowMaker maker = showOf(4);
  maker.xy.clear();
  ScriptedDesk desk(maker);
  Form& player = desk.xy().Window;
  player.Left = 3000;
  player.Top = 200;
  player.Height = 1000;
  desk.expectSystemError();
  desk.expectSystemError();
  lookAtLoop(desk, desk.ab(), [](frmLoop& form) {  // XY was loaded last and is asked for, with one row
    EXPECT_EQ(form.txtStartCue.text() + " " + form.txtLastCue.text() + " " + form.txtLoopCount.text(),
              "1.0 2.0 1");
    EXPECT_EQ(form.Window.Left, 2900);
    EXPECT_EQ(form.Window.Top, 1220);
  });
}

TEST(LoopDialog, SpinsItsFieldsInTheirFormats) {
  ScriptedDesk desk(showOf(5));
  lookAtLoop(desk, desk.xy(), [](frmLoop& form) {
    form.UpDownStartCue.up();
    form.UpDownLastCue.down();
    form.UpDownLastCue.down();
    form.UpDownLastCue.down();
    form.UpDownLoopCount.up();
    EXPECT_EQ(form.txtStartCue.text() + " " + form.txtLastCue.text() + " " + form.txtLoopCount.text(),
              "2.00 .00 2");
    form.txtLoopCount.setText("998");
    for (int step = 0; step < 3; ++step) form.UpDownLoopCount.up();
    EXPECT_EQ(form.txtLoopCount.text(), "999");
  });
}

}  // namespace
}  // namespace velgrove::test
