#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "controls/form.h"
#include "controls/machine.h"
#include "controls/widgets.h"
#include "core/show_state.h"

namespace velgrove {

/// One bar. Place and size in twips, from the corner of the window's inside.
struct LevelBar {
  std::string Caption;  ///< "12:"
  int Value = 0;        ///< percent
  Colour BarColour = 0;
  Colour TextColour = 0;
  bool Visible = false;
  int Left = 0;
  int Top = 0;
  int Width = 0;
  int Height = 0;
};

/// A window of levels as a grid of bars, one a channel from channel 1 on: what goes out, or what comes in.
/// It takes the grid's size from the settings when it loads, and doesn't watch them.
class frmBars {
 public:
  static constexpr int MostBars = 200;

  frmBars(ShowState& show, Machine& machine);
  frmBars(const frmBars&) = delete;
  frmBars& operator=(const frmBars&) = delete;

  Form Window;
  std::array<LevelBar, MostBars> Bars;
  std::int16_t Rows = 0;
  std::int16_t Columns = 0;
  std::int16_t Gap = 0;  ///< twips
  Timer updateTimer;
  Timer updateTimerInput;
  // The face looks at these counts. A layout clears the bars, and the next refresh fills them again.
  unsigned Layouts = 0;    ///< how often the grid was laid out
  unsigned Refreshes = 0;  ///< how often the levels were read

  void Form_Load();
  void Form_Resize();
  void Form_Unload();
  /// "Input" or "Output"; other texts start nothing.
  void StartUpdate(const std::string& what);
  /// Lays the grid out over the window's inside, Window.Width x Height. One that is too small for it keeps
  /// its old layout. Fault::Subscript when the bars run out.
  void SetRowColumn(std::int16_t rows, std::int16_t columns, std::int16_t gap);
  /// Fault::Subscript for a bar that isn't there.
  void SetLevel(int index, int value, Colour colour);
  void updateTimer_Timer();
  void updateTimerInput_Timer();

 private:
  void limit();
  [[nodiscard]] LevelBar& bar(int index);
  template <class Refresh>
  void eachBar(Refresh refresh);

  ShowState& m_show;
  Machine& m_machine;
  FaultMemory m_layoutFaults;  ///< a window that is drawn larger tells of bars that run out once
};

}  // namespace velgrove
