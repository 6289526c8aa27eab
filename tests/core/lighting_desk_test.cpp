// Opening and saving shows, the recent list, the frame's tools, and what a broken show file does.

#include "core/lighting_desk.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "controls/files.h"
#include "dmx/box_line.h"
#include "support/scripted_desk.h"
#include "support/temp_folder.h"

namespace velgrove::test {
namespace {

namespace fs = std::filesystem;

class Desks : public testing::Test {
 protected:
  TempFolder temporary;
  const fs::path& folder = temporary.path();
  std::vector<std::string> boxes;
  HandClock clock;
  InterfaceBox box;
  std::string open;  ///< what the open dialog opens; "" cancels it
  bool quit = false;
  BoxAnswer answer = BoxAnswer::Ignore;
  std::function<void()> onBox;  ///< what the operator does while a box is open
  std::vector<InterfaceDevice> interfaces;

  std::unique_ptr<LightingDesk> start() {
    auto desk = std::make_unique<LightingDesk>(
        clock.clock(),
        MessageBoxes{.show =
                         [this](const Box& message) {
                           boxes.push_back(message.text);
                           if (onBox) onBox();
                           return message.buttons == BoxButtons::Ok ? BoxAnswer::Ok : answer;
                         },
                     .post = [this](const Box& message) { boxes.push_back(message.text); }},
        LightingDesk::Wiring{
            .windows = {.interface = {
                            .line = boxOnALine(box, [](Milliseconds) {}),
                            .findInterfaces = [this] { return interfaces; },
                            .findAgain = [](const InterfaceDevice&) { return std::optional<std::string>(); },
                            .triggerEnabled = [] { return false; },
                            .triggerGo = {},
                            .repaint = [] {}},
                        .showCuePanel = {},
                        .showStatus = {}},
            .settingsFolder = folder / "settings",
            .applicationFolder = folder,
            .dataFolder = folder / "data",
            .raisePriority = [] {},
            .openShow =
                [this] {
                  current->show.ProjectFileName = open;
                  if (!open.empty()) current->frame.LoadProject(1);
                },
            .quit = [this] { quit = true; }});
    desk->machine.Sleep = [this](Milliseconds time) { clock.pass(time); };
    desk->machine.DoEvents = [] {};
    desk->machine.waitUntil = [](const auto& condition) { ASSERT_TRUE(condition()); };
    desk->machine.aside = doAtOnce;
    desk->Splash.Painted = true;
    current = desk.get();
    desk->Main();
    return desk;
  }
  LightingDesk* current = nullptr;

