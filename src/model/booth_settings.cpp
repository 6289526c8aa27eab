#include "model/booth_settings.h"

#include "controls/faults.h"

namespace velgrove {
namespace {

constexpr const char* On = "-1";
constexpr const char* Off = "0";

/// The text of a key; "" when there is none, or something else.
std::string textIn(const SettingsStore& store, const char* key) {
  try {
    return store.text("Velgrove", BoothSettings::Section, key).value_or("");
  } catch (const RunTimeError&) {
    return "";
  }
}

/// One of the sizes that can be chosen, by its text.
int typeSize(const std::string& text) {
  using Booth = BoothSettings;
  for (int size = Booth::SmallestType; size <= Booth::LargestType; size += Booth::TypeStep)
    if (text == std::to_string(size)) return size;
  return Booth::UsualType;
}

}  // namespace

BoothSettings readBoothSettings(const SettingsStore& store) {
  const auto isOn = [&](const char* key) { return textIn(store, key) == On; };
  return {.ShowView = isOn("ShowView"),
          .ShowViewMaximised = isOn("ShowViewMaximised"),
          .ShowViewAB = textIn(store, "ShowViewList") == "AB",
          .TypeSize = typeSize(textIn(store, "TypeSize")),
          .DimScreen = isOn("DimScreen")};
}

SettingTexts textsOf(const BoothSettings& settings) {
  const auto flag = [](bool on) { return on ? On : Off; };
  return {{"ShowView", flag(settings.ShowView)},
          {"ShowViewMaximised", flag(settings.ShowViewMaximised)},
          {"ShowViewList", settings.ShowViewAB ? "AB" : "XY"},
          {"TypeSize", std::to_string(settings.TypeSize)},
          {"DimScreen", flag(settings.DimScreen)}};
}

}  // namespace velgrove
