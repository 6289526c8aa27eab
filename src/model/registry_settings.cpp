#include "model/registry_settings.h"

namespace velgrove {
namespace {

std::string_view trimmed(std::string_view text, const char* name) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos)
    throw RunTimeError(Fault::Settings, std::string(name) + " may not be empty");
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

struct Address {
  std::string_view app;
  std::string_view section;
  std::string_view key;
};

Address addressOf(std::string_view AppName, std::string_view Section, std::string_view Key) {
  return {
      .app = trimmed(AppName, "AppName"), .section = trimmed(Section, "Section"), .key = trimmed(Key, "Key")};
}

}  // namespace

void SaveStringSetting(SettingsStore& store, std::string_view AppName, std::string_view Section,
                       std::string_view Key, std::string_view Setting) {
  const Address at = addressOf(AppName, Section, Key);
  store.setText(at.app, at.section, at.key, Setting);
}

std::string GetStringSetting(const SettingsStore& store, std::string_view AppName, std::string_view Section,
                             std::string_view Key, std::string_view Default) {
  const Address at = addressOf(AppName, Section, Key);
  return store.text(at.app, at.section, at.key).value_or(std::string(Default));
}

}  // namespace velgrove
