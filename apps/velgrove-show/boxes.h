#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>

#include "controls/error_pattern.h"

namespace velgrove {

/// Answers every box at once, OK, Yes or Ignore, and tells it as a line: `MS box "title" "text"`, both as
/// JSON strings. A run that shows more boxes than anybody would read is to end.
class BoxLog {
 public:
  static constexpr const char* TooMany = "too many boxes: the run ends here";

  BoxLog(std::function<std::int64_t()> ms, std::function<void(const std::string&)> tell)
      : m_ms(std::move(ms)), m_tell(std::move(tell)) {}

  BoxAnswer answer(const Box& box);
  [[nodiscard]] bool tooMany() const { return m_count >= MostBoxes; }

 private:
  static constexpr int MostBoxes = 1000;

  std::function<std::int64_t()> m_ms;
  std::function<void(const std::string&)> m_tell;
  std::atomic<int> m_count = 0;
};

}  // namespace velgrove
