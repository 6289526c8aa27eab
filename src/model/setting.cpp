#include "model/setting.h"

#include <algorithm>
#include <charconv>

#define SI_NO_CONVERSION  // the file is UTF-8 like everything in memory
#include <SimpleIni.h>

#include "controls/numbers.h"
#include "model/text.h"

namespace velgrove {
namespace {

constexpr const char* ReadingSetting = "Error reading Setting (";
constexpr const char* ReadingSection = "Error reading Section (";
constexpr const char* WritingSetting = "Error writing Setting (";
constexpr const char* DeletingKey = "Error Deleting Key (";

constexpr std::size_t TextBuffer = 128;   // with the zero that ends the text
constexpr std::size_t ListBuffer = 2048;  // with the two zeros that end the list

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// The head of a text, counted in characters.
std::string head(std::string_view text, std::size_t characters) {
  return characterCount(text) <= characters ? std::string(text) : fixedText(text, characters);
}

/// The content of a settings file.
class IniFile {
 public:
  explicit IniFile(const std::string& text) : m_ini(true) {
    if (m_ini.LoadData(text) < 0) throw RunTimeError(Fault::File, "not the text of a settings file");
  }
  CSimpleIniA* operator->() { return &m_ini; }
  const CSimpleIniA* operator->() const { return &m_ini; }

