// Composition of premultiplied pixels: source + (256 - alpha) / 256 of what is
// below, alpha included.
//
// A pixel is worked on as two 32-bit words of two channels each, blue and green
// in the first, red and alpha in the second, so that one multiplication serves
// two channels. Required: the mask comes after the addition, so a channel that
// overflows (a source brighter than its alpha allows) may carry one unit into
// the channel above it in the same word.
#pragma once

#include <cstdint>
#include <cstring>

#include "geometry/color.h"

namespace vexel {

inline constexpr uint32_t kLaneMask = 0xFF00FF;

// An RGBI as two words.
struct RGBIWords {
  uint32_t bg;  // blue, green << 16
  uint32_t ra;  // red, alpha << 16

  constexpr uint32_t Alpha() const { return ra >> 16; }
  constexpr bool operator==(const RGBIWords&) const = default;
};
static_assert(sizeof(RGBIWords) == sizeof(RGBI));

inline RGBIWords LoadWords(const RGBI* p) {
  RGBIWords w;
  std::memcpy(&w, p, sizeof w);
  return w;
}
inline void StoreWords(RGBIWords w, RGBI* p) {
  std::memcpy(p, &w, sizeof w);
}

// src over dst.
constexpr RGBIWords CompositeWords(RGBIWords src, RGBIWords dst) {
  const uint32_t k = 256 - src.Alpha();
  return {((k * dst.bg >> 8) + src.bg) & kLaneMask, ((k * dst.ra >> 8) + src.ra) & kLaneMask};
}

// A sum of 2 to the power of n pixels as their mean, truncated.
constexpr RGBIWords ShiftWords(RGBIWords w, int n) {
  return {w.bg >> n & kLaneMask, w.ra >> n & kLaneMask};
}

// w += n times c. The channels must have room.
constexpr void AddWords(RGBIWords* w, RGBIWords c, uint32_t n) {
  w->bg += c.bg * n;
  w->ra += c.ra * n;
}

// Composes n pixels of src, or n times the one, onto dst.
void CompositeRGB(const RGBI* src, RGBI* dst, int32_t n);
void CompositeRGBSolid(const RGBI* src, RGBI* dst, int32_t n);

// Gives the pixels x1 to x2 - 1 of row y, which stand in pixels[0] and up, a
// pattern: kind 1 pales them, 2 and 3 invert those on a 4 by 4 mask and make
// them opaque. Other kinds do nothing.
void ApplyRGBPattern(uint32_t kind, int32_t y, int32_t x1, int32_t x2, RGBI* pixels);

}  // namespace vexel
