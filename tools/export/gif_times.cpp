#include "gif_times.h"

#include <algorithm>

namespace vexel::tools {

namespace {

constexpr int64_t kPerSecond = 100;
constexpr int64_t kShortest = 2;

int64_t StartOf(FrameRate rate, int64_t frame) {
  return (2 * frame * kPerSecond * rate.den + rate.num) / (2 * int64_t{rate.num});
}

}  // namespace

std::vector<GifFrame> GifFrames(FrameRate rate, int64_t count) {
  std::vector<GifFrame> frames;
  for (int64_t i = 0; i < count; i++) {
    const int64_t start = StartOf(rate, i);
    if (!frames.empty()) {
      if (start - frames.back().start < kShortest) continue;
      frames.back().length = start - frames.back().start;
    }
    frames.push_back({i, start, 0});
  }
  if (!frames.empty())
    frames.back().length = std::max(kShortest, StartOf(rate, count) - frames.back().start);
  return frames;
}

}  // namespace vexel::tools
