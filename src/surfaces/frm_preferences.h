#pragma once

#include <functional>
#include <string>

#include "controls/form.h"
#include "controls/machine.h"
#include "controls/widgets.h"
#include "core/show_state.h"
#include "model/settings_store.h"

namespace velgrove {

/// The preferences: a thin form over the settings. The poll of the electronic trigger looks at its box, so
/// that the form is mostly loaded, hidden.
class frmPreferences {
 public:
  struct Wiring {
    /// A setting of the section "Project"; "0" when there is none.
    std::function<std::string(const std::string& key)> setting;
    /// Writes keys of that section, all or none.
    std::function<void(const SettingTexts& texts)> saveSettings;
    std::function<void(bool visible)> showSubPane;
    std::function<void()> maximiseDocument;
    std::function<void()> showTimings;
  };

  frmPreferences(ShowState& show, Machine& machine, Wiring wiring);
  frmPreferences(const frmPreferences&) = delete;
  frmPreferences& operator=(const frmPreferences&) = delete;

  Form Window{.Caption = "Preferences"};

  Frame fraCueValues{.Caption = "Cue Values"};
  Label lblUp{.Caption = "Up:"};
  Label lblDown{.Caption = "Down:"};
  Label lblDelay{.Caption = "Delay:"};
  TextBox txtUp;  ///< seconds, as the next two
  TextBox txtDown;
  TextBox txtDelay;

  Frame fraBarValues{.Caption = "Bar Values"};
  Label lblColumns{.Caption = "Columns:"};
  Label lblRows{.Caption = "Rows:"};
  Label lblGap{.Caption = "Gap:"};
  TextBox txtColumns{DesignColumns};
  TextBox txtRows;
  TextBox txtGap{DesignGap};  ///< twips

  Frame subFrame{.Caption = "Submaster Panel"};
  CheckBox chkShowSub{.Caption = "Show Submaster Panel", .Click = [this] { chkShowSub_Click(); }};
  Label lblNumSubs{.Caption = "Number of Sub Channlels"};
  TextBox txtNumSubs;

  Frame frmDMXIn{.Caption = "Manual Input"};
  CheckBox chkDMXNothing{.Caption = "No Manual  Input", .Click = [this] { chkDMXNothing_Click(); }};
  CheckBox chkDMXDimmers{.Caption = "Manual Input To Dimmers", .Click = [this] { chkDMXDimmers_Click(); }};
  CheckBox chkDMXSubmasters{.Caption = "Manual Input To Submasters",
                            .Click = [this] { chkDMXSubmasters_Click(); }};

  Frame fraConfirmation{.Caption = "Confirmation Settings"};
  CheckBox chkRecord{.Caption = "Enable Logging:", .Click = [this] { chkRecord_Click(); }};
  CheckBox chkTrigger{.Caption = "Enable Electronic Trigger"};

  Button cmdSave{.Caption = "Save", .Click = [this] { cmdSave_Click(); }};
  Button cmdReset{.Caption = "Reset", .Click = [this] { cmdReset_Click(); }};
  Button cmdCancel{.Caption = "Cancel", .Click = [this] { cmdCancel_Click(); }};
  Button buttonTimings{.Caption = "Velgrove Timings", .Click = [this] { buttonTimings_Click(); }};

  void Show();
  /// Whether the box of the electronic trigger is ticked. A form that isn't loaded is loaded for it, hidden.
  [[nodiscard]] bool triggerEnabled();
  void Unload() { Window.Unload(); }

  void Form_Load();
  /// Writes all settings, then takes them over. A text that is no number fails at its point of the sequence:
  /// what was written before it stays.
  void cmdSave_Click();
  void cmdReset_Click();
  void cmdCancel_Click() { Unload(); }
  void buttonTimings_Click();
  void chkRecord_Click();
  /// Shows or hides the panel at once, by PrefShowSubs and not by the box.
  void chkShowSub_Click();
  void chkDMXNothing_Click();
  void chkDMXDimmers_Click();
  void chkDMXSubmasters_Click();

 private:
  static constexpr const char* DesignColumns = "24";
  static constexpr const char* DesignGap = "100";

  void setDesign();
  void read(const char* key, TextBox& field);
  void read(const char* key, CheckBox& box);
  void takeOver();
  void store() const;

  ShowState& m_show;
  Machine& m_machine;
  Wiring m_wiring;
};

}  // namespace velgrove
