#pragma once

#include <functional>
#include <memory>

#include "controls/form.h"
#include "controls/machine.h"
#include "core/show_state.h"

namespace velgrove {

/// The window of one view. It owns the three timers on which the light leans: the merge, the submasters'
/// input and the display of levels.
class frmDocument {
 public:
  struct Wiring {
    /// Lets received levels move the submasters; the panel's work at each tick of SubsInput.
    std::function<void()> followInput;
  };

  frmDocument(ShowState& show, Machine& machine, Wiring wiring);
  frmDocument(const frmDocument&) = delete;
  frmDocument& operator=(const frmDocument&) = delete;

  Form Window;
  Timer TallyInputs;
  Timer SubsInput;
  Timer UpdateDisplay;
  std::int16_t LastChannel = 0;  ///< highest channel handed out so far on this plot

  /// Takes the view that is current while the show loads, for good, and starts the timers.
  void Form_Load();
  void stopTimers();

  /// Fault::ObjectMissing when the window found none to show.
  [[nodiscard]] std::shared_ptr<clsView> GetCurrentView() const;

  void TallyInputs_Timer();
  void UpdateDisplay_Timer();

 private:
  void makeSubMasters() const;
  void SetViewFixtures();

  ShowState& m_show;
  ErrorPattern& m_errors;
  std::shared_ptr<clsView> m_activeView;
};

}  // namespace velgrove
