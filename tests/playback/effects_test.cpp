// Effects: the list that the operator builds, what starts a chase, and its steps on the hand-moved clock
// between merge (every 40 ms) and send (every 30 ms).

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/scripted_desk.h"

namespace velgrove::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* NoSuchRow = "Application may close, Would you like to continue?";

struct Desk : ScriptedDesk {
  explicit Desk(const ShowMaker& maker = {}) : ScriptedDesk(maker) { effects.load(); }

  EffectsQueue& effects = house.desk.windows.Effects;

  void add(const char* start, const char* stop, const char* speed, const char* loops) {
    effects.addEffectToList(start, stop, speed, loops);
  }
  void run(const char* start, const char* stop, const char* speed, const char* loops) {
    add(start, stop, speed, loops);
    effects.doEffect(effects.ListViewEffects.text(effects.ListViewEffects.count()));
  }
  [[nodiscard]] std::vector<int> lit() const {
    std::vector<int> channels;
    for (int channel = 1; channel <= 512; ++channel)
      if (show.DMXOutput[channelIndex(channel)] == 255) channels.push_back(channel);
    return channels;
  }
  /// What is lit right after each of some ticks: "1.2..", a dot ends a tick. No merge may fall on one.
  std::string walk(int interval, int ticks) {
    std::string seen;
    for (int tick = 1; tick <= ticks; ++tick) {
      runTo(std::int64_t{interval} * tick);
      for (const int channel : lit()) seen += std::to_string(channel);
      seen += '.';
    }
    return seen;
  }
};

/// XY's Blackout cue leads to a cue with this link.
ShowMaker linkedToEffect(const std::string& number) {
  ShowMaker maker;
  maker.xy = {{.number = 1, .list = "EF", .target = number}};
  return maker;
}

// ---- The list

struct Fields {
  std::array<std::string, 4> texts;
  bool frame;
  bool open;
  bool operator==(const Fields&) const = default;
};

Fields fieldsOf(const EffectsQueue& effects) {
  const auto all = {&effects.txtChannelStart, &effects.txtChannelStop, &effects.txtSpeedMS,
                    &effects.txtDurationSec};
  Fields fields{.texts = {}, .frame = effects.frmCustomChase.Enabled, .open = true};
  std::ranges::transform(all, fields.texts.begin(), &TextBox::text);
  for (const TextBox* field : all) fields.open = fields.open && field->Enabled;
  return fields;
}

TEST(EffectsList, EachEntryFillsTheFieldsAndOnlyTheCustomOneOpensThemForGood) {
  Desk desk;
  EXPECT_EQ(desk.effects.cmboEffects.text(), "Select Effect");
  EXPECT_EQ(fieldsOf(desk.effects), (Fields{{"", "", "", ""}, false, false}));
  struct Case {
    int index;
    const char* entry;
    Fields fields;
  };
  for (const Case& each : {Case{0, "Default Chase, 1-100", {{"001", "100", "500", "1"}, true, false}},
                           Case{1, "Default Chase, 100-200", {{"100", "200", "500", "1"}, true, false}},
                           Case{2, "Default Chase, 200-300", {{"200", "300", "500", "1"}, true, false}},
                           Case{3, "Default Case,300-512", {{"300", "512", "500", "1"}, true, false}},
                           Case{4, "Custom Chase", {{"000", "000", "000", "00"}, true, true}},
                           Case{0, "Default Chase, 1-100", {{"001", "100", "500", "1"}, true, true}}}) {
    desk.effects.cmboEffects.choose(each.index);
    EXPECT_EQ(desk.effects.cmboEffects.text(), each.entry);
    EXPECT_EQ(fieldsOf(desk.effects), each.fields) << each.entry;
  }
}

TEST(EffectsList, TakesTheFieldsAsTheyStandAndNumbersItsRows) {
  Desk desk;
  desk.effects.cmdAddEffect.click();
  desk.effects.cmboEffects.choose(3);
  desk.effects.cmdAddEffect.click();
  desk.effects.txtSpeedMS.setText("fast");
  desk.effects.cmdAddEffect.click();
  std::vector<std::string> rows;
  for (const auto& row : desk.effects.ListViewEffects.rows()) {
    std::string texts;
    for (std::size_t column = 0; column < 5; ++column) texts += row.Texts[column] + "|";
    rows.push_back(texts);
  }
  EXPECT_THAT(rows, ElementsAre(" 1    |||||", " 2    |300|512|500|1|", " 3    |300|512|fast|1|"));
  EXPECT_EQ(desk.show.EffectListNext, 4);
}

