// Copying of bitmap pixels straight into a palette buffer of 8 bits, with
// ordered dithering.
#include "raster/blit.h"
#include "raster/blit_loop.h"
#include "raster/dither.h"
#include "raster/raster.h"
#include "raster/rcolor.h"

namespace vexel {

namespace {

constexpr int32_t Dithered(uint32_t channel, uint32_t threshold) {
  const uint32_t v = (channel + threshold) >> 4;
  return v > 15 ? 15 : static_cast<int32_t>(v);
}

// Copies with a conversion of the source pixel to 0x..RRGGBB.
// Required: the threshold goes by the column of the byte in the row, so a
// buffer's xOffset counts, unlike in the dithering of RGBI slabs.
template <class Source, class Convert>
void BltTo8D(const BltInfo& info, SPOINT& pos, int32_t count, void* dst, Convert convert) {
  const CRaster* raster = info.color->raster;
  const uint8_t* row = dither8x8[raster->bitY & 7];
  auto* out = static_cast<uint8_t*>(dst);
  BltLoop<Source>(info, pos, count, [&](uint32_t v) {
    const uint32_t c = convert(v);
    const uint32_t d = row[(out - raster->rowAddr) & 7];
    *out++ = info.itab[InverseTableCell(Dithered(RedOf(c), d), Dithered(GreenOf(c), d),
                                        Dithered(BlueOf(c), d))];
  });
}

// The channels of 0RRRRRGGGGGBBBBB with their low bits clear.
constexpr uint32_t Pix16toRgb(uint32_t v) {
  return (v >> 7 & 248) << 16 | (v >> 2 & 248) << 8 | (v << 3 & 248);
}

}  // namespace

void Blt8to8D(BltInfo info, SPOINT& pos, int32_t count, void* dst) {
  BltTo8D<Source8>(info, pos, count, dst, [&](uint32_t v) { return info.colors[v]; });
}

void Blt16to8D(BltInfo info, SPOINT& pos, int32_t count, void* dst) {
  BltTo8D<Source16>(info, pos, count, dst, Pix16toRgb);
}

void Blt32to8D(BltInfo info, SPOINT& pos, int32_t count, void* dst) {
  BltTo8D<Source32>(info, pos, count, dst, [](uint32_t v) { return v; });
}

}  // namespace vexel
