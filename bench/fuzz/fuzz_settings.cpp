// Any text as one of the desk's files of settings: the store, an `.ini` file, the recent list. The parts of
// an input stand between lines "@@": the kind, the file, then section, key and text of a setting that is set.

#include "controls/files.h"
#include "core/recent_list.h"
#include "fuzz.h"
#include "model/setting.h"
#include "model/text.h"

namespace velgrove::fuzz {
namespace {

constexpr const char* App = "Velgrove";

struct Change {
  std::string section;
  std::string key;
  std::string text;
};

/// Runs what may fail with an error of the settings, and says whether it did its work.
template <class Work>
bool done(const Work& work) {
  try {
    work();
    return true;
  } catch (const RunTimeError& error) {
    require(error.fault() == Fault::Settings, "what fails is a fault of the settings");
    return false;
  }
}

// ---- The store

/// All that can be asked of a store, as one text.
std::string contentOf(const SettingsStore& store) {
  std::string content;
  (void)done([&] {
    for (const std::string& section : store.sections(App)) {
      content += "[" + section + "]\n";
      (void)done([&] {
        for (const std::string& key : store.keys(App, section))
          (void)done([&] { content += key + "=" + store.text(App, section, key).value_or("-") + "\n"; });
      });
    }
  });
  return content;
}

void damagedOneIsKept(const SettingsStore& store, std::string_view bytes) {
  auto kept = store.file();
  kept += ".damaged";
  require(readFile(kept) == bytes, "a damaged file is kept as it was");
  require(contentOf(store).empty(), "a damaged file counts as none");
  std::filesystem::remove(kept);
}

void readStore(std::string_view bytes, const Change& change) {
  SettingsStore store(fileOf(bytes, "settings.toml"));
  if (store.message()) damagedOneIsKept(store, bytes);
  const std::string before = contentOf(store);
  const bool set = done([&] { store.setText(App, change.section, change.key, change.text); });
  const SettingsStore again(store.file());
  require(set || contentOf(store) == before, "a setting that is refused changes nothing");
  require(!set || store.text(App, change.section, change.key) == change.text, "what was set is there");
  if (std::filesystem::exists(store.file())) {
    require(!again.message(), "a file that was written can be read");
    require(contentOf(again) == contentOf(store), "the next start finds the same settings");
  }
  (void)done([&] { store.remove(App, change.section, change.key); });
  (void)done([&] { store.removeSection(App, change.section); });
}

// ---- The .ini file

/// A text as the file's readers get it: 127 characters without the blanks around them.
bool comesBack(const std::string& text) {
  return characterCount(text) < 128 && !text.starts_with(' ') && !text.ends_with(' ');
}

void readAll(CSetting& setting) {
  for (const std::string& section : setting.GetSectionNames()) {
    for (const auto& [key, text] : setting.GetSettingAll(section)) {
      require(characterCount(text) < 128, "a text fits the reader's buffer");
      (void)done([&] { (void)setting.GetSettingInt(section, key, 1); });
      (void)done([&] { (void)setting.GetSettingLong(section, key, 1); });
    }
  }
}

void readIni(std::string_view bytes, const Change& change) {
  SettingsStore inMemory{std::filesystem::path{}};
  CSetting setting(inMemory, fileOf(bytes, "desk.ini").parent_path(), "desk");
  setting.Init({}, 1);
  if (!done([&] { readAll(setting); })) return;
  const auto& [section, key, text] = change;
  if (!done([&] { setting.SaveSettingStr(section, key, text); })) return;
  require(!comesBack(text) || setting.GetSettingStr(section, key, "another") == text,
          "what was set is there");
  readAll(setting);
  setting.DeleteKey(section, key);
  setting.DeleteKey(section, "");
}

// ---- The recent list

void readList(std::string_view bytes, const Change& change) {
  ShowState show;
  try {
    readRecentList(show, std::string(bytes));
  } catch (const RunTimeError& error) {
    return require(error.fault() == Fault::Subscript, "only too many lines are refused");
  }
  show.ProjectFileName = change.text;
  noteRecentFile(show);
  require(show.MRUList.front() == change.text, "the open show comes first");
  ShowState again;
  readRecentList(again, recentListText(show));
  require(recentListText(again) == recentListText(show), "the next start finds the same list");
}

void read(std::string_view input) {
  const std::string_view kind = nextPart(input);
  const std::string_view bytes = nextPart(input);
  Change change;
  for (std::string* part : {&change.section, &change.key, &change.text}) *part = nextPart(input);
  if (kind == "store") readStore(bytes, change);
  if (kind == "ini") readIni(bytes, change);
  if (kind == "list") readList(bytes, change);
}

}  // namespace
}  // namespace velgrove::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  velgrove::fuzz::read(velgrove::fuzz::textOf(data, size));
  return 0;
}
