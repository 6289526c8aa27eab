#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "model/show.h"

namespace velgrove {

/// The file of a new show named "Play" as it stands after its first document, written down byte by byte.
inline std::string exampleBytes() {
  using namespace std::string_literals;
  const auto zeros = [](std::size_t count) { return std::string(count, '\0'); };
  const auto cueList = [&](const std::string& name, char mark) {
    return "\2\0"s + name + "\10\0"s + name + " Fader" + "\1\0"s  // one cue
           + "\0\0"s + "\10\0Blackout"s + "\0\0"s + zeros(4) + zeros(6) + zeros(512) + mark + "\0"s +
           "\4\0None"s + "\10\0\4\0None"s;
  };
  const std::string thousand = "\0\0\0\0\0\x40\x8F\x40"s;
  std::string bytes = "Play" + std::string(46, ' ') + std::string(255, ' ') + "\1\0\2\0\1\0"s;
  bytes += "\4\0Play"s + "\1\0\0\0\x18\0"s;
  bytes += thousand + zeros(16) + thousand;
  for (int slider = 0; slider < 24; ++slider)
    bytes += "\1\0 "s + zeros(4) + static_cast<char>(slider) + zeros(3) + zeros(512) + zeros(2);
  bytes += cueList("AB", 2) + cueList("XY", 1);
  bytes += zeros(2) + zeros(4) + zeros(513) + zeros(2);
  return bytes;
}

/// The same show as the desk makes it.
inline std::shared_ptr<clsProject> exampleShow() {
  auto project = std::make_shared<clsProject>();
  project->ProjectName = "Play";
  project->ProjectDesc = " ";
  const auto view = project->colViews().add(std::make_shared<clsView>());
  view->ViewName = "Play";
  const auto zoom = view->colZooms().add(std::make_shared<clsZooms>());
  zoom->tp = zoom->rt = 1000;
  for (int slider = 0; slider < 24; ++slider) {
    const auto sub = view->colSubMasters().add(std::make_shared<clsSubMaster>());
    sub->SubMasterName = " ";
    sub->Identifier = slider;
  }
  for (const auto& [name, mark] : {std::pair{"AB", 2}, std::pair{"XY", 1}}) {
    const auto list = project->colQueueData().add(std::make_shared<clsQueueData>());
    list->QueueListName = name;
    list->QueueListDesc = std::string(name) + " Fader";
    const auto cue = list->colQueueEntries().add(std::make_shared<clsQueueEntry>());
    cue->EntryDesc = "Blackout";
    cue->EntryQueueList = static_cast<std::int16_t>(mark);
    cue->QueueListMasterGo = "None";
    cue->QueueNumberMasterGo = "None";
  }
  project->colDMXIn().add(std::make_shared<clsDMXIn>());
  return project;
}

}  // namespace velgrove
