#include "surfaces/fixture_form.h"

namespace velgrove {
namespace {

struct PropertyText {
  const char* caption;
  const char* tip;
};

/// By index of Text1. Some tips tell of another field.
constexpr std::array<PropertyText, FixtureForm::TextCount> Texts{{
    {"Fixture:", "Gobo MFG #"},
    {"Focus:", "Color Description"},
    {"Spread:", "Fixture Type"},
    {"Wattage:", "Wattage"},
    {"Color #:", "Color Description"},
    {"Color Mfg:", "Color MFG #"},
    {"Pattern #:", "Gobo Description"},
    {"Pattern Mfg:", "Gobo MFG #"},
    {"", ""},
    {"Mood:", "Mood/Group"},
    {"Effect:", "Effect/Group"},
}};

constexpr char LevelTip[] = "Brightness Level of Light";

}  // namespace

FixtureForm::FixtureForm() {
  for (std::size_t i = 0; i < Texts.size(); ++i) {
    TextLabels[i].Caption = Texts[i].caption;
    Text1[i].ToolTip = Texts[i].tip;
  }
  Channel.ToolTip = "Light Number";
  Level.ToolTip = UpDown1.ToolTip = LevelTip;
  UpDown1.Buddy = &Level;
}

}  // namespace velgrove
