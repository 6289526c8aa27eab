#include "surface_commands.h"

#include <cctype>

namespace velgrove {
namespace {

/// The place of a button on the panel, from 0.
std::int16_t readButton(std::string_view word) {
  return static_cast<std::int16_t>(readWhole("N", word, 1, frmSubPane::Count) - 1);
}

/// Does something by hand on the panel, which is shut off while the DMX input drives the submasters.
template <class Work>
Action byHand(Work work) {
  return [work](Operator& op) {
    if (op.desk.show.DMXSubmasters) return op.note("the DMX input drives the submasters");
    work(op.desk.windows.SubPane);
  };
}

Action moveFader(Words words) {
  const std::int16_t button = readButton(words[1]);
  const auto percent = static_cast<std::int16_t>(readWhole("PERCENT", words[2], 0, 100));
  return byHand([=](frmSubPane& panel) {
    panel.SetSubLevel(button, percent);
    panel.Fader.Pot.letGo();
  });
}

/// Opens the record dialog by the right button, and does something there.
template <class Work>
Action inRecordDialog(Words words, Work work) {
  return [index = readButton(words[2]), work](Operator& op) {
    constexpr std::int16_t Right = 2;
    frmSubPane& panel = op.desk.windows.SubPane;
    panel.Command1_MouseDown(index, Right, 0, 0, 0);
    work(panel.Record);
  };
}

Action record(Words words) {
  return inRecordDialog(words, [name = asTyped(words.subspan(3))](frmSubMasterRecord& dialog) {
    dialog.txtName.setText(name);
    dialog.cmdRecord.click();
  });
}

Action remove(Words words) {
  return inRecordDialog(words, [](frmSubMasterRecord& dialog) {
    dialog.Command2.click();
    dialog.Command1.click();
  });
}

/// What people call a control: its name or the setting's, in capitals or not.
bool means(std::string_view word, std::string_view name) {
  return std::ranges::equal(
      word, name, [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

template <class Table>
const auto* find(const Table& table, std::string_view word) {
  const auto* const row = std::ranges::find_if(
      table, [word](const auto& each) { return means(word, each.name) || means(word, each.control); });
  return row == std::end(table) ? nullptr : row;
}

[[noreturn]] void noSuch(const std::string& what, std::string_view word) {
  wrong("there is no such " + what + ": " + std::string(word));
}

// ---- Preferences and timings

/// A control of a form, by what it sets and by its own name.
template <class Window, class Control>
struct NamedControl {
  std::string_view name;
  std::string_view control;
  Control Window::*member;
};

constexpr NamedControl<frmPreferences, TextBox> PreferenceTexts[] = {
    {"Up", "txtUp", &frmPreferences::txtUp},
    {"Down", "txtDown", &frmPreferences::txtDown},
    {"Delay", "txtDelay", &frmPreferences::txtDelay},
    {"BarColumns", "txtColumns", &frmPreferences::txtColumns},
    {"BarRows", "txtRows", &frmPreferences::txtRows},
    {"BarGap", "txtGap", &frmPreferences::txtGap},
    {"NUMSubs", "txtNumSubs", &frmPreferences::txtNumSubs}};

constexpr NamedControl<frmPreferences, CheckBox> PreferenceBoxes[] = {
    {"DMXNothing", "chkDMXNothing", &frmPreferences::chkDMXNothing},
    {"DMXDimmers", "chkDMXDimmers", &frmPreferences::chkDMXDimmers},
    {"DMXSubmasters", "chkDMXSubmasters", &frmPreferences::chkDMXSubmasters},
    {"Record", "chkRecord", &frmPreferences::chkRecord},
    {"Base", "chkTrigger", &frmPreferences::chkTrigger}};

/// Fills in the form and presses Save.
template <class Fill>
Action inPreferences(Fill fill) {
  return [fill](Operator& op) {
    op.desk.frame.SSActiveToolBars1_ToolClick("mnuEditPreferences");
    frmPreferences& form = op.desk.windows.Preferences;
    fill(op.desk, form);
    form.cmdSave.click();
  };
}

bool readSwitch(Words words) {
  return readWhole("VALUE", words.size() < 3 ? "" : asTyped(words.subspan(2)), 0, 1) != 0;
}

constexpr NamedControl<frmTimings, TextBox> TimingFields[] = {
    {"OutRate", "txtOutRate", &frmTimings::txtOutRate},
    {"InRate", "txtInRate", &frmTimings::txtInRate},
    {"FadeRate", "txtFadeRate", &frmTimings::txtFadeRate},
    {"DisplayRate", "txtDisplayRate", &frmTimings::txtDisplayRate},
    {"SubsRate", "txtSubsRate", &frmTimings::txtSubsRate},
    {"CalcRate", "txtCalcRate", &frmTimings::txtCalcRate},
    {"NumFixtures", "txtNumFixtures", &frmTimings::txtNumFixtures}};

}  // namespace

Action subMaster(Words words) {
  using SubCommand = Command<Action (*)(Words)>;
  static constexpr SubCommand Commands[] = {{"record", 1, AnyNumber, record}, {"delete", 1, 1, remove}};
  const Words rest = words.subspan(1);
  if (std::ranges::any_of(Commands, [&](const SubCommand& each) { return each.word == rest[0]; }))
    return commandOf(Commands, rest, "").make(words);
  if (rest.size() != 2) wrong("wrong number of arguments for sub");
  return moveFader(words);
}

Action bumpSubMaster(Words words) {
  return byHand([button = readButton(words[1])](frmSubPane& panel) { panel.Label1_Click(button); });
}

Action grandMaster(Words words) {
  const auto end = [](Button frmGrandMaster::*button) -> Action {
    return [button](Operator& op) {
      frmGrandMaster& dialog = op.desk.windows.GrandMaster;
      if (!dialog.Window.Visible) wrong("the grand master isn't open");
      (dialog.*button).click();
    };
  };
  if (words[1] == "ok") return end(&frmGrandMaster::cmdOK);
  if (words[1] == "cancel") return end(&frmGrandMaster::cmdCancel);
  const auto value =
      static_cast<int>(readWhole("VALUE", words[1], frmGrandMaster::Bottom, frmGrandMaster::Top));
  return [value](Operator& op) {
    frmGrandMaster& dialog = op.desk.windows.GrandMaster;
    if (!dialog.Window.Visible) op.desk.frame.SSActiveToolBars1_ToolClick("ID_GrandMaster");
    dialog.VSlider1.setValue(value);
    dialog.VSlider1_Scroll();
  };
}

/// The box that shows the panel doesn't say whether it does: it is clicked until it does what is meant.
Action setPreference(Words words) {
  const std::string_view key = words[1];
  if (means(key, "PREF_SHOWSUBS") || means(key, "chkShowSub"))
    return inPreferences([on = readSwitch(words)](const LightingDesk& desk, frmPreferences& form) {
      constexpr int MostClicks = 2;
      for (int click = 0; click < MostClicks && desk.frame.SubPaneVisible != on; ++click)
        form.chkShowSub.toggle();
    });
  if (const auto* const text = find(PreferenceTexts, key))
    return inPreferences([field = text->member, typed = asTyped(words.subspan(2))](
                             const LightingDesk&, frmPreferences& form) { (form.*field).setText(typed); });
  const auto* const found = find(PreferenceBoxes, key);
  if (found == nullptr) noSuch("preference", key);
  return inPreferences(
      [box = found->member, value = readSwitch(words) ? 1 : 0](const LightingDesk&, frmPreferences& form) {
        if ((form.*box).Value != value) (form.*box).toggle();
      });
}

Action setTiming(Words words) {
  const auto* const found = find(TimingFields, words[1]);
  if (found == nullptr) noSuch("timing", words[1]);
  return [field = found->member, typed = asTyped(words.subspan(2))](Operator& op) {
    frmTimings& dialog = op.desk.windows.Timings;
    op.desk.windows.Preferences.buttonTimings.click();
    (dialog.*field).setText(typed);
    dialog.cmdRefresh.click();
    dialog.Unload();
  };
}

}  // namespace velgrove
