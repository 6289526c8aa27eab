#include "surfaces/frm_preferences.h"

#include "controls/numbers.h"

namespace velgrove {
namespace {

std::int16_t ticked(const CheckBox& box) {
  return static_cast<std::int16_t>(box.Value);
}

void tick(CheckBox& box, bool on) {
  box.Value = on ? 1 : 0;
}

}  // namespace

frmPreferences::frmPreferences(ShowState& show, Machine& machine, Wiring wiring)
    : m_show(show), m_machine(machine), m_wiring(std::move(wiring)) {}

void frmPreferences::Show() {
  if (!Window.Loaded) Form_Load();
  Window.Show();
}

bool frmPreferences::triggerEnabled() {
  if (!Window.Loaded) Form_Load();
  return chkTrigger.Value != 0;
}

void frmPreferences::setDesign() {
  for (TextBox* field : {&txtUp, &txtDown, &txtDelay, &txtRows, &txtNumSubs}) field->reset();
  txtColumns.reset(DesignColumns);
  txtGap.reset(DesignGap);
  for (CheckBox* box :
       {&chkShowSub, &chkDMXNothing, &chkDMXDimmers, &chkDMXSubmasters, &chkRecord, &chkTrigger})
    tick(*box, false);
}

void frmPreferences::read(const char* key, TextBox& field) {
  m_machine.errors.run([&] { field.setText(m_wiring.setting(key)); });
}

void frmPreferences::read(const char* key, CheckBox& box) {
  m_machine.errors.run([&] { tick(box, toNumber(m_wiring.setting(key)) != 0); });
}

/// Two boxes always open clear: chkShowSub, and chkDMXNothing, in whose place the dimmers' box is read again.
void frmPreferences::Form_Load() {
  Window.Loaded = true;
  setDesign();
  read("Base", chkTrigger);
  read("Down", txtDown);
  read("Delay", txtDelay);
  read("Up", txtUp);
  read("Record", chkRecord);
  read("BarColumns", txtColumns);
  read("BarRows", txtRows);
  read("BarGap", txtGap);
  read("DMXDimmers", chkDMXDimmers);
  read("DMXSubmasters", chkDMXSubmasters);
  read("DMXDimmers", chkDMXDimmers);
  m_machine.errors.run(
      [&] { m_show.PrefShowSubs = toInteger<std::int16_t>(m_wiring.setting("PREF_SHOWSUBS")); });
  read("NUMSubs", txtNumSubs);
  takeOver();
}

/// NUMSubs is not among these: submasters follow the input only once the form has been saved.
void frmPreferences::takeOver() {
  const auto number = [](const TextBox& field) { return toInteger<std::int16_t>(field.text()); };
  m_machine.errors.steps(
      [&] {
        m_show.TriggerSetting = ticked(chkTrigger);
        m_show.RecordSetting = ticked(chkRecord);
      },
      [&] { m_show.DefaultDown = number(txtDown); }, [&] { m_show.DefaultDelay = number(txtDelay); },
      [&] { m_show.DefaultUp = number(txtUp); }, [&] { m_show.BarColumns = number(txtColumns); },
      [&] { m_show.BarRows = number(txtRows); }, [&] { m_show.BarGap = number(txtGap); });
}

void frmPreferences::cmdSave_Click() {
  m_machine.errors.run([&] { store(); });
  takeOver();
  m_machine.errors.steps([&] { m_show.NUMSubs = toInteger<std::int16_t>(txtNumSubs.text()); },
                         [&] {
                           m_show.DMXSubmasters = chkDMXSubmasters.Value != 0;
                           m_show.DMXDimmers = chkDMXDimmers.Value != 0;
                         },
                         [&] { Unload(); });
}

void frmPreferences::store() const {
  const auto ofBox = [](const CheckBox& box) { return std::to_string(box.Value); };
  m_wiring.saveSettings({{"Base", ofBox(chkTrigger)},
                         {"Record", ofBox(chkRecord)},
                         {"Down", txtDown.text()},
                         {"Delay", txtDelay.text()},
                         {"Up", txtUp.text()},
                         {"DMXNothing", ofBox(chkDMXNothing)},
                         {"DMXSubmasters", ofBox(chkDMXSubmasters)},
                         {"DMXDimmers", ofBox(chkDMXDimmers)},
                         {"PREF_SHOWSUBS", std::to_string(m_show.PrefShowSubs)},
                         {"BarColumns", txtColumns.text()},
                         {"BarRows", txtRows.text()},
                         {"BarGap", txtGap.text()},
                         {"NUMSubs", txtNumSubs.text()}});
}

/// The number of submasters and the panel's box stay as the hand left them.
void frmPreferences::cmdReset_Click() {
  read("Base", chkTrigger);
  read("Down", txtDown);
  read("Delay", txtDelay);
  read("Up", txtUp);
  read("Record", chkRecord);
  read("DMXNothing", chkDMXNothing);
  read("DMXSubmasters", chkDMXSubmasters);
  read("DMXDimmers", chkDMXDimmers);
  tick(chkTrigger, m_show.TriggerSetting != 0);
  txtDown.setText(std::to_string(m_show.DefaultDown));
  txtDelay.setText(std::to_string(m_show.DefaultDelay));
  txtUp.setText(std::to_string(m_show.DefaultUp));
  tick(chkRecord, m_show.RecordSetting != 0);
  txtColumns.setText(std::to_string(m_show.BarColumns));
  txtRows.setText(std::to_string(m_show.BarRows));
  txtGap.setText(std::to_string(m_show.BarGap));
}

void frmPreferences::buttonTimings_Click() {
  m_machine.errors.run([&] { m_wiring.showTimings(); });
}

void frmPreferences::chkRecord_Click() {
  const auto tell = [this](const char* text, const char* title) {
    m_machine.boxes.show({.text = text, .title = title, .icon = BoxIcon::Critical});
  };
  if (m_show.DebugLogging) {
    m_machine.errors.steps([&] { m_show.DebugLogging = false; },
                           [&] { tell("Logging is disabled!", "DISABLE DEBUG MODE"); });
    return;
  }
  m_machine.errors.steps(
      [&] {
        tell("NOTE: Enabling Logging can slow down processing, do not use while running a show!",
             "ENABING DEBUG MODE");
      },
      [&] { m_show.DebugLogging = true; });
}

void frmPreferences::chkShowSub_Click() {
  const bool shows = m_show.PrefShowSubs != 0;
  m_machine.errors.steps([&] { m_show.PrefShowSubs = shows ? 0 : 1; }, [&] { m_wiring.showSubPane(!shows); },
                         [&] {
                           if (shows) m_wiring.maximiseDocument();
                         });
}

void frmPreferences::chkDMXNothing_Click() {
  tick(chkDMXDimmers, false);
  tick(chkDMXSubmasters, false);
}

void frmPreferences::chkDMXDimmers_Click() {
  tick(chkDMXNothing, false);
  tick(chkDMXSubmasters, false);
}

void frmPreferences::chkDMXSubmasters_Click() {
  tick(chkDMXNothing, false);
  tick(chkDMXDimmers, false);
}

}  // namespace velgrove
