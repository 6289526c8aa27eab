#pragma once

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

/// Floats as JSON has them: numbers in their shortest form, and texts for those that JSON has no number for.
namespace velgrove::json_floats {

template <std::floating_point Float>
using BitsOf = std::conditional_t<sizeof(Float) == 4, std::uint32_t, std::uint64_t>;

/// The quiet NaN without further bits, which is what "NaN" means.
template <std::floating_point Float>
inline constexpr BitsOf<Float> PlainNaN = sizeof(Float) == 4 ? BitsOf<Float>{0x7FC00000}
                                                             : static_cast<BitsOf<Float>>(0x7FF8000000000000);

template <std::floating_point Float>
std::string shortest(Float value) {
  std::array<char, 64> digits{};
  auto* const end = std::to_chars(digits.begin(), digits.end(), value).ptr;
  return {digits.begin(), end};
}

/// The number's text. A 32-bit float is read as a 64-bit one and then rounded; where that would miss it, it
/// is written in full.
template <std::floating_point Float>
std::string number(Float value) {
  std::string text = shortest(value);
  if constexpr (sizeof(Float) == 4) {
    double read = 0;
    std::from_chars(text.data(), text.data() + text.size(), read);
    if (static_cast<float>(read) != value) text = shortest(static_cast<double>(value));
  }
  return text == "-0" ? "-0.0" : text;  // the whole number -0 has no sign
}

/// The text of a float that isn't finite.
template <std::floating_point Float>
std::string special(Float value) {
  if (std::isinf(value)) return value > 0 ? "Infinity" : "-Infinity";
  const auto bits = std::bit_cast<BitsOf<Float>>(value);
  if (bits == PlainNaN<Float>) return "NaN";
  std::array<char, 16> digits{};
  auto* const end = std::to_chars(digits.begin(), digits.end(), bits, 16).ptr;
  return "NaN(0x" + std::string(digits.begin(), end) + ")";
}

/// The float of such a text; nothing when it is none.
template <std::floating_point Float>
std::optional<Float> fromSpecial(std::string_view text) {
  constexpr std::string_view Open = "NaN(0x";
  if (text == "Infinity") return std::numeric_limits<Float>::infinity();
  if (text == "-Infinity") return -std::numeric_limits<Float>::infinity();
  if (text == "NaN") return std::bit_cast<Float>(PlainNaN<Float>);
  if (!text.starts_with(Open) || !text.ends_with(')')) return std::nullopt;
  text.remove_prefix(Open.size());
  text.remove_suffix(1);
  BitsOf<Float> bits = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), bits, 16);
  if (result.ec != std::errc{} || result.ptr != text.data() + text.size()) return std::nullopt;
  const auto value = std::bit_cast<Float>(bits);
  if (!std::isnan(value)) return std::nullopt;
  return value;
}

}  // namespace velgrove::json_floats
