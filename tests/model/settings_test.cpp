#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/registry_settings.h"
#include "support/fault_of.h"
#include "support/full_disk.h"
#include "support/temp_folder.h"

namespace velgrove {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StrEq;

void writeText(const fs::path& file, std::string_view text) {
  writeFileSafely(file, text, Backup::None);
}

TEST(Settings, WhatWasSavedIsThereAtTheNextStartUnderNamesInAnyCase) {
  const TempFolder folder;
  const auto file = folder / "deep/velgrove/settings.toml";
  {
    SettingsStore store(file);
    SaveStringSetting(store, " Velgrove ", "Project", " PREF_SHOWSUBS", "-1");
    SaveStringSetting(store, "VELGROVE", "project", "pref_ShowSubs", "0");
    SaveStringSetting(store, "Velgrove", "Settings", "MainLeft", "");
  }
  SettingsStore store(file);
  EXPECT_EQ(GetStringSetting(store, "velgrove", "PROJECT", "Pref_showsubs", "7"), "0");
  EXPECT_EQ(GetStringSetting(store, "Velgrove", "Settings", "MainLeft", "1000"), "");
  EXPECT_THAT(store.sections("velgrove"), ElementsAre("Project", "Settings"));
  EXPECT_THAT(store.keys("velgrove", "project"), ElementsAre("PREF_SHOWSUBS"));
}

TEST(Settings, AnyTextComesBackAsItWasSaved) {
  const TempFolder folder;
  const auto texts = {"a\\b\"c\"'d'"s,
                      "one\r\ntwo\n"s,
                      "tab\tbell\a nul\0 del\x7F"s,
                      "\xC2\x81 caf\xC3\xA9 \xE2\x82\xAC"s,
                      "\"\"\" # = [ ]"s,
                      "\n"s,
                      "\\u0041"s};
  for (const auto& text : texts) {
    const auto file = folder / "settings.toml";
    {
      SettingsStore store(file);
      store.setText("A.b", "Sec tion", "K = [#]", text);
    }
    const SettingsStore store(file);
    EXPECT_EQ(store.message(), std::nullopt);
    EXPECT_EQ(store.text("A.b", "Sec tion", "K = [#]"), text);
    fs::remove(file);
  }
}

TEST(Settings, BlankNamesAreRefusedInTheOrderOfTheAddress) {
  const TempFolder folder;
  SettingsStore store(folder / "settings.toml");
  const struct {
    const char *app, *section, *key, *text;
  } cases[] = {{" ", "", "", "AppName may not be empty"},
               {"a", "  ", "", "Section may not be empty"},
               {"a", "b", " ", "Key may not be empty"}};
  for (const auto& [app, section, key, text] : cases) {
    EXPECT_THAT(errorOf([&] { (void)GetStringSetting(store, app, section, key, "0"); }).what(), StrEq(text));
    const auto error = errorOf([&] { SaveStringSetting(store, app, section, key, "0"); });
    EXPECT_THAT(error.what(), StrEq(text));
    EXPECT_EQ(error.fault(), Fault::Settings);
  }
}

TEST(Settings, AValueOfAnotherTypeIsAnErrorWhenReadAndIsReplacedWhenSaved) {
  const TempFolder folder;
  const auto file = folder / "settings.toml";
  writeText(file, "[Velgrove.Project]\nUp = 3\nDown = \"2\"\n[Other]\nkept = [1, 2.5, true]\n");
  SettingsStore store(file);
  EXPECT_THAT(errorOf([&] { (void)GetStringSetting(store, "Velgrove", "Project", "up", "0"); }).what(),
              StrEq("Registry data not a string"));
  EXPECT_EQ(GetStringSetting(store, "Velgrove", "Project", "Down", "0"), "2");
  EXPECT_THAT(errorOf([&] { (void)GetStringSetting(store, "Velgrove", "Project", "Up", "0"); }).what(),
              StrEq("Registry data not a string"));
  SaveStringSetting(store, "Velgrove", "Project", "Up", "4");
  const SettingsStore again(file);
  EXPECT_EQ(GetStringSetting(again, "Velgrove", "Project", "Up", "0"), "4");
  EXPECT_THAT(readFile(file), HasSubstr("kept = [ 1, 2.5, true ]"));
}

TEST(Settings, AValueInPlaceOfASectionCannotBeOpenedNorWrittenOver) {
  const TempFolder folder;
  writeText(folder / "settings.toml", "[Velgrove]\nProject = 1\n");
  SettingsStore store(folder / "settings.toml");
  EXPECT_THAT(errorOf([&] { (void)GetStringSetting(store, "Velgrove", "Project", "Up", "0"); }).what(),
              StrEq("Could not open registry section"));
  EXPECT_THAT(errorOf([&] { SaveStringSetting(store, "Velgrove", "Project", "Up", "0"); }).what(),
              StrEq("Could not open/create registry section"));
}

TEST(Settings, ADamagedFileIsSetAsideWithAMessageAndNoneSetAsideBeforeIsLost) {
  const TempFolder folder;
  const auto file = folder / "settings.toml";
  for (const char* text : {"[Velgrove\nfirst", "second = = 1"}) {
    writeText(file, text);
    SettingsStore store(file);
    ASSERT_TRUE(store.message());
    EXPECT_THAT(*store.message(), AllOf(HasSubstr(file.string()), HasSubstr("line 1"),
                                        HasSubstr("settings.toml.damaged"), HasSubstr("defaults")));
    EXPECT_EQ(GetStringSetting(store, "Velgrove", "Project", "Up", "0"), "0");
    SaveStringSetting(store, "Velgrove", "Project", "Up", "5");
    EXPECT_EQ(SettingsStore(file).text("Velgrove", "Project", "Up"), "5");
  }
  EXPECT_EQ(readFile(folder / "settings.toml.damaged"), "[Velgrove\nfirst");
  EXPECT_EQ(readFile(folder / "settings.toml.damaged-2"), "second = = 1");
}

TEST(Settings, AWriteThatTheDiskRefusesAtAnyByteLeavesFileAndMemoryAsTheyWere) {
  const TempFolder folder;
  const auto file = folder / "settings.toml";
  {
    SettingsStore store(file);
    store.setText("Velgrove", "Project", "Up", "1");
  }
  const auto before = readFile(file);
  for (std::size_t room = 0; room < before.size(); ++room) {
    SettingsStore store(file, fullDisk(room));
    EXPECT_THAT(errorOf([&] { SaveStringSetting(store, "Velgrove", "Project", "Up", "2"); }).what(),
                StrEq("Could not set key value"));
    EXPECT_THAT(errorOf([&] { store.removeSection("Velgrove", "Project"); }).what(),
                StrEq("Could not set key value"));
    EXPECT_EQ(store.text("Velgrove", "Project", "Up"), "1");
    EXPECT_EQ(readFile(file), before);
    EXPECT_THAT(folder.names(), ElementsAre("settings.toml"));
  }
}

TEST(Settings, WhileTheDiskIsWaitedForTheyReadAsBefore) {
  const TempFolder folder;
  std::string meanwhile;
  SettingsStore* reader = nullptr;
  SettingsStore store(folder / "settings.toml", systemDisk(), [&](const auto& work) {
    work();
    meanwhile = reader->text("Velgrove", "Project", "Up").value_or("none");
  });
  reader = &store;
  store.setText("Velgrove", "Project", "Up", "3");
  EXPECT_EQ(meanwhile, "none");
  store.setText("Velgrove", "Project", "Up", "4");
  EXPECT_EQ(meanwhile, "3");
  EXPECT_EQ(store.text("Velgrove", "Project", "Up"), "4");
}

TEST(Settings, AFolderThatCannotBeMadeIsAnErrorOfItsOwnAndOnlyOfWriting) {
  const TempFolder folder;
  writeText(folder / "file", "");
  SettingsStore store(folder / "file/velgrove/settings.toml");
  EXPECT_EQ(store.message(), std::nullopt);
  EXPECT_EQ(GetStringSetting(store, "Velgrove", "Project", "Up", "0"), "0");
  EXPECT_THAT(errorOf([&] { SaveStringSetting(store, "Velgrove", "Project", "Up", "1"); }).what(),
              StrEq("Could not open/create registry section"));
  EXPECT_EQ(store.text("Velgrove", "Project", "Up"), std::nullopt);
}

TEST(Settings, TextThatTheFileCouldNotGiveBackIsRefused) {
  const TempFolder folder;
  SettingsStore store(folder / "settings.toml");
  for (const auto& [key, text] :
       {std::pair{"Up", "\xFF"}, {"Up", "a\x85"}, {"\xFF", "1"}, {"a\x85", "1"}, {"a\nb", "1"}, {"a'b", "1"}})
    EXPECT_THAT(errorOf([&] { SaveStringSetting(store, "Velgrove", "Project", key, text); }).what(),
                StrEq("Could not set key value"));
  EXPECT_THAT(store.sections("Velgrove"), IsEmpty());
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST(Settings, TheFileLivesInTheUsersConfigurationFolder) {
  EXPECT_EQ(settingsPath("/conf", "/home/ann"), "/conf/velgrove/settings.toml");
  EXPECT_EQ(settingsPath(nullptr, "/home/ann"), "/home/ann/.config/velgrove/settings.toml");
  EXPECT_EQ(settingsPath("", "/home/ann"), "/home/ann/.config/velgrove/settings.toml");
  EXPECT_EQ(settingsPath("conf", "/home/ann"), "/home/ann/.config/velgrove/settings.toml");
}

}  // namespace
}  // namespace velgrove
