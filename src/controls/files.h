#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>

#include "controls/faults.h"

namespace velgrove {

/// Does work that waits for the disk, and passes on its error. Other handlers may run meanwhile, so the work
/// touches nothing of the desk.
using Aside = std::function<void(const std::function<void()>&)>;
inline void doAtOnce(const std::function<void()>& work) {
  work();
}

/// The whole content of a file. Fault::File with the path and the reason (missing, a directory, no permission
/// ...).
[[nodiscard]] std::string readFile(const std::filesystem::path& path);

/// Whether files can be made and replaced in a folder.
[[nodiscard]] bool canWriteIn(const std::filesystem::path& folder);

/// The name under which a damaged file is kept: `<name>.damaged`, or the next number that is free, so that
/// none kept before is lost.
[[nodiscard]] std::filesystem::path damagedName(const std::filesystem::path& file);

enum class Backup {
  None,
  Keep,  ///< the version before stays beside the new one as `<name>.bak`
};

/// How bytes reach the disk. Tests put one in that fills up or refuses.
struct Disk {
  /// Takes some of the bytes and says how many; -1 with `errno` when it can't.
  std::function<ssize_t(int file, std::string_view bytes)> write;
  /// Makes an open file or directory safe against a power cut; -1 with `errno` when it can't.
  std::function<int(int file)> flush;
  /// Gives a file a second name; -1 with `errno` on a disk that has only one for each, as most sticks.
  std::function<int(const char* file, const char* name)> link;
};
[[nodiscard]] const Disk& systemDisk();

/// Replaces a file so that whatever happens, one whole version stands under its name: the new one is written
/// beside it, flushed, and takes the name in one step. Through a symbolic link the file behind it is
/// replaced; permissions stay as they were. Fault::File with path and reason; the old file is then as it was
/// and nothing is left beside it. What a process that was killed here has left, the next one removes.
void writeFileSafely(const std::filesystem::path& path, std::string_view bytes, Backup backup,
                     const Disk& disk = systemDisk());

}  // namespace velgrove
