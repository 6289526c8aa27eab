#include "playback/queue_list.h"

#include "playback/crossfade.h"
#include "playback/cue_rows.h"

namespace velgrove {
QueueList::QueueList(const PlayerTraits& traits, ShowState& show, Machine& machine, PlayerWiring wiring)
    : q_timer(
          machine.timers, traits.FadeRank, FadeStepInterval, [this] { q_timer_Timer(); },
          ErrorPattern::Waits::Never),
      m_traits(traits),
      m_show(show),
      m_machine(machine),
      m_errors(machine.errors),
      m_wiring(std::move(wiring)) {
  Window.Caption = traits.Caption;
  setUpButtons();
  tieEditors();
}

void QueueList::setUpButtons() {
  const auto set = [this](Button& button, const char* caption, const char* tip, Colour colour,
                          void (QueueList::*click)()) {
    button.Caption = caption;
    button.ToolTip = tip;
    button.BackColour = colour;
    button.Click = [this, click] { (this->*click)(); };
  };
  set(cmdGoForward, "&Go", "Run Cue", Grey, &QueueList::cmdGoForward_Click);
  set(cmdStop, "&Stop", "Stop Cue", Grey, &QueueList::cmdStop_Click);
  set(cmdAdvanceStageCue, "", "Increment Stage Cue", Magenta, &QueueList::cmdAdvanceStageCue_Click);
  set(cmdDecrementStageCue, "", "Decrement Stage Cue", Magenta, &QueueList::cmdDecrementStageCue_Click);
  set(cmdMakeStageCue, "Stage Cue", "Make Stage Cue", Red, &QueueList::cmdMakeStageCue_Click);
  set(cmdMakeNextCue, "Next Cue", "Make Next Cue", Green, &QueueList::cmdMakeNextCue_Click);
  set(cmdRecord, "&Record", "Record Cue", Red, &QueueList::cmdRecord_Click);
  set(cmdUpdate, "&Update", "Update Cue", Yellow, &QueueList::cmdUpdate_Click);
  set(cmdInsertCue, "Insert", "Insert Cue", Magenta, &QueueList::cmdInsertCue_Click);
  set(cmdDeleteCue, "Delete", "Delete Cue", Magenta, &QueueList::cmdDeleteCue_Click);
  set(cmdCopy, "Copy", "Copy Cue", Magenta, &QueueList::cmdCopy_Click);
  set(cmdPaste, "Paste", "Paste Cue", Magenta, &QueueList::cmdPaste_Click);
  set(cmdLoop, "Loop", "Loop", Magenta, &QueueList::cmdLoop_Click);
  set(cmdLiveView, "Live", "", Magenta, &QueueList::cmdLiveView_Click);
  set(cmdBlindView, "Blind", "", Magenta, &QueueList::cmdBlindView_Click);
}

std::shared_ptr<clsQueueData> QueueList::dataInProject() const {
  return m_show.Projects.item(m_show.CurrentProjectIndex)->colQueueData().item(m_show.CurrentPlayer);
}

colQueueEntries& QueueList::entries() {
  if (State.QueueData == nullptr)
    throw RunTimeError(Fault::ObjectMissing, "the show has no list for this player");
  return State.QueueData->colQueueEntries();
}

std::shared_ptr<clsQueueEntry> QueueList::entryByKey(float number) {
  auto entry = findCue(entries(), number, m_traits.Mark);
  if (entry == nullptr) throw RunTimeError(Fault::ObjectMissing, "no cue " + formatCueNumber(number));
  return entry;
}

std::shared_ptr<clsQueueEntry> QueueList::entryByNumber(float number) {
  for (const auto& entry : entries())
    if (entry->EntryNum == number) return entry;
  throw RunTimeError(Fault::ObjectMissing, "no cue " + formatCueNumber(number));
}

std::shared_ptr<clsQueueEntry> QueueList::entryOfRow(int row) {
  return row < 1 ? nullptr : entryByKey(numberOfRow(row));
}

std::shared_ptr<clsQueueEntry> QueueList::searchRow(int row) {
  if (row < 1) return nullptr;
  const int player = m_traits.Mark - 1;
  auto entry = search(entries(), numberOfRow(row), player, m_machine.boxes);
  if (entry == nullptr) throw RunTimeError(Fault::ObjectMissing, "the list has no cue");
  return entry;
}

void QueueList::Form_Load() {
  Window.Loaded = true;
  m_errors.steps(
      [&] {
        ListView2.Columns = {{"#  ", 66},   {"Dwn", 50},  {"Dly", 50},   {"Up", 50},
                             {"Desc", 150}, {"List", 50}, {"Number", 50}};
      },
      [&] {
        State = QueuePlayerState{};
        CueNum.setText("0.00");
        CueDesc.setText("Blackout");
        writeDefaultTimes();
        enableCueButtons(true);
      },
      [&] {
        m_show.CurrentPlayer = m_traits.Player;
        State.QueueData = dataInProject();
      },
      [&] { addBlackout(); }, [&] { FillList(); },
      [&] {
        UpDownCueNum.setValue(999);
        State.CueSpinValue = 999;
      },
      [&] {
        if (!m_traits.LoadShowsHeaders) return;
        UpdateHeader("Stage", State.StageCue);
        UpdateHeader("Live", State.StageCue);
      },
      [&] { ResetCombos(); });
}

/// Row 1 of every list is the cue numbered 0, all levels 0.
void QueueList::addBlackout() {
  if (findCue(entries(), 0, m_traits.Mark) != nullptr) return;
  auto blackout = std::make_shared<clsQueueEntry>();
  blackout->EntryDesc = "Blackout";
  blackout->Up = m_show.DefaultUp;
  blackout->Down = m_show.DefaultDown;
  blackout->Delay = m_show.DefaultDelay;
  blackout->EntryQueueList = m_traits.Mark;
  blackout->QueueListMasterGo = "None";
  blackout->QueueNumberMasterGo = "None";
  entries().add(std::move(blackout));
}

bool QueueList::Form_QueryUnload(bool askedBySystem) {
  if (askedBySystem) return false;
  Window.Visible = false;
  return true;
}

}  // namespace velgrove
