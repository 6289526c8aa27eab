// The check before the performance, and that it tells what the desk would do.

#include "playback/preflight.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "controls/files.h"
#include "support/scripted_desk.h"

namespace velgrove::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> linesOf(const std::vector<Finding>& findings) {
  std::vector<std::string> lines;
  lines.reserve(findings.size());
  for (const Finding& finding : findings) lines.push_back(lineText(finding));
  return lines;
}

std::vector<std::string> check(const ShowMaker& maker) {
  const auto project = maker.project();
  return linesOf(checkShow({.project = project.get()}));
}

ShowMaker withCues(std::vector<Cue> cues) {
  ShowMaker maker;
  maker.xy = std::move(cues);
  return maker;
}

TEST(Preflight, OfTheDemoShowAndItsTwoLoopsFindsNothing) {
  const auto demo = readShow(readFile(SHOW_DATA_DIR "/demo.kel"), DMXInputRecords::Read);
  constexpr SetLoop Dance{.passes = 2, .firstRow = 10, .lastRow = 11};
  constexpr SetLoop Storm{.passes = 2, .firstRow = 13, .lastRow = 15};
  EXPECT_THAT(
      linesOf(checkShow({.project = demo.project.get(), .damage = demo.faults, .loops = {Dance, Storm}})),
      IsEmpty());
}

TEST(Preflight, NamesEachFadeThatGoesWrongWithItsInstantAndItsReason) {
  const std::pair<Cue, const char*> cases[] = {
      {{.number = 1, .up = 2, .down = 10, .look = {{1, 200}, {2, 80}}},
       "XY 1.00: the fade from 1.00 to 2.00 leaves the range after 0.03 s, first on channel 1 (up to 5161, "
       "full is "
       "255): Down 10 s is longer than Delay + Up 2 s"},
      {{.number = 1, .up = 2, .down = 10, .look = {{2, 80}}},
       "XY 1.00: the fade from 1.00 to 2.00 ends with channel 2 at 64 instead of 0: Down 10 s is longer than "
       "Delay + "
       "Up 2 s, and its rest stays"},
      {{.number = 1, .up = 0, .down = 5, .look = {{2, 80}}},
       "XY 1.00: the fade from 1.00 to 2.00 ends with channel 1 at 0 instead of 100: Up is 0 and Down isn't, "
       "so that "
       "the next look never comes"},
      {{.number = 1, .delay = 3},
       "XY 1.00: the fade from 1.00 to 2.00 ends with channel 1 at 0 instead of 100: Up and Down are 0, and "
       "the "
       "Delay darkens what came at once"},
      {{.number = 1, .up = -2, .down = 4, .look = {{1, 100}}}, "XY 1.00: Up is -2 s"}};
  for (const auto& [cue, line] : cases)
    EXPECT_THAT(check(withCues({cue, {.number = 2, .look = {{1, 100}}}})), ElementsAre(line));
  EXPECT_THAT(check(withCues({{.number = 1, .up = 32767, .down = 32767, .look = {{1, 200}}},
                              {.number = 2, .up = 1, .down = 3, .delay = 2, .look = {{1, 100}}},
                              {.number = 3, .look = {{1, 255}}}})),
              IsEmpty())
      << "the longest fade, and one whose looks end together";
}

TEST(Preflight, NamesTheCuesThatNoRowShowsOrNoPlayerFinds) {
  auto maker = withCues({{.number = 1},
                         {.number = 1.05F},
                         {.number = 1},
                         {.number = 2.125F},
                         {.number = 256.5F},
                         {.number = -3}});
  EXPECT_THAT(
      check(maker),
      ElementsAre("XY -3.00: the list doesn't show this cue: its number is below zero",
                  "XY 1.00: the list doesn't show this cue: another one has the same number",
                  "XY 1.05: the list doesn't show this cue: its number is closer than a tenth to 1.00",
                  "XY 2.13: the players can't find this cue: its number is 2.125, its row says 2.13",
                  "XY 256.50: the list doesn't show this cue: its number is above 256"));
  maker = withCues({{.number = 1}, {.number = 2}});
  const auto project = maker.project();
  project->colQueueData().item(2)->colQueueEntries().item(2)->EntryQueueList = 2;
  project->colQueueDataAdd(std::make_shared<clsQueueData>())->QueueListName = "C";
  EXPECT_THAT(linesOf(checkShow({.project = project.get()})),
              ElementsAre("Show: list 3 \"C\" belongs to no player: its 0 cues never show",
                          "XY 1.00: the list doesn't show this cue: it belongs to another list",
                          "XY 2.00: the list doesn't show this cue: the list ends in an error before it"));
}

