#include <algorithm>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "controls/faults.h"
#include "velgrove-box/console.h"
#include "velgrove-box/recording.h"
#include "velgrove-box/report.h"

namespace velgrove {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Levels = std::array<std::uint8_t, 512>;

const Report::Time Start{std::chrono::hours(1)};

TEST(GapStatistics, PercentilesAreDistancesFromThirtyMillisecondsOnEitherSide) {
  GapStatistics gaps;
  EXPECT_EQ(gaps.percentile(99), 0);
  for (int n = 0; n < 98; ++n) gaps.add(microseconds(n % 2 == 0 ? 30100 : 29900));
  gaps.add(milliseconds(35));
  gaps.add(milliseconds(10));
  EXPECT_DOUBLE_EQ(gaps.percentile(50), 0.1);
  EXPECT_DOUBLE_EQ(gaps.percentile(98), 0.1);
  EXPECT_DOUBLE_EQ(gaps.percentile(99), 5);
  EXPECT_DOUBLE_EQ(gaps.largest(), 20);
  gaps.add(milliseconds(5000));
  EXPECT_DOUBLE_EQ(gaps.largest(), 4970);
  EXPECT_DOUBLE_EQ(gaps.percentile(100), 4970);
}

TEST(Report, ALineTellsRateLongestGapAndWhatChangedSinceTheLineBefore) {
  Report report(Start);
  Levels levels{};
  report.addFrame(Start + milliseconds(100), levels);
  levels[4] = 128;
  report.addFrame(Start + milliseconds(130), levels);
  report.addFrame(Start + milliseconds(165), levels);
  EXPECT_EQ(report.line(Start + milliseconds(200)), "15.0 frames/s, longest gap 35.00 ms, 5=128\n");
  levels[4] = 0;
  levels[511] = 7;
  report.addFrame(Start + milliseconds(205), levels);
  EXPECT_EQ(report.line(Start + milliseconds(700)), "2.0 frames/s, longest gap 495.00 ms, 5=0 512=7\n")
      << "a gap that still lasts counts";
}

TEST(Report, AnInterruptionIsNoGap) {
  Report report(Start);
  const Levels levels{};
  report.addFrame(Start, levels);
  report.interrupt();
  report.addFrame(Start + milliseconds(5000), levels);
  report.addFrame(Start + milliseconds(5030), levels);
  EXPECT_THAT(report.line(Start + milliseconds(5030)), HasSubstr("longest gap 30.00 ms\n"));
  EXPECT_EQ(report.summary(Start + milliseconds(6000), {.frames = 3, .garbageBytes = 4, .halfFrames = 1}),
            "frames 3\nseconds 6.000\ndistance from 30 ms: p50 0.00 p95 0.00 p99 0.00 max 0.00 ms\n"
            "garbage bytes 4\nhalf frames 1\n");
}

template <class Wanted>
Wanted parsed(const char* line) {
  const Command command = parseCommand(line);
  const auto* const wanted = std::get_if<Wanted>(&command);
  if (wanted == nullptr) throw std::logic_error(std::string("understood as something else: ") + line);
  return *wanted;
}

TEST(Console, CommandsAreUnderstoodWithAnyBlanks) {
  EXPECT_EQ(parsed<command::Input>(" input  512\t255 \r").channel, 512);
  EXPECT_EQ(parsed<command::Input>("input 1 0").level, 0);
  EXPECT_EQ(parsed<command::Trigger>("trigger").count, 1);
  EXPECT_EQ(parsed<command::Trigger>("trigger 3").count, 3);
  EXPECT_TRUE(parsed<command::Silent>("silent on").on);
  EXPECT_FALSE(parsed<command::Split>("split off").on);
  EXPECT_TRUE(parsed<command::Stall>("stall on").on);
  EXPECT_EQ(parsed<command::Short>("short 511").bytes, 511);
  EXPECT_EQ(parsed<command::Short>("short 0").bytes, std::nullopt);
  EXPECT_EQ(parsed<command::Short>("short 512").bytes, std::nullopt);
  for (const char* blank : {"", "  ", "\r"}) EXPECT_NO_THROW(parsed<command::Nothing>(blank));
}

TEST(Console, WhatCannotBeFollowedIsRefusedWithWords) {
  for (const char* line :
       {"inputs 1 1", "input 1", "input 0 1", "input 513 1", "input 1 256", "input 1 -1", "input 1 2 3",
        "input 1 0x10", "input 1.5 1", "trigger 0", "trigger x", "trigger 1 2", "silent", "silent maybe",
        "short", "short -1", "short 99999999999", "unplug now", "QUIT"})
    EXPECT_THAT(parsed<command::Bad>(line).why, testing::Not(IsEmpty())) << line;
}

TEST(Console, LinesAreJoinedFromPiecesAndAFloodIsCut) {
  LineReader lines;
  EXPECT_THAT(lines.feed("trig"), IsEmpty());
  EXPECT_THAT(lines.feed("ger\n\nsplit on\nqu"), ElementsAre("trigger", "", "split on"));
  EXPECT_EQ(lines.rest(), "qu");
  EXPECT_EQ(lines.rest(), "");
  (void)lines.feed(std::string(1'000'000, 'x'));
  EXPECT_EQ(lines.rest().size(), LineReader::LongestLine);
}

TEST(Recording, AFullDiskIsReported) {
  Recording recording("/dev/full");
  recording.add(microseconds(1500), Levels{});
  EXPECT_THROW(recording.flush(), RunTimeError);
}

}  // namespace
}  // namespace velgrove
