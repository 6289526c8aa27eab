#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "script.h"

/// What the readers of a script's lines share.
namespace velgrove {

/// Words of a line that are still to be read. They lie in the line, one behind the other.
using Words = std::span<const std::string_view>;

using Action = std::function<void(Operator&)>;

[[nodiscard]] std::vector<std::string_view> wordsOf(std::string_view line);
/// The words with the blanks between them, as they stand in their line; "" for none.
[[nodiscard]] std::string asTyped(Words words);

[[noreturn]] void wrong(const std::string& what);  ///< by ScriptError

/// A whole number of a range; ScriptError, under the name, for anything else.
[[nodiscard]] std::int64_t readWhole(const std::string& name, std::string_view word, std::int64_t min,
                                     std::int64_t max);

/// A level, 0 to 255.
[[nodiscard]] int readLevel(const std::string& name, std::string_view word);
/// A number in decimals that a plot could hold.
[[nodiscard]] double readNumber(const std::string& name, std::string_view word);

inline constexpr std::size_t AnyNumber = SIZE_MAX;

/// What a script can say at one place: a word, how many arguments follow it, and what is made of them.
template <class Make>
struct Command {
  std::string_view word;
  std::size_t fewest;
  std::size_t most;
  Make make;
  const char* help = "";
};

/// The command of a table that the first word names, if it is followed by as many arguments as it takes. Else
/// ScriptError, which for an unknown word begins with `unknown`.
template <class Table>
[[nodiscard]] const auto& commandOf(const Table& table, Words words, const std::string& unknown) {
  const auto command = std::ranges::find_if(table, [&](const auto& each) { return each.word == words[0]; });
  const std::string word(words[0]);
  if (command == std::end(table)) wrong(unknown + ": " + word);
  const std::size_t given = words.size() - 1;
  if (given < command->fewest || given > command->most) wrong("wrong number of arguments for " + word);
  return *command;
}

}  // namespace velgrove
