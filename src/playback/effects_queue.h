#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "controls/form.h"
#include "controls/list_view.h"
#include "controls/machine.h"
#include "controls/widgets.h"
#include "core/show_state.h"

namespace velgrove {

/// The window and the engine of effects: numbered chases, each a single lit channel that walks from a start
/// to a stop channel, again and again. Their list lives in this window alone: it is empty at every start, and
/// closing the window throws it away.
///
/// A chase step goes straight into DMXOutput, the merge's result, and holds until the next merge pass.
class EffectsQueue {
 public:
  EffectsQueue(ShowState& show, Machine& machine);
  EffectsQueue(const EffectsQueue&) = delete;
  EffectsQueue& operator=(const EffectsQueue&) = delete;

  enum Column : std::size_t { NumberCell, StartCell, StopCell, SpeedCell, LoopsCell };

  static constexpr Colour Green = 0x00C000;
  static constexpr Colour Red = 0x0000FF;
  static constexpr Colour Magenta = 0xFF00FF;

  Form Window{.Caption = "Effects - CueList"};
  /// A row an effect: " n    ", then start, stop, milliseconds a step and loops as they were typed.
  ListView ListViewEffects;
  ComboBox cmboEffects;
  Frame frmCustomChase{.Caption = "Custom Chase"};
  Label lblChannelStart{.Caption = "Start"};
  Label lblChannelStop{.Caption = "Stop"};
  Label lblSpeedMS{.Caption = "Speed(ms)"};
  Label lblDurationSec{.Caption = "Loops"};
  TextBox txtChannelStart;
  TextBox txtChannelStop;
  TextBox txtSpeedMS;
  TextBox txtDurationSec;  ///< loops, whatever its name says
  Button cmdAddEffect{
      .Caption = "Add", .ToolTip = "Add Effect to Effect Queue List", .BackColour = Green, .Click = [this] {
        cmdAddEffect_Click();
      }};
  Button cmdRemoveEffect{.Caption = "Remove",
                         .ToolTip = "Remove Effect to Effect Queue List",
                         .BackColour = Red,
                         .Click = [this] { cmdRemoveEffect_Click(); }};
  Button cmdTest{
      .Caption = "Test", .ToolTip = "Clear Effect Queue List", .BackColour = Magenta, .Click = [this] {
        cmdTest_Click();
      }};
  Timer ChaseTimer;

  std::int16_t nextEffectNumber = 1;  ///< rows plus one
  std::int16_t selectedEffect = 1;    ///< of the row clicked last, which may have gone since
  std::int16_t chaseStart = 0;
  std::int16_t chaseStop = 0;
  std::int32_t chaseSpeed = 0;     ///< milliseconds a step
  std::int32_t chaseDuration = 0;  ///< milliseconds in all
  std::int16_t chaseChannel = 1;   ///< channel that the next step lights
  std::int16_t chaseLevel = 100;   ///< percent
  std::int32_t chaseStartTime = 0;
  std::int32_t chaseNow = 0;

  /// Loads the window where it isn't; everything that touches it does so first.
  void load();
  void Form_Load();
  /// The chase stops, the list is lost, and the controls are as designed.
  void Unload();

  void addEffectToList(const std::string& start, const std::string& stop, const std::string& speed,
                       const std::string& loops);
  /// Starts the chase of an effect, by the text of its row or its plain number.
  void doEffect(const std::string& effectNumber);

  void cmboEffects_Click();
  void cmdAddEffect_Click();
  void cmdRemoveEffect_Click();
  void cmdTest_Click();
  void ListViewEffects_MouseDown(int row);  ///< the row under the mouse, 0 beside them all
  void ChaseTimer_Timer();

 private:
  [[nodiscard]] std::array<TextBox*, 4> fields();
  void setDesign();
  void noteCount();
  void removeEffectFromList(std::int16_t position);
  [[nodiscard]] std::int32_t getDuration(std::int16_t effectNumber);
  void tellNotRegistered(const std::string& effectNumber) const;
  void doChase(std::int32_t start, std::int32_t stop, std::int32_t speed, std::int32_t duration);
  void step();
  void wrap();
  void endChase();
  [[nodiscard]] std::uint8_t& output(int channel) { return m_show.DMXOutput[channelIndex(channel)]; }

  ShowState& m_show;
  Machine& m_machine;
};

}  // namespace velgrove
