#pragma once

#include <array>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "controls/form.h"
#include "controls/machine.h"
#include "controls/widgets.h"
#include "core/show_state.h"
#include "surfaces/frm_sub_master_record.h"
#include "surfaces/frm_sub_master_small.h"

namespace velgrove {

/// The strip of the submasters: 24 buttons, each with the name and the running level of a stored look. The
/// texts of the labels are the levels; there is no other store of them.
///
/// A button reaches the submaster at its place in the view's collection: behind one that was deleted each
/// reaches the next.
class frmSubPane {
 public:
  static constexpr int Count = ShowState::SubMasterCount;
  static constexpr Colour Magenta = 0xFF00FF;  ///< of a level that follows the DMX input

  /// `currentView`: of the plot that the operator works on; Fault::ObjectMissing when none is open.
  frmSubPane(ShowState& show, Machine& machine, std::function<std::shared_ptr<clsView>()> currentView);
  frmSubPane(const frmSubPane&) = delete;
  frmSubPane& operator=(const frmSubPane&) = delete;

  Form Window;
  std::array<Button, Count> Command1;   ///< "1" to "24"
  std::array<TextBox, Count> Text1;     ///< names
  std::array<Label, Count> Label1;      ///< running levels, percent
  std::int16_t ActiveSubIndex = 0;      ///< that the fader works on, from 0
  std::array<bool, Count> SubBumped{};  ///< what the last click on each label left: True is full

  frmSubMasterSmall Fader;
  frmSubMasterRecord Record;

  void Form_Load();
  void Form_Unload();
  /// Shows the names of a view that has just been opened.
  void showNames(clsView& view);

  // ---- Handlers; indices from 0. Fault::Subscript outside the panel.

  /// Opens the fader, unless the DMX input drives the submasters.
  void Command1_Click(std::int16_t index);
  /// The right button opens the record dialog, in every input mode.
  void Command1_MouseDown(std::int16_t index, std::int16_t button, std::int16_t shift, float x, float y);
  /// Full or off by turns, unless the DMX input drives the submasters. Each channel takes the highest of all
  /// submasters at once.
  void Label1_Click(std::int16_t index);
  /// Sets a submaster by program, by way of the fader.
  void SetSubLevel(std::int16_t index, std::int16_t level);
  /// Lets the received levels of channels 1 to NUMSubs move the submasters of these numbers.
  void SubsInput_Timer();

  // ---- For the fader and the record dialog

  [[nodiscard]] std::shared_ptr<clsView> currentView() const { return m_currentView(); }
  [[nodiscard]] Label& level(int index);
  [[nodiscard]] TextBox& name(int index);
  /// Writes a submaster's light to SubLevels, on all channels of the view where no other submaster is higher.
  void writeWhereHighest(int index);

 private:
  void writeWhereHighest(int index, const colSubMasters& submasters, std::span<const std::size_t> channels);
  void writeHighest(int index, double scale);
  void followInput();
  void showOwnLevels();

  ShowState& m_show;
  Machine& m_machine;
  std::function<std::shared_ptr<clsView>()> m_currentView;
};

}  // namespace velgrove
