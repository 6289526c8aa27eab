// The dialog of a conventional fixture under the operator's hand.

#include "surfaces/fixture_dlg.h"

#include "support/fixture_rig.h"

namespace velgrove::test {
namespace {

class FixtureDialog : public FixtureRig<FixtureDlg> {
 protected:
  FixtureForm& form = dialog.Dialog;

  /// "text slider level", as they stand.
  [[nodiscard]] std::string stands() const {
    return form.Level.text() + " " + std::to_string(dialog.VSlider1.value()) + " " +
           std::to_string(show.CurrentFixture->Level);
  }
};

TEST_F(FixtureDialog, TakesItsChannelFromThePlayersWhenItOpens) {
  struct Case {
    std::int16_t ab, xy;
    bool blindOn;
    const char* manual;
    int blind;
    std::uint8_t input = 0;
  };
  clsFixture& fixture = add(5, 128);
  for (const Case& c :
       {Case{200, 100, false, "128", 9}, Case{200, 100, true, "200", 128}, Case{100, 200, true, "200", 128},
        Case{300, -5, true, "7", 128}, Case{100, 200, true, "200", 0, 130}}) {
    fixture.Level = 128;
    show.ABLevels[4] = c.ab;
    show.XYLevels[4] = c.xy;
    show.ManualLevels[4] = 7;
    show.BlindLevels[4] = 9;
    show.BlindOn = c.blindOn;
    show.DMXInput[4] = c.input;
    openFor(fixture);
    EXPECT_EQ(show.ABLevels[4] + show.XYLevels[4], 0);
    EXPECT_EQ(manual(5), c.manual) << c.ab << " and " << c.xy;
    EXPECT_EQ(blind(5), c.blind);
    dialog.Unload();
  }
}

TEST_F(FixtureDialog, ShowsTheFixtureAndPutsItsLevelOnWholePercents) {
  clsFixture& fixture = add(5, 200);
  fixture.Angle = 22.5;
  fixture.Wattage = 575.5F;
  fixture.PatternMFG = "House";
  openFor(fixture);
  EXPECT_EQ(stands(), "78 199 199");
  EXPECT_EQ(manual(5), "199");
  EXPECT_EQ(form.Channel.text() + " " + form.Text1[2].text() + " " + form.Text1[3].text() + " " +
                form.Text1[7].text(),
            "5 22.5 575.5 House");
  const auto frames = [&] { return std::pair(form.Frame1[0].Visible, form.Frame1[1].Visible); };
  EXPECT_EQ(frames(), std::pair(true, false));
  form.TabStrip1.choose(2);
  EXPECT_EQ(frames(), std::pair(false, true));
}

TEST_F(FixtureDialog, SliderPercentSpinnerAndWheelFollowEachOther) {
  struct Case {
    const char* start;
    std::function<void()> hand;
    const char* stands;
  };
  const auto drag = [this](int to) { return [this, to] { dialog.VSlider1.drag(to); }; };
  const auto type = [this](const char* text) { return [this, text] { form.Level.setText(text); }; };
  const auto turn = [this](int by) { return [this, by] { EXPECT_TRUE(wheel(by)); }; };
  const auto up = [this] { form.UpDown1.up(); };
  const auto down = [this] { form.UpDown1.down(); };
  const Case cases[] = {
      {"50", drag(101), "40 102 101"},
      {"50", drag(3), "0 0 3"},
      {"50", drag(255), "100 255 255"},
      {"0", type("50"), "50 128 128"},
      {"0", type("1"), "1 3 3"},
      {"0", type("100"), "100 255 255"},
      {"50", type(""), "0 0 0"},
      {"50", type("x"), "x 128 128"},
      {"50", type("150"), "150 255 128"},
      {"50", type("-1"), "-1 0 128"},
      {"50", up, "51 130 130"},
      {"50", down, "49 125 125"},
      {"0", up, "1 3 3"},
      {"2", up, "3 8 8"},
      {"100", up, "100 255 255"},
      {"50", turn(120), "54 138 138"},
      {"50", turn(1), "54 138 138"},
      {"50", turn(0), "46 117 117"},
      {"98", turn(120), "98 250 250"},
      {"3", turn(-120), "3 8 8"},
      {"96", turn(120), "100 255 255"},
  };
  const clsFixture& fixture = add(5, 0);
  openFor(fixture);
  for (const Case& c : cases) {
    form.Level.setText(c.start);
    c.hand();
    EXPECT_EQ(stands(), c.stands) << "from " << c.start;
    EXPECT_EQ(manual(5), std::to_string(fixture.Level)) << "the stage follows the fixture";
  }
}

TEST_F(FixtureDialog, FollowsASlowHandToBothEnds) {
  openFor(add(5, 100));
  for (const auto& [way, level] :
       {std::pair(std::array{9, 7, 6, 3, 0}, "0"), std::pair(std::array{245, 248, 250, 252, 255}, "255")}) {
    for (const int place : way) dialog.VSlider1.drag(place);
    EXPECT_EQ(manual(5), level);
  }
}

TEST_F(FixtureDialog, CannotPullALevelBelowTheInputExceptFromFull) {
  clsFixture& fixture = add(5, 150);
  show.DMXInput[4] = 100;
  openFor(fixture);
  dialog.VSlider1.drag(90);
  EXPECT_EQ(stands(), "35 89 150");
  form.Level.setText("20");
  form.UpDown1.down();
  EXPECT_EQ(stands(), "19 48 150");
  EXPECT_EQ(manual(5), "150");
  form.Level.setText("30");
  EXPECT_TRUE(wheel(-120));
  EXPECT_EQ(stands(), "26 66 26") << "the bare percent number, until the next display";
  dialog.VSlider1.drag(120);
  EXPECT_EQ(manual(5), "120");
  form.Level.setText("100");
  form.Level.setText("20");
  EXPECT_EQ(manual(5), "51");
}

TEST_F(FixtureDialog, TakesAlongFixturesOfItsChannelAndSelectedOnes) {
  const clsFixture& fixture = add(5, 0);
  const clsFixture& twin = add(5, 0);
  const clsFixture& selected = addSelected(7);
  addSelected(0);
  const clsFixture& stranger = add(8, 33);
  openFor(fixture);
  EXPECT_EQ(form.GroupCount(), 3);
  const auto levels = [&] {
    return std::vector<int>{fixture.Level, twin.Level, selected.Level, stranger.Level};
  };

  show.LevelTextSource = 2;
  dialog.VSlider1.drag(128);
  EXPECT_EQ(levels(), (std::vector{128, 128, 128, 33}));
  EXPECT_EQ(manual(5, 4), "128 0 128 0");
  for (const clsFixture* follows : {&fixture, &twin, &selected}) {
    EXPECT_EQ(shape(follows->LevelTextShape).text, "50");
    EXPECT_EQ(shape(follows->LevelTextShape).colour, 255) << "the hand's red";
  }
  form.Level.setText("20");
  EXPECT_EQ(manual(5, 4), "51 0 51 0");
  form.UpDown1.up();
  EXPECT_EQ(manual(5, 4), "54 0 54 0");
  EXPECT_EQ(shape(twin.LevelTextShape).text, "21");

  show.BlindOn = true;
  dialog.VSlider1.drag(51);
  EXPECT_EQ(levels(), (std::vector{51, 51, 51, 33}));
  EXPECT_EQ(manual(5, 4), "54 0 54 0") << "the stage doesn't change while a cue is built";
  EXPECT_EQ(blind(5) + blind(7), 51 + 51);
  EXPECT_EQ(shape(selected.DMXInTextShape).text, "20");
}

TEST_F(FixtureDialog, PatchesTheFixtureWhileTheChannelIsTyped) {
  clsFixture& fixture = add(5, 128);
  openFor(fixture);
  for (const auto& [text, channel] : {std::pair("512", 512), std::pair("513", 0), std::pair("12", 12),
                                      std::pair("", 12), std::pair("1x", 12), std::pair("40000", 12),
                                      std::pair("0", 0), std::pair("-3", 0), std::pair("1.5", 2)}) {
    form.Channel.setText(text);
    EXPECT_EQ(fixture.Channel, channel) << text;
  }
  EXPECT_EQ(manual(1, 6), "0 0 0 0 128 0") << "no level moves with the patch";
  form.CancelButton.click();
  EXPECT_EQ(fixture.Channel, 2) << "and there is no way back";
}

TEST_F(FixtureDialog, GivesNoLevelToAFixtureWithoutAChannelNorAWord) {
  const clsFixture& fixture = add(0, 40);
  for (const bool blindOn : {false, true}) {
    show.BlindOn = blindOn;
    openFor(fixture);
    dialog.VSlider1.drag(200);
    form.Level.setText("20");
    form.UpDown1.up();
    EXPECT_EQ(fixture.Level, 40);
    EXPECT_EQ(show.ManualLevels, ChannelBytes{});
    EXPECT_EQ(show.BlindLevels, ChannelBytes{});
    dialog.Unload();
  }
}

TEST_F(FixtureDialog, WritesThePropertiesByOkAlone) {
  clsFixture& fixture = add(5, 128);
  fixture.Angle = 10;
  fixture.Wattage = 500;
  openFor(fixture);
  form.Text1[0].setText("leko");
  form.Text1[2].setText("45.5");
  form.CancelButton.click();
  EXPECT_EQ(fixture.FixtureType, "");

  openFor(fixture);
  EXPECT_EQ(form.Text1[0].text(), "") << "filled anew";
  for (const std::size_t i : {0, 1, 4, 5, 6, 7, 9, 10}) form.Text1[i].setText("text " + std::to_string(i));
  form.Text1[2].setText("45.5");
  form.Text1[3].setText("a lot");
  form.Command1.click();
  EXPECT_FALSE(form.Window.Loaded);
  EXPECT_EQ((std::vector{fixture.FixtureType, fixture.EdFocus, fixture.ColorNumber, fixture.ColorMFG,
                         fixture.PatternNumber, fixture.PatternMFG, fixture.Mood, fixture.Effect}),
            (std::vector<std::string>{"text 0", "text 1", "text 4", "text 5", "text 6", "text 7", "text 9",
                                      "text 10"}));
  EXPECT_EQ(fixture.Angle, 45.5);
  EXPECT_EQ(fixture.Wattage, 500) << "what is no number leaves the old one";
}

TEST_F(FixtureDialog, ClosesWithoutUndoingLevelsAndOpensAfresh) {
  const clsFixture& fixture = add(5, 128);
  const clsFixture& other = addSelected(6);
  dialog.Show();
  EXPECT_FALSE(form.Window.Visible) << "nothing was picked";
  dialog.SetFixtureID(3);
  openFor(fixture);
  EXPECT_TRUE(dialog.shows(fixture) && !dialog.shows(other) && form.Window.Visible);
  clock.advanceTo(clock.now() + Milliseconds(299), machine.timers);
  EXPECT_FALSE(form.LoadDone);
  clock.advanceTo(clock.now() + Milliseconds(1), machine.timers);
  EXPECT_TRUE(form.LoadDone && !form.Timer1.enabled());

  show.ABLevels[4] = 50;
  dialog.Show();
  EXPECT_EQ(show.ABLevels[4], 50) << "an open dialog only comes to the front";
  form.Level.setText("20");
  form.CancelButton.click();
  EXPECT_EQ(manual(5), "51");
  EXPECT_EQ(form.GroupCount(), 0);
  EXPECT_EQ(focused, 1);
  EXPECT_FALSE(dialog.shows(fixture) || form.Window.Loaded);

  openFor(other);
  EXPECT_EQ(stands(), "20 51 51");
  dialog.VSlider1.drag(255);
  EXPECT_EQ(manual(5, 2), "51 255") << "its own channel, and nobody follows";
}

TEST_F(FixtureDialog, LeavesThePlotOfAnotherShowAlone) {
  const clsFixture& fixture = add(5, 0);
  openFor(fixture);
  const ShapeNumber before = fixture.LevelTextShape;
  view->colFixtures().Remove(1);
  dialog.VSlider1.drag(255);
  EXPECT_EQ(manual(5), "255");
  EXPECT_EQ(fixture.LevelTextShape, before);
  EXPECT_EQ(shape(before).text, "-");
}

}  // namespace
}  // namespace velgrove::test
