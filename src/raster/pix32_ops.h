// Inner loops over 32-bit pixels, 0xAARRGGBB premultiplied. Each has a plain
// form and one for processors with 256-bit integer vectors, which gives the
// same bits; the set is picked once, at the first use.
#pragma once

#include <cstdint>

#include "geometry/intmath.h"
#include "raster/row_sums.h"

namespace vexel {

// The background where it isn't read: white with an alpha of 0.
inline constexpr PackedRGBI kWhiteBackground = 0x000000FF00FF00FF;
inline constexpr uint32_t kWhitePixel = 0x00FFFFFF;

// The line of a bitmap's pixels to sample: (x >> 16, y >> 16) is the pixel, and
// all positions lie inside.
struct SampleLine {
  const uint8_t* baseAddr;
  int32_t rowBytes;
  SFIXED x, y;
  SFIXED dx, dy;
  int32_t width;  // of the bitmap, in pixels
};

// A radial gradient's pixels: positions in gradient space with 8 fraction bits.
struct RadialLine {
  int32_t x, y;
  int32_t dx, dy;
};

struct Pix32Ops {
  // Stores n times the pixel.
  void (*fill)(uint8_t* at, int32_t n, uint32_t pixel);
  // Composes one colour onto n pixels.
  void (*blendColor)(uint8_t* at, int32_t n, uint32_t color);
  // Composes n pixels onto as many.
  void (*blend)(uint8_t* at, const uint8_t* src, int32_t n);
  // Stores n entries of a gradient's ramp, at (pos >> 15) + 128 held to 0..256.
  void (*linear)(uint8_t* at, int32_t n, const uint32_t* ramp, int32_t pos, int32_t step);
  // Stores n entries of a gradient's ramp, at the distance from the centre.
  void (*radial)(uint8_t* at, int32_t n, const uint32_t* ramp, const RadialLine& line);
  // Stores n pixels of a 32-bit bitmap.
  void (*sample)(uint8_t* at, int32_t n, const SampleLine& line);
};

// The set for this processor.
const Pix32Ops& Pix32();

// All sets that this processor can run, the plain one first; for tests.
const Pix32Ops* const* Pix32OpSets(int32_t* count);

}  // namespace vexel
