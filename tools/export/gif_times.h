// When the frames of a GIF stand, which counts hundredths of a second.
#pragma once

#include <cstdint>
#include <vector>

#include "film_times.h"

namespace vexel::tools {

struct GifFrame {
  int64_t frame;   // of the film
  int64_t start;   // hundredths of a second
  int64_t length;  // hundredths of a second
};

// Each time is rounded by itself, so that errors do not add up. Players show a
// frame of less than two hundredths for ten; so frames that begin sooner after
// the one before are left out.
std::vector<GifFrame> GifFrames(FrameRate rate, int64_t count);

}  // namespace vexel::tools
