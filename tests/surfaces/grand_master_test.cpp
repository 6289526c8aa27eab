// The grand master: what it shifts, and by how much.

#include "support/plot_rig.h"
#include "surfaces/frm_grand_master.h"

namespace velgrove::test {
namespace {

class GrandMaster : public PlotRig {
 protected:
  frmGrandMaster master{show, machine};

  void TearDown() override { EXPECT_TRUE(boxes.empty()); }

  void light(int channel, int level) {
    const auto at = channelIndex(channel);
    show.DMXInput[at] = show.SubLevels[at] = show.ManualLevels[at] = static_cast<std::uint8_t>(level);
    show.XYLevels[at] = show.ABLevels[at] = static_cast<std::int16_t>(level);
  }
  /// The level of a channel in all five arrays; -1 when they differ.
  [[nodiscard]] int lit(int channel) const {
    const auto at = channelIndex(channel);
    const int level = show.ManualLevels[at];
    const bool same = show.DMXInput[at] == level && show.SubLevels[at] == level &&
                      show.XYLevels[at] == level && show.ABLevels[at] == level;
    return same ? level : -1;
  }
};

TEST_F(GrandMaster, ShiftsWhatIsLitByTwoAndAHalfAStep) {
  struct Case {
    int level, slider, shifted;
  };
  for (const Case& c : {Case{200, -40, 100},
                        {100, 1, 102},
                        {100, 3, 108},
                        {255, 1, 255},
                        {255, -100, 5},
                        {250, -100, 0},
                        {1, 100, 251},
                        {3, -1, 0},
                        {0, 100, 0}}) {
    light(1, c.level);
    light(512, c.level);
    master.Show();
    master.VSlider1.drag(c.slider);
    EXPECT_EQ(std::pair(lit(1), lit(512)), std::pair(c.shifted, c.shifted)) << c.level << " at " << c.slider;
    master.VSlider1.drag(0);
    EXPECT_EQ(lit(1), c.level) << "each motion begins at the snapshot";
    master.cmdOK.click();
  }
}

TEST_F(GrandMaster, LevelsSetAfterTheOpeningAreLostToIt) {
  light(1, 200);
  master.Show();
  light(2, 80);
  master.VSlider1.drag(10);
  EXPECT_EQ(std::pair(lit(1), lit(2)), std::pair(225, 25));
  light(1, 7);
  master.cmdCancel.click();
  EXPECT_EQ(std::pair(lit(1), lit(2)), std::pair(200, 0));
}

TEST_F(GrandMaster, OkKeepsTheLevelsAndTheNextOpeningStartsFromThem) {
  light(1, 200);
  master.Show();
  master.VSlider1.drag(-40);
  master.Show();  // one that is open takes no new snapshot
  EXPECT_EQ(master.VSlider1.value(), -40);
  master.cmdOK.click();
  EXPECT_FALSE(master.Window.Loaded);
  master.Show();
  EXPECT_EQ(std::tuple(master.VSlider1.value(), master.Level.text(), lit(1)), std::tuple(0, "0", 100));
  master.VSlider1.drag(-20);
  master.cmdCancel.click();
  EXPECT_EQ(lit(1), 100);
  master.Show();
  light(1, 50);
  master.cmdOK.click();
  master.cmdCancel.click();
  EXPECT_EQ(lit(1), 50) << "OK was first";
}

TEST_F(GrandMaster, BlackoutIsItsLowerEnd) {
  light(1, 255);
  light(2, 100);
  for (const bool open : {false, true}) {
    if (open) master.Show();
    master.showAtBottom();
    EXPECT_EQ(std::tuple(master.Level.text(), lit(1), lit(2)), std::tuple("-100", 5, 0));
    master.cmdCancel.click();
    EXPECT_EQ(std::pair(lit(1), lit(2)), std::pair(255, 100));
  }
}

TEST_F(GrandMaster, ATypedLevelWaitsForTheArrows) {
  light(1, 100);
  master.Show();
  master.Level.setText("19.6");
  EXPECT_EQ(lit(1), 100);
  master.UpDown1.up();
  EXPECT_EQ(std::tuple(master.Level.text(), master.VSlider1.value(), lit(1)), std::tuple("21", 21, 152));
  master.Level.setText("letters");
  master.UpDown1.down();
  EXPECT_EQ(std::pair(master.VSlider1.value(), lit(1)), std::pair(20, 150));
  master.Level.setText("-100");
  master.UpDown1.down();
  EXPECT_EQ(std::pair(master.VSlider1.value(), lit(1)), std::pair(-100, 0))
      << "typed at the end of the range";
  master.VSlider1.drag(20);
  master.Level.setText("100");
  master.UpDown1.up();
  EXPECT_EQ(master.VSlider1.value(), 100);
  master.VSlider1.drag(20);
  for (const char* text : {"101", "-101.4", "40000"}) {
    master.Level.setText(text);
    master.UpDown1_Change();
    EXPECT_EQ(master.VSlider1.value(), 20) << text;
  }
  EXPECT_EQ(std::exchange(boxes, {}).size(), 1U) << "no 16-bit number";
}

}  // namespace
}  // namespace velgrove::test
