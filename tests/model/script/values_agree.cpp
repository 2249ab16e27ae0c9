// script_values_agree [COUNT]
// Numbers to texts and back, the player's conversions against the literal ones:
// powers of ten, the borders of 15 digits, carries, and random numbers and
// texts, COUNT of each kind.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "player/convert.h"
#include "player/text.h"
#include "random_block.h"
#include "values.h"

namespace {

using namespace vexel::model::script;
using vexel::model::i32;
using vexel::model::u64;

int failures = 0;
long compared = 0;

bool SameNumber(double a, double b) {
  return std::memcmp(&a, &b, sizeof a) == 0 || (std::isnan(a) && std::isnan(b));
}

void Fail(const char* what, const std::string& of, const std::string& is,
          const std::string& model) {
  if (++failures > 40) return;
  std::printf("%s of %s: %s, model %s\n", what, of.c_str(), is.c_str(), model.c_str());
}

std::string Exact(double v) {
  char text[64];
  std::snprintf(text, sizeof text, "%a (%.17g)", v, v);
  return text;
}

void CheckText(const std::string& text) {
  ++compared;
  double a = -77, b = -77;
  const bool readA = vexel::ConvertStringToDouble(text.c_str(), &a);
  const bool readB = ParseDouble(text, &b);
  if (readA != readB || !SameNumber(a, b)) {
    Fail("number", '"' + text + '"', readA ? Exact(a) : "none", readB ? Exact(b) : "none");
  }
  i32 c = -77, d = -77;
  const bool intA = vexel::ConvertStringToInteger(text.c_str(), &c);
  const bool intB = ParseInteger(text, &d);
  if (intA != intB || c != d) {
    Fail("integer", '"' + text + '"', intA ? std::to_string(c) : "none",
         intB ? std::to_string(d) : "none");
  }
}

void CheckNumber(double v) {
  ++compared;
  char text[vexel::kNumberTextSize];
  const i32 length = vexel::FormatDouble(v, text);
  const std::string model = DoubleText(v);
  if (model != text || length != static_cast<i32>(model.size())) {
    Fail("text", Exact(v), text, model);
    return;
  }
  const double back = vexel::RoundTripDouble(v), modelBack = NumberOf(model);
  if (!SameNumber(back, modelBack)) Fail("round trip", Exact(v), Exact(back), Exact(modelBack));
}

void CheckBothSigns(double v) {
  CheckNumber(v);
  CheckNumber(-v);
}

// The number and its neighbours.
void CheckAround(double v, int steps) {
  double low = v, high = v;
  CheckBothSigns(v);
  for (int i = 0; i < steps; ++i) {
    low = std::nextafter(low, 0.0);
    high = std::nextafter(high, INFINITY);
    CheckBothSigns(low);
    CheckBothSigns(high);
  }
}

void Borders() {
  for (int n = -324; n <= 308; ++n) {
    CheckAround(std::pow(10.0, n), 40);
    CheckAround(std::ldexp(1.0, n), 10);
    // 15 and 16 nines, and the halves that rounding decides.
    for (const char* digits : {"999999999999999", "9999999999999995", "99999999999999949",
                               "9999999999999999", "123456789012345", "1234567890123455",
                               "4999999999999995", "100000000000000500", "1000000000000005"}) {
      char text[64];
      std::snprintf(text, sizeof text, "%c.%se%d", digits[0], digits + 1, n);
      CheckText(text);
      CheckAround(std::strtod(text, nullptr), 12);
    }
  }
  for (int n = -1074; n < 1024; ++n) CheckAround(std::ldexp(1.0, n), 4);
  for (const double v : {0.0, 1.0 / 0.0, std::nan(""), 5e-324, 2.2250738585072014e-308,
                         1.7976931348623157e308, 0.1 + 0.2, 1e15 - 0.5, 1e15 + 0.5, 2147483648.0}) {
    CheckBothSigns(v);
  }
  for (i32 n = -20000; n < 20000; ++n) {
    CheckNumber(n);
    CheckNumber(n / 20.0);
    CheckNumber(n / 100.0);
    CheckNumber(n * 100.0 / 65536);
  }
  for (const i32 n : {0, 1, -1, 9, 10, -10, 2147483647, -2147483647, -2147483647 - 1}) {
    char* text = vexel::ConvertIntegerToString(n);
    if (IntegerText(n) != text) Fail("integer text", std::to_string(n), text, IntegerText(n));
    vexel::FreeStr(text);
  }
}

void RandomNumbers(Lots& lots, long count) {
  for (long i = 0; i < count; ++i) {
    const u64 bits = lots.Next();
    double v;
    switch (i % 6) {
      case 0:  // any bits
        std::memcpy(&v, &bits, sizeof v);
        break;
      case 1:  // a float
      {
        const auto word = static_cast<vexel::model::u32>(bits);
        float f;
        std::memcpy(&f, &word, sizeof f);
        v = static_cast<double>(f);
        break;
      }
      case 2:  // of everyday size
        v = std::ldexp(static_cast<double>(bits >> 11), -20 - static_cast<int>(bits % 48));
        break;
      case 3:  // few decimals
        v = static_cast<double>(bits % 100000000) /
            std::pow(10.0, static_cast<int>(bits >> 32) % 9);
        break;
      case 4:  // near a carry: 15 digits, then nines or a half
        v = std::floor(static_cast<double>(bits % 1000000000000000)) +
            (bits >> 60 < 8 ? 0.5 : 0.9999);
        v = v * std::pow(10.0, static_cast<int>(bits >> 50) % 24 - 20);
        break;
      default:  // integers
        v = static_cast<double>(bits >> (bits % 64));
        break;
    }
    CheckBothSigns(v);
  }
}

void RandomTexts(Lots& lots, long count) {
  for (long i = 0; i < count; ++i) {
    std::string text;
    if (lots.OneIn(3)) text += lots.OneIn(2) ? '-' : '+';
    const auto digits = [&lots, &text](int most) {
      for (int n = lots.Below(most + 1); n > 0; --n) {
        text += static_cast<char>('0' + lots.Below(10));
      }
    };
    digits(lots.OneIn(4) ? 30 : 6);
    if (lots.OneIn(2)) {
      text += '.';
      digits(lots.OneIn(4) ? 30 : 6);
    }
    if (lots.OneIn(3)) {
      text += lots.OneIn(2) ? 'e' : 'E';
      if (lots.OneIn(2)) text += lots.OneIn(2) ? '-' : '+';
      digits(lots.OneIn(8) ? 12 : 3);
    }
    if (lots.OneIn(12)) {
      text.insert(static_cast<size_t>(lots.Below(static_cast<int>(text.size()) + 1)), 1,
                  " x.e-+\t\x80"[lots.Below(8)]);
    }
    CheckText(text);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const long count = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 400000;
  Lots lots(20261121);
  Borders();
  RandomNumbers(lots, count);
  RandomTexts(lots, count);
  std::printf("%ld compared, %d differences\n", compared, failures);
  return failures == 0 ? 0 : 1;
}
