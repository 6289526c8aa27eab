// The fixtures' dialogs as part of the desk: what opens and closes them, and what they do to the light.

#include "support/scripted_desk.h"

namespace velgrove::test {
namespace {

/// A desk with conventional fixtures on channels 1 and 2 and a moving light on 3 to 5.
class FixtureDialogs : public testing::Test {
 protected:
  void SetUp() override {
    desk.tool("mnuViewGrid");  // no snap
    for (const auto& [tool, x] :
         {std::pair("mnuLeko", 100), std::pair("mnuScoop", 300), std::pair("mnuMoving_Light", 500)}) {
      desk.tool(tool);
      plot().FlpCAD1_WorldMouseDown(mouse::Left, 0, x, 500);
    }
    desk.tool("ID_SelectPointer");
  }
  static ShowMaker empty() {
    ShowMaker maker = showOf(4);
    maker.channels.clear();
    return maker;
  }
  void rightPress(double x) { plot().FlpCAD1_WorldMouseDown(mouse::Right, 0, x, 500); }
  frmDocument& plot() { return *windows.DocumentForm; }

  ScriptedDesk desk{empty()};
  Windows& windows = desk.house.desk.windows;
  Form& conventional = windows.Fixture.Dialog.Window;
  Form& moving = windows.MovingFixture.Dialog.Window;
};

TEST_F(FixtureDialogs, OneIsOpenAtATimeAndActsOnTheFixtureThatItShows) {
  rightPress(100);
  EXPECT_TRUE(conventional.Visible);
  EXPECT_EQ((std::pair{conventional.Left, conventional.Top}), (std::pair{1500.0F, 7500.0F}));
  windows.Fixture.Dialog.Text1[1].setText("Centre");
  const unsigned fronts = conventional.Fronts;
  rightPress(100);
  EXPECT_EQ(windows.Fixture.Dialog.Text1[1].text(), "Centre")
      << "the same fixture's dialog comes to the front";
  EXPECT_GT(conventional.Fronts, fronts);
  rightPress(300);
  EXPECT_EQ(windows.Fixture.Dialog.Channel.text(), "2");
  EXPECT_EQ(windows.Fixture.Dialog.FixtureID, 2);
  EXPECT_EQ(windows.Fixture.Dialog.Text1[1].text(), "0");
  rightPress(500);
  EXPECT_TRUE(moving.Visible && !conventional.Visible);
  EXPECT_EQ(windows.MovingFixture.Dialog.Channel.text(), "3");
  rightPress(300);
  EXPECT_TRUE(conventional.Visible && !moving.Visible);
}

TEST_F(FixtureDialogs, AFixtureThatGoesTakesThemAlong) {
  rightPress(100);
  desk.tool("ID_DelLight");
  plot().FlpCAD1_WorldMouseDown(mouse::Left, 0, 300, 500);
  EXPECT_FALSE(conventional.Visible || conventional.Loaded);
  EXPECT_FALSE(windows.Fixture.Dialog.Timer1.enabled());
}

TEST_F(FixtureDialogs, TheHandHoldsALevelUntilTheNextGo) {
  desk.runTo(100);
  desk.xy().cmdGoForward.click();
  desk.runTo(1000);
  const int lit = desk.wire(1);
  ASSERT_GT(lit, 0);
  rightPress(100);
  windows.Fixture.Dialog.Level.setText("50");
  rightPress(500);
  windows.MovingFixture.VSlider3.drag(10);
  desk.runTo(1100);
  EXPECT_EQ(std::tuple(desk.wire(1), desk.wire(4), desk.wire(5)), std::tuple(128, 10, 128));
  desk.xy().cmdGoForward.click();
  desk.runTo(3000);
  EXPECT_EQ(std::tuple(desk.wire(1), desk.wire(4), desk.wire(5)), std::tuple(20, 0, 0));
  EXPECT_TRUE(moving.Visible) << "a Go leaves the dialog open";
  EXPECT_EQ(windows.MovingFixture.VSlider3.value(), 10);
}

TEST_F(FixtureDialogs, OpenAndCloseWithoutAJumpInTheLight) {
  desk.runTo(100);
  desk.xy().cmdGoForward.click();
  desk.runTo(1000);
  const int lit = desk.wire(1);
  rightPress(100);
  for (int ms = 1030; ms < 1400; ms += 30) {
    desk.runTo(ms);
    EXPECT_NEAR(desk.wire(1), lit, 2) << "on the grid of percents, at " << ms;
  }
  windows.Fixture.Dialog.CancelButton.click();
  desk.runTo(1500);
  EXPECT_NEAR(desk.wire(1), lit, 2);
}

TEST_F(FixtureDialogs, GoWithTheDesk) {
  rightPress(500);
  windows.MovingFixture.cmdAttachMouse.click();
  desk.house.desk.ShutdownApp();
  EXPECT_FALSE(moving.Loaded || windows.MovingFixture.Mouse_Attach.enabled());
}

}  // namespace
}  // namespace velgrove::test
