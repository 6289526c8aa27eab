// The dialog that opens a show or begins a new one.

#include "core/frm_open_project.h"
#include "core/lighting_desk.h"
#include "support/desks.h"

namespace velgrove::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class OpenDialog : public Desks {
 protected:
  frmOpenProject& dialog() { return house->desk.OpenProject; }

  /// Starts the desk; `work` is what the operator does with the first dialog, and Cancel ends it if it is
  /// still there.
  void startWith(const std::function<void()>& work) {
    auto* const desk = make();
    house->onWait = [desk, work, done = false]() mutable {
      if (std::exchange(done, true)) return desk->OpenProject.CancelButton.click();
      work();
    };
    house->start();
    house->onWait = nullptr;
  }
  void select(const std::string& name) {
    const auto& items = dialog().filList.items();
    const auto at = std::ranges::find(items, name);
    ASSERT_NE(at, items.end()) << name;
    dialog().filList.choose(static_cast<int>(at - items.begin()));
  }
  void openFolder(const std::string& name) {
    const auto& rows = dialog().dirList.rows();
    const auto at = std::ranges::find(rows, name, &DirListBox::Row::Name);
    ASSERT_NE(at, rows.end()) << name;
    dialog().dirList.highlight(static_cast<int>(at - rows.begin()));
    dialog().dirList.openHighlighted();
  }
};

TEST_F(OpenDialog, BeginsWithTheShowsOfTheDataFolder) {
  writeShow({}, "data/Act 10.kel");
  writeShow({}, "data/Act 2.KEL");
  write("data/notes.txt", "");
  startWith([this] {
    EXPECT_EQ(dialog().Window.Caption, "Open Project");
    EXPECT_EQ(dialog().txtSearchSpec.text(), "*.kel");
    EXPECT_THAT(dialog().filList.items(), ElementsAre("Act 2.KEL", "Act 10.kel"));
    EXPECT_EQ(dialog().Location.text(), data.string() + "/");
    EXPECT_EQ(dialog().Tabs.selected(), 1);
    EXPECT_TRUE(dialog().OpenExistingFrame.Visible);
    EXPECT_FALSE(dialog().OpenNewFrame.Visible || dialog().OpenRecentFrame.Visible);
    EXPECT_EQ(dialog().drvList.Drive(), folder) << "the drive of the folder, which alone is shown";
    dialog().txtSearchSpec.setText("*.txt;*.md");
    EXPECT_THAT(dialog().filList.items(), ElementsAre("notes.txt"));
  });
}

TEST_F(OpenDialog, OpensTheSelectedShowByItsButtonOrADoubleClick) {
  writeShow({}, "data/a.kel");
  startWith([this] {
    select("a.kel");
    dialog().cmdOpenButton.click();
  });
  EXPECT_EQ(house->desk.show.ProjectFileName, (data / "a.kel").string());
  EXPECT_EQ(house->desk.show.CurrentProjectIndex, 1);
  EXPECT_NE(house->desk.windows.XYQ, nullptr);

  startWith([this] { dialog().filList.doubleClick(0); });
  EXPECT_EQ(house->desk.show.CurrentProjectIndex, 1);
  EXPECT_FALSE(dialog().Window.Visible);
}

TEST_F(OpenDialog, TheStartUpWaitsForTheShowAndNotOnlyForTheDialogToGo) {
  writeShow({}, "data/a.kel");
  int looks = 0;
  startWith([&] {
    std::function<bool()> over;
    house->desk.machine.waitUntil = [&over](const auto& condition) { over = condition; };
    dialog().ShowModal();
    house->onAside = [&] {
      if (dialog().Window.Visible) return;
      ++looks;
      EXPECT_FALSE(over());
    };
    dialog().filList.doubleClick(0);
    EXPECT_TRUE(over());
    house->onAside = nullptr;
  });
  EXPECT_GT(looks, 0);
}