TEST(EffectsList, RemoveTakesTheLastRowWhicheverIsSelected) {
  Desk desk;
  for (int i = 0; i < 3; ++i) desk.add("1", "2", "100", "1");
  desk.effects.ListViewEffects_MouseDown(2);
  desk.effects.cmdRemoveEffect.click();
  EXPECT_EQ(desk.effects.ListViewEffects.text(2), " 2    ");
  EXPECT_EQ(desk.effects.ListViewEffects.selected(), 2);
  desk.effects.cmdRemoveEffect.click();
  EXPECT_EQ(desk.effects.ListViewEffects.count(), 1);
  EXPECT_EQ(desk.show.EffectListNext, 2);
  EXPECT_EQ(desk.effects.selectedEffect, 2) << "it points past the list now";
  desk.effects.cmdRemoveEffect.click();
  desk.expectBox("No more Effects to remove");
  desk.effects.cmdRemoveEffect.click();
  EXPECT_EQ(desk.show.EffectListNext, 1);
  desk.add("7", "8", "100", "1");
  EXPECT_EQ(desk.effects.ListViewEffects.text(1), " 1    ") << "numbers are given out again";
}

TEST(EffectsList, IsLostWithItsWindowAndTheNextOneBeginsAsTheFirstDid) {
  Desk desk;
  desk.effects.cmboEffects.choose(4);
  desk.run("1", "9", "110", "1");
  desk.runTo(110);
  desk.effects.Unload();
  EXPECT_FALSE(desk.effects.Window.Loaded || desk.effects.Window.Visible);
  EXPECT_EQ(desk.show.EffectListNext, 1) << "the players offer no targets that are gone";
  desk.runTo(1000);
  EXPECT_THAT(desk.lit(), IsEmpty()) << "the chase has stopped";

  desk.tool("ID_Effects");
  EXPECT_TRUE(desk.effects.Window.Loaded && desk.effects.Window.Visible);
  EXPECT_EQ(desk.effects.ListViewEffects.count(), 0);
  EXPECT_EQ(desk.effects.cmboEffects.text(), "Select Effect");
  EXPECT_EQ(fieldsOf(desk.effects), (Fields{{"", "", "", ""}, false, false}));
  desk.run("5", "9", "110", "1");
  desk.runTo(1110);
  EXPECT_THAT(desk.lit(), ElementsAre(5));
  desk.tool("ID_Effects");
  EXPECT_EQ(desk.effects.ListViewEffects.count(), 1) << "showing a window that is loaded leaves its list";
}

TEST(EffectsList, GoesWithTheDeskAndNoTouchBringsItBack) {
  Desk desk;
  desk.run("1", "9", "110", "1");
  desk.show.ProjectDirty = false;
  desk.expectBox("exiting frmMain unload");
  desk.tool("mnuFileExit");
  EXPECT_FALSE(desk.effects.ChaseTimer.enabled());
  desk.effects.load();
  EXPECT_FALSE(desk.effects.Window.Loaded);
}

// ---- What starts a chase

constexpr const char* Question = " Seconds to complete \\n are you sure you want to continue?";

TEST(EffectsTest, AsksWithTheSecondsOfTheRowClickedLastAndRunsItOnYes) {
  struct Case {
    std::array<const char*, 4> effect;
    const char* seconds;
  };
  for (const auto& [effect, seconds] :
       {Case{{"001", "100", "500", "1"}, "50"}, Case{{"7", "7", "100", "3"}, "0.3"},
        Case{{"1", "100", "1000", "1000"}, "100000"}, Case{{"9", "7", "500", "1"}, "-0.5"}}) {
    Desk desk;
    desk.add("1", "1", "1", "1");
    desk.add(effect[0], effect[1], effect[2], effect[3]);
    desk.effects.ListViewEffects_MouseDown(2);
    desk.effects.ListViewEffects_MouseDown(0);
    for (const BoxAnswer answer : {BoxAnswer::No, BoxAnswer::Yes}) {
      desk.toQuestions = answer;
      desk.expectBox(std::string("This test will take approximately ") + seconds + Question);
      desk.effects.cmdTest.click();
      EXPECT_EQ(desk.effects.ChaseTimer.enabled(), answer == BoxAnswer::Yes);
    }
    EXPECT_EQ(desk.effects.ChaseTimer.interval(), toInteger<int>(effect[2]));
  }
}

