#include "controls/file_lists.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <pwd.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "controls/file_names.h"

namespace velgrove {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

bool isHidden(const std::string& name) {
  return name.starts_with('.');
}

/// The names in a folder of which `wanted` holds, in order.
Names namesIn(const fs::path& folder, bool (*wanted)(const fs::directory_entry&)) {
  Names names;
  std::error_code error;
  for (fs::directory_iterator at(folder, error); !error && at != fs::directory_iterator();
       at.increment(error)) {
    std::string name = at->path().filename();
    if (!isHidden(name) && wanted(*at)) names.push_back(std::move(name));
  }
  if (error) throw RunTimeError(Fault::File, folder.string() + ": " + error.message());
  std::ranges::sort(names, standsBefore);
  return names;
}

bool isFolder(const fs::directory_entry& entry) {
  std::error_code gone;
  return entry.is_directory(gone);
}

bool isFile(const fs::directory_entry& entry) {
  std::error_code gone;
  return entry.is_regular_file(gone);
}

fs::path plain(const fs::path& path) {
  fs::path normal = fs::absolute(path).lexically_normal();
  return normal.has_filename() || normal == normal.root_path() ? normal : normal.parent_path();
}

bool liesIn(const fs::path& path, const fs::path& folder) {
  return std::ranges::mismatch(folder, path).in1 == folder.end();
}

std::size_t checkedIndex(int index, std::size_t count) {
  if (index < 0 || static_cast<std::size_t>(index) >= count)
    throw RunTimeError(Fault::Subscript, "no row " + std::to_string(index));
  return static_cast<std::size_t>(index);
}

bool isMountPoint(const fs::path& folder) {
  struct stat here {};
  struct stat above {};
  return ::stat(folder.c_str(), &here) == 0 && ::stat((folder / "..").c_str(), &above) == 0 &&
         here.st_dev != above.st_dev;
}

/// What is mounted in a folder; nothing in one that this machine hasn't.
Names mountedIn(const fs::path& folder, const DriveRoots& roots) {
  try {
    Names names = namesIn(folder, isFolder);
    std::erase_if(names, [&](const std::string& name) { return !roots.isMounted(folder / name); });
    return names;
  } catch (const RunTimeError&) {
    return {};
  }
}

}  // namespace

DriveRoots systemDriveRoots() {
  const passwd* const user = ::getpwuid(::getuid());
  const char* const home = std::getenv("HOME");
  DriveRoots roots{.home = home != nullptr ? home : "", .mediaFolders = {"/mnt"}, .isMounted = isMountPoint};
  if (user == nullptr) return roots;
  if (home == nullptr) roots.home = user->pw_dir;
  for (const char* media : {"/media", "/run/media"})
    roots.mediaFolders.push_back(fs::path(media) / user->pw_name);
  return roots;
}

// ---- Drives

void DriveListBox::Refresh(const fs::path& holding) {
  std::vector<Item> items;
  m_aside([&] {
    if (!m_roots.home.empty()) items.push_back({.Label = "Home", .Path = plain(m_roots.home)});
    for (const fs::path& media : m_roots.mediaFolders)
      for (const std::string& name : mountedIn(media, m_roots))
        items.push_back({.Label = name, .Path = media / name});
    items.push_back({.Label = "Computer", .Path = m_roots.root});
  });
  ++m_revision;
  m_items = std::move(items);
  m_index = driveOf(holding);
}

fs::path DriveListBox::Drive() const {
  return m_index < 0 ? fs::path() : m_items[static_cast<std::size_t>(m_index)].Path;
}

/// The innermost drive that holds a path; -1 when none does.
int DriveListBox::driveOf(const fs::path& path) const {
  const fs::path wanted = plain(path);
  int best = -1;
  std::size_t longest = 0;
  for (std::size_t i = 0; i < m_items.size(); ++i) {
    const std::size_t length = m_items[i].Path.native().size();
    if (!liesIn(wanted, m_items[i].Path) || length <= longest) continue;
    best = static_cast<int>(i);
    longest = length;
  }
  return best;
}

void DriveListBox::setDrive(const fs::path& path) {
  const int drive = driveOf(path);
  if (drive >= 0 && std::exchange(m_index, drive) != drive) raise(Change);
}

void DriveListBox::choose(int index) {
  m_index = static_cast<int>(checkedIndex(index, m_items.size()));
  raise(Change);  // also when it is chosen again: the stick may have come in meanwhile
}

// ---- Folders

void DirListBox::setPath(const fs::path& path) {
  const fs::path folder = plain(path);
  Names names;
  m_aside([&] { names = namesIn(folder, isFolder); });

  ++m_revision;
  m_rows.clear();
  fs::path way;
  for (const fs::path& part : folder) {
    way /= part;
    m_rows.push_back({.Name = part, .Path = way, .Depth = static_cast<int>(m_rows.size()), .IsOpen = true});
  }
  const int depth = static_cast<int>(m_rows.size());
  for (const std::string& name : names)
    m_rows.push_back({.Name = name, .Path = folder / name, .Depth = depth, .IsOpen = false});
  highlightPath();
  if (std::exchange(m_path, folder) != folder) raise(Change);
}

void DirListBox::highlight(int index) {
  m_index = static_cast<int>(checkedIndex(index, m_rows.size()));
}

fs::path DirListBox::highlighted() const {
  return m_index < 0 ? fs::path() : m_rows[static_cast<std::size_t>(m_index)].Path;
}

void DirListBox::openHighlighted() {
  if (m_index < 0) return;
  const fs::path wanted = highlighted();
  highlightPath();
  try {
    setPath(wanted);
  } catch (const RunTimeError& error) {
    if (error.fault() != Fault::File || !Refused) throw;
    Refused(error);
  }
}

/// The path is the last of the rows that are open.
void DirListBox::highlightPath() {
  m_index = static_cast<int>(std::ranges::count_if(m_rows, &Row::IsOpen)) - 1;
}

// ---- Files

void FileListBox::setPath(const fs::path& path) {
  const fs::path folder = plain(path);
  const bool changed = std::exchange(m_path, folder) != folder;
  Refresh();
  if (changed) raise(PathChange);
}

void FileListBox::setPattern(const std::string& pattern) {
  if (std::exchange(m_pattern, pattern) == pattern) return;
  filter();
  raise(PatternChange);
}

void FileListBox::Refresh() {
  const fs::path folder = m_path;
  m_all.clear();
  filter();
  Names names;
  m_aside([&] { names = namesIn(folder, isFile); });
  m_all = std::move(names);
  filter();
}

void FileListBox::filter() {
  const std::string selected = FileName();
  ++m_revision;
  m_items.clear();
  std::ranges::copy_if(m_all, std::back_inserter(m_items),
                       [this](const std::string& name) { return matchesPattern(name, m_pattern); });
  select(selected);
}

void FileListBox::select(const std::string& name) {
  const auto at = std::ranges::find(m_items, name);
  m_index = at == m_items.end() ? -1 : static_cast<int>(at - m_items.begin());
}

std::string FileListBox::FileName() const {
  return m_index < 0 ? "" : m_items[static_cast<std::size_t>(m_index)];
}

void FileListBox::choose(int index) {
  m_index = static_cast<int>(checkedIndex(index, m_items.size()));
}

void FileListBox::doubleClick(int index) {
  choose(index);
  raise(DblClick);
}

}  // namespace velgrove
