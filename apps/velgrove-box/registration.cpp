#include "velgrove-box/registration.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "controls/faults.h"
#include "dmx/box_folder.h"

namespace velgrove {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view NameCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";
constexpr std::size_t LongestName = 64;

[[noreturn]] void throwFault(const fs::path& path, const std::string& why) {
  throw RunTimeError(Fault::File, path.string() + ": " + why);
}

void makeFolder(const fs::path& folder) {
  for (const fs::path& part : {folder.parent_path(), folder})
    if (mkdir(part.c_str(), S_IRWXU) != 0 && errno != EEXIST) throwFault(part, std::strerror(errno));
  if (!isTrustedBoxFolder(folder)) throwFault(folder, "not a folder of yours that is shut to all others");
}

const fs::path& madeFolder(const fs::path& folder) {
  makeFolder(folder);
  return folder;
}

}  // namespace

bool isBoxName(const std::string& name) {
  return !name.empty() && name.size() <= LongestName && name.front() != '.' && name.front() != '-' &&
         name.find_first_not_of(NameCharacters) == std::string::npos;
}

BoxName::BoxName(const fs::path& folder, const std::string& name) : m_lockFile(boxLockFile(folder, name)) {
  while (!take(name)) continue;
}

BoxName::~BoxName() {
  (void)unlink(m_lockFile.c_str());  // at worst a lock that nobody holds is left, as after a crash
  (void)close(m_descriptor);
}

/// False when the file that got locked is no longer the one of that name: its last owner has just ended.
bool BoxName::take(const std::string& name) {
  m_descriptor = open(m_lockFile.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  m_fresh = m_descriptor >= 0;
  if (!m_fresh && errno == EEXIST) m_descriptor = open(m_lockFile.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC);
  if (m_descriptor < 0 && errno == ENOENT && fs::exists(m_lockFile.parent_path())) return false;
  if (m_descriptor < 0) throwFault(m_lockFile, std::strerror(errno));

  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  if (fcntl(m_descriptor, F_OFD_SETLK, &lock) != 0) {
    (void)close(m_descriptor);
    throwFault(m_lockFile.parent_path() / name,
               "a box of this name is running; --name gives this one another");
  }
  struct stat held {};
  struct stat named {};
  if (fstat(m_descriptor, &held) == 0 && stat(m_lockFile.c_str(), &named) == 0 && held.st_ino == named.st_ino)
    return true;
  (void)close(m_descriptor);
  return false;
}

BoxRegistration::BoxRegistration(const fs::path& folder, const std::string& name)
    : m_link(folder / name), m_name(madeFolder(folder), name) {
  std::error_code error;
  const auto standing = fs::symlink_status(m_link, error);
  if (fs::exists(standing) && !fs::is_symlink(standing))
    throwFault(m_link, "something that is no box stands there");
  // A link without a lock is no crashed box of ours. While its terminal stands, it is somebody's.
  if (m_name.isFresh() && fs::exists(m_link, error))
    throwFault(m_link, "a box of this name is registered at " + fs::read_symlink(m_link, error).string());
}

void BoxRegistration::publish(const std::string& terminal) {
  const fs::path fresh = m_link.parent_path() / ("." + m_link.filename().string() + ".new");
  std::error_code error;
  fs::remove(fresh, error);
  if (!error) fs::create_symlink(terminal, fresh, error);
  if (!error) fs::rename(fresh, m_link, error);
  if (error) throwFault(m_link, error.message());
  m_terminal = terminal;
}

void BoxRegistration::withdraw() {
  std::error_code error;
  if (!m_terminal.empty() && fs::read_symlink(m_link, error) == m_terminal) fs::remove(m_link, error);
  m_terminal.clear();
}

}  // namespace velgrove
