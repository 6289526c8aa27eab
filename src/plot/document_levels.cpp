// The texts on the fixtures: channel, level and its source, and the blind level.

#include "controls/numbers.h"
#include "plot/document.h"

namespace velgrove {
namespace {

using colours::Blue;
using colours::White;
constexpr double BelowTop = 10;  // world units
constexpr double LineHeight = 30;

constexpr std::array<Colour, 4> SourceColours{
    255,       // manual: red
    65535,     // cue players: yellow
    16777215,  // DMX input: white
    16744703,  // submaster: pink
};

Colour colourOf(std::int16_t source) {
  const auto at = static_cast<std::size_t>(source);
  if (at >= SourceColours.size())
    throw RunTimeError(Fault::Subscript, "no source of levels " + std::to_string(source));
  return SourceColours[at];
}

std::string levelText(std::uint8_t level) {
  const auto percent = roundTo<std::int32_t>(DMXToPct(level));
  if (percent == 0) return "-";
  return percent == 100 ? "FL" : std::to_string(percent);
}

std::uint8_t levelIn(const ChannelBytes* cue, std::int16_t channel) {
  return cue == nullptr ? 0 : (*cue)[channelIndex(channel)];
}

}  // namespace

void frmDocument::UpdateDisplay_Timer() {
  walkFixtures([&](const std::shared_ptr<clsFixture>& fixture) {
    m_errors.steps(
        [&] {
          const auto at = channelIndex(fixture->Channel);
          fixture->Level = m_show.DMXOutput[at];
          m_show.LevelTextSource = m_show.LevelSource[at];
        },
        [&] { DrawTextOnShape(*fixture); });
  });
}

void frmDocument::topLevels() {
  walkFixtures([&](const std::shared_ptr<clsFixture>& fixture) {
    m_errors.steps(
        [&] {
          const std::uint8_t x =
              levelIn(m_wiring.xyStageCue ? m_wiring.xyStageCue() : nullptr, fixture->Channel);
          const std::uint8_t a =
              levelIn(m_wiring.abStageCue ? m_wiring.abStageCue() : nullptr, fixture->Channel);
          fixture->Level = std::max(x, a);
        },
        [&] { DrawTextOnShape(*fixture); });
  });
}

void frmDocument::DrawTextOnShape(clsFixture& fixture) {
  const Extents outline = FlpCAD1.extents(fixture.Shape);
  const auto line = [&](int number) {
    return Point{.x = outline.middle().x, .y = outline.top - BelowTop - (number * LineHeight)};
  };
  m_errors.steps(
      [&] { FlpCAD1.setCurrentLayer(m_textLayer); },
      [&] { writeText(fixture.ChannelTextShape, line(0), std::to_string(fixture.Channel), White); },
      [&] {
        writeText(fixture.LevelTextShape, line(1), levelText(fixture.Level),
                  colourOf(m_show.LevelTextSource));
      },
      [&] {
        if (!m_show.BlindOn) return removeText(fixture.DMXInTextShape);
        const std::uint8_t level = m_show.BlindLevels[channelIndex(fixture.Channel)];
        writeText(fixture.DMXInTextShape, line(2), levelText(level), Blue);
      },
      [&] { m_show.ProjectDirty = true; });
}

void frmDocument::DeleteTextOnShape(clsFixture& fixture) {
  m_errors.steps([&] { removeText(fixture.ChannelTextShape); }, [&] { removeText(fixture.LevelTextShape); },
                 [&] { removeText(fixture.DMXInTextShape); });
}

/// Three times a second all fixtures come here, and nearly all of them with nothing new.
void frmDocument::writeText(std::int32_t& shape, Point at, const std::string& text, Colour colour) {
  if (FlpCAD1.setText(shape, at, text, colour)) return;
  shape = FlpCAD1.addText(at, text, LevelFont, Align::Centre);
  FlpCAD1.setColour(shape, colour);
}

void frmDocument::removeText(std::int32_t& shape) {
  FlpCAD1.remove(shape);
  shape = 0;
}

void frmDocument::SetBlindMode() {
  m_show.BlindMode = true;
  m_show.LiveMode = m_show.StageMode = false;
}

void frmDocument::SetLiveMode() {
  m_show.LiveMode = true;
  m_show.BlindMode = m_show.StageMode = false;
}

void frmDocument::SetStageMode() {
  m_show.StageMode = true;
  m_show.BlindMode = m_show.LiveMode = false;
}

}  // namespace velgrove
