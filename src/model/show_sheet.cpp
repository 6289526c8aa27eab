#include "model/show_sheet.h"

#include <algorithm>
#include <cmath>

#include "controls/numbers.h"
#include "model/text_table.h"

namespace velgrove {
namespace {

using Column = TextTable::Column;
constexpr auto Right = TextTable::Align::Right;

std::string cueNumber(float number) {
  if (!std::isfinite(number)) return "?";
  return number == 0 ? formatFixed2(0) : formatCueNumber(number);
}

std::string place(double value) {
  return std::isfinite(value) ? formatFixed2(value) : "?";
}

/// By number, whatever isn't one last; equal ones stay in the order of the file.
bool comesBefore(float one, float other) {
  if (std::isnan(one) || std::isnan(other)) return !std::isnan(one) && std::isnan(other);
  return one < other;
}

std::string levelCount(const ChannelBytes& levels) {
  return std::to_string(std::count_if(levels.begin(), levels.end(), [](auto level) { return level > 0; }));
}

std::string linkOf(const clsQueueEntry& cue) {
  const std::string list = oneLine(cue.QueueListMasterGo);
  if (list.empty() || list == "None") return "";
  return list + " " + oneLine(cue.QueueNumberMasterGo.value_or(""));
}

/// Followed inputs by number; a fixture or submaster that follows none shows nothing.
std::string inputOf(int follows, int channel) {
  return follows != 0 ? std::to_string(channel) : "";
}

std::string both(const std::string& number, const std::string& maker) {
  return oneLine(oneLine(number) + " " + oneLine(maker));
}

/// "1-10 at 255, 12 at 128": channels above 0 with their levels.
std::string looks(const ChannelBytes& levels) {
  std::string text;
  for (std::size_t first = 0; first < levels.size();) {
    std::size_t end = first + 1;
    while (end < levels.size() && levels[end] == levels[first]) ++end;
    if (levels[first] > 0) {
      if (!text.empty()) text += ", ";
      text += std::to_string(first + 1);
      if (end > first + 1) text += "-" + std::to_string(end);
      text += " at " + std::to_string(levels[first]);
    }
    first = end;
  }
  return text;
}

std::string heading(const std::string& kind, const std::string& name, const std::string& more) {
  std::string text = "\n" + kind;
  for (const auto& part : {oneLine(name), more})
    if (!part.empty()) text += "  " + part;
  return text + "\n\n";
}

std::string plural(int count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string cueSheet(const clsQueueData& list) {
  const auto& cues = list.colQueueEntries();
  std::string text = heading("CUES", list.QueueListName,
                             oneLine(list.QueueListDesc + "  (" + plural(cues.count(), "cue") + ")"));
  std::vector<std::shared_ptr<clsQueueEntry>> sorted(cues.begin(), cues.end());
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const auto& a, const auto& b) { return comesBefore(a->EntryNum, b->EntryNum); });
  TextTable table({Column{"Cue", Right}, Column{"Up", Right}, Column{"Down", Right}, Column{"Delay", Right},
                   Column{"Channels", Right}, Column{"Description"}, Column{"Link"}});
  for (const auto& cue : sorted)
    table.add({cueNumber(cue->EntryNum), std::to_string(cue->Up), std::to_string(cue->Down),
               std::to_string(cue->Delay), levelCount(cue->Values), oneLine(cue->EntryDesc), linkOf(*cue)});
  return text + table.str();
}

std::string patch(clsView& view) {
  const auto& fixtures = view.colFixtures();
  std::string text = heading("PATCH", view.ViewName, "(" + plural(fixtures.count(), "fixture") + ")");
  std::vector<std::shared_ptr<clsFixture>> sorted(fixtures.begin(), fixtures.end());
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const auto& a, const auto& b) { return a->Channel < b->Channel; });
  TextTable table({Column{"Channel", Right}, Column{"Type"}, Column{"Name"}, Column{"X", Right},
                   Column{"Y", Right}, Column{"Watts", Right}, Column{"Colour"}, Column{"Pattern"},
                   Column{"Focus"}, Column{"Mood"}, Column{"Effect"}, Column{"Input", Right}});
  for (const auto& fixture : sorted)
    table.add({std::to_string(fixture->Channel), oneLine(fixture->FixtureType), oneLine(fixture->FixtureName),
               place(fixture->x), place(fixture->y),
               std::isfinite(fixture->Wattage) ? formatWhole(fixture->Wattage) : "?",
               both(fixture->ColorNumber, fixture->ColorMFG),
               both(fixture->PatternNumber, fixture->PatternMFG), oneLine(fixture->EdFocus),
               oneLine(fixture->Mood), oneLine(fixture->Effect),
               inputOf(fixture->DMXIn(), fixture->storedDMXInControlChannel())});
  return text + table.str();
}

bool inUse(const clsSubMaster& sub) {
  const auto& levels = sub.DimmerLevel();
  return !oneLine(sub.SubMasterName).empty() || sub.stored().DMXIn != 0 ||
         std::any_of(levels.begin(), levels.end(), [](auto level) { return level > 0; });
}

std::string subMasters(clsView& view) {
  TextTable table({Column{"Submaster", Right}, Column{"Name"}, Column{"Input", Right},
                   Column{"Channels", Right}, Column{"Look"}});
  int used = 0;
  for (const auto& sub : view.colSubMasters()) {
    if (!inUse(*sub)) continue;
    ++used;
    const auto stored = sub->stored();
    table.add({std::to_string(std::int64_t{sub->Identifier} + 1), oneLine(sub->SubMasterName),
               inputOf(stored.DMXIn, stored.DMXInControlChannel), levelCount(stored.DimmerLevel),
               looks(stored.DimmerLevel)});
  }
  const std::string text = heading(
      "SUBMASTERS", view.ViewName,
      "(" + std::to_string(used) + " of " + std::to_string(view.colSubMasters().count()) + " in use)");
  return used > 0 ? text + table.str() : text;
}

}  // namespace

std::string showSheet(clsProject& project) {
  std::string text = "SHOW  " + oneLine(project.ProjectName.str()) + "\n";
  const std::string description = oneLine(project.ProjectDesc.str());
  if (!description.empty()) text += "      " + description + "\n";
  for (const auto& list : project.colQueueData()) text += cueSheet(*list);
  for (const auto& view : project.colViews()) text += patch(*view) + subMasters(*view);
  return text;
}

}  // namespace velgrove
