#include "surfaces/frm_sub_pane.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "controls/numbers.h"
#include "surfaces/submaster_looks.h"

namespace velgrove {
namespace {

constexpr std::int16_t RightButton = 2;
constexpr auto Submaster = static_cast<std::int16_t>(Source::Submaster);

template <class Controls>
auto& control(Controls& all, int index) {
  if (index < 0 || index >= frmSubPane::Count)
    throw RunTimeError(Fault::Subscript, "there is no submaster " + std::to_string(index));
  return all[static_cast<std::size_t>(index)];
}

/// Where the fixtures of a view stand in the arrays of levels. One whose channel is none tells of it, and is
/// left out.
std::vector<std::size_t> channelsOf(ErrorPattern& errors, clsView& view) {
  std::vector<std::size_t> channels;
  // By position: an open box lets other handlers change the plot.
  for (int position = 1; position <= view.colFixtures().count(); ++position)
    errors.run([&] { channels.push_back(channelIndex(view.colFixtures().item(position)->Channel)); });
  return channels;
}

}  // namespace

frmSubPane::frmSubPane(ShowState& show, Machine& machine,
                       std::function<std::shared_ptr<clsView>()> currentView)
    : Fader(show, machine, *this),
      Record(show, machine, *this),
      m_show(show),
      m_machine(machine),
      m_currentView(std::move(currentView)) {
  for (int i = 0; i < Count; ++i) {
    const auto at = static_cast<std::size_t>(i);
    Command1[at].Caption = std::to_string(i + 1);
    Command1[at].Click = [this, i] { Command1_Click(static_cast<std::int16_t>(i)); };
    Text1[at].reset(std::to_string(i));
    Label1[at] = {.Caption = "0", .ForeColour = colours::White};
  }
}

void frmSubPane::Form_Load() {
  SubBumped.fill(false);
  Window.Loaded = Window.Visible = true;
}

void frmSubPane::Form_Unload() {
  m_show.CurrentSubMasterIndex = -1;
  Window.Unload();
}

Label& frmSubPane::level(int index) {
  return control(Label1, index);
}

TextBox& frmSubPane::name(int index) {
  return control(Text1, index);
}

/// A submaster that the show doesn't have any more has no name. Those that have no place on the panel are
/// told of together.
void frmSubPane::showNames(clsView& view) {
  for (TextBox& text : Text1) text.setText("");
  std::optional<int> beyond;
  for (const auto& submaster : view.colSubMasters())
    if (submaster->Identifier >= 0 && submaster->Identifier < Count)
      name(submaster->Identifier).setText(submaster->SubMasterName);
    else
      beyond = submaster->Identifier;
  if (beyond) m_machine.errors.run([&] { (void)name(*beyond); });
}

// ---- The hand

void frmSubPane::Command1_Click(std::int16_t index) {
  if (m_show.DMXSubmasters) return;
  m_machine.errors.steps([&] { Fader.load(); }, [&] { Fader.Text2.setText(level(index).Caption); },
                         [&] {
                           const std::string& caption = level(index).Caption;
                           if (caption != "-") Fader.Pot.setValue(toInteger<std::int16_t>(caption));
                         },
                         [&] { Fader.Window.Show(); }, [&] { ActiveSubIndex = index; });
}

void frmSubPane::Command1_MouseDown(std::int16_t index, std::int16_t button, std::int16_t, float, float) {
  if (button != RightButton) return;
  m_machine.errors.steps([&] { m_show.CurrentSubMasterIndex = index; },
                         [&] {
                           Record.Window.Loaded = true;
                           Record.lblSM.Caption = control(Command1, index).Caption;
                         },
                         [&] { Record.txtName.setText(name(index).text()); }, [&] { Record.Window.Show(); });
}

/// Remembers the last click alone: after the fader has moved the level, the next click still turns over what
/// the one before left.
void frmSubPane::Label1_Click(std::int16_t index) {
  if (m_show.DMXSubmasters) return;
  double scale = 0;
  m_machine.errors.steps(
      [&] {
        bool& bumped = control(SubBumped, index);
        bumped = !bumped;
        scale = bumped ? 1 : 0;
      },
      [&] { m_show.LevelTextSource = Submaster; }, [&] { level(index).Caption = scale > 0 ? "100" : "0"; },
      [&] {
        Fader.load();
        Fader.Pot.setValue(scale > 0 ? 100 : 0);
      },
      [&] { writeHighest(index, scale); });
}

void frmSubPane::SetSubLevel(std::int16_t index, std::int16_t level) {
  m_machine.errors.steps([&] { Command1_Click(index); },
                         [&] {
                           Fader.load();
                           Fader.Pot.setValue(level);
                         },
                         [&] { Fader.Pot_Scroll(); });
}

// ---- Levels

void frmSubPane::writeWhereHighest(int index) {
  const auto view = currentView();
  writeWhereHighest(index, view->colSubMasters(), channelsOf(m_machine.errors, *view));
}

void frmSubPane::writeWhereHighest(int index, const colSubMasters& submasters,
                                   std::span<const std::size_t> channels) {
  const SubmasterLooks looks(submasters, Label1);
  const ScaledLook& look = looks.at(index);
  for (const std::size_t channel : channels) {
    const int own = look.on(channel);
    if (own >= looks.highest(channel)) m_show.SubLevels[channel] = narrow<std::uint8_t>(own);
  }
}

void frmSubPane::writeHighest(int index, double scale) {
  const auto view = currentView();
  const auto channels = channelsOf(m_machine.errors, *view);
  const SubmasterLooks looks(view->colSubMasters(), Label1);
  const ScaledLook look{.look = looks.at(index).look, .scale = scale};
  for (const std::size_t channel : channels)
    m_show.SubLevels[channel] = narrow<std::uint8_t>(std::max(look.on(channel), looks.highest(channel)));
}

// ---- DMX input

/// A number of submasters that the panel doesn't have ends the round behind the last one.
void frmSubPane::SubsInput_Timer() {
  if (m_show.NUMSubs < 1) return;
  m_machine.errors.run([&] { m_show.DMXSubmasters ? followInput() : showOwnLevels(); });
}

void frmSubPane::showOwnLevels() {
  for (int index = 0; index < m_show.NUMSubs; ++index) level(index).ForeColour = colours::White;
}

void frmSubPane::followInput() {
  const auto view = currentView();
  const auto channels = channelsOf(m_machine.errors, *view);
  for (int index = 0; index < m_show.NUMSubs; ++index) {
    const float percent = DMXToPct(m_show.DMXInput[channelIndex(index + 1)]);
    Label& label = level(index);
    label.Caption = percent > 0 ? formatWhole(percent) : "0";
    label.ForeColour = Magenta;
    m_show.LevelTextSource = Submaster;
    m_machine.errors.run([&] { writeWhereHighest(index, view->colSubMasters(), channels); });
  }
}

}  // namespace velgrove
