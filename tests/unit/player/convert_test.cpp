// Numbers and their texts.
#include "player/convert.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "player/text.h"

namespace vexel::test {
namespace {

std::string Taken(char* text) {
  const std::string result = text ? text : "(null)";
  FreeStr(text);
  return result;
}

std::string Text(double v) {
  return Taken(ConvertDoubleToString(v));
}

double Number(const std::string& text) {
  double v = -12345;
  EXPECT_TRUE(ConvertStringToDouble(text.c_str(), &v)) << text;
  return v;
}

bool IsNumber(const char* text) {
  double v = -12345;
  const bool result = ConvertStringToDouble(text, &v);
  EXPECT_EQ(v == -12345, !result) << text;
  return result;
}

TEST(ConvertStringToIntegerTest, TakesASignAndDigitsAndWraps) {
  int32_t n = 7;
  EXPECT_TRUE(ConvertStringToInteger("-12", &n));
  EXPECT_EQ(n, -12);
  EXPECT_TRUE(ConvertStringToInteger("+007", &n));
  EXPECT_EQ(n, 7);
  EXPECT_TRUE(ConvertStringToInteger("4294967297", &n));
  EXPECT_EQ(n, 1);
  EXPECT_TRUE(ConvertStringToInteger("2147483648", &n));
  EXPECT_EQ(n, std::numeric_limits<int32_t>::min());
}

TEST(ConvertStringToIntegerTest, LeavesTheResultAloneForOtherTexts) {
  int32_t n = 7;
  for (const char* text : {"", "-", "+", " 1", "1 ", "1.0", "--1", "0x10", "1e3"}) {
    EXPECT_FALSE(ConvertStringToInteger(text, &n)) << text;
  }
  EXPECT_FALSE(ConvertStringToInteger(nullptr, &n));
  EXPECT_EQ(n, 7);
}

TEST(ConvertStringToDoubleTest, RejectsEmptySignOnlyOpenExponentAndOtherLetters) {
  for (const char* text : {"", "-", "1e", "1x", "0x10"}) EXPECT_FALSE(IsNumber(text)) << text;
  EXPECT_FALSE(IsNumber(nullptr));
}

TEST(ConvertStringToDoubleTest, AcceptsALonePointASignAndEitherExponentLetter) {
  EXPECT_EQ(Number("."), 0);
  EXPECT_EQ(Number("+.5e1"), 5);
  EXPECT_EQ(Number("1E2"), 100);
  EXPECT_EQ(Number("5."), 5);
  EXPECT_EQ(Number("-1.25"), -1.25);
  EXPECT_EQ(Number("e3"), 0);
  EXPECT_EQ(Number("1e-2"), 0.01);
  EXPECT_EQ(Number("1e+2"), 100);
}

// Required: the power of ten is a double before it multiplies.
TEST(ConvertStringToDoubleTest, MultipliesByARoundedPower) {
  EXPECT_EQ(Number("0.3"), static_cast<double>(3 * static_cast<long double>(0.1)));
}

TEST(ConvertStringToDoubleTest, RejectsWhiteSpaceAnywhere) {
  for (const char* text : {" 1", "1 ", "1 2", "\t1", "1e 2", " "}) EXPECT_FALSE(IsNumber(text));
}

TEST(ConvertStringToDoubleTest, RejectsSecondPointsAndExponentsThatAreNoIntegers) {
  for (const char* text : {"1.2.3", "1e2.5", "1e--2", "1e2e3", "#ERROR#", "infinity", "nan"}) {
    EXPECT_FALSE(IsNumber(text)) << text;
  }
}

TEST(ConvertStringToDoubleTest, EndsAtTheLargestMagnitudesOfTheExponent) {
  EXPECT_EQ(Number("1e-2147483648"), 0);
  EXPECT_TRUE(std::isinf(Number("1e2147483647")));
  EXPECT_EQ(Number("1e4294967298"), 100);  // the exponent wraps
  EXPECT_TRUE(std::isinf(Number("1" + std::string(100000, '0'))));
}

TEST(PowerOfTenTest, IsTheNearestDoubleAndTakesTheLowestInteger) {
  EXPECT_EQ(PowerOfTen(0), 1);
  EXPECT_EQ(PowerOfTen(22), 1e22);
  EXPECT_EQ(PowerOfTen(-1), 0.1);
  EXPECT_EQ(PowerOfTen(-5), 1e-5);
  EXPECT_EQ(PowerOfTen(std::numeric_limits<int32_t>::min()), 0);
  EXPECT_TRUE(std::isinf(PowerOfTen(std::numeric_limits<int32_t>::max())));
}

TEST(ConvertIntegerToStringTest, WritesASignAndDigits) {
  EXPECT_EQ(Taken(ConvertIntegerToString(0)), "0");
  EXPECT_EQ(Taken(ConvertIntegerToString(-120)), "-120");
  EXPECT_EQ(Taken(ConvertIntegerToString(2147483647)), "2147483647");
}

TEST(ConvertIntegerToStringTest, GivesTheSignAloneForTheLowestInteger) {
  EXPECT_EQ(Taken(ConvertIntegerToString(std::numeric_limits<int32_t>::min())), "-");
}

TEST(ConvertDoubleToStringTest, RoundsToFifteenDigits) {
  EXPECT_EQ(Text(0.1 + 0.2), "0.3");
  EXPECT_EQ(Text(100), "100");
  EXPECT_EQ(Text(0.00001), "0.00001");
  EXPECT_EQ(Text(0.000001), "1e-6");
  EXPECT_EQ(Text(1e15), "1e15");
  EXPECT_EQ(Text(123456789012345678.0), "1.23456789012346e17");
  EXPECT_EQ(Text(0), "0");
  EXPECT_EQ(Text(-0.0), "0");
  EXPECT_EQ(Text(1.0 / 3), "0.333333333333333");
  EXPECT_EQ(Text(2.0 / 3), "0.666666666666667");
  EXPECT_EQ(Text(-1e300), "-1e300");
}

TEST(ConvertDoubleToStringTest, GivesMinusAHalfItsZero) {
  EXPECT_EQ(Text(-0.5), "-0.5");
}

TEST(ConvertDoubleToStringTest, KeepsExactFractions) {
  EXPECT_EQ(Text(1.5), "1.5");
  EXPECT_EQ(Text(1234567.125), "1234567.125");
}

TEST(ConvertDoubleToStringTest, CarriesNinesIntoANewLeadingDigitBelowATenToTheFifteenth) {
  EXPECT_EQ(Text(999999999999999.9), "1000000000000000");
  EXPECT_EQ(Text(9.9999999999999999e5), "1000000");
  EXPECT_EQ(Text(std::nextafter(1.0, 0.0)), "1");
  EXPECT_EQ(Text(std::nextafter(0.1, 0.0)), "0.1");
  EXPECT_EQ(Text(-std::nextafter(10.0, 0.0)), "-10");
}

TEST(ConvertDoubleToStringTest, LosesACarryFromTheTopAtATenToTheFifteenthAndAbove) {
  EXPECT_EQ(Text(9999999999999998.0), "0e15");
  EXPECT_EQ(Text(-9999999999999998.0), "-0e15");
  EXPECT_EQ(Text(std::nextafter(1e20, 0.0)), "0e19");
}

TEST(ConvertDoubleToStringTest, CallsWhatIsNoNumberAnError) {
  EXPECT_EQ(Text(std::numeric_limits<double>::infinity()), "#ERROR#");
  EXPECT_EQ(Text(-std::numeric_limits<double>::infinity()), "#ERROR#");
  EXPECT_EQ(Text(std::numeric_limits<double>::quiet_NaN()), "#ERROR#");
}

TEST(ConvertDoubleToStringTest, WritesTheSmallestAndLargestNumbers) {
  EXPECT_EQ(Text(5e-324), "4.94065645841247e-324");
  EXPECT_EQ(Text(2.2250738585072014e-308), "2.2250738585072e-308");
  EXPECT_EQ(Text(1.7976931348623157e308), "1.79769313486232e308");
}

TEST(ConvertDoubleToStringTest, WritesEveryIntegerBelowATenToTheFifteenthExactly) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 100000; ++i) {
    const int64_t n = static_cast<int64_t>(random() % (uint64_t{1} << (random() % 50)));
    if (n >= 1000000000000000) continue;
    ASSERT_EQ(Text(static_cast<double>(n)), std::to_string(n));
    ASSERT_EQ(Number(std::to_string(n)), static_cast<double>(n));
  }
  for (int64_t n = 1; n < 1000000000000000; n *= 10) {
    EXPECT_EQ(Text(static_cast<double>(n)), std::to_string(n));
    EXPECT_EQ(Text(static_cast<double>(n - 1)), std::to_string(n - 1));
  }
}

TEST(ConvertDoubleToStringTest, IsAtMostOneInTheLastPlaceFromTheNearestText) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 50000; ++i) {
    uint64_t bits = random();
    double v;
    memcpy(&v, &bits, sizeof v);
    if (!std::isfinite(v) || std::fabs(v) < 1e-290 || std::fabs(v) > 1e300) continue;
    const double back = Number(Text(v));
    if (back == 0) continue;  // a lost carry
    ASSERT_LE(std::fabs(back - v), std::fabs(v) * 1.1e-14) << Text(v);
  }
}

TEST(RoundTripDoubleTest, IsWhatTheTextReadsAs) {
  EXPECT_EQ(RoundTripDouble(0.1 + 0.2), Number("0.3"));
  EXPECT_EQ(RoundTripDouble(9999999999999998.0), 0);
  EXPECT_EQ(RoundTripDouble(std::numeric_limits<double>::infinity()), 0);
  EXPECT_FALSE(std::signbit(RoundTripDouble(-0.0)));
  EXPECT_EQ(RoundTripDouble(-123456789012345.0), -123456789012345.0);
}

}  // namespace
}  // namespace vexel::test
