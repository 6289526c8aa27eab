#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/frm_keys.h"
#include "dmx/frm_bars.h"
#include "dmx/velgrove_comm.h"
#include "playback/cue_links.h"
#include "playback/effects_queue.h"
#include "playback/frm_confirm_paste.h"
#include "playback/frm_loop.h"
#include "playback/queue_list.h"
#include "plot/document.h"
#include "surfaces/fixture_dlg.h"
#include "surfaces/frm_check_show.h"
#include "surfaces/frm_grand_master.h"
#include "surfaces/frm_preferences.h"
#include "surfaces/frm_print_sheets.h"
#include "surfaces/frm_show_view.h"
#include "surfaces/frm_sub_pane.h"
#include "surfaces/frm_timings.h"
#include "surfaces/moving_fixture_dlg.h"

namespace velgrove {

/// Marks a Go that comes from the frame's tools or the interface's trigger.
class GoFromOutside {
 public:
  explicit GoFromOutside(ShowState& show) : m_show(show) { m_show.GoFromInput = true; }
  ~GoFromOutside() { m_show.GoFromInput = false; }
  GoFromOutside(const GoFromOutside&) = delete;
  GoFromOutside& operator=(const GoFromOutside&) = delete;

 private:
  ShowState& m_show;
};

/// A window that is loaded, and how it is unloaded.
struct OpenForm {
  Form* form;
  std::function<void()> unload;
};

/// The windows of a desk and the ties between them. Players and documents come and go with the show; the
/// interface's window stays.
class Windows {
 public:
  struct Wiring {
    VelgroveComm::Wiring interface;  ///< all but what the trigger asks and does
    // These lead to the frame:
    std::function<void(const std::string&)> showCuePanel;
    std::function<void(const std::string&)> showStatus;
    std::function<void()> focusFrame = {};
    std::function<void()> cueEdited = {};  ///< a cue was recorded, changed or deleted
    std::function<void(bool visible)> showSubPane = {};
    // Settings of the section "Project"; one that isn't there is "0".
    std::function<std::string(const std::string& key)> setting = {};
    std::function<void(const SettingTexts& texts)> saveSettings = {};
    std::function<InterfaceState()> interfaceState = {};
    std::function<void()> boothChanged = {};
    std::filesystem::path graphics = {};  ///< of the plots; empty where nobody sees them
  };

  Windows(ShowState& show, Machine& machine, Wiring wiring);
  Windows(const Windows&) = delete;
  Windows& operator=(const Windows&) = delete;

  VelgroveComm Comm;
  EffectsQueue Effects;
  frmLoop Loop;
  frmConfirmPaste ConfirmPaste;
  FixtureDlg Fixture;
  MovingFixtureDlg MovingFixture;
  frmSubPane SubPane;
  frmGrandMaster GrandMaster;
  frmTimings Timings;
  frmPreferences Preferences;
  frmCheckShow CheckShow;
  frmPrintSheets PrintSheets;
  frmKeys Keys;
  frmShowView ShowView;
  std::vector<std::unique_ptr<frmBars>> Bars;
  std::unique_ptr<QueueList> ABQ;
  std::unique_ptr<QueueList> XYQ;
  std::vector<std::unique_ptr<frmDocument>> Documents;
  frmDocument* DocumentForm = nullptr;    ///< the one opened last
  frmDocument* ActiveDocument = nullptr;  ///< the one that was active last

  /// The players of the open show; Fault::ObjectMissing when there are none.
  [[nodiscard]] QueueList& abPlayer() const;
  [[nodiscard]] QueueList& xyPlayer() const;

  void loadPlayers();  ///< made anew, loaded and shown
  /// Called when no action of the operator is under way: what has been closed is let go of.
  void forgetRetired();
  void unloadPlayers();  ///< their fades stop; the level arrays stay as they are
  void openDocument();
  void closeDocument();  ///< the one opened last
  void closeDocuments();
  /// Opens the dialog of the current fixture beside a place of the plot. One that is open for another fixture
  /// makes way: the hand would set a fixture that the dialog doesn't show.
  void openFixture(Pixel at);
  void closeFixture();
  /// A new window of bars, of "Input" or "Output".
  void openBars(const std::string& what);
  void closeBars(const frmBars& bars);
  [[nodiscard]] std::vector<OpenForm> openForms();
  void endRepaints() const;  ///< of both players: a window that may not paint now isn't waited for

 private:
  template <class Window>
  void retire(std::unique_ptr<Window> window);
  [[nodiscard]] VelgroveComm::Wiring interfaceWiring(VelgroveComm::Wiring wiring);
  void unloadPlayer(std::unique_ptr<QueueList>& player);
  [[nodiscard]] std::unique_ptr<QueueList> makePlayer(const PlayerTraits& traits);
  [[nodiscard]] frmDocument& activeDocument() const;
  [[nodiscard]] std::vector<std::string> linkTargets(const std::string& list) const;
  [[nodiscard]] frmDocument::Wiring documentWiring();
  [[nodiscard]] FixtureForm::Wiring fixtureWiring();
  [[nodiscard]] frmTimings::Wiring timingsWiring();
  [[nodiscard]] frmPreferences::Wiring preferencesWiring();
  [[nodiscard]] frmCheckShow::Wiring checkWiring();
  [[nodiscard]] frmPrintSheets::Wiring printWiring();
  [[nodiscard]] frmShowView::Wiring showViewWiring();
  void goByTrigger();
  void startEffect(const std::string& number);

  ShowState& m_show;
  Machine& m_machine;
  Wiring m_wiring;
  CueLinks m_links;
  /// Closed windows whose handlers may still stand in an open box.
  std::vector<std::shared_ptr<void>> m_retired;
};

}  // namespace velgrove
