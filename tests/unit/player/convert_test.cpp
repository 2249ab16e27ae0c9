// Numbers and their texts.
#include "player/convert.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <cstdlib>
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

TEST(ConvertStringToDoubleTest, ReadsTextsOfAMegabyteQuickly) {
  const std::string zeros(1 << 20, '0');
  const std::string nines(1 << 20, '9');
  for (int i = 0; i < 200; ++i) {
    EXPECT_EQ(Number(zeros + "7"), 7);
    EXPECT_TRUE(std::isinf(Number(nines)));
    int32_t n;
    EXPECT_TRUE(ConvertStringToInteger(nines.c_str(), &n));
    EXPECT_EQ(n, -1);
  }
  EXPECT_EQ(Number("0." + zeros + "e3"), 0);
  EXPECT_FALSE(IsNumber((nines + "x").c_str()));
  EXPECT_FALSE(IsNumber((nines + ":999").c_str()));
  EXPECT_FALSE(IsNumber((nines + "/99999999").c_str()));
  EXPECT_EQ(Number("1." + std::string(40, '0') + "5"), 1);
}

TEST(ConvertStringToIntegerTest, LongOnesWrapDigitByDigit) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    uint32_t expected = 0;
    for (uint64_t length = 1 + random() % 60; length > 0; --length) {
      const uint32_t digit = static_cast<uint32_t>(random() % 10);
      text += static_cast<char>('0' + digit);
      expected = expected * 10 + digit;
    }
    int32_t n;
    ASSERT_TRUE(ConvertStringToInteger(text.c_str(), &n));
    ASSERT_EQ(static_cast<uint32_t>(n), expected) << text;
    text.insert(random() % (text.size() + 1), 1, "/:. "[random() % 4]);
    ASSERT_FALSE(ConvertStringToInteger(text.c_str(), &n)) << text;
  }
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

// The digits one by one, as they would be written by hand.
std::string PlainText(double v) {
  std::string out;
  if (v < 0) out = "-", v = -v;
  const size_t start = out.size();
  int binary;
  std::frexp(v, &binary);
  int k = static_cast<int>(std::round((binary - 1) * 0.301029995663981));
  long double m = static_cast<long double>(v) / PowerOfTen(k);
  if (m < 1) m = static_cast<long double>(v) / PowerOfTen(--k);
  const auto digit = [&m] {
    const int d = static_cast<int>(m);
    m = (m - d) * 10;
    return d;
  };
  const auto put = [&](int count) {
    for (; count > 0; --count) out += static_cast<char>('0' + digit());
  };
  if (k < 0 && k >= -5) {
    out += "00." + std::string(static_cast<size_t>(-k - 1), '0');
    put(15);
    k = 0;
  } else if (k < 15) {
    out += '0';
    const int first = digit();
    if (first != 0) out += static_cast<char>('0' + first);
    int count = 0;
    for (; k > 0; --k, ++count) put(1);
    out += '.';
    put(14 - count);
  } else {
    put(1);
    out += '.';
    put(14);
  }
  if (digit() >= 5) {
    for (size_t i = out.size(); i-- > start;) {
      if (out[i] < '0') continue;
      if (out[i] < '9') {
        ++out[i];
        break;
      }
      out[i] = '0';
    }
  }
  while (out.back() == '0') out.pop_back();
  if (out.back() == '.') out.pop_back();
  if (k != 0) out += 'e' + std::to_string(k);
  if (out.size() > start + 1 && out[start] == '0' && std::isdigit(out[start + 1])) {
    out.erase(start, 1);
  }
  return out;
}

double PlainNumber(const std::string& text) {
  size_t i = text[0] == '-';
  long double value = 0;
  int exponent = 0;
  for (; i < text.size() && std::isdigit(text[i]); ++i) value = value * 10 + (text[i] - '0');
  if (i < text.size() && text[i] == '.') {
    for (++i; i < text.size() && std::isdigit(text[i]); ++i, --exponent) {
      value = value * 10 + (text[i] - '0');
    }
  }
  if (i < text.size()) exponent += std::atoi(text.c_str() + i + 1);
  if (text[0] == '-') value = -value;
  return static_cast<double>(value * PowerOfTen(exponent));
}

void ExpectPlain(double v) {
  const std::string text = Text(v);
  ASSERT_EQ(text, PlainText(v)) << std::hexfloat << v;
  ASSERT_EQ(Number(text), PlainNumber(text)) << text;
  ASSERT_EQ(RoundTripDouble(v), PlainNumber(text)) << std::hexfloat << v;
}

TEST(ConvertDoubleToStringTest, FastDigitsAreThoseOfThePlainWay) {
  std::mt19937_64 random(5);
  double tenths = 0;
  for (int i = 0; i < 300000; ++i) {
    ExpectPlain(tenths);
    tenths = RoundTripDouble(tenths + 0.1);
    // Every magnitude from 1e-5 to 1e15, with all bits and with few.
    const double scale = std::pow(2.0, static_cast<int>(random() % 67) - 17);
    const double mantissa = 1 + static_cast<double>(random() >> 12) / 4503599627370496.0;
    ExpectPlain(mantissa * scale);
    ExpectPlain(-static_cast<double>(random() % 1000000) / 1000);
    ExpectPlain(static_cast<double>(random() % 1000) / 3);
    ExpectPlain(std::nextafter(std::pow(10.0, static_cast<int>(random() % 20) - 5),
                               random() % 2 ? 0 : 1e20));
  }
}

TEST(ConvertDoubleToStringTest, TiesAndCarriesOfTheFastDigits) {
  for (int power = -5; power < 16; ++power) {
    const double at = std::pow(10.0, power);
    double below = at, above = at;
    for (int i = 0; i < 200; ++i) {
      ExpectPlain(below);
      ExpectPlain(above);
      ExpectPlain(at * 5 + at * i * 1e-15);
      below = std::nextafter(below, 0.0);
      above = std::nextafter(above, 1e20);
    }
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
