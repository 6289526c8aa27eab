#include "core/lighting_desk.h"

#include <algorithm>
#include <utility>

#include "controls/files.h"
#include "core/first_shows.h"
#include "core/recent_list.h"
#include "model/registry_settings.h"

namespace velgrove {
namespace {

using namespace std::chrono_literals;

constexpr int KeepBoothAfter = 1000;  // ms: a hand that steps through the sizes makes one write

/// A file of a folder; none when there is no folder.
std::filesystem::path fileIn(const std::filesystem::path& folder, const char* name) {
  return folder.empty() ? std::filesystem::path() : folder / name;
}

}  // namespace

LightingDesk::LightingDesk(Clock clock, const MessageBoxes& boxes, Wiring wiring)
    : machine(std::move(clock), boxes),
      store(fileIn(wiring.settingsFolder, "settings.toml"), wiring.disk,
            [this](const auto& work) { machine.aside(work); }),
      userStore(fileIn(wiring.settingsFolder, "user.toml")),
      Settings(userStore, wiring.applicationFolder, "velgrove"),
      Fixtures(machine, wiring.windows.graphics),
      windows(show, machine, tied(wiring.windows)),
      Help(wiring.manualFolder),
      WanttoSave(
          show, machine,
          {.SaveAll = [this] { return SaveAll(); }, .frameCaption = [this] { return frame.Window.Caption; }}),
      OpenProject(show, machine,
                  {.LoadNewProject = [this] { frame.LoadNewProject(); },
                   .LoadProject = [this](std::int16_t index) { return frame.LoadProject(index); },
                   .DisableTools = [this] { frame.DisableTools(); },
                   .dataFolder = wiring.dataFolder,
                   .drives = wiring.drives}),
      frame(show, machine, windows, frameWiring()),
      m_wiring(std::move(wiring)),
      m_keepBooth(machine.timers, TimerRank::Recovery, KeepBoothAfter, [this] { saveBooth(); }),
      m_recovery(show, machine, recoveryWiring()),
      m_saver(show, machine,
              {.begins = [this] { m_recovery.saveBegins(); },
               .saved = [this] { m_recovery.saved(); },
               .dataFolder = m_wiring.dataFolder,
               .disk = m_wiring.disk}) {
  furnish();
  machine.timers.onUnhandled = [this](const RunTimeError&) { m_wiring.quit(); };
}

/// What the windows below tell the frame and the splash.
Windows::Wiring LightingDesk::tied(Windows::Wiring wiring) {
  wiring.showCuePanel = [this](const std::string& text) {
    frame.SSActiveToolBars1.tool("ID_CueWindow").Caption = text;
  };
  wiring.showStatus = [this](const std::string& text) { frame.StatusMessage = text; };
  wiring.focusFrame = [this] { frame.Window.SetFocus(); };
  wiring.showSubPane = [this](bool visible) { frame.SubPaneVisible = visible; };
  wiring.setting = [this](const std::string& key) { return setting("Project", key, "0"); };
  wiring.saveSettings = [this](const SettingTexts& texts) { store.setTexts("Velgrove", "Project", texts); };
  wiring.interfaceState = [this] { return interfaceState(); };
  wiring.boothChanged = [this] { m_keepBooth.setEnabled(true); };
  wiring.cueEdited = [this] { m_recovery.keep(); };
  wiring.interface.repaint = [this, repaint = std::move(wiring.interface.repaint)] {
    Splash.Status.Caption = windows.Comm.Version.Caption;
    repaint();
  };
  return wiring;
}

frmMain::Wiring LightingDesk::frameWiring() {
  return {.setting = [this](const std::string& section, const std::string& key,
                            const std::string& fallback) { return setting(section, key, fallback); },
          .saveSetting = [this](const std::string& section, const std::string& key,
                                const std::string& value) { saveSetting(section, key, value); },
          .boothChanged = [this] { m_keepBooth.setEnabled(true); },
          .saveBooth = [this] { saveBooth(); },
          .SaveAll = [this] { return SaveAll(); },
          .ShutdownApp = [this] { ShutdownApp(); },
          .showOpened =
              [this] {
                m_recovery.opened();
                windows.ShowView.restore();
              },
          .showLeft = [this] { m_recovery.letGo(); },
          .forms =
              [this] {
                std::vector<Form*> forms;
                for (const OpenForm& open : openForms()) forms.push_back(open.form);
                return forms;
              },
          .showSplash = [this] { showSplash(); },
          .showAbout = [this] { About.Form_Load(); },
          .askToSave = [this] { WanttoSave.ShowModal(); },
          .showOpenProject = [this](OpenTab tab) { OpenProject.Show(tab); },
          .showHelp = Help.Exists ? [this] { Help.Show(); } : std::function<void()>()};
}

Recovery::Wiring LightingDesk::recoveryWiring() {
  return {.openFile = [this] { return frame.openFile(); },
          .openCopy =
              [this](const RecoveryCopy& copy, std::optional<std::string> damaged) {
                return frame.LoadRecovered(copy, std::move(damaged));
              },
          .dataFolder = m_wiring.dataFolder,
          .disk = m_wiring.disk};
}

// ---- Settings

std::string LightingDesk::setting(const std::string& section, const std::string& key,
                                  const std::string& fallback) const {
  return GetStringSetting(store, "Velgrove", section, key, fallback);
}

void LightingDesk::saveSetting(const std::string& section, const std::string& key, const std::string& value) {
  SaveStringSetting(store, "Velgrove", section, key, value);
}

/// A screen that changes its looks waits for no disk: they are kept a moment later.
void LightingDesk::saveBooth() {
  m_keepBooth.setEnabled(false);
  store.setTexts("Velgrove", BoothSettings::Section, textsOf(show.Booth));
}

/// A new desk has bars to show. One that keeps no settings is driven by a program, which sends a trigger when
/// it means one.
void LightingDesk::furnish() {
  const auto begin = [this](const char* key, const char* text) {
    store.furnish("Velgrove", "Project", key, text);
  };
  if (store.isNew()) {
    begin("BarColumns", "24");
    begin("BarRows", "8");
    begin("BarGap", "100");
  }
  if (m_wiring.settingsFolder.empty()) begin("Base", "1");
}

// ---- Start-up

void LightingDesk::Main() {
  const auto inputMode = [this](const char* key) { return toNumber(setting("Project", key, "0")) != 0; };
  machine.errors.steps(
      [&] {
        if (store.message()) machine.boxes.show({.text = *store.message(), .icon = BoxIcon::Warning});
      },
      [&] { show.Booth = readBoothSettings(store); }, [&] { prepareShapes(); },
      [&] { std::fill_n(show.MRUList.begin(), RecentFilesUsed, ""); }, [&] { Settings.Init(); },
      [&] { bringFirstShows(); }, [&] { readRecentFiles(); },
      [&] { show.DMXSubmasters = inputMode("DMXSubmasters"); },
      [&] { show.DMXDimmers = inputMode("DMXDimmers"); }, [&] { frame.MDIForm_Load(); },
      [&] { OpenProject.Form_Load(); }, [&] { frame.Window.Visible = true; },
      [&] { m_wiring.raisePriority(); }, [&] { startInterface(); }, [&] { machine.Sleep(1000ms); },
      [&] { openFirstShow(); });
  if (show.CurrentProjectIndex < 1) return;
  machine.errors.steps([&] { clearFixtures(); }, [&] { clearLevels(); });
}

/// The hidden window of the shapes prepares them when it is first asked for one, and then each as it is
/// asked: all are prepared twice.
void LightingDesk::prepareShapes() {
  for (std::size_t type = 0; type < FixtureTypes.size(); ++type)
    Fixtures.GetFixtureShape(std::string(FixtureTypes[type]), static_cast<std::int16_t>(type + 1));
}

/// Those that can't be brought are told, since the next start finds the folder there and doesn't try again.
void LightingDesk::bringFirstShows() {
  try {
    machine.aside([this] { velgrove::bringFirstShows(m_wiring.firstShows, m_wiring.dataFolder); });
  } catch (const RunTimeError& error) {
    if (error.fault() != Fault::File) throw;
    machine.boxes.show(
        {.text = "The shows that come with the desk couldn't be copied.\n\n" + std::string(error.what()),
         .icon = BoxIcon::Warning});
  }
}

void LightingDesk::readRecentFiles() {
  std::error_code missing;
  const auto file = fileIn(m_wiring.dataFolder, RecentListFile);
  if (file.empty() || !std::filesystem::exists(file, missing)) return;
  std::string text;
  machine.aside([&] { text = readFile(file); });
  readRecentList(show, text);
}

void LightingDesk::showSplash() {
  Splash.Starting = true;
  Splash.Form_Load();
  machine.waitUntil([this] { return Splash.Painted; });
}

void LightingDesk::startInterface() {
  windows.Comm.Form_Load();
  windows.Comm.Window.Loaded = true;
  windows.Comm.Window.Visible = true;
  windows.Comm.InitVelgrove();
}

void LightingDesk::openFirstShow() {
  Splash.Unload();
  Splash.Starting = false;
  m_recovery.start();
  if (m_wiring.openShow)
    m_wiring.openShow();
  else if (!m_recovery.offer())
    chooseFirstShow();
  if (show.CurrentProjectIndex > 0) windows.ShowView.restore();  // a recovered show is opened by nobody
}

void LightingDesk::chooseFirstShow() {
  if (!m_wiring.offered.empty()) OpenProject.offer(m_wiring.offered);
  OpenProject.ShowModal();
}

/// Actions stand inside each other while one of them waits.
class LightingDesk::Acting {
 public:
  explicit Acting(LightingDesk& desk) : m_desk(desk) { ++m_desk.m_acting; }
  ~Acting() {
    if (--m_desk.m_acting == 0) m_desk.windows.forgetRetired();
  }
  Acting(const Acting&) = delete;
  Acting& operator=(const Acting&) = delete;

