// A decoded bitmap in memory, and the reading of single pixels from it. Spans
// of pixels are read by the copying routines (blit.h).
#pragma once

#include <cstdint>

#include "geometry/color.h"
#include "geometry/intmath.h"

namespace vexel {

struct SColorTable;

// Formats of bitmaps, which are not those of buffers (pixel_format.h).
enum BitmapFormat : int32_t {
  bm1Bit = 0,
  bm2Bit = 1,
  bm4Bit = 2,
  bm8Bit = 3,
  bm16Bit = 4,  // 0RRRRRGGGGGBBBBB
  bm32Bit = 5,  // 0xAARRGGBB, premultiplied
};
inline constexpr int32_t kBitmapFormatCount = 6;

// A plain structure: PIInit before first use, PIFree at the end. Rows run from
// top to bottom; in packed formats the leftmost pixel is in the top bits.
struct SBitmapCore {
  uint8_t* baseAddr;  // the pixels, owned; null until they exist
  SColorTable* cTab;  // the palette of formats below 16 bits, owned
  int32_t bmFormat;   // BitmapFormat
  int32_t width;      // pixels
  int32_t height;
  int32_t rowBytes;
  int32_t useCount;  // colours that have cached this bitmap
  bool transparent;  // the palette has an alpha below 255; the maker of 32-bit pixels sets it

  // Clears what decides about ownership; the sizes stay unset.
  void PIInit();

  // Allocates zeroed pixels, and for formats below 16 bits a palette with a
  // copy of `table` (null: an empty one). False without memory, for a side
  // outside 1..32767 and for an unknown format; a palette may then be left for
  // PIFree. An earlier bitmap must be freed before. The last argument is not
  // read: who knows that 32-bit pixels have alpha sets `transparent` afterward.
  [[nodiscard]] bool PICreate(int32_t format, int32_t width, int32_t height,
                              const SColorTable* table, int32_t transparent);

  // Frees palette and pixels, if any.
  void PIFree();

  // The pixel at (x, y), coordinates clamped to the bitmap. `out` stays as it
  // is for an unknown format. Needs pixels.
  void GetRGBPixel(int32_t x, int32_t y, RGBI* out) const;

  // A bilinear sample at a 16.16 position, with weights in eighths. `out` as
  // above.
  void GetSSRGBPixel(SFIXED x, SFIXED y, RGBI* out) const;
};

// 1, 2, 4, 8, 16 or 32; 0 for an unknown format.
int32_t SBitmapBitsPerPixel(int32_t format);

// Bytes of a row of `width` pixels, a multiple of 4; 0 for an unknown format.
int32_t SBitmapCalcRowbytes(int32_t format, int32_t width);

// Whether an entry has an alpha below 255. False for null.
bool HasTransparent(const SColorTable* table);

// Turns big-endian pixels of 16 or 32 bits into the machine's order in place,
// in whole groups of 4 bytes; `size` is in bytes, and a rest stays as it is.
// Other formats are left alone.
void SBitmapSwapBits(void* data, int32_t size, int32_t format);

}  // namespace vexel