 private:
  CSimpleIniA m_ini;
};

/// One that isn't there is empty.
IniFile iniOf(const std::filesystem::path& file) {
  std::error_code ignored;
  const std::string text = std::filesystem::exists(file, ignored) ? readFile(file) : "";
  try {
    return IniFile(text);
  } catch (const RunTimeError& error) {
    throw RunTimeError(error.fault(), file.string() + ": " + error.what());
  }
}

std::string textOf(const IniFile& ini) {
  std::string text;
  if (ini->Save(text) < 0) throw RunTimeError(Fault::File, "the settings can't be written");
  return text;
}

/// Refuses a setting that the file couldn't give back: its names or its text would turn into other lines.
void checkReadsBack(const std::string& text, const std::string& section, const std::string& key,
                    std::string_view value) {
  const IniFile again(text);
  const char* const read = again->GetValue(section.c_str(), key.c_str());
  const bool whole = (section + key).find('\0') == std::string::npos;
  if (!whole || read == nullptr || read != trimmed(value))
    throw RunTimeError(Fault::Settings, "no setting can have this text: " + std::string(value));
}

/// What a reader with a buffer gets of a list: names that end with a zero each, cut to the buffer, up to the
/// first double zero.
std::vector<std::string> throughListBuffer(const CSimpleIniA::TNamesDepend& names) {
  std::string list;
  for (const auto& name : names) list.append(name.pItem).push_back('\0');
  if (list.size() < 2) return {};
  list = head(list, ListBuffer - 2);
  list = list.substr(0, list.find(std::string_view("\0\0", 2)));
  std::vector<std::string> parts;
  for (std::size_t at = 0; at < list.size();) {
    const auto end = std::min(list.find('\0', at), list.size());
    parts.push_back(list.substr(at, end - at));
    at = end + 1;
  }
  return parts;
}

CSimpleIniA::TNamesDepend inOrder(CSimpleIniA::TNamesDepend names) {
  names.sort(CSimpleIniA::Entry::LoadOrder());
  return names;
}

/// The number at the head of a text: sign and digits; 0 when there is none.
std::int32_t leadingNumber(std::string_view text) {
  text = trimmed(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  std::int32_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec == std::errc::result_out_of_range)
    throw RunTimeError(Fault::Overflow, std::string(text) + " doesn't fit 32 bits");
  return number;
}

bool isNumber(std::string_view text) {
  try {
    (void)toNumber(text);
    return true;
  } catch (const RunTimeError& error) {
    return error.fault() == Fault::Overflow;
  }
}

/// Runs a method's work and turns its errors into the ones that callers know.
template <class Work>
auto guarded(const char* method, const char* what, const std::string& section, const std::string& key,
             Work&& work) {
  try {
    return std::forward<Work>(work)();
  } catch (const RunTimeError&) {
    std::string description = what;
    description.append(section).append(", ").append(key).append(")");
    throw SettingError(std::string("CSetting.") + method, description);
  }
}

}  // namespace

CSetting::CSetting(SettingsStore& perUser, std::filesystem::path applicationPath, std::string executableName)
    : m_perUser(perUser),
      m_applicationPath(std::move(applicationPath)),
      m_executableName(std::move(executableName)) {}

int CSetting::Init(std::optional<std::string_view> AppName, std::int32_t Mode) {
  m_appName = AppName ? std::string(trimmed(*AppName)) : m_executableName;
  m_fileName = m_applicationPath / (m_appName + ".ini");
  m_saveMode = Mode;
  return 0;
}

void CSetting::begin() {
  if (m_appName.empty()) Init();
}

std::string CSetting::readStr(const std::string& section, const std::string& key,
                              std::string_view fallback) const {
  if (m_saveMode == 0) return m_perUser.text(m_appName, section, key).value_or(std::string(fallback));
  const IniFile ini = iniOf(m_fileName);
  const char* const value = ini->GetValue(section.c_str(), key.c_str());
  const std::string text = head(value != nullptr ? value : fallback, TextBuffer - 1);
  return std::string(trimmed(std::string_view(text).substr(0, text.find('\0'))));
}

std::int32_t CSetting::readNumber(const std::string& section, const std::string& key,
                                  std::int32_t fallback) const {
  const std::string text = readStr(section, key, std::to_string(fallback));
  if (m_saveMode != 0) return text.empty() ? fallback : leadingNumber(text);
  return isNumber(text) ? toInteger<std::int32_t>(text) : 0;
}

std::string CSetting::GetSettingStr(std::string_view Section, std::string_view Key,
                                    std::string_view Default) {
  const std::string section(Section), key(Key);
  return guarded("GetSettingStr", ReadingSetting, section, key, [&] {
    begin();
    return readStr(section, key, Default);
  });
}

std::int16_t CSetting::GetSettingInt(std::string_view Section, std::string_view Key, std::int16_t Default) {
  const std::string section(Section), key(Key);
  return guarded("GetSettingInt", ReadingSetting, section, key, [&] {
    begin();
    return narrow<std::int16_t>(readNumber(section, key, Default));
  });
}

std::int32_t CSetting::GetSettingLong(std::string_view Section, std::string_view Key, std::int32_t Default) {
  const std::string section(Section), key(Key);
  return guarded("GetSettingLong", ReadingSetting, section, key, [&] {
    begin();
    return readNumber(section, key, Default);
  });
}

std::vector<std::pair<std::string, std::string>> CSetting::GetSettingAll(std::string_view Section) {
  const std::string section(Section);
  return guarded("GetSettingAll", ReadingSection, section, "", [&] {
    begin();
    std::vector<std::string> keys;
    if (m_saveMode == 0) {
      keys = m_perUser.keys(m_appName, section);
    } else {
      const IniFile ini = iniOf(m_fileName);
      CSimpleIniA::TNamesDepend names;
      ini->GetAllKeys(section.c_str(), names);
      keys = throughListBuffer(inOrder(std::move(names)));
    }
    std::vector<std::pair<std::string, std::string>> settings;
    settings.reserve(keys.size());
    for (auto& key : keys) settings.emplace_back(key, readStr(section, key, ""));
    return settings;
  });
}

std::vector<std::string> CSetting::GetSectionNames() {
  return guarded("GetSectionNames", ReadingSection, "", "", [&] {
    begin();
    if (m_saveMode == 0) return m_perUser.sections(m_appName);
    const IniFile ini = iniOf(m_fileName);
    CSimpleIniA::TNamesDepend names;
    ini->GetAllSections(names);
    return throughListBuffer(inOrder(std::move(names)));
  });
}

void CSetting::save(const char* method, const std::string& section, const std::string& key,
                    std::string_view value) {
  guarded(method, WritingSetting, section, key, [&] {
    begin();
    if (m_saveMode == 0) return m_perUser.setText(m_appName, section, key, value);
    IniFile ini = iniOf(m_fileName);
    if (ini->SetValue(section.c_str(), key.c_str(), std::string(value).c_str()) < 0)
      throw RunTimeError(Fault::Settings, settings_errors::SetValue);
    const std::string text = textOf(ini);
    checkReadsBack(text, section, key, value);
    writeFileSafely(m_fileName, text, Backup::None);
  });
}

void CSetting::SaveSettingStr(std::string_view Section, std::string_view Key, std::string_view Value) {
  save("SaveSettingStr", std::string(Section), std::string(Key), Value);
}

void CSetting::SaveSettingInt(std::string_view Section, std::string_view Key, std::int16_t Value) {
  save("SaveSettingInt", std::string(Section), std::string(Key), std::to_string(Value));
}

void CSetting::SaveSettingLong(std::string_view Section, std::string_view Key, std::int32_t Value) {
  save("SaveSettingLong", std::string(Section), std::string(Key), std::to_string(Value));
}

void CSetting::DeleteKey(std::string_view Section, std::string_view Key) {
  const std::string section(Section), key(Key);
  guarded("DeleteKey", DeletingKey, section, key, [&] {
    begin();
    if (m_saveMode == 0)
      return key.empty() ? m_perUser.removeSection(m_appName, section)
                         : m_perUser.remove(m_appName, section, key);
    IniFile ini = iniOf(m_fileName);
    const bool there = key.empty() ? ini->GetSection(section.c_str()) != nullptr
                                   : ini->GetValue(section.c_str(), key.c_str()) != nullptr;
    if (!there) return;
    ini->Delete(section.c_str(), key.empty() ? nullptr : key.c_str(), true);
    writeFileSafely(m_fileName, textOf(ini), Backup::None);
  });
}

}  // namespace velgrove
