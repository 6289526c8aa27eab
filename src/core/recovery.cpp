#include "core/recovery.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "model/show_file.h"

namespace velgrove {
namespace {

constexpr int LookInterval = 10'000;  // ms

/// A fixture as the next desk finds it: dark, and not drawn yet.
void forgetTheMoment(clsFixture& fixture) {
  fixture.Level = 0;
  for (auto shape : {&clsFixture::Shape, &clsFixture::RectShape, &clsFixture::CenterShape,
                     &clsFixture::CenterShape1, &clsFixture::CenterShape2, &clsFixture::ChannelTextShape,
                     &clsFixture::LevelTextShape, &clsFixture::DMXInTextShape})
    fixture.*shape = 0;
}

/// The bytes of a show with what the operator made; the show itself stays as it is.
std::string writeLasting(clsProject& project) {
  struct Fixtures {
    ~Fixtures() {
      for (const auto& [fixture, before] : all) *fixture = before;
    }
    std::vector<std::pair<std::shared_ptr<clsFixture>, clsFixture>> all;
  } fixtures;
  for (const auto& view : project.colViews())
    for (const auto& fixture : view->colFixtures()) {
      fixtures.all.emplace_back(fixture, *fixture);
      forgetTheMoment(*fixture);
    }
  return writeShow(project);
}

std::string withoutBlanks(std::string text) {
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

/// Whether a file's bytes are the very show of a copy.
bool isSame(const std::string& file, const std::string& show) {
  const auto project = readShow(file, DMXInputRecords::Leave).project;
  return project != nullptr && writeLasting(*project) == show;
}

/// What a damaged file holds, for whoever wants to try again with it.
std::optional<std::string> damagedOnly(const std::optional<std::string>& file) {
  if (!file || readShow(*file, DMXInputRecords::Leave).faults.empty()) return {};
  return file;
}

Box question(const FoundCopy& found, const RecoveryCopy& copy) {
  std::string text = "The show \"" + copy.name +
                     "\" has changes that were not saved before the desk ended.\n\n" + "File: " + copy.file +
                     "\nCopy made: " + found.made + "\n";
  if (found.fileIsNewer) text += "The file has been saved since.\n";
  text += "\nWould you like to open the copy? No keeps it in the folder \"recovery\" beside the shows.";
  return {.text = text, .buttons = BoxButtons::YesNo, .icon = BoxIcon::Question};
}

}  // namespace

Recovery::Recovery(ShowState& show, Machine& machine, Wiring wiring)
    : m_show(show),
      m_machine(machine),
      m_wiring(std::move(wiring)),
      m_timer(machine.timers, TimerRank::Recovery, LookInterval, [this] { keep(); }) {
  if (!m_wiring.dataFolder.empty())
    m_folder = std::make_shared<RecoveryFolder>(m_wiring.dataFolder / "recovery", m_wiring.disk);
}

void Recovery::start() {
  m_timer.setEnabled(m_folder != nullptr);
}

// ---- Keeping

void Recovery::keep() {
  if (m_show.ProjectDirty) follow();
}

void Recovery::opened() {
  m_safe = copyOfShow();
  follow();
}

void Recovery::saveBegins() {
  m_saving = copyOfShow();
}

/// What was changed while the disk wrote isn't in the file.
void Recovery::saved() {
  m_told = false;
  m_safe = std::exchange(m_saving, "");
  follow();
}

void Recovery::letGo() {
  m_told = false;
  want("");
}

/// "" when no show is open, or no copies are kept.
std::string Recovery::copyOfShow() const {
  if (m_folder == nullptr || m_show.Projects.count() == 0) return "";
  clsProject& project = *m_show.Projects.item(m_show.Projects.count());
  return writeCopy({.file = m_wiring.openFile(),
                    .name = withoutBlanks(project.ProjectName.str()),
                    .show = writeLasting(project)});
}

void Recovery::follow() {
  try {
    const std::string copy = copyOfShow();
    want(copy == m_safe ? "" : copy);
  } catch (const RunTimeError& error) {
    failed(error.what());
  }
}

/// A copy that is written late would outlive the save that made it needless, so the removal goes the same
/// way: what was wanted last is what comes to stand on the disk.
void Recovery::want(const std::string& bytes) {
  if (m_folder == nullptr || m_kept == bytes) return;
  m_kept = bytes;
  m_machine.inBackground(
      [folder = m_folder, bytes] {
        if (bytes.empty())
          folder->remove();
        else
          folder->write(bytes);
      },
      [this](const std::string& reason) { failed(reason); });
}

/// Once: a disk that is full stays so for the evening.
void Recovery::failed(const std::string& reason) {
  m_kept.reset();
  if (std::exchange(m_told, true)) return;
  m_machine.boxes.post(
      {.text = "Unsaved changes can't be kept in a recovery copy.\n\n" + reason, .icon = BoxIcon::Warning});
}

// ---- Offering

bool Recovery::offer() {
  if (m_folder == nullptr) return false;
  std::vector<FoundCopy> all;
  onDisk([&] { all = m_folder->find(); });
  return std::ranges::any_of(all, [this](const FoundCopy& found) { return offer(found); });
}

bool Recovery::offer(const FoundCopy& found) {
  if (!found.copy) {
    m_machine.boxes.show(
        {.text = "A recovery copy can't be read.\n\n" + found.fault, .icon = BoxIcon::Warning});
    if (!found.unread) setAside(found, RecoveryFolder::Unreadable);
    return false;
  }
  const RecoveryCopy& copy = *found.copy;
  if (found.inFile && isSame(*found.inFile, copy.show)) {
    onDisk([&] { RecoveryFolder::remove(*found.slot); });
    return false;
  }
  if (m_machine.boxes.show(question(found, copy)) == BoxAnswer::Yes) return open(found, copy);
  setAside(found, RecoveryFolder::Declined);
  return false;
}

/// The copy becomes this desk's own before it is opened, so that it stays until the show is saved.
bool Recovery::open(const FoundCopy& found, const RecoveryCopy& copy) {
  m_folder->adopt(found.slot);
  m_kept = found.bytes;
  if (m_wiring.openCopy(copy, damagedOnly(found.inFile))) return true;
  m_kept = "";
  setAside(found, RecoveryFolder::Unreadable);
  return false;
}

void Recovery::setAside(const FoundCopy& found, const char* name) const {
  onDisk([&] { m_folder->setAside(found, name); });
}

/// At the start, with the operator waiting: a disk that refuses is told, and the start goes on.
void Recovery::onDisk(const std::function<void()>& work) const {
  try {
    m_machine.aside(work);
  } catch (const RunTimeError& error) {
    m_machine.boxes.show({.text = error.what(), .icon = BoxIcon::Warning});
  }
}

}  // namespace velgrove
