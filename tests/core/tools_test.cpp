// Every tool of the frame reaches its action.

#include "core/lighting_desk.h"
#include "support/desks.h"

namespace velgrove::test {
namespace {

using testing::ElementsAre;

class Tools : public Desks {
 protected:
  LightingDesk* startWithCues() {
    ShowMaker maker;
    maker.ab = maker.xy = {{.number = 1, .up = 5, .down = 5, .look = {{1, 200}}}, {.number = 2}};
    open = writeShow(maker);
    return start();
  }
  [[nodiscard]] std::vector<std::string> enabledOf(const std::vector<const char*>& ids) {
    std::vector<std::string> enabled;
    for (const char* id : ids)
      if (toolState(id).Enabled) enabled.emplace_back(id);
    return enabled;
  }
};

TEST_F(Tools, ThoseThatNeedAShowAreEnabledWhileOneIsOpen) {
  const std::vector<const char*> ids{"ID_Save",       "ID_SelectPointer",   "ID_AddLight",
                                     "ID_SelectGrid", "ID_Rotate",          "ID_ABQ",
                                     "ID_XYQ",        "ID_Effects",         "ID_GrandMaster",
                                     "ID_LevelWheel", "mnuLightAddFixture", "ID_CueReset",
                                     "ID_DelLight",   "ID_FluidZoom",       "ID_Pan",
                                     "ID_Test",       "ID_OpenProject",     "ID_CueWindow",
                                     "ID_CheckShow",  "ID_PrintSheets"};
  auto* const desk = start();
  EXPECT_THAT(enabledOf(ids), ElementsAre("ID_OpenProject"));
  desk->show.ProjectFileName = writeShow();
  desk->frame.LoadProject(1);
  EXPECT_EQ(enabledOf(ids).size(), ids.size());
  EXPECT_TRUE(toolState("ID_Go").Enabled);
}

TEST_F(Tools, OfAWindowShowItInFrontAndRestoreIt) {
  auto* const desk = startWithCues();
  Windows& windows = desk->windows;
  const std::vector<std::pair<const char*, Form*>> cases{{"ID_ABQ", &windows.ABQ->Window},
                                                         {"ID_XYQ", &windows.XYQ->Window},
                                                         {"ID_Effects", &windows.Effects.Window},
                                                         {"ID_viewStatus", &windows.Comm.Window},
                                                         {"mnuHelpAbout", &desk->About.Window}};
  for (const auto& [id, form] : cases) {
    const auto fronts = form->Fronts;
    form->Visible = false;
    form->WindowState = WindowState::Normal;
    tool(id);
    EXPECT_TRUE(form->Visible && form->Fronts > fronts) << id;
  }
  for (const auto& [id, form] : std::vector(cases.begin(), cases.begin() + 3)) {
    form->WindowState = WindowState::Minimised;
    tool(id);
    EXPECT_EQ(form->WindowState, WindowState::Normal) << id;
  }
  desk->About.cmdOK.click();
  EXPECT_FALSE(desk->About.Window.Visible);
}

TEST_F(Tools, AskTheFaceToArrangeTheWindows) {
  auto* const desk = start();
  int code = 0;
  for (const char* id :
       {"mnuWindowCascade", "mnuWindowTileHorizontal", "mnuWindowTileVertical", "mnuWindowArrangeIcons"}) {
    tool(id);
    EXPECT_EQ(desk->frame.Arrange.How, code++) << id;
  }
  EXPECT_EQ(desk->frame.Arrange.Count, 4U);
}

TEST_F(Tools, ThatAreUnfinishedOrHaveNoHelpSaySo) {
  start();
  for (const char* id : {"mnuViewStatusBar", "mnuViewToolbar", "mnuEditCut", "mnuHelpContents"}) tool(id);
  EXPECT_THAT(takeBoxes(),
              ElementsAre("Add 'mnuViewStatusBar_Click' code.", "Add 'mnuViewToolBar_Click' code.",
                          "Add 'mnuEditCut_Click' code.",
                          "Unable to display Help Contents. There is no Help associated with this project.",
                          "Please refer to owners manual for help, thank you. or call (555)-010-0142"));
  tool("mnuViewRefresh");
}

TEST_F(Tools, OfTheHelpShowTheManualWhereThereIsOne) {
  folders.manual = folder / "manual";
  write("manual/pages.json", "[]");
  auto* const desk = start();
  tool("mnuHelpContents");
  EXPECT_TRUE(desk->Help.Window.Visible);
  EXPECT_FALSE(desk->Help.Window.Modal);
  desk->Help.Unload();
  EXPECT_FALSE(desk->Help.Window.Visible);
}

// ---- The XY player

TEST_F(Tools, OfThePlayerShowAHiddenXYAndLeaveItShown) {
  auto* const desk = startWithCues();
  for (const char* id : {"ID_Go", "ID_StopFade", "ID_QPlus", "ID_QMinus", "ID_CueReset"}) {
    desk->windows.XYQ->Window.Visible = false;
    desk->windows.ABQ->Window.Visible = false;
    tool(id);
    EXPECT_TRUE(desk->windows.XYQ->Window.Visible) << id;
    EXPECT_FALSE(desk->windows.ABQ->Window.Visible) << id;
  }
}

TEST_F(Tools, BlackoutStopsThePlayersWhoseWindowsShow) {
  auto* const desk = startWithCues();
  for (QueueList* player : {desk->windows.ABQ.get(), desk->windows.XYQ.get()}) player->cmdGoForward.click();
  desk->windows.ABQ->Window.Visible = false;
  tool("ID_Blackout");
  EXPECT_FALSE(desk->windows.XYQ->q_timer.enabled());
  EXPECT_TRUE(desk->windows.ABQ->q_timer.enabled());
  desk->windows.ABQ->Window.Visible = true;
  tool("ID_Blackout");
  EXPECT_FALSE(desk->windows.ABQ->q_timer.enabled());
}

TEST_F(Tools, TheCuePanelAndTheStatusLineFollowThePlayers) {
  auto* const desk = startWithCues();
  tool("ID_QPlus");
  EXPECT_EQ(toolState("ID_CueWindow").Caption.rfind("Queue # 1.00", 0), 0U)
      << toolState("ID_CueWindow").Caption;
  desk->windows.XYQ->ListView2_MouseUp(2);
  EXPECT_EQ(desk->frame.sbStatusBar.Text, "online");
  EXPECT_EQ(desk->frame.StatusMessage, R"(Please select "Live" or "Blind" mode to modify this Cue.)");
}

// ---- What received levels do

TEST_F(Tools, OfTheInputSetTheModeTheReceiveTimerAndEachOthersState) {
  boxAttached = true;
  auto* const desk = startWithCues();
  const auto pressed = [this] {
    return std::tuple(toolState("ID_noInput").Pressed, toolState("ID_manualOn").Pressed,
                      toolState("ID_subsOn").Pressed);
  };
  tool("ID_manualOn");
  EXPECT_TRUE(desk->show.DMXDimmers && !desk->show.DMXSubmasters);
  EXPECT_EQ(pressed(), std::tuple(false, true, false));
  house->box.setInput(9, 120);
  runOn(300);
  EXPECT_EQ(desk->show.DMXOutput[8], 120);
  tool("ID_subsOn");
  EXPECT_TRUE(!desk->show.DMXDimmers && desk->show.DMXSubmasters);
  EXPECT_EQ(pressed(), std::tuple(false, false, true));
  tool("ID_noInput");
  EXPECT_FALSE(desk->windows.Comm.RecieveTimer.enabled());
  EXPECT_FALSE(desk->show.DMXDimmers || desk->show.DMXSubmasters);
  EXPECT_EQ(desk->show.DMXInput[8], 120) << "the last reading stands";
  EXPECT_EQ(pressed(), std::tuple(true, false, false));
}

// ---- The plot

TEST_F(Tools, LockingTheFixturesTwiceOpensThemAgain) {
  auto* const desk = startWithCues();
  tool("ID_LockFixtures");
  EXPECT_TRUE(desk->show.FixturesLocked && toolState("ID_LockFixtures").Pressed);
  EXPECT_FALSE(desk->windows.DocumentForm->Window.Enabled);
  desk->windows.openDocument();
  EXPECT_FALSE(desk->windows.DocumentForm->Window.Enabled) << "the lock holds for every plot";
  tool("ID_LockFixtures");
  EXPECT_FALSE(desk->show.FixturesLocked || toolState("ID_LockFixtures").Pressed);
  for (const auto& document : desk->windows.Documents) EXPECT_TRUE(document->Window.Enabled);
  EXPECT_THAT(takeBoxes(), ElementsAre("Fixtures Locked!", "Fixtures Unlocked."));
}

TEST_F(Tools, OfAFixtureTypeSetWhatTheLightToolPlaces) {
  auto* const desk = startWithCues();
  int type = 0;
  for (const char* id :
       {"mnuFresnel", "mnuLeko", "mnuPar38", "mnuPractical", "mnuScoop", "mnuMoving_Light"}) {
    tool(id);
    EXPECT_EQ(desk->show.SelectedFixtureType, ++type) << id;
    EXPECT_EQ(desk->windows.DocumentForm->MouseMode, tools::Light) << id;
  }
  tool("muScoop");
  EXPECT_EQ(desk->show.SelectedFixtureType, type) << "its id is misspelt, and so it is the pointer";
  type = 0;
  for (const char* id :
       {"mnuFresnelShape", "mnuLekoShape", "mnuPar38Shape", "mnuPracticalShape", "mnuScoopShape"}) {
    tool(id);
    EXPECT_EQ(desk->show.SelectedFixtureType, ++type) << id;
  }
}

TEST_F(Tools, AddingALightOffersTheTypes) {
  auto* const desk = startWithCues();
  tool("ID_AddLight");
  EXPECT_EQ(desk->show.SelectedFixtureType, 1);
  EXPECT_EQ(desk->frame.SSActiveToolBars1.lastPopUp().Set, "mnuLightAddFixture");
  desk->frame.SSActiveToolBars1_ToolDropDown("Rotate", 30, 40);
  EXPECT_EQ(desk->frame.SSActiveToolBars1.lastPopUp().Set, "mnuLightRotate");
  desk->frame.SSActiveToolBars1_ToolDropDown("AddLight", 50, 60);
  const auto& popUp = desk->frame.SSActiveToolBars1.lastPopUp();
  EXPECT_EQ(std::tuple(popUp.Set, popUp.x, popUp.y, popUp.Count),
            std::tuple("mnuLightAddFixture", 50, 60, 3U));
}

TEST_F(Tools, OfThePlotReachTheActiveDocument) {
  auto* const desk = startWithCues();
  frmDocument& plot = *desk->windows.DocumentForm;
  tool("ID_FluidZoom");
  EXPECT_EQ(plot.MouseMode, tools::FluidZoom);
  tool("ID_AddLight");
  EXPECT_EQ(plot.MouseMode, tools::Select) << "with another tool on, adding a light ends that";
  tool("mnuViewPan");
  EXPECT_EQ(plot.MouseMode, tools::None);
  tool("ID_DelLight");
  EXPECT_EQ(plot.MouseMode, tools::Delete);
  tool("ID_Rotate");
  EXPECT_EQ(plot.MouseMode, tools::Rotate);
  clsFixture& light = *plot.ActiveView->colFixtures().item(1);
  plot.FlpCAD1_ShapeNumberSelected(shape_types::BlockOrGroup, light.Shape);
  for (const auto& [id, angle] :
       {std::pair("mnuRot90right", 90), std::pair("mnuRot45right", 135), std::pair("mnuRot45left", 90),
        std::pair("mnuRot90Left", 0), std::pair("mnuRot180", -180)}) {
    tool(id);
    EXPECT_EQ(light.Angle, angle) << id;
  }
  const bool snap = plot.FlpCAD1.Snap;
  tool("mnuViewGrid");
  EXPECT_NE(plot.FlpCAD1.Snap, snap);
  const double width = plot.FlpCAD1.limits().width();
  tool("ID_ZoomIn");
  EXPECT_LT(plot.FlpCAD1.limits().width(), width);
  plot.FlpCAD1.setProperty(6, 9);
  tool("ID_EnableCAD");
  EXPECT_EQ(plot.FlpCAD1.property(223), 1);
  EXPECT_EQ(plot.FlpCAD1.property(6) + plot.FlpCAD1.property(4), 0);
}

TEST_F(Tools, ThatNeedADocumentRaiseTheErrorPatternWithoutOne) {
  start();
  for (const char* id : {"ID_SelectPointer", "ID_Rotate", "mnuRot180", "mnuViewGrid", "ID_Go", "ID_ABQ",
                         "mnuFixtureAllZero", "ID_Stop", "a tool that nobody made"}) {
    tool(id);
    EXPECT_THAT(takeBoxes(), testing::ElementsAre(SystemError)) << id;
  }
}

TEST_F(Tools, WithoutCodeOfTheirOwnAreThePointer) {
  const frmDocument& plot = *startWithCues()->windows.DocumentForm;
  for (const char* id :
       {"mnuFileProperties", "mnuFileClose",  "mnuFilePageSetup",  "mnuFileSend",       "mnuFileSaveAll",
        "mnuToolsOptions",   "mnuDMXIn",      "mnuFixtureAllZero", "mnuLightNetSelect", "mnuLightSelectAll",
        "mnuInts",           "mnuTest",       "ID_Stop",           "ID_LevelWheel",     "ID_CueWindow",
        "ID_subsTrigger",    "ID_SelectGrid", "mnuViewFluidZoom",  "muScoop",           "nothing known"}) {
    tool("ID_FluidZoom");
    tool(id);
    EXPECT_EQ(plot.MouseMode, tools::Select) << id;
  }
}

TEST_F(Tools, WithTheNameOfADocumentBringItsWindowToTheFront) {
  auto* const desk = startWithCues();
  Form& form = desk->windows.DocumentForm->Window;
  form.Caption = "Document1";
  const auto fronts = form.Fronts;
  tool("Document2");
  EXPECT_EQ(form.Fronts, fronts);
  tool("Document1");
  EXPECT_EQ(form.Fronts, fronts + 1);
}

TEST_F(Tools, PrintingPutsTheActivePlotOnPaperAndSaysNothingWhenItFails) {
  auto* const desk = startWithCues();
  std::string title;
  desk->machine.Dialogs.choosePrinter = [&](const std::string& asked) {
    title = asked;
    return false;
  };
  const Drawing* printed = nullptr;
  desk->machine.Dialogs.printView = [&](const Drawing& plot) { printed = &plot; };
  tool("mnuFilePrint");
  EXPECT_EQ(title, "Print");
  EXPECT_EQ(printed, nullptr);
  desk->machine.Dialogs.choosePrinter = [](const std::string&) -> bool {
    throw RunTimeError(Fault::Device, "no printer");
  };
  tool("mnuFilePrint");
  EXPECT_EQ(printed, nullptr);
  desk->machine.Dialogs.choosePrinter = [](const std::string&) { return true; };
  tool("mnuFilePrint");
  EXPECT_EQ(printed, &desk->windows.DocumentForm->FlpCAD1);
  EXPECT_TRUE(printed->PrintRationSameasView);
}

}  // namespace
}  // namespace velgrove::test
