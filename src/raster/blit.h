// Copying of bitmap pixels, point sampled at any scale: into RGBI pixels for
// all that needs arithmetic, or straight into the buffer's format.
#pragma once

#include <cstdint>

#include "geometry/intmath.h"
#include "geometry/point.h"
#include "raster/bitmap_core.h"
#include "raster/color_table.h"

namespace vexel {

struct RColor;

// The source of a copying routine. Nothing in it is owned.
struct BltInfo {
  RColor* color;            // whose raster gives bitY and rowAddr to the dithers
  SFIXED dx, dy;            // step in the source per destination pixel
  const uint8_t* baseAddr;  // the bitmap's pixels
  int32_t rowBytes;
  const RGB8* colors;  // the bitmap's palette, 256 entries, or null
  int32_t width;       // pixels
  int32_t height;
  const uint8_t* itab;  // the inverse table of the destination's palette, or null
};

// Copies `count` pixels to `dst`, reading the bitmap at (pos.x >> 16,
// pos.y >> 16) and stepping `pos` by (dx, dy) after each; `pos` is left at the
// next pixel's position. Every position sampled must lie inside the bitmap.
using BltProc = void (*)(BltInfo info, SPOINT& pos, int32_t count, void* dst);

// To RGBI. BltXtoI stands for sources of 1, 2 and 4 bits.
// Required: it leaves the destination, and `pos`, as they were.
void BltXtoI(BltInfo info, SPOINT& pos, int32_t count, void* dst);
void Blt8toI(BltInfo info, SPOINT& pos, int32_t count, void* dst);
void Blt16toI(BltInfo info, SPOINT& pos, int32_t count, void* dst);
void Blt32toI(BltInfo info, SPOINT& pos, int32_t count, void* dst);

// To pix8, dithered in order through `itab`; `dst` lies in the raster's row.
void Blt8to8D(BltInfo info, SPOINT& pos, int32_t count, void* dst);
void Blt16to8D(BltInfo info, SPOINT& pos, int32_t count, void* dst);
void Blt32to8D(BltInfo info, SPOINT& pos, int32_t count, void* dst);

// To pix16.
void Blt8to16(BltInfo info, SPOINT& pos, int32_t count, void* dst);
void Blt16to16(BltInfo info, SPOINT& pos, int32_t count, void* dst);
void Blt32to16(BltInfo info, SPOINT& pos, int32_t count, void* dst);

// To pix16A.
void Blt8to16A(BltInfo info, SPOINT& pos, int32_t count, void* dst);
void Blt16to16A(BltInfo info, SPOINT& pos, int32_t count, void* dst);
void Blt32to16A(BltInfo info, SPOINT& pos, int32_t count, void* dst);

// To pix32. From 8 bits the alpha becomes 0, from 16 bits 255.
void Blt8to32(BltInfo info, SPOINT& pos, int32_t count, void* dst);
void Blt16to32(BltInfo info, SPOINT& pos, int32_t count, void* dst);
void Blt32to32(BltInfo info, SPOINT& pos, int32_t count, void* dst);

// The routine into RGBI by BitmapFormat.
extern const BltProc bltProcs[kBitmapFormatCount];

}  // namespace vexel
