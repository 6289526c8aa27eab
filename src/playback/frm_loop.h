#pragma once

#include <cstdint>
#include <functional>

#include "controls/form.h"
#include "controls/machine.h"
#include "controls/widgets.h"
#include "core/show_state.h"
#include "playback/queue_list.h"

namespace velgrove {

/// Asks for the loop of the player that is being addressed: its first and last cue and the number of passes.
/// A count of 0 ends a loop.
class frmLoop {
 public:
  using FindPlayer = std::function<QueueList&()>;  ///< Fault::ObjectMissing when no show is open

  frmLoop(ShowState& show, Machine& machine, FindPlayer abPlayer, FindPlayer xyPlayer);
  frmLoop(const frmLoop&) = delete;
  frmLoop& operator=(const frmLoop&) = delete;

  Form Window{.Caption = "Loop Configuration"};
  Frame Frame1{.Caption = "Loop"};
  Label lblStartCue{.Caption = "Start Cue:"};
  Label lblLastCue{.Caption = "Last Cue:"};
  Label lblLoopCount{.Caption = "Loop Count:"};
  TextBox txtStartCue{"1.0"};
  TextBox txtLastCue{"2.0"};
  TextBox txtLoopCount;
  UpDown UpDownStartCue{0, Highest, 0};
  UpDown UpDownLastCue{0, Highest, 0};
  UpDown UpDownLoopCount{0, Highest, 0};
  Button Command1{.Caption = "&OK", .Click = [this] { Command1_Click(); }};
  Button cmdCancel{.Caption = "&Cancel"};  ///< these two do nothing: a loop ends with a count of 0
  Button cmdClear{.Caption = "&Clear"};

  /// Shows the dialog and waits until it's closed.
  void ShowModal();

  void Form_Load();
  /// Stores what the fields say, closes the dialog. Text that is no number stores nothing, and the dialog
  /// stays for another try.
  void Command1_Click();
  void UpDownStartCue_Change();
  void UpDownLastCue_Change();
  void UpDownLoopCount_Change();
  void Form_OLEDragDrop() const;
  void Unload();

 private:
  static constexpr int Highest = 999;

  [[nodiscard]] QueueList& player() const;

  ShowState& m_show;
  Machine& m_machine;
  FindPlayer m_abPlayer;
  FindPlayer m_xyPlayer;
};

}  // namespace velgrove
