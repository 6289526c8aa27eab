#pragma once

#include "surfaces/fixture_form.h"

namespace velgrove {

/// The dialog of a conventional fixture. Opening takes its level over from the cue players: the channel is
/// the hand's until the next cue writes it.
class FixtureDlg {
 public:
  FixtureDlg(ShowState& show, Machine& machine, FixtureForm::Wiring wiring);
  FixtureDlg(const FixtureDlg&) = delete;
  FixtureDlg& operator=(const FixtureDlg&) = delete;

  Slider VSlider1{0, 255};  ///< level, a DMX value
  FixtureForm Dialog;

  void SetFixtureID(std::int16_t id) { Dialog.FixtureID = id; }
  /// Opens the dialog for the current fixture; one that is open comes to the front.
  void Show();
  [[nodiscard]] bool shows(const clsFixture& fixture) const { return Dialog.shows(fixture); }
  /// Channel and levels stay as they are.
  void Unload() { Dialog.Unload(); }

  void Form_Load();
  void VSlider1_Scroll() { Dialog.scrollLevel(); }
  void MouseHelper1_MouseWheel(int rotation, bool& handled);
  void Command1_Click();
  void CancelButton_Click() { Unload(); }

 private:
  void takeOver();

  ShowState& m_show;
};

}  // namespace velgrove
