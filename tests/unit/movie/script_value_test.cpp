// Values: what they keep, and what they read as.
#include "movie/script_value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "movie/budget.h"
#include "player/convert.h"

namespace vexel {
namespace {

std::string Text(const ScriptValue& value) {
  char scratch[kValueScratchSize];
  const TextView view = value.View(scratch);
  return std::string(view.bytes, static_cast<size_t>(view.length));
}

std::string Plain(double v) {
  char text[kNumberTextSize];
  FormatDouble(v, text);
  return text;
}

double PlainNumber(const std::string& text) {
  double v = 0;
  return ConvertStringToDouble(text.c_str(), &v) ? v : 0;
}

// A number inside must be told from its text by nobody.
void ExpectLikeItsText(double v) {
  const ScriptValue value = ScriptValue::Number(v);
  const std::string text = Plain(v);
  ASSERT_EQ(Text(value), text);
  const double expected = PlainNumber(text);
  const double actual = value.ToNumber();
  ASSERT_TRUE(actual == expected || (std::isnan(actual) && std::isnan(expected)))
      << text << ' ' << actual << ' ' << expected;
  ScriptValue asText = value;
  ASSERT_STREQ(asText.Text(), text.c_str());
  ASSERT_TRUE(asText.ToNumber() == expected || std::isnan(expected));
}

TEST(ScriptValueTest, NumbersReadAsTheirTexts) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (double v : {0.0,
                   -0.0,
                   1.0,
                   -1.0,
                   0.1,
                   0.1 + 0.2,
                   0.3,
                   1e15,
                   999999999999999.0,
                   1e14,
                   999999999999999.9,
                   9999999999999998.0,
                   1e290,
                   1e-280,
                   5e-324,
                   1e308,
                   infinity,
                   -infinity,
                   std::nextafter(1.0, 0.0),
                   std::nextafter(1e20, 0.0),
                   std::nextafter(1e-5, 0.0),
                   std::nextafter(1e-7, 0.0),
                   1e-7,
                   1e-4,
                   1e-300,
                   1.2345678901234567e-300,
                   std::numeric_limits<double>::quiet_NaN()}) {
    ExpectLikeItsText(v);
    ExpectLikeItsText(-v);
  }
}

TEST(ScriptValueTest, AnyNumberReadsAsItsText) {
  std::mt19937_64 random(3);
  for (int i = 0; i < 200000; ++i) {
    const uint64_t bits = random();
    double v;
    memcpy(&v, &bits, sizeof v);
    ExpectLikeItsText(v);
    ExpectLikeItsText(static_cast<double>(static_cast<int64_t>(random() >> (random() % 64))));
    ExpectLikeItsText(static_cast<double>(random() % 100000) / 1000);
    ExpectLikeItsText(static_cast<double>(random() % 1000000) * 0.1 + 0.1);
    ExpectLikeItsText(static_cast<double>(random()) *
                      std::pow(10.0, static_cast<int>(random() % 60) - 40));
  }
}

TEST(ScriptValueTest, NoneIsTheEmptyTextAndZero) {
  ScriptValue none;
  EXPECT_TRUE(none.IsNone());
  EXPECT_EQ(Text(none), "");
  EXPECT_EQ(none.ToNumber(), 0);
  EXPECT_TRUE(ScriptValue::Copy(nullptr).IsNone());
}

TEST(ScriptValueTest, SharedTextsGrowAtOneEndOnly) {
  ScriptValue a = ScriptValue::Concat(ScriptValue::Copy("ab"), {"c", 1});
  ScriptValue b = ScriptValue::Concat(a, {"d", 1});
  ScriptValue c = ScriptValue::Concat(a, {"e", 1});
  ScriptValue d = ScriptValue::Concat(b, {"f", 1});
  EXPECT_EQ(Text(a) + ' ' + Text(b) + ' ' + Text(c) + ' ' + Text(d), "abc abcd abce abcdf");
  EXPECT_STREQ(a.Text(), "abc");
  EXPECT_STREQ(b.Text(), "abcd");
  EXPECT_STREQ(d.Text(), "abcdf");
}

TEST(ScriptValueTest, ATextMayBeAppendedToItself) {
  ScriptValue a = ScriptValue::Copy("ab");
  for (int i = 0; i < 10; ++i) {
    char scratch[kValueScratchSize];
    const ScriptValue tail = a;
    a = ScriptValue::Concat(a, tail.View(scratch));
  }
  EXPECT_EQ(Text(a).size(), 2048u);
}

TEST(ScriptValueTest, EndsAtAMegabyte) {
  const std::string text(kMaxValueText, 'x');
  const ScriptValue full = ScriptValue::Copy(text.c_str());
  EXPECT_FALSE(full.IsNone());
  EXPECT_TRUE(ScriptValue::Concat(full, {"x", 1}).IsNone());
  EXPECT_FALSE(ScriptValue::Concat(full, {"", 0}).IsNone());
  EXPECT_TRUE(ScriptValue::Copy((text + "x").c_str()).IsNone());
}

TEST(ScriptValueTest, BorrowedTextsAreCopiedOnDemand) {
  char movie[] = "text";
  ScriptValue value = ScriptValue::Borrowed(movie, 4);
  value.Own();
  movie[0] = 'T';
  EXPECT_EQ(Text(value), "text");
}

TEST(ScriptValueTest, BytesAreTexts) {
  EXPECT_EQ(Text(ScriptValue::Byte(0)), "");
  EXPECT_EQ(Text(ScriptValue::Byte('x')), "x");
  EXPECT_EQ(Text(ScriptValue::Byte(255)), "\xFF");
}

}  // namespace
}  // namespace vexel
