#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "controls/files.h"

namespace velgrove {

/// The texts of the store's errors, which are Fault::Settings.
namespace settings_errors {
inline constexpr const char* CreateSection = "Could not open/create registry section";
inline constexpr const char* OpenSection = "Could not open registry section";
inline constexpr const char* SetValue = "Could not set key value";
inline constexpr const char* NotAString = "Registry data not a string";
}  // namespace settings_errors

/// Keys with their texts, in order.
using SettingTexts = std::vector<std::pair<std::string, std::string>>;

/// Settings by application, section and key, in one file that people can read (TOML). Names are compared
/// without case. The file is read once; every change writes it anew in one step.
class SettingsStore {
 public:
  /// Reads the file; one that isn't there is an empty store. Without a name all stays in memory. A damaged
  /// one is set aside as `<name>.damaged` (or the next free number) and the store is empty: `message` then
  /// has words for the operator. Writes wait for the disk by `aside`; one ends before the next begins.
  explicit SettingsStore(std::filesystem::path file, Disk disk = systemDisk(), Aside aside = doAtOnce);
  ~SettingsStore();
  SettingsStore(const SettingsStore&) = delete;
  SettingsStore& operator=(const SettingsStore&) = delete;

  [[nodiscard]] const std::optional<std::string>& message() const { return m_message; }
  [[nodiscard]] const std::filesystem::path& file() const { return m_file; }
  /// Whether there was no file: nobody has ever set anything.
  [[nodiscard]] bool isNew() const { return m_new; }
  /// What a new desk begins with. It comes to the file with the first change.
  void furnish(std::string_view app, std::string_view section, std::string_view key, std::string_view text);

  /// The text of a key; nothing when there is none. NotAString for a value of another type, OpenSection when
  /// the section's name holds a value.
  [[nodiscard]] std::optional<std::string> text(std::string_view app, std::string_view section,
                                                std::string_view key) const;
  /// Sets and writes, unless the key holds this text already. CreateSection when there is no place to write,
  /// SetValue when the disk refuses; the store is then as it was.
  void setText(std::string_view app, std::string_view section, std::string_view key, std::string_view text);
  /// The same for several keys of a section, in one write.
  void setTexts(std::string_view app, std::string_view section, const SettingTexts& texts);
  /// Removes and writes, with the errors of setText. What isn't there is removed already.
  void remove(std::string_view app, std::string_view section, std::string_view key);
  void removeSection(std::string_view app, std::string_view section);

  [[nodiscard]] std::vector<std::string> sections(std::string_view app) const;
  [[nodiscard]] std::vector<std::string> keys(std::string_view app, std::string_view section) const;

 private:
  struct Tree;

  void read();
  [[nodiscard]] std::optional<std::string> setAside(std::string& reason);
  [[nodiscard]] bool holds(std::string_view app, std::string_view section, std::string_view key,
                           std::string_view text) const;
  static void setIn(Tree& tree, std::string_view app, std::string_view section, std::string_view key,
                    std::string_view text);
  void prepareWriting();
  void write(const std::string& text);
  void replace(Tree changed);

  std::filesystem::path m_file;
  Disk m_disk;
  Aside m_aside;
  std::unique_ptr<Tree> m_tree;
  std::optional<std::string> m_message;
  bool m_new = false;
  bool m_inTheWay = false;  ///< a damaged file still has the name and must not be written over
};

/// Where the settings live: `$XDG_CONFIG_HOME/velgrove/settings.toml`, else the same under `~/.config`. A
/// configuration folder that isn't absolute is ignored, as the standard has it.
[[nodiscard]] std::filesystem::path settingsPath(const char* configHome, const char* home);
[[nodiscard]] std::filesystem::path defaultSettingsPath();

}  // namespace velgrove
