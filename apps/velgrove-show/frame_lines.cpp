#include "frame_lines.h"

#include <cstdio>

namespace velgrove {

void FrameLines::write(std::int64_t ms, InterfaceBox::Frame frame) {
  m_line.clear();
  for (const std::uint8_t level : frame) {
    m_line += ' ';
    m_line += std::to_string(level);
  }
  m_line += '\n';
  if (m_changesOnly && m_line == m_before) return;
  std::swap(m_line, m_before);
  const std::string time = std::to_string(ms);
  (void)std::fwrite(time.data(), 1, time.size(), stdout);
  (void)std::fwrite(m_before.data(), 1, m_before.size(), stdout);
}

}  // namespace velgrove
