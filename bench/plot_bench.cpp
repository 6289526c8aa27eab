// The plot on the screen: what lies between the hand that drags a fixture and the picture that follows it.
// And the bars: what one refresh of all of them costs.

#include <QApplication>

#include <benchmark/benchmark.h>

#include "controls/hand_clock.h"
#include "desktop/bars_window.h"
#include "desktop/plot_view.h"
#include "desktop/style.h"
#include "desktop/theme.h"

namespace velgrove {
namespace {

/// A plot of 512 fixtures in all shapes and levels, on a screen of 1920 x 1080 that nobody sees.
class FullPlot {
 public:
  FullPlot() {
    auto project = std::make_shared<clsProject>();
    auto view = project->colViewsAdd(std::make_shared<clsView>());
    constexpr int Across = 32;
    for (int at = 0; at < ChannelCount; ++at) {
      auto fixture = view->colFixturesAdd(std::make_shared<clsFixture>());
      fixture->Channel = static_cast<std::int16_t>(at + 1);
      fixture->IconShape = at % 6 + 1;
      fixture->Angle = at % 8 * 45;
      fixture->x = (at % Across + 0.5) * 1000 / Across;
      fixture->y = (at / Across + 0.5) * 1000 / (ChannelCount / Across);
    }
    show.Projects.add(std::move(project));
    show.CurrentProjectIndex = show.CurrentViewIndex = 1;
    onDesk([this] { document.Form_Load(); });
    levels();
    plot.resize(1920, 1080);
    plot.show();
    QApplication::processEvents();
  }

  /// The desk does something, and the screen shows it.
  template <class Work>
  void onDesk(Work work) {
    {
      const DeskTurn turn(lock);
      work();
    }
    face.pull();
    QApplication::processEvents();
  }
  /// A display tick on which every level is another.
  void levels() {
    onDesk([this] {
      for (std::size_t i = 0; i < ChannelCount; ++i)
        show.DMXOutput[i] = static_cast<std::uint8_t>(show.DMXOutput[i] + 40 + i);
      document.UpdateDisplay_Timer();
    });
  }

  Desk lock;
  Face face{lock, {.processEvents = [] {}, .paintEvents = [](Milliseconds) {}, .wake = [] {}, .showBox = {}}};
  Bindings bindings{face};
  HandClock clock;
  ShowState show;
  Machine machine{clock.clock(), {}};
  frmDocument document{show,
                       machine,
                       {.followInput = {},
                        .rebuildSubMasters = {},
                        .abStageCue = {},
                        .xyStageCue = {},
                        .graphics = GRAPHICS_DIR}};
  PlotView plot{bindings, [this] { return &document; }};
};

/// One step of a drag: the fixture moves by a pitch of the grid, the picture is copied, and what differs is
/// painted.
void DragStep(benchmark::State& state) {
  FullPlot full;
  const auto fixture = full.document.ActiveView->colFixtures().item(200);
  double step = full.document.GridPitchX;
  for (auto _ : state) {
    full.onDesk([&] { full.document.FlpCAD1.move(fixture->Shape, step, 0); });
    step = -step;
  }
}
BENCHMARK(DragStep)->Unit(benchmark::kMicrosecond);

/// The display tick in a fade of everything, painted.
void LevelsOnScreen(benchmark::State& state) {
  FullPlot full;
  for (auto _ : state) full.levels();
}
BENCHMARK(LevelsOnScreen)->Unit(benchmark::kMicrosecond);

/// The view moves, so that all is painted anew.
void PanStep(benchmark::State& state) {
  FullPlot full;
  double step = 3;
  for (auto _ : state) {
    full.onDesk([&] { full.document.FlpCAD1.moveView(step, 0); });
    step = -step;
  }
}
BENCHMARK(PanStep)->Unit(benchmark::kMicrosecond);

/// A refresh of 200 bars, of which all have another level or one in ten, painted.
void BarsOnScreen(benchmark::State& state) {
  Desk lock;
  Face face{lock, {.processEvents = [] {}, .paintEvents = [](Milliseconds) {}, .wake = [] {}, .showBox = {}}};
  HandClock clock;
  ShowState show;
  show.BarRows = 8;
  show.BarColumns = 25;
  show.BarGap = 100;
  Machine machine{clock.clock(), {}};
  frmBars bars(show, machine);
  bars.Form_Load();
  BarsWindow window(face, [&bars] { return &bars; });
  window.resize(1100, 700);
  window.show();
  face.pull();
  QApplication::processEvents();
  for (auto _ : state) {
    for (int channel = 0; channel < 200; channel += 200 / static_cast<int>(state.range(0)))
      show.DMXOutput[static_cast<std::size_t>(channel)] += 3;
    bars.updateTimer_Timer();
    face.pull();
    QApplication::processEvents();
  }
}
BENCHMARK(BarsOnScreen)->Arg(200)->Arg(20)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace velgrove

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication app(argc, argv);
  QApplication::setStyle(new velgrove::DeskStyle);
  velgrove::theme::apply(velgrove::Density::Roomy);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
