// What a crash leaves, and what the next start makes of it.

#include "controls/files.h"
#include "core/lighting_desk.h"
#include "core/recovery_folder.h"
#include "support/desks.h"
#include "support/scripted_desk.h"

namespace velgrove::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Recovering : public Desks {
 protected:
  fs::path recovery = data / "recovery";
  fs::path copy = recovery / "1.kel";

  LightingDesk* startWithShow() {
    open = writeShow(showOf(3));
    return start();
  }
  /// A desk with a cue more than its file, as a power cut leaves it.
  void crashWithAnEdit() {
    record(*startWithShow());
    house.reset();
    open.clear();
  }
  static void record(LightingDesk& desk) { desk.windows.XYQ->cmdRecord.click(); }
  static int cues(LightingDesk& desk) { return desk.windows.XYQ->State.CueCount; }
  static void move(LightingDesk& desk, double to) {
    desk.windows.ActiveDocument->GetCurrentView()->colFixtures().item(1)->x = to;
  }
  void onQuestion(Button frmWanttoSave::*button) {
    house->onWait = [this, button] { (house->desk.WanttoSave.*button).click(); };
  }
};

// ---- What is kept, and when

TEST_F(Recovering, ACueEditOfEitherPlayerIsKeptAtOnce) {
  auto* const desk = startWithShow();
  std::string last;
  for (QueueList* const list : {desk->windows.ABQ.get(), desk->windows.XYQ.get()}) {
    const auto edit = [&](const char* what, Button& button) {
      list->CueDesc.setText(what);
      button.click();
      const std::string now = readFile(copy);
      EXPECT_FALSE(now == std::exchange(last, now)) << what;
    };
    edit("record", list->cmdRecord);
    click(*list, 2);
    edit("insert", list->cmdInsertCue);
    click(*list, 2);
    edit("update", list->cmdUpdate);
    edit("copied", list->cmdCopy);
    list->CueDesc.setText("typed since");
    click(*list, 3);
    edit("paste", list->cmdPaste);
    edit("delete", list->cmdDeleteCue);
  }
}

