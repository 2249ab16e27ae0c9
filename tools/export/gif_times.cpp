#include "gif_times.h"

#include <algorithm>

namespace vexel::tools {

namespace {

constexpr int64_t kPerSecond = 100;
constexpr int64_t kShortest = 2;

}  // namespace

int64_t GifTimes::StartOf(int64_t frame) const {
  return (2 * frame * kPerSecond * rate_.den + rate_.num) / (2 * int64_t{rate_.num});
}

std::optional<GifTime> GifTimes::Next() {
  const int64_t start = StartOf(next_++);
  if (start < earliest_) return std::nullopt;
  earliest_ = start + kShortest;
  int64_t after = next_;
  while (after < count_ && StartOf(after) < earliest_) after++;
  return GifTime{start, std::max(StartOf(after) - start, kShortest)};
}

}  // namespace vexel::tools
