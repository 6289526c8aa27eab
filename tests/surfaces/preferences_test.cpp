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
  std::vector<std::string> written;  ///< keys, in their order
  std::vector<bool> shown;           ///< what the panel was told
  int maximised = 0;
  frmPreferences form{
      show,
      machine,
      {.setting = [this](const std::string& key) { return store.contains(key) ? store[key] : "0"; },
       .saveSetting =
           [this](const std::string& key, const std::string& text) {
             written.push_back(key);
             store[key] = text;
           },
       .showSubPane = [this](bool visible) { shown.push_back(visible); },
       .maximiseDocument = [this] { ++maximised; },
       .showTimings = [] {}}};

  void TearDown() override { EXPECT_TRUE(boxes.empty()); }
  std::vector<Box> takeBoxes() { return std::exchange(boxes, {}); }
  /// The boxes of the input: "nothing dimmers submasters".
  [[nodiscard]] std::string input() const {
    return std::to_string(form.chkDMXNothing.Value) + std::to_string(form.chkDMXDimmers.Value) +
           std::to_string(form.chkDMXSubmasters.Value);
  }
};

TEST_F(Preferences, SaveWritesAllKeysInTheirOrderAndTakesThemOver) {
  store = {{"Up", "4"}, {"BarRows", "8"}, {"DMXDimmers", "1"}, {"PREF_SHOWSUBS", "-1"}};
  form.Show();
  form.txtNumSubs.setText("12");
  form.txtDown.setText(" 3 ");
  form.cmdSave.click();
  EXPECT_THAT(written,
              ElementsAre("Base", "Record", "Down", "Delay", "Up", "DMXNothing", "DMXSubmasters",
                          "DMXDimmers", "PREF_SHOWSUBS", "BarColumns", "BarRows", "BarGap", "NUMSubs"));
  EXPECT_EQ(std::tuple(store["DMXNothing"], store["DMXDimmers"], store["PREF_SHOWSUBS"], store["Down"]),
            std::tuple("0", "1", "-1", " 3 "));
  EXPECT_EQ(std::tuple(show.DefaultUp, show.DefaultDown, show.BarRows, show.NUMSubs),
            std::tuple(4, 3, 8, 12));
  EXPECT_EQ(std::pair(show.DMXDimmers, show.DMXSubmasters), std::pair(true, false));
  EXPECT_FALSE(form.Window.Loaded);
}

TEST_F(Preferences, TwoBoxesOpenClearAndTheNumberOfSubmastersWaitsForSave) {
  store = {
      {"DMXNothing", "1"}, {"DMXSubmasters", "1"}, {"PREF_SHOWSUBS", "1"}, {"NUMSubs", "9"}, {"Base", "1"}};
  form.Show();
  EXPECT_EQ(std::pair(input(), form.chkShowSub.Value), std::pair(std::string("001"), 0));
  EXPECT_EQ(std::tuple(form.txtNumSubs.text(), show.NUMSubs, show.PrefShowSubs), std::tuple("9", 0, 1));
  form.txtNumSubs.setText("5");
  form.txtUp.setText("7");
  form.chkTrigger.toggle();
  form.cmdReset.click();
  EXPECT_EQ(std::tuple(input(), form.txtNumSubs.text(), form.txtUp.text(), form.chkTrigger.Value),
            std::tuple("101", "5", "0", 1));
  form.cmdCancel.click();
  EXPECT_EQ(show.DefaultUp, 0);
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
