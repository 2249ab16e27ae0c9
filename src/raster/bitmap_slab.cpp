// Bitmaps, sampled at the nearest pixel below each position. Positions are
// 16.16 bitmap pixels, kept in 64 bits because steps may be of any size.
//
// A clipped bitmap repeats its edge pixels outside; a tiled one wraps. What is
// left inside is drawn in pieces that don't cross the bitmap's edge.
#include "geometry/matrix.h"
#include "raster/blit.h"
#include "raster/color_map.h"
#include "raster/composite.h"
#include "raster/pix32_ops.h"
#include "raster/pixel_memory.h"
#include "raster/raster.h"
#include "raster/rcolor.h"
#include "raster/slabs.h"

namespace vexel {
namespace {

struct Position {
  int64_t x;
  int64_t y;
};

bool IsClipped(const RColor* c) {
  return (c->bm.fillStyle & 1) != 0;
}

Position BitmapPosition(const RColor* c, int32_t x) {
  SPOINT p = {WrapShl(x, 16), WrapShl(c->raster->bitY, 16)};
  MatrixTransformPoint(&c->bm.invMat, &p, &p);
  return {p.x, p.y};
}

// v reduced into 0 to size - 1.
int64_t WrapInto(int64_t v, int64_t size) {
  v %= size;
  return v < 0 ? v + size : v;
}

// The pixel at p with the edge repeated, through the colour map.
RGBI EdgePixel(const RColor* c, const Position& p) {
  RGBI pixel = {};
  c->bm.bitmap->GetRGBPixel(Saturate32(Asr64(p.x, 16)), Saturate32(Asr64(p.y, 16)), &pixel);
  if (c->bm.colorMap != nullptr) ApplyColorMap(c->bm.colorMap, &pixel);
  return pixel;
}

// One axis of the walk along a span.
struct Axis {
  int64_t pos;   // 0 to size, the size itself only for a falling step
  int64_t step;  // per pixel
  int64_t size;

  // Brings the position back into the bitmap and returns how many pixels can
  // be sampled before it leaves again.
  int64_t Enter() {
    if (step > 0) {
      pos = WrapInto(pos, size);
      return (step + size - pos - 1) / step;
    }
    if (step < 0) {
      pos = WrapInto(pos - 1, size) + 1;
      return (pos - step - 1) / -step;
    }
    pos = WrapInto(pos, size);
    return kSlabPixels;
  }
  // A falling position that stands at the size samples pixel 0.
  bool OnRim() const { return pos == size; }
  SFIXED Sample() const { return static_cast<SFIXED>(OnRim() ? 0 : pos); }
};

// The pixels of a span that lie inside the bitmap, or all of a tiled one.
struct Walk {
  Axis x;
  Axis y;

