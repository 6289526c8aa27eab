#include "plot/document.h"

#include <algorithm>

#include "dmx/merge.h"

namespace velgrove {
namespace {

constexpr int MergeInterval = 40;  // ms
constexpr int SubmasterInputInterval = 333;
constexpr int DisplayInterval = 333;

}  // namespace

frmDocument::frmDocument(ShowState& show, Machine& machine, Wiring wiring)
    : TallyInputs(
          machine.timers, TimerRank::Merge, MergeInterval, [this] { TallyInputs_Timer(); },
          ErrorPattern::Waits::Never),
      SubsInput(machine.timers, TimerRank::SubmasterInput, SubmasterInputInterval,
                std::move(wiring.followInput)),
      UpdateDisplay(machine.timers, TimerRank::Display, DisplayInterval, [this] { UpdateDisplay_Timer(); }),
      m_show(show),
      m_errors(machine.errors) {
  SubsInput.setEnabled(true);
}

void frmDocument::Form_Load() {
  m_errors.steps(
      [&] {
        const auto& project = m_show.Projects.item(m_show.CurrentProjectIndex);
        m_activeView = project->colViews().item(m_show.CurrentViewIndex);
      },
      [&] { makeSubMasters(); },
      [&] {
        auto zoom = std::make_shared<clsZooms>();
        zoom->tp = 1000;
        zoom->rt = 1000;
        GetCurrentView()->colZooms().add(std::move(zoom));
      },
      [&] { SetViewFixtures(); }, [&] { m_show.LevelTextSource = 0; },
      [&] {
        UpdateDisplay.setEnabled(true);
        TallyInputs.setEnabled(true);
      });
}

std::shared_ptr<clsView> frmDocument::GetCurrentView() const {
  if (m_activeView == nullptr) throw RunTimeError(Fault::ObjectMissing, "the document shows no view");
  return m_activeView;
}

void frmDocument::stopTimers() {
  for (Timer* timer : {&TallyInputs, &SubsInput, &UpdateDisplay}) timer->setEnabled(false);
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
    subMasters.add(std::move(subMaster));
  }
}

void frmDocument::SetViewFixtures() {
  const auto view = GetCurrentView();
  for (const auto& fixture : view->colFixtures()) {
    m_show.SelectedFixtureType = fixture->IconShape;
    LastChannel = std::max(LastChannel, fixture->Channel);
    m_show.ProjectDirty = true;
  }
}

void frmDocument::TallyInputs_Timer() {
  m_errors.run([&] { mergeLevels(m_show); });
}

void frmDocument::UpdateDisplay_Timer() {
  std::shared_ptr<clsView> view;
  m_errors.run([&] { view = GetCurrentView(); });
  if (view == nullptr) return;
  for (int position = 1; position <= view->colFixtures().count(); ++position) {
    const auto fixture = view->colFixtures().item(position);
    m_errors.run([&] {
      const auto at = channelIndex(fixture->Channel);
      fixture->Level = m_show.DMXOutput[at];
      m_show.LevelTextSource = m_show.LevelSource[at];
      m_show.ProjectDirty = true;
    });
  }
}

}  // namespace velgrove
