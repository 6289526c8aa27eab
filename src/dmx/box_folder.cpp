#include "dmx/box_folder.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velgrove {
namespace {

namespace fs = std::filesystem;

/// The folder's name where all users share one place.
std::string sharedName() {
  return "velgrove-" + std::to_string(geteuid());
}

bool isOwnAndShut(const fs::path& folder) {
  struct stat facts {};
  return lstat(folder.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode) && facts.st_uid == geteuid() &&
         (facts.st_mode & mode_t{07777}) == S_IRWXU;
}

/// A lock file that nobody holds: its box has crashed. A link without any was laid by hand.
bool isAbandoned(const fs::path& lockFile) {
  const int descriptor = open(lockFile.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return false;
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  const bool abandoned = fcntl(descriptor, F_OFD_GETLK, &lock) == 0 && lock.l_type == F_UNLCK;
  (void)close(descriptor);  // nothing was written
  return abandoned;
}

bool isLivingBox(const fs::path& link) {
  std::error_code error;
  const std::string name = link.filename();
  return !name.starts_with('.') && fs::is_symlink(fs::symlink_status(link, error)) &&
         fs::exists(link, error) && !isAbandoned(boxLockFile(link.parent_path(), name));
}

}  // namespace

fs::path virtualBoxFolder() {
  const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
  if (runtime != nullptr && fs::path(runtime).is_absolute()) return fs::path(runtime) / "velgrove" / "boxes";
  return fs::path("/tmp") / sharedName() / "boxes";
}

bool isTrustedBoxFolder(const fs::path& folder) {
  const fs::path around = folder.parent_path();
  if (around.filename() == sharedName()) return isOwnAndShut(around) && isOwnAndShut(folder);
  std::error_code error;
  return fs::is_directory(folder, error);
}

fs::path boxLockFile(const fs::path& folder, const std::string& name) {
  return folder / ("." + name + ".lock");
}

std::vector<fs::path> registeredBoxes(const fs::path& folder) {
  if (!isTrustedBoxFolder(folder)) return {};
  std::vector<fs::path> boxes = entriesOf(folder);
  std::erase_if(boxes, [](const fs::path& link) { return !isLivingBox(link); });
  std::sort(boxes.begin(), boxes.end());
  return boxes;
}

std::vector<fs::path> entriesOf(const fs::path& folder) {
  std::vector<fs::path> entries;
  std::error_code error;
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
    entries.push_back(at->path());
  return entries;
}

}  // namespace velgrove
