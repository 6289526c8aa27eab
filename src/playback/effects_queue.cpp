#include "playback/effects_queue.h"

#include "controls/numbers.h"

namespace velgrove {
namespace {

/// An entry of the combo box, and what it writes into the four fields: start, stop, speed, loops.
struct Preset {
  const char* entry;
  std::array<const char*, 4> texts;
};

/// Operators know the fourth by its spelling.
constexpr std::array Presets{
    Preset{"Default Chase, 1-100", {"001", "100", "500", "1"}},
    Preset{"Default Chase, 100-200", {"100", "200", "500", "1"}},
    Preset{"Default Chase, 200-300", {"200", "300", "500", "1"}},
    Preset{"Default Case,300-512", {"300", "512", "500", "1"}},
    Preset{"Custom Chase", {"000", "000", "000", "00"}},
};
constexpr int CustomChase = Presets.size() - 1;

std::int32_t cell(const ListView::Row& row, EffectsQueue::Column column) {
  return toInteger<std::int32_t>(row.Texts[column]);
}

/// Milliseconds from one value of the clock to another, right also where it has turned from its highest value
/// to its lowest in between.
std::int32_t elapsed(std::int32_t since, std::int32_t now) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(now) - static_cast<std::uint32_t>(since));
}

std::int32_t product(std::int32_t a, std::int32_t b) {
  return narrow<std::int32_t>(std::int64_t{a} * b);
}

}  // namespace

EffectsQueue::EffectsQueue(ShowState& show, Machine& machine)
    : ChaseTimer(machine.timers, TimerRank::Chase, 0, [this] { ChaseTimer_Timer(); }),
      m_show(show),
      m_machine(machine) {
  constexpr int ColumnWidth = 80;
  for (const char* header : {"Cue#", "Start", "Stop", "Speed", "Loops"})
    ListViewEffects.Columns.push_back({.Header = header, .Width = ColumnWidth});
  ListViewEffects.ToolTip = "Saved Effects List";
  for (const Preset& preset : Presets) cmboEffects.add(preset.entry);
  cmboEffects.Click = [this] { cmboEffects_Click(); };
  setDesign();
}

std::array<TextBox*, 4> EffectsQueue::fields() {
  return {&txtChannelStart, &txtChannelStop, &txtSpeedMS, &txtDurationSec};
}

// ---- The window

void EffectsQueue::load() {
  if (!Window.Loaded && !m_show.ExitConfirmed) Form_Load();
}

void EffectsQueue::Form_Load() {
  Window.Loaded = true;
  nextEffectNumber = 1;
  selectedEffect = 1;
  chaseChannel = 1;
  chaseLevel = 100;
  cmboEffects.setText("Select Effect");
  noteCount();
}

void EffectsQueue::Unload() {
  Window.Unload();
  Window.WindowState = WindowState::Normal;
  setDesign();
}

void EffectsQueue::setDesign() {
  ChaseTimer.setEnabled(false);
  ChaseTimer.setInterval(0);
  ListViewEffects.clear();
  cmboEffects.setListIndex(-1);
  frmCustomChase.Enabled = false;
  for (TextBox* field : fields()) {
    field->setText("");
    field->Enabled = false;
  }
  nextEffectNumber = 1;
  noteCount();
}

/// The players size their lists of targets by this.
void EffectsQueue::noteCount() {
  m_show.EffectListNext = nextEffectNumber;
}

// ---- The list

/// A default entry overwrites the texts, and leaves the fields open where they are.
void EffectsQueue::cmboEffects_Click() {
  const int chosen = cmboEffects.listIndex();
  if (chosen < 0) return;
  const auto all = fields();
  for (std::size_t i = 0; i < all.size(); ++i)
    all[i]->setText(Presets[static_cast<std::size_t>(chosen)].texts[i]);
  frmCustomChase.Enabled = true;
  if (chosen != CustomChase) return;
  for (TextBox* field : all) field->Enabled = true;
}

/// Nothing is looked at here: what is no chase fails when it is started.
void EffectsQueue::cmdAddEffect_Click() {
  addEffectToList(txtChannelStart.text(), txtChannelStop.text(), txtSpeedMS.text(), txtDurationSec.text());
}

void EffectsQueue::addEffectToList(const std::string& start, const std::string& stop,
                                   const std::string& speed, const std::string& loops) {
  load();
  m_machine.errors.run([&] {
    const auto next = narrow<std::int16_t>(nextEffectNumber + 1);
    ListViewEffects.add(nextEffectNumber, " " + std::to_string(nextEffectNumber) + "    ");
    ListViewEffects.setText(nextEffectNumber, StartCell, start);
    ListViewEffects.setText(nextEffectNumber, StopCell, stop);
    ListViewEffects.setText(nextEffectNumber, SpeedCell, speed);
    ListViewEffects.setText(nextEffectNumber, LoopsCell, loops);
    nextEffectNumber = next;
    noteCount();
  });
}