TEST(Preflight, FollowsEachLinkToItsEnd) {
  auto maker = withCues({{.number = 1, .list = "AB", .target = "3.00"},
                         {.number = 2, .list = "AB", .target = std::nullopt},
                         {.number = 3, .list = "XY", .target = "3.00"},
                         {.number = 4, .list = "EF", .target = " 2    "},
                         {.number = 5, .list = "EF", .target = "three"},
                         {.number = 6, .list = "AB", .target = "1.00"},
                         {.number = 7, .list = "None", .target = "9.00"},
                         {.number = 8, .list = "CD", .target = "1.00"}});
  maker.ab = {{.number = 1, .list = "XY", .target = "1.00"}};
  const std::vector<std::string> lines = check(maker);
  EXPECT_THAT(
      lines,
      ElementsAre("XY 1.00: its Go starts AB \"3.00\", which isn't in that list",
                  "XY 2.00: its Go starts AB \"\", which isn't in that list",
                  "XY 3.00: its Go starts a chain of links that doesn't end within 32",
                  "XY 4.00: note: its Go starts effect 2, which must be in the window of the effects by "
                  "then: no show keeps them",
                  "XY 5.00: its Go starts effect \"three\", which isn't there",
                  "XY 8.00: its link names a list \"CD\", which isn't there"));
  const auto project = maker.project();
  const auto effectLines = [&](std::vector<ListView::Row> effects) {
    const auto findings = checkShow({.project = project.get(), .effects = std::move(effects)});
    return linesOf(findings).at(3);
  };
  const ListView::Row good{.Texts = {" 1    ", "1", "10", "100", "1"}};
  EXPECT_EQ(effectLines({good}), "XY 4.00: its Go starts effect \" 2\", which isn't there");
  EXPECT_EQ(effectLines({good, {.Texts = {" 2    ", "10", "1", "100", "1"}}}),
            "XY 4.00: its Go starts effect 2, which has no steps: it stops before it starts");
  EXPECT_EQ(effectLines({good, good}).substr(0, 8), "XY 5.00:") << "a good effect is nothing to tell";
}

TEST(Preflight, LooksThroughThePatch) {
  auto maker = withCues({{.number = 1, .look = {{1, 10}, {7, 20}, {9, 30}, {10, 40}}}});
  maker.channels = {1, 0, 600, 4, 4, 511, 30, 31, 31};
  const auto project = maker.project();
  auto& fixtures = project->colViews().item(1)->colFixtures();
  fixtures.item(4)->FixtureName = "Window";
  for (const int moving : {6, 7, 8}) fixtures.item(moving)->IconShape = MovingLight;
  fixtures.item(8)->x = OutOfSight;  // of the position of the light on 30, and needs no mention
  EXPECT_THAT(
      linesOf(checkShow({.project = project.get()})),
      ElementsAre("XY 1.00: no fixture has channels 7, 9-10, lit in this cue",
                  "Patch 0: a light without a name has no channel: each Go raises an error",
                  "Patch 4: note: 2 fixtures share this channel: \"Window\", a light without a name",
                  "Patch 31: note: 2 fixtures share this channel: a light without a name, a light without a "
                  "name",
                  "Patch 31: a light without a name is on a channel that turns the moving light a light "
                  "without a name on channel 30",
                  "Patch 511: the position of a light without a name lies beyond the last channel",
                  "Patch 600: a light without a name is on a channel that isn't there: each Go raises an "
                  "error"));
}

