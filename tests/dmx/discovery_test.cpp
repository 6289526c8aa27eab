#include "dmx/discovery.h"

#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace velgrove {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

/// A machine in a folder, laid out as the kernel lays out its own.
class Machine : public testing::Test {
 protected:
  Machine() {
    for (const fs::path& path : {roots.ttyClass, roots.dev, roots.boxes}) fs::create_directories(path);
  }

  struct Usb {
    std::string vendor = "10c4", product = "ea60", serial;
  };

  void plug(const std::string& tty, const Usb& usb, const std::string& driver = "cp210x") {
    const fs::path device = m_root / "sys/devices/usb1" / ("1-" + tty);
    const fs::path port = device / "1-1:1.0" / tty;
    const fs::path driverFolder = m_root / "sys/bus/usb-serial/drivers" / driver;
    fs::create_directories(port / "tty" / tty);
    fs::create_directories(driverFolder);
    fs::create_symlink(driverFolder, port / "driver");
    fs::create_symlink("../..", port / "tty" / tty / "device");
    fs::create_symlink(fs::relative(port / "tty" / tty, roots.ttyClass), roots.ttyClass / tty);
    write(device / "idVendor", usb.vendor);
    write(device / "idProduct", usb.product);
    if (!usb.serial.empty()) write(device / "serial", usb.serial);
    write(roots.dev / tty, "");
  }
  void unplug(const std::string& tty) {
    fs::remove(roots.dev / tty);
    fs::remove(roots.ttyClass / tty);
    fs::remove_all(m_root / "sys/devices/usb1" / ("1-" + tty));
  }
  void registerBox(const std::string& name) {
    write(m_root / ("terminal of " + name), "");
    fs::create_symlink(m_root / ("terminal of " + name), roots.boxes / name);
  }
  std::string dev(const std::string& name) const { return roots.dev / name; }
  std::string box(const std::string& name) const { return roots.boxes / name; }
  std::vector<std::string> found(const std::string& byHand = "") const {
    std::vector<std::string> paths;
    for (const InterfaceDevice& device : findInterfaces(roots, byHand)) paths.push_back(device.path);
    return paths;
  }
  static void write(const fs::path& file, const std::string& text) { std::ofstream(file) << text << '\n'; }

  TempFolder m_folder;
  const fs::path& m_root = m_folder.path();
  MachineRoots roots{
      .ttyClass = m_root / "sys/class/tty", .dev = m_root / "dev", .boxes = m_root / "run/velgrove/boxes"};
};

TEST_F(Machine, BridgesComeByDeviceNumberThenBoxesByName) {
  plug("ttyUSB10", {.vendor = "ffff", .product = "0001", .serial = ""});  // whoever made it
  plug("ttyUSB2", {.serial = "B"});
  plug("ttyUSB1", {.serial = "X"}, "ftdi_sio");
  fs::create_directories(roots.ttyClass / "tty0");
  registerBox("right");
  registerBox("left");
  EXPECT_THAT(found(), ElementsAre(dev("ttyUSB2"), dev("ttyUSB10"), box("left"), box("right")));
}

TEST_F(Machine, APortSetByHandIsTheOnlyDeviceThereOrNot) {
  plug("ttyUSB0", {.serial = "A"});
  plug("ttyUSB1", {.vendor = "0403", .product = "6001", .serial = "F"}, "ftdi_sio");
  registerBox("box");
  fs::create_symlink(roots.dev / "ttyUSB1", m_root / "by-id");
  EXPECT_THAT(findInterfaces(roots, dev("ttyUSB1")),
              ElementsAre(InterfaceDevice{dev("ttyUSB1"), "0403", "6001", "F"}));
  EXPECT_THAT(findInterfaces(roots, m_root / "by-id"),
              ElementsAre(InterfaceDevice{m_root / "by-id", "0403", "6001", "F"}));
  for (const std::string& port : {dev("ttyUSB9"), box("box"), std::string("/nowhere/ttyUSB0")})
    EXPECT_THAT(findInterfaces(roots, port), ElementsAre(InterfaceDevice{port, "", "", ""}));
}

TEST_F(Machine, OnlyLinksToWhatStandsCountAsBoxes) {
  registerBox("box");
  fs::create_symlink(m_root / "vanished", roots.boxes / "dangling");
  fs::create_symlink("loop", roots.boxes / "loop");
  fs::create_symlink(m_root / "terminal of box", roots.boxes / ".box.new");
  write(roots.boxes / "file", "");
  EXPECT_THAT(found(), ElementsAre(box("box")));
}

TEST_F(Machine, ALinkOfACrashedBoxCountsAsNoneEvenIfItsTerminalBelongsToAnotherNow) {
  registerBox("box");
  write(boxLockFile(roots.boxes, "box"), "");
  EXPECT_THAT(found(), IsEmpty());
  EXPECT_EQ(findAgain(roots, {.path = box("box")}), std::nullopt);

  const int lockFile = open(boxLockFile(roots.boxes, "box").c_str(), O_RDWR | O_CLOEXEC);
  struct flock lock {};
  lock.l_type = F_WRLCK;
  ASSERT_EQ(fcntl(lockFile, F_OFD_SETLK, &lock), 0);
  EXPECT_THAT(found(), ElementsAre(box("box")));
  EXPECT_EQ(findAgain(roots, {.path = box("box")}), box("box"));
  close(lockFile);
}

