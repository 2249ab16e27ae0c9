// The change of colour that a timeline sets on an object: a multiplier and an
// addition for each of the four channels. It is accumulated down the object
// tree and applied when colours are prepared; bitmaps turn it into a table.
#pragma once

#include <cstdint>

#include "geometry/color.h"

namespace vexel {

struct GradColorRamp;

// A plain value. `flags` is right only after CalcFlags, Clear or Concat.
struct ColorTransform {
  // Bits of `flags`; 0 is the identity.
  static constexpr int32_t kHasMul = 1;  // some multiplier is not 256
  static constexpr int32_t kHasAdd = 2;  // some addition is not 0

  int32_t flags;
  int16_t aa, ab;  // alpha: multiplier (8.8, 256 is 1.0), addition (colour units)
  int16_t ra, rb;  // red
  int16_t ga, gb;  // green
  int16_t ba, bb;  // blue

  // Makes this the identity.
  void Clear();

  // Sets `flags` from the eight numbers.
  void CalcFlags();

  // Makes this the transform that applies `other` first and itself after it.
  // The numbers are kept in 16 bits and may wrap.
  void Concat(const ColorTransform* other);

  // Transforms n pixels that are not premultiplied yet. Without multipliers
  // (kHasMul clear) only the additions count.
  void Apply(RGBI* pixels, int32_t n) const;

  // The transformed colour. Both numbers of each channel count.
  SRGB Apply(SRGB color) const;

  // Transforms the stops of a gradient, each as a colour.
  void Apply(GradColorRamp* ramp) const;
};

// (value * mul >> 8) + add, held to 0..255.
// Required: results from -65408 to -65281 come back as they are, because only
// eight bits of the sum are tested; the caller's narrowing store cuts them.
int32_t ApplyChannel(int32_t value, int32_t mul, int32_t add);

// value + add with the same clamp; `mul` is not read.
int32_t ApplyChannelB(int32_t value, int32_t mul, int32_t add);

// Whether all fields are the same, `flags` included: two transforms with the
// same numbers differ while one of them has stale flags.
bool Equal(const ColorTransform* a, const ColorTransform* b);

}  // namespace vexel