  std::string write(const std::string& name, const std::string& bytes) {
    const fs::path path = folder / name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }
  static std::string showBytes() {
    ShowMaker maker;
    maker.xy = {{.number = 1, .look = {{1, 200}}}};
    return writeShow(*maker.project());
  }
  std::string recentList() { return readFile(folder / "data" / "mru.dat"); }
};

TEST_F(Desks, WithoutAnInterfaceStartUpFinishesAndLevelsAreComputed) {
  open = write("a.kel", showBytes());
  const auto desk = start();
  EXPECT_TRUE(boxes.empty());
  EXPECT_EQ(desk->windows.Comm.Version.Caption, "USB Virtual Comm - NOT FOUND");
  EXPECT_EQ(desk->frame.Window.Caption, "Velgrove - Test" + std::string(46, ' '));
  EXPECT_TRUE(desk->windows.ABQ->Window.Visible && desk->windows.XYQ->Window.Visible);
  desk->show.ManualLevels[4] = 50;
  clock.advanceTo(clock.now() + Milliseconds(40), desk->machine.timers);
  EXPECT_EQ(desk->show.DMXOutput[4], 50);
  EXPECT_EQ(desk->windows.ActiveDocument->GetCurrentView()->colSubMasters().count(), 24);
  EXPECT_EQ(desk->windows.ActiveDocument->LastChannel, 3);
}

TEST_F(Desks, CancellingTheFirstDialogLeavesNoShowAndNoMerge) {
  const auto desk = start();
  EXPECT_EQ(desk->show.CurrentProjectIndex, 0);
  EXPECT_EQ(desk->windows.ABQ, nullptr);
  desk->show.ManualLevels[4] = 50;
  clock.advanceTo(clock.now() + Milliseconds(100), desk->machine.timers);
  EXPECT_EQ(desk->show.DMXOutput[4], 0);
}

TEST_F(Desks, SettingsComeInAtStart) {
  fs::create_directories(folder / "settings");
  std::ofstream(folder / "settings" / "settings.toml")
      << "[Velgrove.Project]\nUp = '4'\nDown = '5'\nDelay = '6'\nDMXDimmers = '-1'\nPREF_SHOWSUBS = '-1'\n"
         "[Velgrove.Settings]\nMainLeft = '1200.5'\n";
  ShowMaker maker;
  auto project = maker.project();
  project->colQueueData().item(1)->colQueueEntries().Remove(1);
  open = write("a.kel", writeShow(*project));
  const auto desk = start();
  EXPECT_TRUE(desk->show.DMXDimmers);
  EXPECT_FALSE(desk->show.DMXSubmasters);
  EXPECT_EQ(desk->show.PrefShowSubs, -1);
  EXPECT_EQ(desk->frame.Window.Left, 1200.5F);
  const auto& blackout = *project->colQueueData().item(1);
  EXPECT_EQ(blackout.colQueueEntries().count(), 0);
  const auto& made = *desk->windows.ABQ->State.QueueData->colQueueEntries().item(1);
  EXPECT_EQ(std::tuple(made.Up, made.Down, made.Delay), std::tuple(4, 5, 6));
  EXPECT_EQ(made.EntryQueueList, 2);
}

TEST_F(Desks, AFileThatIsNoShowIsRefusedBeforeAnythingCloses) {
  open = write("a.kel", showBytes());
  const auto desk = start();
  const auto* const player = desk->windows.XYQ.get();
  for (const std::string& bad : {write("empty.kel", ""), write("text.kel", "To be, or not to be"),
                                 (folder / "missing.kel").string(), folder.string()}) {
    boxes.clear();
    desk->show.ProjectFileName = bad;
    EXPECT_FALSE(desk->frame.LoadProject(1)) << bad;
    ASSERT_EQ(boxes.size(), 1U) << bad;
    EXPECT_NE(boxes[0].find(bad), std::string::npos) << boxes[0];
    EXPECT_EQ(desk->windows.XYQ.get(), player);
  }
}

TEST_F(Desks, ADamagedShowOpensAsFarAsItGoesWithOneBox) {
  const std::string whole = showBytes();
  const auto description = whole.rfind("Cue 1");
  const auto startOfLastCue = description - 4;  // an empty name and a length before it
  open = write("cut.kel", whole.substr(0, startOfLastCue));
  const auto desk = start();
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_NE(boxes[0].find("is damaged"), std::string::npos) << boxes[0];
  EXPECT_EQ(desk->windows.ABQ->State.CueCount, 1);
}

TEST_F(Desks, AShowWithoutCueListsRaisesTheErrorPatternAndGoesOn) {
  ShowMaker maker;
  auto project = maker.project();
  project->colQueueData().Remove(2);
  project->colQueueData().Remove(1);
  open = write("nolists.kel", writeShow(*project));
  interfaces = {{"box", "", "", ""}};
  const auto desk = start();
  EXPECT_FALSE(boxes.empty());
  boxes.clear();
  desk->frame.SSActiveToolBars1_ToolClick("ID_Go");
  desk->frame.SSActiveToolBars1_ToolClick("ID_CueReset");
  clock.advanceTo(clock.now() + Milliseconds(500), desk->machine.timers);
  EXPECT_GT(box.counters().frames, 10U);
}

TEST_F(Desks, ASecondShowReplacesTheFirstAndStopsItsFades) {
  open = write("a.kel", showBytes());
  const auto desk = start();
  desk->frame.SSActiveToolBars1_ToolClick("ID_StopFade");
  EXPECT_TRUE(desk->frame.LoadProject(1));
  EXPECT_EQ(desk->show.Projects.count(), 1);
  EXPECT_EQ(desk->show.OpenDocumentCount, 1);
  EXPECT_EQ(desk->windows.Documents.size(), 1U);
  EXPECT_FALSE(desk->windows.XYQ->State.Paused);
}

TEST_F(Desks, EachViewHasItsOwnDocument) {
  ShowMaker maker;
  auto project = maker.project();
  project->colViews().add(std::make_shared<clsView>());
  open = write("two.kel", writeShow(*project));
  const auto desk = start();
  EXPECT_EQ(desk->windows.Documents.size(), 2U);
  EXPECT_EQ(desk->show.CurrentViewIndex, 2);
  EXPECT_EQ(desk->windows.ActiveDocument->GetCurrentView()->colFixtures().count(), 0);
}

TEST_F(Desks, SavingWritesTheShowKeepsTheLastVersionAndListsTheFile) {
  const std::string before = showBytes();
  open = write("a.kel", before);
  const auto desk = start();
  desk->show.ProjectDirty = true;
  desk->SaveAll();
  EXPECT_FALSE(desk->show.ProjectDirty);
  EXPECT_NE(readFile(open), before) << "submasters and a zoom came with the document";
  EXPECT_EQ(readFile(open + ".bak"), before);
  EXPECT_EQ(recentList(), open + "\r\n");

  desk->show.ProjectFileName = (folder / "missing" / "b.kel").string();
  boxes.clear();
  desk->show.ProjectDirty = true;
  desk->SaveAll();
  EXPECT_EQ(boxes.size(), 1U);
  EXPECT_TRUE(desk->show.ProjectDirty);
}

TEST_F(Desks, TheRecentListKeepsTenAndMovesAListedFileToTheTop) {
  std::string list;
  for (int i = 0; i < 10; ++i) list += "/shows/" + std::to_string(i) + ".kel\r\n";
  fs::create_directories(folder / "data");
  std::ofstream(folder / "data" / "mru.dat", std::ios::binary) << list;
  open = write("new.kel", showBytes());
  {
    const auto desk = start();
    EXPECT_EQ(desk->show.MRUCount, 10);
    desk->SaveAll();
    const std::string text = recentList();
    EXPECT_TRUE(text.starts_with(open + "\r\n/shows/0.kel\r\n"));
    EXPECT_TRUE(text.ends_with("/shows/8.kel\r\n"));
  }
  const auto desk = start();
  desk->show.ProjectFileName = write("5.kel", showBytes());
  desk->show.MRUList[3] = desk->show.ProjectFileName;
  desk->SaveAll();
  const std::string text = recentList();
  EXPECT_TRUE(text.starts_with(desk->show.ProjectFileName + "\r\n" + open +
                               "\r\n/shows/0.kel\r\n/shows/1.kel\r\n/shows/3.kel"))
      << text;
}

TEST_F(Desks, TheInputToolsSetTheModeAndTheReceiveTimer) {
  open = write("a.kel", showBytes());
  interfaces = {{"box", "", "", ""}};
  const auto desk = start();
  auto& frame = desk->frame;
  frame.SSActiveToolBars1_ToolClick("ID_manualOn");
  EXPECT_TRUE(desk->show.DMXDimmers && !desk->show.DMXSubmasters);
  box.setInput(9, 120);
  clock.advanceTo(clock.now() + Milliseconds(300), desk->machine.timers);
  EXPECT_EQ(desk->show.DMXOutput[8], 120);
  frame.SSActiveToolBars1_ToolClick("ID_subsOn");
  EXPECT_TRUE(!desk->show.DMXDimmers && desk->show.DMXSubmasters);
  frame.SSActiveToolBars1_ToolClick("ID_noInput");
  EXPECT_FALSE(desk->windows.Comm.RecieveTimer.enabled());
}

TEST_F(Desks, ADamagedSettingsFileIsToldAndTheDefaultsAreUsed) {
  fs::create_directories(folder / "settings");
  std::ofstream(folder / "settings" / "settings.toml") << "not = [ a settings file";
  open = write("a.kel", showBytes());
  const auto desk = start();
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_NE(boxes[0].find("settings.toml"), std::string::npos) << boxes[0];
  EXPECT_EQ(desk->frame.Window.Width, 6500);
  EXPECT_EQ(desk->Settings.GetSettingInt("Any", "Key", 7), 7);
}

TEST_F(Desks, AnErrorThatTheOperatorAbortsEndsTheProgram) {
  open = write("a.kel", showBytes());
  const auto desk = start();
  answer = BoxAnswer::Abort;
  desk->act([&] { desk->windows.XYQ->ShowFixtureLevelsForSelectedCue(99, "live"); });
  EXPECT_TRUE(quit);
  EXPECT_EQ(boxes.size(), 1U) << "one procedure asks once";
}

TEST_F(Desks, AShowMayCloseWhileABoxOfItsTimerIsOpen) {
  ShowMaker maker;
  maker.channels = {0};
  open = write("unpatched.kel", writeShow(*maker.project()));
  const auto desk = start();
  onBox = [&] {
    onBox = nullptr;
    desk->frame.LoadProject(1);
  };
  clock.advanceTo(clock.now() + Milliseconds(333), desk->machine.timers);
  EXPECT_EQ(desk->windows.Documents.size(), 1U);
}

TEST_F(Desks, ShuttingDownStopsEveryTimer) {
  open = write("a.kel", showBytes());
  interfaces = {{"box", "", "", ""}};
  const auto desk = start();
  desk->ShutdownApp();
  EXPECT_FALSE(desk->machine.timers.nextDue());
  EXPECT_FALSE(desk->windows.Comm.VelgroveCom.PortOpen());
}

}  // namespace
}  // namespace velgrove::test
