#include "model/show_sheet.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "controls/numbers.h"

namespace velgrove {
namespace {

using Column = Sheet::Column;
constexpr auto Left = Sheet::Align::Left;
constexpr auto Right = Sheet::Align::Right;
constexpr auto AtCommas = Sheet::Wrap::AtCommas;

std::string plural(int count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string joined(const std::string& first, const char* between, const std::string& second) {
  return first.empty() || second.empty() ? first + second : first + between + second;
}

/// Followed inputs by number; a fixture or submaster that follows none shows nothing.
std::string inputOf(int follows, int channel) {
  return follows != 0 ? std::to_string(channel) : "";
}

/// Views are told apart only where there is more than one.
bool hasManyViews(clsProject& project) {
  return project.colViews().count() > 1;
}
std::vector<Column> withView(clsProject& project, std::vector<Column> columns) {
  if (hasManyViews(project)) columns.insert(columns.begin(), Column{"View"});
  return columns;
}
std::vector<std::string> withView(clsProject& project, const clsView& view, std::vector<std::string> row) {
  if (hasManyViews(project)) row.insert(row.begin(), oneLine(view.ViewName));
  return row;
}

// ---- Cues

std::string cueNumber(float number) {
  if (!std::isfinite(number)) return "?";
  return number == 0 ? formatFixed2(0) : formatCueNumber(number);
}

/// By number, whatever isn't one last.
bool comesBefore(float one, float other) {
  if (std::isnan(one) || std::isnan(other)) return !std::isnan(one) && std::isnan(other);
  return one < other;
}

std::string linkOf(const clsQueueEntry& cue) {
  const std::string list = oneLine(cue.QueueListMasterGo);
  if (list.empty() || list == "None") return "";
  return list + " " + oneLine(cue.QueueNumberMasterGo.value_or(""));
}

/// At the first cue of a loop how often it runs, at the last one where it goes back to.
std::string loopText(float number, const CueLoop& loop) {
  if (loop.passes <= 0) return "";
  const std::string passes = std::to_string(loop.passes) + (loop.passes == 1 ? " pass" : " passes");
  return joined(number == loop.first ? passes : "", ", ",
                number == loop.last ? "back to " + cueNumber(loop.first) : "");
}

std::string levelText(std::uint8_t level) {
  constexpr int Full = 97;  // from here on the desk takes a level for full
  const auto percent = roundTo<int>(level * 100.0 / 255);
  return percent >= Full ? "FL" : std::to_string(std::max(percent, 1));
}

// ---- Patch

std::string place(double value) {
  return std::isfinite(value) ? formatFixed2(value) : "?";
}

std::string watts(float value) {
  return std::isfinite(value) ? formatWhole(value) : "?";
}

std::string both(const std::string& number, const std::string& maker) {
  return oneLine(oneLine(number) + " " + oneLine(maker));
}

/// Two lamps on one dimmer are an everyday thing, and whoever rigs wants to see them.
std::string patchNote(int channel, int fixturesOnIt) {
  if (channel == 0) return "not patched";
  if (!isChannel(channel)) return "no such channel";
  return fixturesOnIt > 1 ? "shared by " + std::to_string(fixturesOnIt) : "";
}

std::vector<std::string> patchRow(clsFixture& fixture, int fixturesOnChannel) {
  return {std::to_string(fixture.Channel),
          oneLine(fixture.FixtureName),
          oneLine(fixture.FixtureType),
          watts(fixture.Wattage),
          both(fixture.ColorNumber, fixture.ColorMFG),
          both(fixture.PatternNumber, fixture.PatternMFG),
          oneLine(fixture.EdFocus),
          oneLine(fixture.Mood),
          oneLine(fixture.Effect),
          inputOf(fixture.DMXIn(), fixture.storedDMXInControlChannel()),
          place(fixture.x),
          place(fixture.y),
          patchNote(fixture.Channel, fixturesOnChannel)};
}

// ---- Submasters

bool inUse(const clsSubMaster& sub) {
  const auto& levels = sub.DimmerLevel();
  return !oneLine(sub.SubMasterName).empty() || sub.stored().DMXIn != 0 ||
         std::any_of(levels.begin(), levels.end(), [](auto level) { return level > 0; });
}

}  // namespace

std::string levelsText(const ChannelBytes& levels) {
  std::string text;
  for (std::size_t first = 0; first < levels.size();) {
    const std::uint8_t level = levels[first];
    const std::string shown = levelText(level);
    std::size_t end = first + 1;
    while (end < levels.size() && (levels[end] > 0) == (level > 0) && levelText(levels[end]) == shown) ++end;
    if (level > 0) {
      if (!text.empty()) text += ", ";
      text += std::to_string(first + 1);
      if (end > first + 1) text += "-" + std::to_string(end);
      text += " @ " + shown;
    }
    first = end;
  }
  return text;
}

Sheet cueSheet(const clsQueueData& list, const CueLoop& loop) {
  const auto& cues = list.colQueueEntries();
  Sheet sheet{.title = joined(oneLine(list.QueueListName), " ", "Cue List"),
              .remark = joined(oneLine(list.QueueListDesc), ", ", plural(cues.count(), "cue")),
              .columns = {Column{"Cue", Right}, Column{"Up (s)", Right}, Column{"Down (s)", Right},
                          Column{"Delay (s)", Right}, Column{"Simultaneous Start"}, Column{"Loop"},
                          Column{"Description"}, Column{"Levels (%)", Left, AtCommas}},
              .rows = {}};
  std::vector<std::shared_ptr<clsQueueEntry>> sorted(cues.begin(), cues.end());
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const auto& a, const auto& b) { return comesBefore(a->EntryNum, b->EntryNum); });
  for (const auto& cue : sorted)
    sheet.rows.push_back({cueNumber(cue->EntryNum), std::to_string(cue->Up), std::to_string(cue->Down),
                          std::to_string(cue->Delay), linkOf(*cue), loopText(cue->EntryNum, loop),
                          oneLine(cue->EntryDesc), levelsText(cue->Values)});
  return sheet;
}

