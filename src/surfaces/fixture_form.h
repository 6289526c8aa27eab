#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "controls/form.h"
#include "controls/machine.h"
#include "controls/tab_strip.h"
#include "controls/widgets.h"
#include "core/show_state.h"
#include "plot/document.h"

namespace velgrove {

/// What the dialogs of conventional and of moving fixtures have in common: two tabs, "Settings" with the
/// channel and the level, "Properties" with what is told of the fixture.
///
/// Channel and level act at once, on the fixture that is current at that moment; without one nothing happens.
/// Errors are passed over, statement by statement: no box ever comes from these dialogs' fields.
class FixtureForm {
 public:
  struct Wiring {
    /// The plot that the operator works on; Fault::ObjectMissing when none is open.
    std::function<frmDocument&()> document;
    /// Shows one of `pointers` over all plots.
    std::function<void(int pointer)> setPointer;
    /// Gives the focus back to the frame's active window.
    std::function<void()> focusFrame;
  };

  /// Where a level goes, beyond the fixtures that show it.
  enum class Levels {
    OfGroup,   ///< to the channels of the whole group; in Blind, when it was set by percent, to BlindLevels
    OfOneOnly  ///< to the fixture's own channel; in Blind nowhere
  };

  static constexpr int Settings = 0;    ///< places in Frame1
  static constexpr int Properties = 1;  ///< the tabs count from 1
  static constexpr std::size_t TextCount = 11;
  static constexpr std::size_t NoText = 8;  ///< the one index of Text1 that stands for nothing
  static constexpr int WheelStep = 4;       ///< percent

  /// `level` is the dialog's slider of the level, a DMX value.
  FixtureForm(ShowState& show, Machine& machine, Wiring wiring, Slider& level, Levels levels);
  FixtureForm(const FixtureForm&) = delete;
  FixtureForm& operator=(const FixtureForm&) = delete;

  Form Window;
  TabStrip TabStrip1{{"Settings", "Properties"}};
  std::array<Frame, 2> Frame1;

  Label lblChannel{.Caption = "Channel"};
  Label lblMoniker{.Caption = "Name"};
  Label lblLevel{.Caption = "Level"};
  TextBox Channel;  ///< DMX channel (ANSI E1.11), 1 to 512; written to the fixture at once
  TextBox Level;    ///< percent
  UpDown UpDown1{0, 100, 0};
  Label Moniker{.Caption = "", .ToolTip = "Name of Light"};  ///< nothing fills it

  std::array<Label, TextCount> TextLabels;  ///< beside Text1
  Label& Area = TextLabels[1];
  std::array<TextBox, TextCount> Text1;  ///< what is told of the fixture

  Button Command1{.Caption = "OK"};
  Button CancelButton{.Caption = "Cancel"};
  MouseSource MouseHelper1;
  Timer Timer1;

  std::int16_t FixtureID = 0;  ///< what SetFixtureID was given; nobody asks it
  /// The others that follow the level: those on the same channel, and those selected.
  std::vector<std::shared_ptr<clsFixture>> GroupFixtures;
  [[nodiscard]] std::int16_t GroupCount() const { return static_cast<std::int16_t>(GroupFixtures.size()); }
  bool LoadDone = false;  ///< a moment has passed since the load

  /// The dialog is open, and was opened for this fixture.
  [[nodiscard]] bool shows(const clsFixture& fixture) const { return m_shown.get() == &fixture; }
  /// The fixture that the dialog works on; none when nothing was picked.
  [[nodiscard]] const std::shared_ptr<clsFixture>& current() const { return m_show.CurrentFixture; }

  // ---- The life of a dialog: a load runs through these, in this order

  /// Puts the controls back to their design.
  void begin();
  /// Shows the level, the channel and the properties. Setting the level puts it on the grid of whole
  /// percents.
  void fill();
  /// Selects the first tab, gathers the group, starts Timer1.
  void finish();
  void Unload();
  void Form_Unload();

  // ---- Handlers

  void Channel_Change() const;
  void Level_Change();
  void UpDown1_Change();
  void TabStrip1_Click();
  void Timer1_Timer();
  /// The thumb of the level's slider moved: the text follows, and the fixtures.
  void scrollLevel();
  /// Writes the properties to the fixture. A text that is no number leaves the old one.
  void storeTexts();

  // ---- Levels, DMX values; what fits no byte is passed over, and so is a channel outside 1 to 512

  /// Sets the fixture and its group, unless the DMX input holds the channel higher: the hand can't pull a
  /// channel below its input, save from full. `before` is called for each of the group.
  void setLevel(int level, const std::function<void(clsFixture&)>& before = {});
  /// To ManualLevels, but not in Blind.
  void writeManual(int channel, int level);
  /// The percent number in `Level`; Fault::TypeMismatch when there is none.
  [[nodiscard]] int percent() const;
  /// Ends a step of the wheel: the fixture takes the bare percent number, and at once the level of `Level`.
  void settleAt(int percent);

  void redraw(clsFixture& fixture);
  /// Calls `draw` with the plot when that still shows the fixture: a dialog stays open while another show is
  /// loaded.
  template <class Draw>
  void onPlot(const clsFixture& fixture, Draw draw) const;

 private:
  void setByPercent(int level);
  [[nodiscard]] bool inputHolds(const clsFixture& fixture, int level) const;
  static void take(clsFixture& fixture, int level);
  static void write(ChannelBytes& levels, int channel, int level);
  void writeFromPercent(clsFixture& fixture, int level);
  void fillTexts(const clsFixture& fixture);
  void gatherGroup();

  ShowState& m_show;
  Wiring m_wiring;
  Slider& m_level;
  Levels m_levels;
  std::shared_ptr<clsFixture> m_shown;
};

template <class Draw>
void FixtureForm::onPlot(const clsFixture& fixture, Draw draw) const {
  ErrorPattern::skip([&] {
    frmDocument& plot = m_wiring.document();
    const auto isThis = [&](const auto& one) { return one.get() == &fixture; };
    if (std::ranges::any_of(plot.GetCurrentView()->colFixtures(), isThis)) draw(plot);
  });
}

}  // namespace velgrove
