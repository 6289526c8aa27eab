#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/settings_store.h"

namespace velgrove {

/// What CSetting's methods raise: `what()` is the description.
class SettingError : public RunTimeError {
 public:
  static constexpr std::uint32_t Number = 0x80040203;

  SettingError(std::string source, const std::string& description)
      : RunTimeError(Fault::Settings, description), m_source(std::move(source)) {}
  [[nodiscard]] static std::uint32_t number() { return Number; }
  [[nodiscard]] const std::string& source() const { return m_source; }  ///< "CSetting.GetSettingStr"

 private:
  std::string m_source;
};

/// A typed store of settings, either in an `.ini` file beside the program or in the user's own settings.
/// Every failure comes out as a SettingError.
class CSetting {
 public:
  /// `perUser` is what SaveMode 0 works on; the `.ini` file lies in the application path.
  CSetting(SettingsStore& perUser, std::filesystem::path applicationPath, std::string executableName);

  /// Sets name, file and mode; without a name the executable's. Answers 0.
  int Init(std::optional<std::string_view> AppName = {}, std::int32_t Mode = 0);

  /// In the file a text is cut to what a buffer of 128 characters holds (127 and its end), then trimmed.
  [[nodiscard]] std::string GetSettingStr(std::string_view Section, std::string_view Key,
                                          std::string_view Default);
  /// In the file the number at the head of the text, 0 when there is none; per user 0 for what is no number.
  [[nodiscard]] std::int16_t GetSettingInt(std::string_view Section, std::string_view Key,
                                           std::int16_t Default);
  [[nodiscard]] std::int32_t GetSettingLong(std::string_view Section, std::string_view Key,
                                            std::int32_t Default);
  /// Keys with their values. In the file the list of names is cut to a buffer of 2048 characters.
  [[nodiscard]] std::vector<std::pair<std::string, std::string>> GetSettingAll(std::string_view Section);
  [[nodiscard]] std::vector<std::string> GetSectionNames();
  void SaveSettingStr(std::string_view Section, std::string_view Key, std::string_view Value);
  void SaveSettingInt(std::string_view Section, std::string_view Key, std::int16_t Value);
  void SaveSettingLong(std::string_view Section, std::string_view Key, std::int32_t Value);
  /// With an empty key the whole section goes.
  void DeleteKey(std::string_view Section, std::string_view Key);

  [[nodiscard]] std::int32_t SaveMode() const { return m_saveMode; }  ///< 0 per user, else the file
  void setSaveMode(std::int32_t mode) { m_saveMode = mode; }
  [[nodiscard]] const std::filesystem::path& FileName() const { return m_fileName; }
  [[nodiscard]] const std::string& AppName() const { return m_appName; }

 private:
  void begin();
  [[nodiscard]] std::string readStr(const std::string& section, const std::string& key,
                                    std::string_view fallback) const;
  [[nodiscard]] std::int32_t readNumber(const std::string& section, const std::string& key,
                                        std::int32_t fallback) const;
  void save(const char* method, const std::string& section, const std::string& key, std::string_view value);

  SettingsStore& m_perUser;
  std::filesystem::path m_applicationPath;
  std::string m_executableName;
  std::string m_appName;
  std::filesystem::path m_fileName;
  std::int32_t m_saveMode = 0;
};

}  // namespace velgrove
