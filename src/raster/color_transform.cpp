// Colour transforms. A channel is multiplied in 8.8 fixed point, then added to,
// then clamped; the pixels and colours that pass through are not premultiplied.
#include "raster/color_transform.h"

#include "geometry/intmath.h"
#include "raster/rcolor.h"

namespace vexel {

namespace {

constexpr int16_t kUnity = 256;  // a multiplier of 1.0

// The part of ApplyChannel that clamps. One test of the upper byte finds both
// overflow and negative sums, as the sums of bytes stay within 17 bits.
constexpr int32_t ClampSum(int32_t r) {
  if ((r & 0xFF00) == 0) return r;
  return r > 0 ? 255 : 0;
}

// One channel of `outer` after `inner`, the addition first as it needs the old
// multiplier.
void ConcatChannel(int16_t* mul, int16_t* add, int16_t innerMul, int16_t innerAdd) {
  *add = static_cast<int16_t>(*add + Asr(*mul * innerAdd, 8));
  *mul = static_cast<int16_t>(Asr(*mul * innerMul, 8));
}

}  // namespace

int32_t ApplyChannel(int32_t value, int32_t mul, int32_t add) {
  return ClampSum(WrapAdd(Asr(WrapMul(value, mul), 8), add));
}

int32_t ApplyChannelB(int32_t value, int32_t /*mul*/, int32_t add) {
  return ClampSum(WrapAdd(value, add));
}

void ColorTransform::Clear() {
  *this = {0, kUnity, 0, kUnity, 0, kUnity, 0, kUnity, 0};
}

void ColorTransform::CalcFlags() {
  flags = 0;
  if (aa != kUnity || ra != kUnity || ga != kUnity || ba != kUnity) flags |= kHasMul;
  if (ab != 0 || rb != 0 || gb != 0 || bb != 0) flags |= kHasAdd;
}

void ColorTransform::Concat(const ColorTransform* other) {
  if (other->flags == 0) return;
  if (flags == 0) {
    *this = *other;
    return;
  }
  const ColorTransform inner = *other;  // `other` may be this one
  ConcatChannel(&aa, &ab, inner.aa, inner.ab);
  ConcatChannel(&ra, &rb, inner.ra, inner.rb);
  ConcatChannel(&ga, &gb, inner.ga, inner.gb);
  ConcatChannel(&ba, &bb, inner.ba, inner.bb);
  CalcFlags();
}

void ColorTransform::Apply(RGBI* pixels, int32_t n) const {
  if (flags == 0) return;
  const auto apply = (flags & kHasMul) != 0 ? ApplyChannel : ApplyChannelB;
  for (int32_t i = 0; i < n; i++) {
    RGBI& p = pixels[i];
    p.alpha = static_cast<uint16_t>(apply(p.alpha, aa, ab));
    p.red = static_cast<uint16_t>(apply(p.red, ra, rb));
    p.green = static_cast<uint16_t>(apply(p.green, ga, gb));
    p.blue = static_cast<uint16_t>(apply(p.blue, ba, bb));
  }
}

SRGB ColorTransform::Apply(SRGB color) const {
  if (flags == 0) return color;
  return {static_cast<uint8_t>(ApplyChannel(color.red, ra, rb)),
          static_cast<uint8_t>(ApplyChannel(color.green, ga, gb)),
          static_cast<uint8_t>(ApplyChannel(color.blue, ba, bb)),
          static_cast<uint8_t>(ApplyChannel(color.alpha, aa, ab))};
}

void ColorTransform::Apply(GradColorRamp* ramp) const {
  if (flags == 0) return;
  for (int32_t i = 0; i < ramp->nColors; i++) ramp->color[i] = Apply(ramp->color[i]);
}

bool Equal(const ColorTransform* a, const ColorTransform* b) {
  return a->flags == b->flags && a->aa == b->aa && a->ab == b->ab && a->ra == b->ra &&
         a->rb == b->rb && a->ga == b->ga && a->gb == b->gb && a->ba == b->ba && a->bb == b->bb;
}

}  // namespace vexel
