// The dialog of a moving light: brightness, position, and the mouse that moves it.

#include "surfaces/moving_fixture_dlg.h"

#include "support/fixture_rig.h"

namespace velgrove::test {
namespace {

class MovingFixtureDialog : public FixtureRig<MovingFixtureDlg> {
 protected:
  FixtureForm& form = dialog.Dialog;
  MouseSource& mouse = form.MouseHelper1;

  void passMilliseconds(int ms) { clock.advanceTo(clock.now() + Milliseconds(ms), machine.timers); }
  void moveTo(std::int32_t x, std::int32_t y) {
    mouse.X = x;
    mouse.Y = y;
    passMilliseconds(100);
  }
  void expectPointers(int pointer) const {
    EXPECT_EQ(form.Window.MousePointer, pointer);
    EXPECT_EQ(plotPointer, pointer);
    EXPECT_EQ(dialog.cmdAttachMouse.Enabled, pointer == pointers::Default);
    EXPECT_EQ(dialog.Mouse_Attach.enabled(), pointer == pointers::Cross);
  }
  [[nodiscard]] std::string position() const {
    return std::to_string(dialog.VSlider3.value()) + " " + std::to_string(dialog.VSlider4.value());
  }
};

TEST_F(MovingFixtureDialog, OpensInTheMiddleOfTheStageAndLeavesThePlayersTheirLevels) {
  const clsFixture& fixture = add(10, 128);
  show.ABLevels[9] = 90;
  show.BlindLevels[9] = 80;
  show.LevelTextSource = 2;
  openFor(fixture);
  EXPECT_EQ(manual(10, 4), "128 128 128 0");
  EXPECT_EQ(dialog.xlev.Caption + dialog.YLEV.Caption, "X:128Y:128");
  EXPECT_EQ(show.LevelTextSource, 0);

  dialog.Unload();
  show.ManualLevels = {};
  show.BlindOn = true;
  openFor(fixture);
  dialog.VSlider2.drag(200);
  dialog.VSlider3.drag(200);
  form.Level.setText("20");
  EXPECT_EQ(fixture.Level, 51);
  EXPECT_EQ(dialog.xlev.Caption, "X:200");
  EXPECT_EQ(show.ManualLevels, ChannelBytes{});
  EXPECT_EQ(show.ABLevels[9] + show.BlindLevels[9], 90 + 80);
}

TEST_F(MovingFixtureDialog, PutsOneByteOnEachAxisWhateverTheResolution) {
  openFor(add(10, 255));
  const auto choices = [&] { return std::pair(dialog.res_8bit.Value, dialog.res_16Bit.Value); };
  dialog.res_16Bit.choose();
  EXPECT_EQ(dialog.PositionResolution, 16);
  EXPECT_EQ(choices(), std::pair(false, true));
  dialog.VSlider3.drag(200);
  dialog.VSlider4.drag(7);
  EXPECT_EQ(manual(10, 4), "255 200 7 0");
  EXPECT_EQ(dialog.xlev.Caption + dialog.YLEV.Caption, "X:200Y:7");
  for (const int channel : {20, 30}) {
    dialog.Unload();
    openFor(add(channel, 0));
    EXPECT_EQ(dialog.PositionResolution, 8);
    EXPECT_EQ(choices(), std::pair(true, false));
    EXPECT_EQ(manual(channel, 3), "0 128 128") << "opened afresh";
  }
}

TEST_F(MovingFixtureDialog, MovesNothingBeyondTheLastChannel) {
  for (const auto& [channel, levels] : {std::pair(511, "0 51 200"), std::pair(512, "0 0 51")}) {
    show.ManualLevels = {};
    openFor(add(channel, 51));
    dialog.VSlider3.drag(200);
    dialog.VSlider4.drag(100);
    EXPECT_EQ(manual(510, 3), levels);
    EXPECT_EQ(dialog.YLEV.Caption, "Y:100");
    dialog.Unload();
  }
}

TEST_F(MovingFixtureDialog, WithoutAChannelMovesNoOther) {
  openFor(add(0, 51));
  dialog.VSlider3.drag(200);
  EXPECT_EQ(dialog.xlev.Caption, "X:200");
  EXPECT_EQ(manual(1, 2), "0 0");
}

TEST_F(MovingFixtureDialog, TakesTheGroupAlongInBrightnessButWritesItsOwnChannelAlone) {
  const clsFixture& fixture = add(10, 0);
  const clsFixture& other = addSelected(20);
  openFor(fixture);
  dialog.VSlider2.drag(101);
  EXPECT_EQ(form.Level.text(), "40");
  EXPECT_EQ(dialog.VSlider2.value(), 102) << "on the grid of whole percents";
  EXPECT_EQ(fixture.Level, 101) << "where the hand put it";
  EXPECT_EQ(other.Level, 101);
  EXPECT_EQ(shape(other.LevelTextShape).text, "40");
  EXPECT_EQ(manual(10), "101");
  dialog.VSlider3.drag(200);
  EXPECT_EQ(manual(20, 3), "0 0 0");

  show.DMXInput[9] = 100;
  dialog.VSlider2.drag(90);
  form.Level.setText("20");
  EXPECT_EQ(manual(10) + " " + std::to_string(other.Level), "101 101") << "the input holds it";
  dialog.VSlider2.drag(255);
  EXPECT_EQ(manual(10), "255");
}

TEST_F(MovingFixtureDialog, GoesDownByAWholeNotchOfTheWheelAloneAndSettlesARefusedStep) {
  const clsFixture& fixture = add(10, 0);
  openFor(fixture);
  struct Case {
    const char* start;
    int rotation;
    const char* text;
    int level;
  };
  for (const auto& c : {Case{"50", -120, "46", 117}, Case{"50", -240, "54", 138}, Case{"50", 0, "54", 138},
                        Case{"50", 120, "54", 138}, Case{"98", 120, "98", 250}, Case{"2", -120, "2", 5}}) {
    form.Level.setText(c.start);
    show.CurrentFixture->Level = 77;  // as the display of another source leaves it
    EXPECT_TRUE(wheel(c.rotation));
    EXPECT_EQ(form.Level.text(), c.text) << c.start << " by " << c.rotation;
    EXPECT_EQ(fixture.Level, c.level);
    EXPECT_EQ(manual(10), std::to_string(c.level));
  }
}

TEST_F(MovingFixtureDialog, MovesTheLightByTheWayOfTheMouse) {
  openFor(add(10, 255));
  dialog.cmdAttachMouse.click();
  struct Case {
    int dx, dy;
    const char* position;
  };
  for (const auto& c :
       {Case{40, -40, "138 148"}, Case{1, 1, "128 128"}, Case{-1, -1, "128 128"}, Case{2, 2, "128 127"},
        Case{6, 3, "130 126"}, Case{-6, 5, "126 126"}, Case{-2, 0, "128 128"}, Case{-9999, -9999, "0 255"}}) {
    dialog.VSlider3.setValue(128);
    dialog.VSlider4.setValue(128);
    moveTo(mouse.X + c.dx, mouse.Y + c.dy);
    EXPECT_EQ(position(), c.position) << c.dx << ", " << c.dy;
    EXPECT_EQ(manual(11, 2), c.position);
  }
}

TEST_F(MovingFixtureDialog, HoldsTheMouseModeFromTheButtonToTheNextPress) {
  openFor(add(10, 255));
  mouse = {.X = 20, .Y = 0, .ButtonDown = true, .MouseWheel = mouse.MouseWheel};
  dialog.cmdAttachMouse.click();
  expectPointers(pointers::Cross);
  passMilliseconds(99);
  EXPECT_EQ(position(), "128 128");
  passMilliseconds(1);
  EXPECT_EQ(position(), "133 128") << "the whole way from where the mouse was last";
  expectPointers(pointers::Cross);

  mouse.ButtonDown = true;  // and up again before the tick
  moveTo(40, 0);
  EXPECT_EQ(position(), "138 128") << "the last way counts";
  expectPointers(pointers::Default);
  EXPECT_FALSE(mouse.ButtonDown);
  moveTo(400, 0);
  EXPECT_EQ(position(), "138 128");

  dialog.cmdAttachMouse.click();
  passMilliseconds(100);
  EXPECT_EQ(position(), "228 128");
  expectPointers(pointers::Cross);
  form.CancelButton.click();
  expectPointers(pointers::Default);
  EXPECT_EQ(focused, 1);
}

TEST_F(MovingFixtureDialog, EndsATickWhoseWayIsTooLongAndSaysSoOnce) {
  openFor(add(10, 255));
  dialog.cmdAttachMouse.click();
  moveTo(-40, 0);
  EXPECT_EQ(position(), "118 128");
  moveTo(2147483647, 50);
  passMilliseconds(100);
  EXPECT_EQ(position(), "118 128");
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(boxes[0].title, "SYSTEM ERROR");
  boxes.clear();
  moveTo(0, 0);
  EXPECT_EQ(position(), "128 128") << "counted from the last good tick";
}

TEST_F(MovingFixtureDialog, KeepsItsSlidersWhenAGoWipesWhatTheHandHolds) {
  openFor(add(10, 128));
  dialog.VSlider3.drag(200);
  show.ClearManual = true;
  plot->TallyInputs_Timer();
  EXPECT_EQ(manual(10, 3), "0 0 0");
  EXPECT_EQ(position(), "200 128");
  EXPECT_EQ(dialog.VSlider2.value(), 128);
}

}  // namespace
}  // namespace velgrove::test
