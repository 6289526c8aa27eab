#pragma once

#include <array>
#include <functional>

#include "controls/form.h"
#include "controls/machine.h"
#include "controls/widgets.h"
#include "core/show_state.h"

namespace velgrove {

/// The timers of a plot's document, and no more: the timing dialog works on such a set of its own, so that it
/// never reaches a plot on the screen.
struct DefaultDocument {
  explicit DefaultDocument(TimerSet& timers);

  Timer TallyInputs;
  Timer SubsInput;
  Timer UpdateDisplay;
};

/// Shows the rates of the desk's timers, and changes a few of them. Nothing here is kept: each start begins
/// with the design's rates.
class frmTimings {
 public:
  struct Wiring {
    std::function<Timer&()> SendTimer;
    std::function<Timer&()> RecieveTimer;
    std::function<Timer*()> fadeTimer;  ///< of the XY player; none while no show is open
  };

  static constexpr std::size_t FieldCount = 7;

  frmTimings(ShowState& show, Machine& machine, Wiring wiring);
  frmTimings(const frmTimings&) = delete;
  frmTimings& operator=(const frmTimings&) = delete;

  Form Window{.Caption = "Internal Timing"};
  // Milliseconds, but for the last; each field stands beside the label of its place in `Captions`.
  TextBox txtOutRate, txtInRate, txtFadeRate, txtDisplayRate, txtSubsRate, txtCalcRate;
  TextBox txtNumFixtures;  ///< channels that are merged
  std::array<Label, FieldCount> Captions;
  Button cmdRefresh{.Caption = "Update", .Click = [this] { cmdRefresh_Click(); }};
  Button cmdDefault{.Caption = "Reset", .Click = [this] { cmdDefault_Click(); }};
  Button cmdSave{.Caption = "Save", .Click = [this] { cmdSave_Click(); }};

  /// In the order of `Captions`.
  [[nodiscard]] std::array<TextBox*, FieldCount> fields();

  /// Opens it, behind its warning; one that is open comes to the front.
  void Show();
  void Unload() { Window.Unload(); }

  void Form_Load();
  /// Takes over the rate of the display and the number of channels, and no other field.
  void cmdRefresh_Click();
  /// Puts all rates back, without a question.
  void cmdDefault_Click();
  void cmdSave_Click();

 private:
  [[nodiscard]] std::array<Timer*, FieldCount - 1> timers();

  ShowState& m_show;
  Machine& m_machine;
  Wiring m_wiring;
  DefaultDocument m_document{m_machine.timers};
};

}  // namespace velgrove
