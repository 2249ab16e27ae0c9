// Preparation of solid colours.
//
// A palette that lacks a colour mixes two of its entries: the nearest one, and
// the nearest to the colour mirrored at it, in the ratio of their distances.
#include "raster/solid_pattern.h"

#include <cstring>

#include "raster/raster.h"
#include "raster/rcolor.h"

namespace vexel {
namespace {

// Masks with fewer and fewer bits set, spread evenly.
constexpr int32_t kGreyLevels = 17;
constexpr uint16_t greyMasks[kGreyLevels] = {0xFFFF, 0x7FFF, 0x7FDF, 0x5FDF, 0x5F5F, 0x5B5F,
                                             0x5B5E, 0x5A5E, 0x5A5A, 0x1A5A, 0x1A4A, 0x0A4A,
                                             0x0A0A, 0x020A, 0x0208, 0x0008, 0};

constexpr int32_t kFullMask = 0xFFFF;
constexpr int32_t kCloseEnough = 7;  // sum of channel differences that needs no mixing

int32_t Magnitude(int32_t v) {
  return v < 0 ? -v : v;
}

int32_t ClampChannel(int32_t v) {
  return v < 0 ? 0 : v > 255 ? 255 : v;
}

uint32_t PaletteIndex(const SColorInfo* cinfo, const RGBI& c) {
  return cinfo
      ->itab[InverseTableCell((c.red & 240) >> 4, (c.green & 240) >> 4, (c.blue & 240) >> 4)];
}

struct Difference {
  int32_t red, green, blue;
  int32_t Sum() const { return Magnitude(red) + Magnitude(green) + Magnitude(blue); }
};

// The palette entry minus the colour.
Difference PaletteError(const SColorInfo* cinfo, uint32_t index, const RGBI& c) {
  const RGB8 entry = cinfo->ctab.colors[index];
  return {static_cast<int32_t>(RedOf(entry)) - c.red,
          static_cast<int32_t>(GreenOf(entry)) - c.green,
          static_cast<int32_t>(BlueOf(entry)) - c.blue};
}

// The mask that mixes the entries *c1 and *c2 into `c`.
int32_t MixPalette(const SColorInfo* cinfo, const RGBI& c, uint32_t* c1, uint32_t* c2) {
  *c1 = PaletteIndex(cinfo, c);
  *c2 = *c1;
  const Difference e = PaletteError(cinfo, *c1, c);
  const int32_t d1 = e.Sum();
  if (d1 <= kCloseEnough) return kFullMask;
  const RGBI mirrored = {static_cast<uint16_t>(ClampChannel(c.blue - e.blue)),
                         static_cast<uint16_t>(ClampChannel(c.green - e.green)),
                         static_cast<uint16_t>(ClampChannel(c.red - e.red)), c.alpha};
  *c2 = PaletteIndex(cinfo, mirrored);
  const int32_t d2 = PaletteError(cinfo, *c2, c).Sum();
  const int32_t level = 16 * d1 / (d1 + d2);
  return greyMasks[level < 15 ? level : 15];
}

// The other colour of a pattern.
RGBI PatternPartner(uint32_t pattern, const RGBI& c) {
  if (pattern == 0) return c;
  if (pattern == 1) return {255, 255, 255, 255};
  return {static_cast<uint16_t>(c.blue ^ 255), static_cast<uint16_t>(c.green ^ 255),
          static_cast<uint16_t>(c.red ^ 255), static_cast<uint16_t>(c.alpha ^ 255)};
}

int32_t PatternMask(uint32_t pattern) {
  switch (pattern) {
    case 0:
      return kFullMask;
    case 1:
      return 0xA5A5;
    case 2:
      return 0x33CC;
    default:
      return 0x39C6;
  }
}

}  // namespace

void ExpandPat(int32_t pat, int32_t rot, uint32_t c1, uint32_t c2, int32_t format, int32_t rowLongs,
               uint8_t* out) {
  for (int32_t row = 0; row < 4; row++, out += 4 * rowLongs) {
    uint32_t bits = static_cast<uint32_t>(pat) >> (12 - 4 * row) & 15;
    bits = (bits << rot | bits >> (4 - rot)) & 15;
    const uint32_t v[4] = {bits & 8 ? c1 : c2, bits & 4 ? c1 : c2, bits & 2 ? c1 : c2,
                           bits & 1 ? c1 : c2};
    switch (format) {
      case pix1: {
        uint32_t byte = 0;
        for (uint32_t p : v) byte = byte << 1 | (p & 1);
        std::memset(out, static_cast<int>(byte * 0x11), 4);
        break;
      }
      case pix4:
        for (int i = 0; i < 4; i++) {
          const int j = (i & 1) * 2;
          out[i] = static_cast<uint8_t>((v[j] & 15) << 4 | (v[j + 1] & 15));
        }
        break;
      case pix8:
        for (int i = 0; i < 4; i++) out[i] = static_cast<uint8_t>(v[i]);
        break;
      case pix16:
      case pix16A:
        for (int i = 0; i < 4; i++) {
          const uint16_t word = static_cast<uint16_t>(v[i]);
          std::memcpy(out + 2 * i, &word, 2);
        }
        break;
      case pix24:
        for (int i = 0; i < 4; i++) {
          out[3 * i] = static_cast<uint8_t>(v[i]);
          out[3 * i + 1] = static_cast<uint8_t>(v[i] >> 8);
          out[3 * i + 2] = static_cast<uint8_t>(v[i] >> 16);
        }
        break;
      case pix32:
      case pix32A:
        std::memcpy(out, v, sizeof v);
        break;
      default:
        break;  // Required: pix2 gets no pattern
    }
  }
}

void BuildSolidPattern(RColor* color) {
  const CRaster* raster = color->raster;
  const SColorInfo* cinfo = raster->cinfo;
  const RGBI& rgb = color->rgb;
  const bool hasPattern = color->pattern != 0;
  const bool mixes = !hasPattern && raster->solidDither != 0;
  const RGBI partner = PatternPartner(color->pattern, rgb);
  int32_t pat = PatternMask(color->pattern);
  uint32_t c1 = 0;
  uint32_t c2 = 0;
  std::memset(color->solid.pat, 0, sizeof color->solid.pat);
  switch (raster->pixelFormat) {
    case pix1:
      if (cinfo == nullptr) return;
      if (hasPattern) {
        c1 = PaletteIndex(cinfo, rgb);
        c2 = PaletteIndex(cinfo, partner);
        break;
      }
      c1 = cinfo->itab[0];
      c2 = c1;
      if (mixes) {
        c2 = cinfo->itab[kInverseTableSize - 1];
        pat = greyMasks[(rgb.red + rgb.green + rgb.blue + 3) / 6 >> 3];
      }
      break;
    case pix2:
    case pix4:
    case pix8:
      if (cinfo == nullptr) return;
      if (mixes) {
        pat = MixPalette(cinfo, rgb, &c1, &c2);
      } else {
        c1 = PaletteIndex(cinfo, rgb);
        c2 = PaletteIndex(cinfo, partner);  // rgb's own without a pattern
      }
      break;
    case pix16:
      c1 = PackPix16(rgb);
      c2 = PackPix16(partner);
      break;
    case pix16A:
      c1 = PackPix16A(rgb);
      c2 = PackPix16A(partner);
      break;
    default:
      c1 = PackPix32(rgb);
      c2 = PackPix32(partner);
      break;
  }
  ExpandPat(pat, raster->patXOrg & 3, c1, c2, raster->pixelFormat, 4, color->solid.pat[0]);
}

}  // namespace vexel
