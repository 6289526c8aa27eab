#pragma once

#include <cstdint>
#include <string>

#include "controls/form.h"
#include "controls/list_view.h"
#include "controls/machine.h"
#include "core/show_state.h"

namespace velgrove {

/// The effects: numbered chases, each a single lit channel that walks from a start to a stop channel, again
/// and again. Their list lives in this window alone and is empty at every start.
///
/// A chase step goes straight into DMXOutput, the merge's result, and holds until the next merge pass.
class EffectsQueue {
 public:
  EffectsQueue(ShowState& show, Machine& machine);
  EffectsQueue(const EffectsQueue&) = delete;
  EffectsQueue& operator=(const EffectsQueue&) = delete;

  Form Window{.Caption = "Effects - CueList"};
  /// A row an effect: " n    ", then start, stop, milliseconds a step and loops as they were typed.
  ListView ListViewEffects;
  Timer ChaseTimer;

  std::int16_t nextEffectNumber = 1;  ///< rows plus one
  std::int16_t chaseStart = 0;
  std::int16_t chaseStop = 0;
  std::int32_t chaseSpeed = 0;     ///< milliseconds a step
  std::int32_t chaseDuration = 0;  ///< milliseconds in all
  std::int16_t chaseChannel = 1;   ///< channel that the next step lights
  std::int16_t chaseLevel = 100;   ///< percent
  std::int32_t chaseStartTime = 0;
  std::int32_t chaseNow = 0;

  void addEffectToList(const std::string& start, const std::string& stop, const std::string& speed,
                       const std::string& loops);
  /// Starts the chase of an effect, by the text of its row or its plain number.
  void doEffect(const std::string& effectNumber);
  void ChaseTimer_Timer();

 private:
  void noteCount();
  [[nodiscard]] std::int32_t getDuration(std::int16_t effectNumber);
  void tellNotRegistered(const std::string& effectNumber) const;
  void doChase(std::int32_t start, std::int32_t stop, std::int32_t speed, std::int32_t duration);
  void step();
  [[nodiscard]] std::uint8_t& output(int channel) { return m_show.DMXOutput[channelIndex(channel)]; }

  ShowState& m_show;
  Machine& m_machine;
};

}  // namespace velgrove
