// Texts to numbers and back. The digits in the last places depend on each
// rounding on the way, so the order of operations here is fixed: everything
// runs in the widest floating type, powers of ten are rounded to double before
// they are used, and digits are peeled off one after the other.
#include "player/convert.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#include "player/text.h"
#include "player/url_builder.h"

namespace vexel {

namespace {

using Wide = long double;

__extension__ using Product = unsigned __int128;

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

constexpr Wide WidePowerOfTen(int32_t n) {
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

// The powers that ordinary numbers need, as PowerOfTen gives them.
constexpr int32_t kTablePower = 22;
struct PowerTable {
  double powers[2 * kTablePower + 1];
};
constexpr PowerTable MakePowerTable() {
  PowerTable table = {};
  for (int32_t n = -kTablePower; n <= kTablePower; ++n) {
    table.powers[n + kTablePower] = static_cast<double>(WidePowerOfTen(n));
  }
  return table;
}
constexpr PowerTable kPowers = MakePowerTable();

Wide Scaled(double v, int32_t k) {
  return k < kLowestExactPower ? Wide{v} / WidePowerOfTen(k) : Wide{v} / Wide{PowerOfTen(k)};
}

// Digits that 64 bits surely hold.
constexpr int32_t kExactDigits = 18;

constexpr uint64_t kTenToThe12 = 1000000000000;
constexpr uint64_t kTenToThe13 = 10000000000000;

// A number as its text has it: 15 digits, the first of them not 0, times 10 to
// the power of `k` - 14. A carry out of the top leaves 10 to the 15th.
struct Digits {
  uint64_t digits;
  int32_t k;
};

// The fast way to the digits of ordinary numbers needs a wide type of 64 bits.
constexpr bool kHasFastDigits =
    std::numeric_limits<Wide>::digits == 64 && std::endian::native == std::endian::little;
constexpr double kSmallestFast = 1e-4;
constexpr double kLargestFast = 1e14;

// The decimal exponent that the binary one suggests, for 2 to the power of
// -14 to 47.
constexpr int32_t kFirstBinary = -14;
constexpr int32_t kLastBinary = 47;
struct ExponentTable {
  int8_t k[kLastBinary - kFirstBinary + 1];
};
constexpr ExponentTable MakeExponentTable() {
  ExponentTable table = {};
  for (int32_t e = kFirstBinary; e <= kLastBinary; ++e) {
    const double exact = e * kLog10Of2;
    table.k[e - kFirstBinary] = static_cast<int8_t>(exact < 0 ? exact - 0.5 : exact + 0.5);
  }
  return table;
}
constexpr ExponentTable kExponents = MakeExponentTable();

// 10 * `fraction`, rounded to the 64 bits that the wide type keeps.
Product TimesTen(uint64_t fraction) {
  Product product = static_cast<Product>(fraction) * 10;
  const uint64_t above = static_cast<uint64_t>(product >> 64);
  if (above == 0) return product;
  const int32_t lost = std::bit_width(above);
  const uint64_t unit = uint64_t{1} << lost;
  const uint64_t rest = static_cast<uint64_t>(product) & (unit - 1);
  product -= rest;
  const uint64_t half = unit >> 1;
  const bool odd = (static_cast<uint64_t>(product) & unit) != 0;
  if (rest > half || (rest == half && odd)) product += unit;
  return product;
}

// The same digits that TakeDigit peels off, without walking through them. Each
// step there multiplies the fraction by ten, which adds a zero bit at its end:
// after two steps nothing is rounded any more, and one product gives the rest.
Digits FastDigits(double v) {
  const uint64_t bits = std::bit_cast<uint64_t>(v);
  const int32_t binary = static_cast<int32_t>(bits >> 52) - 1023;
  int32_t k = kExponents.k[binary - kFirstBinary];
  Wide m = Wide{v} / Wide{kPowers.powers[k + kTablePower]};
  if (m < 1) m = Wide{v} / Wide{kPowers.powers[--k + kTablePower]};

  uint64_t mantissa;
  uint16_t exponent;
  memcpy(&mantissa, &m, sizeof mantissa);
  memcpy(&exponent, reinterpret_cast<const char*>(&m) + sizeof mantissa, sizeof exponent);
  const int32_t point = 63 - (exponent - 16383);  // bits behind the point, 60 to 63
  const uint64_t mask = (uint64_t{1} << point) - 1;
  uint64_t digits = mantissa >> point;
  uint64_t fraction = mantissa & mask;
  for (int32_t i = 0; i < 2; ++i) {
    const Product next = TimesTen(fraction);
    digits = digits * 10 + static_cast<uint64_t>(next >> point);
    fraction = static_cast<uint64_t>(next) & mask;
  }
  const uint64_t rest =
      static_cast<uint64_t>((static_cast<Product>(fraction) * kTenToThe13) >> point);
  digits = digits * kTenToThe12 + rest / 10 + (rest % 10 >= 5);
  return {digits, k};
}

// `digits` / 10^n for n = 8, 4, 2, 1 while that is whole and `*places` allows.
uint64_t StripZeros(uint64_t digits, int32_t* places) {
  constexpr struct {
    int32_t n;
    uint64_t power;
  } kSteps[] = {{8, 100000000}, {4, 10000}, {2, 100}, {1, 10}};
  for (const auto& step : kSteps) {
    if (*places < step.n || digits % step.power != 0) continue;
    digits /= step.power;
    *places -= step.n;
  }
  return digits;
}

// The number and a NUL; returns where the NUL stands.
char* WriteFast(double v, char* at) {
  uint64_t whole = static_cast<uint64_t>(v);
  uint64_t fraction = 0;
  int32_t places = 0;
  if (static_cast<double>(whole) != v) {
    const Digits number = FastDigits(v);
    places = kDigits - 1 - number.k;
    fraction = StripZeros(number.digits, &places);
    uint64_t unit = 1;
    for (int32_t i = 0; i < places; ++i) unit *= 10;
    whole = fraction / unit;
    fraction %= unit;
  }
  char digits[20];
  int32_t count = 0;
  do {
    digits[count++] = static_cast<char>('0' + whole % 10);
    whole /= 10;
  } while (whole != 0);
  while (count > 0) *at++ = digits[--count];
  if (places > 0) {
    *at = '.';
    char* const end = at + places + 1;
    for (at = end; places > 0; --places) {
      *--at = static_cast<char>('0' + fraction % 10);
      fraction /= 10;
    }
    at = end;
  }
  *at = '\0';
  return at;
}

// Eight bytes of a text at once: texts of a megabyte are read as numbers again
// and again by a script that means harm.
uint64_t Word(const char* at) {
  uint64_t word;
  memcpy(&word, at, sizeof word);
  return word;
}

constexpr uint64_t kEightZeros = 0x3030303030303030;

const char* SkipZeros(const char* at, const char* end) {
  while (end - at >= 8 && Word(at) == kEightZeros) at += 8;
  while (at != end && *at == '0') ++at;
  return at;
}

const char* SkipDigits(const char* at, const char* end) {
  constexpr uint64_t kHighHalves = 0xF0F0F0F0F0F0F0F0;
  constexpr uint64_t kSixes = 0x0606060606060606;  // carry a half above 9 into the next
  while (end - at >= 8) {
    const uint64_t word = Word(at);
    if ((word & kHighHalves) != kEightZeros) break;
    if (((word + kSixes) & kHighHalves) != kEightZeros) break;
    at += 8;
  }
  while (at != end && IsDigit(*at)) ++at;
  return at;
}

bool ReadInteger(const char* at, const char* end, int32_t* out) {
  // Ten to the 32nd is a multiple of two to the 32nd: what stands before the
  // last 32 digits is lost by wrapping.
  constexpr int32_t kDigitsThatCount = 32;
  const bool negative = at != end && *at == '-';
  if (at != end && (*at == '-' || *at == '+')) ++at;
  if (at == end || SkipDigits(at, end) != end) return false;
  if (end - at > kDigitsThatCount) at = end - kDigitsThatCount;
  uint32_t value = 0;
  for (; at != end; ++at) value = value * 10 + static_cast<uint32_t>(*at - '0');
  *out = static_cast<int32_t>(negative ? 0u - value : value);
  return true;
}

// Adds the digits at `at` to `*value`; returns what follows them.
const char* AddDigits(const char* at, const char* end, Wide* value) {
  if (*value == 0) at = SkipZeros(at, end);
  for (; at != end && IsDigit(*at); ++at) {
    if (std::isinf(*value)) return SkipDigits(at, end);
    *value = *value * 10 + static_cast<Wide>(*at - '0');
  }
  return at;
}

// Digits with a point among them or none, as many as an integer holds. False
// for all others, numbers or not.
bool ReadShort(const char* at, const char* end, bool negative, double* out) {
  if (end - at > kExactDigits) return false;
  int64_t value = 0;
  const char* point = nullptr;
  for (; at != end; ++at) {
    if (IsDigit(*at)) {
      value = value * 10 + (*at - '0');
    } else if (*at == '.' && !point) {
      point = at + 1;
    } else {
      return false;
    }
  }
  if (negative) value = -value;
  const bool minusZero = negative && value == 0;
  if (!point || point == end) {
    *out = minusZero ? -0.0 : static_cast<double>(value);
  } else {
    const Wide power = kPowers.powers[kTablePower - (end - point)];
    *out = minusZero ? -0.0 : static_cast<double>(static_cast<Wide>(value) * power);
  }
  return true;
}

bool ReadDouble(const char* at, const char* end, double* out) {
  const bool negative = at != end && *at == '-';
  if (at != end && (*at == '-' || *at == '+')) ++at;
  if (at == end) return false;
  if (ReadShort(at, end, negative, out)) return true;
  Wide value = 0;
  uint32_t exponent = 0;  // wraps, as the integer behind an "e" does
  at = AddDigits(at, end, &value);
  if (at != end && *at == '.') {
    const char* const fraction = at + 1;
    at = AddDigits(fraction, end, &value);
    exponent -= static_cast<uint32_t>(at - fraction);
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
  if (v == 0 || (kHasFastDigits && v > kSmallestFast && v < kLargestFast)) {
    return static_cast<int32_t>(WriteFast(v, at) - out);
  }

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
  if (const double magnitude = std::fabs(v);
      kHasFastDigits && magnitude > kSmallestFast && magnitude < kLargestFast) {
    const Digits number = FastDigits(magnitude);
    int32_t places = kDigits - 1 - number.k;
    const uint64_t digits = StripZeros(number.digits, &places);
    const Wide value = static_cast<Wide>(static_cast<int64_t>(digits));
    const double back = static_cast<double>(value * kPowers.powers[kTablePower - places]);
    return v < 0 ? -back : back;
  }
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
