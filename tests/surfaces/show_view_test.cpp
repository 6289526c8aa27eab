// What the show view says, and what of the booth is kept from evening to evening.

#include "playback/cue_links.h"
#include "support/desks.h"
#include "support/scripted_desk.h"
#include "surfaces/frm_show_view.h"

namespace velgrove::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The fade out of Blackout takes 4 s down and 20 s up; cue 1 starts AB, cue 2 an effect.
ShowMaker linkedShow() {
  ShowMaker maker;
  maker.blackoutDown = 4;
  maker.blackoutUp = 20;
  maker.ab = {{.number = 5}, {.number = 6}};
  maker.xy = {{.number = 1, .list = "AB", .target = "5.00"},
              {.number = 2, .list = "EF", .target = " 3    "},
              {.number = 3},
              {.number = 4}};
  return maker;
}

std::string cueText(const ShowViewLook::Cue& cue) {
  return cue.number + "|" + cue.description;
}

/// "what is on stage / what comes next"
std::string cuesIn(const ShowViewLook& look) {
  return cueText(look.stage) + " / " + cueText(look.next);
}

struct ShowView : testing::Test {
  ScriptedDesk desk{linkedShow()};
  [[nodiscard]] std::int64_t now() const {
    return std::chrono::floor<Milliseconds>(desk.house.clock.now()).count();
  }
  frmShowView& form = desk.house.desk.windows.ShowView;
};

TEST_F(ShowView, FollowsAFadeFromItsGoToItsEnd) {
  EXPECT_EQ(cuesIn(form.look()), "0.00|Blackout / 1.00|Cue 1.000000");
  EXPECT_EQ(form.look().fade, "nothing fading");
  EXPECT_EQ(form.look().nextLink, "AB 5.00");
  EXPECT_EQ(form.look().started, "");

  desk.tool("ID_Go");
  const auto start = now();
  for (const auto& [at, left] : {std::pair(0, "20"),
                                 {30, "20"},
                                 {1000, "19"},
                                 {10000, "10"},
                                 {10010, "10"},
                                 {10130, "9.9"},
                                 {19970, "0.1"}}) {
    desk.runTo(start + at);
    const ShowViewLook look = form.look();
    EXPECT_EQ(look.timeLeft, left) << at;
    EXPECT_EQ(look.started, "AB 5.00");
    EXPECT_EQ(look.nextLink, "") << "it has started already";
  }
  desk.runTo(start + 20030);
  EXPECT_EQ(cuesIn(form.look()), "1.00|Cue 1.000000 / 2.00|Cue 2.000000");
  EXPECT_EQ(form.look().timeLeft, "");
  EXPECT_EQ(form.look().started, "");
  EXPECT_EQ(form.look().nextLink, "effect 3");
}

TEST_F(ShowView, SaysThatAFadeStandsAndHowMuchOfItIsLeft) {
  desk.xy().State.NextCue = 4;  // without a link
  desk.tool("ID_Go");
  const auto start = now();
  desk.runTo(start + 900);
  desk.tool("ID_StopFade");
  desk.runTo(start + 60000);
  EXPECT_EQ(form.look().timeLeft, "20");
  EXPECT_EQ(form.look().fade, "s, stopped");
}

TEST_F(ShowView, SaysInWordsWhatIsntThere) {
  auto& state = desk.xy().State;
  state.StageCue = 5;
  state.NextCue = -1;
  EXPECT_EQ(cuesIn(form.look()), "4.00|Cue 4.000000 / |End of the list");
  EXPECT_EQ(form.look().nextLink, "");
  state.StageCue = 0;  // a loop was cleared
  state.NextCue = 0;
  EXPECT_EQ(cuesIn(form.look()), "|No cue on stage / |No next cue");
  desk.house.desk.windows.unloadPlayers();
  EXPECT_EQ(cuesIn(form.look()), "|No show is open / |");
}

TEST_F(ShowView, CountsTheLoopDownAndShowsTheListThatWasChosen) {
  EXPECT_EQ(form.look().loop, "");
  address(desk, desk.xy());
  loop(desk, desk.xy(), "1.00", "3.00", "2");
  EXPECT_EQ(form.look().loop, "Loop 1.00 to 3.00, 2 passes left");
  desk.xy().State.LoopCount = 1;
  EXPECT_EQ(form.look().loop, "Loop 1.00 to 3.00, last pass");
  form.cmdAB.click();
  EXPECT_EQ(form.look().loop, "");
  EXPECT_EQ(form.player(), &desk.ab());
  EXPECT_EQ(cuesIn(form.look()), "0.00|Blackout / 5.00|Cue 5.000000");
}

TEST_F(ShowView, TellsTheModeAndHowTheInterfaceStands) {
  using Lamp = InterfaceState::Lamp;
  EXPECT_EQ(form.look().mode, "");
  EXPECT_EQ(std::pair(form.look().lamp, form.look().interface),
            std::pair(Lamp::Up, std::string("DMX TX/RX")));
  desk.xy().cmdLiveView_Click();
  EXPECT_EQ(form.look().mode, "Live");
  desk.xy().cmdBlindView_Click();
  EXPECT_EQ(form.look().mode, "Blind");
  desk.house.desk.windows.Comm.Condition.Caption = "The interface is unplugged.";
  EXPECT_EQ(std::pair(form.look().lamp, form.look().interface),
            std::pair(Lamp::None, std::string("The interface is unplugged.")));
}

