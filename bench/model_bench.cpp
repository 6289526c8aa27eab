#include <benchmark/benchmark.h>

#include "model/show_file.h"

namespace velgrove {
namespace {

/// A full evening: 1000 cues in two lists, 512 fixtures, 24 submasters.
std::shared_ptr<clsProject> bigShow() {
  auto project = std::make_shared<clsProject>();
  project->ProjectName = "Big";
  const auto view = project->colViewsAdd(std::make_shared<clsView>());
  for (std::int16_t channel = 1; channel <= ChannelCount; ++channel) {
    const auto fixture = view->colFixturesAdd(std::make_shared<clsFixture>());
    fixture->FixtureType = "fresnel";
    fixture->FixtureName = "front of house " + std::to_string(channel);
    fixture->Channel = channel;
    fixture->Mood = "warm";
  }
  for (int slider = 0; slider < 24; ++slider) view->colSubMastersAdd(std::make_shared<clsSubMaster>());
  for (std::int16_t mark = 1; mark <= 2; ++mark) {
    auto& cues = project->colQueueDataAdd(std::make_shared<clsQueueData>())->colQueueEntries();
    for (int number = 0; number < 500; ++number) {
      const auto cue = cues.add(std::make_shared<clsQueueEntry>());
      cue->EntryDesc = "caf\xC3\xA9 at dusk";
      cue->EntryNum = static_cast<float>(number);
      cue->EntryQueueList = mark;
      cue->QueueListMasterGo = "None";
      cue->QueueNumberMasterGo = "None";
    }
  }
  return project;
}

void readBigShow(benchmark::State& state) {
  const auto bytes = writeShow(*bigShow());
  for (auto _ : state) benchmark::DoNotOptimize(readShow(bytes, DMXInputRecords::Leave));
}
BENCHMARK(readBigShow)->Unit(benchmark::kMillisecond);

void writeBigShow(benchmark::State& state) {
  const auto project = bigShow();
  for (auto _ : state) benchmark::DoNotOptimize(writeShow(*project));
}
BENCHMARK(writeBigShow)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velgrove
