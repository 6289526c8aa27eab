#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "controls/faults.h"

/// Every conversion between floats, integers and text that the desk leans on. Nothing else in the code turns
/// a float into an integer.
namespace velgrove {

/// Nearest whole number, halves to even. The result is still a float; NaN and infinities pass through.
[[nodiscard]] double roundHalfEven(double value);

namespace detail {
[[noreturn]] void throwOverflow(double value, int bits);
}

/// Checked narrowing of an integer: throws Fault::Overflow instead of wrapping.
template <class To, class From>
[[nodiscard]] constexpr To narrow(From value) {
  static_assert(std::numeric_limits<From>::is_integer && sizeof(From) <= 8);
  if (value < From{std::numeric_limits<To>::min()} || value > From{std::numeric_limits<To>::max()})
    detail::throwOverflow(static_cast<double>(value), static_cast<int>(sizeof(To) * 8));
  return static_cast<To>(value);
}

/// Float to integer: nearest, halves to even; Fault::Overflow outside the range and for NaN.
template <class To>
[[nodiscard]] To roundTo(double value) {
  const double rounded = roundHalfEven(value);
  if (!(rounded >= std::numeric_limits<To>::min() && rounded <= std::numeric_limits<To>::max()))
    detail::throwOverflow(value, static_cast<int>(sizeof(To) * 8));
  return static_cast<To>(rounded);
}

/// Text to number: blanks around it, sign, digits, point, exponent. Anything else, the empty text too, is
/// Fault::TypeMismatch.
[[nodiscard]] double toNumber(std::string_view text);

/// The same, narrowed to a 32-bit float, as cue numbers are kept.
[[nodiscard]] float toCueNumber(std::string_view text);

/// Text to integer: reads a number and rounds it ("1.5" is 2).
template <class To>
[[nodiscard]] To toInteger(std::string_view text) {
  return roundTo<To>(toNumber(text));
}

/// Number texts of the lists and editors. All of them round halves away from zero.
[[nodiscard]] std::string formatCueNumber(double value);  ///< "###.00": 1 is "1.00", 0.5 is ".50", 0 is ".00"
[[nodiscard]] std::string formatFixed2(double value);  ///< "0.00": 0.5 is "0.50"; "0.#0" is written the same
[[nodiscard]] std::string formatWhole(double value);   ///< "###": 12 is "12", 0 is ""
/// The shortest text that reads back as the same 32-bit float: "1200.5".
[[nodiscard]] std::string formatSingle(float value);

/// The shortest text of a number in plain decimals: "50", "0.3", never "5e+01".
[[nodiscard]] std::string formatPlain(double value);

/// A tenth above a cue number, in two decimals and then as a 32-bit float: plain float sums would lose every
/// other tenth (1.20 + 0.1 lies above 1.30).
[[nodiscard]] float tenthAbove(float number);

}  // namespace velgrove
