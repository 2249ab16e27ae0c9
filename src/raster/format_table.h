// All that drawing needs to know about a pixel format, a row each, looked up
// once when a buffer is attached or a colour prepared.
#pragma once

#include <cstdint>

#include "raster/blit.h"
#include "raster/pixel_format.h"
#include "raster/solid_slab.h"
#include "raster/spans.h"

namespace vexel {

struct PixelFormatRow {
  const char* name;  // "pix1" to "pix32A"
  int32_t depth;     // bits per pixel
  DrawRGBSlabProc drawRGBSlab;
  GetBackgroundProc getBackground;
  DrawSolidSlabProc drawSolidSlab;
  // By BitmapFormat of the source; null where the pixels go through RGBI.
  BltProc directBlt[kBitmapFormatCount];
};

// By PixelFormat.
extern const PixelFormatRow pixelFormats[kPixelFormatCount];

}  // namespace vexel
