#include "plot/document.h"

#include "dmx/merge.h"
#include "plot/shapes.h"

namespace velgrove {
namespace {

constexpr int MergeInterval = 40;  // ms
constexpr int SubmasterInputInterval = 333;
constexpr int DisplayInterval = 333;
constexpr double GridPitch = 50;  // world units

}  // namespace

frmDocument::frmDocument(ShowState& show, Machine& machine, Wiring wiring)
    : FlpCAD1([&machine](const Drawing& plot) {
        if (machine.Dialogs.printView) machine.Dialogs.printView(plot);
      }),
      TallyInputs(
          machine.timers, TimerRank::Merge, MergeInterval, [this] { TallyInputs_Timer(); },
          ErrorPattern::Waits::Never),
      SubsInput(machine.timers, TimerRank::SubmasterInput, SubmasterInputInterval,
                std::move(wiring.followInput)),
      UpdateDisplay(machine.timers, TimerRank::Display, DisplayInterval, [this] { UpdateDisplay_Timer(); }),
      m_show(show),
      m_machine(machine),
      m_errors(machine.errors),
      m_wiring(std::move(wiring)) {
  bindControls();
  SubsInput.setEnabled(true);
}

void frmDocument::bindControls() {
  FlpCAD1.WorldMouseDown = [this](int button, int flags, double x, double y) {
    FlpCAD1_WorldMouseDown(button, flags, x, y);
  };
  FlpCAD1.WorldMouseUp = [this](int button, int flags, double x, double y) {
    FlpCAD1_WorldMouseUp(button, flags, x, y);
  };
  FlpCAD1.WorldMouseMove = [this](int button, int flags, double x, double y) {
    FlpCAD1_WorldMouseMove(button, flags, x, y);
  };
  FlpCAD1.ShapeNumberSelected = [this](int type, ShapeNumber number) {
    FlpCAD1_ShapeNumberSelected(type, number);
  };
  AGauge2.Change = [this] { AGauge2_Change(); };
  FlpCAD1.WorldRectPos = [this](double left, double top, double right, double bottom) {
    FlpCAD1_WorldRectPos(left, top, right, bottom);
  };
  FlpCAD1.ViewMoved = [this] { followView(); };
  FlpCAD1.Resized = [this] { sizeScrollBars(); };
  HScroll1.Change = [this] { HScroll1_Change(); };
  VScroll1.Change = [this] { VScroll1_Change(); };
  HScroll1.Scroll = [this] { HScroll1_Scroll(); };
  VScroll1.Scroll = [this] { VScroll1_Scroll(); };
}

void frmDocument::Form_Load() {
  m_errors.steps(
      [&] {
        const auto& project = m_show.Projects.item(m_show.CurrentProjectIndex);
        ActiveView = project->colViews().item(m_show.CurrentViewIndex);
        Window.Caption = ActiveView->ViewName;
      },
      [&] {
        AGauge2.Visible = RotateActive = false;
        FlpCAD1.setRedraw(true);
      },
      [&] { GridPitchX = GridPitchY = GridPitch; }, [&] { showLimits(World); }, [&] { loadCursors(); },
      [&] { loadShapes(); },
      [&] {
        m_textLayer = FlpCAD1.addLayer("Layer 2");
        FlpCAD1.setCurrentLayer(m_textLayer);
        LevelFont = FlpCAD1.fontHandle("Arial,25,BN");
      },
      [&] { makeSubMasters(); }, [&] { raise(m_wiring.rebuildSubMasters); }, [&] { sizeScrollBars(); },
      [&] { addFirstZoom(); }, [&] { SetViewFixtures(); },
      [&] {
        FlpCAD1.Snap = true;
        forgetSelection();
        for (const auto& fixture : GetCurrentView()->colFixtures())
          fixture->Selected = fixture->SelectIndex = 0;  // as they were saved, but nothing is marked now
        m_show.LevelTextSource = 0;
      },
      [&] {
        UpdateDisplay.setEnabled(true);
        TallyInputs.setEnabled(true);
      });
}

void frmDocument::loadShapes() {
  for (std::size_t type = 0; type < FixtureTypes.size(); ++type)
    GetFixtureShape(std::string(FixtureTypes[type]), static_cast<std::int16_t>(type + 1));
}

void frmDocument::loadCursors() {
  constexpr std::array Files{"rotate.ico", "light.ico", "slider.ico", "blank.ico", "delete.ico", "zoom.ico"};
  static_assert(Files.size() == std::tuple_size_v<decltype(ToolCursors)>);
  for (std::size_t i = 0; i < Files.size(); ++i)
    ToolCursors[i] = FlpCAD1.addCursor((m_wiring.graphics / Files[i]).string());
}

/// A view that was never opened has no submasters yet.
void frmDocument::makeSubMasters() const {
  const auto view = GetCurrentView();
  auto& subMasters = view->colSubMasters();
  if (subMasters.count() > 0) return;
  for (int index = 0; index < ShowState::SubMasterCount; ++index) {
    auto subMaster = std::make_shared<clsSubMaster>();
    subMaster->SubMasterName = " ";
    subMaster->Identifier = index;
    view->colSubMastersAdd(std::move(subMaster));
  }
}

void frmDocument::addFirstZoom() const {
  auto zoom = std::make_shared<clsZooms>();
  zoom->tp = WorldSize;
  zoom->rt = WorldSize;
  GetCurrentView()->colZoomsAdd(std::move(zoom));
}

std::shared_ptr<clsView> frmDocument::GetCurrentView() const {
  if (ActiveView == nullptr) throw RunTimeError(Fault::ObjectMissing, "the document shows no view");
  return ActiveView;
}

void frmDocument::CloseView() {
  FlpCAD1.clear();
}

void frmDocument::stopTimers() {
  for (Timer* timer : {&TallyInputs, &SubsInput, &UpdateDisplay}) timer->setEnabled(false);
}

void frmDocument::TallyInputs_Timer() {
  m_errors.run([&] { mergeLevels(m_show); });
}

}  // namespace velgrove
