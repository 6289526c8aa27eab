// The surfaces in the whole desk: the commands that open them, and what ties them to the rest.

#include "support/desks.h"

namespace velgrove::test {
namespace {

using testing::ElementsAre;

class Surfaces : public Desks {
 protected:
  LightingDesk& opened(const ShowMaker& maker = {}) {
    open = writeShow(maker);
    return *start();
  }
  void atStart(const std::string& settings) { writeSettings("[Velgrove.Project]\n" + settings + "\n"); }
};

TEST_F(Surfaces, BlackoutIsTheGrandMasterAtItsBottomAndTheMergeTakesItIn) {
  auto& desk = opened();
  desk.show.ManualLevels[2] = 255;
  tool("ID_Blackout");
  runOn(40);
  EXPECT_EQ(desk.show.DMXOutput[2], 5);
  EXPECT_EQ(desk.windows.GrandMaster.Level.text(), "-100");
  desk.windows.GrandMaster.cmdCancel.click();
  runOn(40);
  EXPECT_EQ(desk.show.DMXOutput[2], 255);
  tool("mnuViewLevelWheel");
  EXPECT_EQ(desk.windows.GrandMaster.Level.text(), "0");
}

TEST_F(Surfaces, ThePanelShowsAtStartByItsSettingAndItsNamesComeWithTheShow) {
  for (const auto& [setting, shows] : {std::pair("-1", true), {"0", false}, {"1", false}}) {
    atStart(std::string("PREF_SHOWSUBS = '") + setting + "'");
    EXPECT_EQ(opened().frame.SubPaneVisible, shows) << setting;
  }
  LightingDesk& desk = house->desk;
  frmSubPane& panel = desk.windows.SubPane;
  EXPECT_EQ(panel.name(3).text(), " ");
  panel.Command1_MouseDown(3, 2, 0, 0, 0);
  panel.Record.txtName.setText("Storm");
  panel.Record.cmdRecord.click();
  desk.SaveAll();
  opened();
  EXPECT_EQ(house->desk.windows.SubPane.name(3).text(), " ") << "another show";
  house->desk.show.ProjectFileName = folder / "a.kel";
  tool("mnuEditPreferences");
  house->desk.windows.Preferences.chkShowSub.toggle();
  EXPECT_FALSE(house->desk.frame.SubPaneVisible);
  EXPECT_EQ(house->desk.windows.DocumentForm->Window.WindowState, WindowState::Maximised);
  house->desk.windows.Preferences.chkShowSub.toggle();
  EXPECT_TRUE(house->desk.frame.SubPaneVisible);
}

TEST_F(Surfaces, ANewDeskHasBarsToShowAndEachToolOpensAWindowOfItsOwn) {
  auto& desk = opened();
  desk.show.DMXDimmers = true;
  desk.show.DMXInput[1] = 127;
  for (const char* id : {"ID_BarsOutput", "ID_BarsInput", "ID_BarsOutput"}) tool(id);
  ASSERT_EQ(desk.windows.Bars.size(), 3U);
  EXPECT_EQ(desk.windows.Bars[1]->Window.Caption, "Bar Style - DMX Input");
  EXPECT_EQ(desk.windows.Bars[2]->Window.Caption, "Bar Style - DMX Output");
  runOn(100);
  EXPECT_EQ(desk.windows.Bars[0]->Bars[1].Value, 50);
  EXPECT_TRUE(desk.windows.Bars[0]->Bars[191].Visible && !desk.windows.Bars[0]->Bars[192].Visible);
  desk.windows.closeBars(*desk.windows.Bars[0]);
  EXPECT_EQ(desk.windows.Bars.size(), 2U);
  EXPECT_TRUE(std::ranges::any_of(
      desk.openForms(), [](const OpenForm& each) { return each.form->Caption == "Bar Style - DMX Input"; }));
}

/// The first poll loads the preferences, which read the settings anew.
TEST_F(Surfaces, ThePollOfTheTriggerBringsTheSettingsBackAfterCancel) {
  boxAttached = true;
  atStart("Up = '4'\nBase = '1'");
  auto& desk = opened();
  tool("mnuEditPreferences");
  frmPreferences& form = desk.windows.Preferences;
  form.txtUp.setText("9");
  form.chkTrigger.toggle();
  form.cmdCancel.click();
  EXPECT_FALSE(form.Window.Loaded);
  desk.show.DefaultUp = 7;
  runOn(1100);
  EXPECT_TRUE(form.Window.Loaded && !form.Window.Visible);
  EXPECT_EQ(std::tuple(desk.show.DefaultUp, form.chkTrigger.Value), std::tuple(4, 1));
}

TEST_F(Surfaces, TheTimersOfThePlotOnTheScreenAreBeyondTheTimings) {
  auto& desk = opened();
  tool("mnuEditPreferences");
  desk.windows.Preferences.buttonTimings.click();
  EXPECT_EQ(takeBoxes().size(), 1U);
  desk.windows.Timings.txtDisplayRate.setText("1000");
  answer = BoxAnswer::Yes;
  desk.windows.Timings.cmdRefresh.click();
  EXPECT_EQ(takeBoxes().size(), 2U);
  EXPECT_EQ(desk.windows.DocumentForm->UpdateDisplay.interval(), 333);
  desk.show.ManualLevels[0] = 99;
  runOn(400);
  EXPECT_EQ(desk.windows.DocumentForm->GetCurrentView()->colFixtures().item(1)->Level, 99);
}

TEST_F(Surfaces, TheTimingsPutBackTheSendTheReadingAndTheFadesOfXYAlone) {
  boxAttached = true;
  auto& desk = opened();
  tool("mnuEditPreferences");
  desk.windows.Preferences.buttonTimings.click();
  takeBoxes();
  const std::vector<Timer*> timers{&desk.windows.Comm.SendTimer, &desk.windows.Comm.RecieveTimer,
                                   &desk.windows.XYQ->q_timer, &desk.windows.ABQ->q_timer,
                                   &desk.windows.Comm.TriggerTimer};
  for (Timer* timer : timers) timer->setInterval(77);
  desk.windows.Timings.cmdDefault.click();
  std::vector<int> intervals;
  for (const Timer* timer : timers) intervals.push_back(timer->interval());
  EXPECT_THAT(intervals, ElementsAre(30, 100, 30, 77, 77));
}

TEST_F(Surfaces, ReceivedLevelsMoveTheSubmastersAsManyAsWereSaved) {
  boxAttached = true;
  auto& desk = opened();
  tool("ID_subsOn");
  EXPECT_TRUE(desk.windows.Comm.RecieveTimer.enabled());
  desk.show.NUMSubs = 2;
  house->box.setInput(2, 128);
  runOn(800);
  EXPECT_EQ(desk.windows.SubPane.level(1).Caption, "50");
}

TEST_F(Surfaces, AllOfThemCloseWithTheDesk) {
  auto& desk = opened();
  for (const char* id : {"ID_GrandMaster", "mnuEditPreferences", "ID_BarsInput"}) tool(id);
  desk.windows.SubPane.Command1_Click(1);
  desk.windows.SubPane.Command1_MouseDown(1, 2, 0, 0, 0);
  desk.windows.Preferences.buttonTimings.click();
  takeBoxes();
  desk.show.ExitConfirmed = true;
  desk.ShutdownApp();
  takeBoxes();
  const Windows& windows = desk.windows;
  for (const Form* form :
       {&windows.SubPane.Window, &windows.SubPane.Fader.Window, &windows.SubPane.Record.Window,
        &windows.GrandMaster.Window, &windows.Preferences.Window, &windows.Timings.Window})
    EXPECT_FALSE(form->Loaded || form->Visible) << form->Caption;
  EXPECT_TRUE(windows.Bars.empty());
  EXPECT_EQ(desk.show.CurrentSubMasterIndex, -1);
}

}  // namespace
}  // namespace velgrove::test
