// From the first step of the start-up to the answer of the open dialog.

#include "controls/files.h"
#include "core/lighting_desk.h"
#include "support/desks.h"

namespace velgrove::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class StartUp : public Desks {};

TEST_F(StartUp, WithoutAnInterfaceFinishesAndLevelsAreComputed) {
  open = writeShow();
  auto* const desk = start();
  EXPECT_EQ(desk->windows.Comm.Version.Caption, "USB Virtual Comm - NOT FOUND");
  EXPECT_EQ(desk->frame.Window.Caption, "Velgrove - Test" + std::string(46, ' '));
  EXPECT_TRUE(desk->windows.ABQ->Window.Visible && desk->windows.XYQ->Window.Visible);
  EXPECT_EQ(desk->frame.sbStatusBar.Text, "online");
  desk->show.ManualLevels[4] = 50;
  runOn(40);
  EXPECT_EQ(desk->show.DMXOutput[4], 50);
  EXPECT_EQ(desk->windows.ActiveDocument->GetCurrentView()->colSubMasters().count(), 24);
  EXPECT_EQ(desk->windows.ActiveDocument->LastChannel, 3);
}

TEST_F(StartUp, TheSplashStandsOverTheFrameAndTellsTheInterfacesStateUntilTheDialogComes) {
  boxAttached = true;
  auto* const desk = make();
  desk->Splash.Painted = false;
  std::vector<std::string> seen;
  house->onWait = [&] {
    const Form& splash = desk->Splash.Window;
    const Form& dialog = desk->OpenProject.Window;
    seen.push_back(std::string(splash.Visible && splash.Modal ? "splash" : "") +
                   (desk->frame.Window.Visible ? " frame" : "") +
                   (dialog.Visible && dialog.Modal ? " dialog" : ""));
    desk->Splash.Painted = true;
    if (dialog.Visible) desk->OpenProject.CancelButton.click();
  };
  house->start();
  EXPECT_THAT(seen, ElementsAre("splash", " frame dialog"));
  EXPECT_EQ(desk->Splash.Status.Caption, "DMX TX/RX");
  EXPECT_TRUE(desk->windows.Comm.SendTimer.enabled());
}

TEST_F(StartUp, ASplashThatIsShownLaterGoesByItself) {
  auto* const desk = start();
  desk->Splash.Form_Load();
  runOn(2499);
  EXPECT_TRUE(desk->Splash.Window.Visible);
  runOn(1);
  EXPECT_FALSE(desk->Splash.Window.Visible);
}

TEST_F(StartUp, PreparesTheShapesOfAllFixtureTypes) {
  folders.graphics = folder / "graphics";
  fs::create_directories(folders.graphics);
  for (const auto& file : fs::directory_iterator(fs::path(SHOW_DATA_DIR) / "../graphics"))
    if (file.path().extension() == ".dxf") fs::copy(file, folders.graphics);
  start();
  for (const char* type : {"fresnel", "leko", "par38", "practical", "scoop", "icue"})
    EXPECT_TRUE(fs::exists(folders.graphics / (std::string(type) + ".cad"))) << type;
}

TEST_F(StartUp, AUsersFirstStartFindsTheShowsThatCameWithTheDesk) {
  folders.firstShows = folder / "share";
  const std::string demo = readFile(writeShow({}, "share/demo.kel"));
  write("share/README", "");
  auto* const desk = start();
  EXPECT_THAT(desk->OpenProject.filList.items(), ElementsAre("demo.kel"));
  EXPECT_EQ(readFile(data / "demo.kel"), demo);
  EXPECT_FALSE(fs::exists(data / "README"));

  fs::remove(data / "demo.kel");
  start();
  EXPECT_FALSE(fs::exists(data / "demo.kel")) << "what the user has thrown away stays away";
}

TEST_F(StartUp, AFirstShowThatCannotBeCopiedIsToldAndTheDeskStarts) {
  folders.firstShows = folder / "share";
  fs::create_directories(folders.firstShows);
  fs::create_symlink("nowhere", folders.firstShows / "gone.kel");
  auto* const desk = start();
  EXPECT_THAT(takeBoxes(), ElementsAre(HasSubstr("gone.kel")));
  EXPECT_TRUE(desk->frame.Window.Visible);
}

TEST_F(StartUp, CancellingTheFirstDialogLeavesAnEmptyFrame) {
  auto* const desk = make();
  desk->show.DMXOutput[7] = 99;
  house->onWait = [desk] { desk->OpenProject.CancelButton.click(); };
  house->start();
  EXPECT_EQ(desk->show.CurrentProjectIndex, 0);
  EXPECT_EQ(desk->windows.ABQ, nullptr);
  EXPECT_EQ(desk->show.DMXOutput[7], 99) << "no level is touched";
  desk->show.ManualLevels[4] = 50;
  runOn(100);
  EXPECT_EQ(desk->show.DMXOutput[4], 0) << "without a document nothing merges";
}

