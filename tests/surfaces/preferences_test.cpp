// The preferences with their gaps, and the timings behind them.

#include <map>

#include <gmock/gmock.h>

#include "support/plot_rig.h"
#include "surfaces/frm_preferences.h"
#include "surfaces/frm_timings.h"

namespace velgrove::test {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class Preferences : public PlotRig {
 protected:
  std::map<std::string, std::string> store;
  SettingTexts written;     ///< in their order
  std::vector<bool> shown;  ///< what the panel was told
  int maximised = 0;
  frmPreferences form{
      show,
      machine,
      {.setting = [this](const std::string& key) { return store.contains(key) ? store[key] : "0"; },
       .saveSettings =
           [this](const SettingTexts& texts) {
             written = texts;
             for (const auto& [key, text] : texts) store[key] = text;
           },
       .showSubPane = [this](bool visible) { shown.push_back(visible); },
       .maximiseDocument = [this] { ++maximised; },
       .showTimings = [] {}}};

  void TearDown() override { EXPECT_TRUE(boxes.empty()); }
  std::vector<Box> takeBoxes() { return std::exchange(boxes, {}); }
  std::array<TextBox*, 7> texts() {
    return {&form.txtUp,   &form.txtDown, &form.txtDelay,  &form.txtColumns,
            &form.txtRows, &form.txtGap,  &form.txtNumSubs};
  }
  [[nodiscard]] std::string fields() {
    std::string all;
    for (const TextBox* field : texts()) all += (all.empty() ? "" : " ") + field->text();
    return all;
  }
  /// What the rest of the desk reads: up, down, delay, columns, rows, gap.
  [[nodiscard]] std::string taken() const {
    std::string all;
    for (const int value :
         {show.DefaultUp, show.DefaultDown, show.DefaultDelay, show.BarColumns, show.BarRows, show.BarGap})
      all += (all.empty() ? "" : " ") + std::to_string(value);
    return all;
  }
  /// The boxes of the input: "nothing dimmers submasters".
  [[nodiscard]] std::string input() const {
    return std::to_string(form.chkDMXNothing.Value) + std::to_string(form.chkDMXDimmers.Value) +
           std::to_string(form.chkDMXSubmasters.Value);
  }
};

TEST_F(Preferences, EachSettingComesIntoItsFieldAndBackByReset) {
  store = {{"Up", "1"},     {"Down", "2"},    {"Delay", "3"},  {"BarColumns", "4"},   {"BarRows", "5"},
           {"BarGap", "6"}, {"NUMSubs", "7"}, {"Record", "1"}, {"PREF_SHOWSUBS", "1"}};
  form.Show();
  EXPECT_EQ(fields(), "1 2 3 4 5 6 7");
  EXPECT_EQ(taken(), "1 2 3 4 5 6");
  EXPECT_EQ(std::tuple(form.chkRecord.Value, form.chkTrigger.Value, show.RecordSetting, show.TriggerSetting),
            std::tuple(1, 0, 1, 0));
  EXPECT_EQ(std::tuple(form.chkShowSub.Value, show.PrefShowSubs, show.NUMSubs), std::tuple(0, 1, 0));
  for (TextBox* field : texts()) field->setText("99");
  form.chkRecord.Value = 0;
  form.chkTrigger.Value = 1;
  store["DMXNothing"] = store["Up"] = "8";
  form.cmdReset.click();
  EXPECT_EQ(fields(), "1 2 3 4 5 6 99") << "from what holds now, not from the settings";
  EXPECT_EQ(std::tuple(form.chkRecord.Value, form.chkTrigger.Value, input()), std::tuple(1, 0, "100"));
}

TEST_F(Preferences, SaveWritesAllInOneAndTakesItOver) {
  store = {{"DMXDimmers", "1"}, {"PREF_SHOWSUBS", "-1"}};
  form.Show();
  int value = 11;
  for (TextBox* field : texts()) field->setText(std::to_string(value++));
  form.chkTrigger.toggle();
  form.cmdSave.click();
  EXPECT_EQ(written, (SettingTexts{{"Base", "1"},
                                   {"Record", "0"},
                                   {"Down", "12"},
                                   {"Delay", "13"},
                                   {"Up", "11"},
                                   {"DMXNothing", "0"},
                                   {"DMXSubmasters", "0"},
                                   {"DMXDimmers", "1"},
                                   {"PREF_SHOWSUBS", "-1"},
                                   {"BarColumns", "14"},
                                   {"BarRows", "15"},
                                   {"BarGap", "16"},
                                   {"NUMSubs", "17"}}));
  EXPECT_EQ(taken(), "11 12 13 14 15 16");
  EXPECT_EQ(std::tuple(show.NUMSubs, show.TriggerSetting, show.RecordSetting), std::tuple(17, 1, 0));
  EXPECT_EQ(std::pair(show.DMXDimmers, show.DMXSubmasters), std::pair(true, false));
  EXPECT_FALSE(form.Window.Loaded);
  form.Show();
  form.chkDMXSubmasters.toggle();
  form.cmdSave.click();
  EXPECT_EQ(std::pair(show.DMXDimmers, show.DMXSubmasters), std::pair(false, true));
}

/// The panel's box, and that of no input.
TEST_F(Preferences, TwoBoxesAlwaysOpenClear) {
  store = {{"DMXNothing", "1"}, {"PREF_SHOWSUBS", "1"}};
  form.Show();
  form.chkDMXNothing.toggle();
  form.chkShowSub.toggle();
  form.cmdCancel.click();
  form.Show();
  EXPECT_EQ(std::pair(form.chkDMXNothing.Value, form.chkShowSub.Value), std::pair(0, 0));
}

TEST_F(Preferences, TheBoxesOfTheInputExcludeEachOtherAndAllCanBeClear) {
  form.Show();
  for (const auto& [box, states] : {std::pair(&form.chkDMXSubmasters, "001"),
                                    {&form.chkDMXDimmers, "010"},
                                    {&form.chkDMXNothing, "100"},
                                    {&form.chkDMXNothing, "000"}}) {
    box->toggle();
    EXPECT_EQ(input(), states);
  }
  show.DMXDimmers = true;
  form.cmdSave.click();
  EXPECT_FALSE(show.DMXDimmers || show.DMXSubmasters);
}

TEST_F(Preferences, ATextThatIsNoNumberFailsAtItsPlaceAndTheRestHolds) {
  form.Show();
  form.txtDown.setText("3");
  form.txtUp.setText("");
  form.txtRows.setText("many");
  form.txtColumns.setText("20");
  form.txtNumSubs.setText("40000");
  form.chkDMXDimmers.toggle();
  form.cmdSave.click();
  EXPECT_THAT(takeBoxes(), SizeIs(3));
  EXPECT_THAT(written, SizeIs(13));
  EXPECT_EQ(std::tuple(show.DefaultDown, show.DefaultUp, show.BarColumns, show.BarRows, show.NUMSubs),
            std::tuple(3, 0, 20, 0, 0));
  EXPECT_TRUE(show.DMXDimmers);
  EXPECT_EQ(store["BarRows"], "many");
}

TEST_F(Preferences, ThePanelFollowsItsSettingAndNotTheBox) {
  store = {{"PREF_SHOWSUBS", "1"}};  // at a start with this the panel is hidden
  form.Show();
  form.chkShowSub.toggle();
  EXPECT_EQ(std::tuple(show.PrefShowSubs, maximised), std::tuple(0, 1));
  form.chkShowSub.toggle();
  EXPECT_EQ(std::tuple(show.PrefShowSubs, maximised), std::tuple(1, 1));
  EXPECT_THAT(shown, ElementsAre(false, true));
  form.cmdCancel.click();
  EXPECT_EQ(show.PrefShowSubs, 1) << "it acts at once, and Cancel leaves it";
}

TEST_F(Preferences, LoggingIsSwitchedBehindItsTwoBoxes) {
  form.Show();
  for (const auto& [title, text, logging] :
       {std::tuple("ENABING DEBUG MODE",
                   "NOTE: Enabling Logging can slow down processing, do not use while running a show!", true),
        {"DISABLE DEBUG MODE", "Logging is disabled!", false}}) {
    form.chkRecord.toggle();
    const auto told = takeBoxes();
    ASSERT_THAT(told, SizeIs(1));
    EXPECT_EQ(std::tuple(told[0].title, told[0].text, show.DebugLogging), std::tuple(title, text, logging));
  }
}

/// The poll looks at the box as it stands; asking loads the form, hidden.
TEST_F(Preferences, TheTriggerObeysTheBoxAtOnceAndTheSettingAfterCancel) {
  store = {{"Base", "1"}};
  EXPECT_TRUE(form.triggerEnabled());
  EXPECT_FALSE(form.Window.Visible);
  form.Show();
  form.chkTrigger.toggle();
  EXPECT_FALSE(form.triggerEnabled());
  form.cmdCancel.click();
  EXPECT_TRUE(form.triggerEnabled());
}

// ---- Timings

class Timings : public PlotRig {
 protected:
  Timer send{machine.timers, TimerRank::Send, 30, [] {}};
  Timer receive{machine.timers, TimerRank::Receive, 100, [] {}};
  Timer fade{machine.timers, TimerRank::FadeXY, 30, [] {}};
  bool showOpen = true;
  BoxAnswer toQuestion = BoxAnswer::Yes;
  frmTimings form{show,
                  machine,
                  {.SendTimer = [this]() -> Timer& { return send; },
                   .RecieveTimer = [this]() -> Timer& { return receive; },
                   .fadeTimer = [this] { return showOpen ? &fade : nullptr; }}};