 private:
  LightingDesk& m_desk;
};

void LightingDesk::act(const std::function<void()>& action) {
  const Acting acting(*this);
  try {
    action();
  } catch (const RunTimeError&) {
    m_wiring.quit();
  }
}

void LightingDesk::clearFixtures() {
  frmDocument& document = frame.ActiveForm();
  const auto view = document.GetCurrentView();
  // By position: an open box lets other handlers change the plot.
  for (int position = 1; position <= view->colFixtures().count(); ++position)
    machine.errors.run([&] {
      const auto fixture = view->colFixtures().item(position);
      fixture->Level = 0;
      document.DeleteTextOnShape(*fixture);
      show.LevelTextSource = 0;
      document.DrawTextOnShape(*fixture);
    });
}

void LightingDesk::clearLevels() {
  show.XYLevels.fill(0);
  show.ABLevels.fill(0);
  show.DMXOutput.fill(0);
  show.DMXInput.fill(0);
  show.ManualLevels.fill(0);
  show.SubLevels.fill(0);
  show.QueueLevels.fill(0);
  show.LevelSource.fill(0);
}

// ---- The end

void LightingDesk::ShutdownApp() {
  if (!show.ExitConfirmed) m_recovery.keep();  // nobody was asked whether to save
  machine.errors.steps([&] { machine.timers.stopAll(); }, [&] { UnloadAllForms(true); },
                       [&] { windows.Comm.CloseVelgrove(); });
  m_wiring.quit();
}

std::vector<OpenForm> LightingDesk::openForms() {
  std::vector<OpenForm> open;
  const auto note = [&open](Form& form, std::function<void()> unload) {
    if (form.Loaded) open.push_back({.form = &form, .unload = std::move(unload)});
  };
  note(frame.Window, [this] { unloadFrame(); });
  note(Splash.Window, [this] { Splash.Unload(); });
  note(OpenProject.Window, [this] { OpenProject.Unload(); });
  std::ranges::move(windows.openForms(), std::back_inserter(open));
  note(About.Window, [this] { About.Unload(); });
  note(Help.Window, [this] { Help.Unload(); });
  note(WanttoSave.Window, [this] { WanttoSave.Unload(); });
  return open;
}

bool LightingDesk::UnloadAllForms(bool force) {
  // One at a time: the frame takes its documents along.
  const auto unloadNext = [this](auto wanted) {
    const auto open = openForms();
    const auto next = std::ranges::find_if(open, wanted, &OpenForm::form);
    if (next == open.end()) return false;
    next->unload();
    return true;
  };
  const auto standsOverOthers = [](const Form* form) { return form->Visible && form->Modal; };
  while (force && unloadNext(standsOverOthers)) continue;
  while (unloadNext([](const Form*) { return true; })) continue;
  return !frame.Window.Visible;
}

/// Once: behind its last box the frame stays on the screen until the program ends.
void LightingDesk::unloadFrame() {
  bool cancel = false;
  frame.Window.Loaded = false;
  frame.MDIForm_Unload(cancel);
  frame.Window.Visible = cancel;
}

}  // namespace velgrove
