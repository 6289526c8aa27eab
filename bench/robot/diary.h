#pragma once

#include <deque>
#include <iosfwd>
#include <map>
#include <string>

namespace velgrove::robot {

/// What the robot did and what it was told, for whoever replays a finding.
class Diary {
 public:
  static constexpr std::size_t Remembered = 30;  ///< steps

  /// `out` gets every line from the step `from` on, where that is above 0.
  Diary(std::ostream& out, int from) : m_out(out), m_from(from) {}

  void beginStep(int number);
  [[nodiscard]] int step() const { return m_step; }
  void note(const std::string& line);
  /// A box came up. Paths and numbers in its text are made alike, so that the table of boxes stays short.
  void noteBox(const std::string& title, const std::string& text, const std::string& folder);
  /// What the robot does now; the system errors are counted by it.
  void beginDeed(const std::string& name) { m_deed = name; }
  void count(const std::string& what) { ++m_counts[what]; }

  void printLastSteps() const;
  void printTables() const;

 private:
  std::ostream& m_out;
  int m_from;
  int m_step = 0;
  std::deque<std::string> m_lines;  ///< a step each
  std::string m_deed = "start";
  std::map<std::string, int> m_boxes;
  std::map<std::string, int> m_counts;
};

}  // namespace velgrove::robot