TEST(Preflight, KnowsTheTimesThatALoopRunsOn) {
  auto maker = withCues({{.number = 1, .look = {{1, 100}}},
                         {.number = 2, .up = 2, .down = 2, .look = {{1, 100}}},
                         {.number = 3, .up = 1, .down = 9, .look = {{1, 100}}}});
  maker.ab = maker.xy;
  const auto project = maker.project();
  const auto loopOf = [&](SetLoop loop) {
    return linesOf(checkShow({.project = project.get(), .loops = {loop, loop}}));
  };
  EXPECT_THAT(loopOf({.passes = 0, .firstRow = 9}), IsEmpty());
  EXPECT_THAT(
      loopOf({.passes = 2, .firstRow = 2, .lastRow = 4}),
      ElementsAre("XY 3.00: in the loop, the fade from 1.00 to 2.00 leaves the range after 0.06 s, first on "
                  "channel 1 (up to 2690, full is 255): Down 9 s is longer than Delay + Up 1 s"))
      << "AB's second pass begins on the times of the row before the loop";
  for (const auto& [loop, what] :
       {std::pair(SetLoop{1, 2, 5}, "leaves the list of 4 rows"), std::pair(SetLoop{1, 3, 2}, "never ends")})
    EXPECT_THAT(loopOf(loop), testing::Each(testing::EndsWith(what)));
}

// ---- The desk does what the check says

/// Goes through a list on the desk as the operator would, and notes what went wrong at each Go.
class Evening {
 public:
  explicit Evening(const ShowMaker& maker) : m_file(maker.write("evening.kel")) {
    EXPECT_TRUE(m_house.start(m_file));
    std::filesystem::remove(m_file);
    m_boxes = 0;
  }

  /// What came of the fade that leaves a row: a box, or the level of channel 1 at its end.
  struct Fade {
    bool box = false;
    int level = 0;
  };
  Fade go() {
    QueueList& player = m_house.desk.windows.xyPlayer();
    m_boxes = 0;
    player.cmdGoForward_Click();
    const auto seconds = player.State.FadeDelay + player.State.FadeUp;
    m_now += static_cast<std::int64_t>(std::max(seconds, 0.0) * 1000) + 500;
    m_house.runTo(m_now);
    return {.box = m_boxes > 0, .level = m_house.desk.show.XYLevels[0]};
  }

 private:
  int m_boxes = 0;
  HeadlessDesk m_house{[this](const Box& box) {
    ++m_boxes;
    return box.buttons == BoxButtons::AbortRetryIgnore ? BoxAnswer::Ignore : BoxAnswer::Ok;
  }};
  std::string m_file;
  std::int64_t m_now = 0;
};

/// All combinations of short times between lit and dark cues, and links that lead somewhere or not.
ShowMaker manyFades() {
  ShowMaker maker;
  maker.blackoutUp = maker.blackoutDown = 1;
  maker.ab = {{.number = 1, .look = {{2, 9}}}};
  float number = 1;
  const auto add = [&](Cue cue) {
    cue.number = number++;
    maker.xy.push_back(std::move(cue));
  };
  for (const int up : {0, 1, 3})
    for (const int down : {0, 1, 4})
      for (const int delay : {0, 2})
        for (const auto& [from, to] : {std::pair(200, 120), std::pair(1, 0), std::pair(0, 255)}) {
          add({.up = up, .down = down, .delay = delay, .look = {{1, from}}});
          add({.up = 2, .down = 2, .look = {{1, to}}});
        }
  for (const char* target : {"1.00", "7.00", "None"})
    add({.up = 1, .down = 1, .look = {{1, 50}}, .list = "AB", .target = target});
  return maker;
}

TEST(Preflight, TellsJustThoseGosAtWhichTheDeskFails) {
  const ShowMaker maker = manyFades();
  const auto project = maker.project();
  std::map<float, std::vector<Finding>> told;
  for (const Finding& finding : checkShow({.project = project.get()}))
    told[finding.number].push_back(finding);
  const auto has = [&](float number, Finding::What what) {
    return std::ranges::count(told[number], what, &Finding::what) > 0;
  };
  Evening evening(maker);
  float stage = 0;
  int boxes = 0;
  int wrong = 0;
  for (const Cue& next : maker.xy) {
    const auto fade = evening.go();
    const bool fails = has(stage, Finding::What::OutOfRange) || has(next.number, Finding::What::NoTarget);
    EXPECT_EQ(fade.box, fails) << "Go from " << stage;
    const bool reached = std::abs(fade.level - next.look[0].second) <= 16;  // a step of each ramp
    if (!fails) {
      EXPECT_EQ(!reached, has(stage, Finding::What::WrongLook)) << "Go from " << stage;
    }
    boxes += fade.box ? 1 : 0;
    wrong += reached ? 0 : 1;
    stage = next.number;
  }
  EXPECT_EQ(boxes, 4) << "three long falls and a link to nowhere";
  EXPECT_GT(wrong, 5);
}

}  // namespace
}  // namespace velgrove::test
