#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velgrove {

/// What a line of the console asks for.
namespace command {
struct Nothing {};
struct Input {
  int channel;
  int level;
};
struct Trigger {
  int count;
};
struct Silent {
  bool on;
};
struct Short {
  std::optional<int> bytes;  ///< nothing: replies come whole
};
struct Split {
  bool on;
};
struct Stall {
  bool on;
};
struct Unplug {};
struct Plug {};
struct Help {};
struct Quit {};
/// A line that can't be followed, with the words for whoever typed it.
struct Bad {
  std::string why;
};
}  // namespace command

using Command = std::variant<command::Nothing, command::Input, command::Trigger, command::Silent,
                             command::Short, command::Split, command::Stall, command::Unplug, command::Plug,
                             command::Help, command::Quit, command::Bad>;

[[nodiscard]] Command parseCommand(std::string_view line);

/// All commands, one a line.
[[nodiscard]] const char* consoleHelp();

/// Cuts what comes from standard input into lines.
class LineReader {
 public:
  /// Longer lines are no commands; they are cut here so that no flood fills the memory.
  static constexpr std::size_t LongestLine = 1000;

  /// The lines that these bytes complete.
  [[nodiscard]] std::vector<std::string> feed(std::string_view bytes);
  /// What stands there without an end of line.
  [[nodiscard]] std::string rest();

 private:
  std::string m_line;
};

}  // namespace velgrove
