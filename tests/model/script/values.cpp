// Texts and numbers, digit by digit.
#include "values.h"

#include <cmath>

namespace vexel::model::script {

i32 ToInt32(double v) {
  if (!(v > -2147483649.0 && v < 2147483648.0)) return kMin;
  return static_cast<i32>(v);
}

static char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool SameName(const Text& a, const Text& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (Lower(a[i]) != Lower(b[i])) return false;
  }
  return true;
}

static bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool ParseInteger(const Text& text, i32* out) {
  size_t i = 0;
  bool negative = false;
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
  if (i == text.size()) return false;
  u32 value = 0;
  for (; i < text.size(); ++i) {
    if (!IsDigit(text[i])) return false;
    value = value * 10 + static_cast<u32>(text[i] - '0');
  }
  *out = static_cast<i32>(negative ? 0 - value : value);
  return true;
}

static long double WidePower(i32 n) {
  long double base = n < 0 ? 0.1L : 10.0L;
  u32 count = n < 0 ? 0 - static_cast<u32>(n) : static_cast<u32>(n);
  long double result = 1;
  while (count != 0) {
    if (count & 1) result *= base;
    base *= base;
    count >>= 1;
  }
  return result;
}

static double PowerOfTen(i32 n) {
  return static_cast<double>(WidePower(n));
}

bool ParseDouble(const Text& text, double* out) {
  size_t i = 0;
  bool negative = false;
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
  if (i == text.size()) return false;
  long double value = 0;
  i32 exponent = 0;
  for (; i < text.size() && IsDigit(text[i]); ++i) value = value * 10 + (text[i] - '0');
  if (i < text.size() && text[i] == '.') {
    for (++i; i < text.size() && IsDigit(text[i]); ++i) {
      value = value * 10 + (text[i] - '0');
      --exponent;
    }
  }
  if (i < text.size()) {
    if (text[i] != 'e' && text[i] != 'E') return false;
    i32 given;
    if (!ParseInteger(text.substr(i + 1), &given)) return false;
    exponent += given;
  }
  if (negative) value = -value;
  *out = static_cast<double>(value * PowerOfTen(exponent));
  return true;
}

double NumberOf(const Text& text) {
  double value = 0;
  return ParseDouble(text, &value) ? value : 0;
}

Text IntegerText(i32 n) {
  if (n == 0) return "0";
  Text out = n < 0 ? "-" : "";
  // The lowest integer has no digits: it stays negative when negated.
  if (n == kMin) return out;
  if (n < 0) n = -n;
  Text digits;
  for (; n > 0; n /= 10) digits.insert(digits.begin(), static_cast<char>('0' + n % 10));
  return out + digits;
}

Text DoubleText(double v) {
  if (!std::isfinite(v)) return "#ERROR#";
  Text out;
  if (v < 0) {
    out += '-';
    v = -v;
  }
  const size_t start = out.size();
  int binary = 0;
  std::frexp(v, &binary);
  i32 k = static_cast<i32>(std::round((binary - 1) * 0.301029995663981));
  // A power that no double holds well is used as it is.
  const auto scaled = [v](i32 n) {
    const long double wide = v;
    return n < -307 ? wide / WidePower(n) : wide / PowerOfTen(n);
  };
  long double m = scaled(k);
  if (static_cast<i32>(m) == 0) m = scaled(--k);
  const auto digit = [&m] {
    const i32 d = static_cast<i32>(m);
    m = (m - d) * 10;
    return d;
  };
  const auto write = [&out](i32 d) { out += static_cast<char>('0' + d); };
  if (k >= -5 && k <= -1) {
    out += "00.";
    for (i32 i = -k - 1; i > 0; --i) out += '0';
    for (int i = 0; i < 15; ++i) write(digit());
    k = 0;
  } else if (k < 15) {
    out += '0';
    if (const i32 d = digit(); d != 0) write(d);
    int count = 0;
    while (k > 0) {
      write(digit());
      --k;
      ++count;
    }
    out += '.';
    for (; count < 14; ++count) write(digit());
  } else {
    write(digit());
    out += '.';
    for (int i = 0; i < 14; ++i) write(digit());
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
  while (!out.empty() && out.back() == '0') out.pop_back();
  if (!out.empty() && out.back() == '.') out.pop_back();
  if (k != 0) out += 'e' + IntegerText(k);
  if (out.size() > start + 1 && out[start] == '0' && IsDigit(out[start + 1])) out.erase(start, 1);
  return out;
}

Text CutAtNul(Text text) {
  return text.c_str();
}

Text Extract(const Text& text, i64 start, i64 count) {
  const i64 length = static_cast<i64>(text.size());
  if (start < 0) start = 0;
  if (start > length) start = length;
  if (count < 0 || count > length - start) count = length - start;
  return text.substr(static_cast<size_t>(start), static_cast<size_t>(count));
}

Text FormEncode(const Text& text) {
  Text out;
  for (const char c : text) {
    if (IsDigit(c) || (Lower(c) >= 'a' && Lower(c) <= 'z')) {
      out += c;
    } else if (c == ' ') {
      out += '+';
    } else {
      const unsigned byte = static_cast<unsigned char>(c);
      out += '%';
      out += "0123456789ABCDEF"[byte >> 4];
      out += "0123456789ABCDEF"[byte & 15];
    }
  }
  return out;
}

Text EncodeVariables(const std::vector<Variable>& variables) {
  Text out;
  for (const Variable& variable : variables) {
    if (&variable != &variables.front()) out += '&';
    out += FormEncode(variable.name) + '=' + FormEncode(variable.value);
  }
  return out;
}

bool IsMailAddress(const Text& url) {
  size_t first = 0;
  while (first < url.size() && url[first] >= 1 && url[first] <= 32) ++first;
  const size_t colon = url.find(':', first);
  return colon != Text::npos && SameName(url.substr(first, colon - first), "mailto");
}

bool IsMachineName(const Text& url) {
  const size_t at = url.find("://");
  return at != Text::npos && url.find('/', at + 3) == Text::npos;
}

i64 LayerNumber(const Text& name) {
  if (name.size() < 6) return -1;
  const Text prefix = name.substr(0, 6);
  if (!SameName(prefix, "_vexel") && !SameName(prefix, "_level")) return -1;
  i64 number = 0;
  for (size_t i = 6; i < name.size() && IsDigit(name[i]); ++i) {
    number = number * 10 + (name[i] - '0');
    if (number > kMax) number = kMax;
  }
  return number;
}

static i32 Hash(i32 x) {
  // Multiplying by a power of two instead of shifting a negative number left.
  const i32 a = ((x * 8192) ^ x) - (x >> 21);
  i32 b = ((a * a * 15731 + 789221) * a + 1376312589) & kMax;
  b += a;
  return ((b * 8192) ^ b) - (b >> 21);
}

i32 RandomSource::Next(i32 n, u32 clock) {
  if (seed == 0) seed = clock;
  seed = seed & 1 ? (seed >> 1) ^ 0xA3000000u : seed >> 1;
  const i32 h = Hash(static_cast<i32>(seed * 71));
  if (n <= 0) return 0;
  return (h & kMax) % n;
}

}  // namespace vexel::model::script
