#include "model/show_sheet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/odd_show.h"

namespace velgrove {
namespace {

using testing::HasSubstr;

TEST(ShowSheet, ShowsCuesByNumberPatchByChannelAndTheSubmastersInUse) {
  clsProject project;
  project.ProjectName = "Play";
  project.ProjectDesc = "Autumn tour";
  const auto list = project.colQueueDataAdd(std::make_shared<clsQueueData>());
  list->QueueListName = "AB";
  list->QueueListDesc = "AB Fader";
  auto& cues = list->colQueueEntries();
  const auto dusk = cues.add(std::make_shared<clsQueueEntry>());
  dusk->EntryNum = 10.5F;
  dusk->Up = 12;
  dusk->EntryDesc = "Caf\xC3\xA9\tat dusk";
  dusk->Values = {255, 1, 0, 7};
  dusk->QueueListMasterGo = "XY";
  dusk->QueueNumberMasterGo = "2.00";
  const auto blackout = cues.add(std::make_shared<clsQueueEntry>());
  blackout->EntryDesc = "Blackout";
  blackout->QueueListMasterGo = "None";
  blackout->QueueNumberMasterGo = "None";

  const auto view = project.colViewsAdd(std::make_shared<clsView>());
  view->ViewName = "Play";
  for (const int channel : {12, 3}) {
    const auto fixture = view->colFixturesAdd(std::make_shared<clsFixture>());
    fixture->Channel = static_cast<std::int16_t>(channel);
    fixture->FixtureType = channel == 3 ? "leko" : "fresnel";
    fixture->FixtureName = channel == 3 ? "d\xC3\xA9" : "front";
    fixture->x = channel * 10;
    fixture->Wattage = 575;
    fixture->ColorNumber = "R02";
  }
  view->colFixtures().item(2)->setDMXIn(1);
  view->colFixtures().item(2)->setDMXInControlChannel(44);
  for (int slider = 0; slider < 3; ++slider) {
    const auto sub = view->colSubMastersAdd(std::make_shared<clsSubMaster>());
    sub->Identifier = slider;
    sub->SubMasterName = " ";
  }
  const auto warm = view->colSubMasters().item(2);
  warm->SubMasterName = "Warm";
  warm->setDimmerLevel({200, 200, 0, 9});

  EXPECT_EQ(showSheet(project), R"(SHOW  Play
      Autumn tour

CUES  AB  AB Fader  (2 cues)

    Cue  Up  Down  Delay  Channels  Description   Link
  -----  --  ----  -----  --------  ------------  -------
   0.00   0     0      0         0  Blackout
  10.50  12     0      0         3  Café at dusk  XY 2.00

PATCH  Play  (2 fixtures)

  Channel  Type     Name        X     Y  Watts  Colour  Pattern  Focus  Mood  Effect  Input
  -------  -------  -----  ------  ----  -----  ------  -------  -----  ----  ------  -----
        3  leko     dé      30.00  0.00    575  R02                                      44
       12  fresnel  front  120.00  0.00    575  R02

SUBMASTERS  Play  (1 of 3 in use)

  Submaster  Name  Input  Channels  Look
  ---------  ----  -----  --------  ------------------
          2  Warm                3  1-2 at 200, 4 at 9
)");
}

TEST(ShowSheet, NumbersThatAreNoneDoNotStopTheSheet) {
  const auto project = oddShow();
  project->colQueueData().item(3)->colQueueEntries().item(1)->QueueListMasterGo = "EF";
  const auto sheet = showSheet(*project);
  EXPECT_THAT(sheet, HasSubstr("?"));
  EXPECT_LT(sheet.find("1.10"), sheet.find("16777216.00"));
  EXPECT_LT(sheet.find("16777216.00"), sheet.find("    ?"));
}

}  // namespace
}  // namespace velgrove
