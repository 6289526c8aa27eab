#pragma once

#include <cstdint>
#include <string>

#include "dmx/interface_box.h"

namespace velgrove {

/// Writes frames to standard output, one a line: the time in ms, then 512 levels, blanks between.
class FrameLines {
 public:
  /// With `changesOnly` a frame equal to the one before is left out; the first is always written.
  explicit FrameLines(bool changesOnly) : m_changesOnly(changesOnly) {}
  void write(std::int64_t ms, InterfaceBox::Frame frame);

 private:
  bool m_changesOnly;
  std::string m_line;
  std::string m_before;
};

}  // namespace velgrove