TEST_F(StartUp, AShowBeginsInTheDark) {
  ShowMaker maker;
  auto project = maker.project();
  project->colViews().item(1)->colFixtures().item(1)->Level = 80;
  open = write("lit.kel", velgrove::writeShow(*project));
  auto* const desk = make();
  desk->show.ManualLevels[0] = desk->show.DMXOutput[0] = 70;
  desk->show.XYLevels[0] = 60;
  desk->show.LevelSource[0] = 2;
  house->onWait = [&] {
    desk->OpenProject.Window.Visible = false;
    desk->show.ProjectFileName = open;
    desk->frame.LoadProject(1);
  };
  house->start();
  EXPECT_EQ(desk->show.ManualLevels[0] + desk->show.DMXOutput[0], 0);
  EXPECT_EQ(desk->show.XYLevels[0] + desk->show.LevelSource[0], 0);
  EXPECT_EQ(desk->windows.DocumentForm->GetCurrentView()->colFixtures().item(1)->Level, 0);
}

// ---- Settings

TEST_F(StartUp, AFirstStartTakesTheDefaultsAndTheWholeScreen) {
  auto* const desk = start();
  const Form& frame = desk->frame.Window;
  EXPECT_EQ(std::tuple(frame.Left, frame.Top, frame.Width, frame.Height), std::tuple(1000, 1000, 6500, 6500));
  EXPECT_EQ(frame.WindowState, WindowState::Maximised);
  EXPECT_FALSE(desk->frame.SubPaneVisible);
  EXPECT_FALSE(desk->show.DMXDimmers || desk->show.DMXSubmasters ||
               desk->windows.Preferences.triggerEnabled());
  EXPECT_EQ(desk->show.DefaultUp, 0);
}

TEST_F(StartUp, SettingsComeIn) {
  writeSettings(
      "[Velgrove.Project]\nUp = '4'\nDown = '5'\nDelay = '6'\nDMXDimmers = '-1'\nPREF_SHOWSUBS = '-1'\n"
      "Base = '1'\nBarRows = '7'\n"
      "[Velgrove.Settings]\nMainLeft = '1200.5'\nMainMaximised = '0'\n");
  ShowMaker maker;
  auto project = maker.project();
  project->colQueueData().item(1)->colQueueEntries().Remove(1);
  open = write("a.kel", velgrove::writeShow(*project));
  auto* const desk = start();
  EXPECT_TRUE(desk->show.DMXDimmers);
  EXPECT_FALSE(desk->show.DMXSubmasters);
  EXPECT_TRUE(desk->frame.SubPaneVisible);
  EXPECT_TRUE(desk->windows.Preferences.triggerEnabled());
  EXPECT_EQ(desk->show.BarRows, 7);
  EXPECT_EQ(desk->frame.Window.Left, 1200.5F);
  EXPECT_EQ(desk->frame.Window.WindowState, WindowState::Normal);
  const auto& blackout = *desk->windows.ABQ->State.QueueData->colQueueEntries().item(1);
  EXPECT_EQ(std::tuple(blackout.Up, blackout.Down, blackout.Delay), std::tuple(4, 5, 6));
  EXPECT_EQ(blackout.EntryQueueList, 2);
}

TEST_F(StartUp, ASettingThatIsNoNumberIsOneErrorAndTheRestComesIn) {
  writeSettings("[Velgrove.Project]\nUp = 'soon'\nDown = '5'\nBase = 'on'\n");
  auto* const desk = start();
  EXPECT_THAT(takeBoxes(), ElementsAre(SystemError));
  EXPECT_EQ(desk->show.DefaultDown, 5);
  EXPECT_FALSE(desk->windows.Preferences.triggerEnabled());
  EXPECT_THAT(takeBoxes(), ElementsAre(SystemError, SystemError)) << "the form reads both anew";
}

TEST_F(StartUp, ADamagedSettingsFileIsToldAndTheDefaultsAreUsed) {
  writeSettings("not = [ a settings file");
  auto* const desk = start();
  EXPECT_THAT(takeBoxes(), ElementsAre(HasSubstr("settings.toml")));
  EXPECT_EQ(desk->frame.Window.Width, 6500);
  EXPECT_EQ(desk->Settings.GetSettingInt("Any", "Key", 7), 7);
}

TEST_F(StartUp, ARecentListOfMoreThanElevenLinesIsAnError) {
  std::string list;
  for (int i = 0; i < 12; ++i) list += "/shows/" + std::to_string(i) + ".kel\r\n";
  write("data/mru.dat", list);
  auto* const desk = start();
  EXPECT_THAT(takeBoxes(), ElementsAre(SystemError));
  EXPECT_EQ(desk->show.MRUCount, 11);
  EXPECT_EQ(desk->show.MRUList[10], "/shows/10.kel");
}

TEST_F(StartUp, AnErrorThatTheOperatorAbortsEndsTheProgram) {
  open = writeShow();
  auto* const desk = start();
  answer = BoxAnswer::Abort;
  desk->windows.XYQ->CueUp.setText("x");
  desk->act([&] { desk->windows.XYQ->UpDownCueUp.up(); });
  EXPECT_TRUE(house->quit);
  EXPECT_THAT(takeBoxes(), ElementsAre(SystemError)) << "one procedure asks once";
}

}  // namespace
}  // namespace velgrove::test
