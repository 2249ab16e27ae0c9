// Reading and writing of spans of pixels, a routine for each pixel format.
// All work on the raster's current row (rowAddr, bitY) on the pixels x1 to
// x2 - 1, the first of which is pixels[0]; the row position of pixel x is
// x + xOffset. format_table.h picks the routine of a format.
#pragma once

#include <cstdint>

#include "geometry/color.h"

namespace vexel {

class CRaster;

// Writes premultiplied pixels, dithering as the format and ditherKind ask.
using DrawRGBSlabProc = void (*)(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void DrawRGBSlab1(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void DrawRGBSlab2(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void DrawRGBSlab4(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void DrawRGBSlab8(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void DrawRGBSlab16(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void DrawRGBSlab16A(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void DrawRGBSlab24(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void DrawRGBSlab32(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void DrawRGBSlab32A(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);

// Reads the pixels that stand in the row.
using GetBackgroundProc = void (*)(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void GetBackground1(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void GetBackground2(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void GetBackground4(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void GetBackground8(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void GetBackground16(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void GetBackground16A(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void GetBackground24(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);
void GetBackground32(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);

// White with an alpha of 0, without a look at the row.
// Required: the alpha is really 0, and shows in a 32-bit buffer.
void GetBackgroundWhite(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels);

}  // namespace vexel
