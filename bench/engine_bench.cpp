// The hot paths of the desk: what runs 33 times a second and more.

#include <benchmark/benchmark.h>

#include "controls/hand_clock.h"
#include "dmx/frm_bars.h"
#include "dmx/merge.h"
#include "dmx/velgrove_comm.h"
#include "playback/crossfade.h"
#include "playback/player_traits.h"
#include "playback/preflight.h"
#include "plot/document.h"
#include "surfaces/frm_grand_master.h"
#include "surfaces/frm_sub_pane.h"

namespace velgrove {
namespace {

void fill(ShowState& show) {
  for (std::size_t i = 0; i < ChannelCount; ++i) {
    show.ABLevels[i] = static_cast<std::int16_t>(i * 7 % 256);
    show.XYLevels[i] = static_cast<std::int16_t>(i * 13 % 256);
    show.DMXInput[i] = static_cast<std::uint8_t>(i * 5 % 256);
    show.ManualLevels[i] = static_cast<std::uint8_t>(i * 3 % 256);
    show.SubLevels[i] = static_cast<std::uint8_t>(i * 11 % 256);
  }
}

void MergePass(benchmark::State& state) {
  ShowState show;
  fill(show);
  show.DMXDimmers = true;
  for (auto _ : state) {
    mergeLevels(show);
    benchmark::DoNotOptimize(show.DMXOutput.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(MergePass);

/// A fade of four seconds, looked at from its start to its end.
void FadeStep(benchmark::State& state) {
  QueuePlayerState player;
  for (std::size_t i = 0; i < ChannelCount; ++i) {
    player.CurrentLook[i] = static_cast<std::uint8_t>(i % 200);
    player.NextLook[i] = static_cast<std::uint8_t>(i * 3 % 200);
  }
  player.FadeUp = player.FadeDown = 4;
  buildTimeline(player, 0);
  std::array<std::int16_t, ChannelCount> levels{};
  std::int32_t now = 0;
  for (auto _ : state) {
    player.CurrentLookLevel = GetCurrentLookPctDone(player, now);
    player.NextLookLevel = GetNextLookPctDone(player, now);
    DoScale(player, levels, ChannelCount);
    benchmark::DoNotOptimize(levels.data());
    benchmark::ClobberMemory();
    now = (now + 30) % 4000;
  }
}
BENCHMARK(FadeStep);

/// One frame into a line that takes everything.
void SendFrame(benchmark::State& state) {
  HandClock clock;
  ShowState show;
  fill(show);
  Machine machine(clock.clock(), {});
  const auto ok = [](std::span<const std::uint8_t> bytes) {
    return LineResult{LineStatus::Ok, bytes.size()};
  };
  const auto nothing = LineResult{LineStatus::Full, 0};
  VelgroveComm comm(show, machine,
                    {.line = {.open = [](const std::string&) { return LineStatus::Ok; },
                              .close = [] {},
                              .write = ok,
                              .read = [=](std::span<std::uint8_t>) { return nothing; },
                              .wait = [](Milliseconds) {},
                              .drain = [](Milliseconds) {},
                              .turnRound = [](Milliseconds) {}},
                     .findInterfaces = {},
                     .findAgain = {},
                     .triggerEnabled = {},
                     .triggerGo = {},
                     .repaint = [] {}});
  comm.VelgroveCom.open();
  for (auto _ : state) comm.SetDMX();
}
BENCHMARK(SendFrame);

/// A display tick of a full plot on which every level has changed.
void DisplayTick(benchmark::State& state) {
  HandClock clock;
  ShowState show;
  Machine machine(clock.clock(), {});
  auto project = std::make_shared<clsProject>();
  auto view = project->colViewsAdd(std::make_shared<clsView>());
  for (int channel = 1; channel <= ChannelCount; ++channel) {
    auto fixture = view->colFixturesAdd(std::make_shared<clsFixture>());
    fixture->Channel = static_cast<std::int16_t>(channel);
  }
  show.Projects.add(std::move(project));
  show.CurrentProjectIndex = show.CurrentViewIndex = 1;
  frmDocument plot(show, machine, {});
  plot.Form_Load();
  for (auto _ : state) {
    for (auto& level : show.DMXOutput) level = static_cast<std::uint8_t>(level + 40);
    plot.UpdateDisplay_Timer();
  }
}
BENCHMARK(DisplayTick);

/// A refresh of 200 bars whose levels all have changed.
void BarsRefresh(benchmark::State& state) {
  HandClock clock;
  ShowState show;
  show.BarRows = 8;
  show.BarColumns = 25;
  Machine machine(clock.clock(), {});
  frmBars bars(show, machine);
  bars.Form_Load();
  for (auto _ : state) {
    for (auto& level : show.DMXOutput) level = static_cast<std::uint8_t>(level + 40);
    bars.updateTimer_Timer();
    benchmark::DoNotOptimize(bars.Bars.data());
  }
}
BENCHMARK(BarsRefresh);

/// What the face copies of that plot while the desk waits for it.
void CopyPicture(benchmark::State& state) {
  Drawing drawing;
  const ShapeNumber block = drawing.addBlock(makeBlock("box", {Circle{.middle = {}, .radius = 40}}));
  const auto font = drawing.fontHandle("Arial,25,BN");
  for (int fixture = 0; fixture < ChannelCount; ++fixture) {
    (void)drawing.insertBlock(block, {});
    (void)drawing.addRectangle({});
    for (int line = 0; line < 2; ++line) (void)drawing.addLine({}, {});
    for (int text = 0; text < 3; ++text) (void)drawing.addText({}, "FL", font, Align::Centre);
  }
  Picture picture;
  for (auto _ : state) drawing.copyTo(picture);
}
BENCHMARK(CopyPicture);

/// A motion of a submaster's fader: 512 fixtures, 24 submasters, all of them up.
void FaderMove(benchmark::State& state) {
  HandClock clock;
  ShowState show;
  Machine machine(clock.clock(), {});
  const auto view = std::make_shared<clsView>();
  for (int channel = 1; channel <= ChannelCount; ++channel) {
    auto fixture = std::make_shared<clsFixture>();
    fixture->Channel = static_cast<std::int16_t>(channel);
    view->colFixturesAdd(std::move(fixture));
  }
  for (int i = 0; i < ShowState::SubMasterCount; ++i) {
    auto submaster = std::make_shared<clsSubMaster>();
    ChannelBytes look{};
    for (std::size_t c = 0; c < look.size(); ++c)
      look[c] = static_cast<std::uint8_t>((c + 1) * (i + 3) % 256);
    submaster->setDimmerLevel(look);
    view->colSubMastersAdd(std::move(submaster));
  }
  frmSubPane panel(show, machine, [&view] { return view; });
  for (int i = 0; i < ShowState::SubMasterCount; ++i) panel.level(i).Caption = std::to_string(50 + i);
  panel.Command1_Click(12);
  int percent = 0;
  for (auto _ : state) {
    panel.Fader.Pot.drag(percent = (percent + 1) % 101);
    benchmark::DoNotOptimize(show.SubLevels.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(FaderMove);

/// A motion of the grand master over 512 lit channels.
void GrandMasterMove(benchmark::State& state) {
  HandClock clock;
  ShowState show;
  fill(show);
  Machine machine(clock.clock(), {});
  frmGrandMaster master(show, machine);
  master.Show();
  int value = 0;
  for (auto _ : state) {
    master.VSlider1.drag(value = (value + 1) % 101);
    benchmark::DoNotOptimize(show.ManualLevels.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(GrandMasterMove);

/// The check of a whole show: 1000 cues in each list, each lit on all of 512 fixtures and fading 5 s. No hot
/// path, but the operator waits for it.
void CheckShow(benchmark::State& state) {
  constexpr int Cues = 1000;
  clsProject show;
  const auto view = std::make_shared<clsView>();
  for (int channel = 1; channel <= ChannelCount; ++channel) {
    auto fixture = std::make_shared<clsFixture>();
    fixture->Channel = static_cast<std::int16_t>(channel);
    view->colFixturesAdd(std::move(fixture));
  }
  show.colViewsAdd(view);
  for (const std::int16_t mark : {AB.Mark, XY.Mark}) {
    auto list = std::make_shared<clsQueueData>();
    for (int number = 0; number < Cues; ++number) {
      auto cue = std::make_shared<clsQueueEntry>();
      cue->EntryNum = static_cast<float>(number) / 5.0F;
      cue->Up = cue->Down = 5;
      cue->EntryQueueList = mark;
      cue->QueueListMasterGo = "None";
      cue->Values.fill(static_cast<std::uint8_t>(1 + number % 255));
      list->colQueueEntriesAdd(std::move(cue));
    }
    show.colQueueDataAdd(std::move(list));
  }
  for (auto _ : state) {
    const auto findings = checkShow({.project = &show});
    if (!findings.empty()) state.SkipWithError("the show is clean");
  }
}
BENCHMARK(CheckShow)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velgrove
