#include <gtest/gtest.h>

#include "support/cue_rows.h"
#include "support/scripted_desk.h"

namespace velgrove::test {
namespace {

constexpr const char* Full = "Cue Partition Full, please add to Next Cue.";

clsFixture& fixture(ScriptedDesk& desk, int position) {
  return *desk.house.desk.windows.ActiveDocument->GetCurrentView()->colFixtures().item(position);
}

// ---- Insert

TEST(Insert, FillsThePartitionBehindACueToItsNinthTenthAndThenWarns) {
  ScriptedDesk desk(showOf(3));
  QueueList& player = desk.xy();
  desk.show.XYLevels[0] = 77;
  click(player, 2);
  for (int tenth = 1; tenth <= 9; ++tenth) {
    player.cmdInsertCue.click();
    ASSERT_EQ(player.ListView2.text(player.State.StageCue), "1." + std::to_string(tenth) + "0");
  }
  const std::string filled = "0.00 1.00 1.10 1.20 1.30 1.40 1.50 1.60 1.70 1.80 1.90 2.00";
  EXPECT_EQ(rows(player), filled);
  EXPECT_EQ(cues(player), filled);
  EXPECT_EQ(marks(player), "11 12 11") << "the operator stands on the new cue";
  EXPECT_EQ(icons(player), "000000000010");
  EXPECT_EQ(desk.level(1), 77) << "and the light is as it was";
  EXPECT_EQ(cells(player, 11), "0 0 0 Queue Description None None");
  EXPECT_EQ(player.CueNum.text(), "1.90") << "with its texts in the editors";
  EXPECT_EQ(cue(player, 1.9F).Values, ChannelBytes{});

  desk.show.ProjectDirty = false;
  desk.expectBox(Full);
  player.cmdInsertCue.click();
  EXPECT_EQ(rows(player), filled);
  EXPECT_EQ(marks(player), "11 12 11");
  EXPECT_FALSE(desk.show.ProjectDirty);
}

TEST(Insert, BehindBlackoutOrACueBelowOneHasNoRoom) {
  ShowMaker maker;
  maker.xy = {{.number = 0.5F}, {.number = 5}};
  ScriptedDesk desk(maker);
  QueueList& player = desk.xy();
  desk.show.DefaultUp = 3;
  for (const int row : {1, 2}) {
    click(player, row);
    desk.expectBox(Full);
    player.cmdInsertCue.click();
  }
  EXPECT_EQ(cues(player), "0.00 0.50 5.00");
  EXPECT_EQ(player.CueDesc.text(), "Queue Description") << "the editors keep what Insert wrote";
  EXPECT_EQ(player.CueUp.text(), "3");
}

TEST(Insert, OnTheLastRowRecords) {
  ScriptedDesk desk(showOf(3));
  for (QueueList* player : {&desk.ab(), &desk.xy()}) {
    click(*player, 3);
    player->cmdInsertCue.click();
    EXPECT_EQ(rows(*player), "0.00 1.00 2.00 3.00");
    EXPECT_EQ(cues(*player), rows(*player));
    EXPECT_EQ(player->State.PointerCue, player->State.StageCue);
    EXPECT_EQ(cue(*player, 3).EntryDesc, "Queue Description");
  }
}

TEST(Insert, InTheMiddleOfABDoublesItsRowsUntilTheNextLoad) {
  ScriptedDesk desk(showOf(3));
  QueueList& player = desk.ab();
  click(player, 2);
  player.cmdInsertCue.click();
  EXPECT_EQ(rows(player), "0.00 0.00 1.00 1.00 1.10 1.10 2.00 2.00");
  EXPECT_EQ(cues(player), "0.00 1.00 1.10 2.00");
  EXPECT_EQ(player.State.CueCount, 4) << "only the cues are counted";
  EXPECT_EQ(marks(player), "3 4 3");

  desk.house.desk.windows.loadPlayers();
  EXPECT_EQ(rows(desk.ab()), "0.00 1.00 1.10 2.00");
}

TEST(Insert, IntoAListWithoutCuesMakesTheFirst) {
  ScriptedDesk desk{ShowMaker()};
  for (QueueList* player : {&desk.ab(), &desk.xy()}) {
    player->cmdInsertCue.click();
    EXPECT_EQ(rows(*player), "0.00 1.00");
    EXPECT_EQ(marks(*player), "1 -1 1") << "Go has nothing to go to until a mark is set";
    click(*player, 2);
    player->cmdMakeNextCue.click();
    player->cmdGoForward.click();
    EXPECT_TRUE(player->State.Fading);

    click(*player, 2);
    player->cmdDeleteCue.click();
    click(*player, 1);
    player->cmdDeleteCue.click();
    player->cmdInsertCue.click();
    EXPECT_EQ(rows(*player), ".00");
    EXPECT_EQ(cues(*player), "0.00");
  }
}

// ---- Record

TEST(Record, BuildsAListWhosePlayerGoesOnThroughIt) {
  ScriptedDesk desk{ShowMaker()};
  QueueList& player = desk.xy();
  typeTimes(player, "2", "1", "4");
  desk.show.DMXOutput[0] = 90;
  player.cmdRecord.click();
  EXPECT_EQ(marks(player), "1 2 1");
  EXPECT_EQ(player.lblNextNum.Caption, "1.00") << "the panel knows the next cue at once";
  EXPECT_EQ(player.CueNum.text(), "1.00");
  EXPECT_EQ(player.CueDesc.text(), "Cue_1.00");

  player.cmdRecord.click();
  player.CueDesc.setText("Storm");
  player.cmdRecord.click();
  EXPECT_EQ(rows(player), "0.00 1.00 2.00 3.00");
  EXPECT_EQ(cells(player, 3), "2 1 4 Cue_2.00 None None");
  EXPECT_EQ(cells(player, 4), "2 1 4 Storm None None");
  EXPECT_EQ(cue(player, 3).Values[0], 90);
  EXPECT_EQ(cue(player, 3).Up, 4);
  EXPECT_EQ(cue(player, 3).Delay, 1);
  EXPECT_EQ(marks(player), "1 2 1");

  player.cmdGoForward.click();
  desk.runTo(100);
  EXPECT_EQ(marks(player), "2 3 2");
}

TEST(Record, AtTheEndOfTheShowMakesTheNewCueTheNext) {
  ScriptedDesk desk(showOf(3));
  QueueList& player = desk.xy();
  click(player, 3);
  player.cmdMakeStageCue.click();
  EXPECT_EQ(player.lblNextNum.Caption, "N/A");
  player.cmdRecord.click();
  EXPECT_EQ(player.State.NextCue, 4);
  EXPECT_EQ(player.lblNextNum.Caption, "3.00");
  EXPECT_EQ(player.State.PointerCue, 3) << "the pointer stays";
}

TEST(Record, OfATimeThatIsNoneMakesNoCue) {
  ScriptedDesk desk(showOf(3));
  QueueList& player = desk.xy();
  desk.show.ProjectDirty = false;
  for (const char* time : {"fast", "", "40000", "-32769"}) {
    player.CueUp.setText(time);
    desk.expectSystemError();
    player.cmdRecord.click();
  }
  EXPECT_EQ(rows(player), "0.00 1.00 2.00");
  EXPECT_EQ(cues(player), rows(player));
  EXPECT_EQ(player.State.CueCount, 3);
  EXPECT_FALSE(desk.show.ProjectDirty);
}

// ---- Update

TEST(Update, TakesTheEditorsTheLinkAndThePlotsLevelsAndShowsTheCue) {
  ScriptedDesk desk(showOf(4));
  QueueList& player = desk.xy();
  click(player, 3);
  typeTimes(player, "1.5", "-1", " 7 ");
  player.CueDesc.setText("Dawn");
  player.QListCombo.choose(2);
  player.QListNumberCombo.choose(3);
  fixture(desk, 2).Level = 200;
  player.cmdUpdate.click();
  const clsQueueEntry& updated = cue(player, 2);
  EXPECT_EQ(updated.Down, 2);
  EXPECT_EQ(updated.Delay, -1);
  EXPECT_EQ(updated.Up, 7);
  EXPECT_EQ(updated.QueueListMasterGo, "AB");
  EXPECT_EQ(updated.QueueNumberMasterGo, "2.00");
  EXPECT_EQ(updated.Values[1], 200);
  EXPECT_EQ(cells(player, 3), "1.5 -1  7  Dawn AB 2.00");
  EXPECT_EQ(desk.level(2), 200);
}

TEST(Update, OfATypedNumberWritesTheStageRowAndTheCueOfThatNumber) {
  ScriptedDesk desk(showOf(4));
  QueueList& player = desk.xy();
  click(player, 3);
  player.CueNum.setText("3.00");
  player.CueDesc.setText("Dusk");
  player.cmdUpdate.click();
  EXPECT_EQ(player.ListView2.row(1).Texts[4], "Dusk");
  EXPECT_EQ(cue(player, 3).EntryDesc, "Dusk");
  EXPECT_EQ(cue(player, 2).EntryDesc, "Cue 2.000000");

  click(player, 2);
  player.CueNum.setText("9.00");
  player.CueDesc.setText("Lost");
  desk.show.ProjectDirty = false;
  desk.expectSystemError();
  player.cmdUpdate.click();
  EXPECT_EQ(player.ListView2.row(1).Texts[4], "Lost") << "the row is written before the cue is looked up";
  EXPECT_EQ(cues(player), "0.00 1.00 2.00 3.00");
  for (const float number : {0.0F, 1.0F, 2.0F, 3.0F}) EXPECT_NE(cue(player, number).EntryDesc, "Lost");
  EXPECT_FALSE(desk.show.ProjectDirty);
}

TEST(Update, OfATimeThatIsNoneLeavesTheCue) {
  ScriptedDesk desk(showOf(4));
  QueueList& player = desk.ab();
  cue(player, 2).Values[0] = 99;
  click(player, 3);
  typeTimes(player, "5", "5", "32768");
  player.CueDesc.setText("Dawn");
  desk.expectSystemError();
  player.cmdUpdate.click();
  EXPECT_EQ(cue(player, 2).Down, 0);
  EXPECT_EQ(cue(player, 2).EntryDesc, "Cue 2.000000");
  EXPECT_EQ(cue(player, 2).Values[0], 99);
}

TEST(Update, InBlindTakesTheBlindLevelsAndEndsBlindAndInLiveEndsLive) {
  ScriptedDesk desk(showOf(4));
  QueueList& player = desk.xy();
  click(player, 3);
  player.cmdBlindView.click();
  desk.show.BlindLevels[1] = 123;
  fixture(desk, 2).Level = 5;
  player.cmdUpdate.click();
  EXPECT_EQ(cue(player, 2).Values[1], 123);
  EXPECT_FALSE(desk.show.BlindOn);
  EXPECT_EQ(player.State.PointerCue, 1);
  EXPECT_EQ(desk.level(2), 0) << "the stage look is back";

  click(player, 4);
  player.cmdLiveView.click();
  fixture(desk, 3).Level = 44;
  player.cmdUpdate.click();
  EXPECT_EQ(cue(player, 3).Values[2], 44);
  EXPECT_FALSE(desk.show.LiveOn);
  EXPECT_EQ(desk.level(3), 0);
}

// ---- Delete

TEST(Delete, TakesRowAndCueAndSwitchesTheCommandsOffUntilARowIsClicked) {
  ScriptedDesk desk(showOf(5));
  for (QueueList* player : {&desk.ab(), &desk.xy()}) {
    click(*player, 3);
    desk.show.ProjectDirty = false;
    player->cmdDeleteCue.click();
    EXPECT_EQ(rows(*player), "0.00 1.00 3.00 4.00");
    EXPECT_EQ(cues(*player), rows(*player));
    EXPECT_EQ(marks(*player), "1 2 1");
    EXPECT_EQ(icons(*player), "1000");
    EXPECT_TRUE(desk.show.ProjectDirty);
    for (Button* button : {&player->cmdDeleteCue, &player->cmdUpdate, &player->cmdCopy, &player->cmdPaste,
                           &player->cmdMakeNextCue, &player->cmdMakeStageCue})
      EXPECT_FALSE(button->Enabled);
    EXPECT_TRUE(player->cmdRecord.Enabled);
    player->cmdDeleteCue.click();
    EXPECT_EQ(rows(*player), "0.00 1.00 3.00 4.00") << "a second press takes nothing more";
    click(*player, 4);
    EXPECT_TRUE(player->cmdDeleteCue.Enabled);
  }
}

TEST(Delete, OfTheStageCueAtTheEndPutsTheStageOnTheNewLastRow) {
  ScriptedDesk desk(showOf(4));
  QueueList& player = desk.xy();
  click(player, 4);
  player.cmdMakeStageCue.click();
  player.cmdDeleteCue.click();
  EXPECT_EQ(marks(player), "3 -1 3");
  EXPECT_EQ(player.lblStageNum.Caption, "3.00") << "the panels keep their texts until the next refresh";
}

TEST(Delete, OfEveryRowLeavesAListThatCanBeRecordedAnew) {
  ScriptedDesk desk(showOf(2));
  QueueList& player = desk.xy();
  for (const int row : {1, 1}) {
    click(player, row);
    player.cmdDeleteCue.click();
  }
  EXPECT_EQ(rows(player), "");
  EXPECT_EQ(cues(player), "");
  EXPECT_EQ(player.State.StageCue, 0);
  EXPECT_EQ(player.State.NextCue, -1);
  desk.expectBox("At end of show - no more cues left");
  player.cmdGoForward.click();
  player.cmdRecord.click();
  EXPECT_EQ(rows(player), "1.00");
  EXPECT_EQ(player.State.StageCue, 1);
  EXPECT_EQ(player.State.NextCue, -1);

  desk.house.desk.windows.loadPlayers();
  EXPECT_EQ(rows(desk.xy()), "0.00 1.00") << "Blackout is made again";
}

TEST(Delete, OfTheSecondOfTwoRowsOfACueIsTheSearchesError) {
  ScriptedDesk desk(showOf(3));
  QueueList& player = desk.ab();
  click(player, 2);
  player.cmdInsertCue.click();
  click(player, 3);
  player.cmdDeleteCue.click();
  click(player, 3);
  desk.expectBox("cue search Remove error");
  desk.expectSystemError();
  player.cmdDeleteCue.click();
  EXPECT_EQ(cues(player), "0.00 1.10 2.00");
  EXPECT_EQ(rows(player), "0.00 0.00 1.10 1.10 2.00 2.00");
}

// ---- Copy and paste

TEST(CopyAndPaste, CarryTimesDescriptionAndThePlotsLevelsButNoLink) {
  ScriptedDesk desk(showOf(4));
  QueueList& player = desk.xy();
  desk.show.ProjectDirty = false;
  click(player, 2);
  typeTimes(player, "2", "3", "4");
  player.CueDesc.setText("Copied");
  fixture(desk, 1).Level = 111;
  player.cmdCopy.click();
  EXPECT_EQ(cue(player, 1).Up, 4) << "what stands in the editors is saved";
  EXPECT_EQ(cue(player, 1).EntryDesc, "Copied");
  EXPECT_EQ(cue(player, 1).Values[0], 10) << "but not the levels";
  EXPECT_FALSE(desk.show.ProjectDirty);

  click(player, 4);
  fixture(desk, 1).Level = 0;
  player.QListCombo.choose(2);
  player.QListNumberCombo.choose(2);
  player.cmdPaste.click();
  EXPECT_EQ(cells(player, 4), "2 3 4 Copied AB 1.00");
  EXPECT_EQ(cue(player, 3).Values[0], 111);
  EXPECT_EQ(desk.level(1), 111);
  EXPECT_EQ(rows(player), "0.00 1.00 2.00 3.00");

  click(desk.ab(), 2);
  desk.ab().cmdPaste.click();
  EXPECT_EQ(cells(desk.ab(), 2), "0 0 0  None None") << "the other player's clipboard is empty";
}

TEST(CopyAndPaste, NeverGivesTwoCuesOneNumber) {
  ScriptedDesk desk(showOf(3));
  QueueList& player = desk.xy();
  player.cmdRecord.click();  // the editors hold the new cue, the pointer stands on Blackout
  player.cmdCopy.click();
  EXPECT_EQ(cues(player), "0.00 1.00 2.00 3.00");
  click(player, 2);
  player.CueNum.setText("7.5");
  player.cmdCopy.click();
  EXPECT_EQ(cues(player), "0.00 2.00 3.00 7.50");
}

TEST(CopyAndPaste, OfABadNumberOrTimeChangesNothing) {
  ScriptedDesk desk(showOf(3));
  QueueList& player = desk.xy();
  click(player, 2);
  for (TextBox* editor : {&player.CueNum, &player.CueDelay}) {
    const std::string before = editor->text();
    editor->setText("x");
    player.CueDesc.setText("Lost");
    desk.expectSystemError();
    player.cmdCopy.click();
    editor->setText(before);
  }
  EXPECT_EQ(cue(player, 1).EntryDesc, "Cue 1.000000");
  EXPECT_EQ(player.State.CopiedDesc, "");
}

TEST(ConfirmPaste, IsNeverOpenedByAPasteAndBothItsButtonsCloseIt) {
  ScriptedDesk desk(showOf(3));
  frmConfirmPaste& form = desk.house.desk.windows.ConfirmPaste;
  click(desk.xy(), 2);
  desk.xy().cmdPaste.click();
  EXPECT_FALSE(form.Window.Loaded);
  for (Button* button : {&form.Yes, &form.No}) {
    form.Show();
    EXPECT_TRUE(form.Window.Visible);
    button->click();
    EXPECT_FALSE(form.Window.Visible);
  }
}

TEST(Editing, MarksTheShowChangedWithEachCommandButCopy) {
  ShowMaker maker = showOf(4);
  maker.channels = {};  // the texts on fixtures mark it by themselves
  ScriptedDesk desk(maker);
  for (QueueList* player : {&desk.ab(), &desk.xy()}) {
    const auto changed = [&](const Button& button) {
      click(*player, 3);
      desk.show.ProjectDirty = false;
      button.click();
      return desk.show.ProjectDirty;
    };
    EXPECT_FALSE(changed(player->cmdCopy));
    EXPECT_TRUE(changed(player->cmdPaste));
    EXPECT_TRUE(changed(player->cmdUpdate));
    EXPECT_TRUE(changed(player->cmdRecord));
    EXPECT_TRUE(changed(player->cmdInsertCue));
    EXPECT_TRUE(changed(player->cmdDeleteCue));
  }
}

// ---- Editors

TEST(Editors, StepTimesBySecondsWithDownAndUpAsOneCrossfadeTime) {
  ScriptedDesk desk(showOf(3));
  QueueList& player = desk.ab();
  typeTimes(player, "0", "4.4", "32766");
  player.UpDownCueDown.up();
  player.UpDownCueDelay.down();
  player.UpDownCueDelay.down();
  EXPECT_EQ(player.CueDown.text() + " " + player.CueDelay.text() + " " + player.CueUp.text(), "1 2 32767");
  desk.expectSystemError();
  player.UpDownCueDown.up();
  EXPECT_EQ(player.CueDown.text(), "1") << "the pair moves together or not at all";
  for (int step = 0; step < 12; ++step) player.UpDownCueDown.down();
  EXPECT_EQ(player.CueDown.text() + " " + player.CueUp.text(), "-11 32755") << "there is no lower bound";
  player.CueUp.setText("x");
  desk.expectSystemError();
  player.UpDownCueUp.up();
  EXPECT_EQ(player.CueUp.text(), "x");
}

TEST(Editors, EnterInTheNumberGoesToItsRowOrToTheLast) {
  ScriptedDesk desk(showOf(4));
  QueueList& player = desk.xy();
  const auto enter = [&](const char* number) {
    player.CueNum.setText(number);
    player.CueNum.KeyUp(13);
    return player.State.PointerCue;
  };
  EXPECT_EQ(enter("2"), 3);
  EXPECT_EQ(player.CueNum.text() + " " + player.CueDesc.text(), "2.00 Cue 2.000000");
  EXPECT_EQ(icons(player), "0010");
  EXPECT_EQ(player.ListView2.selected(), 3);
  EXPECT_EQ(enter("7.5"), 4);
  player.CueNum.setText("1");
  player.CueNum.KeyUp(9);
  EXPECT_EQ(player.State.PointerCue, 4) << "only Enter goes";
  desk.expectSystemError();
  EXPECT_EQ(enter("one"), 4);
}

TEST(Editors, TheNumbersSpinnerWalksTheListByItsDirection) {
  ScriptedDesk desk(showOf(3));
  QueueList& player = desk.xy();
  player.UpDownCueNum.down();
  player.UpDownCueNum.down();
  EXPECT_EQ(player.CueNum.text() + " " + player.CueDesc.text(), "2.00 Cue 2.000000");
  player.UpDownCueNum.down();
  EXPECT_EQ(player.State.PointerCue, 3) << "not past the last";
  player.UpDownCueNum.up();
  EXPECT_EQ(player.CueNum.text(), "1.00");
  EXPECT_EQ(icons(player), "010");
  player.CueNum.setText("1");
  desk.expectSystemError();
  player.UpDownCueNum.down();
  EXPECT_EQ(player.State.PointerCue, 2);
  player.CueNum.setText("1.00");
  player.UpDownCueNum.up();
  EXPECT_EQ(player.CueNum.text(), "0.00") << "the direction is known after a miss, too";
}

TEST(Editors, OfferAsTargetsTheRowsOfTheListThatIsChosen) {
  ScriptedDesk desk(showOf(3));
  QueueList& player = desk.xy();
  using Items = std::vector<std::string>;
  const auto offered = [&](int list) {
    player.QListCombo.choose(list);
    EXPECT_EQ(player.QListNumberCombo.text(), "None");
    return player.QListNumberCombo.items();
  };
  EXPECT_EQ(offered(1), (Items{"None", "0.00", "1.00", "2.00"}));
  EXPECT_EQ(offered(3), Items{"None"});
  desk.house.desk.windows.Effects.addEffectToList("1", "5", "100", "1");
  EXPECT_EQ(player.QListNumberCombo.items(), Items{"None"}) << "what was read before stays";
  EXPECT_EQ(offered(3), (Items{"None", " 1    "}));
  EXPECT_EQ(offered(0), Items{"None"});
}

}  // namespace
}  // namespace velgrove::test
