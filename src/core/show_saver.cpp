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

ShowSaver::ShowSaver(ShowState& show, Machine& machine, fs::path dataFolder, Disk disk)
    : m_show(show), m_machine(machine), m_dataFolder(std::move(dataFolder)), m_disk(std::move(disk)) {}

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
  m_show.ProjectDirty = false;
  try {
    if (goesToDataFolder()) m_machine.aside([this] { makeFolder(m_dataFolder); });
    keepDamagedOriginal();
    m_machine.aside([&] { writeFileSafely(file, bytes, Backup::Keep, m_disk); });
  } catch (const RunTimeError&) {
    m_show.ProjectDirty = true;
    throw;
  }
}

/// Whoever opened a damaged show may want to try again with what is left of it.
void ShowSaver::keepDamagedOriginal() {
  if (!m_show.DamagedOriginal) return;
  const std::string original = *m_show.DamagedOriginal;
  const fs::path file = m_show.ProjectFileName;
  m_machine.aside([&] { writeFileSafely(damagedName(file), original, Backup::None, m_disk); });
  m_show.DamagedOriginal.reset();
}

/// The desk makes its own folder; one that the operator named must be there already: it may lie on a stick
/// that isn't plugged in.
bool ShowSaver::goesToDataFolder() const {
  return !m_dataFolder.empty() &&
         fs::path(m_show.ProjectFileName).parent_path() == (m_dataFolder / RecentListFile).parent_path();
}

void ShowSaver::writeRecentList() {
  if (m_dataFolder.empty()) return;
  const std::string text = recentListText(m_show);
  m_machine.aside([&] {
    makeFolder(m_dataFolder);
    writeFileSafely(m_dataFolder / RecentListFile, text, Backup::None, m_disk);
  });
}

}  // namespace velgrove
