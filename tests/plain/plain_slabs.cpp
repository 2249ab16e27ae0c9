#include "plain/plain_slabs.h"

#include <algorithm>
#include <cstring>

#include "geometry/matrix.h"
#include "raster/blit.h"
#include "raster/color_map.h"
#include "raster/composite.h"
#include "raster/format_table.h"
#include "raster/raster.h"

namespace vexel::plain {
namespace {

struct Words {
  uint32_t w[2];
};
Words Split(RGBI p) {
  return {{p.blue | uint32_t{p.green} << 16, p.red | uint32_t{p.alpha} << 16}};
}
RGBI Join(Words v) {
  return {static_cast<uint16_t>(v.w[0]), static_cast<uint16_t>(v.w[0] >> 16),
          static_cast<uint16_t>(v.w[1]), static_cast<uint16_t>(v.w[1] >> 16)};
}

int32_t RampIndex(int64_t i) {
  return static_cast<int32_t>(std::clamp<int64_t>(i, 0, 256));
}

SPOINT GradientStart(const RColor* c, int32_t x) {
  SPOINT p = {WrapShl(x, 8), WrapShl(c->raster->bitY, 8)};
  MatrixTransformPoint(&c->grad.invGradMat, &p, &p);
  return p;
}

int32_t Square(int32_t i) {
  return i < 256 ? i * i : 65535;
}

void BuildGradient(const RColor* c, int32_t x1, int32_t x2, RGBI* out) {
  if (c->grad.colorRamp == nullptr) return;
  SPOINT p = GradientStart(c, x1);
  int32_t i = RampIndex(PointLength(&p) >> 14);
  int32_t delta = 0;
  for (int32_t x = x1; x < x2; x++) {
    if (c->grad.fillStyle == kRadialFill) {
      const int64_t px = p.x >> 14;
      const int64_t py = p.y >> 14;
      const int64_t d = px * px + py * py;
      const int32_t prev = i;
      i = RampIndex(i + delta);
      for (;;) {
        if (d < Square(i)) {
          i--;
        } else if (i > 255 || d <= Square(i + 1)) {
          break;
        } else {
          i++;
        }
      }
      delta = i - prev;
    } else {
      i = RampIndex((p.x >> 15) + 128);
    }
    *out++ = UnpackPix32(c->grad.colorRamp[i]);
    p = {WrapAdd(p.x, c->grad.invGradMat.a >> 8), WrapAdd(p.y, c->grad.invGradMat.b >> 8)};
  }
}

int64_t Modulo(int64_t v, int64_t n) {
  return (v % n + n) % n;
}

struct BitmapWalk {
  const RColor* c;
  int64_t x, y;

