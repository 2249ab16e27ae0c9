// Writing of premultiplied pixels into a row, by pixel format.
#include "raster/dither.h"
#include "raster/pixel_format.h"
#include "raster/pixel_memory.h"
#include "raster/raster.h"
#include "raster/spans.h"

namespace vexel {

namespace {

uint8_t* PixelAddr(const CRaster* raster, int32_t x, int32_t bytesPerPixel) {
  return raster->rowAddr + (x + raster->xOffset) * bytesPerPixel;
}

// Puts an index of kBits bits at the row position x, the leftmost pixel of a
// byte in its top bits. Indexes too large for the format lose their top bits.
template <int kBits>
void PutPacked(uint8_t* row, int32_t x, uint32_t index) {
  constexpr int32_t kPerByte = 8 / kBits;
  constexpr uint32_t kMask = (1u << kBits) - 1;
  const int32_t shift = (kPerByte - 1 - x % kPerByte) * kBits;
  uint8_t& byte = row[x / kPerByte];
  byte = static_cast<uint8_t>((byte & ~(kMask << shift)) | (index & kMask) << shift);
}

// Required: the dither sees row positions, xOffset included, unlike that of
// the 8-bit format.
template <int kBits>
void DrawPacked(CRaster* raster, int32_t x1, int32_t x2, const RGBI* pixels) {
  uint8_t indexes[kSlabPixels];
  int32_t x = x1 + raster->xOffset;
  const int32_t end = x2 + raster->xOffset;
  while (x < end) {
    const int32_t n = end - x < kSlabPixels ? end - x : kSlabPixels;
    if (!raster->ditherRGBSlab(raster, x, x + n, pixels, indexes)) return;
    for (int32_t i = 0; i < n; i++) PutPacked<kBits>(raster->rowAddr, x + i, indexes[i]);
    x += n;
    pixels += n;
  }
}

// A channel that keeps 5 bits.
constexpr uint32_t Saturate5(uint32_t v) {
  return v >> 3 > 31 ? 31 : v >> 3;
}

// A channel that keeps the upper bits of `mask`, all set from 255 on.
constexpr uint32_t SaturateField(uint32_t v, uint32_t mask) {
  return v >= 255 ? mask : v & mask;
}

}  // namespace

void DrawRGBSlab1(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  DrawPacked<1>(raster, x1, x2, pixels);
}

void DrawRGBSlab2(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  DrawPacked<2>(raster, x1, x2, pixels);
}

void DrawRGBSlab4(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  DrawPacked<4>(raster, x1, x2, pixels);
}

void DrawRGBSlab8(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  // Nothing is written without memory for the error rows, and that is all that
  // can be done about it.
  static_cast<void>(raster->ditherRGBSlab(raster, x1, x2, pixels, PixelAddr(raster, x1, 1)));
}

void DrawRGBSlab16(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  uint8_t* out = PixelAddr(raster, x1, 2);
  if (raster->ditherKind == ditherNone) {
    for (int32_t x = x1; x < x2; x++, out += 2) Store16(out, PackPix16(*pixels++));
    return;
  }
  const uint8_t* row = dither4x4[raster->bitY & 3];
  for (int32_t x = x1; x < x2; x++, out += 2) {
    const RGBI p = *pixels++;
    const uint32_t d = row[x & 3];
    Store16(out, Saturate5(p.red + d) << 10 | Saturate5(p.green + d) << 5 | Saturate5(p.blue + d));
  }
}

void DrawRGBSlab16A(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  uint8_t* out = PixelAddr(raster, x1, 2);
  if (raster->ditherKind == ditherNone) {
    for (int32_t x = x1; x < x2; x++, out += 2) Store16(out, PackPix16A(*pixels++));
    return;
  }
  const uint8_t* row = dither4x4[raster->bitY & 3];
  for (int32_t x = x1; x < x2; x++, out += 2) {
    const RGBI p = *pixels++;
    const uint32_t d = row[x & 3];
    // Six bits of green lose half as much as the others.
    Store16(out, SaturateField(p.red + d, 248) << 8 | SaturateField(p.green + (d >> 1), 252) << 3 |
                     SaturateField(p.blue + d, 248) >> 3);
  }
}

void DrawRGBSlab24(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  uint8_t* out = PixelAddr(raster, x1, 3);
  for (int32_t x = x1; x < x2; x++, out += 3) {
    const RGBI p = *pixels++;
    out[0] = static_cast<uint8_t>(p.blue);
    out[1] = static_cast<uint8_t>(p.green);
    out[2] = static_cast<uint8_t>(p.red);
  }
}

void DrawRGBSlab32(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  uint8_t* out = PixelAddr(raster, x1, 4);
  for (int32_t x = x1; x < x2; x++, out += 4) Store32(out, PackPix32(*pixels++));
}

void DrawRGBSlab32A(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  DrawRGBSlab32(raster, x1, x2, pixels);
}

}  // namespace vexel