Sheet patchSheet(clsProject& project) {
  Sheet sheet{
      .title = "Patch",
      .remark = {},
      .columns = withView(
          project, {Column{"Channel", Right}, Column{"Name"}, Column{"Type"}, Column{"Watts", Right},
                    Column{"Colour"}, Column{"Pattern"}, Column{"Focus"}, Column{"Mood"}, Column{"Effect"},
                    Column{"Input", Right}, Column{"X", Right}, Column{"Y", Right}, Column{"Note"}}),
      .rows = {}};
  for (const auto& view : project.colViews()) {
    const auto& fixtures = view->colFixtures();
    std::map<int, int> onChannel;
    for (const auto& fixture : fixtures) ++onChannel[fixture->Channel];
    std::vector<std::shared_ptr<clsFixture>> sorted(fixtures.begin(), fixtures.end());
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto& a, const auto& b) { return a->Channel < b->Channel; });
    for (const auto& fixture : sorted)
      sheet.rows.push_back(withView(project, *view, patchRow(*fixture, onChannel[fixture->Channel])));
  }
  sheet.remark = plural(static_cast<int>(sheet.rows.size()), "fixture");
  return sheet;
}

Sheet submasterSheet(clsProject& project) {
  Sheet sheet{.title = "Submasters",
              .remark = {},
              .columns = withView(project, {Column{"Submaster", Right}, Column{"Name"},
                                            Column{"Input", Right}, Column{"Levels (%)", Left, AtCommas}}),
              .rows = {}};
  int all = 0;
  for (const auto& view : project.colViews()) {
    all += view->colSubMasters().count();
    for (const auto& sub : view->colSubMasters()) {
      if (!inUse(*sub)) continue;
      const auto stored = sub->stored();
      sheet.rows.push_back(
          withView(project, *view,
                   {std::to_string(std::int64_t{sub->Identifier} + 1), oneLine(sub->SubMasterName),
                    inputOf(stored.DMXIn, stored.DMXInControlChannel), levelsText(stored.DimmerLevel)}));
    }
  }
  sheet.remark = std::to_string(sheet.rows.size()) + " of " + std::to_string(all) + " in use";
  return sheet;
}

std::optional<Sheet> sheetOf(clsProject& project, ShowSheet which, const CueLoops& loops) {
  constexpr int PlaceOfAB = 1;
  constexpr int PlaceOfXY = 2;
  const auto list = [&](int place, const CueLoop& loop) -> std::optional<Sheet> {
    if (project.colQueueData().count() < place) return std::nullopt;
    return cueSheet(*project.colQueueData().item(place), loop);
  };
  switch (which) {
    case ShowSheet::ListXY:
      return list(PlaceOfXY, loops.xy);
    case ShowSheet::ListAB:
      return list(PlaceOfAB, loops.ab);
    case ShowSheet::Patch:
      return patchSheet(project);
    case ShowSheet::Submasters:
      return submasterSheet(project);
  }
  return std::nullopt;
}

std::string showText(clsProject& project) {
  std::string text = "SHOW  " + oneLine(project.ProjectName.str()) + "\n";
  const std::string description = oneLine(project.ProjectDesc.str());
  if (!description.empty()) text += "      " + description + "\n";
  for (const auto& list : project.colQueueData()) text += "\n" + sheetText(cueSheet(*list));
  return text + "\n" + sheetText(patchSheet(project)) + "\n" + sheetText(submasterSheet(project));
}

}  // namespace velgrove
