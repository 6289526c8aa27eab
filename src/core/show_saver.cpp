#include "core/show_saver.h"

#include <utility>

#include "core/recent_list.h"
#include "model/show_file.h"

namespace velgrove {
namespace {

namespace fs = std::filesystem;

void makeFolder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) throw RunTimeError(Fault::File, folder.string() + ": " + error.message());
}

class Flagged {
 public:
  explicit Flagged(bool& flag) : m_flag(flag) { m_flag = true; }
  ~Flagged() { m_flag = false; }
  Flagged(const Flagged&) = delete;
  Flagged& operator=(const Flagged&) = delete;

 private:
  bool& m_flag;
};

}  // namespace

ShowSaver::ShowSaver(ShowState& show, Machine& machine, Wiring wiring)
    : m_show(show), m_machine(machine), m_wiring(std::move(wiring)) {}

bool ShowSaver::SaveAll() {
  bool saved = false;
  m_machine.errors.steps(
      [&] {
        save();
        saved = true;
      },
      [&] { noteRecentFile(m_show); }, [&] { writeRecentList(); });
  return saved;
}

void ShowSaver::save() {
  m_machine.waitUntil([this] { return !m_saving; });
  const Flagged saving(m_saving);
  const std::string bytes = writeShow(*m_show.Projects.item(m_show.CurrentProjectIndex));
  const fs::path file = m_show.ProjectFileName;
  m_wiring.begins();
  m_show.ProjectDirty = false;
  try {
    if (goesToDataFolder()) m_machine.aside([this] { makeFolder(m_wiring.dataFolder); });
    keepDamagedOriginal();
    m_machine.aside([&] { writeFileSafely(file, bytes, Backup::Keep, m_wiring.disk); });
  } catch (const RunTimeError&) {
    m_show.ProjectDirty = true;
    throw;
  }
  m_wiring.saved();
}

/// Whoever opened a damaged show may want to try again with what is left of it.
void ShowSaver::keepDamagedOriginal() {
  if (!m_show.DamagedOriginal) return;
  const std::string original = *m_show.DamagedOriginal;
  const fs::path file = m_show.ProjectFileName;
  m_machine.aside([&] { writeFileSafely(damagedName(file), original, Backup::None, m_wiring.disk); });
  m_show.DamagedOriginal.reset();
}

/// The desk makes its own folder; one that the operator named must be there already: it may lie on a stick
/// that isn't plugged in.
bool ShowSaver::goesToDataFolder() const {
  return !m_wiring.dataFolder.empty() && fs::path(m_show.ProjectFileName).parent_path() ==
                                             (m_wiring.dataFolder / RecentListFile).parent_path();
}

void ShowSaver::writeRecentList() {
  if (m_wiring.dataFolder.empty()) return;
  const std::string text = recentListText(m_show);
  m_machine.aside([&] {
    makeFolder(m_wiring.dataFolder);
    writeFileSafely(m_wiring.dataFolder / RecentListFile, text, Backup::None, m_wiring.disk);
  });
}

}  // namespace velgrove
