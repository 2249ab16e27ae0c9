// Colours, colour transforms, gradient stops and decoded bitmaps of the model.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "geom.h"

namespace vexel::model {

using u8 = uint8_t;
using u16 = uint16_t;
using i16 = int16_t;

struct Srgb {
  u8 red = 0, green = 0, blue = 0, alpha = 0;
  bool operator==(const Srgb&) const = default;
};

// A pixel in work: 16 bits a channel, premultiplied unless said otherwise.
struct Rgbi {
  u16 blue = 0, green = 0, red = 0, alpha = 0;
  u32 Low() const { return blue | u32{green} << 16; }
  u32 High() const { return red | u32{alpha} << 16; }
  void Set(u32 low, u32 high);
};

Rgbi FromWord(u32 argb);
// src over dst.
Rgbi Over(const Rgbi& src, const Rgbi& dst);
// Every channel multiplied by alpha + 1 and shifted right by 8.
void Premultiply(Rgbi& c);

Srgb Lerp(Srgb a, Srgb b, i32 t);
Rgbi Lerp(const Rgbi& a, const Rgbi& b, i32 t);

struct Ramp {
  int n = 0;
  u8 ratio[8] = {};
  Srgb color[8];
};

struct ColorTransform {
  u32 flags = 0;
  i16 aa = 256, ab = 0, ra = 256, rb = 0, ga = 256, gb = 0, ba = 256, bb = 0;
  bool operator==(const ColorTransform&) const = default;

  void CalcFlags();
  void ConcatWith(const ColorTransform& other);
  void Apply(Rgbi& c) const;
  void Apply(Ramp& ramp) const;
  bool MakesTransparent() const { return flags != 0 && (aa < 256 || ab < 0); }
};

// A decoded bitmap: 1, 2, 4, 8, 16 or 32 bits a pixel for formats 0 to 5.
struct Bitmap {
  bool valid = false;
  int format = 0, width = 0, height = 0, rowBytes = 0;
  bool transparent = false;
  std::vector<u32> palette;  // 256 words or none
  std::vector<u8> bytes;

  bool Create(int format, int width, int height, const std::vector<u32>& table);
  void Free();
  u32 Raw(int x, int y) const;        // the pixel's bits, inside the bitmap
  Rgbi GetPixel(i64 x, i64 y) const;  // clamped
  void SwapBits();
};

u32 Pix16Expand(u32 v);

}  // namespace vexel::model
