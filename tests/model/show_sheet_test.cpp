#include "model/show_sheet.h"

#include <gtest/gtest.h>

#include "model/odd_show.h"

namespace velgrove {
namespace {

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
  dusk->Values = {255, 1, 0, 7, 8};
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

  EXPECT_EQ(showText(project), R"(SHOW  Play
      Autumn tour

AB Cue List  (AB Fader, 2 cues)

    Cue  Up (s)  Down (s)  Delay (s)  Simultaneous Start  Description   Levels (%)
  -----  ------  --------  ---------  ------------------  ------------  ----------------------
   0.00       0         0          0                      Blackout
  10.50      12         0          0  XY 2.00             Café at dusk  1 @ FL, 2 @ 1, 4-5 @ 3

Patch  (2 fixtures)

  Channel  Name   Type     Watts  Colour  Input       X     Y
  -------  -----  -------  -----  ------  -----  ------  ----
        3  dé     leko       575  R02        44   30.00  0.00
       12  front  fresnel    575  R02            120.00  0.00

Submasters  (1 of 3 in use)

  Submaster  Name  Levels (%)
  ---------  ----  ---------------
          2  Warm  1-2 @ 78, 4 @ 4
)");
}

TEST(ShowSheet, NumbersThatAreNoneDoNotStopTheSheet) {
  const auto project = oddShow();
  project->colQueueData().item(3)->colQueueEntries().item(1)->QueueListMasterGo = "EF";
  const auto text = showText(*project);
  EXPECT_LT(text.find("1.10"), text.find("16777216.00"));
  EXPECT_LT(text.find("16777216.00"), text.find("    ?"));
  EXPECT_NE(text.find("  EF  "), std::string::npos) << "a link without a target";
}

TEST(ShowSheet, ThePatchShowsWhatHasNoChannelAndWhatSharesOne) {
  clsProject project;
  for (const char* name : {"Front", "Side"}) {
    const auto view = project.colViewsAdd(std::make_shared<clsView>());
    view->ViewName = name;
    for (const int channel : {7, 0, 7, 513, 1}) {
      const auto fixture = view->colFixturesAdd(std::make_shared<clsFixture>());
      fixture->Channel = static_cast<std::int16_t>(channel);
    }
  }
  const Sheet patch = patchSheet(project);
  EXPECT_EQ(patch.remark, "10 fixtures");
  std::vector<std::vector<std::string>> seen;
  for (const auto& row : patch.rows) seen.push_back({row[0], row[1], row.back()});
  const auto of = [](const char* view) {
    return std::vector<std::vector<std::string>>{{view, "0", "not patched"},
                                                 {view, "1", ""},
                                                 {view, "7", "shared by 2"},
                                                 {view, "7", "shared by 2"},
                                                 {view, "513", "no such channel"}};
  };
  auto expected = of("Front");
  for (const auto& row : of("Side")) expected.push_back(row);
  EXPECT_EQ(seen, expected);
}

TEST(ShowSheet, ALoopStandsAtItsFirstAndItsLastCue) {
  clsQueueData list;
  for (const float number : {1.F, 2.F, 3.5F}) {
    const auto cue = list.colQueueEntriesAdd(std::make_shared<clsQueueEntry>());
    cue->EntryNum = number;
  }
  using Texts = std::vector<std::string>;
  for (const auto& [loop, texts] : std::vector<std::pair<CueLoop, Texts>>{
           {{}, {"", "", ""}},
           {{.first = 1, .last = 3.5F, .passes = 4}, {"4 passes", "", "back to 1.00"}},
           {{.first = 2, .last = 2, .passes = 1}, {"", "1 pass, back to 2.00", ""}},
           {{.first = 1, .last = 2, .passes = 0}, {"", "", ""}}}) {
    Texts shown;
    for (const auto& row : cueSheet(list, loop).rows) shown.push_back(row[5]);
    EXPECT_EQ(shown, texts);
  }
}

TEST(ShowSheet, LevelsAreWrittenInTheTradesShortForm) {
  using Levels = std::vector<std::pair<int, int>>;
  for (const auto& [levels, text] : std::vector<std::pair<Levels, std::string>>{
           {{}, ""},
           {{{1, 255}}, "1 @ FL"},
           {{{1, 255}, {5, 128}, {6, 128}, {7, 128}, {8, 127}}, "1 @ FL, 5-8 @ 50"},
           {{{1, 246}, {2, 247}, {3, 244}}, "1 @ 96, 2 @ FL, 3 @ 96"},
           {{{1, 1}, {2, 3}, {4, 4}}, "1-2 @ 1, 4 @ 2"},
           {{{511, 51}, {512, 51}}, "511-512 @ 20"}}) {
    ChannelBytes look{};
    for (const auto& [channel, level] : levels)
      look[channelIndex(channel)] = static_cast<std::uint8_t>(level);
    EXPECT_EQ(levelsText(look), text);
  }
  ChannelBytes full;
  full.fill(255);
  EXPECT_EQ(levelsText(full), "1-512 @ FL");
}

TEST(ShowSheet, APlayersSheetIsTheListThatItPlays) {
  clsProject project;
  project.colViewsAdd(std::make_shared<clsView>());
  const auto ab = project.colQueueDataAdd(std::make_shared<clsQueueData>());
  ab->QueueListName = "AB";
  EXPECT_EQ(sheetOf(project, ShowSheet::ListAB)->title, "AB Cue List");
  EXPECT_FALSE(sheetOf(project, ShowSheet::ListXY));
  project.colQueueDataAdd(std::make_shared<clsQueueData>());
  EXPECT_EQ(sheetOf(project, ShowSheet::ListXY)->title, "Cue List");
  EXPECT_EQ(sheetOf(project, ShowSheet::Patch)->title, "Patch");
  EXPECT_EQ(sheetOf(project, ShowSheet::Submasters)->remark, "0 of 0 in use");
}

TEST(SheetCsv, EveryTextComesBackAsItWasAndNoneBecomesAFormula) {
  const std::vector<std::pair<std::string, std::string>> fields{
      {"", ""},
      {"plain", "plain"},
      {"Caf\xC3\xA9; \xE2\x80\x9Cnight\xE2\x80\x9D", "Caf\xC3\xA9; \xE2\x80\x9Cnight\xE2\x80\x9D"},
      {"one, two", "\"one, two\""},
      {"the \"letter\"", "\"the \"\"letter\"\"\""},
      {"two\nlines", "\"two\nlines\""},
      {"two\r\nlines", "\"two\r\nlines\""},
      {" kept ", " kept "},
      {"-12.50", "-12.50"},
      {"+5", "+5"},
      {"=1+1", "'=1+1"},
      {"-", "'-"},
      {"+1-800", "'+1-800"},
      {"@SUM(A1)", "'@SUM(A1)"},
      {"  =HYPERLINK(\"x\",\"y\")", "\"'  =HYPERLINK(\"\"x\"\",\"\"y\"\")\""},
      {"3 = 4", "3 = 4"}};
  for (const auto& [text, field] : fields) {
    const Sheet sheet{.title = "T", .remark = {}, .columns = {{"A"}, {"B, b"}}, .rows = {{text, "x"}}};
    EXPECT_EQ(sheetCsv(sheet), "A,\"B, b\"\r\n" + field + ",x\r\n");
  }
}

}  // namespace
}  // namespace velgrove
