#pragma once

#include <ranges>

#include "support/plot_rig.h"

namespace velgrove::test {

/// A dialog of fixtures over a plot. No box may come up, save those that a test takes out of `boxes`.
template <class Dlg>
class FixtureRig : public PlotRig {
 protected:
  int focused = 0;
  int plotPointer = pointers::Default;  ///< over the plots
  Dlg dialog{show,
             machine,
             {.document = [this]() -> frmDocument& { return *plot; },
              .setPointer = [this](int shape) { plotPointer = shape; },
              .focusFrame = [this] { ++focused; }}};

  std::vector<clsFixture*> followers;

  void TearDown() override { EXPECT_TRUE(boxes.empty()); }

  clsFixture& add(int channel, int level) {
    clsFixture& fixture = PlotRig::add(channel);
    fixture.Level = static_cast<std::uint8_t>(level);
    return fixture;
  }
  clsFixture& addSelected(int channel) {
    followers.push_back(&add(channel, 0));
    followers.back()->Selected = 1;
    return *followers.back();
  }

  /// Opens the dialog for a fixture, and the plot before it. The plot's timers stand still.
  void openFor(const clsFixture& fixture) {
    if (!plot) {
      open();
      plot->stopTimers();
      for (clsFixture* one : followers) one->Selected = 1;
    }
    show.CurrentFixture =
        *std::ranges::find(view->colFixtures(), &fixture, [](auto& one) { return one.get(); });
    dialog.Show();
  }

  bool wheel(int rotation) {
    bool handled = false;
    dialog.Dialog.MouseHelper1.MouseWheel(rotation, handled);
    return handled;
  }
  /// What the hand holds on the channels from one on: "128 0 0".
  [[nodiscard]] std::string manual(int channel, int count = 1) const {
    std::string levels;
    for (const int at : std::views::iota(channel, channel + count))
      levels += (levels.empty() ? "" : " ") + std::to_string(show.ManualLevels[channelIndex(at)]);
    return levels;
  }
  [[nodiscard]] int blind(int channel) const { return show.BlindLevels[channelIndex(channel)]; }
};

}  // namespace velgrove::test
