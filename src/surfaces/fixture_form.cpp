#include "surfaces/fixture_form.h"

#include "controls/numbers.h"

namespace velgrove {
namespace {

struct Property {
  const char* caption;
  const char* tip;
  std::string clsFixture::*text = nullptr;  ///< none for a number
};

/// By index of Text1. Some tips tell of another field.
constexpr std::array<Property, FixtureForm::TextCount> Fields{{
    {"Fixture:", "Gobo MFG #", &clsFixture::FixtureType},
    {"Focus:", "Color Description", &clsFixture::EdFocus},
    {"Spread:", "Fixture Type"},
    {"Wattage:", "Wattage"},
    {"Color #:", "Color Description", &clsFixture::ColorNumber},
    {"Color Mfg:", "Color MFG #", &clsFixture::ColorMFG},
    {"Pattern #:", "Gobo Description", &clsFixture::PatternNumber},
    {"Pattern Mfg:", "Gobo MFG #", &clsFixture::PatternMFG},
    {"", ""},
    {"Mood:", "Mood/Group", &clsFixture::Mood},
    {"Effect:", "Effect/Group", &clsFixture::Effect},
}};
constexpr std::size_t AngleText = 2;
constexpr std::size_t WattageText = 3;

constexpr char LevelTip[] = "Brightness Level of Light";
constexpr int Settling = 300;  // milliseconds
constexpr std::uint8_t Full = 255;

}  // namespace

FixtureForm::FixtureForm(ShowState& show, Machine& machine, Wiring wiring, Slider& level, Levels levels)
    : Timer1(machine.timers, TimerRank::Dialog, Settling, [this] { Timer1_Timer(); }),
      m_show(show),
      m_wiring(std::move(wiring)),
      m_level(level),
      m_levels(levels) {
  for (std::size_t i = 0; i < TextCount; ++i) {
    TextLabels[i].Caption = Fields[i].caption;
    Text1[i].ToolTip = Fields[i].tip;
  }
  Channel.ToolTip = "Light Number";
  Level.ToolTip = UpDown1.ToolTip = m_level.ToolTip = LevelTip;
  UpDown1.Buddy = &Level;
  Channel.Change = [this] { Channel_Change(); };
  Level.Change = [this] { Level_Change(); };
  UpDown1.Change = [this] { UpDown1_Change(); };
  TabStrip1.Click = [this] { TabStrip1_Click(); };
}

// ---- The life of a dialog

void FixtureForm::begin() {
  Window.Loaded = true;
  m_shown = current();
  LoadDone = false;
  m_level.reset();
  UpDown1.reset(0);
  Level.reset();
  Channel.reset();
}

void FixtureForm::fill() {
  const auto fixture = current();
  m_level.setValue(fixture->Level);
  Level.setText(formatPlain(DMXToPct(fixture->Level)));
  Channel.setText(std::to_string(fixture->Channel));
  fillTexts(*fixture);
}

void FixtureForm::fillTexts(const clsFixture& fixture) {
  for (std::size_t i = 0; i < TextCount; ++i)
    if (const auto text = Fields[i].text) Text1[i].setText(fixture.*text);
  Text1[AngleText].setText(formatPlain(fixture.Angle));
  Text1[WattageText].setText(formatSingle(fixture.Wattage));
}

void FixtureForm::finish() {
  TabStrip1.select(1);
  TabStrip1_Click();
  ErrorPattern::skip([&] { gatherGroup(); });
  Timer1.setEnabled(true);
}

void FixtureForm::gatherGroup() {
  for (const auto& other : m_wiring.document().GetCurrentView()->colFixtures()) {
    const bool follows = other->Channel == current()->Channel || other->Selected != 0;
    if (follows && other != current()) GroupFixtures.push_back(other);
  }
}

void FixtureForm::Unload() {
  if (!Window.Loaded) return;
  Form_Unload();
  Window.Unload();
}

void FixtureForm::Form_Unload() {
  Timer1.setEnabled(false);
  GroupFixtures.clear();
  m_shown.reset();
  raise(m_wiring.focusFrame);
}

void FixtureForm::Timer1_Timer() {
  LoadDone = true;
  Timer1.setEnabled(false);
}

void FixtureForm::TabStrip1_Click() {
  for (std::size_t i = 0; i < Frame1.size(); ++i)
    Frame1[i].Visible = static_cast<int>(i) == TabStrip1.selected() - 1;
}

// ---- The fields

/// At once and for good: a channel that isn't there takes the fixture off the dimmers.
void FixtureForm::Channel_Change() const {
  if (current() == nullptr) return;
  ErrorPattern::skip([&] {
    const auto channel = toInteger<std::int16_t>(Channel.text());
    current()->Channel = isChannel(channel) ? channel : std::int16_t{0};
  });
}

void FixtureForm::storeTexts() {
  const auto fixture = current();
  if (fixture == nullptr) return;
  for (std::size_t i = 0; i < TextCount; ++i)
    if (const auto text = Fields[i].text) (*fixture).*text = Text1[i].text();
  ErrorPattern::skip([&] { fixture->Angle = toNumber(Text1[AngleText].text()); });
  ErrorPattern::skip([&] { fixture->Wattage = toCueNumber(Text1[WattageText].text()); });
}

// ---- The level. Slider, text, spinner and wheel set each other, until one finds what it would set.

int FixtureForm::percent() const {
  return toInteger<std::int16_t>(Level.text());
}

void FixtureForm::Level_Change() {
  if (current() == nullptr) return;
  if (Level.text().empty()) return Level.setText("0");
  ErrorPattern::skip([&] {
    const int level = PctToDMX(static_cast<float>(percent()));
    m_level.setValue(level);
    setByPercent(level);
  });
}

/// The text holds the spinner's number already. Written anew from the level it would read 0 up to three
/// percent, and the spinner would never leave the bottom.
void FixtureForm::UpDown1_Change() {
  if (current() == nullptr) return;
  ErrorPattern::skip([&] {
    const int number = percent();
    if (number < 0 || number > 100) return;
    const int level = PctToDMX(static_cast<float>(number));
    m_level.setValue(level);
    setLevel(level);
  });
}

void FixtureForm::scrollLevel() {
  if (current() == nullptr) return;
  const int level = m_level.value();
  Level.setText(formatPlain(DMXToPct(static_cast<std::int16_t>(level))));
  setLevel(level);
}

void FixtureForm::settleAt(int percent) {
  take(*current(), percent);
  Level_Change();
}

void FixtureForm::setLevel(int level, const std::function<void(clsFixture&)>& before) {
  const auto fixture = current();
  if (fixture == nullptr || inputHolds(*fixture, level)) return;
  take(*fixture, level);
  for (const auto& other : GroupFixtures) {
    if (before) before(*other);
    take(*other, level);
    redraw(*other);
    if (m_levels == Levels::OfGroup) writeManual(other->Channel, level);
  }
  redraw(*fixture);
  writeManual(fixture->Channel, level);
}

/// Outside Blind the group's texts follow with the next display; its channels don't wait.
void FixtureForm::setByPercent(int level) {
  const auto fixture = current();
  if (inputHolds(*fixture, level)) return;
  take(*fixture, level);
  for (const auto& other : GroupFixtures) {
    redraw(*other);
    take(*other, level);
    if (m_levels == Levels::OfGroup) writeFromPercent(*other, level);
  }
  redraw(*fixture);
  writeFromPercent(*fixture, level);
}

void FixtureForm::writeFromPercent(clsFixture& fixture, int level) {
  writeManual(fixture.Channel, level);
  if (!m_show.BlindOn || m_levels != Levels::OfGroup) return;
  write(m_show.BlindLevels, fixture.Channel, level);
  redraw(fixture);
}

/// A fixture without a channel takes no level.
bool FixtureForm::inputHolds(const clsFixture& fixture, int level) const {
  bool holds = true;
  ErrorPattern::skip([&] {
    const int input = m_show.DMXInput[channelIndex(fixture.Channel)];
    holds = fixture.Level < Full && level < input;
  });
  return holds;
}

void FixtureForm::take(clsFixture& fixture, int level) {
  ErrorPattern::skip([&] { fixture.Level = narrow<std::uint8_t>(level); });
}

void FixtureForm::writeManual(int channel, int level) {
  if (!m_show.BlindOn) write(m_show.ManualLevels, channel, level);
}

void FixtureForm::write(ChannelBytes& levels, int channel, int level) {
  ErrorPattern::skip([&] { levels[channelIndex(channel)] = narrow<std::uint8_t>(level); });
}

/// A level under the hand has the hand's colour.
void FixtureForm::redraw(clsFixture& fixture) {
  onPlot(fixture, [&](frmDocument& plot) {
    // Blind levels of no channel: the plot would ask the operator what to do.
    if (m_show.BlindOn) static_cast<void>(channelIndex(fixture.Channel));
    m_show.LevelTextSource = static_cast<std::int16_t>(Source::Manual);
    plot.DeleteTextOnShape(fixture);
    plot.DrawTextOnShape(fixture);
  });
}

}  // namespace velgrove
