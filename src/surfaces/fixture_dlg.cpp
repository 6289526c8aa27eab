#include "surfaces/fixture_dlg.h"

#include "controls/numbers.h"

namespace velgrove {

FixtureDlg::FixtureDlg(ShowState& show, Machine& machine, FixtureForm::Wiring wiring)
    : Dialog(show, machine, std::move(wiring), VSlider1, FixtureForm::Levels::OfGroup), m_show(show) {
  Dialog.Window.Caption = "Fixture";
  VSlider1.Scroll = [this] { VSlider1_Scroll(); };
  Dialog.MouseHelper1.MouseWheel = [this](int rotation, bool& handled) {
    MouseHelper1_MouseWheel(rotation, handled);
  };
  Dialog.Command1.Click = [this] { Command1_Click(); };
  Dialog.CancelButton.Click = [this] { CancelButton_Click(); };
}

void FixtureDlg::Show() {
  if (!Dialog.Window.Loaded) Form_Load();
  if (Dialog.Window.Loaded) Dialog.Window.Show();
}

void FixtureDlg::Form_Load() {
  if (Dialog.current() == nullptr) return;
  Dialog.begin();
  takeOver();
  Dialog.fill();
  Dialog.finish();
}

/// From here on the channel is the hand's, until the next cue writes it. In a crossfade the players' levels
/// can lie outside a byte.
void FixtureDlg::takeOver() {
  clsFixture& fixture = *Dialog.current();
  ErrorPattern::skip([&] {
    const auto at = channelIndex(fixture.Channel);
    const std::int16_t played = std::max(m_show.ABLevels[at], m_show.XYLevels[at]);
    ErrorPattern::skip([&] { m_show.ManualLevels[at] = narrow<std::uint8_t>(played); });
    m_show.XYLevels[at] = m_show.ABLevels[at] = 0;
    if (m_show.BlindOn) m_show.BlindLevels[at] = 0;
  });
  if (m_show.BlindOn) return Dialog.redraw(fixture);
  Dialog.writeManual(fixture.Channel, fixture.Level);
}

void FixtureDlg::MouseHelper1_MouseWheel(int rotation, bool& handled) {
  if (Dialog.current() == nullptr) return;
  handled = true;
  ErrorPattern::skip([&] {
    const int percent = Dialog.percent() + (rotation < 1 ? -FixtureForm::WheelStep : FixtureForm::WheelStep);
    if (percent < 0 || percent > 100) return;
    Dialog.Level.setText(std::to_string(percent));
    Dialog.settleAt(percent);
  });
}

void FixtureDlg::Command1_Click() {
  Dialog.storeTexts();
  Unload();
}

}  // namespace velgrove
