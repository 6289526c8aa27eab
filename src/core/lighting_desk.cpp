#include "core/lighting_desk.h"

#include <algorithm>

#include "controls/files.h"
#include "model/registry_settings.h"
#include "model/show_file.h"
#include "plot/shapes.h"

namespace velgrove {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t RecentFilesUsed = 10;

/// A file of a folder; none when there is no folder.
std::filesystem::path fileIn(const std::filesystem::path& folder, const char* name) {
  return folder.empty() ? std::filesystem::path() : folder / name;
}

}  // namespace

LightingDesk::LightingDesk(Clock clock, const MessageBoxes& boxes, Wiring wiring)
    : machine(std::move(clock), boxes),
      store(fileIn(wiring.settingsFolder, "settings.toml")),
      userStore(fileIn(wiring.settingsFolder, "user.toml")),
      Settings(userStore, wiring.applicationFolder, "velgrove"),
      Fixtures(machine, wiring.windows.graphics),
      windows(show, machine, wiring.windows),
      frame(show, machine, windows,
            {.setting = [this](const std::string& section, const std::string& key,
                               const std::string& fallback) { return setting(section, key, fallback); }}),
      m_wiring(std::move(wiring)) {
  machine.timers.onUnhandled = [this](const RunTimeError&) { m_wiring.quit(); };
}

std::string LightingDesk::setting(const std::string& section, const std::string& key,
                                  const std::string& fallback) const {
  return GetStringSetting(store, "Velgrove", section, key, fallback);
}

void LightingDesk::Main() {
  const auto inputMode = [this](const char* key) { return toNumber(setting("Project", key, "0")) != 0; };
  machine.errors.steps(
      [&] {
        if (store.message()) machine.boxes.show({.text = *store.message(), .icon = BoxIcon::Warning});
      },
      [&] {
        for (const ShapeName& shape : ShapeNames) Fixtures.GetFixtureShape(shape.name, shape.id);
      },
      [&] { Settings.Init(); }, [&] { readRecentList(); },
      [&] { show.DMXSubmasters = inputMode("DMXSubmasters"); },
      [&] { show.DMXDimmers = inputMode("DMXDimmers"); }, [&] { frame.MDIForm_Load(); },
      [&] { frame.Window.Visible = true; }, [&] { m_wiring.raisePriority(); },
      [&] {
        windows.Comm.Form_Load();
        windows.Comm.Window.Visible = true;
        windows.Comm.InitVelgrove();
      },
      [&] { machine.Sleep(1000ms); }, [&] { m_wiring.openShow(); });
  if (show.CurrentProjectIndex < 1) return;
  machine.errors.steps([&] { clearFixtures(); }, [&] { clearLevels(); });
}

void LightingDesk::act(const std::function<void()>& action) const {
  try {
    action();
  } catch (const RunTimeError&) {
    m_wiring.quit();
  }
}

void LightingDesk::clearFixtures() {
  if (windows.ActiveDocument == nullptr) throw RunTimeError(Fault::ObjectMissing, "no document is open");
  const auto view = windows.ActiveDocument->GetCurrentView();
  for (const auto& fixture : view->colFixtures()) {
    fixture->Level = 0;
    windows.ActiveDocument->DeleteTextOnShape(*fixture);
    show.LevelTextSource = 0;
    windows.ActiveDocument->DrawTextOnShape(*fixture);
  }
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

void LightingDesk::readRecentList() {
  std::error_code missing;
  if (m_wiring.dataFolder.empty() || !std::filesystem::exists(recentList(), missing)) return;
  const std::string text = readFile(recentList());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    std::string line = text.substr(at, end - at);
    if (line.ends_with('\r')) line.pop_back();
    const auto index = static_cast<std::size_t>(show.MRUCount);
    if (index >= show.MRUList.size())
      throw RunTimeError(Fault::Subscript, "the recent list has too many lines");
    show.MRUList[index] = std::move(line);
    ++show.MRUCount;
    at = end + 1;
  }
}

void LightingDesk::SaveAll() {
  machine.errors.steps(
      [&] {
        const std::string bytes = writeShow(*show.Projects.item(show.CurrentProjectIndex));
        show.ProjectDirty = false;
        try {
          writeFileSafely(show.ProjectFileName, bytes, Backup::Keep);
        } catch (const RunTimeError&) {
          show.ProjectDirty = true;
          throw;
        }
      },
      [&] { noteRecentFile(); });
}

/// Only what was listed at start is looked for, so that a file saved for the first time can stand there twice
/// until the next start.
void LightingDesk::noteRecentFile() {
  auto& list = show.MRUList;
  auto* const listed = list.begin() + show.MRUCount;
  auto* old = std::find(list.begin(), listed, show.ProjectFileName);
  if (old == listed) old = list.begin() + (RecentFilesUsed - 1);
  std::move_backward(list.begin(), old, old + 1);
  list.front() = show.ProjectFileName;
  if (m_wiring.dataFolder.empty()) return;

  std::string text;
  for (std::size_t i = 0; i < RecentFilesUsed && !list[i].empty(); ++i) text += list[i] + "\r\n";
  std::error_code failure;
  std::filesystem::create_directories(m_wiring.dataFolder, failure);
  writeFileSafely(recentList(), text, Backup::None);
}

void LightingDesk::ShutdownApp() {
  windows.Comm.SetDMXState(false);
  windows.Effects.ChaseTimer.setEnabled(false);
  windows.unloadPlayers();
  windows.closeDocuments();
  windows.Comm.CloseVelgrove();
}

}  // namespace velgrove
