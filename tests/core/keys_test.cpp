// The keys that work anywhere, and the Go key's double tap.

#include "core/keys.h"

#include <fstream>
#include <limits>
#include <set>

#include "core/lighting_desk.h"
#include "support/desks.h"

namespace velgrove::test {
namespace {

constexpr std::string_view CountedOnce = "The Go key was pressed twice within 100 ms: it counted once";

class Keys : public Desks {
 protected:
  LightingDesk* startWithFiveCues() {
    ShowMaker maker;
    for (float number = 1; number <= 5; ++number) maker.xy.push_back({.number = number});
    open = writeShow(maker);
    return start();
  }
  void fade() { house->runTo(std::chrono::floor<Milliseconds>(house->clock.now()).count() + 100); }
};

TEST_F(Keys, PressOneToolEachWhichShowsIt) {
  start();
  std::set<std::string_view> keys;
  for (const FrameKey& key : frameKeys()) {
    EXPECT_TRUE(keys.insert(key.Key).second) << key.Key << " presses two tools";
    EXPECT_EQ(toolState(std::string(key.Tool).c_str()).Key, key.Key);
    if (!key.Twin.empty()) {
      EXPECT_EQ(toolState(std::string(key.Twin).c_str()).Key, key.Key);
    }
  }
  for (const WindowKey& key : windowKeys()) EXPECT_FALSE(keys.contains(key.Key)) << key.Key;
}

TEST_F(Keys, AreListedUnderHelp) {
  auto* const desk = start();
  tool("ID_Keys");
  const frmKeys& list = desk->windows.Keys;
  EXPECT_TRUE(list.Window.Visible);
  const int row = list.ListViewKeys.findItem("F12");
  ASSERT_NE(row, 0);
  EXPECT_THAT(list.ListViewKeys.row(row).Texts[2], testing::StartsWith("Blackout"));
  EXPECT_EQ(list.ListViewKeys.count(), static_cast<int>(frameKeys().size() + windowKeys().size()));
}

TEST_F(Keys, StandInTheManualAllAndNoOthers) {
  std::ifstream page(SHOW_DATA_DIR "/../docs/manual/20-keys.md");
  std::set<std::string> told;
  for (std::string line; std::getline(page, line);)
    if (line.starts_with("| ") && !line.starts_with("| Key"))
      told.insert(line.substr(2, line.find(" |") - 2));
  std::set<std::string> known{"F6"};
  for (const FrameKey& key : frameKeys()) known.emplace(key.Key);
  EXPECT_EQ(told, known);
}

TEST_F(Keys, GoTwiceWithin100MsCountsOnceAndSaysSo) {
  auto* const desk = startWithFiveCues();
  const auto stage = [desk] { return desk->windows.XYQ->State.StageCue; };
  const auto press = [this, desk](std::uint32_t at) {
    desk->frame.goKey(at);
    fade();
  };
  constexpr std::uint32_t NearTheTurn = std::numeric_limits<std::uint32_t>::max() - 49;
  press(NearTheTurn);
  const auto first = stage();
  EXPECT_EQ(desk->frame.StatusMessage, "");
  press(NearTheTurn + 100);  // the keyboard's clock has run over
  EXPECT_EQ(stage(), first);
  EXPECT_EQ(desk->frame.StatusMessage, CountedOnce);
  press(NearTheTurn + 101);
  EXPECT_EQ(stage(), first + 1) << "measured from the press that counted";
  EXPECT_EQ(desk->frame.StatusMessage, "");
}

TEST_F(Keys, GoOfTheToolObeysBesideTheKeyEveryTime) {
  auto* const desk = startWithFiveCues();
  const auto first = desk->windows.XYQ->State.StageCue + 1;
  desk->frame.goKey(7);
  fade();
  for (int go = 0; go < 2; ++go) {
    tool("ID_Go");
    fade();
  }
  EXPECT_EQ(desk->windows.XYQ->State.StageCue, first + 2);
  desk->frame.goKey(7 + 90);
  EXPECT_EQ(desk->windows.XYQ->State.StageCue, first + 2);
}

}  // namespace
}  // namespace velgrove::test
