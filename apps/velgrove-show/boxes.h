#pragma once

#include <cstdint>
#include <functional>

#include "controls/error_pattern.h"

namespace velgrove {

/// Thrown when a run has shown more boxes than anybody would read.
struct TooManyBoxes {};

/// Answers every box at once, OK, Yes or Ignore, and writes it to standard error: `MS box "title" "text"`,
/// both as JSON strings.
class BoxLog {
 public:
  explicit BoxLog(std::function<std::int64_t()> ms) : m_ms(std::move(ms)) {}
  BoxAnswer answer(const Box& box);

 private:
  static constexpr int MostBoxes = 1000;

  std::function<std::int64_t()> m_ms;
  int m_count = 0;
};

}  // namespace velgrove