TEST_F(Machine, AFolderWhereEverybodyMayWriteCountsOnlyIfItIsTheUsersAlone) {
  const fs::path shared = m_root / ("velgrove-" + std::to_string(geteuid()));
  roots.boxes = shared / "boxes";
  fs::create_directories(roots.boxes);
  registerBox("box");
  const auto alone = fs::perms::owner_all;
  const auto everybody = fs::perms(0755);
  const struct {
    fs::perms around, folder;
    bool trusted;
  } cases[] = {{alone, alone, true}, {everybody, alone, false}, {alone, everybody, false}};
  for (const auto& [around, folder, trusted] : cases) {
    fs::permissions(shared, around);
    fs::permissions(roots.boxes, folder);
    EXPECT_EQ(found().size(), trusted ? 1U : 0U) << testing::PrintToString(std::pair(around, folder));
  }
  fs::permissions(roots.boxes, alone);
  fs::rename(shared, m_root / "elsewhere");
  fs::create_directory_symlink(m_root / "elsewhere", shared);
  EXPECT_THAT(found(), IsEmpty()) << "a link instead of the folder";
  fs::remove(shared);
  fs::rename(m_root / "elsewhere", shared);
  ASSERT_EQ(found().size(), 1U);
  if (geteuid() != 0) return;  // only the administrator can give a folder away
  ASSERT_EQ(lchown(shared.c_str(), 65534, 65534), 0);
  EXPECT_THAT(found(), IsEmpty()) << "somebody else's folder";
}

TEST_F(Machine, ALostDeviceIsFoundAgainBySerialNumberAtAnyPath) {
  plug("ttyUSB0", {.serial = "A"});
  const InterfaceDevice lost = findInterfaces(roots, "").front();
  EXPECT_EQ(findAgain(roots, lost), dev("ttyUSB0"));
  unplug("ttyUSB0");
  EXPECT_EQ(findAgain(roots, lost), std::nullopt);
  plug("ttyUSB0", {.serial = "stranger"});
  plug("ttyUSB1", {.vendor = "0403", .serial = "A"});  // another maker's A
  EXPECT_EQ(findAgain(roots, lost), std::nullopt);
  plug("ttyUSB7", {.serial = "A"});
  EXPECT_EQ(findAgain(roots, lost), dev("ttyUSB7"));
  fs::remove(roots.dev / "ttyUSB7");
  EXPECT_EQ(findAgain(roots, lost), std::nullopt) << "the kernel knows it, but its node isn't there yet";
}

TEST_F(Machine, OfTwoDevicesWithTheSameSerialNumberTheOneAtTheOldPathIsTheLostOne) {
  plug("ttyUSB0", {.serial = "0001"});
  plug("ttyUSB1", {.serial = "0001"});
  const InterfaceDevice lost = findInterfaces(roots, "").back();
  EXPECT_EQ(findAgain(roots, lost), dev("ttyUSB1"));
}

TEST_F(Machine, ALostDeviceWithoutSerialNumberIsFoundAgainAtItsPathOnly) {
  plug("ttyUSB0", {.serial = ""});
  registerBox("box");
  const auto devices = findInterfaces(roots, "");
  unplug("ttyUSB0");
  fs::remove(box("box"));
  plug("ttyUSB1", {.serial = ""});
  for (const InterfaceDevice& lost : devices) EXPECT_EQ(findAgain(roots, lost), std::nullopt) << lost.path;
  plug("ttyUSB0", {.serial = ""});
  fs::create_symlink(m_root / "terminal of box", box("box"));
  for (const InterfaceDevice& lost : devices) EXPECT_EQ(findAgain(roots, lost), lost.path);
}

TEST_F(Machine, AMachineWithoutAnyOfItHasNoInterface) {
  roots = {.ttyClass = m_root / "no", .dev = m_root / "no", .boxes = m_root / "no"};
  EXPECT_THAT(found(), IsEmpty());
  EXPECT_EQ(findAgain(roots, {.path = dev("ttyUSB0"), .vendor = "1", .product = "2", .serial = "3"}),
            std::nullopt);
}

TEST(BoxFolder, StandsInTheUsersRunTimeFolderOrElseInAFolderOfHisOwn) {
  const char* const before = std::getenv("XDG_RUNTIME_DIR");
  const std::string kept = before == nullptr ? "" : before;
  setenv("XDG_RUNTIME_DIR", "/run/user/7", 1);
  EXPECT_EQ(virtualBoxFolder(), "/run/user/7/velgrove/boxes");
  const std::string own = "/tmp/velgrove-" + std::to_string(geteuid()) + "/boxes";
  for (const char* useless : {"", "relative"}) {
    setenv("XDG_RUNTIME_DIR", useless, 1);
    EXPECT_EQ(virtualBoxFolder(), own) << '"' << useless << '"';
  }
  unsetenv("XDG_RUNTIME_DIR");
  EXPECT_EQ(virtualBoxFolder(), own);
  if (before != nullptr) setenv("XDG_RUNTIME_DIR", kept.c_str(), 1);
}

TEST(PortNumber, IsTheDigitsAtTheEndOfTheName) {
  const std::pair<const char*, int> cases[] = {{"/dev/ttyUSB12", 12},
                                               {"/dev/ttyUSB007", 7},
                                               {"/boxes9/box", 0},
                                               {"", 0},
                                               {"/dev/tty99999999999999", 0}};
  for (const auto& [path, number] : cases) EXPECT_EQ(portNumber(path), number) << path;
}

}  // namespace
}  // namespace velgrove
