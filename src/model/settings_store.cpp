#include "model/settings_store.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <system_error>
#include <unistd.h>
#include <utility>

#include <toml++/toml.h>

namespace velgrove {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const char* text) {
  throw RunTimeError(Fault::Settings, text);
}

bool sameName(std::string_view one, std::string_view other) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [&](char a, char b) { return lower(a) == lower(b); });
}

auto entryOf(toml::table& table, std::string_view name) {
  return std::find_if(table.begin(), table.end(),
                      [&](const auto& entry) { return sameName(entry.first.str(), name); });
}

const toml::node* find(const toml::table& table, std::string_view name) {
  for (const auto& [key, node] : table)
    if (sameName(key.str(), name)) return &node;
  return nullptr;
}

/// The table of an application or section, made when there is none.
toml::table& tableIn(toml::table& parent, std::string_view name) {
  auto at = entryOf(parent, name);
  if (at == parent.end()) at = parent.insert(name, toml::table{}).first;
  toml::table* const table = at->second.as_table();
  if (table == nullptr) fail(settings_errors::CreateSection);
  return *table;
}

/// The table of a section; null when it or its application isn't there.
const toml::table* sectionOf(const toml::table& root, std::string_view app, std::string_view section) {
  const toml::table* table = &root;
  for (const auto name : {app, section}) {
    const toml::node* const node = find(*table, name);
    if (node == nullptr) return nullptr;
    table = node->as_table();
    if (table == nullptr) fail(settings_errors::OpenSection);
  }
  return table;
}

std::vector<std::string> namesIn(const toml::table& table) {
  std::vector<std::string> names;
  for (const auto& [key, node] : table) names.emplace_back(key.str());
  return names;
}

std::string tomlOf(const toml::table& table) {
  std::ostringstream text;
  text << "# Velgrove's settings. The desk reads them when it starts and writes them as they change.\n\n"
       << toml::toml_formatter(table, toml::format_flags::allow_unicode_strings) << "\n";
  return text.str();
}

/// Whether two trees have the same names and texts at the same places.
bool sameTree(const toml::node& one, const toml::node& other) {
  if (one.type() != other.type()) return false;
  if (const auto* const table = one.as_table())
    return std::equal(
        table->begin(), table->end(), other.as_table()->begin(), other.as_table()->end(),
        [](const auto& a, const auto& b) { return a.first == b.first && sameTree(a.second, b.second); });
  if (const auto* const array = one.as_array())
    return std::equal(array->begin(), array->end(), other.as_array()->begin(), other.as_array()->end(),
                      sameTree);
  const auto* const text = one.as_string();
  return text == nullptr || text->get() == other.as_string()->get();
}

/// Whether the text gives back what it was made of: the library's writer leaves quotes and line ends in names
/// as they are, and such a name would cost all settings at the next start; and bytes that are no UTF-8 come
/// back as others.
bool readsBack(const std::string& text, const toml::table& table) {
  try {
    const toml::table again = toml::parse(text);
    return tomlOf(again) == text && sameTree(again, table);
  } catch (const toml::parse_error&) {
    return false;
  }
}

}  // namespace

struct SettingsStore::Tree {
  toml::table root;
};

SettingsStore::SettingsStore(fs::path file, Disk disk, Aside aside)
    : m_file(std::move(file)),
      m_disk(std::move(disk)),
      m_aside(std::move(aside)),
      m_tree(std::make_unique<Tree>()) {
  read();
}

SettingsStore::~SettingsStore() = default;

void SettingsStore::read() {
  std::string reason;
  try {
    std::error_code ignored;
    m_new = !fs::exists(fs::symlink_status(m_file, ignored));
    if (m_new) return;
    m_tree->root = toml::parse(readFile(m_file));
    return;
  } catch (const toml::parse_error& error) {
    reason = "line " + std::to_string(error.source().begin.line) + ": " + std::string(error.description());
  } catch (const RunTimeError& error) {
    reason = error.what();
  }
  m_inTheWay = true;
  std::string refused;
  const auto name = setAside(refused);
  m_message = "The settings in " + m_file.string() + " are damaged (" + reason + "). " +
              (name ? "They were set aside as " + *name : "They can't be set aside (" + refused + ")") +
              "; the defaults are used.";
}

std::optional<std::string> SettingsStore::setAside(std::string& reason) {
  const fs::path name = damagedName(m_file);
  std::error_code error;
  fs::rename(m_file, name, error);
  if (error) {
    reason = error.message();
    return std::nullopt;
  }
  m_inTheWay = false;
  return name.string();
}

