// The nine pixel formats a buffer can have, their numbers and depths, and the
// arithmetic between 5-bit and 8-bit channels.
#pragma once

#include <cstdint>

#include "geometry/color.h"

namespace vexel {

// Palette formats up to 8 bits keep the leftmost pixel in the top bits of a
// byte. Words of 16 and 32 bits are in the machine's (little-endian) order.
enum PixelFormat : int32_t {
  pix1 = 0,    // palette index
  pix2 = 1,    // palette index
  pix4 = 2,    // palette index
  pix8 = 3,    // palette index
  pix16 = 4,   // 0RRRRRGGGGGBBBBB
  pix16A = 5,  // RRRRRGGGGGGBBBBB
  pix24 = 6,   // bytes blue, green, red
  pix32 = 7,   // 0xAARRGGBB
  pix32A = 8,  // the same, with the alpha in use
};
inline constexpr int32_t kPixelFormatCount = 9;

// Bits per pixel by format. The last entry stands for no format of its own.
inline constexpr int32_t mapPixelFormatToDepth[kPixelFormatCount + 1] = {1,  2,  4,  8,  16,
                                                                         16, 24, 32, 32, 32};

// 5 bits to 8 bits: 0, and 8 i + 7 for the others.
// Required: entries 12 and 28 repeat their predecessors.
inline constexpr uint32_t pix16Expand[32] = {
    0x00, 0x0F, 0x17, 0x1F, 0x27, 0x2F, 0x37, 0x3F, 0x47, 0x4F, 0x57, 0x5F, 0x5F, 0x6F, 0x77, 0x7F,
    0x87, 0x8F, 0x97, 0x9F, 0xA7, 0xAF, 0xB7, 0xBF, 0xC7, 0xCF, 0xD7, 0xDF, 0xDF, 0xEF, 0xF7, 0xFF};
static_assert(sizeof pix16Expand == 32 * sizeof(uint32_t));

// The same as red of a 32-bit pixel with its alpha of 255, and as green.
struct Pix16Expansion {
  uint32_t v[32];
  constexpr uint32_t operator[](uint32_t i) const { return v[i]; }
};
constexpr Pix16Expansion ExpandPix16(int shift, uint32_t add) {
  Pix16Expansion e = {};
  for (int i = 0; i < 32; i++) e.v[i] = (pix16Expand[i] << shift) + add;
  return e;
}
inline constexpr Pix16Expansion pix16ExpandR = ExpandPix16(16, 0xFF000000u);
inline constexpr Pix16Expansion pix16ExpandG = ExpandPix16(8, 0);

// A 32-bit word 0xAARRGGBB as the four channels.
constexpr RGBI UnpackPix32(uint32_t v) {
  return {static_cast<uint16_t>(v & 255), static_cast<uint16_t>(v >> 8 & 255),
          static_cast<uint16_t>(v >> 16 & 255), static_cast<uint16_t>(v >> 24)};
}

// A 16-bit word 0RRRRRGGGGGBBBBB as the four channels, opaque.
constexpr RGBI UnpackPix16(uint32_t v) {
  return {static_cast<uint16_t>(pix16Expand[v & 31]),
          static_cast<uint16_t>(pix16Expand[v >> 5 & 31]),
          static_cast<uint16_t>(pix16Expand[v >> 10 & 31]), 255};
}

// The four channels, each from 0 to 255, as 0xAARRGGBB.
constexpr uint32_t PackPix32(RGBI p) {
  return uint32_t{p.alpha} << 24 | uint32_t{p.red} << 16 | uint32_t{p.green} << 8 | p.blue;
}

// The four channels as 0RRRRRGGGGGBBBBB and as RRRRRGGGGGGBBBBB, cut.
constexpr uint16_t PackPix16(RGBI p) {
  return static_cast<uint16_t>((p.red & 248) << 7 | (p.green & 248) << 2 | p.blue >> 3);
}
constexpr uint16_t PackPix16A(RGBI p) {
  return static_cast<uint16_t>((p.red & 248) << 8 | (p.green & 252) << 3 | p.blue >> 3);
}

}  // namespace vexel
