#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "controls/machine.h"
#include "core/frm_main.h"
#include "core/show_state.h"
#include "core/windows.h"
#include "model/setting.h"
#include "model/settings_store.h"
#include "plot/fixtures.h"

namespace velgrove {

/// The whole desk without a face: makes all windows, ties them together, and starts and ends them.
class LightingDesk {
 public:
  struct Wiring {
    Windows::Wiring windows;
    std::filesystem::path settingsFolder;  ///< empty: all settings have their defaults, and none is written
    std::filesystem::path applicationFolder;  ///< of the executable
    std::filesystem::path dataFolder;         ///< where the recent list lies; empty: there is none
    std::function<void()> raisePriority;      ///< the light goes before all else on this machine
    std::function<void()> openShow;           ///< the open dialog: leaves a show loaded or not
    std::function<void()> quit;               ///< ends the program in good order: the operator chose Abort
  };

  LightingDesk(Clock clock, const MessageBoxes& boxes, Wiring wiring);
  LightingDesk(const LightingDesk&) = delete;
  LightingDesk& operator=(const LightingDesk&) = delete;

  Machine machine;
  ShowState show;
  SettingsStore store;  ///< what all of the desk's settings lie in
  SettingsStore userStore;
  CSetting Settings;
  velgrove::Fixtures Fixtures;
  Windows windows;
  frmMain frame;

  /// Start-up, once, top to bottom. Afterwards the desk lives in its timers and the operator's actions alone.
  void Main();
  /// Runs an action of the operator. An error that nobody took ends the program.
  void act(const std::function<void()>& action) const;
  /// Writes the show to ProjectFileName and brings it to the top of the recent list.
  void SaveAll();
  /// Stops all timers of the interface and the documents, and closes all windows.
  void ShutdownApp();

 private:
  [[nodiscard]] std::string setting(const std::string& section, const std::string& key,
                                    const std::string& fallback) const;
  void readRecentList();
  void noteRecentFile();
  void clearFixtures();
  void clearLevels();
  [[nodiscard]] std::filesystem::path recentList() const { return m_wiring.dataFolder / "mru.dat"; }

  Wiring m_wiring;
};

}  // namespace velgrove
