#include "playback/effects_queue.h"

#include "controls/numbers.h"

namespace velgrove {
namespace {

enum EffectColumn : std::size_t { NumberCell, StartCell, StopCell, SpeedCell, LoopsCell };

std::int32_t cell(const ListView::Row& row, EffectColumn column) {
  return toInteger<std::int32_t>(row.Texts[column]);
}

std::int32_t product(std::int32_t a, std::int32_t b) {
  return narrow<std::int32_t>(std::int64_t{a} * b);
}

}  // namespace

EffectsQueue::EffectsQueue(ShowState& show, Machine& machine)
    : ChaseTimer(machine.timers, TimerRank::Chase, 0, [this] { ChaseTimer_Timer(); }),
      m_show(show),
      m_machine(machine) {
  for (const char* header : {"Cue#", "Start", "Stop", "Speed", "Loops"})
    ListViewEffects.Columns.push_back({.Header = header, .Width = 0});
  noteCount();
}

/// The players size their lists of targets by this.
void EffectsQueue::noteCount() {
  m_show.EffectListNext = nextEffectNumber;
}

void EffectsQueue::addEffectToList(const std::string& start, const std::string& stop,
                                   const std::string& speed, const std::string& loops) {
  m_machine.errors.run([&] {
    ListViewEffects.add(nextEffectNumber, " " + std::to_string(nextEffectNumber) + "    ");
    ListViewEffects.setText(nextEffectNumber, StartCell, start);
    ListViewEffects.setText(nextEffectNumber, StopCell, stop);
    ListViewEffects.setText(nextEffectNumber, SpeedCell, speed);
    ListViewEffects.setText(nextEffectNumber, LoopsCell, loops);
    ++nextEffectNumber;
    noteCount();
  });
}

void EffectsQueue::tellNotRegistered(const std::string& effectNumber) const {
  m_machine.boxes.show({.text = "Effect " + effectNumber + " not registered", .icon = BoxIcon::Information});
}

/// One past the last effect gets through the test and fails at its row.
void EffectsQueue::doEffect(const std::string& effectNumber) {
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
  chaseStart = narrow<std::int16_t>(start);
  chaseStop = narrow<std::int16_t>(stop);
  chaseSpeed = narrow<std::int16_t>(speed);
  chaseDuration = duration;
  chaseChannel = chaseStart;
  chaseStartTime = m_machine.timeGetTime();
  ChaseTimer.setEnabled(true);
  ChaseTimer.setInterval(chaseSpeed);
}

/// The clock ends a chase, never a count of steps: late ticks make fewer of them.
void EffectsQueue::ChaseTimer_Timer() {
  m_machine.errors.run([&] {
    chaseNow = m_machine.timeGetTime();
    if (chaseNow - chaseStartTime < chaseDuration) {
      step();
      return;
    }
    ChaseTimer.setEnabled(false);
    output(chaseChannel) = 0;
  });
}

void EffectsQueue::step() {
  if (chaseChannel > chaseStop) {
    output(chaseChannel - 1) = 0;
    chaseChannel = chaseStart;
  }
  if (chaseChannel >= 2) output(chaseChannel - 1) = 0;
  output(chaseChannel) = narrow<std::uint8_t>(PctToDMX(chaseLevel));
  ++chaseChannel;
}

}  // namespace velgrove
