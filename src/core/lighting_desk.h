#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "controls/machine.h"
#include "core/frm_main.h"
#include "core/frm_open_project.h"
#include "core/frm_wantto_save.h"
#include "core/plain_windows.h"
#include "core/recovery.h"
#include "core/show_saver.h"
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
    std::filesystem::path manualFolder = {};  ///< of the help's pages; empty: there is no help
    std::filesystem::path dataFolder;       ///< where new shows and the recent list lie; empty: there is none
    std::filesystem::path firstShows = {};  ///< what a user's first start finds in his new data folder
    std::filesystem::path offered = {};     ///< the show that the first dialog stands on; empty: none
    DriveRoots drives = {};                 ///< of the open dialog
    Disk disk = systemDisk();
    std::function<void()> raisePriority;  ///< the light goes before all else on this machine
    /// Leaves a show loaded or not, in place of the open dialog, for a desk without an operator at a screen.
    std::function<void()> openShow = {};
    std::function<void()> quit;  ///< ends the program in good order
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
  frmSplash Splash{machine};
  frmAbout About;
  frmHelp Help;
  frmWaitExit WaitExit;
  frmWanttoSave WanttoSave;
  frmOpenProject OpenProject;
  frmMain frame;

  /// Start-up, once, top to bottom. Afterwards the desk lives in its timers and the operator's actions alone.
  void Main();
  /// Runs an action of the operator. An error that nobody took ends the program.
  void act(const std::function<void()>& action);
  /// Writes the show to ProjectFileName and brings it to the top of the recent list. Whether it stands there.
  bool SaveAll() { return m_saver.SaveAll(); }
  /// Stops all timers, closes all windows and the interface, and ends the program.
  void ShutdownApp();
  /// Closes all windows, with `force` those first that stand over others. True when none is left.
  bool UnloadAllForms(bool force);
  /// How the desk stands to the interface, from the start on.
  [[nodiscard]] InterfaceState interfaceState() const { return windows.Comm.state(Splash.Window.Visible); }
  /// All windows that are loaded.
  [[nodiscard]] std::vector<OpenForm> openForms();

 private:
  class Acting;

  [[nodiscard]] Windows::Wiring tied(Windows::Wiring wiring);
  [[nodiscard]] frmMain::Wiring frameWiring();
  [[nodiscard]] Recovery::Wiring recoveryWiring();
  [[nodiscard]] std::string setting(const std::string& section, const std::string& key,
                                    const std::string& fallback) const;
  void saveSetting(const std::string& section, const std::string& key, const std::string& value);
  void saveBooth();
  void furnish();
  void prepareShapes();
  void bringFirstShows();
  void readRecentFiles();
  void showSplash();
  void startInterface();
  void openFirstShow();
  void chooseFirstShow();
  void unloadFrame();
  void clearFixtures();
  void clearLevels();

  Wiring m_wiring;
  Timer m_keepBooth;
  Recovery m_recovery;
  ShowSaver m_saver;
  int m_acting = 0;  ///< actions of the operator that are under way
};

}  // namespace velgrove
