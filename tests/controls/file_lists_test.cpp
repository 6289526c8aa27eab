// The lists with which a window walks over the disk.

#include "controls/file_lists.h"

#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "controls/file_names.h"
#include "support/fault_of.h"
#include "support/temp_folder.h"

namespace velgrove {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

TEST(FileNames, StandInTheOrderInWhichPeopleCount) {
  const std::vector<std::string> ordered{"Act 2", "act 10", "Act 010", "Act 10b", "b", "b1", "B2", "b 3"};
  std::vector<std::string> names{"b1", "Act 10b", "B2", "Act 010", "b", "act 10", "b 3", "Act 2"};
  std::ranges::sort(names, standsBefore);
  EXPECT_THAT(names, ElementsAre("Act 2", "Act 010", "act 10", "Act 10b", "b", "b 3", "b1", "B2"));
  EXPECT_FALSE(standsBefore("same", "same"));
  EXPECT_NE(standsBefore("A", "a"), standsBefore("a", "A"));
}

TEST(FileNames, MatchPatternsWithoutRegardToCase) {
  const auto matching = [](const char* pattern) {
    std::vector<std::string> names;
    for (const char* name : {"a.kel", "B.KEL", "a.kel.bak", "notes", "\u00e4.kel"})
      if (matchesPattern(name, pattern)) names.emplace_back(name);
    return names;
  };
  EXPECT_THAT(matching("*.kel"), ElementsAre("a.kel", "B.KEL", "\u00e4.kel"));
  EXPECT_THAT(matching("?.KEL"), ElementsAre("a.kel", "B.KEL", "\u00e4.kel"));
  EXPECT_THAT(matching("a*k; NOTES ;;"), ElementsAre("a.kel.bak", "notes"));
  EXPECT_THAT(matching("*e*b*k"), ElementsAre("a.kel.bak"));
  EXPECT_EQ(matching("*.*").size(), 5U);
  EXPECT_EQ(matching("").size(), 5U);
  EXPECT_TRUE(matching("kel").empty());
}

class FileLists : public testing::Test {
 protected:
  TempFolder folder;
  int asides = 0;
  Aside aside = [this](const auto& work) {
    ++asides;
    work();
  };

  void SetUp() override {
    fs::create_directories(folder / "shows" / "tour");
    fs::create_directories(folder / "shows" / ".hidden");
    for (const char* name : {"shows/2.kel", "shows/10.kel", "shows/x.txt", "shows/.old.kel"})
      std::ofstream(folder / name) << name;
  }
  static std::vector<std::string> namesOf(const DirListBox& list) {
    std::vector<std::string> names;
    for (const auto& row : list.rows())
      if (!row.IsOpen) names.push_back(row.Name);
    return names;
  }
};

TEST_F(FileLists, OfFoldersShowTheWayThereAndWhatIsInside) {
  DirListBox list(aside);
  int changes = 0;
  list.Change = [&] { ++changes; };
  list.setPath(folder / "shows/");
  list.setPath(folder / "shows");
  EXPECT_EQ(changes, 1) << "it is the same path";
  EXPECT_EQ(asides, 2);
  EXPECT_THAT(namesOf(list), ElementsAre("tour"));
  EXPECT_EQ(list.rows().front().Name, "/");
  const auto& open = list.rows()[static_cast<std::size_t>(list.listIndex())];
  EXPECT_EQ(std::tuple(open.Name, open.IsOpen, open.Depth),
            std::tuple("shows", true, static_cast<int>(list.rows().size()) - 2));

  list.highlight(list.listIndex() + 1);
  EXPECT_EQ(changes, 1);
  list.openHighlighted();
  EXPECT_EQ(list.Path(), folder / "shows/tour");
  EXPECT_EQ(changes, 2);

  EXPECT_EQ(errorOf([&] { list.setPath(folder / "nowhere"); }).fault(), Fault::File);
  std::string refused;
  list.Refused = [&](const RunTimeError& error) { refused = error.what(); };
  list.highlight(static_cast<int>(list.rows().size()) - 1);
  fs::remove_all(folder / "shows/tour");
  list.openHighlighted();
  EXPECT_NE(refused.find("tour"), std::string::npos) << refused;
  EXPECT_EQ(list.Path(), folder / "shows/tour");
  EXPECT_EQ(errorOf([&] { list.highlight(99); }).fault(), Fault::Subscript);
}

TEST_F(FileLists, OfFilesFilterWithoutTheDiskAndKeepTheSelection) {
  FileListBox list(aside);
  std::vector<std::string> events;
  list.PathChange = [&] { events.emplace_back("path"); };
  list.PatternChange = [&] { events.emplace_back("pattern"); };
  list.DblClick = [&] { events.push_back(list.FileName()); };
  list.setPath(folder / "shows");
  EXPECT_THAT(list.items(), ElementsAre("2.kel", "10.kel", "x.txt"));
  list.choose(1);
  list.setPattern("*.kel");
  list.setPattern("*.kel");
  EXPECT_THAT(list.items(), ElementsAre("2.kel", "10.kel"));
  EXPECT_EQ(list.FileName(), "10.kel");
  EXPECT_EQ(asides, 1);
  list.doubleClick(0);
  EXPECT_THAT(events, ElementsAre("path", "pattern", "2.kel"));
  list.setPattern("*.txt");
  EXPECT_EQ(list.FileName(), "");

  fs::remove_all(folder / "shows");
  EXPECT_EQ(errorOf([&] { list.Refresh(); }).fault(), Fault::File);
  EXPECT_TRUE(list.items().empty());
}

TEST_F(FileLists, OfDrivesShowHomeWhatIsMountedAndTheMachine) {
  fs::create_directories(folder / "media" / "STICK");
  fs::create_directories(folder / "media" / "left behind");
  DriveListBox list({.home = folder / "shows",
                     .mediaFolders = {folder / "media", folder / "no such folder"},
                     .isMounted = [](const fs::path& path) { return path.filename() == "STICK"; }},
                    aside);
  int changes = 0;
  list.Change = [&] { ++changes; };
  list.Refresh(folder / "shows/tour");
  std::vector<std::string> labels;
  for (const auto& item : list.items()) labels.push_back(item.Label);
  EXPECT_THAT(labels, ElementsAre("Home", "STICK", "Computer"));
  EXPECT_EQ(list.Drive(), folder / "shows");
  EXPECT_EQ(changes, 0);
  list.setDrive(folder / "shows");
  EXPECT_EQ(changes, 0);
  list.setDrive(folder / "shows of others");
  EXPECT_EQ(list.Drive(), "/") << "a name that only begins alike lies elsewhere";
  EXPECT_EQ(changes, 1);
  list.choose(1);
  EXPECT_EQ(list.Drive(), folder / "media/STICK");
  EXPECT_EQ(changes, 2);
}

TEST(Drives, OfThisMachineBeginWithHome) {
  DriveListBox list(systemDriveRoots(), doAtOnce);
  list.Refresh("/");
  EXPECT_EQ(list.items().front().Label, "Home");
  EXPECT_EQ(list.items().back().Path, "/");
}

}  // namespace
}  // namespace velgrove
