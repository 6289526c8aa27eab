#pragma once

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <memory>

#include "controls/files.h"

namespace velgrove {

/// A disk with room for so many bytes, which takes them three at a time.
inline Disk fullDisk(std::size_t room) {
  auto left = std::make_shared<std::size_t>(room);
  Disk disk = systemDisk();
  disk.write = [left](int file, std::string_view bytes) -> ssize_t {
    if (*left == 0) {
      errno = ENOSPC;
      return -1;
    }
    const ssize_t taken = systemDisk().write(file, bytes.substr(0, std::min(*left, std::size_t{3})));
    *left -= static_cast<std::size_t>(taken);
    return taken;
  };
  return disk;
}

}  // namespace velgrove
