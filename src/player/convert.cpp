// Texts to numbers and back. The digits in the last places depend on each
// rounding on the way, so the order of operations here is fixed: everything
// runs in the widest floating type, powers of ten are rounded to double before
// they are used, and digits are peeled off one after the other.
#include "player/convert.h"

#include <cmath>
#include <cstring>

#include "player/text.h"
#include "player/url_builder.h"

namespace vexel {

namespace {

using Wide = long double;

constexpr double kLog10Of2 = 0.301029995663981;

// Below this power a double keeps fewer bits, and soon none: there the wide
// power divides as it is.
constexpr int32_t kLowestExactPower = -307;

// From here on a number is written with one digit before the point, and an
// exponent.
constexpr int32_t kFirstExponent = 15;
constexpr int32_t kLastSmallFraction = -5;
constexpr int32_t kDigits = 15;

constexpr char kErrorText[] = "#ERROR#";

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

Wide WidePowerOfTen(int32_t n) {
  // The magnitude of the lowest integer needs the unsigned type.
  uint32_t count = n < 0 ? 0u - static_cast<uint32_t>(n) : static_cast<uint32_t>(n);
  Wide base = n < 0 ? 0.1L : 10.0L;
  Wide result = 1;
  while (count != 0) {
    if (count & 1) result *= base;
    base *= base;
    count >>= 1;
  }
  return result;
}

Wide Scaled(double v, int32_t k) {
  return k < kLowestExactPower ? Wide{v} / WidePowerOfTen(k) : Wide{v} / Wide{PowerOfTen(k)};
}

bool ReadInteger(const char* at, const char* end, int32_t* out) {
  const bool negative = at != end && *at == '-';
  if (at != end && (*at == '-' || *at == '+')) ++at;
  if (at == end) return false;
  uint32_t value = 0;
  for (; at != end; ++at) {
    if (!IsDigit(*at)) return false;
    value = value * 10 + static_cast<uint32_t>(*at - '0');
  }
  *out = static_cast<int32_t>(negative ? 0u - value : value);
  return true;
}

bool ReadDouble(const char* at, const char* end, double* out) {
  const bool negative = at != end && *at == '-';
  if (at != end && (*at == '-' || *at == '+')) ++at;
  if (at == end) return false;
  Wide value = 0;
  uint32_t exponent = 0;  // wraps, as the integer behind an "e" does
  for (; at != end && IsDigit(*at); ++at) value = value * 10 + static_cast<Wide>(*at - '0');
  if (at != end && *at == '.') {
    for (++at; at != end && IsDigit(*at); ++at) {
      value = value * 10 + static_cast<Wide>(*at - '0');
      --exponent;
    }
  }
  if (at != end && (*at == 'e' || *at == 'E')) {
    int32_t shift;
    if (!ReadInteger(at + 1, end, &shift)) return false;
    exponent += static_cast<uint32_t>(shift);
  } else if (at != end) {
    return false;
  }
  if (negative) value = -value;
  *out = static_cast<double>(value * Wide{PowerOfTen(static_cast<int32_t>(exponent))});
  return true;
}

// Peels the leading digit off `*m`, which lies from 0 to below 10.
int32_t TakeDigit(Wide* m) {
  const int32_t digit = static_cast<int32_t>(*m);
  *m = (*m - static_cast<Wide>(digit)) * 10;
  return digit;
}

char* PutDigit(char* at, Wide* m) {
  *at = static_cast<char>('0' + TakeDigit(m));
  return at + 1;
}

// Adds 1 to the last of the digits from `start` to `end`. Required: a carry
// out of the first one is lost.
void CarryUp(char* start, char* end) {
  while (end != start) {
    --end;
    if (*end < '0') continue;  // the point
    if (*end < '9') {
      ++*end;
      return;
    }
    *end = '0';
  }
}

}  // namespace

bool ConvertStringToInteger(const char* text, int32_t* out) {
  return text && ReadInteger(text, text + strlen(text), out);
}

bool ConvertStringToDouble(const char* text, double* out) {
  return text && ReadDouble(text, text + strlen(text), out);
}

bool ConvertBytesToDouble(const char* text, int32_t length, double* out) {
  return ReadDouble(text, text + length, out);
}

double PowerOfTen(int32_t n) {
  return static_cast<double>(WidePowerOfTen(n));
}

int32_t FormatDouble(double v, char out[kNumberTextSize]) {
  if (!std::isfinite(v)) {
    memcpy(out, kErrorText, sizeof kErrorText);
    return sizeof kErrorText - 1;
  }
  char* at = out;
  if (v < 0) {
    *at++ = '-';
    v = -v;
  }
  char* const start = at;

  int binary;
  std::frexp(v, &binary);
  int32_t k = static_cast<int32_t>(std::round((binary - 1) * kLog10Of2));
  Wide m = Scaled(v, k);
  if (m < 1) m = Scaled(v, --k);

  if (k >= kLastSmallFraction && k < 0) {
    *at++ = '0';
    *at++ = '0';
    *at++ = '.';
    for (; k < -1; ++k) *at++ = '0';
    for (int32_t i = 0; i < kDigits; ++i) at = PutDigit(at, &m);
    k = 0;
  } else if (k < kFirstExponent) {
    *at++ = '0';  // room for a carry
    const int32_t first = TakeDigit(&m);
    if (first != 0) *at++ = static_cast<char>('0' + first);
    int32_t count = 1;
    for (; k > 0; --k, ++count) at = PutDigit(at, &m);
    *at++ = '.';
    for (; count < kDigits; ++count) at = PutDigit(at, &m);
  } else {
    at = PutDigit(at, &m);
    *at++ = '.';
    for (int32_t i = 1; i < kDigits; ++i) at = PutDigit(at, &m);
  }
  if (TakeDigit(&m) >= 5) CarryUp(start, at);

  while (at[-1] == '0') --at;
  if (at[-1] == '.') --at;
  if (k != 0) {
    *at++ = 'e';
    if (k < 0) *at++ = '-';
    const int32_t magnitude = k < 0 ? -k : k;
    if (magnitude >= 100) *at++ = static_cast<char>('0' + magnitude / 100);
    if (magnitude >= 10) *at++ = static_cast<char>('0' + magnitude / 10 % 10);
    *at++ = static_cast<char>('0' + magnitude % 10);
  }
  *at = '\0';
  // The zero that waited for a carry; a lost carry leaves a zero that stays.
  if (*start == '0' && IsDigit(start[1])) {
    memmove(start, start + 1, static_cast<size_t>(at - start));
    --at;
  }
  return static_cast<int32_t>(at - out);
}

double RoundTripDouble(double v) {
  char text[kNumberTextSize];
  FormatDouble(v, text);
  double result = 0;
  return ConvertStringToDouble(text, &result) ? result : 0;
}

char* ConvertDoubleToString(double v) {
  char text[kNumberTextSize];
  return CreateStr(text, FormatDouble(v, text));
}

char* ConvertIntegerToString(int32_t n) {
  URLBuilder text = {};
  if (n < 0) text.AppendChar('-');
  text.AppendInt(
      static_cast<int32_t>(n < 0 ? 0u - static_cast<uint32_t>(n) : static_cast<uint32_t>(n)));
  return text.buffer;
}

}  // namespace vexel
