#pragma once

#include <bit>
#include <limits>
#include <memory>

#include "model/show.h"

namespace velgrove {

/// Everything that the format allows and a desk hardly ever writes: two views, three lists, undefined bytes
/// of the code page, numbers that are none, values where zeros are usual.
inline std::shared_ptr<clsProject> oddShow() {
  auto project = std::make_shared<clsProject>();
  project->ProjectName = utf8FromCodePage("\x80\x81\x8D\x8F\x90\x9D\x9E\xFF quote\" back\\ tab\t");
  project->ProjectDesc = std::string(255, 'd');
  project->colViews().add(std::make_shared<clsView>());
  const auto view = project->colViews().add(std::make_shared<clsView>());
  view->ViewName = utf8FromCodePage(std::string("nul\0and \x93quotes\x94", 16));

  const auto fixture = view->colFixtures().add(std::make_shared<clsFixture>());
  fixture->FixtureType = "leko";
  fixture->Level = 255;
  fixture->Shape = std::numeric_limits<std::int32_t>::min();
  fixture->Channel = -32768;
  fixture->PerpX = -0.0;
  fixture->PerpY = std::numeric_limits<double>::denorm_min();
  fixture->Angle = std::bit_cast<double>(0x7FF0000000000001);
  fixture->x = -std::numeric_limits<double>::infinity();
  fixture->y = 1e300;
  fixture->Wattage = std::bit_cast<float>(0xFFC00001);
  fixture->Effect = std::string(65535, 'e');
  fixture->setDMXInControlChannel(7);
  fixture->setDMXIn(255);
  fixture->Selected = 1;
  fixture->SelectIndex = 3;

  clsSubMaster::Stored stored;
  stored.DimmerLevel.fill(200);
  stored.DMXInControlChannel = 9;
  stored.DMXIn = 1;
  const auto sub = view->colSubMasters().add(std::make_shared<clsSubMaster>());
  sub->setStored(stored);
  sub->Level = -1;

  for (int list = 0; list < 3; ++list) project->colQueueData().add(std::make_shared<clsQueueData>());
  auto& cues = project->colQueueData().item(3)->colQueueEntries();
  for (const float number : {1.1F, std::bit_cast<float>(0x7FA00000), std::numeric_limits<float>::quiet_NaN(),
                             std::numeric_limits<float>::infinity(), 16777216.0F, 3.4028235e38F, 1e-45F}) {
    const auto cue = cues.add(std::make_shared<clsQueueEntry>());
    cue->Reserved = 258;
    cue->EntryNum = number;
    cue->Values.back() = 1;
  }
  cues.item(1)->QueueNumberMasterGo = "";
  cues.item(2)->QueueNumberMasterGo = "2.5";

  clsDMXIn::Levels levels{};
  levels.back() = 5;
  project->colDMXIn().add(std::make_shared<clsDMXIn>())->setStoredValues(levels);
  return project;
}

}  // namespace velgrove