std::optional<std::string> SettingsStore::text(std::string_view app, std::string_view section,
                                               std::string_view key) const {
  const toml::table* const table = sectionOf(m_tree->root, app, section);
  const toml::node* const node = table != nullptr ? find(*table, key) : nullptr;
  if (node == nullptr) return std::nullopt;
  const auto* const value = node->as_string();
  if (value == nullptr) fail(settings_errors::NotAString);
  return value->get();
}

/// Whether nothing is to be done: preferences are saved all together, and each write waits for the disk.
bool SettingsStore::holds(std::string_view app, std::string_view section, std::string_view key,
                          std::string_view text) const {
  const toml::node* node = &m_tree->root;
  for (const auto name : {app, section, key}) {
    const toml::table* const table = node->as_table();
    node = table != nullptr ? find(*table, name) : nullptr;
    if (node == nullptr) return false;
  }
  const auto* const value = node->as_string();
  return value != nullptr && value->get() == text;
}

/// Makes the folder and sees that the file may be replaced.
void SettingsStore::prepareWriting() {
  std::error_code error;
  const fs::path folder = m_file.has_parent_path() ? m_file.parent_path() : fs::path(".");
  fs::create_directories(folder, error);
  std::string reason;
  if (error || ::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0 ||
      (m_inTheWay && !setAside(reason)))
    fail(settings_errors::CreateSection);
}

/// Writes the changed tree; only what stands on the disk is kept in memory. While the disk is waited for, the
/// settings can be read as they were.
void SettingsStore::replace(Tree changed) {
  const std::string text = tomlOf(changed.root);
  if (!readsBack(text, changed.root)) fail(settings_errors::SetValue);
  if (!m_file.empty()) m_aside([&] { write(text); });
  *m_tree = std::move(changed);
}

void SettingsStore::write(const std::string& text) {
  prepareWriting();
  try {
    writeFileSafely(m_file, text, Backup::None, m_disk);
  } catch (const RunTimeError&) {
    fail(settings_errors::SetValue);
  }
}

void SettingsStore::setText(std::string_view app, std::string_view section, std::string_view key,
                            std::string_view text) {
  setTexts(app, section, {{std::string(key), std::string(text)}});
}

void SettingsStore::setTexts(std::string_view app, std::string_view section, const SettingTexts& texts) {
  Tree changed = *m_tree;
  bool changes = false;
  for (const auto& [key, text] : texts) {
    if (holds(app, section, key, text)) continue;
    setIn(changed, app, section, key, text);
    changes = true;
  }
  if (changes) replace(std::move(changed));
}

void SettingsStore::furnish(std::string_view app, std::string_view section, std::string_view key,
                            std::string_view text) {
  setIn(*m_tree, app, section, key, text);
}

void SettingsStore::setIn(Tree& tree, std::string_view app, std::string_view section, std::string_view key,
                          std::string_view text) {
  toml::table& table = tableIn(tableIn(tree.root, app), section);
  const auto at = entryOf(table, key);
  table.insert_or_assign(at == table.end() ? key : at->first.str(), std::string(text));
}

void SettingsStore::remove(std::string_view app, std::string_view section, std::string_view key) {
  const toml::table* const there = sectionOf(m_tree->root, app, section);
  if (there == nullptr || find(*there, key) == nullptr) return;
  Tree changed = *m_tree;
  toml::table& table = tableIn(tableIn(changed.root, app), section);
  table.erase(entryOf(table, key));
  replace(std::move(changed));
}

void SettingsStore::removeSection(std::string_view app, std::string_view section) {
  if (sectionOf(m_tree->root, app, section) == nullptr) return;
  Tree changed = *m_tree;
  toml::table& table = tableIn(changed.root, app);
  table.erase(entryOf(table, section));
  replace(std::move(changed));
}

std::vector<std::string> SettingsStore::sections(std::string_view app) const {
  const toml::node* const node = find(m_tree->root, app);
  if (node == nullptr) return {};
  if (!node->is_table()) fail(settings_errors::OpenSection);
  return namesIn(*node->as_table());
}

std::vector<std::string> SettingsStore::keys(std::string_view app, std::string_view section) const {
  const toml::table* const table = sectionOf(m_tree->root, app, section);
  return table != nullptr ? namesIn(*table) : std::vector<std::string>{};
}

fs::path settingsPath(const char* configHome, const char* home) {
  const fs::path given = configHome != nullptr ? configHome : "";
  const fs::path folder = given.is_absolute() ? given : fs::path(home != nullptr ? home : "") / ".config";
  return folder / "velgrove" / "settings.toml";
}

fs::path defaultSettingsPath() {
  return settingsPath(std::getenv("XDG_CONFIG_HOME"), std::getenv("HOME"));
}

}  // namespace velgrove
