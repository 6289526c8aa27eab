#pragma once

#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "model/show.h"
#include "model/show_file.h"

namespace velgrove::test {

using Look = std::vector<std::pair<int, int>>;  ///< channel and level

/// A cue as a test writes it down.
struct Cue {
  float number = 0;
  int up = 0;
  int down = 0;
  int delay = 0;
  Look look = {};
  std::string list = "None";
  std::optional<std::string> target = "None";
};

inline std::shared_ptr<clsQueueEntry> entryOf(const Cue& cue, int mark) {
  auto entry = std::make_shared<clsQueueEntry>();
  entry->EntryNum = cue.number;
  entry->EntryDesc = cue.number == 0 ? "Blackout" : "Cue " + std::to_string(cue.number);
  entry->Up = static_cast<std::int16_t>(cue.up);
  entry->Down = static_cast<std::int16_t>(cue.down);
  entry->Delay = static_cast<std::int16_t>(cue.delay);
  for (const auto& [channel, level] : cue.look)
    entry->Values[channelIndex(channel)] = static_cast<std::uint8_t>(level);
  entry->EntryQueueList = static_cast<std::int16_t>(mark);
  entry->QueueListMasterGo = cue.list;
  entry->QueueNumberMasterGo = cue.target;
  return entry;
}

/// Puts shows together: one view, and the two cue lists with their Blackout cue in front.
class ShowMaker {
 public:
  std::vector<int> channels = {1, 2, 3};  ///< one fixture each
  std::vector<Cue> ab;
  std::vector<Cue> xy;
  int blackoutUp = 0;
  int blackoutDown = 0;

  [[nodiscard]] std::shared_ptr<clsProject> project() const {
    auto show = std::make_shared<clsProject>();
    show->ProjectName = "Test";
    auto view = std::make_shared<clsView>();
    view->ViewName = "Test";
    for (const int channel : channels) {
      auto fixture = std::make_shared<clsFixture>();
      fixture->FixtureType = "par38";
      fixture->IconShape = 3;
      fixture->Channel = static_cast<std::int16_t>(channel);
      view->colFixturesAdd(std::move(fixture));
    }
    show->colViewsAdd(std::move(view));
    show->colQueueDataAdd(list("AB", ab, 2));
    show->colQueueDataAdd(list("XY", xy, 1));
    return show;
  }

  /// Writes the show to a file that goes with the process's temporary folder.
  [[nodiscard]] std::string write(const std::string& name = "show.kel") const {
    const auto path =
        std::filesystem::temp_directory_path() / ("velgrove-" + std::to_string(getpid()) + "-" + name);
    std::ofstream(path, std::ios::binary) << writeShow(*project());
    return path;
  }

 private:
  [[nodiscard]] std::shared_ptr<clsQueueData> list(const std::string& name, const std::vector<Cue>& cues,
                                                   int mark) const {
    auto data = std::make_shared<clsQueueData>();
    data->QueueListName = name;
    data->QueueListDesc = name + " Fader";
    data->colQueueEntriesAdd(entryOf({.number = 0, .up = blackoutUp, .down = blackoutDown}, mark));
    for (const Cue& cue : cues) data->colQueueEntriesAdd(entryOf(cue, mark));
    return data;
  }
};

/// A show of both lists with so many rows: channel 1 stands at 10 in row 2, at 20 in row 3 and so on.
inline ShowMaker showOf(int rows) {
  ShowMaker maker;
  for (int row = 2; row <= rows; ++row) {
    const Cue cue{.number = static_cast<float>(row - 1), .look = {{1, 10 * (row - 1)}}};
    maker.ab.push_back(cue);
    maker.xy.push_back(cue);
  }
  return maker;
}

}  // namespace velgrove::test
