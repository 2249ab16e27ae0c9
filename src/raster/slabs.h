// The slab and pixel functions of the colour types. All work on the row bitY of
// the colour's raster; x1 to x2 - 1 are pixels of the buffer. BuildCache picks
// the functions of a colour.
#pragma once

#include <cstdint>

#include "geometry/color.h"

namespace vexel {

struct RColor;

// Draw a span into the buffer.
void DrawDitherSlab(RColor* color, int32_t x1, int32_t x2);  // of rgb, by way of pixels
void DrawGradientSlab(RColor* color, int32_t x1, int32_t x2);
void DrawBitmapSlab(RColor* color, int32_t x1, int32_t x2);

// Write a span into pixels[0] and up. A gradient without its ramp, and a
// bitmap of less than 8 bits, leave them as they are.
void BuildSolidSlab(RColor* color, int32_t x1, int32_t x2, RGBI* pixels);
void BuildGradientSlab(RColor* color, int32_t x1, int32_t x2, RGBI* pixels);
void BuildLinearGradientSlab(RColor* color, int32_t x1, int32_t x2, RGBI* pixels);
void BuildRadialGradientSlab(RColor* color, int32_t x1, int32_t x2, RGBI* pixels);
void BuildBitmapSlab(RColor* color, int32_t x1, int32_t x2, RGBI* pixels);

// Compose a span onto pixels[0] and up. At most kSlabPixels.
void CompositeSolidSlab(RColor* color, int32_t x1, int32_t x2, RGBI* pixels);
void CompositeGradientSlab(RColor* color, int32_t x1, int32_t x2, RGBI* pixels);
void CompositeBitmapSlab(RColor* color, int32_t x1, int32_t x2, RGBI* pixels);

// The same spans as 32-bit pixels, a gradient's with its ramp, and a bitmap's of
// 32 bits without a colour transform. At most kSlabPixels.
void BuildPix32GradientSlab(RColor* color, int32_t x1, int32_t x2, uint8_t* at);
void BuildPix32BitmapSlab(RColor* color, int32_t x1, int32_t x2, uint8_t* at);

// The value of the single pixel x. Not always that of a slab over the same
// pixel: a slab steps from its own start, with a truncated step.
using CalcPixelProc = void (*)(RColor* color, int32_t x, RGBI* out);
void CalcSolidPixel(RColor* color, int32_t x, RGBI* out);
void CalcBitmapPixel(RColor* color, int32_t x, RGBI* out);
void CalcGradientPixel(RColor* color, int32_t x, RGBI* out);
// By ColorType; a clip colour has no pixels, and its row stands for a solid.
extern const CalcPixelProc calcPixelProcs[4];

}  // namespace vexel
