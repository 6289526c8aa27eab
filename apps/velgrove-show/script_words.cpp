#include "script_words.h"

#include <charconv>
#include <cmath>

namespace velgrove {

std::vector<std::string_view> wordsOf(std::string_view line) {
  constexpr std::string_view Blanks = " \t\n\v\f\r";
  std::vector<std::string_view> words;
  for (;;) {
    const std::size_t begin = line.find_first_not_of(Blanks);
    if (begin == std::string_view::npos) return words;
    line.remove_prefix(begin);
    words.push_back(line.substr(0, line.find_first_of(Blanks)));
    line.remove_prefix(words.back().size());
  }
}

std::string asTyped(Words words) {
  if (words.empty()) return {};
  return {words.front().begin(), words.back().end()};
}

void wrong(const std::string& what) {
  throw ScriptError(what);
}

std::int64_t readWhole(const std::string& name, std::string_view word, std::int64_t min, std::int64_t max) {
  std::int64_t value = 0;
  const char* const end = word.data() + word.size();
  const auto [stopped, error] = std::from_chars(word.data(), end, value);
  if (error != std::errc{} || stopped != end) wrong(name + " is no whole number: " + std::string(word));
  if (value < min || value > max)
    wrong(name + " is outside " + std::to_string(min) + " to " + std::to_string(max) + ": " +
          std::string(word));
  return value;
}

int readLevel(const std::string& name, std::string_view word) {
  constexpr int Full = 255;
  return static_cast<int>(readWhole(name, word, 0, Full));
}

double readNumber(const std::string& name, std::string_view word) {
  constexpr double Farthest = 1e6;
  double value = 0;
  const char* const end = word.data() + word.size();
  const auto [stopped, error] = std::from_chars(word.data(), end, value);
  if (error != std::errc{} || stopped != end || !(std::abs(value) <= Farthest))
    wrong(name + " is no place on a plot: " + std::string(word));
  return value;
}

}  // namespace velgrove
