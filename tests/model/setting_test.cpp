#include "model/setting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace velgrove {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr int PerUser = 0;
constexpr int IniFile = 1;

/// The store in one of its modes, in a folder of its own.
struct Desk {
  TempFolder folder;
  SettingsStore user{folder / "user.toml"};
  CSetting settings{user, folder.path(), "desk"};

  explicit Desk(int mode) { settings.Init(" Show ", mode); }
};

class BothModes : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Setting, BothModes, testing::Values(PerUser, IniFile));

TEST_P(BothModes, WhatIsSavedIsReadAndListedAndDeleted) {
  Desk desk(GetParam());
  auto& settings = desk.settings;
  EXPECT_EQ(settings.GetSettingStr("Look", "Name", "dusk"), "dusk");
  EXPECT_EQ(settings.GetSettingInt("Look", "Size", -3), -3);
  EXPECT_THAT(settings.GetSettingAll("Look"), IsEmpty());
  settings.SaveSettingStr("Look", "Name", "caf\xC3\xA9");
  settings.SaveSettingInt("Look", "Size", -32768);
  settings.SaveSettingLong("Times", "Long", 2147483647);
  EXPECT_EQ(settings.GetSettingStr("LOOK", "name", ""), "caf\xC3\xA9");
  EXPECT_EQ(settings.GetSettingInt("Look", "Size", 0), -32768);
  EXPECT_EQ(settings.GetSettingLong("Times", "Long", 0), 2147483647);
  EXPECT_THAT(settings.GetSettingAll("Look"),
              ElementsAre(Pair("Name", "caf\xC3\xA9"), Pair("Size", "-32768")));
  EXPECT_THAT(settings.GetSectionNames(), ElementsAre("Look", "Times"));
  settings.DeleteKey("Look", "Size");
  settings.DeleteKey("Look", "never there");
  EXPECT_THAT(settings.GetSettingAll("Look"), ElementsAre(Pair("Name", "caf\xC3\xA9")));
  settings.DeleteKey("Times", "");
  EXPECT_THAT(settings.GetSectionNames(), ElementsAre("Look"));
}

TEST(SettingFile, WhatItCouldNotGiveBackIsRefusedAndNothingIsWritten) {
  Desk desk(IniFile);
  desk.settings.SaveSettingStr("Look", "Name", " dusk ");
  EXPECT_EQ(desk.settings.GetSettingStr("Look", "Name", ""), "dusk");
  const struct {
    std::string_view section, key, text;
  } cases[] = {{"Look", "", "1"},         {"Look", " Size", "1"},       {"Look", "a=b", "1"},
               {"Look", ";Size", "1"},    {"Look]\nName=dawn", "", ""}, {"Look", "Size", "1\nName=dawn"},
               {"Look", "Size", "\tone"}, {"Look ", "Size", "1"}};
  for (const auto& [section, key, text] : cases)
    EXPECT_THROW(desk.settings.SaveSettingStr(section, key, text), SettingError) << section << key << text;
  EXPECT_THAT(desk.settings.GetSettingAll("Look"), ElementsAre(Pair("Name", "dusk")));
}

}  // namespace
}  // namespace velgrove
