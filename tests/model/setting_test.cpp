#include "model/setting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fault_of.h"
#include "support/temp_folder.h"

namespace velgrove {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
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
  void ini(std::string_view text) { writeFileSafely(settings.FileName(), text, Backup::None); }
};

SettingError settingErrorOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const SettingError& error) {
    return error;
  }
  throw std::logic_error("no setting error came");
}

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

TEST_P(BothModes, ANumberThatDoesNotFitIsAReadingError) {
  Desk desk(GetParam());
  desk.settings.SaveSettingStr("Look", "Size", "32768");
  const auto error = settingErrorOf([&] { (void)desk.settings.GetSettingInt("Look", "Size", 0); });
  EXPECT_EQ(error.number(), 0x80040203U);
  EXPECT_EQ(error.source(), "CSetting.GetSettingInt");
  EXPECT_STREQ(error.what(), "Error reading Setting (Look, Size)");
  EXPECT_EQ(desk.settings.GetSettingLong("Look", "Size", 0), 32768);
}

TEST(Setting, TextThatIsNoNumberIsZeroPerUserAndItsHeadInTheFile) {
  Desk user(PerUser), file(IniFile);
  const struct {
    const char* text;
    int perUser, inFile;
  } cases[] = {{"abc", 0, 0}, {"12abc", 0, 12}, {"1.5", 2, 1}, {" -7 ", -7, -7}, {"+4", 4, 4}};
  for (const auto& [text, perUser, inFile] : cases) {
    user.settings.SaveSettingStr("S", "K", text);
    file.settings.SaveSettingStr("S", "K", text);
    EXPECT_EQ(user.settings.GetSettingInt("S", "K", 9), perUser) << text;
    EXPECT_EQ(file.settings.GetSettingLong("S", "K", 9), inFile) << text;
  }
  file.ini("[S]\nK=\n");
  EXPECT_EQ(file.settings.GetSettingInt("S", "K", 9), 9);
}

TEST(Setting, TheFileModeCutsTextsAndListsToItsBuffers) {
  Desk desk(IniFile);
  std::string ini = "[S]\nlong=" + std::string(200, 'x') + "\nspaces=" + std::string(120, 'y') + "       z\n";
  for (int key = 100; key < 400; ++key) ini += "key" + std::to_string(key) + "=" + std::to_string(key) + "\n";
  desk.ini(ini);
  EXPECT_EQ(desk.settings.GetSettingStr("S", "long", ""), std::string(127, 'x'));
  EXPECT_EQ(desk.settings.GetSettingStr("S", "spaces", ""), std::string(120, 'y'));
  EXPECT_EQ(desk.settings.GetSettingStr("S", "none", " d "), "d");
  const auto all = desk.settings.GetSettingAll("S");
  // "long" and "spaces" take 12 characters with their ends, a key 7: 290 whole ones and "key3" fit 2046.
  ASSERT_EQ(all.size(), 2U + 290U + 1U);
  EXPECT_THAT(all[291], Pair("key389", "389"));
  EXPECT_THAT(all[292], Pair("key3", ""));
}

TEST(Setting, TheFirstUseInitsWithTheExecutablesNameAndThePerUserMode) {
  const TempFolder folder;
  SettingsStore user(folder / "user.toml");
  CSetting settings(user, folder.path(), "desk");
  settings.setSaveMode(IniFile);
  settings.SaveSettingStr("S", "K", "v");
  EXPECT_EQ(settings.SaveMode(), PerUser);
  EXPECT_EQ(settings.FileName(), folder / "desk.ini");
  EXPECT_EQ(user.text("desk", "S", "K"), "v");
  EXPECT_EQ(settings.Init("  Other ", IniFile), 0);
  EXPECT_EQ(settings.FileName(), folder / "Other.ini");
}

TEST(Setting, EveryMethodTellsItsNameAndAddressWhenItFails) {
  Desk user(PerUser), file(IniFile);
  user.user.setText("Show", "S", "K", "v");
  writeFileSafely(user.folder / "user.toml", "Show.S.K = 5\nShow.T = 1", Backup::None);
  SettingsStore odd(user.folder / "user.toml");
  CSetting settings(odd, user.folder.path(), "Show");
  fs::create_directories(file.settings.FileName() / "in the way");
  const struct {
    std::function<void()> work;
    const char *source, *text;
  } cases[] = {
      {[&] { (void)settings.GetSettingStr("S", "K", ""); }, "GetSettingStr", "Error reading Setting (S, K)"},
      {[&] { (void)settings.GetSettingLong("S", "K", 0); }, "GetSettingLong", "Error reading Setting (S, K)"},
      {[&] { (void)settings.GetSettingAll("S"); }, "GetSettingAll", "Error reading Section (S, )"},
      {[&] { settings.SaveSettingInt("T", "K", 0); }, "SaveSettingInt", "Error writing Setting (T, K)"},
      {[&] { settings.DeleteKey("T", "K"); }, "DeleteKey", "Error Deleting Key (T, K)"},
      {[&] { (void)file.settings.GetSectionNames(); }, "GetSectionNames", "Error reading Section (, )"},
      {[&] { file.settings.SaveSettingStr("S", "K", ""); }, "SaveSettingStr", "Error writing Setting (S, K)"},
      {[&] { file.settings.SaveSettingLong("S", "K", 1); }, "SaveSettingLong",
       "Error writing Setting (S, K)"},
      {[&] { file.settings.DeleteKey("S", ""); }, "DeleteKey", "Error Deleting Key (S, )"},
  };
  for (const auto& [work, source, text] : cases) {
    const auto error = settingErrorOf(work);
    EXPECT_EQ(error.source(), std::string("CSetting.") + source);
    EXPECT_STREQ(error.what(), text);
  }
}

TEST(Setting, TextThatWouldBecomeOtherLinesOfTheFileIsRefused) {
  Desk desk(IniFile);
  desk.settings.SaveSettingStr("S", "K", "v");
  const auto before = readFile(desk.settings.FileName());
  for (const auto& [section, key, value] :
       {std::tuple{"S", "K", "1\n[T]\nx=1"}, {"S", "a=b", "1"}, {"S]", "K", "1"}})
    (void)settingErrorOf([&] { desk.settings.SaveSettingStr(section, key, value); });
  EXPECT_EQ(readFile(desk.settings.FileName()), before);
}

}  // namespace
}  // namespace velgrove
