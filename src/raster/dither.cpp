// Dithering to a palette. Ordered dithering adds a threshold by position before
// the channels lose their low bits. Error diffusion carries what a pixel lost
// to its right neighbour (half) and to two pixels of the row below (a quarter
// each), with a little noise against regular patterns.
#include "raster/dither.h"

#include <cstdlib>

#include "geometry/intmath.h"
#include "raster/bit_buffer.h"
#include "raster/color_table.h"
#include "raster/raster.h"

namespace vexel {

// clang-format off
const uint8_t dither4x4[4][4] = {
    {7, 0, 5, 1},
    {2, 6, 4, 3},
    {4, 3, 7, 2},
    {0, 6, 1, 5},
};

const uint8_t dither8x8[8][8] = {
    { 0,  8,  0,  8,  1,  9, 15,  7},
    {10,  6,  2, 14, 11,  7,  3, 13},
    { 4, 14, 10,  2,  5, 15, 11,  1},
    {12,  4, 12,  6, 13,  3,  5,  9},
    { 1,  9, 15,  7,  2, 10,  0,  6},
    {11,  7,  3, 13, 12,  8,  4, 12},
    { 5, 15,  9,  1,  6, 14, 10,  0},
    {13,  3, 11,  5, 14,  2,  4,  8},
};

const uint8_t noise8x8[8][8] = {
    {7, 0, 0, 7, 0, 7, 7, 0},
    {0, 7, 0, 7, 0, 7, 0, 7},
    {0, 7, 7, 0, 7, 0, 7, 7},
    {0, 7, 7, 0, 7, 0, 7, 7},
    {7, 0, 7, 0, 0, 7, 0, 7},
    {0, 7, 0, 7, 7, 0, 7, 0},
    {7, 7, 0, 7, 0, 7, 0, 0},
    {0, 7, 7, 0, 7, 0, 7, 7},
};
// clang-format on

namespace {

// Channels per pixel of an error row, and the order in which they stand.
enum { kErrorRed, kErrorGreen, kErrorBlue, kErrorChannels };

constexpr int32_t Clamp15(int32_t v) {
  return v < 0 ? 0 : v > 15 ? 15 : v;
}

// Two rows of errors for a paint; a pixel's margin on each side takes what
// runs over the edges.
bool StartErrorRows(CRaster* raster) {
  const int32_t w = WrapAbs(raster->xOffset) + raster->bits->width;
  const int32_t count = kErrorChannels * w + 2 * kErrorChannels;
  raster->errorBuf =
      static_cast<int32_t*>(std::calloc(2 * static_cast<size_t>(count), sizeof(int32_t)));
  if (raster->errorBuf == nullptr) return false;
  raster->errorRowSize = count * static_cast<int32_t>(sizeof(int32_t));
  raster->errorSize = 2 * raster->errorRowSize;
  raster->errorThis = raster->errorBuf;
  raster->errorNext = raster->errorBuf + count;
  return true;
}

}  // namespace

bool DitherRGBSlabNone(CRaster* raster, int32_t x1, int32_t x2, const RGBI* pixels, uint8_t* out) {
  const uint8_t* itab = raster->cinfo->itab;
  for (int32_t i = 0; i < x2 - x1; i++) {
    const RGBI p = pixels[i];
    out[i] = itab[(p.red & 240) << 4 | (p.green & 240) | (p.blue & 240) >> 4];
  }
  return true;
}

bool DitherRGBSlabOrdered(CRaster* raster, int32_t x1, int32_t x2, const RGBI* pixels,
                          uint8_t* out) {
  const uint8_t* itab = raster->cinfo->itab;
  const uint8_t* row = dither8x8[raster->bitY & 7];
  for (int32_t x = x1; x < x2; x++) {
    const RGBI p = pixels[x - x1];
    const int32_t d = row[x & 7];
    out[x - x1] = itab[InverseTableCell(Clamp15((p.red + d) >> 4), Clamp15((p.green + d) >> 4),
                                        Clamp15((p.blue + d) >> 4))];
  }
  return true;
}

bool DitherRGBSlabErrorDiffusion(CRaster* raster, int32_t x1, int32_t x2, const RGBI* pixels,
                                 uint8_t* out) {
  if (raster->errorBuf == nullptr && !StartErrorRows(raster)) return false;
  const SColorInfo* cinfo = raster->cinfo;
  const uint8_t* noise = noise8x8[raster->bitY & 7];
  int32_t* here = raster->errorThis + kErrorChannels * (x1 + 1);
  int32_t* below = raster->errorNext + kErrorChannels * (x1 + 1);
  for (int32_t x = x1; x < x2; x++, here += kErrorChannels, below += kErrorChannels) {
    const RGBI p = pixels[x - x1];
    const int32_t v[kErrorChannels] = {p.red + here[kErrorRed], p.green + here[kErrorGreen],
                                       p.blue + here[kErrorBlue]};
    const int32_t n = noise[x & 7];
    const uint8_t index = cinfo->itab[InverseTableCell(Clamp15(Asr(v[kErrorRed] + n, 4)),
                                                       Clamp15(Asr(v[kErrorGreen] + n, 4)),
                                                       Clamp15(Asr(v[kErrorBlue] + n, 4)))];
    out[x - x1] = index;
    const RGB8 color = cinfo->ctab.colors[index];
    const int32_t got[kErrorChannels] = {static_cast<int32_t>(RedOf(color)),
                                         static_cast<int32_t>(GreenOf(color)),
                                         static_cast<int32_t>(BlueOf(color))};
    for (int c = 0; c < kErrorChannels; c++) {
      // Required: the shifts round toward minus infinity, a small bias.
      const int32_t e = v[c] - got[c];
      here[c + kErrorChannels] += Asr(e, 1);
      below[c - kErrorChannels] += Asr(e, 2);
      below[c] += Asr(e, 2);
    }
  }
  return true;
}

const DitherProc ditherProcs[] = {
    DitherRGBSlabNone,
    DitherRGBSlabOrdered,
    DitherRGBSlabErrorDiffusion,
};
static_assert(sizeof ditherProcs / sizeof *ditherProcs == kDitherKindCount);

}  // namespace vexel