TEST(EffectsTest, OfARowThatHasGoneFailsOnePastTheListAndSaysSoBeyondIt) {
  Desk desk;
  desk.expectBox(NoSuchRow);
  desk.effects.cmdTest.click();  // asks nothing: there is no row 1
  for (int i = 0; i < 3; ++i) desk.add("1", "2", "100", "1");
  desk.effects.ListViewEffects_MouseDown(3);
  desk.effects.cmdRemoveEffect.click();
  desk.expectBox(NoSuchRow);
  desk.effects.cmdTest.click();
  desk.effects.cmdRemoveEffect.click();
  desk.expectBox("Effect 3 not registered");
  desk.expectBox(std::string("This test will take approximately 0") + Question);
  desk.expectBox("Effect 3 not registered");
  desk.effects.cmdTest.click();
  EXPECT_FALSE(desk.effects.ChaseTimer.enabled());
}

TEST(EffectLink, LoadsTheWindowWithoutShowingItAndBringsItDownForAGoFromOutside) {
  for (const bool fromOutside : {true, false}) {
    ScriptedDesk desk(linkedToEffect("2"));
    EffectsQueue& effects = desk.house.desk.windows.Effects;
    EXPECT_FALSE(effects.Window.Loaded);
    desk.expectBox("Effect 2 not registered");
    fromOutside ? desk.tool("ID_Go") : desk.xy().cmdGoForward.click();
    EXPECT_TRUE(effects.Window.Loaded);
    EXPECT_FALSE(effects.Window.Visible);
    EXPECT_EQ(effects.Window.WindowState, fromOutside ? WindowState::Minimised : WindowState::Normal);
    EXPECT_TRUE(desk.xy().State.Fading) << "the cue goes on";
    desk.tool("ID_Effects");
    EXPECT_TRUE(effects.Window.Visible);
    EXPECT_EQ(effects.Window.WindowState, WindowState::Normal);
  }
}

TEST(EffectLink, BeyondTheListSaysSoWithItsTextAndOnePastItFails) {
  struct Case {
    const char* target;
    const char* box;
  };
  for (const auto& [target, box] :
       {Case{" 3    ", "Effect  3     not registered"}, Case{"40000", "Effect 40000 not registered"},
        Case{" 2    ", NoSuchRow}, Case{"0", NoSuchRow}, Case{"first", NoSuchRow}}) {
    Desk desk(linkedToEffect(target));
    desk.add("1", "2", "100", "1");
    desk.expectBox(box);
    desk.tool("ID_Go");
    EXPECT_FALSE(desk.effects.ChaseTimer.enabled()) << target;
  }
}

TEST(Effect, OfTextsThatMakeNoChaseFailsWhenItIsStarted) {
  struct Case {
    std::array<const char*, 4> effect;
    const char* what;
  };
  for (const auto& [effect, what] :
       {Case{{"", "5", "100", "1"}, "no text"}, Case{{"1", "5", "fast", "1"}, "no number"},
        Case{{"1", "5", "100", "x"}, "no loops"}, Case{{"1", "32768", "1", "1"}, "stop beyond 16 bits"},
        Case{{"1", "1", "40000", "1"}, "speed beyond 16 bits"},
        Case{{"1", "3000000000", "1", "1"}, "beyond 32 bits"},
        Case{{"1", "512", "30000", "1000"}, "a time beyond 32 bits"}}) {
    Desk desk;
    desk.expectSystemError();
    desk.run(effect[0], effect[1], effect[2], effect[3]);
    EXPECT_FALSE(desk.effects.ChaseTimer.enabled()) << what;
  }
}

// ---- The chase

