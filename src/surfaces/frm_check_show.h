#pragma once

#include <functional>
#include <string>
#include <vector>

#include "controls/form.h"
#include "controls/list_view.h"
#include "controls/machine.h"
#include "controls/widgets.h"
#include "core/show_state.h"
#include "playback/preflight.h"
#include "playback/queue_list.h"
#include "plot/document.h"

namespace velgrove {

/// The check before the performance: lists what would go wrong, and leads to the cue. The findings stay as of
/// the check; the show goes on beside it.
class frmCheckShow {
 public:
  struct Wiring {
    std::function<QueueList&()> abPlayer;  ///< these three: Fault::ObjectMissing when no show is open
    std::function<QueueList&()> xyPlayer;
    std::function<frmDocument&()> document;
    std::function<std::vector<ListView::Row>()> effects;
    std::function<void(const std::string&)> showStatus;
  };

  frmCheckShow(ShowState& show, Machine& machine, Wiring wiring);
  frmCheckShow(const frmCheckShow&) = delete;
  frmCheckShow& operator=(const frmCheckShow&) = delete;

  Form Window{.Caption = "Check Show"};
  Label lblResult;            ///< how many findings; that the show is clean
  ListView ListViewFindings;  ///< list, cue or channel, what
  Label lblFinding;           ///< the selected one at full length
  Button cmdCheckAgain{.Caption = "Check &Again",
                       .ToolTip = "Check the show as it stands now",
                       .Click = [this] { cmdCheckAgain_Click(); }};

  /// Brings the window to the front and checks the open show.
  void Show();
  /// Copies the show with the desk held, and checks the copy aside.
  void cmdCheckAgain_Click();
  void ListViewFindings_MouseDown(int row);
  /// Leads to what a finding is about: the cue's row comes under the pointer, the plot to the front. Nothing
  /// changes on stage. A cue that has no row is told in the status line.
  void ListViewFindings_DblClick(int row);
  void Unload();

 private:
  static constexpr int MostShown = 1000;  ///< nobody reads more, and the screen copies them all

  struct Copy;
  [[nodiscard]] Copy takeCopy() const;
  [[nodiscard]] static std::vector<Finding> findingsIn(const Copy& copy);
  [[nodiscard]] static SetLoop loopOf(const QueueList& player);
  void show(std::vector<Finding> findings);
  void leadTo(const Finding& finding) const;
  void leadToRow(QueueList& player, const Finding& finding) const;

  ShowState& m_show;
  Machine& m_machine;
  Wiring m_wiring;
  std::vector<Finding> m_findings;  ///< of the rows, in their order
  unsigned m_checks = 0;            ///< begun or given up; a check that another overtook shows nothing
};

}  // namespace velgrove