TEST_F(Recovering, AnyOtherChangeIsKeptInTimeAndPlayingIsNone) {
  auto* const desk = startWithShow();
  tool("ID_Go");
  runOn(60'000);
  EXPECT_TRUE(desk->show.ProjectDirty);
  EXPECT_GT(desk->show.DMXOutput[0], 0);
  EXPECT_FALSE(fs::exists(copy));
  const auto before = desk->windows.ActiveDocument->GetCurrentView()->colFixtures().item(1)->x;
  move(*desk, 77);
  runOn(15'000);
  EXPECT_TRUE(fs::exists(copy));
  move(*desk, static_cast<double>(before));
  runOn(15'000);
  EXPECT_FALSE(fs::exists(copy)) << "the show is again as its file has it";
}

TEST_F(Recovering, ADeskThatEndsByASignalKeepsTheLastChange) {
  auto* const desk = startWithShow();
  move(*desk, 77);
  desk->show.ProjectDirty = true;
  desk->ShutdownApp();
  takeBoxes();
  EXPECT_TRUE(fs::exists(copy));
}

TEST_F(Recovering, AFullDiskIsToldOnceAndTheCopyComesWhenThereIsRoom) {
  bool full = true;
  folders.disk.write = [&](int file, std::string_view bytes) -> ssize_t {
    return full ? (errno = ENOSPC, -1) : systemDisk().write(file, bytes);
  };
  auto* const desk = startWithShow();
  record(*desk);
  record(*desk);
  desk->show.ProjectDirty = true;
  runOn(60'000);
  EXPECT_THAT(takeBoxes(), ElementsAre(AllOf(HasSubstr("recovery copy"), HasSubstr("No space left"))));
  full = false;
  desk->show.ProjectDirty = true;
  runOn(10'000);
  EXPECT_TRUE(fs::exists(copy));
}

// ---- The next start

TEST_F(Recovering, TheNextStartOpensTheCopyAndASavePutsItIntoItsFile) {
  crashWithAnEdit();
  const std::string file = (folder / "a.kel").string(), before = readFile(file);
  answer = BoxAnswer::Yes;
  auto* const desk = start();
  EXPECT_THAT(takeBoxes(),
              ElementsAre(AllOf(HasSubstr("\"Test\""), HasSubstr(file), HasSubstr("Copy made: 20"))));
  EXPECT_FALSE(desk->OpenProject.Window.Visible);
  EXPECT_EQ(cues(*desk), 4);
  EXPECT_EQ(desk->frame.Window.Caption, "Velgrove - Test" + std::string(46, ' '));
  EXPECT_EQ(desk->show.ProjectFileName, file);
  EXPECT_TRUE(desk->show.ProjectDirty);
  EXPECT_TRUE(fs::exists(copy)) << "it isn't saved yet";
  tool("ID_Save");
  EXPECT_FALSE(fs::exists(copy));
  EXPECT_EQ(readFile(file + ".bak"), before);
  EXPECT_TRUE(desk->frame.LoadProject(1));
  EXPECT_EQ(cues(*desk), 4);
}

TEST_F(Recovering, ACopyThatIsDeclinedIsAskedAboutOnceAndStaysAShowThatOpens) {
  crashWithAnEdit();
  const std::string again = readFile(copy);
  answer = BoxAnswer::No;
  start();
  EXPECT_EQ(takeBoxes().size(), 1U);
  EXPECT_FALSE(house->desk.windows.XYQ) << "the dialog came, and was cancelled";
  house.reset();
  write("data/recovery/1.kel", again);
  start();
  EXPECT_EQ(takeBoxes().size(), 1U);
  for (const char* const name : {"declined.kel", "declined-2.kel"}) {
    open = recovery / name;
    EXPECT_EQ(cues(*start()), 4);
  }
}

TEST_F(Recovering, TheShowThatTheDeskWasOpenedWithComesBehindTheQuestionAndOnlyIfNoCopyIsOpened) {
  crashWithAnEdit();
  folders.offered = writeShow({}, "wanted.kel");
  answer = BoxAnswer::No;
  make();
  std::string chosen;
  house->onWait = [&] {
    chosen = house->desk.OpenProject.filList.FileName();
    house->desk.OpenProject.CancelButton.click();
  };
  house->start();
  EXPECT_EQ(takeBoxes().size(), 1U);
  EXPECT_EQ(chosen, "wanted.kel");
  house.reset();

  crashWithAnEdit();
  answer = BoxAnswer::Yes;
  make();
  house->start();  // a dialog would wait for ever
  EXPECT_EQ(takeBoxes().size(), 1U);
  EXPECT_EQ(cues(house->desk), 4);
}

TEST_F(Recovering, ANewShowThatWasNeverSavedKeepsTheFileItWasToHave) {
  auto* const desk = startWithShow();
  desk->show.ProjectName = "Hamlet";
  desk->show.ProjectFileName = (data / "Hamlet.kel").string();
  desk->frame.LoadNewProject();
  record(*desk);
  house.reset();
  answer = BoxAnswer::Yes;
  auto* const again = start();
  EXPECT_THAT(takeBoxes(), ElementsAre(HasSubstr("\"Hamlet\"")));
  EXPECT_EQ(again->show.ProjectFileName, data / "Hamlet.kel");
  EXPECT_FALSE(fs::exists(data / "Hamlet.kel"));
  tool("mnuFileSave");
  EXPECT_TRUE(fs::exists(data / "Hamlet.kel"));
}

TEST_F(Recovering, ADamagedCopyOpensAsFarAsItGoesAndOneThatHoldsNoShowIsSetAside) {
  crashWithAnEdit();
  const std::string whole = readFile(copy);
  write("data/recovery/1.kel", whole.substr(0, whole.size() - 100));
  answer = BoxAnswer::Yes;
  EXPECT_NE(start()->windows.XYQ, nullptr);
  EXPECT_THAT(takeBoxes(), testing::IsSupersetOf({HasSubstr("Would you like"), HasSubstr("is damaged")}));
  house.reset();
  for (const std::string& bytes : {std::string("no copy"), whole.substr(0, whole.find("Test") + 5)}) {
    write("data/recovery/1.kel", bytes);
    EXPECT_EQ(start()->windows.XYQ, nullptr);
    EXPECT_THAT(takeBoxes(), testing::Not(IsEmpty()));
    EXPECT_FALSE(fs::exists(copy));
    EXPECT_TRUE(fs::exists(recovery / "unreadable.kel"));
    house.reset();
  }
}

TEST_F(Recovering, ADamagedShowThatWasOpenInTheCrashIsKeptByTheNextSaveAsEver) {
  const std::string whole = velgrove::writeShow(*showOf(3).project());
  const std::string damaged = whole.substr(0, whole.size() - 100);
  open = write("a.kel", damaged);
  record(*start());
  house.reset();
  answer = BoxAnswer::Yes;
  start();
  takeBoxes();
  tool("ID_Save");
  EXPECT_EQ(readFile(folder / "a.kel.damaged"), damaged);
}

// ---- When the copy goes

TEST_F(Recovering, TheCopyGoesWithTheSaveAndWithTheShowThatTheOperatorLeaves) {
  const std::vector<std::function<void()>> ways = {[this] { tool("ID_Save"); },
                                                   [this] {
                                                     onQuestion(&frmWanttoSave::DontSave);
                                                     tool("mnuFileOpen");
                                                     EXPECT_TRUE(fs::exists(copy))
                                                         << "nothing has closed yet";
                                                     house->desk.frame.LoadProject(1);
                                                   },
                                                   [this] {
                                                     onQuestion(&frmWanttoSave::DontSave);
                                                     tool("mnuFileExit");
                                                   }};
  for (const auto& way : ways) {
    record(*startWithShow());
    EXPECT_TRUE(fs::exists(copy));
    way();
    takeBoxes();
    EXPECT_FALSE(fs::exists(copy));
    house.reset();
  }
}

TEST_F(Recovering, ASaveThatFailsAndAnExitThatIsCancelledLeaveIt) {
  auto* const desk = startWithShow();
  record(*desk);
  desk->show.ProjectFileName = folder / "missing" / "a.kel";
  EXPECT_FALSE(desk->SaveAll());
  onQuestion(&frmWanttoSave::Cancel);
  tool("mnuFileExit");
  takeBoxes();
  EXPECT_TRUE(fs::exists(copy));
}

TEST_F(Recovering, AWorkThatComesLateBehindASaveLeavesNoCopy) {
  auto* const desk = startWithShow();
  std::function<void()> waiting;
  desk->machine.inBackground = [&](auto work, auto) { waiting = std::move(work); };
  record(*desk);
  waiting();
  record(*desk);
  tool("ID_Save");
  waiting();
  EXPECT_FALSE(fs::exists(copy));
}

TEST_F(Recovering, WhatIsEditedWhileTheDiskSavesStaysInTheCopy) {
  auto* const desk = startWithShow();
  record(*desk);
  house->onAside = [&] {
    house->onAside = nullptr;
    record(*desk);
  };
  tool("ID_Save");
  ASSERT_TRUE(fs::exists(copy));
  EXPECT_NE(readFile(copy).find("Cue_4.00"), std::string::npos);
}

TEST_F(Recovering, ACopyOfWhatStandsInTheFileIsNotWorthAQuestion) {
  auto* const desk = startWithShow();
  record(*desk);
  desk->machine.inBackground = [](const auto&, const auto&) {};  // the plug is pulled behind the save
  tool("ID_Save");
  house.reset();
  start();
  EXPECT_FALSE(fs::exists(copy));
}

// ---- Several desks

TEST_F(Recovering, EachDeskOfAMachineHasACopyOfItsOwnAndNoneIsOfferedWhileItsDeskLives) {
  record(*startWithShow());
  const auto first = std::move(house);
  record(*startWithShow());
  EXPECT_TRUE(fs::exists(recovery / "2.kel"));
  auto second = std::move(house);
  second.reset();
  answer = BoxAnswer::Yes;
  record(*start());
  EXPECT_EQ(takeBoxes().size(), 1U);
  tool("ID_Save");
  EXPECT_FALSE(fs::exists(recovery / "2.kel"));
  EXPECT_TRUE(fs::exists(copy));
}

}  // namespace
}  // namespace velgrove::test
