// How shows come into memory, are saved, and leave.

#include "controls/files.h"
#include "core/lighting_desk.h"
#include "support/desks.h"
#include "support/full_disk.h"

namespace velgrove::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class ShowLife : public Desks {
 protected:
  LightingDesk* startWithShow() {
    open = writeShow();
    return start();
  }
  /// A show whose last cue lies behind the end of the file.
  static std::string damagedBytes() {
    ShowMaker maker;
    maker.xy = {{.number = 1}};
    const std::string whole = velgrove::writeShow(*maker.project());
    constexpr std::size_t NameAndLength = 4;  // an empty name, and the description's length
    return whole.substr(0, whole.rfind("Cue 1") - NameAndLength);
  }
  LightingDesk* startWithDamagedShow() {
    open = write("cut.kel", damagedBytes());
    auto* const desk = start();
    EXPECT_THAT(takeBoxes(), ElementsAre(HasSubstr("is damaged")));
    return desk;
  }
  /// What the operator answers to the question whether to save.
  void answerSaving(Button frmWanttoSave::*button) {
    house->onWait = [this, button] {
      asked.push_back(house->desk.WanttoSave.Label1.Caption);
      EXPECT_TRUE(house->desk.WanttoSave.Window.Visible && house->desk.WanttoSave.Window.Modal);
      (house->desk.WanttoSave.*button).click();
    };
  }
  std::string recentList() { return readFile(data / "mru.dat"); }
  std::vector<std::string> asked;
};

// ---- Opening

TEST_F(ShowLife, AFileThatIsNoShowIsRefusedBeforeAnythingCloses) {
  auto* const desk = startWithShow();
  const auto* const player = desk->windows.XYQ.get();
  for (const std::string& bad : {write("empty.kel", ""), write("text.kel", "To be, or not to be"),
                                 (folder / "missing.kel").string(), folder.string()}) {
    desk->show.ProjectFileName = bad;
    EXPECT_FALSE(desk->frame.LoadProject(1)) << bad;
    EXPECT_THAT(takeBoxes(), ElementsAre(HasSubstr(bad)));
    EXPECT_EQ(desk->windows.XYQ.get(), player);
    EXPECT_EQ(desk->show.ProjectFileName, open);
  }
}

TEST_F(ShowLife, ADamagedShowOpensAsFarAsItGoesWithOneBox) {
  auto* const desk = startWithDamagedShow();
  EXPECT_EQ(desk->windows.ABQ->State.CueCount, 1);
}

TEST_F(ShowLife, AShowWithoutCueListsRaisesTheErrorPatternAndGoesOn) {
  ShowMaker maker;
  auto project = maker.project();
  project->colQueueData().Remove(2);
  project->colQueueData().Remove(1);
  open = write("nolists.kel", velgrove::writeShow(*project));
  boxAttached = true;
  start();
  EXPECT_FALSE(takeBoxes().empty());
  tool("ID_Go");
  tool("ID_CueReset");
  runOn(500);
  EXPECT_FALSE(takeBoxes().empty());
  EXPECT_GT(house->box.counters().frames, 10U);
}

TEST_F(ShowLife, ASecondShowReplacesTheFirstAndStopsItsFades) {
  auto* const desk = startWithShow();
  int halfSeconds = 0;
  desk->machine.Sleep = [&](Milliseconds time) { halfSeconds += static_cast<int>(time.count() / 500); };
  tool("ID_StopFade");
  EXPECT_TRUE(desk->frame.LoadProject(1));
  EXPECT_EQ(halfSeconds, 1) << "the plot lets go of its drawing";
  EXPECT_EQ(desk->show.Projects.count(), 1);
  EXPECT_EQ(desk->show.OpenDocumentCount, 1);
  EXPECT_EQ(desk->windows.Documents.size(), 1U);
  EXPECT_FALSE(desk->windows.XYQ->State.Paused);
}

