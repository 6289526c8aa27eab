#include "core/frm_main.h"

#include <algorithm>

#include "controls/files.h"
#include "model/show_file.h"

namespace velgrove {
namespace {

using namespace std::chrono_literals;

constexpr Milliseconds DrawingCloses = 500ms;  // the plot lets go of its drawing
constexpr const char* Title = "Velgrove";

}  // namespace

const std::array<frmMain::Command, 8> frmMain::Commands{{
    {"ID_Go", &frmMain::go},
    {"ID_StopFade", &frmMain::stopFade},
    {"ID_QPlus", &frmMain::nextStageCue},
    {"ID_QMinus", &frmMain::previousStageCue},
    {"ID_CueReset", &frmMain::resetCue},
    {"ID_noInput", &frmMain::noInput},
    {"ID_manualOn", &frmMain::inputToFixtures},
    {"ID_subsOn", &frmMain::inputToSubmasters},
}};

void frmMain::SSActiveToolBars1_ToolClick(std::string_view id) {
  const auto* const command = std::ranges::find(Commands, id, &Command::id);
  if (command != Commands.end()) (this->*command->action)();
}

std::int16_t frmMain::number(const std::string& key) const {
  return toInteger<std::int16_t>(m_wiring.setting("Project", key, "0"));
}

void frmMain::MDIForm_Load() {
  const auto size = [this](const char* key, const char* fallback) {
    return static_cast<float>(toNumber(m_wiring.setting("Settings", key, fallback)));
  };
  auto& errors = m_machine.errors;
  errors.steps([&] { Window.Left = size("MainLeft", "1000"); }, [&] { Window.Top = size("MainTop", "1000"); },
               [&] { Window.Width = size("MainWidth", "6500"); },
               [&] { Window.Height = size("MainHeight", "6500"); },
               [&] { m_show.DefaultDown = number("Down"); }, [&] { m_show.DefaultDelay = number("Delay"); },
               [&] { m_show.DefaultUp = number("Up"); }, [&] { m_show.BarColumns = number("BarColumns"); },
               [&] { m_show.BarRows = number("BarRows"); }, [&] { m_show.BarGap = number("BarGap"); },
               [&] {
                 for (auto& slot : m_show.SubMasterSlots) slot = std::make_shared<clsSubMaster>();
               },
               [&] { m_show.PrefShowSubs = number("PREF_SHOWSUBS"); });
}

// ---- Commands on the XY player, which alone follows the frame's tools

QueueList& frmMain::shownXY() {
  QueueList& player = m_windows.xyPlayer();
  player.Window.Visible = true;
  return player;
}

void frmMain::go() {
  m_machine.errors.steps(
      [&] {
        QueueList& player = shownXY();
        const GoFromOutside outside(m_show);
        player.cmdGoForward_Click();
      },
      [&] { m_windows.endRepaints(); });
}

void frmMain::stopFade() {
  m_machine.errors.run([&] { shownXY().cmdStop_Click(); });
}

void frmMain::nextStageCue() {
  m_machine.errors.steps([&] { m_windows.endRepaints(); }, [&] { shownXY().cmdAdvanceStageCue_Click(); });
}

void frmMain::previousStageCue() {
  m_machine.errors.steps([&] { m_windows.endRepaints(); }, [&] { shownXY().cmdDecrementStageCue_Click(); });
}

void frmMain::resetCue() {
  m_machine.errors.run([&] { shownXY().ResetStageCue(); });
}

// ---- What received levels do

void frmMain::setInput(bool dimmers, bool submasters) {
  m_show.DMXDimmers = dimmers;
  m_show.DMXSubmasters = submasters;
  m_windows.Comm.RecieveTimer.setEnabled(dimmers || submasters);
}

void frmMain::noInput() {
  setInput(false, false);
}
void frmMain::inputToFixtures() {
  setInput(true, false);
}
void frmMain::inputToSubmasters() {
  setInput(false, true);
}

// ---- The life of a show

bool frmMain::LoadProject(std::int16_t index) {
  if (m_show.ProjectFileName.empty()) {
    m_machine.errors.run([&] { CloseViews(); });
    return false;
  }
  const auto project = readProject();
  if (project == nullptr) return false;

  auto& errors = m_machine.errors;
  errors.steps([&] { CloseViews(); },
               [&] {
                 if (m_show.Projects.count() > 0) m_show.Projects.Remove(m_show.Projects.count());
                 m_show.Projects.add(project);
                 m_show.CurrentProjectIndex = index;
                 Window.Caption = std::string(Title) + " - " + project->ProjectName.str();
                 m_show.CurrentViewIndex = 0;
               });
  for (int view = 1; view <= project->colViews().count(); ++view) {
    ++m_show.CurrentViewIndex;
    errors.run([&] { LoadDoc(); });
  }
  errors.run([&] { m_windows.loadPlayers(); });
  return true;
}

/// Reads the show before anything is closed. A box tells why it can't be read, or what of it is missing.
std::shared_ptr<clsProject> frmMain::readProject() const {
  const std::string& file = m_show.ProjectFileName;
  try {
    const ShowRead read = readShow(readFile(file), DMXInputRecords::Leave);
    if (!read.faults.empty()) {
      std::string text = file + (read.project == nullptr ? " is no show.\n" : " is damaged.\n");
      for (const FileFault& fault : read.faults) text += "\n" + describe(fault);
      m_machine.boxes.show({.text = text, .icon = BoxIcon::Warning});
    }
    return read.project;
  } catch (const RunTimeError& error) {
    m_machine.boxes.show({.text = error.what(), .icon = BoxIcon::Critical});
    return nullptr;
  }
}

void frmMain::LoadDoc() {
  ++m_show.OpenDocumentCount;
  m_windows.openDocument();
}

/// With one view this closes its window. Of a show of several views the earlier windows stay until exit.
void frmMain::CloseViews() {
  for (auto times = m_show.OpenDocumentCount; times > 0; --times) {
    m_windows.closeDocument();
    m_machine.Sleep(DrawingCloses);
    --m_show.OpenDocumentCount;
  }
}

}  // namespace velgrove
