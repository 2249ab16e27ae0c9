// Reading of the pixels that stand in a row, by pixel format.
#include "raster/color_table.h"
#include "raster/pixel_format.h"
#include "raster/pixel_memory.h"
#include "raster/raster.h"
#include "raster/spans.h"

namespace vexel {

namespace {

const uint8_t* PixelAddr(const CRaster* raster, int32_t x, int32_t bytesPerPixel) {
  return raster->rowAddr + (x + raster->xOffset) * bytesPerPixel;
}

template <int kBits>
void GetPacked(const CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  constexpr int32_t kPerByte = 8 / kBits;
  constexpr uint32_t kMask = (1u << kBits) - 1;
  const RGB8* colors = raster->cinfo->ctab.colors;
  for (int32_t x = x1 + raster->xOffset; x < x2 + raster->xOffset; x++) {
    const uint32_t byte = raster->rowAddr[x / kPerByte];
    const int32_t shift = (kPerByte - 1 - x % kPerByte) * kBits;
    *pixels++ = UnpackPix32(colors[byte >> shift & kMask]);
  }
}

constexpr RGBI UnpackPix16A(uint32_t v) {
  const uint32_t green = v >> 5 & 63;
  return {static_cast<uint16_t>(pix16Expand[v & 31]),
          static_cast<uint16_t>(green == 0 ? 0 : green << 2 | 3),
          static_cast<uint16_t>(pix16Expand[v >> 11 & 31]), 255};
}

}  // namespace

void GetBackground1(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  GetPacked<1>(raster, x1, x2, pixels);
}

void GetBackground2(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  GetPacked<2>(raster, x1, x2, pixels);
}

void GetBackground4(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  GetPacked<4>(raster, x1, x2, pixels);
}

void GetBackground8(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  GetPacked<8>(raster, x1, x2, pixels);
}

void GetBackground16(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  const uint8_t* in = PixelAddr(raster, x1, 2);
  for (int32_t x = x1; x < x2; x++, in += 2) *pixels++ = UnpackPix16(Load16(in));
}

void GetBackground16A(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  const uint8_t* in = PixelAddr(raster, x1, 2);
  for (int32_t x = x1; x < x2; x++, in += 2) *pixels++ = UnpackPix16A(Load16(in));
}

void GetBackground24(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  const uint8_t* in = PixelAddr(raster, x1, 3);
  for (int32_t x = x1; x < x2; x++, in += 3) *pixels++ = {in[0], in[1], in[2], 255};
}

void GetBackground32(CRaster* raster, int32_t x1, int32_t x2, RGBI* pixels) {
  const uint8_t* in = PixelAddr(raster, x1, 4);
  for (int32_t x = x1; x < x2; x++, in += 4) *pixels++ = UnpackPix32(Load32(in));
}

void GetBackgroundWhite(CRaster* /*raster*/, int32_t x1, int32_t x2, RGBI* pixels) {
  for (int32_t x = x1; x < x2; x++) *pixels++ = {255, 255, 255, 0};
}

}  // namespace vexel
