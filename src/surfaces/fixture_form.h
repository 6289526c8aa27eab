#pragma once

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
class FixtureForm {
 public:
  struct Wiring {
    /// The plot that the operator works on; Fault::ObjectMissing when none is open.
    std::function<frmDocument&()> document;
    /// Gives the focus back to the frame's active window.
    std::function<void()> focusFrame;
  };

  static constexpr int Settings = 0;    ///< places in Frame1
  static constexpr int Properties = 1;  ///< the tabs count from 1
  static constexpr std::size_t TextCount = 11;
  static constexpr std::size_t NoText = 8;  ///< the one index of Text1 that stands for nothing

  FixtureForm();
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
  Label Moniker;

  std::array<Label, TextCount> TextLabels;  ///< beside Text1
  Label& Area = TextLabels[1];
  std::array<TextBox, TextCount> Text1;  ///< what is told of the fixture

  Button Command1{.Caption = "OK"};
  Button CancelButton{.Caption = "Cancel"};
  MouseSource MouseHelper1;
};

}  // namespace velgrove