TEST_F(OpenDialog, OfTheStartStandsOnTheShowThatTheDeskWasOpenedWith) {
  writeShow({}, "data/a.kel");
  const auto onAStick = folder / "media/STICK/tour";
  folders.drives.mediaFolders = {folder / "media"};
  folders.drives.isMounted = [](const fs::path&) { return true; };
  writeShow({}, "media/STICK/tour/a.kel");
  folders.offered = writeShow({}, "media/STICK/tour/b.kel");
  startWith([&] {
    EXPECT_EQ(dialog().drvList.Drive(), folder / "media/STICK");
    EXPECT_EQ(dialog().dirList.Path(), onAStick);
    EXPECT_EQ(dialog().filList.FileName(), "b.kel");
    EXPECT_EQ(dialog().Location.text(), data.string() + "/") << "new shows lie where they always do";
    dialog().cmdOpenButton.click();
  });
  EXPECT_EQ(house->desk.show.ProjectFileName, (onAStick / "b.kel").string());

  folders.offered = writeShow({}, "media/STICK/tour/b.kel.bak");
  startWith([this] { EXPECT_EQ(dialog().filList.FileName(), "b.kel.bak"); });
}

TEST_F(OpenDialog, OfTheStartTellsAShowThatCannotBeReadAndStandsWhereItDoesWithoutOne) {
  writeShow({}, "data/a.kel");
  for (const auto& unreadable : {data / "gone.kel", folder, folder / "nowhere" / "a.kel"}) {
    folders.offered = unreadable;
    startWith([&] {
      EXPECT_THAT(takeBoxes(), ElementsAre(HasSubstr(unreadable.string() + ": ")));
      EXPECT_EQ(dialog().dirList.Path(), data);
      EXPECT_THAT(dialog().filList.items(), ElementsAre("a.kel"));
      EXPECT_EQ(dialog().filList.FileName(), "");
    });
  }
  EXPECT_FALSE(fs::exists(folder / "nowhere"));
}

TEST_F(OpenDialog, WithoutASelectedFileStays) {
  startWith([this] {
    dialog().cmdOpenButton.click();
    EXPECT_TRUE(dialog().Window.Visible);
  });
  EXPECT_EQ(house->desk.show.CurrentProjectIndex, 0);
  EXPECT_EQ(house->desk.show.ProjectFileName, "");
}

TEST_F(OpenDialog, WalksOverTheDisk) {
  writeShow({}, "data/tour/b.kel");
  writeShow({}, "home.kel");
  startWith([this] {
    openFolder("tour");
    EXPECT_EQ(dialog().dirList.Path(), data / "tour");
    EXPECT_THAT(dialog().filList.items(), ElementsAre("b.kel"));
    dialog().drvList.choose(0);
    EXPECT_EQ(dialog().dirList.Path(), folder);
    EXPECT_THAT(dialog().filList.items(), ElementsAre("home.kel"));
    const auto& rows = dialog().dirList.rows();
    dialog().dirList.highlight(
        static_cast<int>(std::ranges::find(rows, "data", &DirListBox::Row::Name) - rows.begin()));
    EXPECT_EQ(dialog().dirList.Path(), folder) << "a highlight alone goes nowhere";
    raise(dialog().dirList.LostFocus);
    EXPECT_EQ(dialog().dirList.Path(), data);
  });
}

TEST_F(OpenDialog, NamesAFolderThatCannotBeReadAndStaysWhereItWas) {
  write("data/gone/a.kel", "");
  folders.drives.mediaFolders = {folder / "media"};
  folders.drives.isMounted = [](const fs::path&) { return true; };
  fs::create_directories(folder / "media" / "STICK");
  startWith([this] {
    fs::remove_all(data / "gone");
    openFolder("gone");
    EXPECT_THAT(takeBoxes(), ElementsAre(HasSubstr((data / "gone").string())));
    EXPECT_EQ(dialog().dirList.Path(), data);
    raise(dialog().dirList.LostFocus);  // and the operator can go on to another control

    fs::remove_all(folder / "media");
    const auto before = dialog().drvList.Drive();
    dialog().drvList.choose(1);
    EXPECT_THAT(takeBoxes(), ElementsAre(HasSubstr("STICK")));
    EXPECT_EQ(dialog().dirList.Path(), data);
    EXPECT_EQ(dialog().drvList.Drive(), before);
  });
}