/// Always the last one, whichever is selected, so that the numbers of the others stay.
void EffectsQueue::cmdRemoveEffect_Click() {
  removeEffectFromList(nextEffectNumber);
}

/// The row before a position goes.
void EffectsQueue::removeEffectFromList(std::int16_t position) {
  m_machine.errors.run([&] {
    if (position <= 1) {
      m_machine.boxes.show(
          {.text = "No more Effects to remove", .title = "Empty Effects List", .icon = BoxIcon::Information});
      return;
    }
    ListViewEffects.remove(position - 1);
    --nextEffectNumber;
    noteCount();
  });
}

void EffectsQueue::ListViewEffects_MouseDown(int row) {
  if (row == 0) return;
  m_machine.errors.run([&] {
    ListViewEffects.select(row);
    selectedEffect = toInteger<std::int16_t>(ListViewEffects.text(row));
  });
}

// ---- Starting a chase

/// The backslash and the n stand in the question as they are.
void EffectsQueue::cmdTest_Click() {
  m_machine.errors.run([&] {
    const double seconds = getDuration(selectedEffect) / 1000.0;
    const BoxAnswer answer =
        m_machine.boxes.show({.text = "This test will take approximately " + formatPlain(seconds) +
                                      " Seconds to complete \\n are you sure you want to continue?",
                              .title = "Testing Effect",
                              .buttons = BoxButtons::YesNo});
    if (answer == BoxAnswer::Yes) doEffect(std::to_string(selectedEffect));
  });
}

void EffectsQueue::tellNotRegistered(const std::string& effectNumber) const {
  m_machine.boxes.show({.text = "Effect " + effectNumber + " not registered", .icon = BoxIcon::Information});
}

/// One past the last effect gets through the test and fails at its row. What fails starts nothing.
void EffectsQueue::doEffect(const std::string& effectNumber) {
  load();
  m_machine.errors.run([&] {
    const double asked = toNumber(effectNumber);
    if (asked > nextEffectNumber) {
      tellNotRegistered(effectNumber);
      return;
    }
    const auto number = roundTo<std::int16_t>(asked);
    const ListView::Row row = ListViewEffects.row(number);
    doChase(cell(row, StartCell), cell(row, StopCell), cell(row, SpeedCell), getDuration(number));
  });
}

/// Milliseconds, by the row's own numbers: below 0 where stop lies below start.
std::int32_t EffectsQueue::getDuration(std::int16_t effectNumber) {
  if (effectNumber > nextEffectNumber) {
    tellNotRegistered(std::to_string(effectNumber));
    return 0;
  }
  const ListView::Row& row = ListViewEffects.row(effectNumber);
  const std::int64_t channels = std::int64_t{cell(row, StopCell)} - cell(row, StartCell) + 1;
  return product(product(narrow<std::int32_t>(channels), cell(row, SpeedCell)), cell(row, LoopsCell));
}

void EffectsQueue::doChase(std::int32_t start, std::int32_t stop, std::int32_t speed, std::int32_t duration) {
  const auto first = narrow<std::int16_t>(start);
  const auto last = narrow<std::int16_t>(stop);
  const auto step = narrow<std::int16_t>(speed);
  chaseStart = first;
  chaseStop = last;
  chaseSpeed = step;
  chaseDuration = duration;
  chaseChannel = chaseStart;
  chaseStartTime = m_machine.timeGetTime();
  ChaseTimer.setEnabled(true);
  ChaseTimer.setInterval(0);  // so that a speed below 0, which the timer refuses, ticks no more than 0 does
  ChaseTimer.setInterval(chaseSpeed);
}

// ---- The chase

/// The clock ends a chase, never a count of steps: late ticks make fewer of them.
void EffectsQueue::ChaseTimer_Timer() {
  chaseNow = m_machine.timeGetTime();
  if (elapsed(chaseStartTime, chaseNow) < chaseDuration)
    step();
  else
    endChase();
}

/// A channel that isn't there costs its own step alone; the chase walks on.
void EffectsQueue::step() {
  if (chaseChannel > chaseStop) wrap();
  const std::int16_t lit = chaseChannel;
  m_machine.errors.steps(
      [&] {
        if (chaseChannel >= 2) output(chaseChannel - 1) = 0;
      },
      [&] { output(chaseChannel) = narrow<std::uint8_t>(PctToDMX(chaseLevel)); },
      [&] {
        // A Go can start the chase anew while a box holds up this step.
        if (chaseChannel == lit) chaseChannel = narrow<std::int16_t>(chaseChannel + 1);
      });
}

void EffectsQueue::wrap() {
  m_machine.errors.steps([&] { output(chaseChannel - 1) = 0; }, [&] { chaseChannel = chaseStart; });
}

/// The channel lit last is left to the merge.
void EffectsQueue::endChase() {
  ChaseTimer.setEnabled(false);
  m_machine.errors.run([&] { output(chaseChannel) = 0; });
}

}  // namespace velgrove
