// Solid colours as pixels. The spans of solids that need no composition are
// drawn from their pattern (solid_slab.cpp).
#include "raster/composite.h"
#include "raster/raster.h"
#include "raster/rcolor.h"
#include "raster/slabs.h"

namespace vexel {

void BuildSolidSlab(RColor* c, int32_t x1, int32_t x2, RGBI* pixels) {
  for (int32_t x = x1; x < x2; x++) *pixels++ = c->rgb;
}

void CompositeSolidSlab(RColor* c, int32_t x1, int32_t x2, RGBI* pixels) {
  CompositeRGBSolid(&c->rgb, pixels, x2 - x1);
}

void DrawDitherSlab(RColor* c, int32_t x1, int32_t x2) {
  CRaster* raster = c->raster;
  RGBI buf[kSlabPixels];
  while (x1 < x2) {
    const int32_t end = x2 - x1 > kSlabPixels ? x1 + kSlabPixels : x2;
    BuildSolidSlab(c, x1, end, buf);
    if (c->pattern != 0) ApplyRGBPattern(c->pattern, raster->bitY, x1, end, buf);
    raster->drawRGBSlab(raster, x1, end, buf);
    x1 = end;
  }
}

void CalcSolidPixel(RColor* c, int32_t, RGBI* out) {
  *out = c->rgb;
}

const CalcPixelProc calcPixelProcs[4] = {CalcSolidPixel, CalcBitmapPixel, CalcGradientPixel,
                                         CalcSolidPixel};

}  // namespace vexel
