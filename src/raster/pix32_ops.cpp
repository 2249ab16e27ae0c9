// The plain forms, and the choice.
#include "raster/pix32_ops.h"

#include "raster/composite.h"
#include "raster/pix32_radial.h"
#include "raster/pix32_simd.h"
#include "raster/pixel_format.h"
#include "raster/pixel_memory.h"

namespace vexel {
namespace {

uint32_t Blend(RGBIWords top, uint32_t below) {
  RGBI pixel = UnpackPix32(below);
  StoreWords(CompositeWords(top, LoadWords(&pixel)), &pixel);
  return PackPix32(pixel);
}

RGBIWords Words(uint32_t pixel) {
  const RGBI c = UnpackPix32(pixel);
  return LoadWords(&c);
}

void Fill(uint8_t* at, int32_t n, uint32_t pixel) {
  for (int32_t i = 0; i < n; i++) Store32(at + 4 * i, pixel);
}

void BlendColor(uint8_t* at, int32_t n, uint32_t color) {
  const RGBIWords c = Words(color);
  for (int32_t i = 0; i < n; i++) Store32(at + 4 * i, Blend(c, Load32(at + 4 * i)));
}

void BlendPixels(uint8_t* at, const uint8_t* src, int32_t n) {
  for (int32_t i = 0; i < n; i++) {
    Store32(at + 4 * i, Blend(Words(Load32(src + 4 * i)), Load32(at + 4 * i)));
  }
}

void Linear(uint8_t* at, int32_t n, const uint32_t* ramp, int32_t pos, int32_t step) {
  for (int32_t i = 0; i < n; i++) {
    const int32_t entry = Asr(pos, 15) + 128;
    Store32(at + 4 * i, ramp[entry < 0 ? 0 : entry > 256 ? 256 : entry]);
    pos = WrapAdd(pos, step);
  }
}

void Radial(uint8_t* at, int32_t n, const uint32_t* ramp, const RadialLine& line) {
  int32_t x = line.x;
  int32_t y = line.y;
  RadialIndex index(RadialStart(line));
  for (int32_t i = 0; i < n; i++) {
    Store32(at + 4 * i, ramp[index.Next(Asr(x, 14), Asr(y, 14))]);
    x = WrapAdd(x, line.dx);
    y = WrapAdd(y, line.dy);
  }
}

void Sample(uint8_t* at, int32_t n, const SampleLine& line) {
  SFIXED x = line.x;
  SFIXED y = line.y;
  for (int32_t i = 0; i < n; i++) {
    const uint8_t* row = line.baseAddr + int64_t{Asr(y, 16)} * line.rowBytes;
    Store32(at + 4 * i, Load32(row + 4 * Asr(x, 16)));
    x = WrapAdd(x, line.dx);
    y = WrapAdd(y, line.dy);
  }
}

constexpr Pix32Ops plainOps = {Fill, BlendColor, BlendPixels, Linear, Radial, Sample};

}  // namespace

const Pix32Ops* const* Pix32OpSets(int32_t* count) {
  static const Pix32Ops* const sets[] = {&plainOps, Pix32SimdOps(), Pix32Simd512Ops()};
  *count = sets[1] == nullptr ? 1 : sets[2] == nullptr ? 2 : 3;
  return sets;
}

const Pix32Ops& Pix32() {
  int32_t count;
  const Pix32Ops* const* sets = Pix32OpSets(&count);
  return *sets[count - 1];
}

}  // namespace vexel
