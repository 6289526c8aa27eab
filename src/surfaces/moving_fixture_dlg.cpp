#include "surfaces/moving_fixture_dlg.h"

#include "controls/numbers.h"

namespace velgrove {
namespace {

constexpr int Middle = 128;
constexpr int BehindToX = 1;  // channels
constexpr int BehindToY = 2;
constexpr int NotchDown = -120;
constexpr int DesignInterval = 33;  // milliseconds
constexpr int AttachInterval = 100;
constexpr double PixelsPerStepX = 4;
constexpr double PixelsPerStepY = 2;

int steps(std::int32_t pixels, double pixelsPerStep) {
  return roundTo<std::int32_t>(pixels / pixelsPerStep);
}

std::int32_t difference(std::int32_t a, std::int32_t b) {
  return narrow<std::int32_t>(std::int64_t{a} - b);
}

}  // namespace

MovingFixtureDlg::MovingFixtureDlg(ShowState& show, Machine& machine, FixtureForm::Wiring wiring)
    : Dialog(show, machine, wiring, VSlider2, FixtureForm::Levels::OfOneOnly),
      Mouse_Attach(machine.timers, TimerRank::Dialog, DesignInterval, [this] { Mouse_Attach_Timer(); }),
      m_show(show),
      m_errors(machine.errors),
      m_wiring(std::move(wiring)) {
  Dialog.Window.Caption = "Moving Fixture";
  VSlider3.ToolTip = "Stage Left & Right";
  VSlider4.ToolTip = "Stage Forward & Back";
  VSlider2.Scroll = [this] { VSlider2_Scroll(); };
  VSlider2.Change = [this] { VSlider2_Change(); };
  VSlider3.Scroll = [this] { VSlider3_Scroll(); };
  VSlider3.Change = [this] { VSlider3_Change(); };
  VSlider4.Scroll = [this] { VSlider4_Scroll(); };
  VSlider4.Change = [this] { VSlider4_Change(); };
  Dialog.MouseHelper1.MouseWheel = [this](int rotation, bool& handled) {
    MouseHelper1_MouseWheel(rotation, handled);
  };
  Dialog.Command1.Click = [this] { Command1_Click(); };
  Dialog.CancelButton.Click = [this] { CancelButton_Click(); };
}

// ---- The life of the dialog

void MovingFixtureDlg::Show() {
  if (!Dialog.Window.Loaded) Form_Load();
  if (!Dialog.Window.Loaded) return;
  Dialog.Window.Show();
  Form_Activate();
}

void MovingFixtureDlg::Form_Load() {
  const auto fixture = Dialog.current();
  if (fixture == nullptr) return;
  Dialog.begin();
  setDesign();
  Dialog.writeManual(fixture->Channel, fixture->Level);
  Dialog.fill();
  VSlider3.setValue(Middle);
  VSlider4.setValue(Middle);
  Dialog.finish();
}

void MovingFixtureDlg::setDesign() {
  VSlider3.reset();
  VSlider4.reset();
  xlev.Caption = "X:0";
  YLEV.Caption = "Y:0";
  res_8bit.Value = true;
  res_8bit_Click();
}

void MovingFixtureDlg::Form_Activate() {
  m_show.LevelTextSource = static_cast<std::int16_t>(Source::Manual);
}

void MovingFixtureDlg::Unload() {
  if (Mouse_Attach.enabled()) ErrorPattern::skip([&] { detachMouse(); });
  Dialog.Unload();
}

void MovingFixtureDlg::Command1_Click() {
  Dialog.storeTexts();
  Unload();
}

void MovingFixtureDlg::res_8bit_Click() {
  res_16Bit.Value = false;
  PositionResolution = 8;
}

void MovingFixtureDlg::res_16Bit_Click() {
  res_8bit.Value = false;
  PositionResolution = 16;
}

// ---- Brightness and position

void MovingFixtureDlg::VSlider2_Change() {
  const int level = VSlider2.value();
  Dialog.setLevel(level, [&](clsFixture& other) {
    Dialog.onPlot(other, [&](frmDocument& plot) {
      plot.FlpCAD1.ShapeText(other.LevelTextShape, std::to_string(level));
    });
  });
}

/// A channel beyond the last takes no position, and a light without a channel has none behind it.
void MovingFixtureDlg::setPosition(const Slider& slider, Label& label, const char* axis, int channelsBehind) {
  const auto fixture = Dialog.current();
  if (fixture == nullptr) return;
  label.Caption = axis + std::to_string(slider.value());
  if (fixture->Channel != 0) Dialog.writeManual(fixture->Channel + channelsBehind, slider.value());
}

void MovingFixtureDlg::VSlider3_Change() {
  setPosition(VSlider3, xlev, "X:", BehindToX);
}

void MovingFixtureDlg::VSlider4_Change() {
  setPosition(VSlider4, YLEV, "Y:", BehindToY);
}

/// Unlike in the dialog of conventional fixtures, only a whole notch towards the operator goes down, and a
/// step that is refused still settles the level.
void MovingFixtureDlg::MouseHelper1_MouseWheel(int rotation, bool& handled) {
  if (Dialog.current() == nullptr) return;
  handled = true;
  ErrorPattern::skip([&] {
    int percent = Dialog.percent();
    const bool down = rotation == NotchDown;
    const int stepped = percent + (down ? -FixtureForm::WheelStep : FixtureForm::WheelStep);
    if (down ? stepped >= 0 : stepped <= 100) {
      percent = stepped;
      Dialog.Level.setText(std::to_string(percent));
    }
    Dialog.settleAt(percent);
  });
}

// ---- The mouse

/// The first tick takes the whole way from where the mouse was last.
void MovingFixtureDlg::cmdAttachMouse_Click() {
  if (Dialog.current() == nullptr) return;
  Dialog.MouseHelper1.ButtonDown = false;
  m_errors.steps([&] { Mouse_Attach.setEnabled(true); }, [&] { Mouse_Attach.setInterval(AttachInterval); },
                 [&] { cmdAttachMouse.Enabled = false; },
                 [&] { Dialog.Window.MousePointer = pointers::Cross; },
                 [&] { m_wiring.setPointer(pointers::Cross); });
}

void MovingFixtureDlg::Mouse_Attach_Timer() {
  m_errors.run([&] {
    followMouse();
    if (Dialog.MouseHelper1.ButtonDown) detachMouse();
  });
}

void MovingFixtureDlg::followMouse() {
  const MouseSource& mouse = Dialog.MouseHelper1;
  const std::int32_t dx = difference(mouse.X, MouseLastX);
  const std::int32_t dy = difference(mouse.Y, MouseLastY);
  MouseLastX = mouse.X;
  MouseLastY = mouse.Y;
  VSlider3.setValue(VSlider3.value() + steps(dx, PixelsPerStepX));
  VSlider4.setValue(VSlider4.value() - steps(dy, PixelsPerStepY));
}

/// A button held from now on belongs to the next time.
void MovingFixtureDlg::detachMouse() {
  Mouse_Attach.setEnabled(false);
  Dialog.MouseHelper1.ButtonDown = false;
  cmdAttachMouse.Enabled = true;
  Dialog.Window.MousePointer = pointers::Default;
  m_wiring.setPointer(pointers::Default);
}

}  // namespace velgrove
