#include "model/show_json.h"

#include <bit>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "model/example_show.h"
#include "model/odd_show.h"
#include "model/show_file.h"
#include "support/fault_of.h"

namespace velgrove {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

std::string throughJson(const std::string& bytes) {
  const auto read = readShow(bytes, DMXInputRecords::Read);
  return writeShow(*showFromJson(showToJson(*read.project)));
}

/// The example with one place changed, back as a show.
std::shared_ptr<clsProject> changed(const std::string& pointer, const json& value) {
  auto object = json::parse(showToJson(*exampleShow()));
  object[json::json_pointer(pointer)] = value;
  return showFromJson(object.dump());
}

TEST(ShowJson, EveryShowComesBackByteForByte) {
  EXPECT_EQ(throughJson(exampleBytes()), exampleBytes());
  const auto odd = writeShow(*oddShow());
  EXPECT_EQ(throughJson(odd), odd);
}

TEST(ShowJson, FloatsOfAnyBitsComeBackTheSame) {
  clsProject project;
  auto& cues = project.colQueueDataAdd(std::make_shared<clsQueueData>())->colQueueEntries();
  auto& zooms = project.colViewsAdd(std::make_shared<clsView>())->colZooms();
  std::mt19937_64 random(7);
  for (int count = 0; count < 1000; ++count) {
    cues.add(std::make_shared<clsQueueEntry>())->EntryNum =
        std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    zooms.add(std::make_shared<clsZooms>())->tp = std::bit_cast<double>(random());
  }
  const auto bytes = writeShow(project);
  EXPECT_EQ(throughJson(bytes), bytes);
}

TEST(ShowJson, TheTextNamesTheFieldsInTheOrderOfTheRecords) {
  const auto text = showToJson(*oddShow());
  EXPECT_THAT(text, StartsWith("{\n  \"ProjectName\": \""));
  std::size_t at = 0;
  for (const char* part :
       {"\"NumberOfViews\": 2,\n", "\"colFixtures\": []", "\"Angle\": \"NaN(0x7ff0000000000001)\"",
        "\"x\": \"-Infinity\"", "\"Wattage\": \"NaN(0xffc00001)\"", "\"DMXInControlChannel\": 7",
        "\"Reserved\": 258", "\"EntryNum\": 1.1,", "\"QueueNumberMasterGo\": \"\"",
        "\"EntryNum\": \"NaN(0x7fa00000)\"", "\"QueueNumberMasterGo\": \"2.5\"",
        "\"QueueNumberMasterGo\": null", "\"colDMXIn\": ["}) {
    const auto found = text.find(part, at);
    ASSERT_NE(found, std::string::npos) << part;
    at = found;
  }
  EXPECT_EQ(text, showToJson(*oddShow()));
}

TEST(ShowJson, CountsAreMadeAnewFromTheArraysWhetherThereOrNot) {
  auto object = json::parse(showToJson(*exampleShow()));
  object["NumberOfViews"] = 9;
  object["colViews"][0].erase("NumberOfSubMasters");
  const auto show = showFromJson(object.dump());
  EXPECT_EQ(show->NumberOfViews, 1);
  EXPECT_EQ(show->colViews().item(1)->NumberOfSubMasters, 24);
  EXPECT_EQ(writeShow(*show), exampleBytes());
}

TEST(ShowJson, WhatIsWrongIsNamedByItsPath) {
  auto bare = json::parse(showToJson(*exampleShow()));
  auto missing = bare, unknown = bare;
  missing["colQueueData"][1]["colQueueEntries"][0].erase("Up");
  unknown["colViews"][0]["Colour"] = 1;
  EXPECT_STREQ(errorOf([&] { (void)showFromJson(missing.dump()); }).what(),
               "colQueueData[1].colQueueEntries[0].Up: is missing");
  EXPECT_STREQ(errorOf([&] { (void)showFromJson(unknown.dump()); }).what(),
               "colViews[0].Colour: no such field");

  const std::string cue = "/colQueueData/0/colQueueEntries/0/";
  const std::string inCue = "colQueueData[0].colQueueEntries[0].";
  const struct {
    std::string pointer;
    json value;
    std::string text;
  } cases[] = {
      {cue + "Up", 70000, inCue + "Up: 70000 is outside -32768 to 32767"},
      {cue + "Up", 18446744073709551615U, inCue + "Up: 18446744073709551615 is outside -32768 to 32767"},
      {cue + "Up", 1.5, inCue + "Up: 1.5 is no whole number"},
      {cue + "Up", "1", inCue + "Up: a whole number is wanted, here is a string"},
      {cue + "Up", nullptr, inCue + "Up: a whole number is wanted, here is null"},
      {cue + "EntryNum", 1e39, inCue + "EntryNum: 1e+39 doesn't fit 32 bits"},
      {cue + "EntryNum", "nan", inCue + "EntryNum: \"nan\" is no number"},
      {cue + "EntryNum", "NaN(0x3f800000)", inCue + "EntryNum: \"NaN(0x3f800000)\" is no number"},
      {cue + "EntryDesc", "\xD0\xAF", inCue + "EntryDesc: a show file has no character \"\xD0\xAF\""},
      {cue + "EntryDesc", std::string(65536, 'x'),
       inCue + "EntryDesc: 65536 characters; a show file holds 65535"},
      {cue + "Values", json::array({1, 2}), inCue + "Values: 2 numbers; it has 512"},
      {cue + "Values/511", 256, inCue + "Values[511]: 256 is outside 0 to 255"},
      {"/ProjectName", std::string(51, 'x'), "ProjectName: 51 characters; a show file holds 50"},
      {"/colViews", json::object(), "colViews: an array is wanted, here is an object"},
      {"/colViews/0", 1, "colViews[0]: an object is wanted, here is a number"},
      {"/colDMXIn/0/Values", json::array(), "colDMXIn[0].Values: 0 numbers; it has 513"},
      {"/colViews/0/colZooms", json(32768, 1), "colViews[0].colZooms: 32768 items; a show file holds 32767"},
  };
  for (const auto& [pointer, value, text] : cases) {
    const auto error = errorOf([&] { (void)changed(pointer, value); });
    EXPECT_EQ(error.what(), text);
    EXPECT_EQ(error.fault(), Fault::File);
  }
}

TEST(ShowJson, WhatIsNoJsonIsNamedByLineAndColumn) {
  EXPECT_THAT(errorOf([] { (void)showFromJson("{\n  \"ProjectName\": oops\n}"); }).what(),
              StartsWith("line 2, column 18: "));
  EXPECT_THAT(errorOf([] { (void)showFromJson(""); }).what(), StartsWith("line 1, column 1: "));
  EXPECT_THAT(errorOf([] { (void)showFromJson("{\"a\": 1e999}"); }).what(), HasSubstr("1e999"));
  EXPECT_STREQ(errorOf([] { (void)showFromJson("[]"); }).what(),
               "the show: an object is wanted, here is an array");
}

}  // namespace
}  // namespace velgrove
