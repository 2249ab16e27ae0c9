// Gradients. A position in gradient space has 8 fraction bits, so that 2^22 is
// the edge of the gradient's square on each side of its centre; it is computed
// once at a span's start and steps from there.
#include "geometry/matrix.h"
#include "raster/composite.h"
#include "raster/pix32_ops.h"
#include "raster/pix32_radial.h"
#include "raster/pix32_slab.h"
#include "raster/raster.h"
#include "raster/rcolor.h"
#include "raster/slabs.h"

namespace vexel {
namespace {

constexpr int32_t kPosBits = 8;   // fraction bits of a device position
constexpr int kLinearShift = 15;  // 2^23, the square's side, to 256 entries
constexpr int32_t kLinearCentre = 128;
constexpr int kRadialShift = 14;  // 2^22, the radius, to 256 entries
constexpr int32_t kLastEntry = kRampEntries - 1;

int32_t ClampEntry(int32_t i) {
  return i < 0 ? 0 : i > kLastEntry ? kLastEntry : i;
}

SPOINT GradientPosition(const RColor* c, int32_t x) {
  SPOINT p = {WrapShl(x, kPosBits), WrapShl(c->raster->bitY, kPosBits)};
  MatrixTransformPoint(&c->grad.invGradMat, &p, &p);
  return p;
}

}  // namespace

void BuildLinearGradientSlab(RColor* c, int32_t x1, int32_t x2, RGBI* pixels) {
  const uint32_t* ramp = c->grad.colorRamp;
  if (ramp == nullptr) return;
  int32_t pos = GradientPosition(c, x1).x;
  const int32_t step = Asr(c->grad.invGradMat.a, kPosBits);
  for (int32_t x = x1; x < x2; x++) {
    *pixels++ = UnpackPix32(ramp[ClampEntry(Asr(pos, kLinearShift) + kLinearCentre)]);
    pos = WrapAdd(pos, step);
  }
}

void BuildRadialGradientSlab(RColor* c, int32_t x1, int32_t x2, RGBI* pixels) {
  const uint32_t* ramp = c->grad.colorRamp;
  if (ramp == nullptr) return;
  SPOINT pos = GradientPosition(c, x1);
  const int32_t stepX = Asr(c->grad.invGradMat.a, kPosBits);
  const int32_t stepY = Asr(c->grad.invGradMat.b, kPosBits);
  RadialIndex index(RadialStart({pos.x, pos.y, stepX, stepY}));
  for (int32_t x = x1; x < x2; x++) {
    *pixels++ = UnpackPix32(ramp[index.Next(Asr(pos.x, kRadialShift), Asr(pos.y, kRadialShift))]);
    pos = {WrapAdd(pos.x, stepX), WrapAdd(pos.y, stepY)};
  }
}

void BuildPix32GradientSlab(RColor* c, int32_t x1, int32_t x2, uint8_t* at) {
  const Pix32Ops& ops = *c->raster->ops32;
  const SPOINT pos = GradientPosition(c, x1);
  const int32_t stepX = Asr(c->grad.invGradMat.a, kPosBits);
  const int32_t stepY = Asr(c->grad.invGradMat.b, kPosBits);
  if (c->grad.fillStyle == kRadialFill) {
    ops.radial(at, x2 - x1, c->grad.colorRamp, {pos.x, pos.y, stepX, stepY});
  } else {
    ops.linear(at, x2 - x1, c->grad.colorRamp, pos.x, stepX);
  }
}

void BuildGradientSlab(RColor* c, int32_t x1, int32_t x2, RGBI* pixels) {
  if (c->grad.fillStyle == kRadialFill) {
    BuildRadialGradientSlab(c, x1, x2, pixels);
  } else {
    BuildLinearGradientSlab(c, x1, x2, pixels);
  }
}

void DrawGradientSlab(RColor* c, int32_t x1, int32_t x2) {
  CRaster* raster = c->raster;
  if (raster->pixelFormat >= pix32 && HasPix32Slab(c)) {
    for (; x1 < x2; x1 += kSlabPixels) {
      const int32_t end = x2 - x1 > kSlabPixels ? x1 + kSlabPixels : x2;
      BuildPix32GradientSlab(c, x1, end, raster->rowAddr + int64_t{4} * (x1 + raster->xOffset));
    }
    return;
  }
  RGBI buf[kSlabPixels] = {};
  while (x1 < x2) {
    const int32_t end = x2 - x1 > kSlabPixels ? x1 + kSlabPixels : x2;
    BuildGradientSlab(c, x1, end, buf);
    if (c->pattern != 0) ApplyRGBPattern(c->pattern, raster->bitY, x1, end, buf);
    raster->drawRGBSlab(raster, x1, end, buf);
    x1 = end;
  }
}

void CompositeGradientSlab(RColor* c, int32_t x1, int32_t x2, RGBI* pixels) {
  RGBI buf[kSlabPixels] = {};
  BuildGradientSlab(c, x1, x2, buf);
  CompositeRGB(buf, pixels, x2 - x1);
}

void CalcGradientPixel(RColor* c, int32_t x, RGBI* out) {
  const uint32_t* ramp = c->grad.colorRamp;
  if (ramp == nullptr) return;
  const SPOINT pos = GradientPosition(c, x);
  const int32_t i = c->grad.fillStyle == kRadialFill ? Asr(PointLength(&pos), kRadialShift)
                                                     : Asr(pos.x, kLinearShift) + kLinearCentre;
  *out = UnpackPix32(ramp[ClampEntry(i)]);
}

}  // namespace vexel
