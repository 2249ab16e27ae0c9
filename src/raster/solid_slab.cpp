// Spans of a solid colour. The colour holds a 4 by 4 pattern in the buffer's
// own format, so that there is nothing left to compute: formats up to 8 bits
// fill words with the pattern row's first one, 16 and 32 bits store one value,
// and only inverting patterns and 24 bits step through the row pixel by pixel.
#include "raster/solid_slab.h"

#include <cstring>

#include "raster/pixel_memory.h"
#include "raster/raster.h"
#include "raster/rcolor.h"

namespace vexel {

namespace {

constexpr int32_t kWordBits = 32;

// masks[n] has the bits from position n on set; a position counts from the top
// bit of a word's first byte, so the words are those of a big-endian machine
// stored in memory order.
struct WordMasks {
  uint32_t v[kWordBits];
};
constexpr WordMasks MakeMasks() {
  WordMasks m = {};
  for (int n = 0; n < kWordBits; n++) {
    const uint32_t big = 0xFFFFFFFFu >> n;
    m.v[n] = big >> 24 | (big >> 8 & 0xFF00) | (big & 0xFF00) << 8 | big << 24;
  }
  return m;
}
constexpr WordMasks masks = MakeMasks();

// The pattern row of the raster's current row.
const uint8_t* PatternRow(const RColor* color) {
  return color->solid.pat[(color->raster->patYOrg + color->raster->bitY) & 3];
}

void MergeWord(uint8_t* at, uint32_t word, uint32_t mask) {
  Store32(at, (Load32(at) & ~mask) | (word & mask));
}

// Fills the bits from `start` up to below `end` of a row with a word repeated.
void FillBits(uint8_t* row, int32_t start, int32_t end, uint32_t word) {
  uint8_t* at = row + (start / kWordBits) * 4;
  uint8_t* last = row + (end / kWordBits) * 4;
  const int32_t startBit = start % kWordBits;
  const int32_t endBit = end % kWordBits;
  if (at == last) {
    MergeWord(at, word, masks.v[startBit] & ~masks.v[endBit]);
    return;
  }
  if (startBit != 0) {
    MergeWord(at, word, masks.v[startBit]);
    at += 4;
  }
  for (; at < last; at += 4) Store32(at, word);
  if (endBit != 0) MergeWord(at, word, ~masks.v[endBit]);
}

template <int kBits>
void FillPacked(const RColor* color, int32_t x1, int32_t x2) {
  if (x1 >= x2) return;
  const CRaster* raster = color->raster;
  FillBits(raster->rowAddr, (x1 + raster->xOffset) * kBits, (x2 + raster->xOffset) * kBits,
           Load32(PatternRow(color)));
}

// Steps through the four values of the pattern row, by the pixel's position.
template <int kBytes>
void StepPattern(const RColor* color, int32_t x1, int32_t x2) {
  const CRaster* raster = color->raster;
  const uint8_t* row = PatternRow(color);
  for (int32_t x = x1 + raster->xOffset; x < x2 + raster->xOffset; x++) {
    std::memcpy(raster->rowAddr + x * kBytes, row + (x & 3) * kBytes, kBytes);
  }
}

}  // namespace

void DrawSolidSlab1(RColor* color, int32_t x1, int32_t x2) {
  FillPacked<1>(color, x1, x2);
}
void DrawSolidSlab2(RColor* color, int32_t x1, int32_t x2) {
  FillPacked<2>(color, x1, x2);
}
void DrawSolidSlab4(RColor* color, int32_t x1, int32_t x2) {
  FillPacked<4>(color, x1, x2);
}
void DrawSolidSlab8(RColor* color, int32_t x1, int32_t x2) {
  FillPacked<8>(color, x1, x2);
}

void DrawSolidSlab16(RColor* color, int32_t x1, int32_t x2) {
  if (color->pattern != 0) {
    StepPattern<2>(color, x1, x2);
    return;
  }
  // Without a pattern the row holds one value four times.
  const CRaster* raster = color->raster;
  const uint32_t pair = Load32(PatternRow(color));
  int32_t x = x1 + raster->xOffset;
  const int32_t end = x2 + raster->xOffset;
  uint8_t* at = raster->rowAddr + x * 2;
  if (x < end && (x & 1) != 0) {
    Store16(at, pair);
    x++;
    at += 2;
  }
  for (; x + 1 < end; x += 2, at += 4) Store32(at, pair);
  if (x < end) Store16(at, pair);
}

void DrawSolidSlab24(RColor* color, int32_t x1, int32_t x2) {
  StepPattern<3>(color, x1, x2);
}

void DrawSolidSlab32(RColor* color, int32_t x1, int32_t x2) {
  if (color->pattern != 0) {
    StepPattern<4>(color, x1, x2);
    return;
  }
  const CRaster* raster = color->raster;
  const uint32_t value = Load32(PatternRow(color));
  uint8_t* at = raster->rowAddr + (x1 + raster->xOffset) * 4;
  for (int32_t x = x1; x < x2; x++, at += 4) Store32(at, value);
}

}  // namespace vexel
