#include "controls/files.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <new>
#include <stdexcept>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace velgrove {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& path, const std::string& reason) {
  throw RunTimeError(Fault::File, path.string() + ": " + reason);
}

[[noreturn]] void fail(const fs::path& path, int error) {
  fail(path, std::generic_category().message(error));
}

/// An open file, closed at the end of its scope.
class OpenFile {
 public:
  OpenFile() = default;
  OpenFile(const fs::path& path, int flags) { (void)open(path, flags); }
  ~OpenFile() {
    if (isOpen()) ::close(m_file);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  /// False with `errno` when it can't; one that was open before is closed.
  [[nodiscard]] bool open(const fs::path& path, int flags, mode_t mode = 0) {
    if (isOpen()) ::close(m_file);
    m_file = ::open(path.c_str(), flags | O_CLOEXEC, mode);
    return isOpen();
  }
  [[nodiscard]] bool isOpen() const { return m_file >= 0; }
  [[nodiscard]] int number() const { return m_file; }
  /// Closes it and says whether all is well: a network disk may tell only now that it is full.
  [[nodiscard]] bool close() { return ::close(std::exchange(m_file, -1)) == 0 || errno == EINTR; }

 private:
  int m_file = -1;
};

fs::path folderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

constexpr std::string_view TemporaryPrefix = ".velgrove-";
constexpr std::string_view TemporarySuffix = ".tmp";

/// A name in the file's folder that nothing has yet; short, because names of shows may be as long as the disk
/// allows.
fs::path temporaryBeside(const fs::path& path) {
  static std::atomic<unsigned> last{0};
  for (;;) {
    std::string name(TemporaryPrefix);
    name += std::to_string(::getpid()) + "-" + std::to_string(++last);
    fs::path free = path.parent_path() / name.append(TemporarySuffix);
    struct stat there {};
    if (::lstat(free.c_str(), &there) != 0) return free;
  }
}

/// A file beside another that is removed at the end of its scope, unless it has moved on. It is locked
/// meanwhile: one without a lock was left behind by a desk that was killed.
class Temporary {
 public:
  explicit Temporary(fs::path target) : m_target(std::move(target)) {}
  ~Temporary() {
    if (!m_path.empty()) ::unlink(m_path.c_str());
  }
  Temporary(const Temporary&) = delete;
  Temporary& operator=(const Temporary&) = delete;

  /// Makes it; `create` gives the name a file. False with `errno` when it can't.
  [[nodiscard]] bool make(const std::function<bool(const char* name)>& create) {
    constexpr int Goes = 20;
    for (int go = 1; go <= Goes; ++go) {
      m_path = temporaryBeside(m_target);
      if (!create(m_path.c_str())) {
        m_path.clear();
        return false;
      }
      // A second name of a file that a stranger has locked stays without a lock of ours in the end; while he
      // holds his, nobody removes it.
      if ((lock() || go == Goes) && isThere()) return true;
      ::unlink(m_path.c_str());
    }
    m_path.clear();
    errno = EBUSY;
    return false;
  }
  void takeName(const fs::path& name) {
    if (::rename(m_path.c_str(), name.c_str()) != 0) fail(name, errno);
    (void)m_lock.close();
  }
  void release() { m_path.clear(); }

 private:
  /// False while somebody else has the lock: a desk that is about to remove it, or one that has just saved
  /// the same show. A disk without locks is one on which nothing is removed.
  [[nodiscard]] bool lock() {
    return !m_lock.open(m_path, O_RDONLY | O_NOFOLLOW) || ::flock(m_lock.number(), LOCK_EX | LOCK_NB) == 0 ||
           errno != EWOULDBLOCK;
  }
  [[nodiscard]] bool isThere() const {
    struct stat there {};
    return ::lstat(m_path.c_str(), &there) == 0;
  }

