#pragma once

#include <chrono>
#include <string>

#include "dmx/interface_box.h"

namespace velgrove {

/// The file of all frames received: a line each, the milliseconds since the start with three decimals, then
/// 512 levels, blanks between. Lines are gathered in memory, so that a frame never waits for the disk.
class Recording {
 public:
  /// Begins the file anew; a RunTimeError when it can't be written.
  explicit Recording(const std::string& file);
  ~Recording();
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

  void add(std::chrono::nanoseconds sinceStart, InterfaceBox::Frame levels);
  /// Writes what has gathered; a RunTimeError when it doesn't fit on the disk.
  void flush();

 private:
  std::string m_file;
  int m_descriptor;
  std::string m_lines;
};

}  // namespace velgrove
