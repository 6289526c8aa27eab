#include "surfaces/frm_grand_master.h"

#include <algorithm>

#include "controls/numbers.h"

namespace velgrove {
namespace {

constexpr const char* Tip = "Brightness Level of Light";

/// An array shifted from its snapshot, where it is lit now or was lit then.
template <class Levels>
void shift(Levels& levels, const Levels& snapshot, double offset) {
  for (std::size_t i = 0; i < levels.size(); ++i)
    if (levels[i] != 0 || snapshot[i] != 0)
      levels[i] = roundTo<typename Levels::value_type>(std::clamp(snapshot[i] + offset, 0.0, 255.0));
}

}  // namespace

frmGrandMaster::frmGrandMaster(ShowState& show, Machine& machine) : m_show(show), m_machine(machine) {
  UpDown1.Buddy = &Level;
  VSlider1.ToolTip = Level.ToolTip = Tip;
  VSlider1.Scroll = [this] { VSlider1_Scroll(); };
  UpDown1.Change = [this] { UpDown1_Change(); };
  MouseHelper3.MouseWheel = [this](int rotation, bool& handled) {
    MouseHelper3_MouseWheel(rotation, handled);
  };
}

void frmGrandMaster::Show() {
  if (!Window.Loaded) Form_Load();
  Window.Show();
}

void frmGrandMaster::showAtBottom() {
  m_machine.errors.steps([&] { Show(); }, [&] { Level.setText(std::to_string(Bottom)); },
                         [&] { VSlider1.setValue(Bottom); }, [&] { VSlider1_Scroll(); });
}

void frmGrandMaster::Form_Load() {
  Window.Loaded = true;
  m_snapshot = {.DMXInput = m_show.DMXInput,
                .SubLevels = m_show.SubLevels,
                .XYLevels = m_show.XYLevels,
                .ABLevels = m_show.ABLevels,
                .ManualLevels = m_show.ManualLevels};
  VSlider1.reset(0);
  UpDown1.reset(0);
  Level.reset("0");
}

/// Each pass begins at the snapshot, so that motions don't add up and nothing is lost at the ends.
void frmGrandMaster::VSlider1_Scroll() {
  m_machine.errors.steps([&] { Level.setText(std::to_string(VSlider1.value())); },
                         [&] {
                           const double offset = toInteger<std::int16_t>(Level.text()) * LevelsAStep;
                           shift(m_show.DMXInput, m_snapshot.DMXInput, offset);
                           shift(m_show.SubLevels, m_snapshot.SubLevels, offset);
                           shift(m_show.XYLevels, m_snapshot.XYLevels, offset);
                           shift(m_show.ABLevels, m_snapshot.ABLevels, offset);
                           shift(m_show.ManualLevels, m_snapshot.ManualLevels, offset);
                         });
}

void frmGrandMaster::setTo(int value) {
  VSlider1.setValue(value);
  VSlider1_Scroll();
}

void frmGrandMaster::UpDown1_Change() {
  m_machine.errors.run([&] {
    const int value = roundTo<std::int16_t>(static_cast<float>(toNumber(Level.text())));
    if (value >= Bottom && value <= Top) setTo(value);
  });
}

/// A notch that would leave the range is refused: the wheel alone doesn't always reach the ends.
void frmGrandMaster::MouseHelper3_MouseWheel(int rotation, bool& handled) {
  m_machine.errors.run([&] {
    const int value = VSlider1.value() + (rotation < 1 ? -WheelStep : WheelStep);
    if (value >= Bottom && value <= Top) setTo(value);
  });
  handled = true;
}

void frmGrandMaster::cmdCancel_Click() {
  if (!Window.Loaded) return;  // OK was first
  m_machine.errors.steps(
      [&] {
        m_show.DMXInput = m_snapshot.DMXInput;
        m_show.SubLevels = m_snapshot.SubLevels;
        m_show.XYLevels = m_snapshot.XYLevels;
        m_show.ABLevels = m_snapshot.ABLevels;
        m_show.ManualLevels = m_snapshot.ManualLevels;
      },
      [&] { Unload(); });
}

}  // namespace velgrove