  // The length of the next piece of a span with `left` pixels.
  int32_t Enter(int32_t left) {
    const int64_t nx = x.Enter();
    const int64_t ny = y.Enter();
    int64_t n = nx < ny ? nx : ny;
    if (n > kSlabPixels) n = kSlabPixels;
    if (x.OnRim() || y.OnRim()) n = 1;
    return n < left ? static_cast<int32_t>(n) : left;
  }
  SPOINT Sample() const { return {x.Sample(), y.Sample()}; }
  void Advance(int32_t n) {
    x.pos += n * x.step;
    y.pos += n * y.step;
  }
};

// Draws the pixels of a clipped bitmap's span that lie outside of it by
// put(x, pixel), and shortens the span and moves its start to what is inside.
template <class Put>
void DrawOutside(const RColor* c, int32_t* x1, int32_t* x2, Position* p, Put put) {
  const int64_t lw = c->bm.bitmap->width - (c->bm.smooth ? 1 : 0);
  const int64_t lh = c->bm.bitmap->height - (c->bm.smooth ? 1 : 0);
  const int64_t sx = c->bm.blt.dx;
  const int64_t sy = c->bm.blt.dy;
  const auto outside = [lw, lh](const Position& at) {
    const int64_t px = Asr64(at.x, 16);
    const int64_t py = Asr64(at.y, 16);
    return px < 0 || px >= lw || py < 0 || py >= lh;
  };
  // Required: the walk back starts one step beyond the last pixel, so each
  // pixel it draws is sampled one step too far.
  Position q = {p->x + (*x2 - *x1) * sx, p->y + (*x2 - *x1) * sy};
  while (*x1 < *x2 && outside(*p)) {
    put(*x1, EdgePixel(c, *p));
    ++*x1;
    *p = {p->x + sx, p->y + sy};
  }
  while (*x1 < *x2 && outside(q)) {
    --*x2;
    put(*x2, EdgePixel(c, q));
    q = {q.x - sx, q.y - sy};
  }
}

Walk StartWalk(const RColor* c, const Position& p) {
  const BltInfo& blt = c->bm.blt;
  return {{p.x, blt.dx, int64_t{blt.width} << 16}, {p.y, blt.dy, int64_t{blt.height} << 16}};
}

}  // namespace

void DrawBitmapSlab(RColor* c, int32_t x1, int32_t x2) {
  CRaster* raster = c->raster;
  Position p = BitmapPosition(c, x1);
  if (IsClipped(c)) {
    DrawOutside(c, &x1, &x2, &p,
                [raster](int32_t x, RGBI pixel) { raster->drawRGBSlab(raster, x, x + 1, &pixel); });
  }
  Walk walk = StartWalk(c, p);
  const int32_t bytes = mapPixelFormatToDepth[raster->pixelFormat] / 8;
  RGBI buf[kSlabPixels] = {};
  while (x1 < x2) {
    const int32_t n = walk.Enter(x2 - x1);
    SPOINT pos = walk.Sample();
    if (c->bm.directBltProc != nullptr) {
      c->bm.directBltProc(c->bm.blt, pos, n, raster->rowAddr + (x1 + raster->xOffset) * bytes);
    } else {
      c->bm.bltProc(c->bm.blt, pos, n, buf);
      if (c->bm.colorMap != nullptr) ApplyColorMap(c->bm.colorMap, buf, n);
      if (c->pattern != 0) ApplyRGBPattern(c->pattern, raster->bitY, x1, x1 + n, buf);
      raster->drawRGBSlab(raster, x1, x1 + n, buf);
    }
    walk.Advance(n);
    x1 += n;
  }
}

void BuildBitmapSlab(RColor* c, int32_t x1, int32_t x2, RGBI* pixels) {
  const int32_t start = x1;
  Position p = BitmapPosition(c, x1);
  if (IsClipped(c)) {
    DrawOutside(c, &x1, &x2, &p,
                [pixels, start](int32_t x, RGBI pixel) { pixels[x - start] = pixel; });
  }
  Walk walk = StartWalk(c, p);
  while (x1 < x2) {
    const int32_t n = walk.Enter(x2 - x1);
    SPOINT pos = walk.Sample();
    RGBI* out = pixels + (x1 - start);
    c->bm.bltProc(c->bm.blt, pos, n, out);
    if (c->bm.colorMap != nullptr) ApplyColorMap(c->bm.colorMap, out, n);
    walk.Advance(n);
    x1 += n;
  }
}

void BuildPix32BitmapSlab(RColor* c, int32_t x1, int32_t x2, uint8_t* at) {
  const int32_t start = x1;
  Position p = BitmapPosition(c, x1);
  if (IsClipped(c)) {
    DrawOutside(c, &x1, &x2, &p, [at, start](int32_t x, RGBI pixel) {
      Store32(at + 4 * (x - start), PackPix32(pixel));
    });
  }
  const BltInfo& blt = c->bm.blt;
  Walk walk = StartWalk(c, p);
  while (x1 < x2) {
    const int32_t n = walk.Enter(x2 - x1);
    const SPOINT pos = walk.Sample();
    c->raster->ops32->sample(at + 4 * (x1 - start), n,
                             {blt.baseAddr, blt.rowBytes, pos.x, pos.y, blt.dx, blt.dy, blt.width});
    walk.Advance(n);
    x1 += n;
  }
}

void CompositeBitmapSlab(RColor* c, int32_t x1, int32_t x2, RGBI* pixels) {
  RGBI buf[kSlabPixels] = {};
  BuildBitmapSlab(c, x1, x2, buf);
  CompositeRGB(buf, pixels, x2 - x1);
}

void CalcBitmapPixel(RColor* c, int32_t x, RGBI* out) {
  const Position p = BitmapPosition(c, x);
  if (IsClipped(c)) {
    c->bm.bitmap->GetRGBPixel(Saturate32(Asr64(p.x, 16)), Saturate32(Asr64(p.y, 16)), out);
  } else {
    const Walk walk = StartWalk(c, p);
    SPOINT pos = {static_cast<SFIXED>(WrapInto(walk.x.pos, walk.x.size)),
                  static_cast<SFIXED>(WrapInto(walk.y.pos, walk.y.size))};
    c->bm.bltProc(c->bm.blt, pos, 1, out);
  }
  if (c->bm.colorMap != nullptr) ApplyColorMap(c->bm.colorMap, out);
}

}  // namespace vexel