  Timings() {
    machine.boxes.show = [this](const Box& box) {
      boxes.push_back(box);
      if (box.buttons == BoxButtons::YesNo) return toQuestion;
      return box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Ignore;
    };
  }
  void TearDown() override { EXPECT_TRUE(boxes.empty()); }
  std::vector<std::string> takeBoxes() {
    std::vector<std::string> texts;
    for (const Box& box : std::exchange(boxes, {})) texts.push_back(box.text.substr(0, 12));
    return texts;
  }
  [[nodiscard]] std::vector<std::string> texts() {
    std::vector<std::string> all;
    for (const TextBox* field : form.fields()) all.push_back(field->text());
    return all;
  }
};

TEST_F(Timings, OpensBehindItsWarningWithTheRatesAsTheyAre) {
  send.setInterval(25);
  show.NumChannels = 100;
  form.Show();
  EXPECT_THAT(takeBoxes(), ElementsAre("Warning: Mod"));
  EXPECT_THAT(texts(), ElementsAre("25", "100", "30", "333", "333", "40", "100"));
  form.Show();
  EXPECT_TRUE(boxes.empty());
  form.Unload();
  showOpen = false;
  fade.setInterval(99);
  form.Show();
  EXPECT_THAT(takeBoxes(), SizeIs(1));
  EXPECT_EQ(form.txtFadeRate.text(), "30");
}

TEST_F(Timings, UpdateTakesTheDisplayAndTheChannelsAlone) {
  form.Show();
  takeBoxes();
  for (TextBox* field : form.fields()) field->setText("77");
  toQuestion = BoxAnswer::No;
  form.cmdRefresh.click();
  EXPECT_EQ(show.NumChannels, 512);
  EXPECT_THAT(takeBoxes(), ElementsAre("Are you sure"));
  toQuestion = BoxAnswer::Yes;
  form.cmdRefresh.click();
  EXPECT_THAT(takeBoxes(), ElementsAre("Are you sure", "done"));
  EXPECT_EQ(show.NumChannels, 77);
  form.cmdSave.click();
  EXPECT_THAT(takeBoxes(), ElementsAre("Function not"));
  form.Unload();
  form.Show();
  takeBoxes();
  EXPECT_THAT(texts(), ElementsAre("30", "100", "30", "77", "333", "40", "77"));
  form.txtDisplayRate.setText("soon");
  form.txtNumFixtures.setText("-3");
  form.cmdRefresh.click();
  EXPECT_THAT(takeBoxes(), ElementsAre("Are you sure", "Application ", "done"));
  EXPECT_EQ(show.NumChannels, -3);
}

TEST_F(Timings, ResetPutsAllRatesBackWithoutAQuestion) {
  form.Show();
  takeBoxes();
  send.setEnabled(true);
  for (Timer* timer : {&send, &receive, &fade}) timer->setInterval(7);
  form.txtDisplayRate.setText("50");
  form.txtNumFixtures.setText("600");
  form.cmdRefresh.click();
  takeBoxes();
  EXPECT_EQ(show.NumChannels, 600);
  form.cmdDefault.click();
  EXPECT_EQ(std::tuple(send.interval(), receive.interval(), fade.interval(), show.NumChannels),
            std::tuple(30, 100, 30, 512));
  EXPECT_TRUE(send.enabled());
  EXPECT_THAT(texts(), ElementsAre("30", "100", "30", "333", "333", "40", "512"));
}

}  // namespace
}  // namespace velgrove::test
