// What fills an area: a solid colour, a bitmap, a gradient, or the mark of a
// clip mask. The rasterizer knows a colour by two slab functions and a pixel
// function; all that can be prepared once lies in BuildCache.
#pragma once

#include <cstdint>

#include "geometry/color.h"
#include "geometry/matrix.h"
#include "raster/bitmap_core.h"
#include "raster/blit.h"
#include "raster/color_transform.h"

namespace vexel {

class CRaster;
struct RColor;

// Draws the pixels x1 to x2 - 1 of the raster's row (bitY) into the buffer.
using DrawSlabProc = void (*)(RColor* color, int32_t x1, int32_t x2);
// Composes the same pixels onto pixels[0] and up; an opaque bitmap or gradient
// replaces what stood there.
using CompositeSlabProc = void (*)(RColor* color, int32_t x1, int32_t x2, RGBI* pixels);

enum ColorType : uint8_t { colorSolid = 0, colorBitmap = 1, colorGradient = 2, colorClip = 3 };

inline constexpr int32_t kMaxGradientStops = 8;

// The stops of a gradient.
struct GradColorRamp {
  uint8_t nColors;  // 1 to 8
  uint8_t colorRatio[kMaxGradientStops];
  SRGB color[kMaxGradientStops];
};

// A gradient expanded: entry i is the colour at ratio i, 0xAARRGGBB, premultiplied.
inline constexpr int32_t kRampEntries = 257;

// A colour transform as tables, to apply to premultiplied pixels.
struct RColorMap {
  uint8_t red[256];
  uint8_t green[256];
  uint8_t blue[256];
  uint8_t alpha[256];
  bool hasAlpha;  // pixels are taken out of their premultiplication and back
};

// What a solid colour has prepared.
struct RSolid {
  uint8_t pat[4][16];  // the pixel values of a 4 by 4 pattern in the buffer's format
};

// Whether a bitmap without `transparent` really has no see-through pixel.
enum BitmapOpacity : uint8_t { opacityUnknown, opacityFull, opacityPartial };

struct RBitmap {
  uint16_t fillStyle;   // the movie's code: bit 0 set is clipped, clear is tiled
  bool smooth;          // BuildCache clears it
  uint8_t opacity;      // BitmapOpacity, found out when it is needed
  SBitmapCore* bitmap;  // not owned; useCount says that it is in use. May be null
  MATRIX bitsMat;       // the style's matrix, as read
  MATRIX invMat;        // device pixel to bitmap, tx and ty in 16.16: results are 16.16 too
  ColorTransform cxform;
  RColorMap* colorMap;    // from the raster's mapAlloc, or null
  BltProc bltProc;        // source pixels to RGBI
  BltProc directBltProc;  // source pixels to the buffer's format, or null
  BltInfo blt;
};

inline constexpr uint32_t kRadialFill = 18;

struct RGradient {
  uint32_t fillStyle;   // the movie's code: kRadialFill is radial, any other linear
  MATRIX gradMat;       // the style's matrix, as read
  MATRIX invGradMat;    // device pixel to gradient space, translations with 8 more bits
  GradColorRamp ramp;   // the stops, not premultiplied
  uint32_t* colorRamp;  // kRampEntries words from the raster's rampAlloc, or null
  bool isOpaque;        // all entries of colorRamp have an alpha of 255
  bool hasClear;        // some entry has an alpha of 0
};

// How the edges of a picture switch a colour, as bits.
enum RuleKind : uint8_t {
  ruleKindToggle = 1,
  ruleKindCount = 2,
  ruleKindOdd = 4,  // by a winding edge without a direction
};

// The maker of a colour calls SetUp, fills in the type, `transparent`, `order`,
// `rgb` and what the type needs, and then BuildCache; it owns the colour, which
// must stay valid while edges that name it are painted. A cached colour fits
// only the raster format it was cached for.
struct RColor {
  CRaster* raster;
  RColor* nextActive;  // in the paint list of what is on at the current x
  RColor* next;        // in the object's list
  uint32_t order;      // the layer in the upper 16 bits, the style's number in the lower
  RColor* clipColor;   // the innermost mask around it, OutermostClip(), or null
  bool transparent;    // doesn't cover what is below it
  int8_t visible;      // not 0 while on the paint list; for ruleWinding the count
  uint8_t colorType;   // ColorType
  bool cacheValid;
  DrawSlabProc drawSlabProc;
  CompositeSlabProc compositeSlabProc;
  RGBI rgb;           // the solid colour, premultiplied, or the last pixel asked for
  uint32_t pattern;   // 0 none, 1 pale, 2 and 3 inverting
  uint32_t cacheKey;  // the pixel whose value rgb holds: y << 16 | x & 0xFFFF

  // Of the picture that the raster has in hand.
  int32_t rank;       // its place among the picture's colours
  uint8_t ruleKinds;  // RuleKind

  // By colorType.
  union {
    RSolid solid;
    RBitmap bm;
    RGradient grad;
  };

  // Makes an unlinked, unclipped, uncached, opaque solid. order, rgb and what
  // follows cacheKey stay as they are.
  void SetUp(CRaster* r);

  // Prepares the colour for the raster's present format; nothing if it is
  // prepared. Without memory for a ramp or a map it still draws: as rgb, to
  // try again at the next call, or without the colour transform.
  void BuildCache();

  // Gives back what BuildCache took. The raster must still exist.
  void FreeCache();
};

// The clipColor that ends a chain of masks. It is a mark, never looked at.
inline RColor* OutermostClip() {
  return reinterpret_cast<RColor*>(uintptr_t{1});
}
// Whether a clipColor is a colour, neither null nor the mark.
inline bool IsClipColor(const RColor* c) {
  return reinterpret_cast<uintptr_t>(c) > 1;
}

}  // namespace vexel
