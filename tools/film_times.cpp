#include "film_times.h"

#include <numeric>

#include "parsed_text.h"

namespace vexel::tools {

namespace {

constexpr int64_t kMsPerSecond = 1000;
constexpr int32_t kDecimals = 3;
constexpr int32_t kRateOne = 256;  // of 8.8 fixed point

int64_t CeilDiv(int64_t a, int64_t b) {  // b above 0
  return a / b + (a % b > 0);
}

bool Reduce(int64_t num, int64_t den, FrameRate* rate) {
  const int64_t divisor = std::gcd(num, den);
  num /= divisor;
  den /= divisor;
  if (num < 1 || num > kMaxRateTerm || den > kMaxRateTerm) return false;
  *rate = {static_cast<int32_t>(num), static_cast<int32_t>(den)};
  return true;
}

}  // namespace

bool ParseFrameRate(const std::string& text, FrameRate* rate) {
  int64_t num = 0;
  int64_t den = 1;
  const size_t slash = text.find('/');
  const size_t point = text.find('.');
  if (slash != std::string::npos) {
    if (!ParseNumber(text.substr(0, slash), 1, kMaxRateTerm, &num) ||
        !ParseNumber(text.substr(slash + 1), 1, kMaxRateTerm, &den))
      return false;
  } else if (point != std::string::npos) {
    const std::string decimals = text.substr(point + 1);
    int64_t part = 0;
    if (decimals.size() > kDecimals || decimals.starts_with('-') || text.starts_with('-') ||
        !ParseNumber(text.substr(0, point), 0, kMsPerSecond, &num) ||
        !ParseNumber(decimals, 0, kMsPerSecond, &part))
      return false;
    for (size_t i = 0; i < decimals.size(); i++) den *= 10;
    num = num * den + part;
  } else if (!ParseNumber(text, 1, kMsPerSecond, &num)) {
    return false;
  }
  constexpr int64_t kSlowestDen = 100;
  return num > 0 && num * kSlowestDen >= den && num <= kMsPerSecond * den && Reduce(num, den, rate);
}

FrameRate FrameRateOfMovie(uint32_t rate) {
  FrameRate reduced;
  Reduce(rate, kRateOne, &reduced);
  return reduced;
}

int64_t FramesBefore(FrameRate rate, int64_t ms) {
  return CeilDiv(ms * rate.num, kMsPerSecond * rate.den);
}

int64_t FrameStartMs(FrameRate rate, int64_t frame) {
  return frame * kMsPerSecond * rate.den / rate.num;
}

int64_t ClockMs(FrameRate rate, int64_t picture, int64_t fromMs, int32_t clockRate) {
  const int64_t perClock = static_cast<int64_t>(rate.num) * clockRate;
  const int64_t time =
      fromMs * perClock + kMsPerSecond * picture * rate.den * clockRate - kMsPerSecond * rate.num;
  return time < 0 ? -1 : CeilDiv(time, perClock);
}

}  // namespace vexel::tools