TEST(Chase, LightsOneChannelAfterTheOtherUntilItsTimeIsUp) {
  Desk desk(linkedToEffect(" 1    "));
  desk.add("1", "3", "110", "2");
  desk.tool("ID_Go");
  EXPECT_EQ(desk.walk(110, 7), "1.2.3..2...")
      << "a merge falls on the fourth tick; the last channel of the last pass stays dark";
  EXPECT_FALSE(desk.effects.ChaseTimer.enabled());
}

TEST(Chase, StepHoldsUntilTheNextMergeAndReachesTheWireOnlyIfASendFallsBetween) {
  Desk desk;
  desk.run("1", "9", "110", "1");
  desk.runTo(119);
  EXPECT_THAT(desk.lit(), ElementsAre(1));
  EXPECT_EQ(desk.wire(1), 0);
  desk.runTo(120);  // the send comes before the merge
  EXPECT_EQ(desk.wire(1), 255);
  EXPECT_THAT(desk.lit(), IsEmpty());

  Desk unseen;
  unseen.run("1", "9", "35", "1");
  unseen.runTo(34);
  const auto sources = unseen.show.LevelSource;
  unseen.runTo(39);
  EXPECT_THAT(unseen.lit(), ElementsAre(1));
  EXPECT_EQ(unseen.show.LevelSource, sources) << "a chase is no source of the merge";
  unseen.runTo(60);  // merged away at 40
  EXPECT_EQ(unseen.wire(1), 0);
}

TEST(Chase, DarkensTheChannelBelowItsStartAtEachWrap) {
  Desk desk;
  desk.show.SubLevels[channelIndex(4)] = 80;
  desk.run("5", "6", "110", "2");
  const auto level = [&](int channel) { return int{desk.show.DMXOutput[channelIndex(channel)]}; };
  desk.runTo(110);
  EXPECT_EQ(level(4), 0) << "the first step clears the channel before it";
  desk.runTo(220);
  EXPECT_EQ(level(4), 80) << "the merge has brought it back";
  desk.runTo(330);  // the wrap
  EXPECT_EQ(level(4), 0);
  EXPECT_EQ(level(5), 255);
  EXPECT_EQ(level(6), 0);
  desk.runTo(430);
  desk.show.DMXOutput[channelIndex(6)] = 80;
  desk.effects.chaseDuration = 0;
  desk.effects.ChaseTimer_Timer();
  EXPECT_EQ(level(6), 0) << "the end darkens what would have come next";
  EXPECT_FALSE(desk.effects.ChaseTimer.enabled());
}

TEST(Chase, EndsBesideTheChannelLitLastWhichOnlyTheMergeTakesDown) {
  Desk desk;
  desk.run("5", "9", "9", "1");  // 45 ms: ticks at 9, 18, 27, 36 and 45
  desk.runTo(36);
  EXPECT_THAT(desk.lit(), ElementsAre(8));
  desk.runTo(42);
  EXPECT_THAT(desk.lit(), IsEmpty()) << "merged away at 40";
  Desk late;
  late.run("5", "9", "9", "1");
  late.runTo(18);
  late.house.clock.pass(Milliseconds(60));
  late.effects.ChaseTimer_Timer();
  EXPECT_THAT(late.lit(), ElementsAre(6)) << "the clock ended it, behind two steps only";
  EXPECT_FALSE(late.effects.ChaseTimer.enabled());
}

TEST(Chase, OfOneChannelLightsItAtEachTick) {
  Desk desk;
  desk.run("7", "7", "110", "3");
  EXPECT_EQ(desk.walk(110, 4), "7.7...");
  EXPECT_FALSE(desk.effects.ChaseTimer.enabled());
}

TEST(Chase, WithStopBelowStartEndsAtItsFirstTick) {
  for (const char* start : {"4", "6"}) {
    Desk desk;
    desk.run(start, "3", "110", "2");
    desk.runTo(109);
    EXPECT_TRUE(desk.effects.ChaseTimer.enabled());
    desk.runTo(110);
    EXPECT_FALSE(desk.effects.ChaseTimer.enabled());
    EXPECT_THAT(desk.lit(), IsEmpty());
  }
}

