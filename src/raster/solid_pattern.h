// Preparation of solid colours: a 4 by 4 pattern of pixel values, so that
// drawing needs no work per pixel whatever the format.
#pragma once

#include <cstdint>

namespace vexel {

struct RColor;

// Writes four rows of four pixels in a buffer format, a row every
// 4 * rowLongs bytes: a set bit of `pat` takes the pixel value c1, a clear one
// c2. The top 4 bits of the 16 are the first row, its leftmost pixel highest;
// `rot` (0 to 3) turns each row to the left. In pix1 a row fills 4 bytes and in
// pix4 too; pix2 has no patterns, nothing is written.
void ExpandPat(int32_t pat, int32_t rot, uint32_t c1, uint32_t c2, int32_t format, int32_t rowLongs,
               uint8_t* out);

// Fills color->solid.pat for the raster's format, from rgb and `pattern`.
void BuildSolidPattern(RColor* color);

}  // namespace vexel