TEST_F(ShowLife, EachViewHasItsOwnDocument) {
  ShowMaker maker;
  auto project = maker.project();
  project->colViewsAdd(std::make_shared<clsView>());
  open = write("two.kel", velgrove::writeShow(*project));
  auto* const desk = start();
  EXPECT_EQ(desk->windows.Documents.size(), 2U);
  EXPECT_EQ(desk->show.CurrentViewIndex, 2);
  EXPECT_EQ(desk->windows.ActiveDocument->GetCurrentView()->colFixtures().count(), 0);
}

TEST_F(ShowLife, AShowMayCloseWhileABoxOfItsTimerIsOpen) {
  ShowMaker maker;
  maker.channels = {0};
  open = writeShow(maker);
  auto* const desk = start();
  onBox = [&] {
    onBox = nullptr;
    desk->frame.LoadProject(1);
  };
  runOn(333);
  EXPECT_FALSE(takeBoxes().empty());
  EXPECT_EQ(desk->windows.Documents.size(), 1U);
}

// ---- A new show

TEST_F(ShowLife, ANewShowHasOneEmptyViewAndABlackoutInEachList) {
  auto* const desk = startWithShow();
  desk->show.ProjectName = "Hamlet";
  desk->show.ProjectFileName = (data / "Hamlet.kel").string();
  desk->frame.LoadNewProject();
  const auto& project = *desk->show.Projects.item(1);
  EXPECT_EQ(desk->show.Projects.count(), 1);
  EXPECT_EQ(project.ProjectName.str(), "Hamlet" + std::string(44, ' '));
  EXPECT_EQ(project.ProjectDesc.str(), std::string(255, ' '));
  auto& lists = desk->show.Projects.item(1)->colQueueData();
  EXPECT_EQ(lists.item(1)->QueueListName + lists.item(1)->QueueListDesc, "ABAB Fader");
  EXPECT_EQ(lists.item(2)->QueueListName + lists.item(2)->QueueListDesc, "XYXY Fader");
  for (int list : {1, 2}) EXPECT_EQ(lists.item(list)->colQueueEntries().item(1)->EntryDesc, "Blackout");
  EXPECT_EQ(desk->show.Projects.item(1)->colDMXIn().count(), 1);
  EXPECT_EQ(desk->windows.ActiveDocument->GetCurrentView()->ViewName, "Hamlet");
  EXPECT_EQ(
      std::tuple(desk->show.CurrentProjectIndex, desk->show.LastProjectIndex, desk->show.CurrentViewIndex),
      std::tuple(1, 1, 1));
  EXPECT_TRUE(desk->windows.XYQ->Window.Visible && toolState("ID_Save").Enabled);

  tool("mnuFileSave");
  EXPECT_EQ(desk->frame.LoadProject(1), true) << "what was saved can be read";
  EXPECT_EQ(desk->frame.Window.Caption, "Velgrove - Hamlet" + std::string(44, ' '));
}

TEST_F(ShowLife, ANewShowWithoutANameClosesTheViewsAndNoMore) {
  auto* const desk = startWithShow();
  desk->frame.LoadNewProject();
  EXPECT_TRUE(desk->windows.Documents.empty());
  EXPECT_EQ(desk->frame.Window.Caption, "Velgrove - Test" + std::string(46, ' '));
}

