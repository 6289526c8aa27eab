#pragma once

#include "surfaces/fixture_form.h"

namespace velgrove {

/// The dialog of a conventional fixture. While it is open the hand holds the fixture's channel: opening takes
/// the level over from the cue players.
class FixtureDlg {
 public:
  FixtureDlg(ShowState& show, Machine& machine, FixtureForm::Wiring wiring);
  FixtureDlg(const FixtureDlg&) = delete;
  FixtureDlg& operator=(const FixtureDlg&) = delete;

  FixtureForm Dialog;
  Slider VSlider1{0, 255};  ///< level, a DMX value

 private:
  ShowState& m_show;
  Machine& m_machine;
  FixtureForm::Wiring m_wiring;
};

}  // namespace velgrove
