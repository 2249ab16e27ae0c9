// The loop all copying routines share: point sampling along a line through the
// bitmap. Included by the blit sources only.
#pragma once

#include <cstdint>
#include <cstring>

#include "raster/blit.h"
#include "raster/pixel_memory.h"

namespace vexel {

// Reading of the pixel x of a row, by the bits of the source.
struct Source8 {
  static constexpr int32_t kBytes = 1;
  static uint32_t Read(const uint8_t* row, int32_t x) { return row[x]; }
};
struct Source16 {
  static constexpr int32_t kBytes = 2;
  static uint32_t Read(const uint8_t* row, int32_t x) { return Load16(row + 2 * x); }
};
struct Source32 {
  static constexpr int32_t kBytes = 4;
  static uint32_t Read(const uint8_t* row, int32_t x) { return Load32(row + 4 * x); }
};

inline const uint8_t* BltRow(const BltInfo& info, SFIXED y) {
  return info.baseAddr + Asr(y, 16) * info.rowBytes;
}

// Calls put(value) for each pixel. A position steps past the bitmap only
// behind the last pixel, where it may wrap.
template <class Source, class Put>
void BltLoop(const BltInfo& info, SPOINT& pos, int32_t count, Put put) {
  if (info.dy == 0) {
    const uint8_t* row = BltRow(info, pos.y);
    SFIXED x = pos.x;
    for (; count > 0; count--, x = WrapAdd(x, info.dx)) put(Source::Read(row, Asr(x, 16)));
    pos.x = x;
    return;
  }
  for (; count > 0; count--) {
    put(Source::Read(BltRow(info, pos.y), Asr(pos.x, 16)));
    pos.x = WrapAdd(pos.x, info.dx);
    pos.y = WrapAdd(pos.y, info.dy);
  }
}

// A step this close to 1.0 stays 1 to 1 over a piece of 256 pixels.
inline constexpr SFIXED kUnitStepTolerance = 256;

// Copies a piece without a change of pixels if its step is (nearly) one pixel
// to the right; false if it is not, with nothing done. A step just below one
// pixel lets a piece be one pixel longer than what is left of the row; that
// pixel comes from the row's start, as in a tiling.
template <class Source>
bool BltUnitStep(const BltInfo& info, SPOINT& pos, int32_t count, void* dst) {
  if (info.dy != 0) return false;
  if (WrapAbs(WrapSub(info.dx, kFixedOne)) >= kUnitStepTolerance) return false;
  const uint8_t* row = BltRow(info, pos.y);
  auto* out = static_cast<uint8_t*>(dst);
  int32_t x = Asr(pos.x, 16);
  pos.x = WrapAdd(pos.x, WrapMul(count, info.dx));
  while (count > 0) {
    const int32_t n = count < info.width - x ? count : info.width - x;
    std::memcpy(out, row + x * Source::kBytes, static_cast<size_t>(n) * Source::kBytes);
    out += n * Source::kBytes;
    count -= n;
    x = 0;
  }
  return true;
}

}  // namespace vexel
