#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "controls/machine.h"
#include "core/frm_main.h"
#include "core/show_state.h"
#include "core/windows.h"

namespace velgrove {

/// The whole desk without a face: makes all windows, ties them together, and starts and ends them.
class LightingDesk {
 public:
  struct Wiring {
    Windows::Wiring windows;
    frmMain::Wiring frame;
    std::filesystem::path dataFolder;     ///< where the recent list lies
    std::function<void()> raisePriority;  ///< the light goes before all else on this machine
    std::function<void()> openShow;       ///< the open dialog: leaves a show loaded or not
  };

  LightingDesk(Clock clock, MessageBoxes boxes, Wiring wiring);
  LightingDesk(const LightingDesk&) = delete;
  LightingDesk& operator=(const LightingDesk&) = delete;

  Machine machine;
  ShowState show;
  Windows windows;
  frmMain frame;

  /// Start-up, once, top to bottom. Afterwards the desk lives in its timers and the operator's actions alone.
  void Main();
  /// Writes the show to ProjectFileName and brings it to the top of the recent list.
  void SaveAll();
  /// Stops all timers of the interface and the documents, and closes all windows.
  void ShutdownApp();

 private:
  void readRecentList();
  void noteRecentFile();
  void clearFixtures() const;
  void clearLevels();
  [[nodiscard]] std::filesystem::path recentList() const { return m_wiring.dataFolder / "mru.dat"; }

  Wiring m_wiring;
};

}  // namespace velgrove
