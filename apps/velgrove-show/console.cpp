#include "console.h"

#include <utility>

#include "messages.h"

namespace velgrove {

void Console::leave(std::string line) {
  const std::scoped_lock lock(m_mutex);
  m_lines.push_back(std::move(line));
}

void Console::write() {
  std::vector<std::string> lines;
  {
    const std::scoped_lock lock(m_mutex);
    lines.swap(m_lines);
  }
  for (const std::string& line : lines) say(line);
}

}  // namespace velgrove
