// Composition over arrays of pixels, and the patterns.
#include "raster/composite.h"

namespace vexel {

void CompositeRGB(const RGBI* src, RGBI* dst, int32_t n) {
  for (int32_t i = 0; i < n; i++) {
    StoreWords(CompositeWords(LoadWords(src + i), LoadWords(dst + i)), dst + i);
  }
}

void CompositeRGBSolid(const RGBI* src, RGBI* dst, int32_t n) {
  const RGBIWords s = LoadWords(src);
  for (int32_t i = 0; i < n; i++) StoreWords(CompositeWords(s, LoadWords(dst + i)), dst + i);
}

void ApplyRGBPattern(uint32_t kind, int32_t y, int32_t x1, int32_t x2, RGBI* pixels) {
  if (kind == 1) {
    for (RGBI* p = pixels; p < pixels + (x2 - x1); p++) {
      p->blue = static_cast<uint16_t>((p->blue >> 1) + 128);
      p->green = static_cast<uint16_t>((p->green >> 1) + 128);
      p->red = static_cast<uint16_t>((p->red >> 1) + 128);
      p->alpha = 255;
    }
  } else if (kind == 2 || kind == 3) {
    const uint32_t row = (kind == 2 ? 0x33CCu : 0x39C6u) >> ((y & 3) * 4);
    for (int32_t x = x1; x < x2; x++) {
      if (!(row >> (x & 3) & 1)) continue;
      RGBI* p = pixels + (x - x1);
      p->blue ^= 255;
      p->green ^= 255;
      p->red ^= 255;
      p->alpha = 255;
    }
  }
}

}  // namespace vexel