TEST(LinkText, NamesWhatALinkStarts) {
  const struct {
    const char* list;
    const char* number;
    const char* text;
  } links[] = {{"None", "5.00", ""},
               {"AB", "None", ""},
               {"AB", "5.00", "AB 5.00"},
               {"XY", "12.10", "XY 12.10"},
               {"EF", " 7    ", "effect 7"},
               {"EF", "  ", ""},
               {"", "5.00", ""},
               {"ZZ", "5.00", ""}};
  for (const auto& [list, number, text] : links) EXPECT_EQ(linkText(list, number), text) << list << number;
}

// ---- What is kept

class Booth : public Desks {
 protected:
  LightingDesk& opened(const std::string& settings = "") {
    if (!settings.empty()) writeSettings("[Velgrove.Booth]\n" + settings);
    open = writeShow(linkedShow());
    return *start();
  }
  [[nodiscard]] std::string settingsFile() const { return readFile(folder / "settings" / "settings.toml"); }
  void exit() {
    house->desk.show.ProjectDirty = false;
    tool("mnuFileExit");
    EXPECT_THAT(takeBoxes(), ElementsAre("exiting frmMain unload"));
  }
};

TEST_F(Booth, ComesUpAsItWasLeftTheEveningBefore) {
  auto& first = opened();
  EXPECT_FALSE(first.windows.ShowView.Window.Visible);
  tool("ID_ShowView");
  tool("ID_DimScreen");
  first.windows.ShowView.cmdAB.click();
  first.windows.ShowView.cmdLarger.click();
  first.windows.ShowView.Window.WindowState = WindowState::Maximised;
  exit();

  bool early = false;
  auto* const second = make();
  open = writeShow(linkedShow());
  house->onWait = [&] {
    early = second->windows.ShowView.Window.Visible;
    second->OpenProject.Window.Visible = false;
    second->show.ProjectFileName = open;
    second->frame.LoadProject(1);
  };
  house->start();
  const frmShowView& form = second->windows.ShowView;
  EXPECT_FALSE(early) << "it hides no dialog";
  EXPECT_TRUE(form.Window.Visible);
  EXPECT_EQ(form.Window.WindowState, WindowState::Maximised);
  EXPECT_EQ(form.typeSize(), 110);
  EXPECT_EQ(form.lblTypeSize.Caption, "110 %");
  EXPECT_EQ(form.player(), second->windows.ABQ.get());
  EXPECT_TRUE(toolState("ID_DimScreen").Pressed);

  second->windows.ShowView.Close();
  exit();
  EXPECT_FALSE(opened().windows.ShowView.Window.Visible);
}

TEST_F(Booth, AnEveningWithoutAShowKeepsWhatTheOneBeforeLeft) {
  writeSettings("[Velgrove.Booth]\nShowView = '-1'\nShowViewMaximised = '-1'\n");
  start();
  EXPECT_FALSE(house->desk.windows.ShowView.Window.Visible);
  exit();
  EXPECT_THAT(settingsFile(), HasSubstr("ShowView = \"-1\""));
}

TEST_F(Booth, TakesWhatMakesNoSenseForTheDefaultWithoutABox) {
  for (const char* wrong :
       {"TypeSize = 'large'", "TypeSize = '0'", "TypeSize = '9999'", "TypeSize = '105'", "TypeSize = 150",
        "ShowView = 'yes'", "ShowView = 1", "ShowViewList = 'CD'", "DimScreen = '2'", "DimScreen = true"})
    EXPECT_EQ(opened(std::string(wrong) + "\n").show.Booth, BoothSettings()) << wrong;
  EXPECT_EQ(opened("TypeSize = '200'\n").show.Booth.TypeSize, 200);
}

TEST_F(Booth, WritesAChangeASecondLaterAndOnce) {
  int writes = 0;
  folders.disk.write = [&writes, real = systemDisk().write](auto&&... with) {
    ++writes;
    return real(std::forward<decltype(with)>(with)...);
  };
  auto& form = opened().windows.ShowView;
  writes = 0;
  for (int press = 0; press < 20; ++press) form.cmdLarger.click();
  EXPECT_EQ(form.typeSize(), 200);
  EXPECT_FALSE(form.cmdLarger.Enabled);
  EXPECT_EQ(writes, 0);
  runOn(1000);
  EXPECT_THAT(settingsFile(), HasSubstr("TypeSize = \"200\""));
  const int first = writes;
  runOn(5000);
  EXPECT_EQ(writes, first);
  for (int press = 0; press < 20; ++press) form.cmdSmaller.click();
  EXPECT_EQ(form.typeSize(), 60);
  form.UsualTypeSize();
  EXPECT_EQ(form.typeSize(), 100);
}

}  // namespace
}  // namespace velgrove::test