TEST_F(OpenDialog, ComesBackWhenAFileHasVanished) {
  writeShow({}, "data/a.kel");
  auto* const desk = start();
  desk->show.ProjectFileName = writeShow({}, "data/first.kel");
  desk->frame.LoadProject(1);
  desk->show.ProjectDirty = false;
  const auto* const document = desk->windows.DocumentForm;
  tool("ID_OpenProject");
  select("a.kel");
  fs::remove(data / "a.kel");
  dialog().cmdOpenButton.click();
  EXPECT_THAT(takeBoxes(), ElementsAre(HasSubstr("a.kel")));
  EXPECT_TRUE(dialog().Window.Visible);
  EXPECT_THAT(dialog().filList.items(), ElementsAre("first.kel"));
  EXPECT_EQ(desk->windows.DocumentForm, document);
  EXPECT_EQ(desk->show.ProjectFileName, (data / "first.kel").string())
      << "a save must not go to the file that wasn't opened";
}

TEST_F(OpenDialog, BeginsANewShow) {
  startWith([this] {
    dialog().Tabs.choose(2);
    EXPECT_TRUE(dialog().OpenNewFrame.Visible);
    EXPECT_FALSE(dialog().OpenExistingFrame.Visible);
    EXPECT_EQ(dialog().ProjectName.Focuses, 1U);
    house->desk.machine.Dialogs.BrowseForDir = [this](const std::string& from, const std::string& title) {
      EXPECT_EQ(from, data.string() + "/");
      EXPECT_EQ(title, "Choose a directory from the list.");
      return std::string();
    };
    dialog().cmdNewBrowse.click();
    EXPECT_EQ(dialog().Location.text(), data.string() + "/") << "cancelled";
    house->desk.machine.Dialogs.BrowseForDir = [this](const std::string&, const std::string&) {
      return (folder / "tour/").string();
    };
    dialog().cmdNewBrowse.click();
    dialog().ProjectName.setText("Hamlet");
    dialog().ProjectDescription.setText("A prince");
    dialog().cmdOpenButton.click();
  });
  const ShowState& show = house->desk.show;
  EXPECT_EQ(show.ProjectFileName, (folder / "tour/Hamlet.kel").string());
  EXPECT_EQ(show.ProjectDescription, "A prince");
  EXPECT_EQ(house->desk.frame.Window.Caption, "Velgrove - Hamlet");
  EXPECT_FALSE(fs::exists(show.ProjectFileName)) << "before the first save";
}

TEST_F(OpenDialog, OfTheFramesToolsShowsTheirTabAndLooksAgain) {
  start();
  writeShow({}, "data/late.kel");
  tool("mnuFileNew");
  EXPECT_TRUE(dialog().Window.Visible && dialog().OpenNewFrame.Visible);
  EXPECT_FALSE(dialog().Window.Modal);
  tool("mnuFileOpen");
  EXPECT_TRUE(dialog().OpenExistingFrame.Visible && !dialog().OpenNewFrame.Visible);
  EXPECT_THAT(dialog().filList.items(), ElementsAre("late.kel"));
  EXPECT_TRUE(dialog().Timer1.enabled());
  dialog().OpenNewFrame.Visible = true;
  runOn(800);
  EXPECT_FALSE(dialog().OpenNewFrame.Visible);
  EXPECT_FALSE(dialog().Timer1.enabled());
}

}  // namespace
}  // namespace velgrove::test
