#include "dmx/frm_bars.h"

#include "controls/numbers.h"

namespace velgrove {
namespace {

constexpr int RefreshInterval = 33;   // ms
constexpr float DesignWidth = 16500;  // twips
constexpr float DesignHeight = 10500;
constexpr double GapAcross = 1.02;  // of the gap, for each column
constexpr double GapDown = 1.85;    // of the gap, for each row
constexpr int FullInput = 254;

struct SourceColours {
  Colour bar;
  Colour text;
};
/// By the codes of LevelSource.
constexpr std::array<SourceColours, 4> ColoursOf{{{255, 16777215},         // manual: red, white
                                                  {65535, 16711680},       // queue: yellow, blue
                                                  {16777215, 16711935},    // DMX input: white, magenta
                                                  {16711935, 16777215}}};  // submaster: magenta, white

const SourceColours& coloursOf(std::int16_t source) {
  if (source < 0 || source >= static_cast<int>(ColoursOf.size()))
    throw RunTimeError(Fault::Subscript, "there is no source " + std::to_string(source));
  return ColoursOf[static_cast<std::size_t>(source)];
}

/// How much of one length is left for each of some bars.
double share(float length, std::int16_t gap, double factor, std::int16_t bars) {
  return static_cast<double>(length) - gap * factor * bars;
}

}  // namespace

frmBars::frmBars(ShowState& show, Machine& machine)
    : updateTimer(machine.timers, TimerRank::Bars, RefreshInterval, [this] { updateTimer_Timer(); }),
      updateTimerInput(machine.timers, TimerRank::Bars, RefreshInterval,
                       [this] { updateTimerInput_Timer(); }),
      m_show(show),
      m_machine(machine) {
  Window.Width = DesignWidth;
  Window.Height = DesignHeight;
}

void frmBars::Form_Load() {
  Window.Loaded = true;
  m_machine.errors.steps(
      [&] {
        Rows = m_show.BarRows;
        Columns = m_show.BarColumns;
        Gap = m_show.BarGap;
      },
      [&] { limit(); }, [&] { Form_Resize(); },
      [&] {
        updateTimer.setEnabled(false);
        updateTimerInput.setEnabled(false);
      });
}

/// One try: with more than 200 columns the grid is still too large.
void frmBars::limit() {
  if (Rows * Columns <= MostBars) return;
  m_machine.boxes.show({.text = "Only 200 Bars allowed."});
  Rows = narrow<std::int16_t>(roundTo<std::int16_t>(static_cast<double>(Columns) / MostBars) + 1);
  if (Rows * Columns > MostBars) Columns = roundTo<std::int16_t>(static_cast<double>(Columns) / Rows);
}

void frmBars::Form_Resize() {
  const ErrorPattern::Tick once(m_layoutFaults, ErrorPattern::Waits::ForAnswer);
  m_machine.errors.run([&] { SetRowColumn(Rows, Columns, Gap); });
}

void frmBars::Form_Unload() {
  updateTimer.setEnabled(false);
  Window.Unload();
}

void frmBars::StartUpdate(const std::string& what) {
  if (what == "Input") updateTimerInput.setEnabled(true);
  if (what == "Output") updateTimer.setEnabled(true);
}

/// Without rows or columns there is nothing to lay out.
void frmBars::SetRowColumn(std::int16_t rows, std::int16_t columns, std::int16_t gap) {
  const double across = share(Window.Width, gap, GapAcross, columns);
  const double down = share(Window.Height, gap, GapDown, rows);
  if (rows < 1 || columns < 1 || across < 1 || down < 1) return;
  ++Layouts;
  const int width = roundTo<std::int32_t>(across / columns);
  const int height = roundTo<std::int32_t>(down / rows);
  const SourceColours& design = coloursOf(static_cast<std::int16_t>(Source::Queue));
  for (int row = 0; row < rows; ++row)
    for (int column = 0; column < columns; ++column) {
      const int index = row * columns + column;
      bar(index) = {.Caption = std::to_string(index + 1) + ":",
                    .Value = 0,
                    .BarColour = design.bar,
                    .TextColour = design.text,
                    .Visible = true,
                    .Left = column * (width + gap),
                    .Top = row * (height + gap),
                    .Width = width,
                    .Height = height};
    }
}

LevelBar& frmBars::bar(int index) {
  if (index < 0 || index >= MostBars)
    throw RunTimeError(Fault::Subscript, "there is no bar " + std::to_string(index));
  return Bars[static_cast<std::size_t>(index)];
}

void frmBars::SetLevel(int index, int value, Colour colour) {
  LevelBar& one = bar(index);
  one.Value = value;
  one.BarColour = colour;
}

/// A bar that isn't there ends the round.
template <class Refresh>
void frmBars::eachBar(Refresh refresh) {
  ++Refreshes;
  m_machine.errors.run([&] {
    for (int index = 0; index < Rows * Columns; ++index) refresh(index, bar(index));
  });
}

/// A bar whose level stays keeps its colour, also when another source holds the channel now.
void frmBars::updateTimer_Timer() {
  eachBar([this](int index, LevelBar& one) {
    const auto at = static_cast<std::size_t>(index);
    const int percent = roundTo<std::int16_t>(m_show.DMXOutput[at] / 255.0 * 100);
    if (percent == one.Value) return;
    const SourceColours& colour = coloursOf(m_show.LevelSource[at]);
    SetLevel(index, percent, colour.bar);
    one.TextColour = colour.text;
  });
}

/// Full is reached one step early, at 254.
void frmBars::updateTimerInput_Timer() {
  eachBar([this](int index, const LevelBar& one) {
    const auto at = static_cast<std::size_t>(index);
    const int percent = roundTo<std::int16_t>(m_show.DMXInput[at] * 100.0 / FullInput);
    if (percent != one.Value) SetLevel(index, percent, colours::White);
  });
}

}  // namespace velgrove
