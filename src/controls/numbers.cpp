#include "controls/numbers.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace velgrove {
namespace {

constexpr std::string_view Blanks = " \t\r\n";

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(Blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

/// Two decimals with halves away from zero. The tie is judged on the shortest decimal form of the number, so
/// that 1.005 counts as the tie that it looks like.
std::string twoDecimals(double value) {
  if (!std::isfinite(value)) throw RunTimeError(Fault::Overflow, "a number that isn't finite can't be shown");
  char shortest[400];
  char* const end =
      std::to_chars(shortest, shortest + sizeof shortest, std::fabs(value), std::chars_format::fixed).ptr;
  std::string digits(shortest, end);
  const auto point = digits.find('.');
  std::string fraction = point == std::string::npos ? "" : digits.substr(point + 1);
  std::string whole = digits.substr(0, point);
  fraction.resize(std::max<std::size_t>(fraction.size(), 3), '0');
  const bool up = fraction[2] >= '5';
  std::string all = whole + fraction.substr(0, 2);
  if (up) {
    auto at = all.size();
    while (at > 0 && all[at - 1] == '9') all[--at] = '0';
    if (at > 0)
      ++all[at - 1];
    else
      all.insert(all.begin(), '1');
  }
  all.insert(all.size() - 2, ".");
  const bool zero = all.find_first_not_of("0.") == std::string::npos;
  return (value < 0 && !zero ? "-" : "") + all;
}

}  // namespace

void detail::throwOverflow(double value, int bits) {
  throw RunTimeError(Fault::Overflow,
                     std::to_string(value) + " doesn't fit " + std::to_string(bits) + " bits");
}

double roundHalfEven(double value) {
  return std::nearbyint(value);
}

double toNumber(std::string_view text) {
  std::string_view rest = trimmed(text);
  const bool plus = !rest.empty() && rest.front() == '+';
  if (plus) rest.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), value);
  const bool digits = rest.find_first_of("0123456789") != std::string_view::npos;  // no "inf", no "nan"
  if (error == std::errc::result_out_of_range)
    throw RunTimeError(Fault::Overflow, "number out of range: " + std::string(text));
  if (error != std::errc{} || !std::isfinite(value) || end != rest.data() + rest.size() || !digits ||
      (plus && rest.front() == '-'))
    throw RunTimeError(Fault::TypeMismatch, "not a number: \"" + std::string(text) + "\"");
  return value;
}

float toCueNumber(std::string_view text) {
  const double value = toNumber(text);
  if (std::fabs(value) > std::numeric_limits<float>::max()) detail::throwOverflow(value, 32);
  return static_cast<float>(value);
}

std::string formatFixed2(double value) {
  return twoDecimals(value);
}

std::string formatCueNumber(double value) {
  std::string text = twoDecimals(value);
  const auto zero = text.find("0.");
  if (zero != std::string::npos && (zero == 0 || text[zero - 1] == '-')) text.erase(zero, 1);
  return text;
}

std::string formatWhole(double value) {
  const double rounded = std::round(value);
  if (rounded == 0) return "";
  char text[400];
  std::snprintf(text, sizeof text, "%.0f", rounded);
  return text;
}

std::string formatSingle(float value) {
  char text[64];
  const auto [end, error] =
      std::to_chars(std::begin(text), std::end(text), value, std::chars_format::general);
  return {text, end};
}

std::string formatPlain(double value) {
  char text[400];
  const auto [end, error] = std::to_chars(std::begin(text), std::end(text), value, std::chars_format::fixed);
  return {text, end};
}

float tenthAbove(float number) {
  return static_cast<float>(std::round((static_cast<double>(number) + 0.1) * 100.0) / 100.0);
}

}  // namespace velgrove
