// Spans of one solid colour, drawn from the 4 by 4 pattern that the colour has
// prepared in the buffer's format (RColor's `pat`, 4 rows of 16 bytes).
#pragma once

#include <cstdint>

namespace vexel {

struct RColor;

// Draws the pixels x1 to x2 - 1 of the raster's current row, with the pattern
// row (patYOrg + bitY) & 3. Formats up to 8 bits repeat the row's first word.
using DrawSolidSlabProc = void (*)(RColor* color, int32_t x1, int32_t x2);
void DrawSolidSlab1(RColor* color, int32_t x1, int32_t x2);
void DrawSolidSlab2(RColor* color, int32_t x1, int32_t x2);
void DrawSolidSlab4(RColor* color, int32_t x1, int32_t x2);
void DrawSolidSlab8(RColor* color, int32_t x1, int32_t x2);
void DrawSolidSlab16(RColor* color, int32_t x1, int32_t x2);
void DrawSolidSlab24(RColor* color, int32_t x1, int32_t x2);
void DrawSolidSlab32(RColor* color, int32_t x1, int32_t x2);

}  // namespace vexel