TEST_F(ShowLife, NewAndOpenAskFirstWhenTheShowHasChanged) {
  auto* const desk = startWithShow();
  desk->show.ProjectDirty = true;
  answerSaving(&frmWanttoSave::Cancel);
  tool("mnuFileNew");
  EXPECT_THAT(asked, ElementsAre("Save changes to Velgrove - Test")) << "15 characters of the caption";
  EXPECT_NE(desk->windows.XYQ, nullptr);
  EXPECT_FALSE(desk->OpenProject.Window.Visible);

  answerSaving(&frmWanttoSave::Save);
  tool("ID_OpenProject");
  EXPECT_EQ(desk->show.SaveDialogResult, SaveAnswer::Save);
  EXPECT_FALSE(desk->show.ProjectDirty);
  EXPECT_TRUE(fs::exists(open + ".bak"));
  EXPECT_EQ(desk->windows.XYQ, nullptr) << "cue playback stops";
  EXPECT_TRUE(desk->OpenProject.Window.Visible);
  EXPECT_EQ(desk->show.CurrentProjectIndex, 1);

  house->onWait = nullptr;
  tool("mnuFileNew");  // nothing has changed: no question
  desk->OpenProject.CancelButton.click();
  EXPECT_FALSE(toolState("ID_ABQ").Enabled);
  EXPECT_EQ(desk->windows.Documents.size(), 1U) << "the merge goes on";
  EXPECT_EQ(desk->show.CurrentProjectIndex, 1);
}

// ---- Saving

TEST_F(ShowLife, SavingKeepsTheLastVersionAndListsTheFile) {
  auto* const desk = startWithShow();
  const std::string before = readFile(open);
  desk->show.ProjectDirty = true;
  tool("ID_Save");
  EXPECT_EQ(desk->show.LastProjectIndex, 1);
  EXPECT_FALSE(desk->show.ProjectDirty);
  EXPECT_NE(readFile(open), before) << "submasters and a zoom came with the document";
  EXPECT_EQ(readFile(open + ".bak"), before);
  EXPECT_EQ(recentList(), open + "\r\n");
}

TEST_F(ShowLife, SavingToAFolderThatIsNotThereIsAnErrorUnlessItIsTheDesksOwn) {
  auto* const desk = startWithShow();
  desk->show.ProjectFileName = (folder / "missing" / "b.kel").string();
  EXPECT_FALSE(desk->SaveAll());
  EXPECT_THAT(takeBoxes(), ElementsAre(SystemError));
  EXPECT_TRUE(desk->show.ProjectDirty);
  fs::remove_all(data);
  desk->show.ProjectFileName = (data / "b.kel").string();
  EXPECT_TRUE(desk->SaveAll());
}

TEST_F(ShowLife, AFullDiskLeavesTheOldFileAndTheShowUnsaved) {
  folders.disk = fullDisk(100);
  auto* const desk = startWithShow();
  const std::string before = readFile(open);
  desk->show.ProjectDirty = false;
  tool("mnuFileSave");
  EXPECT_THAT(takeBoxes(), testing::Contains(SystemError));
  EXPECT_TRUE(desk->show.ProjectDirty);
  EXPECT_EQ(readFile(open), before);
}

TEST_F(ShowLife, ASaveLetsOtherHandlersRunAndASecondSaveWaitsForIt) {
  auto* const desk = startWithShow();
  desk->show.ProjectDirty = true;
  desk->show.ManualLevels[0] = 90;
  house->onAside = [&] {
    house->onAside = nullptr;
    EXPECT_FALSE(desk->show.ProjectDirty);
    desk->show.ProjectDirty = true;  // an edit
    runOn(40);
    EXPECT_EQ(desk->show.DMXOutput[0], 90);
    EXPECT_THROW(desk->SaveAll(), EndlessWait);
  };
  EXPECT_TRUE(desk->SaveAll());
  EXPECT_TRUE(desk->show.ProjectDirty) << "the edit isn't in the file";
}

TEST_F(ShowLife, TheFirstSaveOfADamagedShowKeepsTheOriginal) {
  auto* const desk = startWithDamagedShow();
  write("cut.kel.damaged", "an older one");
  EXPECT_TRUE(desk->SaveAll());
  EXPECT_TRUE(desk->SaveAll());
  EXPECT_EQ(readFile(open + ".damaged-2"), damagedBytes());
  EXPECT_FALSE(fs::exists(open + ".damaged-3"));
  EXPECT_TRUE(desk->frame.LoadProject(1)) << "what was saved is whole";
}

