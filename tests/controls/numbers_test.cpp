#include "controls/numbers.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "support/fault_of.h"

namespace velgrove {
namespace {

Fault faultOf(const std::function<void()>& work) {
  return errorOf(work).fault();
}

TEST(Numbers, FloatsRoundToTheNearestIntegerWithHalvesToEven) {
  EXPECT_EQ(roundTo<std::int16_t>(127.5), 128);
  EXPECT_EQ(roundTo<std::int16_t>(2.5), 2);
  EXPECT_EQ(roundTo<std::int16_t>(-0.5), 0);
  EXPECT_EQ(roundTo<std::int16_t>(-1.5), -2);
  EXPECT_EQ(roundTo<std::int16_t>(32767.4), 32767);
}

TEST(Numbers, AnIntegerThatDoesNotFitIsAnOverflowAndNeverWraps) {
  EXPECT_EQ(faultOf([] { (void)roundTo<std::int16_t>(32767.5); }), Fault::Overflow);
  EXPECT_EQ(faultOf([] { (void)roundTo<std::uint8_t>(-0.6); }), Fault::Overflow);
  EXPECT_EQ(faultOf([] { (void)roundTo<std::int32_t>(std::numeric_limits<double>::quiet_NaN()); }),
            Fault::Overflow);
  EXPECT_EQ(faultOf([] { (void)narrow<std::uint8_t>(256); }), Fault::Overflow);
  EXPECT_EQ(faultOf([] { (void)narrow<std::int16_t>(-32769); }), Fault::Overflow);
  EXPECT_EQ(narrow<std::uint8_t>(255), 255);
}

TEST(Numbers, TextIsReadAsANumberWithBlanksSignPointAndExponent) {
  EXPECT_EQ(toNumber(" 12 "), 12);
  EXPECT_EQ(toNumber(".50"), 0.5);
  EXPECT_EQ(toNumber("-1.5e2"), -150);
  EXPECT_EQ(toNumber("+3"), 3);
  EXPECT_EQ(toInteger<std::int16_t>("1.5"), 2);
  EXPECT_EQ(toCueNumber("1.10"), 1.1F);
}

TEST(Numbers, TextThatIsNoNumberIsATypeMismatch) {
  for (const char* text : {"", "  ", "a", "1,5", "0x10", "1 2", "inf", "nan", "nan(1)", "+-1", "--1", "."})
    EXPECT_EQ(faultOf([&] { (void)toNumber(text); }), Fault::TypeMismatch) << '"' << text << '"';
  EXPECT_EQ(faultOf([] { (void)toInteger<std::int16_t>("32768"); }), Fault::Overflow);
  EXPECT_EQ(faultOf([] { (void)toCueNumber("1e39"); }), Fault::Overflow);
}

TEST(Numbers, CueNumbersAreShownWithTwoDecimalsAndNoLeadingZero) {
  EXPECT_EQ(formatCueNumber(0), ".00");
  EXPECT_EQ(formatCueNumber(0.5), ".50");
  EXPECT_EQ(formatCueNumber(-1.5), "-1.50");
  EXPECT_EQ(formatCueNumber(-0.5), "-.50");
  EXPECT_EQ(formatCueNumber(1.1F), "1.10");
  EXPECT_EQ(formatCueNumber(10.25), "10.25");
  EXPECT_EQ(formatCueNumber(1.005), "1.01");
  EXPECT_EQ(formatCueNumber(999.999), "1000.00");
  EXPECT_EQ(formatFixed2(0), "0.00");
  EXPECT_EQ(formatFixed2(-0.001), "0.00");
  EXPECT_EQ(formatWhole(0), "");
  EXPECT_EQ(formatWhole(12), "12");
}

TEST(Numbers, PlainTextIsTheShortestWithoutAnExponent) {
  EXPECT_EQ(formatPlain(50), "50");
  EXPECT_EQ(formatPlain(0.3), "0.3");
  EXPECT_EQ(formatPlain(-2147483.648), "-2147483.648");
  EXPECT_EQ(formatPlain(1000000), "1000000");
}

TEST(Numbers, ATenthAboveACueNumberMeetsTheNumberThatItsTextGives) {
  float number = 1;
  for (int tenth = 1; tenth <= 10; ++tenth) {
    number = tenthAbove(number);
    EXPECT_EQ(number, toCueNumber(formatCueNumber(1 + tenth / 10.0)));
  }
  EXPECT_EQ(tenthAbove(-1), -0.9F);
}

}  // namespace
}  // namespace velgrove
