// The two colour structures of the system. They live beside the geometry
// because interpolation (morphs) treats colours as it treats points.
#pragma once

#include <cstdint>

namespace vexel {

// A pixel in the rasterizer: 0 to 255 in each channel in normal use, colour
// channels premultiplied by alpha once the pixel stands in a slab. 16 bits a
// channel leave room for the sum of the 16 samples of an anti-aliased pixel.
struct RGBI {
  uint16_t blue;
  uint16_t green;
  uint16_t red;
  uint16_t alpha;
};

// A colour in 32 bits as movies and palettes of callers hold it: not
// premultiplied. Read as a little-endian word it is 0xAABBGGRR.
struct SRGB {
  uint8_t red;
  uint8_t green;
  uint8_t blue;
  uint8_t alpha;
};

}  // namespace vexel
