#include <gtest/gtest.h>

#include "support/cue_rows.h"
#include "support/scripted_desk.h"

// Both players go through the same steps on the same show, and each has the result of its own.

namespace velgrove::test {
namespace {

struct Difference {
  std::string name;
  std::function<std::string(ScriptedDesk&, QueueList&)> steps;  ///< what is seen at their end
  std::string ab;
  std::string xy;
};

/// Five rows; row r fades in r seconds.
ShowMaker bothLists() {
  ShowMaker maker = showOf(5);
  for (auto* list : {&maker.ab, &maker.xy})
    for (Cue& cue : *list) cue.up = cue.down = static_cast<int>(cue.number) + 1;
  maker.blackoutUp = maker.blackoutDown = 1;
  return maker;
}

std::string shown(std::initializer_list<int> values) {
  std::string all;
  for (const int value : values) all += (all.empty() ? "" : " ") + std::to_string(value);
  return all;
}

std::string actionColours(const QueueList& player) {
  const auto name = [](Colour colour) { return colour == QueueList::BrightGreen ? "green" : "grey"; };
  return name(player.cmdGoForward.BackColour) + std::string(" ") + name(player.cmdStop.BackColour) +
         (player.cmdStop.Enabled ? "" : " off");
}

const std::vector<Difference>& differences() {
  static const std::vector<Difference> All = {
      {.name = "the caption",
       .steps = [](auto&, QueueList& player) { return player.Window.Caption; },
       .ab = "AB - CueList",
       .xy = "XY - CueList"},
      {.name = "the array that it puts out, and the cue list that it plays",
       .steps =
           [](ScriptedDesk& desk, QueueList& player) {
             player.cmdAdvanceStageCue.click();
             return player.State.QueueData->QueueListName + " " +
                    shown({desk.show.ABLevels[0], desk.show.XYLevels[0]});
           },
       .ab = "AB 10 0",
       .xy = "XY 0 10"},
      {.name = "who obeys the tool bar",
       .steps =
           [](ScriptedDesk& desk, QueueList& player) {
             for (const char* id : {"ID_QPlus", "ID_QPlus", "ID_QMinus"}) desk.tool(id);
             std::string seen = marks(player);
             desk.tool("ID_CueReset");
             desk.tool("ID_Go");
             seen += ", " + marks(player) + (player.State.Fading ? " fading" : " still");
             desk.tool("ID_StopFade");
             return seen + (player.State.Paused ? ", stopped" : ", playing");
           },
       .ab = "1 2 1, 1 2 1 still, playing",
       .xy = "2 3 2, 1 2 1 fading, stopped"},
      {.name = "who obeys the box's trigger",
       .steps =
           [](ScriptedDesk& desk, QueueList& player) {
             desk.house.box.addTriggers(1);
             desk.runTo(1000);
             return std::string(player.State.Fading ? "fading" : "still");
           },
       .ab = "still",
       .xy = "fading"},
      {.name = "the colours of Go and Stop after a Go, after its end, and after the end of a resume",
       .steps =
           [](ScriptedDesk& desk, QueueList& player) {
             player.cmdGoForward.click();
             std::string seen = actionColours(player);
             desk.runTo(1100);
             seen += ", " + actionColours(player);
             player.cmdStop.click();
             player.cmdGoForward.click();  // a resume, which colours in both
             desk.runTo(9000);
             return seen + ", " + actionColours(player);
           },
       .ab = "grey grey, grey grey, grey green",
       .xy = "grey green, green grey off, green grey off"},
      {.name = "whose fade end gives the faders back",
       .steps =
           [](ScriptedDesk& desk, QueueList& player) {
             player.cmdGoForward.click();
             desk.show.XYEndsManualClear = false;
             desk.show.ABEndsManualClear = true;
             desk.runTo(1100);
             return std::string(desk.show.ClearManual ? "cleared" : "given back");
           },
       .ab = "given back",
       .xy = "cleared"},
      {.name = "the loop's icons when the pointer goes to the stage row",
       .steps =
           [](ScriptedDesk& desk, QueueList& player) {
             address(desk, player);
             loop(desk, player, "2.00", "4.00", "2");
             player.AttachPointerToStageCue();
             return icons(player);
           },
       .ab = "00100",
       .xy = "00122"},
      {.name = "a pointer's icon that was left behind, at a stage button",
       .steps =
           [](ScriptedDesk&, QueueList& player) {
             click(player, 4);
             player.CueNum.setText("1.00");
             player.cmdUpdate.click();  // the pointer jumps to the stage row, its icon doesn't
             player.cmdAdvanceStageCue.click();
             return icons(player);
           },
       .ab = "01010",
       .xy = "01000"},
      {.name = "advancing while the window is minimised and a mark in the hand",
       .steps =
           [](ScriptedDesk&, QueueList& player) {
             player.ListView2_MouseDown(2);
             for (const int row : {3, 4}) player.ListView2_MouseMove(row);
             player.Window.WindowState = WindowState::Minimised;
             player.cmdAdvanceStageCue.click();
             return std::string(player.State.ListRepainting ? "repaints" : "done");
           },
       .ab = "repaints",
       .xy = "done"},
      {.name = "what a reset does to the levels and to the pointer",
       .steps =
           [](ScriptedDesk& desk, QueueList& player) {
             desk.show.ABLevels[9] = desk.show.XYLevels[9] = 5;
             player.State.StageCue = 3;
             click(player, 4);
             player.ResetStageCue();
             return marks(player) + ", " + shown({desk.show.ABLevels[9], desk.show.XYLevels[9]});
           },
       .ab = "1 2 4, 0 5",  // the look of the stage comes to its own levels alone
       .xy = "1 2 1, 0 0"},
      {.name = "what Record takes as levels and times, and the name it gives",
       .steps =
           [](ScriptedDesk& desk, QueueList& player) {
             desk.show.DefaultUp = desk.show.DefaultDown = 8;
             desk.show.SubLevels[1] = 60;
             desk.runTo(60);  // merged, and not shown on the plot yet
             typeTimes(player, "2", "0", "3");
             player.CueDesc.setText("Cue 4.000000");
             player.cmdRecord.click();
             const clsQueueEntry& made = cue(player, 5);
             return made.EntryDesc + ": " + shown({made.Values[1], made.Down, made.Up}) + ", editors " +
                    player.CueDown.text() + " " + player.CueUp.text();
           },
       .ab = "Cue_4.00: 0 8 8, editors 8 8",
       .xy = "Cue_5.00: 60 2 3, editors 2 3"},
      {.name = "the times of a loop's fade after it went back to its start",
       .steps =
           [](ScriptedDesk& desk, QueueList& player) {
             address(desk, player);
             loop(desk, player, "2.00", "3.00", "2");
             player.cmdGoForward.click();
             desk.runTo(7100);  // 3>4 on row 3's time, 4>3 on row 3's as well, and then?
             return marks(player) + ", " + shown({player.State.UpSpan});
           },
       .ab = "3 4 3, 2000",
       .xy = "3 4 3, 4000"},
      {.name = "whom the loop dialog asks for",
       .steps =
           [](ScriptedDesk& desk, QueueList& player) {
             const auto& windows = desk.house.desk.windows;
             desk.show.CurrentPlayer = 1;
             loop(desk, player, "1.00", "2.00", "3");
             desk.show.CurrentPlayer = 2;
             loop(desk, player, "1.00", "2.00", "4");
             return shown({windows.ABQ->State.LoopCount, windows.XYQ->State.LoopCount});
           },
       .ab = "3 4",
       .xy = "0 4"},
      {.name = "whether showing a look blind switches Blind on",
       .steps =
           [](ScriptedDesk& desk, QueueList& player) {
             player.ShowFixtureLevelsForSelectedCue(2, "blind");
             return std::string(desk.show.BlindOn ? "on" : "off");
           },
       .ab = "off",
       .xy = "on"},
      {.name = "whom a changed cue yields to",
       .steps =
           [](ScriptedDesk& desk, QueueList& player) {
             const auto changed = [&](std::int16_t ab, std::int16_t xy) {
               desk.show.ABLevels.fill(ab);
               desk.show.XYLevels.fill(xy);
               player.ShowFixtureLevelsForSelectedCue(2, "changecue");  // channel 1 at 10
               return static_cast<int>(player.levels()[0]);
             };
             return shown({changed(5, 20), changed(20, 5)});
           },
       .ab = "0 10",
       .xy = "10 0"},
      {.name = "the lists that a link can name, and the rows of the second one",
       .steps =
           [](ScriptedDesk& desk, QueueList& player) {
             click(desk.ab(), 5);
             desk.ab().cmdDeleteCue.click();
             std::string seen;
             for (const std::string& list : player.QListCombo.items()) seen += list + " ";
             player.QListCombo.choose(1);
             return seen + std::to_string(player.QListNumberCombo.items().size());
           },
       .ab = "None AB AB EF 5",
       .xy = "None XY AB EF 6"},
      {.name = "the rows after an insert between two cues",
       .steps =
           [](ScriptedDesk&, QueueList& player) {
             click(player, 3);
             player.cmdInsertCue.click();
             return rows(player);
           },
       .ab = "0.00 0.00 1.00 1.00 2.00 2.00 2.10 2.10 3.00 3.00 4.00 4.00",
       .xy = "0.00 1.00 2.00 2.10 3.00 4.00"},
      {.name = "the stage panel after the load",
       .steps = [](ScriptedDesk&, QueueList& player) { return player.lblStageNum.Caption; },
       .ab = "0.00",
       .xy = ""},
      {.name = "whether a panel's refresh counts as a repaint",
       .steps =
           [](ScriptedDesk&, QueueList& player) {
             player.State.ListRepaintDone = false;
             player.UpdateHeader("Next", 2);
             return std::string(player.State.ListRepaintDone ? "done" : "open");
           },
       .ab = "open",
       .xy = "done"},
      {.name = "the mark of its cues",
       .steps =
           [](ScriptedDesk&, QueueList& player) {
             player.cmdRecord.click();
             click(player, 2);
             player.cmdInsertCue.click();
             return shown({cue(player, 5).EntryQueueList, cue(player, 1.1F).EntryQueueList});
           },
       .ab = "2 2",
       .xy = "1 1"},
  };
  return All;
}

TEST(TwoPlayers, GoThroughTheSameStepsAndEachHasItsOwnResult) {
  for (const Difference& difference : differences()) {
    for (const bool xy : {false, true}) {
      SCOPED_TRACE(difference.name + (xy ? ", XY" : ", AB"));
      ScriptedDesk desk(bothLists());
      EXPECT_EQ(difference.steps(desk, xy ? desk.xy() : desk.ab()), xy ? difference.xy : difference.ab);
    }
  }
}

}  // namespace
}  // namespace velgrove::test
