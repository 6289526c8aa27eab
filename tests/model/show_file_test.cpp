#include "model/show_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/example_show.h"
#include "model/odd_show.h"
#include "support/fault_of.h"

namespace velgrove {
namespace {

using namespace std::string_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto Read = DMXInputRecords::Read;
constexpr auto Leave = DMXInputRecords::Leave;

constexpr std::size_t FirstViewEnd = 323;
constexpr std::size_t InputsBegin = 14091;

std::vector<std::string> described(const ShowRead& read) {
  std::vector<std::string> lines;
  for (const auto& fault : read.faults) lines.push_back(describe(fault));
  return lines;
}

/// A show with one view and one list, and what a test puts into them.
struct SmallShow {
  std::shared_ptr<clsProject> project = std::make_shared<clsProject>();
  std::shared_ptr<clsView> view = project->colViewsAdd(std::make_shared<clsView>());
  std::shared_ptr<clsQueueData> list = project->colQueueDataAdd(std::make_shared<clsQueueData>());
};

TEST(ShowFile, ANewShowIsWrittenByteForByteAsTheFormatLaysItOut) {
  ASSERT_EQ(exampleBytes().size(), 14612U);
  EXPECT_EQ(writeShow(*exampleShow()), exampleBytes());
}

TEST(ShowFile, TheDeskLeavesTheInputRecordsAndItsNextSaveDropsThem) {
  const auto read = readShow(exampleBytes(), Leave);
  EXPECT_EQ(read.project->NumberOfDMXEntries, 1);
  EXPECT_EQ(read.project->colDMXIn().count(), 0);
  auto expected = exampleBytes().substr(0, InputsBegin);
  expected[309] = 0;
  EXPECT_EQ(writeShow(*read.project), expected);
  EXPECT_EQ(writeShow(*readShow(exampleBytes(), Read).project), exampleBytes());
}

TEST(ShowFile, EveryCutOpensFromTheFirstWholeViewOnAndReportsWhatIsMissing) {
  const auto bytes = exampleBytes();
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const auto read = readShow(std::string_view(bytes).substr(0, length), Read);
    ASSERT_EQ(read.project != nullptr, length >= FirstViewEnd) << length;
    ASSERT_FALSE(read.faults.empty()) << length;
    for (const auto& fault : read.faults) ASSERT_LE(fault.offset, length);
    const auto left = readShow(std::string_view(bytes).substr(0, length), Leave);
    ASSERT_EQ(left.faults.empty(), length >= InputsBegin) << length;
    if (!read.project) continue;
    // What a damaged file left is a sound show again.
    const auto saved = writeShow(*read.project);
    ASSERT_THAT(readShow(saved, Read).faults, IsEmpty()) << length;
  }
}

TEST(ShowFile, ACutIsToldOnceWithItsFieldAndEveryCountThatFellShort) {
  const auto bytes = exampleBytes();
  EXPECT_THAT(described(readShow(std::string_view(bytes).substr(0, 13000), Leave)),
              ElementsAre("offset 12995, cue list 1, cue 1, Values: the file ends inside this field",
                          "offset 13000, NumberOfQueues: counts 2 cue lists, 1 is there"));
  EXPECT_THAT(described(readShow(std::string_view(bytes).substr(0, 355 + 525 + 3), Leave)),
              ElementsAre("offset 883, view 1, submaster 2, Level: the file ends before this field",
                          "offset 883, view 1, NumberOfSubMasters: counts 24 submasters, 2 are there",
                          "offset 883, NumberOfQueues: counts 2 cue lists, none is there"));
  EXPECT_THAT(described(readShow(std::string_view(bytes).substr(0, 315), Leave)),
              ElementsAre("offset 311, view 1, ViewName: the file ends inside this field: this is no show"));
}

TEST(ShowFile, ByteArraysKeepWhatTheCutLeftAndOtherFieldsStayEmpty) {
  SmallShow show;
  const auto cue = show.list->colQueueEntriesAdd(std::make_shared<clsQueueEntry>());
  cue->EntryDesc = "dusk";
  cue->EntryNum = 2;
  cue->Values.fill(9);
  cue->QueueNumberMasterGo = "3";
  const auto bytes = writeShow(*show.project);
  const auto cueCut = [&](std::size_t fromEnd) {
    const auto read = readShow(std::string_view(bytes).substr(0, bytes.size() - fromEnd), Leave);
    return *read.project->colQueueData().item(1)->colQueueEntries().item(1);
  };
  EXPECT_EQ(cueCut(1).QueueNumberMasterGo, std::nullopt);
  const auto half = cueCut(5 + 2 + 2 + 500);
  EXPECT_EQ(half.EntryDesc, "dusk");
  EXPECT_EQ(half.EntryNum, 2);
  EXPECT_EQ(half.Values[11], 9);
  EXPECT_EQ(half.Values[12], 0);
  EXPECT_EQ(cueCut(bytes.size() - 311 - 8 - 6 - 4).EntryDesc, "");
}

TEST(ShowFile, WhateverTheFormatAllowsComesBackTheSame) {
  const auto bytes = writeShow(*oddShow());
  const auto read = readShow(bytes, Read);
  EXPECT_THAT(described(read), IsEmpty());
  ASSERT_NE(read.project, nullptr);
  EXPECT_EQ(writeShow(*read.project), bytes);
  EXPECT_EQ(read.project->colQueueData().item(3)->colQueueEntries().item(1)->QueueNumberMasterGo, "");
  EXPECT_EQ(read.project->colQueueData().item(3)->colQueueEntries().item(3)->QueueNumberMasterGo,
            std::nullopt);

  SmallShow bare;
  bare.project->colQueueData().Remove(1);
  EXPECT_EQ(writeShow(*bare.project).size(), 311U + 8U);
  EXPECT_THAT(readShow(writeShow(*bare.project), Read).faults, IsEmpty());
}

TEST(ShowFile, EveryCutOfAnOddShowIsReadWithoutHarm) {
  auto project = oddShow();
  project->colViews().item(2)->colFixtures().item(1)->Effect = "short";
  const auto bytes = writeShow(*project);
  for (std::size_t length = 0; length < bytes.size(); ++length)
    ASSERT_FALSE(readShow(std::string_view(bytes).substr(0, length), Read).faults.empty()) << length;
}

TEST(ShowFile, WhatIsNoShowIsRefusedWithTheReason) {
  const auto blank = std::string(305, ' ');
  const struct {
    std::string bytes;
    const char* reason;
  } cases[] = {
      {"", "ProjectName"},
      {"\x89PNG\r\n\x1A\n\0\0\0\rIHDR"s, "ProjectName"},
      {"Dear reader,\nthis is a letter and no show.\n", "ProjectName"},
      {std::string(2000, 'a'), "view 1, ViewName"},
      {blank + std::string(6, '\0'), "no view"},
      {blank + "\xFF\xFF\0\0\0\0"s, "NumberOfViews: a count of -1"},
      {blank + "\1\0\0\0\0\x80"s + std::string(8, '\0'), "NumberOfDMXEntries: a count of -32768"},
      {blank + "\1\0\0\0\0\0"s + "\0\0"s + "\0\0\xFF\xFF\0\0"s, "view 1, NumberOfFixtures: a count of -1"},
      {blank + "\1\0\1\0\0\0"s + std::string(8, '\0') + "\0\0\0\0\xFE\xFF"s,
       "cue list 1, NumberOfQueueEntries: a count of -2"},
  };
  for (const auto& [bytes, reason] : cases) {
    const auto read = readShow(bytes, Leave);
    EXPECT_EQ(read.project, nullptr) << reason;
    EXPECT_THAT(described(read), ElementsAre(HasSubstr(reason)));
  }
}

TEST(ShowFile, HugeCountsInAShortFileMakeNoRecordThatIsNotThere) {
  const auto bytes =
      std::string(305, ' ') + "\xFF\x7F\xFF\x7F\xFF\x7F"s + "\0\0"s + "\xFF\x7F\xFF\x7F\xFF\x7F"s;
  const auto read = readShow(bytes, Read);
  ASSERT_NE(read.project, nullptr);
  EXPECT_EQ(read.project->colViews().count(), 1);
  EXPECT_EQ(read.project->colViews().item(1)->colFixtures().count(), 0);
  EXPECT_EQ(read.faults.size(), 6U);
  EXPECT_THAT(describe(read.faults[3]), HasSubstr("NumberOfViews: counts 32767 views, 1 is there"));
}

TEST(ShowFile, AnUnknownTagEndsTheReadingWhereItStands) {
  SmallShow show;
  for (int cue = 0; cue < 2; ++cue) show.list->colQueueEntriesAdd(std::make_shared<clsQueueEntry>());
  auto bytes = writeShow(*show.project);
  const auto cueSize = (bytes.size() - 311 - 8 - 6) / 2;
  bytes[bytes.size() - cueSize - 2] = 3;
  const auto read = readShow(bytes, Read);
  EXPECT_EQ(read.project->colQueueData().item(1)->colQueueEntries().count(), 1);
  EXPECT_THAT(described(read), ElementsAre(AllOf(HasSubstr("QueueNumberMasterGo"), HasSubstr("tag 3")),
                                           HasSubstr("counts 2 cues, 1 is there")));
}

TEST(ShowFile, BytesBehindTheLastRecordAreAFaultOnlyForThoseWhoMustGiveThemBack) {
  const auto bytes = exampleBytes() + "tail";
  EXPECT_THAT(described(readShow(bytes, Read)),
              ElementsAre("offset 14612, end of the show: 4 bytes that belong to no record"));
  EXPECT_THAT(readShow(bytes, Leave).faults, IsEmpty());
}

TEST(ShowFile, WhatTheFormatCannotHoldIsAFaultThatNamesTheField) {
  SmallShow show;
  show.view->colFixturesAdd(std::make_shared<clsFixture>())->Mood = std::string(65536, 'm');
  const auto tooLong = errorOf([&] { (void)writeShow(*show.project); });
  EXPECT_EQ(tooLong.fault(), Fault::Overflow);
  EXPECT_THAT(tooLong.what(), HasSubstr("view 1, fixture 1, Mood"));

  show.view->colFixtures().item(1)->Mood.clear();
  const auto cue = std::make_shared<clsQueueEntry>();
  for (int count = 0; count < 32768; ++count) show.list->colQueueEntriesAdd(cue);
  EXPECT_EQ(errorOf([&] { (void)writeShow(*show.project); }).fault(), Fault::Overflow);
}

TEST(ShowFile, AShapeOfTheTableIsWrittenLikeTheOtherRecords) {
  clsFixtureType shape;
  shape.id = 3;
  shape.ScaleFactor = 0.5;
  shape.ShapeNumber = -7;
  shape.fname = "leko.cad";
  RecordWriter file;
  shape.Save(file);
  EXPECT_EQ(file.take(),
            "\3\0"s + "\0\0\0\0\0\0\xE0\x3F"s + "\xF9\xFF\xFF\xFF"s + "leko.cad" + std::string(247, ' '));
}

}  // namespace
}  // namespace velgrove
