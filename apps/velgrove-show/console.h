#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace velgrove {

/// Lines for standard error that any thread may leave here, also while it carries the light; one thread that
/// may wait writes them.
class Console {
 public:
  void leave(std::string line);
  void write();

 private:
  std::mutex m_mutex;
  std::vector<std::string> m_lines;
};

}  // namespace velgrove
