#include "core/frm_main.h"

#include <algorithm>
#include <array>

namespace velgrove {
namespace {

constexpr int HousekeepingInterval = 1000;  // ms
constexpr std::int16_t SubPaneShows = -1;

/// The tools that need an open show.
constexpr std::array ShowTools{"ID_Save",       "ID_SelectPointer",   "ID_AddLight",
                               "ID_SelectGrid", "ID_Rotate",          "ID_ABQ",
                               "ID_XYQ",        "ID_Effects",         "ID_GrandMaster",
                               "ID_LevelWheel", "mnuLightAddFixture", "ID_CueReset",
                               "ID_DelLight",   "ID_FluidZoom",       "ID_Pan",
                               "ID_Test",       "ID_CheckShow",       "ID_PrintSheets"};

}  // namespace

frmMain::frmMain(ShowState& show, Machine& machine, Windows& windows, Wiring wiring)
    : DoEventsTimer(machine.timers, TimerRank::Dialog, HousekeepingInterval, [] {}),
      m_show(show),
      m_machine(machine),
      m_windows(windows),
      m_wiring(std::move(wiring)) {}

void frmMain::MDIForm_Load() {
  Window.Loaded = true;
  m_machine.errors.steps([&] { showDimScreen(); }, [&] { m_wiring.showSplash(); }, [&] { readPosition(); },
                         [&] {
                           m_windows.SubPane.Form_Load();
                           SubPaneVisible = true;
                         },
                         [&] { DisableTools(); },
                         [&] {
                           m_show.StageMode = true;
                           readDefaults();
                         },
                         [&] {
                           for (auto& slot : m_show.SubMasterSlots) slot = std::make_shared<clsSubMaster>();
                         },
                         [&] { m_show.PrefShowSubs = number("PREF_SHOWSUBS"); },
                         [&] { SubPaneVisible = m_show.PrefShowSubs == SubPaneShows; },
                         [&] {
                           sbStatusBar.Text = "online";
                           sbStatusBar.Refresh();
                         });
}

void frmMain::readPosition() {
  const auto size = [this](const char* key, const char* fallback) {
    return static_cast<float>(toNumber(m_wiring.setting("Settings", key, fallback)));
  };
  m_machine.errors.steps(
      [&] { Window.Left = size("MainLeft", "1000"); }, [&] { Window.Top = size("MainTop", "1000"); },
      [&] { Window.Width = size("MainWidth", "6500"); }, [&] { Window.Height = size("MainHeight", "6500"); },
      [&] {
        const bool maximised = size("MainMaximised", "-1") != 0;
        Window.WindowState = maximised ? WindowState::Maximised : WindowState::Normal;
      });
}

void frmMain::savePosition() {
  const auto save = [this](const char* key, float twips) {
    m_wiring.saveSetting("Settings", key, formatSingle(twips));
  };
  save("MainLeft", Window.Left);
  save("MainTop", Window.Top);
  save("MainWidth", Window.Width);
  save("MainHeight", Window.Height);
  m_wiring.saveSetting("Settings", "MainMaximised",
                       Window.WindowState == WindowState::Maximised ? "-1" : "0");
}

std::int16_t frmMain::number(const std::string& key) const {
  return toInteger<std::int16_t>(m_wiring.setting("Project", key, "0"));
}

void frmMain::readDefaults() {
  m_machine.errors.steps(
      [&] { m_show.DefaultDown = number("Down"); }, [&] { m_show.DefaultDelay = number("Delay"); },
      [&] { m_show.DefaultUp = number("Up"); }, [&] { m_show.BarColumns = number("BarColumns"); },
      [&] { m_show.BarRows = number("BarRows"); }, [&] { m_show.BarGap = number("BarGap"); });
}

void frmMain::DisableTools() {
  m_machine.errors.run([&] {
    for (const char* id : ShowTools) SSActiveToolBars1.tool(id).Enabled = false;
  });
}

/// The way to a show always stays open: nothing disables ID_OpenProject.
void frmMain::EnableTools() {
  m_machine.errors.run([&] {
    SSActiveToolBars1.tool("ID_OpenProject").Enabled = true;
    for (const std::string_view id : ShowTools) {
      SSActiveToolBars1.tool(id).Enabled = true;
      if (id == "mnuLightAddFixture") SSActiveToolBars1.tool("ID_CueWindow").Enabled = true;
    }
  });
}

frmDocument& frmMain::ActiveForm() const {
  if (m_windows.ActiveDocument == nullptr) throw RunTimeError(Fault::ObjectMissing, "no document is open");
  return *m_windows.ActiveDocument;
}

// ---- The handlers of the tools

void frmMain::SSActiveToolBars1_ToolClick(std::string_view id) {
  const auto all = commands();
  const auto command = std::ranges::find(all, id, &Command::id);
  if (command != all.end())
    command->run(*this);
  else
    selectTool();
  if (id.find("Document") != std::string_view::npos) focusDocument(id);
}

/// A tool that stands for a window brings it to the front.
void frmMain::focusDocument(std::string_view id) {
  m_machine.errors.run([&] {
    const Tool* const tool = SSActiveToolBars1.find(id);
    const std::string_view name = tool != nullptr ? tool->Name : id;
    for (Form* form : m_wiring.forms())
      if (form->Caption == name) form->SetFocus();
  });
}

void frmMain::SSActiveToolBars1_ToolDropDown(std::string_view name, int x, int y) {
  m_machine.errors.run([&] {
    if (name == "AddLight") SSActiveToolBars1.PopupMenu("mnuLightAddFixture", x, y);
    if (name == "Rotate") SSActiveToolBars1.PopupMenu("mnuLightRotate", x, y);
  });
}

}  // namespace velgrove