TEST_F(ShowLife, SaveAsWritesElsewhereAndRenamesNothing) {
  auto* const desk = startWithDamagedShow();
  desk->show.ProjectName = "Cut";
  std::vector<std::string> dialog;
  std::optional<std::string> chosen;
  desk->machine.Dialogs.saveFile = [&](const std::string& title, const std::string& filter,
                                       const std::string& name) {
    dialog = {title, filter, name};
    return chosen;
  };
  const std::string caption = desk->frame.Window.Caption;
  tool("mnuFileSaveAs");
  EXPECT_THAT(dialog, ElementsAre("Save As", "(*.kel)|*.kel", "Cut"));
  EXPECT_EQ(desk->show.ProjectFileName, open) << "cancelled";

  for (const auto& [name, file] : {std::pair("copy", "copy.kel"), std::pair("Act 1.5", "Act 1.5.kel"),
                                   std::pair("LOUD.KEL", "LOUD.KEL")}) {
    chosen = (folder / name).string();
    tool("mnuFileSaveAs");
    EXPECT_EQ(desk->show.ProjectFileName, (folder / file).string());
    EXPECT_TRUE(fs::exists(folder / file));
  }
  EXPECT_EQ(readFile(folder / "copy.kel.damaged"), damagedBytes());
  EXPECT_EQ(readFile(open), damagedBytes());
  EXPECT_EQ(desk->frame.Window.Caption, caption);
}

TEST_F(ShowLife, TheRecentListKeepsTenAndMovesAListedFileToTheTop) {
  std::string list;
  for (int i = 0; i < 10; ++i) list += "/shows/" + std::to_string(i) + ".kel\r\n";
  write("data/mru.dat", list);
  auto* desk = startWithShow();
  EXPECT_EQ(desk->show.MRUCount, 10);
  desk->SaveAll();
  EXPECT_TRUE(recentList().starts_with(open + "\r\n/shows/0.kel\r\n"));
  EXPECT_TRUE(recentList().ends_with("/shows/8.kel\r\n"));

  const std::string first = open;
  desk = startWithShow();
  desk->show.ProjectFileName = writeShow({}, "5.kel");
  desk->show.MRUList[3] = desk->show.ProjectFileName;
  desk->SaveAll();
  EXPECT_TRUE(recentList().starts_with(desk->show.ProjectFileName + "\r\n" + first +
                                       "\r\n/shows/0.kel\r\n/shows/1.kel\r\n/shows/3.kel"))
      << recentList();
}

TEST_F(ShowLife, AShowWithALineEndInItsNameLeavesTheRecentListWhole) {
  write("data/mru.dat", "/shows/0.kel\r\n");
  auto* desk = startWithShow();
  desk->show.ProjectFileName = folder / "a\nb.kel";
  desk->SaveAll();
  EXPECT_EQ(recentList(), "/shows/0.kel\r\n");
}

// ---- The way out

TEST_F(ShowLife, LeavingAnUnchangedShowAsksNothingAndClosesAll) {
  boxAttached = true;
  auto* const desk = startWithShow();
  desk->show.ProjectDirty = false;
  desk->frame.Window.Left = 1234.5F;
  desk->frame.Window.WindowState = WindowState::Normal;
  std::vector<bool> stillRuns;
  onBox = [&] {
    stillRuns.push_back(desk->machine.timers.nextDue().has_value());
    EXPECT_FALSE(desk->WaitExit.Window.Visible) << "it takes no time";
  };
  tool("mnuFileExit");
  EXPECT_THAT(takeBoxes(), ElementsAre("exiting frmMain unload"));
  EXPECT_THAT(stillRuns, ElementsAre(false)) << "every timer is off before the first window goes";
  EXPECT_TRUE(house->quit && desk->show.ExitConfirmed);
  EXPECT_TRUE(desk->windows.Documents.empty());
  EXPECT_EQ(desk->windows.XYQ, nullptr);
  EXPECT_FALSE(desk->windows.Comm.VelgroveCom.PortOpen());

  bool cancel = true;
  desk->frame.MDIForm_QueryUnload(cancel, 0);
  desk->ShutdownApp();  // nothing asks again
  open = "";
  auto* const next = start();
  EXPECT_EQ(next->frame.Window.Left, 1234.5F);
  EXPECT_EQ(next->frame.Window.WindowState, WindowState::Normal);
}

