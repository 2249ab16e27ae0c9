// When the frames of a GIF stand, which counts hundredths of a second.
#pragma once

#include <cstdint>
#include <optional>

#include "film_times.h"

namespace vexel::tools {

// Both in hundredths of a second.
struct GifTime {
  int64_t start;
  int64_t length;
};

// Each time is rounded by itself, so that errors do not add up. Players show a
// frame of less than two hundredths for ten; so frames that begin sooner after
// the one before are left out.
class GifTimes {
 public:
  // Of a film of `count` frames.
  GifTimes(FrameRate rate, int64_t count) : rate_(rate), count_(count) {}

  // Of the next frame; none if it is left out.
  std::optional<GifTime> Next();

 private:
  int64_t StartOf(int64_t frame) const;

  FrameRate rate_;
  int64_t count_;
  int64_t next_ = 0;      // the frame that comes
  int64_t earliest_ = 0;  // when it may begin
};

}  // namespace vexel::tools
