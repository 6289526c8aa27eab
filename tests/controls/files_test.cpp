#include "controls/files.h"

#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fault_of.h"
#include "support/full_disk.h"
#include "support/temp_folder.h"

namespace velgrove {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(Files, AMissingFileAndAFolderAreFaultsThatNamePathAndReason) {
  const TempFolder folder;
  const auto missing = errorOf([&] { (void)readFile(folder / "no.kel"); });
  EXPECT_EQ(missing.fault(), Fault::File);
  EXPECT_THAT(missing.what(), AllOf(HasSubstr((folder / "no.kel").string()), HasSubstr("No such file")));
  EXPECT_THAT(errorOf([&] { (void)readFile(folder.path()); }).what(), HasSubstr("Is a directory"));
  EXPECT_THAT(errorOf([&] { writeFileSafely(folder.path(), "x", Backup::None); }).what(),
              HasSubstr("Is a directory"));
  EXPECT_THAT(errorOf([&] { writeFileSafely(folder / "no/show.kel", "x", Backup::None); }).what(),
              AllOf(HasSubstr("no/show.kel"), HasSubstr("No such file")));
}

TEST(Files, APipeInPlaceOfAFileHoldsNobodyUp) {
  const TempFolder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(errorOf([&] { (void)readFile(folder / "pipe"); }).fault(), Fault::File);
  EXPECT_THAT(errorOf([&] { writeFileSafely(folder / "pipe", "x", Backup::None); }).what(),
              HasSubstr("a pipe"));
}

TEST(Files, WhatIsWrittenIsReadBackAndTheVersionBeforeStays) {
  const TempFolder folder;
  const auto show = folder / "show.kel";
  const std::string first("one\0two\r\n", 9);
  writeFileSafely(show, first, Backup::Keep);
  EXPECT_EQ(readFile(show), first);
  EXPECT_THAT(folder.names(), ElementsAre("show.kel"));

  writeFileSafely(show, "second", Backup::Keep);
  writeFileSafely(show, "third", Backup::Keep);
  EXPECT_EQ(readFile(show), "third");
  EXPECT_EQ(readFile(folder / "show.kel.bak"), "second");
  writeFileSafely(show, "", Backup::None);
  EXPECT_EQ(readFile(show), "");
  EXPECT_EQ(readFile(folder / "show.kel.bak"), "second");
  EXPECT_THAT(folder.names(), ElementsAre("show.kel", "show.kel.bak"));
}

TEST(Files, ADiskThatFillsUpAtAnyByteLeavesTheOldFileAndNothingElse) {
  const std::string text = "a small text";
  for (std::size_t room = 0; room < text.size(); ++room) {
    const TempFolder folder;
    writeFileSafely(folder / "show.kel", "old", Backup::None);
    const auto error =
        errorOf([&] { writeFileSafely(folder / "show.kel", text, Backup::Keep, fullDisk(room)); });
    EXPECT_EQ(error.fault(), Fault::File);
    EXPECT_THAT(error.what(), AllOf(HasSubstr("show.kel"), HasSubstr("No space left")));
    EXPECT_EQ(readFile(folder / "show.kel"), "old") << room;
    EXPECT_THAT(folder.names(), ElementsAre("show.kel")) << room;
  }
  const TempFolder folder;
  writeFileSafely(folder / "show.kel", text, Backup::Keep, fullDisk(text.size()));
  EXPECT_EQ(readFile(folder / "show.kel"), text);
}

TEST(Files, OnADiskWithoutSecondNamesTheBackupIsACopyAndNeedsItsRoom) {
  const std::string old = "old version", text = "new";
  for (std::size_t room = 0; room <= old.size() + text.size(); ++room) {
    const TempFolder folder;
    writeFileSafely(folder / "show.kel", old, Backup::None);
    Disk stick = fullDisk(room);
    stick.link = [](const char*, const char*) { return errno = EPERM, -1; };
    const auto save = [&] { writeFileSafely(folder / "show.kel", text, Backup::Keep, stick); };
    if (room < old.size() + text.size()) {
      EXPECT_EQ(errorOf(save).fault(), Fault::File);
      EXPECT_EQ(readFile(folder / "show.kel"), old) << room;
      EXPECT_THAT(folder.names(), ElementsAre("show.kel")) << room;
    } else {
      save();
      EXPECT_EQ(readFile(folder / "show.kel"), text);
      EXPECT_EQ(readFile(folder / "show.kel.bak"), old);
    }
  }
}

TEST(Files, ADiskThatCannotFlushIsAFaultBeforeTheOldFileIsTouched) {
  const TempFolder folder;
  writeFileSafely(folder / "show.kel", "old", Backup::None);
  Disk disk = systemDisk();
  disk.flush = [](int) { return errno = EIO, -1; };
  EXPECT_THAT(errorOf([&] { writeFileSafely(folder / "show.kel", "new", Backup::Keep, disk); }).what(),
              HasSubstr("Input/output error"));
  EXPECT_EQ(readFile(folder / "show.kel"), "old");
  EXPECT_THAT(folder.names(), ElementsAre("show.kel"));
}

TEST(Files, AnInterruptedWriteGoesOn) {
  const TempFolder folder;
  bool interrupted = false;
  Disk disk = systemDisk();
  disk.write = [&](int file, std::string_view bytes) -> ssize_t {
    interrupted = !interrupted;
    if (interrupted) return errno = EINTR, -1;
    return systemDisk().write(file, bytes.substr(0, 1));
  };
  writeFileSafely(folder / "show.kel", "new", Backup::None, disk);
  EXPECT_EQ(readFile(folder / "show.kel"), "new");
}

TEST(Files, ABackupThatCannotTakeItsNameFailsTheSaveAndLeavesTheOldFile) {
  const TempFolder folder;
  writeFileSafely(folder / "show.kel", "old", Backup::None);
  fs::create_directories(folder / "show.kel.bak" / "in the way");
  EXPECT_THAT(errorOf([&] { writeFileSafely(folder / "show.kel", "new", Backup::Keep); }).what(),
              HasSubstr("show.kel.bak"));
  EXPECT_EQ(readFile(folder / "show.kel"), "old");
  EXPECT_THAT(folder.names(), ElementsAre("show.kel", "show.kel.bak"));
}

TEST(Files, ABackupLeftByASaveThatFailedLaterIsReplacedWithoutATrace) {
  const TempFolder folder;
  writeFileSafely(folder / "show.kel", "old", Backup::None);
  fs::create_hard_link(folder / "show.kel", folder / "show.kel.bak");
  writeFileSafely(folder / "show.kel", "new", Backup::Keep);
  EXPECT_EQ(readFile(folder / "show.kel.bak"), "old");
  EXPECT_THAT(folder.names(), ElementsAre("show.kel", "show.kel.bak"));
}

TEST(Files, WhatAKilledSaveLeftIsRemovedByTheNextAndWhatIsBeingWrittenIsNot) {
  const TempFolder folder;
  writeFileSafely(folder / "show.kel", "old", Backup::None);
  std::ofstream(folder / ".velgrove-1-1.tmp") << "half";
  fs::create_hard_link(folder / "show.kel", folder / ".velgrove-1-2.tmp");
  Disk disk = systemDisk();
  disk.flush = [&](int file) {
    writeFileSafely(folder / "other.kel", "by another desk", Backup::None);
    return systemDisk().flush(file);
  };
  writeFileSafely(folder / "show.kel", "new", Backup::Keep, disk);
  EXPECT_EQ(readFile(folder / "show.kel"), "new");
  EXPECT_EQ(readFile(folder / "show.kel.bak"), "old");
  EXPECT_THAT(folder.names(), ElementsAre("other.kel", "show.kel", "show.kel.bak"));
}

TEST(Files, ASaveOfAFileThatSomebodyHasLockedEndsAndLeavesNothingBeside) {
  const TempFolder folder;
  writeFileSafely(folder / "show.kel", "old", Backup::None);
  const int stranger = ::open((folder / "show.kel").c_str(), O_RDONLY);
  ASSERT_EQ(::flock(stranger, LOCK_EX | LOCK_NB), 0);
  writeFileSafely(folder / "show.kel", "new", Backup::Keep);
  EXPECT_EQ(readFile(folder / "show.kel.bak"), "old");
  EXPECT_THAT(folder.names(), ElementsAre("show.kel", "show.kel.bak"));
  ::close(stranger);
}

TEST(Files, ASaveThroughALinkKeepsTheLinkAndThePermissionsOfTheFileBehindIt) {
  const TempFolder folder;
  fs::create_directory(folder / "shows");
  writeFileSafely(folder / "shows/real.kel", "old", Backup::None);
  ASSERT_EQ(::chmod((folder / "shows/real.kel").c_str(), 0640), 0);
  fs::create_symlink("shows/real.kel", folder / "link.kel");
  writeFileSafely(folder / "link.kel", "new", Backup::Keep);
  EXPECT_TRUE(fs::is_symlink(folder / "link.kel"));
  EXPECT_EQ(readFile(folder / "shows/real.kel"), "new");
  EXPECT_EQ(readFile(folder / "shows/real.kel.bak"), "old");
  EXPECT_EQ(fs::status(folder / "shows/real.kel").permissions(), fs::perms{0640});
}

TEST(Files, AnEndlessLinkIsAFault) {
  const TempFolder folder;
  fs::create_symlink("loop", folder / "loop");
  EXPECT_EQ(errorOf([&] { writeFileSafely(folder / "loop", "x", Backup::None); }).fault(), Fault::File);
}

}  // namespace
}  // namespace velgrove