  BitmapWalk(const RColor* color, int32_t start) : c(color) {
    SPOINT p = {WrapShl(start, 16), WrapShl(c->raster->bitY, 16)};
    MatrixTransformPoint(&c->bm.invMat, &p, &p);
    x = p.x;
    y = p.y;
  }
  int64_t Width() const { return int64_t{c->bm.blt.width} << 16; }
  int64_t Height() const { return int64_t{c->bm.blt.height} << 16; }
  bool Outside() const { return x < 0 || x >= Width() || y < 0 || y >= Height(); }
  void Step(int64_t n) {
    x += n * c->bm.invMat.a;
    y += n * c->bm.invMat.b;
  }
  RGBI Clamped() const {
    RGBI p = {};
    const auto at = [](int64_t v) {
      return static_cast<int32_t>(std::clamp<int64_t>(v >> 16, -100000, 100000));
    };
    c->bm.bitmap->GetRGBPixel(at(x), at(y), &p);
    if (c->bm.colorMap != nullptr) ApplyColorMap(c->bm.colorMap, &p);
    return p;
  }
  // How many pixels until one coordinate leaves the bitmap, which it is first
  // brought back into.
  static int64_t Limit(int64_t* p, int64_t step, int64_t size) {
    *p = Modulo(*p, size);
    if (step < 0 && *p < 1) *p += size;
    if (step > 0) return (step + size - *p - 1) / step;
    if (step < 0) return (*p - step - 1) / -step;
    return 256;
  }
};

// Calls pixel(x, value) for single pixels outside of a clipped bitmap and
// piece(x, walk, count) for the rest.
template <class Pixel, class Piece>
void WalkBitmap(RColor* c, int32_t x1, int32_t x2, Pixel pixel, Piece piece) {
  BitmapWalk walk(c, x1);
  if (c->bm.fillStyle & 1) {
    BitmapWalk back = walk;
    back.Step(x2 - x1);
    for (; x1 < x2 && walk.Outside(); walk.Step(1)) pixel(x1++, walk.Clamped());
    for (; x1 < x2 && back.Outside(); back.Step(-1)) pixel(--x2, back.Clamped());
  }
  while (x1 < x2) {
    int64_t n = std::min<int64_t>(256, x2 - x1);
    n = std::min(n, BitmapWalk::Limit(&walk.x, c->bm.invMat.a, walk.Width()));
    n = std::min(n, BitmapWalk::Limit(&walk.y, c->bm.invMat.b, walk.Height()));
    piece(x1, walk, static_cast<int32_t>(n));
    walk.Step(n);
    x1 += static_cast<int32_t>(n);
  }
}

// Copies a piece, pixel by pixel where the copying routine would have to start
// at the bitmap's size itself.
void Copy(BltProc proc, const BitmapWalk& walk, int32_t n, uint8_t* dst, int32_t bytes) {
  const BltInfo& blt = walk.c->bm.blt;
  if (walk.x < walk.Width() && walk.y < walk.Height()) {
    SPOINT p = {static_cast<int32_t>(walk.x), static_cast<int32_t>(walk.y)};
    proc(blt, p, n, dst);
    return;
  }
  for (int32_t i = 0; i < n; i++) {
    SPOINT p = {static_cast<int32_t>(Modulo(walk.x + i * int64_t{blt.dx}, walk.Width())),
                static_cast<int32_t>(Modulo(walk.y + i * int64_t{blt.dy}, walk.Height()))};
    proc(blt, p, 1, dst + i * bytes);
  }
}

uint8_t* Bytes(RGBI* p) {
  return reinterpret_cast<uint8_t*>(p);
}

void BuildBitmap(RColor* c, int32_t x1, int32_t x2, RGBI* out) {
  WalkBitmap(
      c, x1, x2, [&](int32_t x, RGBI p) { out[x - x1] = p; },
      [&](int32_t x, const BitmapWalk& walk, int32_t n) {
        Copy(c->bm.bltProc, walk, n, Bytes(out + (x - x1)), sizeof(RGBI));
        if (c->bm.colorMap != nullptr) ApplyColorMap(c->bm.colorMap, out + (x - x1), n);
      });
}

void DrawBitmap(RColor* c, int32_t x1, int32_t x2) {
  CRaster* r = c->raster;
  const int32_t bytes = mapPixelFormatToDepth[r->pixelFormat] / 8;
  std::vector<RGBI> buf(256);
  WalkBitmap(
      c, x1, x2, [&](int32_t x, RGBI p) { r->drawRGBSlab(r, x, x + 1, &p); },
      [&](int32_t x, const BitmapWalk& walk, int32_t n) {
        if (c->bm.directBltProc != nullptr) {
          Copy(c->bm.directBltProc, walk, n, r->rowAddr + (x + r->xOffset) * bytes, bytes);
          return;
        }
        Copy(c->bm.bltProc, walk, n, Bytes(buf.data()), sizeof(RGBI));
        if (c->bm.colorMap != nullptr) ApplyColorMap(c->bm.colorMap, buf.data(), n);
        if (c->pattern != 0) ApplyRGBPattern(c->pattern, r->bitY, x, x + n, buf.data());
        r->drawRGBSlab(r, x, x + n, buf.data());
      });
}

bool IsGradient(const RColor* c) {
  return c->colorType == colorGradient && c->grad.colorRamp != nullptr;
}

// A span of the colour onto pixels.
void Compose(RColor* c, int32_t x1, int32_t x2, RGBI* pixels) {
  std::vector<RGBI> own(static_cast<size_t>(x2 - x1));
  const bool opaque = !c->transparent;
  if (IsGradient(c)) {
    BuildGradient(c, x1, x2, opaque ? pixels : own.data());
    if (opaque) return;
  } else if (c->colorType == colorBitmap) {
    BuildBitmap(c, x1, x2, opaque ? pixels : own.data());
    if (opaque) return;
  } else {
    std::fill(own.begin(), own.end(), c->rgb);
  }
  for (size_t i = 0; i < own.size(); i++) pixels[i] = Over(own[i], pixels[i]);
}

}  // namespace

RGBI Over(RGBI top, RGBI below) {
  Words t = Split(top);
  const Words b = Split(below);
  for (int i = 0; i < 2; i++) {
    t.w[i] = (((256u - top.alpha) * b.w[i] >> 8) + t.w[i]) & 0xFF00FF;
  }
  return Join(t);
}

RGBI Mean(RGBI sum, int n) {
  Words v = Split(sum);
  for (uint32_t& w : v.w) w = w >> n & 0xFF00FF;
  return Join(v);
}

void CalcPixel(RColor* c, int32_t x) {
  if (IsGradient(c)) {
    const SPOINT p = GradientStart(c, x);
    const int32_t i = c->grad.fillStyle == kRadialFill ? PointLength(&p) >> 14 : (p.x >> 15) + 128;
    c->rgb = UnpackPix32(c->grad.colorRamp[RampIndex(i)]);
  } else if (c->colorType == colorBitmap) {
    BitmapWalk walk(c, x);
    if (c->bm.fillStyle & 1) {
      c->bm.bitmap->GetRGBPixel(Saturate32(walk.x >> 16), Saturate32(walk.y >> 16), &c->rgb);
    } else {
      walk.x = Modulo(walk.x, walk.Width());
      walk.y = Modulo(walk.y, walk.Height());
      Copy(c->bm.bltProc, walk, 1, Bytes(&c->rgb), sizeof(RGBI));
    }
    if (c->bm.colorMap != nullptr) ApplyColorMap(c->bm.colorMap, &c->rgb);
  }
}

void DrawSlab(RColor* c, int32_t x1, int32_t x2) {
  CRaster* r = c->raster;
  if (c->colorType == colorBitmap) {
    DrawBitmap(c, x1, x2);
    return;
  }
  const DrawSolidSlabProc drawSolid = pixelFormats[r->pixelFormat].drawSolidSlab;
  if (c->drawSlabProc == drawSolid) {  // a solid with a pattern prepared
    drawSolid(c, x1, x2);
    return;
  }
  for (; x1 < x2; x1 += 256) {
    const int32_t end = std::min(x2, x1 + 256);
    std::vector<RGBI> buf(static_cast<size_t>(end - x1), c->rgb);
    if (IsGradient(c)) BuildGradient(c, x1, end, buf.data());
    if (c->pattern != 0) ApplyRGBPattern(c->pattern, r->bitY, x1, end, buf.data());
    r->drawRGBSlab(r, x1, end, buf.data());
  }
}

void CompositeSlab(CRaster* r, int32_t x1, int32_t x2, const std::vector<RColor*>& colors) {
  std::vector<RGBI> buf(256);
  for (; x1 < x2; x1 += 256) {
    const int32_t end = std::min(x2, x1 + 256);
    auto c = colors.rbegin();
    if ((*c)->transparent) {
      r->getBackground(r, x1, end, buf.data());
    } else if ((*c)->pattern != 0) {
      Compose(*c, x1, end, buf.data());
      ApplyRGBPattern((*c)->pattern, r->bitY, x1, end, buf.data());
      ++c;
    } else if ((*c)->colorType == colorSolid) {
      std::fill(buf.begin(), buf.end(), (*c)->rgb);
      ++c;
    }
    for (; c != colors.rend(); ++c) Compose(*c, x1, end, buf.data());
    r->drawRGBSlab(r, x1, end, buf.data());
  }
}

}  // namespace vexel::plain
