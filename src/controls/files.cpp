#include "controls/files.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <new>
#include <stdexcept>
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
  OpenFile(const fs::path& path, int flags, mode_t mode = 0)
      : m_file(::open(path.c_str(), flags | O_CLOEXEC, mode)) {}
  ~OpenFile() {
    if (m_file >= 0) ::close(m_file);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  [[nodiscard]] bool isOpen() const { return m_file >= 0; }
  [[nodiscard]] int number() const { return m_file; }
  /// Closes it and says whether all is well: a network disk may tell only now that it is full.
  [[nodiscard]] bool close() { return ::close(std::exchange(m_file, -1)) == 0 || errno == EINTR; }

 private:
  int m_file;
};

/// A name beside the file that is removed at the end of its scope, unless the file has moved on.
class TemporaryName {
 public:
  explicit TemporaryName(fs::path path) : m_path(std::move(path)) {}
  ~TemporaryName() {
    if (!m_path.empty()) ::unlink(m_path.c_str());
  }
  TemporaryName(const TemporaryName&) = delete;
  TemporaryName& operator=(const TemporaryName&) = delete;

  [[nodiscard]] const fs::path& path() const { return m_path; }
  void release() { m_path.clear(); }

 private:
  fs::path m_path;
};

/// A name in the file's folder that nothing has yet; short, because names of shows may be as long as the disk
/// allows.
fs::path temporaryBeside(const fs::path& path) {
  static std::atomic<unsigned> last{0};
  for (;;) {
    fs::path name = path.parent_path() /
                    (".velgrove-" + std::to_string(::getpid()) + "-" + std::to_string(++last) + ".tmp");
    struct stat there {};
    if (::lstat(name.c_str(), &there) != 0) return name;
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
void writeNew(const fs::path& path, const fs::path& target, std::string_view bytes, const mode_t* mode,
              const Disk& disk) {
  constexpr mode_t Everyone = 0666;  // the user's mask takes away what it must
  OpenFile file(path, O_WRONLY | O_CREAT | O_EXCL, Everyone);
  const bool done = file.isOpen() && writeAll(file, bytes, disk) &&
                    (mode == nullptr || setMode(file, *mode)) && disk.flush(file.number()) == 0 &&
                    file.close();
  if (!done) fail(target, errno);
}

void takeName(const fs::path& from, const fs::path& to) {
  if (::rename(from.c_str(), to.c_str()) != 0) fail(to, errno);
}

/// Gives the old version its second name. The first one stays until the new version takes it over, so that at
/// no moment the show is without a file.
void keepBackup(const fs::path& path, mode_t mode, const Disk& disk) {
  fs::path backup = path;
  backup += ".bak";
  // Its name is removed even after the renaming: when the backup is this very file already, renaming leaves
  // both names.
  const TemporaryName second(temporaryBeside(path));
  if (disk.link(path.c_str(), second.path().c_str()) != 0) {
    if (errno != EPERM && errno != ENOTSUP && errno != ENOSYS && errno != EMLINK) fail(backup, errno);
    writeNew(second.path(), backup, readFile(path), &mode, disk);  // a disk without hard links
  }
  takeName(second.path(), backup);
}

/// Makes a renaming safe against a power cut. Some network disks have no such call for folders.
void flushFolder(const fs::path& path, const Disk& disk) {
  const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
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

  TemporaryName fresh(temporaryBeside(target));
  writeNew(fresh.path(), target, bytes, replaces ? &there.st_mode : nullptr, disk);
  if (replaces && backup == Backup::Keep) keepBackup(target, there.st_mode, disk);
  takeName(fresh.path(), target);
  fresh.release();
  flushFolder(target, disk);
}

}  // namespace velgrove