TEST(Chase, WithoutSpeedRunsWithoutAStepUntilAnotherStarts) {
  Desk desk;
  desk.effects.cmboEffects.choose(4);
  desk.effects.cmdAddEffect.click();
  desk.effects.doEffect("1");
  EXPECT_EQ(desk.effects.chaseDuration, 0);
  desk.run("1", "5", "0", "9");
  desk.runTo(1000);
  EXPECT_TRUE(desk.effects.ChaseTimer.enabled());
  EXPECT_THAT(desk.lit(), IsEmpty());
  desk.run("3", "5", "110", "1");
  desk.runTo(1110);
  EXPECT_THAT(desk.lit(), ElementsAre(3));
}

TEST(Chase, WithASpeedBelowZeroFailsAndNeverTicksNotEvenAtTheSpeedBefore) {
  Desk desk;
  desk.run("1", "9", "110", "1");
  desk.runTo(110);
  desk.expectSystemError();
  desk.run("5", "2", "-100", "9");  // both differences below 0: a time above it
  EXPECT_EQ(desk.effects.chaseDuration, 1800);
  desk.runTo(1000);
  EXPECT_THAT(desk.lit(), IsEmpty());
  EXPECT_EQ(desk.effects.chaseChannel, 5);
}

TEST(Chase, StartedAgainBeginsAnewAndLeavesTheOldLightToTheMerge) {
  Desk desk;
  desk.add("1", "9", "105", "1");
  desk.add("21", "29", "10", "1");
  desk.effects.doEffect("1");
  desk.runTo(210);
  desk.effects.doEffect("2");
  EXPECT_THAT(desk.lit(), ElementsAre(2));
  desk.runTo(220);
  EXPECT_THAT(desk.lit(), ElementsAre(2, 21)) << "the grid begins with the start";
  desk.runTo(259);
  EXPECT_THAT(desk.lit(), ElementsAre(24)) << "merged at 240";
}

TEST(Chase, LastsItsTimeAlsoWhereTheClockTurnsToItsLowestValue) {
  Desk desk;
  constexpr std::int64_t Start = INT32_MAX - 150;
  desk.house.clock.pass(Milliseconds(Start));
  desk.run("1", "10", "100", "1");
  desk.runTo(Start + 950);
  EXPECT_TRUE(desk.effects.ChaseTimer.enabled());
  desk.runTo(Start + 1100);
  EXPECT_FALSE(desk.effects.ChaseTimer.enabled());
}

TEST(Chase, LosesStepsToLateTicksAndNoTime) {
  Desk desk;
  desk.run("1", "50", "10", "1");
  desk.runTo(20);
  desk.house.clock.pass(Milliseconds(255));  // the desk stood still
  desk.runTo(279);
  EXPECT_EQ(desk.effects.chaseChannel, 4) << "one tick made up for all that were due";
  desk.runTo(499);
  EXPECT_TRUE(desk.effects.ChaseTimer.enabled());
  desk.runTo(500);
  EXPECT_FALSE(desk.effects.ChaseTimer.enabled());
  EXPECT_EQ(desk.effects.chaseChannel, 26);
}

TEST(Chase, GoesOnPastChannelsThatArentThereWithABoxPerOnset) {
  Desk above;
  above.run("511", "514", "110", "2");
  above.runTo(220);
  EXPECT_THAT(above.lit(), ElementsAre(512));
  above.expectSystemError();  // 513 has no place
  above.runTo(330);
  above.expectSystemError();  // and now 514 hasn't either, nor 513 to be cleared
  above.runTo(660);
  EXPECT_THAT(above.lit(), ElementsAre(512)) << "the second pass";
  EXPECT_TRUE(above.effects.ChaseTimer.enabled());
  above.expectSystemError();
  above.runTo(880);
  EXPECT_FALSE(above.effects.ChaseTimer.enabled());

  Desk zero;
  zero.run("0", "1", "110", "2");
  zero.expectSystemError();
  zero.runTo(220);
  EXPECT_THAT(zero.lit(), ElementsAre(1));
  zero.expectSystemError();
  zero.runTo(330);
  EXPECT_TRUE(zero.effects.ChaseTimer.enabled());
}

}  // namespace
}  // namespace velgrove::test
