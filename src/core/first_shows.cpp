#include "core/first_shows.h"

#include <system_error>

#include "controls/file_names.h"
#include "controls/files.h"

namespace velgrove {

namespace fs = std::filesystem;

void bringFirstShows(const fs::path& from, const fs::path& data) {
  std::error_code missing;
  if (from.empty() || data.empty() || !fs::is_directory(from, missing)) return;
  if (!fs::create_directories(data, missing)) return;
  for (fs::directory_iterator at(from, missing), end; !missing && at != end; at.increment(missing))
    if (matchesPattern(at->path().filename().string(), "*.kel"))
      writeFileSafely(data / at->path().filename(), readFile(at->path()), Backup::None);
}

}  // namespace velgrove