TEST_F(ShowLife, LeavingAChangedShowObeysEachAnswer) {
  const std::string before = readFile(writeShow());
  struct Case {
    const char* name;
    Button frmWanttoSave::*button;
    bool leaves;
    bool saved;
  };
  for (const Case& aCase : {Case{"Cancel", &frmWanttoSave::Cancel, false, false},
                            Case{"Don't Save", &frmWanttoSave::DontSave, true, false},
                            Case{"Save", &frmWanttoSave::Save, true, true}}) {
    auto* const desk = startWithShow();
    desk->show.ProjectDirty = true;
    answerSaving(aCase.button);
    bool cancel = false;
    desk->frame.MDIForm_QueryUnload(cancel, 0);
    EXPECT_EQ(house->quit, aCase.leaves) << aCase.name;
    EXPECT_EQ(cancel, !aCase.leaves) << aCase.name;
    EXPECT_EQ(readFile(open) != before, aCase.saved) << aCase.name;
    EXPECT_EQ(takeBoxes().size(), aCase.leaves ? 1U : 0U) << aCase.name;
  }
}

TEST_F(ShowLife, ASaveThatFailsOnTheWayOutKeepsTheDeskOpen) {
  folders.disk = fullDisk(100);
  auto* const desk = startWithShow();
  desk->show.ProjectDirty = true;
  answerSaving(&frmWanttoSave::Save);
  tool("mnuFileExit");
  EXPECT_THAT(takeBoxes(), testing::Contains(SystemError));
  EXPECT_FALSE(house->quit || desk->show.ExitConfirmed);
  EXPECT_NE(desk->windows.XYQ, nullptr);
  house->onWait = [&] { desk->WanttoSave.Form_QueryUnload(); };
  tool("mnuFileExit");
  EXPECT_FALSE(house->quit) << "a question closed without an answer";
}

TEST_F(ShowLife, SettingsThatCannotBeWrittenDoNotKeepTheDeskFromLeaving) {
  folders.settings = write("settings", "a file where the folder should be");
  auto* const desk = startWithShow();
  desk->show.ProjectDirty = false;
  tool("mnuFileExit");
  EXPECT_THAT(takeBoxes(), ElementsAre(SystemError, "exiting frmMain unload"));
  EXPECT_TRUE(house->quit);
}

TEST_F(ShowLife, AMinimisedFrameLeavesItsOldPlace) {
  writeSettings("[Velgrove.Settings]\nMainTop = '700'\n");
  auto* const desk = startWithShow();
  desk->show.ProjectDirty = false;
  desk->frame.Window.Top = -480000;
  desk->frame.Window.WindowState = WindowState::Minimised;
  tool("mnuFileExit");
  EXPECT_EQ(takeBoxes().size(), 1U);
  open = "";
  EXPECT_EQ(start()->frame.Window.Top, 700);
}

TEST_F(ShowLife, AnEndThatNobodyAskedForSavesAndAsksNothing) {
  auto* const desk = startWithShow();
  desk->show.ProjectDirty = true;
  const std::string before = readFile(open);
  desk->WanttoSave.Form_Load();
  desk->WanttoSave.Window.Modal = desk->WanttoSave.Window.Visible = true;
  EXPECT_TRUE(desk->UnloadAllForms(true));
  EXPECT_TRUE(desk->openForms().empty());
  EXPECT_FALSE(desk->WanttoSave.Window.Visible);
  EXPECT_EQ(readFile(open), before);
}

}  // namespace
}  // namespace velgrove::test
