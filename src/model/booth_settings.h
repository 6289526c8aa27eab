#pragma once

#include <string>

#include "model/settings_store.h"

namespace velgrove {

/// How the desk is set up for its booth: the show view and the light of the screens. Kept in section "Booth".
struct BoothSettings {
  static constexpr const char* Section = "Booth";
  static constexpr int SmallestType = 60;  ///< percent
  static constexpr int LargestType = 200;
  static constexpr int TypeStep = 10;
  static constexpr int UsualType = 100;

  bool ShowView = false;           ///< comes up with the first show
  bool ShowViewMaximised = false;  ///< fills the frame
  bool ShowViewAB = false;         ///< shows AB in place of XY
  int TypeSize = UsualType;        ///< percent, in steps
  bool DimScreen = false;          ///< the whole desk in its dim colours

  friend bool operator==(const BoothSettings&, const BoothSettings&) = default;
};

/// What a store holds. What is missing, or makes no sense, has its default: nobody is asked about a screen's
/// looks.
[[nodiscard]] BoothSettings readBoothSettings(const SettingsStore& store);

/// The texts of keys, for the store.
[[nodiscard]] SettingTexts textsOf(const BoothSettings& settings);

}  // namespace velgrove
