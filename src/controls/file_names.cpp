#include "controls/file_names.h"

#include <algorithm>

namespace velgrove {
namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

unsigned char lower(char c) {
  return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

/// Takes the number off the head of a text, without its leading zeros.
std::string_view takeNumber(std::string_view& text) {
  const auto behind = std::ranges::find_if_not(text, isDigit) - text.begin();
  std::string_view number = text.substr(0, static_cast<std::size_t>(behind));
  text.remove_prefix(number.size());
  number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
  return number;
}

int compareNumbers(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  return a.compare(b);
}

int compare(std::string_view a, std::string_view b) {
  while (!a.empty() && !b.empty()) {
    if (isDigit(a.front()) && isDigit(b.front())) {
      const int order = compareNumbers(takeNumber(a), takeNumber(b));
      if (order != 0) return order;
    } else {
      const int order = lower(a.front()) - lower(b.front());
      if (order != 0) return order;
      a.remove_prefix(1);
      b.remove_prefix(1);
    }
  }
  return static_cast<int>(!a.empty()) - static_cast<int>(!b.empty());
}

void dropCharacter(std::string_view& text) {
  constexpr auto Continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
  text.remove_prefix(1);
  while (!text.empty() && Continues(text.front())) text.remove_prefix(1);
}

bool matches(std::string_view name, std::string_view pattern) {
  std::string_view behindStar;   // pattern behind the last "*"
  std::string_view takenByStar;  // name from where that "*" stands now
  bool star = false;
  while (!name.empty()) {
    if (!pattern.empty() && pattern.front() == '*') {
      pattern.remove_prefix(1);
      behindStar = pattern;
      takenByStar = name;
      star = true;
    } else if (!pattern.empty() && pattern.front() == '?') {
      pattern.remove_prefix(1);
      dropCharacter(name);
    } else if (!pattern.empty() && lower(pattern.front()) == lower(name.front())) {
      pattern.remove_prefix(1);
      name.remove_prefix(1);
    } else if (star) {
      dropCharacter(takenByStar);
      name = takenByStar;
      pattern = behindStar;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*') == std::string_view::npos;
}

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

bool standsBefore(std::string_view name, std::string_view other) {
  const int order = compare(name, other);
  return order != 0 ? order < 0 : name < other;
}

bool matchesPattern(std::string_view name, std::string_view patterns) {
  bool any = false;
  while (!patterns.empty()) {
    const auto end = std::min(patterns.find(';'), patterns.size());
    const auto pattern = trimmed(patterns.substr(0, end));
    patterns.remove_prefix(std::min(end + 1, patterns.size()));
    if (pattern.empty()) continue;
    any = true;
    if (pattern == "*.*" || matches(name, pattern)) return true;
  }
  return !any;
}

}  // namespace velgrove
