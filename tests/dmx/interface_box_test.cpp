#include "dmx/interface_box.h"

#include <algorithm>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "controls/faults.h"

namespace velgrove {
namespace {

using Bytes = std::vector<std::uint8_t>;
using testing::ElementsAre;
using testing::IsEmpty;

const Bytes ReadLevels{0x01, 0x02, 0x03, 0x01, 0x04, 0x02, 0x01};
const Bytes ReadVersion{0x01, 0xFF, 0x01, 0xFF};
const Bytes Poll{0x01, 0x0A};

Bytes join(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

Bytes frameOf(const Bytes& levels) {
  return join({{0x01, 0x02, 0x00, 0x00}, levels});
}

Bytes ramp(std::uint8_t first) {
  Bytes levels(512);
  std::generate(levels.begin(), levels.end(), [&] { return first++; });
  return levels;
}

struct Bench {
  Bench() {
    box.onFrame = [this](InterfaceBox::Frame levels) { frames.emplace_back(levels.begin(), levels.end()); };
  }
  Bytes take() {
    Bytes bytes(InterfaceBox::ReplyRoom);
    bytes.resize(box.takeReplies(bytes));
    return bytes;
  }
  Bytes ask(const Bytes& command) {
    box.receive(command);
    return take();
  }
  InterfaceBox box;
  std::vector<Bytes> frames;
};

TEST(InterfaceBox, ExchangesAreUnderstoodHoweverTheLineCutsThem) {
  // The levels hold every byte value, 01 and whole commands among them.
  const Bytes stream = join({ReadVersion, frameOf(ramp(0)), ReadLevels, Poll, frameOf(ramp(7)), Poll});
  for (std::size_t piece = 1; piece <= stream.size(); piece = piece < 9 ? piece + 1 : piece * 2 + 1) {
    Bench bench;
    bench.box.addTriggers(1);
    std::string replies;
    for (std::size_t at = 0; at < stream.size(); at += piece) {
      bench.box.receive(std::span(stream).subspan(at, std::min(piece, stream.size() - at)));
      const Bytes reply = bench.take();
      replies.append(reply.begin(), reply.end());
    }
    EXPECT_THAT(bench.frames, ElementsAre(ramp(0), ramp(7))) << "in pieces of " << piece;
    EXPECT_EQ(replies.size(), 36U + 512U + 1U) << "in pieces of " << piece;
    EXPECT_EQ(replies.back(), 0x7F);
    EXPECT_EQ(bench.box.counters().garbageBytes, 0U);
  }
}

TEST(InterfaceBox, TheInputAnswersWithTheLevelsThatWereSet) {
  Bench bench;
  bench.box.setInput(1, 255);
  bench.box.setInput(512, 7);
  Bytes expected(512);
  expected.front() = 255;
  expected.back() = 7;
  EXPECT_EQ(bench.ask(ReadLevels), expected);
  for (const auto& [channel, level] : {std::pair(0, 1), {513, 1}, {1, 256}, {1, -1}})
    EXPECT_THROW(bench.box.setInput(channel, level), RunTimeError) << channel << ' ' << level;
}

TEST(InterfaceBox, EachTriggerIsToldOnce) {
  Bench bench;
  bench.box.addTriggers(2);
  EXPECT_THAT(bench.ask(Poll), ElementsAre(0x7F, 0x7F));
  EXPECT_THAT(bench.ask(Poll), IsEmpty());
}

TEST(InterfaceBox, AStrayByteIsCountedAndCostsNoCommandBehindIt) {
  const struct {
    Bytes stray;
    std::uint64_t garbage;
  } cases[] = {
      {{0x00}, 1},
      {{0x7F, 0x02, 0xFF}, 3},
      {{0x01}, 1},              // 01 01 0A: the second one begins the command
      {{0x01, 0x02}, 2},        // a frame's head that goes no further
      {{0x01, 0xFF, 0x01}, 3},  // what looks like a version ends in a poll
      {{0x01, 0x02, 0x03, 0x01, 0x04, 0x02, 0x02}, 7},
  };
  for (const auto& [stray, garbage] : cases) {
    Bench bench;
    bench.box.addTriggers(1);
    EXPECT_THAT(bench.ask(join({stray, Poll})), ElementsAre(0x7F)) << testing::PrintToString(stray);
    EXPECT_EQ(bench.box.counters().garbageBytes, garbage) << testing::PrintToString(stray);
    bench.box.receive(frameOf(ramp(1)));
    EXPECT_THAT(bench.frames, ElementsAre(ramp(1)));
  }
}

TEST(InterfaceBox, ASplitVersionComesInTwoPiecesAndWhatFollowsKeepsItsPlace) {
  Bench bench;
  const Bytes version = bench.ask(ReadVersion);
  bench.box.setSplit(true);
  bench.box.addTriggers(1);
  const Bytes first = bench.ask(join({ReadVersion, Poll}));
  EXPECT_EQ(first, Bytes(version.begin(), version.begin() + 18));
  EXPECT_TRUE(bench.box.holdsBack());
  EXPECT_EQ(bench.box.waiting(), 19U);
  EXPECT_EQ(join({first, bench.take()}), join({version, {0x7F}}));
  EXPECT_FALSE(bench.box.holdsBack());
  EXPECT_EQ(bench.box.waiting(), 0U);
}

TEST(InterfaceBox, ShortRepliesAreCutAndTriggersAreNot) {
  Bench bench;
  const Bytes version = bench.ask(ReadVersion);
  bench.box.setShort(20);
  bench.box.addTriggers(30);
  EXPECT_EQ(bench.ask(ReadLevels), Bytes(20));
  EXPECT_EQ(bench.ask(ReadVersion), Bytes(version.begin(), version.begin() + 20));
  EXPECT_EQ(bench.ask(Poll), Bytes(30, 0x7F));
  bench.box.setShort(std::nullopt);
  EXPECT_EQ(bench.ask(ReadLevels).size(), 512U);
}

TEST(InterfaceBox, ASilentBoxTakesFramesAnswersNothingAndKeepsItsTriggers) {
  Bench bench;
  bench.box.setSilent(true);
  bench.box.addTriggers(1);
  EXPECT_THAT(bench.ask(join({ReadVersion, ReadLevels, Poll, frameOf(ramp(3))})), IsEmpty());
  EXPECT_EQ(bench.box.counters().frames, 1U);
  bench.box.setSilent(false);
  EXPECT_THAT(bench.ask(Poll), ElementsAre(0x7F));
}

TEST(InterfaceBox, ACutLineTellsWhetherAFrameWasInTheMiddle) {
  const Bytes frame = frameOf(ramp(0));
  const struct {
    Bytes before;
    bool half;
  } cases[] = {{{}, false},
               {{0x01, 0x02}, false},  // could be any of two commands
               {{0x01, 0x02, 0x00}, true},
               {Bytes(frame.begin(), frame.begin() + 4), true},
               {Bytes(frame.begin(), frame.end() - 1), true},
               {frame, false}};
  for (const auto& [before, half] : cases) {
    Bench bench;
    bench.box.receive(join({ReadLevels, before}));
    EXPECT_EQ(bench.box.reset(), half) << before.size();
    EXPECT_EQ(bench.box.counters().halfFrames, half ? 1U : 0U);
    EXPECT_EQ(bench.box.waiting(), 0U) << "replies are lost with the line";
    EXPECT_EQ(bench.ask(ReadVersion).size(), 36U) << "the next bytes begin anew";
    EXPECT_EQ(bench.box.counters().garbageBytes, 0U);
  }
}

TEST(InterfaceBox, RepliesThatNobodyTakesDoNotPileUpWithoutEnd) {
  Bench bench;
  bench.box.addTriggers(10);
  for (int n = 0; n < 100; ++n) bench.box.receive(ReadLevels);
  EXPECT_EQ(bench.box.waiting(), InterfaceBox::ReplyRoom);
  bench.box.receive(Poll);
  EXPECT_EQ(bench.take().size(), InterfaceBox::ReplyRoom);
  EXPECT_EQ(bench.ask(Poll), Bytes(10, 0x7F)) << "triggers without room are told later";
}

}  // namespace
}  // namespace velgrove