  fs::path m_target;
  fs::path m_path;
  OpenFile m_lock;
};

/// Removes what desks that were killed in a save have left in a folder.
void removeLeftovers(const fs::path& folder) {
  std::error_code hidden;  // then the writing says why
  for (fs::directory_iterator at(folder, hidden); !hidden && at != fs::directory_iterator();
       at.increment(hidden)) {
    const std::string name = at->path().filename();
    if (!name.starts_with(TemporaryPrefix) || !name.ends_with(TemporarySuffix)) continue;
    const OpenFile left(at->path(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    if (left.isOpen() && ::flock(left.number(), LOCK_EX | LOCK_NB) == 0) ::unlink(at->path().c_str());
  }
}

/// The file behind a name: a show may be reached through a link, and the link stays.
fs::path behindLinks(fs::path path) {
  constexpr int MostLinks = 40;
  std::error_code error;
  for (int links = 0; fs::is_symlink(path, error); ++links) {
    if (links == MostLinks) fail(path, ELOOP);
    const fs::path target = fs::read_symlink(path, error);
    if (error) fail(path, error.value());
    path = path.parent_path() / target;
  }
  return path;
}

bool writeAll(const OpenFile& file, std::string_view bytes, const Disk& disk) {
  while (!bytes.empty()) {
    const ssize_t taken = disk.write(file.number(), bytes);
    if (taken < 0 && errno == EINTR) continue;
    if (taken == 0) errno = ENOSPC;
    if (taken <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(taken));
  }
  return true;
}

/// A stick without permissions refuses them, which is no reason to lose a save.
bool setMode(const OpenFile& file, mode_t mode) {
  return ::fchmod(file.number(), mode & 07777) == 0 || errno == EPERM || errno == ENOTSUP;
}

/// Writes a new file whole and waits until the disk has it. Faults name `target`, which it is going to be.
void writeNew(Temporary& fresh, const fs::path& target, std::string_view bytes, const mode_t* mode,
              const Disk& disk) {
  constexpr mode_t Everyone = 0666;  // the user's mask takes away what it must
  OpenFile file;
  const auto create = [&](const char* name) {
    return file.open(name, O_WRONLY | O_CREAT | O_EXCL, Everyone);
  };
  const bool done = fresh.make(create) && writeAll(file, bytes, disk) &&
                    (mode == nullptr || setMode(file, *mode)) && disk.flush(file.number()) == 0 &&
                    file.close();
  if (!done) fail(target, errno);
}

/// Gives the old version its second name. The first one stays until the new version takes it over, so that at
/// no moment the show is without a file.
void keepBackup(const fs::path& path, mode_t mode, const Disk& disk) {
  fs::path backup = path;
  backup += ".bak";
  // Its name is removed even after the renaming: when the backup is this very file already, renaming leaves
  // both names.
  Temporary second(path);
  if (!second.make([&](const char* name) { return disk.link(path.c_str(), name) == 0; })) {
    if (errno != EPERM && errno != ENOTSUP && errno != ENOSYS && errno != EMLINK) fail(backup, errno);
    writeNew(second, backup, readFile(path), &mode, disk);  // a disk without hard links
  }
  second.takeName(backup);
}

/// Makes a renaming safe against a power cut. Some network disks have no such call for folders.
void flushFolder(const fs::path& path, const Disk& disk) {
  const fs::path folder = folderOf(path);
  const OpenFile file(folder, O_RDONLY | O_DIRECTORY);
  if (!file.isOpen()) fail(folder, errno);
  if (disk.flush(file.number()) != 0 && errno != EINVAL && errno != ENOTSUP) fail(folder, errno);
}

}  // namespace

const Disk& systemDisk() {
  static const Disk disk{
      .write = [](int file, std::string_view bytes) { return ::write(file, bytes.data(), bytes.size()); },
      .flush = [](int file) { return ::fsync(file); },
      .link = [](const char* file, const char* name) { return ::link(file, name); }};
  return disk;
}

std::string readFile(const fs::path& path) {
  const OpenFile file(path, O_RDONLY | O_NONBLOCK);  // a pipe by that name must not hold the desk up
  struct stat there {};
  if (!file.isOpen() || ::fstat(file.number(), &there) != 0) fail(path, errno);
  if (S_ISDIR(there.st_mode)) fail(path, EISDIR);
  if (!S_ISREG(there.st_mode)) fail(path, "not a file but a device or a pipe");
  try {
    std::string bytes(static_cast<std::size_t>(there.st_size) + 1, '\0');
    std::size_t length = 0;
    for (;;) {
      if (length == bytes.size()) bytes.resize(2 * length);
      const ssize_t count = ::read(file.number(), bytes.data() + length, bytes.size() - length);
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) fail(path, errno);
      if (count == 0) break;
      length += static_cast<std::size_t>(count);
    }
    bytes.resize(length);
    return bytes;
  } catch (const std::bad_alloc&) {
    fail(path, ENOMEM);
  } catch (const std::length_error&) {
    fail(path, EFBIG);
  }
}

bool canWriteIn(const fs::path& folder) {
  std::error_code missing;
  return fs::is_directory(folder, missing) &&
         ::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

fs::path damagedName(const fs::path& file) {
  fs::path name = file;
  name += ".damaged";
  std::error_code ignored;
  for (int number = 2; fs::exists(fs::symlink_status(name, ignored)); ++number) {
    name = file;
    name += ".damaged-" + std::to_string(number);
  }
  return name;
}

void writeFileSafely(const fs::path& path, std::string_view bytes, Backup backup, const Disk& disk) {
  const fs::path target = behindLinks(path);
  struct stat there {};
  const bool replaces = ::stat(target.c_str(), &there) == 0;
  if (!replaces && errno != ENOENT) fail(target, errno);
  if (replaces && S_ISDIR(there.st_mode)) fail(target, EISDIR);
  if (replaces && !S_ISREG(there.st_mode)) fail(target, "not a file but a device or a pipe");
  // A new file could take the name of a protected one; whoever protected a show wants it left alone.
  if (replaces && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) fail(target, errno);

  removeLeftovers(folderOf(target));
  Temporary fresh(target);
  writeNew(fresh, target, bytes, replaces ? &there.st_mode : nullptr, disk);
  if (replaces && backup == Backup::Keep) keepBackup(target, there.st_mode, disk);
  fresh.takeName(target);
  fresh.release();
  flushFolder(target, disk);
}

}  // namespace velgrove
