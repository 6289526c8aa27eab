#pragma once

#include <string>
#include <string_view>

#include "model/settings_store.h"

namespace velgrove {

/// Writes a setting. Application, section and key are trimmed of blanks; one that is then empty is
/// Fault::Settings ("AppName may not be empty", "Section ...", "Key ..."), and so are the store's errors.
void SaveStringSetting(SettingsStore& store, std::string_view AppName, std::string_view Section,
                       std::string_view Key, std::string_view Setting);

/// Reads a setting; the default when it or its section doesn't exist. An empty text is a setting.
[[nodiscard]] std::string GetStringSetting(const SettingsStore& store, std::string_view AppName,
                                           std::string_view Section, std::string_view Key,
                                           std::string_view Default);

}  // namespace velgrove
