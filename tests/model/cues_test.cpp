#include "model/cues.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/show.h"
#include "support/fault_of.h"

namespace velgrove {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Boxes that are answered at once and remembered.
struct Boxes {
  std::vector<Box> shown;
  MessageBoxes service{.show = [this](const Box& box) { return shown.push_back(box), BoxAnswer::Ok; },
                       .post = nullptr};
  std::vector<std::string> texts() const {
    std::vector<std::string> texts;
    for (const auto& box : shown) texts.push_back(box.text);
    return texts;
  }
};

colQueueEntries listOf(std::initializer_list<std::pair<float, int>> cues) {
  colQueueEntries entries;
  for (const auto& [number, mark] : cues) {
    const auto cue = entries.add(std::make_shared<clsQueueEntry>());
    cue->EntryNum = number;
    cue->EntryQueueList = static_cast<std::int16_t>(mark);
  }
  return entries;
}

TEST(CueSearch, FindsTheFirstCueWithTheNumberAndThePlayersMark) {
  const auto entries = listOf({{1.5F, 2}, {1.5F, 1}, {1.1F, 2}, {1.1F, 2}});
  Boxes boxes;
  EXPECT_EQ(search(entries, 1.5F, 0, boxes.service), entries.item(2));
  EXPECT_EQ(search(entries, 1.5F, 1, boxes.service), entries.item(1));
  EXPECT_EQ(search(entries, 1.1F, 1, boxes.service), entries.item(3));
  EXPECT_THAT(boxes.texts(), IsEmpty());
}

TEST(CueSearch, WithoutAMatchItShowsACriticalBoxAndGivesTheLastCue) {
  const auto entries = listOf({{1, 1}, {1.5F, 2}});
  Boxes boxes;
  EXPECT_EQ(search(entries, 1.5F, 0, boxes.service), entries.item(2));
  EXPECT_EQ(search(colQueueEntries{}, 1, 0, boxes.service), nullptr);
  EXPECT_THAT(boxes.texts(), ElementsAre("cue search error", "cue search error"));
  EXPECT_EQ(boxes.shown[0].icon, BoxIcon::Critical);
  EXPECT_EQ(boxes.shown[0].buttons, BoxButtons::Ok);
}

TEST(CueSearch, RemovingTakesTheMatchOrShowsItsBoxAndThenRaisesAnError) {
  auto entries = listOf({{1, 2}, {2, 2}, {2, 1}});
  Boxes boxes;
  SearchRemove(entries, 2, 0, boxes.service);
  ASSERT_EQ(entries.count(), 2);
  EXPECT_EQ(entries.item(2)->EntryQueueList, 2);
  EXPECT_EQ(errorOf([&] { SearchRemove(entries, 9, 0, boxes.service); }).fault(), Fault::Subscript);
  EXPECT_THAT(boxes.texts(), ElementsAre("cue search Remove error"));
}

TEST(RecordedLevels, LeaveTheLastOneAsItWas) {
  ChannelBytes full;
  full.fill(255);
  clsSubMaster sub;
  sub.setDimmerLevel(full);
  EXPECT_EQ(sub.DimmerLevel()[510], 255);
  EXPECT_EQ(sub.DimmerLevel()[511], 0);
  clsDMXIn::Levels received;
  received.fill(255);
  clsDMXIn input;
  input.setValues(received);
  EXPECT_EQ(input.Values()[511], 255);
  EXPECT_EQ(input.Values()[512], 0);
}

TEST(Collection, ItemsMoveUpBehindARemovedOneAndWrongPositionsAreErrors) {
  auto entries = listOf({{1, 1}, {2, 1}});
  const auto kept = entries.item(1);
  entries.Remove(1);
  EXPECT_EQ(entries.item(1)->EntryNum, 2);
  EXPECT_EQ(kept->EntryNum, 1);
  for (const int position : {-1, 0, 2})
    EXPECT_EQ(errorOf([&] { entries.Remove(position); }).fault(), Fault::Subscript);
  EXPECT_EQ(errorOf([&] { (void)channelIndex(0); }).fault(), Fault::Subscript);
  EXPECT_EQ(errorOf([&] { (void)channelIndex(513); }).fault(), Fault::Subscript);
  EXPECT_EQ(channelIndex(512), 511U);
}

}  // namespace
}  // namespace velgrove
