// The submasters: their levels on the channels, the fader, the toggle, the record dialog, the DMX input.

#include <gmock/gmock.h>

#include "support/plot_rig.h"
#include "surfaces/frm_sub_pane.h"

namespace velgrove::test {
namespace {

using testing::ElementsAre;
using testing::Pair;

class SubPane : public PlotRig {
 protected:
  frmSubPane panel{show, machine, [this] { return view; }};
  frmSubMasterSmall& fader = panel.Fader;
  frmSubMasterRecord& record = panel.Record;
  BoxAnswer toQuestion = BoxAnswer::Yes;

  SubPane() {
    for (int i = 0; i < frmSubPane::Count; ++i) {
      auto made = std::make_shared<clsSubMaster>();
      made->SubMasterName = " ";
      made->Identifier = i;
      view->colSubMastersAdd(std::move(made));
    }
    machine.boxes.show = [this](const Box& box) {
      boxes.push_back(box);
      if (box.buttons == BoxButtons::YesNo) return toQuestion;
      return box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Ignore;
    };
    panel.Form_Load();
  }
  void TearDown() override { EXPECT_TRUE(boxes.empty()); }

  clsSubMaster& at(int position) { return *view->colSubMasters().item(position); }
  /// Gives the submaster at an index its look on a channel.
  void look(int index, int channel, int level) {
    auto levels = at(index + 1).DimmerLevel();
    levels[channelIndex(channel)] = static_cast<std::uint8_t>(level);
    at(index + 1).setDimmerLevel(levels);
  }
  void move(std::int16_t index, int percent) {
    panel.Command1_Click(index);
    fader.Pot.drag(percent);
    fader.Pot.letGo();
  }
  [[nodiscard]] int light(int channel) const { return show.SubLevels[channelIndex(channel)]; }
  [[nodiscard]] const std::string& label(int index) { return panel.level(index).Caption; }
  std::size_t takeBoxes() { return std::exchange(boxes, {}).size(); }
};

TEST_F(SubPane, LevelsAreRoundedToTheNearestHalvesToEven) {
  add(10);
  for (const auto& [full, percent, level] :
       {std::tuple(200, 50, 100), {200, 51, 102}, {255, 50, 128}, {255, 100, 255}, {5, 50, 2}, {255, 0, 0}}) {
    look(0, 10, full);
    move(0, percent);
    EXPECT_EQ(light(10), level) << full << " at " << percent;
  }
}

TEST_F(SubPane, AFaderThatIsPulledBelowAnotherStopsWritingItsChannels) {
  add(7);
  look(0, 7, 200);
  look(1, 7, 100);
  move(0, 100);
  move(1, 100);
  EXPECT_EQ(light(7), 200);
  panel.Command1_Click(0);
  for (const int percent : {60, 50, 45, 40}) fader.Pot.drag(percent);
  EXPECT_EQ(light(7), 100) << "the last value that still held the channel";
  EXPECT_EQ(label(0), "40");
  fader.Pot.letGo();
  move(1, 90);
  EXPECT_EQ(light(7), 90);
}

TEST_F(SubPane, TheToggleTakesTheHighestOfAllAtOnce) {
  add(7);
  look(0, 7, 200);
  look(1, 7, 100);
  move(1, 100);
  panel.Label1_Click(0);
  EXPECT_EQ(light(7), 200);
  move(0, 30);  // the click remembers itself alone
  panel.Label1_Click(0);
  EXPECT_EQ(std::pair(light(7), label(0)), std::pair(100, std::string("0")));
  panel.Label1_Click(0);
  EXPECT_EQ(std::pair(light(7), label(0)), std::pair(200, std::string("100")));
  EXPECT_EQ(show.LevelTextSource, 3);
  EXPECT_EQ(fader.Pot.value(), 100);
  EXPECT_FALSE(fader.Window.Visible);
}

/// The fader's window comes to be with its first touch, pulls its submaster to the bottom, and never again.
TEST_F(SubPane, TheFaderStaysLoadedAndKeepsLevelsWhenTheHandLetsGo) {
  add(7);
  look(0, 7, 200);
  panel.Label1_Click(0);
  EXPECT_EQ(std::pair(light(7), label(0)), std::pair(200, std::string("0")))
      << "the window's load came between";
  move(0, 75);
  EXPECT_EQ(std::tuple(light(7), label(0), fader.Text2.text()), std::tuple(150, "75", "0"));
  EXPECT_FALSE(fader.Window.Visible);
  panel.Command1_Click(0);
  EXPECT_TRUE(fader.Window.Visible);
  EXPECT_EQ(std::tuple(fader.Pot.value(), fader.Text2.text(), light(7)), std::tuple(75, "75", 150));
  panel.Command1_Click(4);
  EXPECT_EQ(std::tuple(panel.ActiveSubIndex, fader.Pot.value(), label(0)), std::tuple(4, 0, "75"));
  panel.SetSubLevel(0, 20);
  EXPECT_EQ(std::pair(light(7), label(0)), std::pair(40, std::string("20")));
}

TEST_F(SubPane, ChannelsWithoutAFixtureTakeNoPartAndABadOneIsToldEachTime) {
  add(7);
  add(0);
  look(0, 7, 200);
  look(0, 8, 200);
  move(0, 50);
  EXPECT_EQ(std::pair(light(7), light(8)), std::pair(100, 0));
  EXPECT_EQ(takeBoxes(), 2U) << "one at the window's load, one at the motion";
}

TEST_F(SubPane, TheInputModeShutsTheHandOffButForRecording) {
  add(7);
  look(0, 7, 200);
  move(0, 50);
  show.DMXSubmasters = true;
  panel.Command1_Click(0);
  panel.Label1_Click(0);
  EXPECT_FALSE(fader.Window.Visible);
  EXPECT_EQ(std::pair(light(7), label(0)), std::pair(100, std::string("50")));
  panel.Command1_MouseDown(0, 1, 0, 0, 0);
  EXPECT_FALSE(record.Window.Visible);
  panel.Command1_MouseDown(0, 2, 0, 0, 0);
  EXPECT_TRUE(record.Window.Visible);
}

// ---- DMX input

TEST_F(SubPane, TheInputMovesAsManySubmastersAsWereSet) {
  add(7);
  look(0, 7, 200);
  look(2, 7, 240);
  show.DMXSubmasters = true;
  show.DMXInput = {128, 255, 250};
  panel.SubsInput_Timer();
  EXPECT_EQ(std::pair(label(0), light(7)), std::pair(std::string("0"), 0)) << "none is set at first";
  show.NUMSubs = 2;
  panel.SubsInput_Timer();
  EXPECT_EQ(std::tuple(label(0), label(1), label(2)), std::tuple("50", "100", "0"));
  EXPECT_EQ(light(7), 100);
  EXPECT_EQ(panel.level(1).ForeColour, frmSubPane::Magenta);
  EXPECT_EQ(panel.level(2).ForeColour, colours::White);
  show.NUMSubs = 3;
  show.DMXInput[2] = 250;  // 98 %: an almost full fader reads full
  panel.SubsInput_Timer();
  EXPECT_EQ(std::pair(label(2), light(7)), std::pair(std::string("100"), 240));
  show.DMXInput[0] = 0;
  panel.SubsInput_Timer();
  EXPECT_EQ(std::pair(label(0), light(7)), std::pair(std::string("0"), 240)) << "another is higher";
  show.DMXSubmasters = false;
  panel.SubsInput_Timer();
  EXPECT_EQ(std::tuple(label(2), light(7), panel.level(2).ForeColour),
            std::tuple("100", 240, colours::White));
}

TEST_F(SubPane, AsManySubmastersAsThePanelHasFollowWithoutAWord) {
  show.NUMSubs = 24;
  show.DMXInput.fill(255);
  for (const bool follows : {true, false}) {
    show.DMXSubmasters = follows;
    panel.SubsInput_Timer();
  }
  EXPECT_EQ(std::pair(label(23), panel.level(23).ForeColour), std::pair(std::string("100"), colours::White));
  view->colSubMasters().Remove(3);
  view->colSubMasters().Remove(3);
  show.DMXSubmasters = true;
  show.DMXInput.fill(128);
  panel.SubsInput_Timer();
  EXPECT_EQ(takeBoxes(), 2U) << "the last two have none";
  EXPECT_EQ(label(23), "50");
}

TEST_F(SubPane, SubmastersWithoutAPlaceOnThePanelAreToldOfTogether) {
  add(7);
  for (const int identifier : {24, 25, -5}) {
    auto made = std::make_shared<clsSubMaster>();
    made->Identifier = identifier;
    view->colSubMastersAdd(std::move(made));
  }
  at(1).SubMasterName = "Front";
  panel.name(2).setText("of the show before");
  at(3).SubMasterName = "";
  panel.showNames(*view);
  EXPECT_EQ(takeBoxes(), 1U);
  EXPECT_EQ(panel.name(0).text() + panel.name(2).text(), "Front");
  look(0, 7, 200);
  move(0, 1);
  EXPECT_EQ(light(7), 2);
}

/// Escape lets go of a fader that the mouse still holds: its release comes twice.
TEST_F(SubPane, ASecondReleaseLeavesTheLevel) {
  add(7);
  look(0, 7, 200);
  move(0, 75);
  fader.Pot.letGo();
  EXPECT_EQ(std::pair(label(0), light(7)), std::pair(std::string("75"), 150));
}

TEST_F(SubPane, MoreSubmastersThanThePanelHasIsOneFaultAndTheOthersFollow) {
  add(7);
  look(23, 7, 200);
  show.NUMSubs = 300;
  show.DMXInput.fill(255);
  for (const bool follows : {true, false}) {
    show.DMXSubmasters = follows;
    panel.SubsInput_Timer();
    EXPECT_EQ(takeBoxes(), 1U);
    EXPECT_EQ(light(7), 200);
  }
}

// ---- Record and delete

TEST_F(SubPane, RecordingStoresWhatThePlotShows) {
  add(5).Level = 250;
  add(5).Level = 200;
  add(512).Level = 255;
  add(9).Level = 90;
  look(11, 300, 77);
  panel.Command1_MouseDown(11, 2, 0, 0, 0);
  EXPECT_EQ(std::pair(record.lblSM.Caption, record.txtName.text()),
            std::pair(std::string("12"), std::string("11")));
  record.txtName.setText("Storm");
  record.cmdRecord.click();
  const clsSubMaster& recorded = at(12);
  EXPECT_EQ(std::pair(recorded.SubMasterName, panel.name(11).text()),
            std::pair(std::string("Storm"), std::string("Storm")));
  const auto& levels = recorded.DimmerLevel();
  EXPECT_EQ(std::tuple(levels[4], levels[8], levels[299], levels[511]), std::tuple(200, 90, 0, 0));
  EXPECT_FALSE(record.Window.Loaded);
  EXPECT_EQ(std::tuple(label(11), light(5), show.ProjectDirty), std::tuple("0", 0, false));

  panel.Command1_MouseDown(11, 2, 0, 0, 0);
  record.txtName.setText("");
  record.cmdRecord.click();
  EXPECT_EQ(std::pair(recorded.SubMasterName, panel.name(11).text()),
            std::pair(std::string("Slider 11"), std::string()));
  panel.showNames(*view);
  EXPECT_EQ(panel.name(11).text(), "Slider 11");
}

TEST_F(SubPane, CancelLeavesAllAsItWas) {
  add(5).Level = 100;
  panel.Command1_MouseDown(3, 2, 0, 0, 0);
  record.txtName.setText("Storm");
  record.Command1.click();
  EXPECT_TRUE(record.Window.Loaded && !record.Window.Visible);
  EXPECT_EQ(std::pair(at(4).SubMasterName, panel.name(3).text()),
            std::pair(std::string(" "), std::string("3")));
}

/// The button behind a deleted submaster reaches the one that moved up.
TEST_F(SubPane, DeletingMovesTheOthersUpAndEndsInAnError) {
  add(7);
  look(2, 7, 200);
  panel.Command1_MouseDown(1, 2, 0, 0, 0);
  toQuestion = BoxAnswer::No;
  record.Command2.click();
  EXPECT_EQ(view->colSubMasters().count(), 24);
  toQuestion = BoxAnswer::Yes;
  boxes.clear();
  record.Command2.click();
  EXPECT_EQ(view->colSubMasters().count(), 23);
  ASSERT_EQ(boxes.size(), 2U);
  EXPECT_EQ(std::pair(boxes[0].title, boxes[0].text),
            std::pair(std::string("Confirm Deletion"), std::string("Are you sure?")));
  EXPECT_EQ(boxes[1].title, "SYSTEM ERROR");
  EXPECT_TRUE(record.Window.Visible);
  EXPECT_EQ(panel.name(1).text(), "");
  takeBoxes();

  record.cmdRecord.click();
  EXPECT_EQ(takeBoxes(), 1U) << "there is nothing to record into";
  move(1, 100);
  EXPECT_EQ(light(7), 200);
  panel.Label1_Click(23);
  EXPECT_EQ(takeBoxes(), 1U) << "the last button reaches none";

  panel.Command1_MouseDown(23, 2, 0, 0, 0);
  record.Command2.click();
  EXPECT_EQ(takeBoxes(), 1U) << "the question alone: the walk ends with the last one";
  EXPECT_EQ(view->colSubMasters().count(), 22);
  panel.showNames(*view);
  EXPECT_THAT(std::pair(panel.name(1).text(), panel.name(2).text()), Pair("", " "));
  panel.Form_Unload();
  EXPECT_EQ(show.CurrentSubMasterIndex, -1);
}

}  // namespace
}  // namespace velgrove::test
