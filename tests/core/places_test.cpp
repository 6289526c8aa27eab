// Where the desk's own files lie.

#include "core/places.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace velgrove::test {
namespace {

namespace fs = std::filesystem;

class PlacesOfAMachine : public testing::Test {
 protected:
  TempFolder machine;
  fs::path bin = machine / "opt/bin";
  PlaceHints hints{
      .executable = bin / "velgrove", .home = (machine / "home").string(), .dataHome = "", .configHome = ""};

  void SetUp() override { fs::create_directories(bin); }
};

TEST_F(PlacesOfAMachine, AnInstalledDeskUsesTheShareFolderAndTheUsersOwn) {
  Places places = placesFor(hints);
  EXPECT_EQ(places.application, bin);
  EXPECT_EQ(places.graphics, machine / "opt/share/velgrove/graphics");
  EXPECT_EQ(places.manual, machine / "opt/share/velgrove/manual");
  EXPECT_EQ(places.data, machine / "home/.local/share/velgrove");
  EXPECT_EQ(places.settings, machine / "home/.config/velgrove");
  EXPECT_EQ(places.firstShows, machine / "opt/share/velgrove/shows");

  hints.dataHome = "/elsewhere/data";
  hints.configHome = "/elsewhere/config";
  places = placesFor(hints);
  EXPECT_EQ(places.data, "/elsewhere/data/velgrove");
  EXPECT_EQ(places.settings, "/elsewhere/config/velgrove");

  hints.dataHome = "not/absolute";
  EXPECT_EQ(placesFor(hints).data, machine / "home/.local/share/velgrove");
}

TEST_F(PlacesOfAMachine, ACopyOnAStickKeepsEverythingBesideItself) {
  fs::create_directories(bin / "graphics");
  fs::create_directories(bin / "data");
  EXPECT_EQ(placesFor(hints).graphics, bin / "graphics");
  EXPECT_EQ(placesFor(hints).data, bin / "data");
  EXPECT_EQ(placesFor(hints).firstShows, "") << "they are in the data folder";
  if (::geteuid() == 0) return;  // may write everywhere
  fs::permissions(bin / "data", fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_EQ(placesFor(hints).data, machine / "home/.local/share/velgrove");
}

TEST_F(PlacesOfAMachine, ADeskThatWasJustBuiltHasTheManualOfItsBuild) {
  fs::create_directories(machine / "opt/share/manual");
  EXPECT_EQ(placesFor(hints).manual, machine / "opt/share/manual");
}

TEST(PlacesOfThisProcess, BeginAtItsExecutable) {
  EXPECT_TRUE(fs::exists(thisProcessPlaces().application / "desk_test"));
}

}  // namespace
}  // namespace velgrove::test
