// Colour sources: solid patterns, gradients and bitmaps.
#include "raster.h"

namespace vexel::model {

void RColor::SetUp(Raster* r) {
  raster = r;
  clipColor = nullptr;
  visible = 0;
  transparent = false;
  type = kSolid;
  cacheValid = false;
}

void RColor::BuildCache() {
  if (cacheValid) return;
  if (type == kSolid) {
    BuildSolid();
  } else if (type == kGradient) {
    BuildRamp();
  } else if (type == kBitmap) {
    hasMap = cxform.flags != 0;
    if (hasMap) BuildMap();
    const int to = raster->bits->format;
    const bool diffuse = to == pix8 && raster->writer.ditherKind > 1;
    direct = !hasMap && !diffuse && bitmap->format >= 3 &&
             (to == pix8 || to == pix16 || to == pix16A || to == pix32);
  }
  cacheValid = true;
  cacheKey = 0x80008000;
}

// ---- solid -----------------------------------------------------------------

static const u16 kGrey[17] = {0xFFFF, 0x7FFF, 0x7FDF, 0x5FDF, 0x5F5F, 0x5B5F,
                              0x5B5E, 0x5A5E, 0x5A5A, 0x1A5A, 0x1A4A, 0x0A4A,
                              0x0A0A, 0x020A, 0x0208, 0x0008, 0};

void RColor::BuildSolid() {
  const Buffer& b = *raster->bits;
  u32 mask = 0xFFFF, c1 = 0, c2 = 0;
  switch (b.format) {
    case pix1:
      c1 = b.palette.itab[0];
      c2 = b.palette.itab[4095];
      mask = kGrey[((rgb.red + rgb.green + rgb.blue + 3) / 6) >> 3];
      break;
    case pix2:
    case pix4:
    case pix8: {
      auto difference = [this](u32 w, int* e) {
        const int shown[3] = {static_cast<int>(w >> 16 & 255), static_cast<int>(w >> 8 & 255),
                              static_cast<int>(w & 255)};
        const int wanted[3] = {rgb.red, rgb.green, rgb.blue};
        int sum = 0;
        for (int k = 0; k < 3; ++k) {
          e[k] = shown[k] - wanted[k];
          sum += std::abs(e[k]);
        }
        return sum;
      };
      c1 = c2 = b.palette.itab[PlainIndex(rgb)];
      int e[3];
      const int d1 = difference(b.palette.colors[c1], e);
      if (d1 > 7) {
        auto opposite = [](int v, int by) {
          v -= by;
          return static_cast<u16>(v < 0 ? 0 : v > 255 ? 255 : v);
        };
        Rgbi other;
        other.red = opposite(rgb.red, e[0]);
        other.green = opposite(rgb.green, e[1]);
        other.blue = opposite(rgb.blue, e[2]);
        c2 = b.palette.itab[PlainIndex(other)];
        int e2[3];
        const int d2 = difference(b.palette.colors[c2], e2);
        int index = 16 * d1 / (d1 + d2);
        if (index > 15) index = 15;
        mask = kGrey[index];
      }
      break;
    }
    case pix16:
      c1 = c2 = Pack16(rgb);
      break;
    case pix16A:
      c1 = c2 = Pack16A(rgb);
      break;
    default:
      c1 = c2 = Pack32(rgb);
      break;
  }
  for (int row = 0; row < 4; ++row) {
    for (int col = 0; col < 4; ++col) {
      const bool first = (mask >> (15 - 4 * row - col)) & 1;
      const u32 v = first ? c1 : c2;
      if (b.format == pix1) {
        pat[row][col] = v != 0;
      } else if (b.format == pix2) {
        pat[row][col] = 0;  // no pattern is ever written for two bits
      } else {
        pat[row][col] = v;
      }
    }
  }
}

void RColor::DrawSolid(int x1, int x2) {
  const int y = raster->bitY;
  for (int x = x1; x < x2; ++x) raster->bits->Put(x, y, pat[y & 3][x & 3]);
}

// ---- gradients -------------------------------------------------------------

void RColor::BuildRamp() {
  colorRamp.assign(257, 0);
  Srgb prev = ramp.color[0], next = ramp.color[0];
  int prevRatio = 0, nextRatio = ramp.ratio[0], j = 1;
  for (int i = 0; i <= 256; ++i) {
    if (i > nextRatio) {
      prevRatio = nextRatio;
      prev = next;
      if (j < ramp.n) {
        next = ramp.color[j];
        nextRatio = ramp.ratio[j];
        ++j;
      } else {
        nextRatio = 256;
      }
    }
    const int w1 = nextRatio - i, w0 = i - prevRatio, sum = w1 + w0;
    auto mix = [&](u8 p, u8 q) -> u32 {
      if (sum <= 0) return p;
      const int v = (p * w1 + q * w0) / sum;
      return static_cast<u32>(v < 0 ? 0 : v > 255 ? 255 : v);
    };
    const u32 a = mix(prev.alpha, next.alpha);
    u32 r = mix(prev.red, next.red), g = mix(prev.green, next.green), b = mix(prev.blue, next.blue);
    if (a == 0) {
      r = g = b = 0;
    } else if (a < 255) {
      r = r * (a + 1) >> 8;
      g = g * (a + 1) >> 8;
      b = b * (a + 1) >> 8;
    }
    colorRamp[static_cast<size_t>(i)] = a << 24 | r << 16 | g << 8 | b;
  }
}

static int Square(int i) {
  return i * i > 65535 ? 65535 : i * i;
}

void RColor::BuildGradient(int x1, int x2, Rgbi* out) {
  Point p = Transform(inverse, {x1 << 8, raster->bitY << 8});
  const i32 stepX = inverse.a >> 8, stepY = inverse.b >> 8;
  if (fillStyle != 18) {
    for (int x = x1; x < x2; ++x) {
      int i = (p.x >> 15) + 128;
      if (i < 0) i = 0;
      if (i > 256) i = 256;
      *out++ = FromWord(colorRamp[static_cast<size_t>(i)]);
      p.x += stepX;
    }
    return;
  }
  int i = PointLength(p) >> 14;
  if (i > 256) i = 256;
  if (i < 0) i = 0;
  int delta = 0;
  for (int x = x1; x < x2; ++x) {
    const i64 X = p.x >> 14, Y = p.y >> 14, d = X * X + Y * Y;
    const int prev = i;
    i += delta;
    if (i < 0) i = 0;
    if (i > 256) i = 256;
    for (;;) {
      if (d < Square(i)) {
        --i;
      } else if (d <= Square(i + 1) || i > 255) {
        break;
      } else {
        ++i;
      }
    }
    delta = i - prev;
    *out++ = FromWord(colorRamp[static_cast<size_t>(i)]);
    p.x += stepX;
    p.y += stepY;
  }
}

// ---- bitmaps ---------------------------------------------------------------

void RColor::BuildMap() {
  mapAlpha = cxform.aa < 256 || cxform.ab < 0 || transparent;
  auto build = [](int mul, int add, u8* out) {
    for (int i = 0; i < 256; ++i) {
      const i32 v = add * 256 + i * mul;
      if (static_cast<u32>(v) < 0x10000) {
        out[i] = static_cast<u8>(v >> 8);
      } else {
        out[i] = v > 0 ? 255 : 0;
      }
    }
  };
  build(cxform.ra, cxform.rb, mapRed);
  build(cxform.ga, cxform.gb, mapGreen);
  build(cxform.ba, cxform.bb, mapBlue);
  build(cxform.aa, cxform.ab, mapOpacity);
  mapOpacity[0] = 0;
}

void RColor::ApplyMap(Rgbi& c) const {
  if (!mapAlpha) {
    c.red = mapRed[c.red & 255];
    c.green = mapGreen[c.green & 255];
    c.blue = mapBlue[c.blue & 255];
    c.alpha = mapOpacity[c.alpha & 255];
    return;
  }
  const u32 m = mapOpacity[c.alpha & 255];
  if (m == 0) {
    c = Rgbi{};
    return;
  }
  const u32 u = 0xFF00u / c.alpha;
  auto channel = [u, m](u16 v, const u8* map) {
    u32 i = (v * u) >> 8;
    if (i > 255) i = 255;
    return static_cast<u16>(map[i] * (m + 1) >> 8);
  };
  c.red = channel(c.red, mapRed);
  c.green = channel(c.green, mapGreen);
  c.blue = channel(c.blue, mapBlue);
  c.alpha = static_cast<u16>(m);
}

static i64 FloorMod(i64 v, i64 n) {
  const i64 r = v % n;
  return r < 0 ? r + n : r;
}

// The copying routine of the source format at a 16.16 position. Sources of 1, 2
// and 4 bits have none: known stays false and the pixel is what it was.
Rgbi RColor::Fetch(i64 px, i64 py, bool& known) const {
  known = bitmap->format >= 3;
  return bitmap->GetPixel(FloorMod(px >> 16, bitmap->width), FloorMod(py >> 16, bitmap->height));
}

u32 RColor::DirectValue(u32 v, int x, int y) const {
  const int from = bitmap->format;
  const u32 c = from == 3 ? bitmap->palette[v] : v;
  switch (raster->bits->format) {
    case pix8: {
      Rgbi p = FromWord(c);
      if (from == 4) {
        p.red = (v >> 7) & 248;
        p.green = (v >> 2) & 248;
        p.blue = (v << 3) & 248;
      }
      return raster->bits->palette.itab[OrderedIndex(p, x, y)];
    }
    case pix16:
      if (from == 3) return Pack16(FromWord(c));
      if (from == 4) return v;
      return ((v >> 9) & 0x7C00) | ((v >> 6) & 0x3E0) | ((v >> 3) & 31);
    case pix16A:
      if (from == 3) return Pack16A(FromWord(c));
      if (from == 4) return ((v & ~31u) << 1) | (v & 63);
      return ((v >> 19) << 11 | ((v >> 5) & 0x7E0) | ((v >> 3) & 31)) & 0xFFFF;
    default:
      if (from == 3) return c & 0xFFFFFF;
      if (from == 4) {
        return 0xFF000000 | Pix16Expand((v >> 10) & 31) << 16 | Pix16Expand((v >> 5) & 31) << 8 |
               Pix16Expand(v & 31);
      }
      return v;
  }
}

void RColor::BitmapSlab(int x1, int x2, Rgbi* out) {
  const int start = x1, y = raster->bitY;
  const Point at = Transform(inverse, {static_cast<i32>(static_cast<u32>(x1) << 16),
                                       static_cast<i32>(static_cast<u32>(y) << 16)});
  i64 px = at.x, py = at.y;
  const i64 sx = inverse.a, sy = inverse.b;
  const i64 W = i64{bitmap->width} << 16, H = i64{bitmap->height} << 16;
  auto emit = [&](int x, const Rgbi& c) {
    if (out) {
      out[x - start] = c;
    } else {
      raster->DrawSlab(x, x + 1, &c);
    }
  };
  if (Clipped()) {
    auto outside = [this](i64 x, i64 y16) {
      x >>= 16;
      y16 >>= 16;
      return x < 0 || x >= bitmap->width || y16 < 0 || y16 >= bitmap->height;
    };
    i64 qx = px + (x2 - x1) * sx, qy = py + (x2 - x1) * sy;
    while (x1 < x2 && outside(px, py)) {
      Rgbi c = bitmap->GetPixel(px >> 16, py >> 16);
      if (hasMap) ApplyMap(c);
      emit(x1, c);
      ++x1;
      px += sx;
      py += sy;
    }
    while (x1 < x2 && outside(qx, qy)) {
      Rgbi c = bitmap->GetPixel(qx >> 16, qy >> 16);
      --x2;
      if (hasMap) ApplyMap(c);
      emit(x2, c);
      qx -= sx;
      qy -= sy;
    }
  } else {
    auto reduce = [](i64 v, i64 size) { return v >= 0 ? v % size : v + (-v / size + 1) * size; };
    px = reduce(px, W);
    py = reduce(py, H);
  }
  // The one slab of this call. Sources without a copying routine leave in it
  // what the piece before left, and the map is applied to that once more.
  Rgbi slab[256];
  while (x1 < x2) {
    i64 n = x2 - x1;
    if (!out && n > 256) n = 256;
    auto limit = [&n](i64& p, i64 s, i64 size) {
      i64 most = n;
      if (s > 0) {
        while (p >= size) p -= size;
        most = (s + size - p - 1) / s;
      } else if (s < 0) {
        while (p < 1) p += size;
        most = (p - s - 1) / -s;
      }
      if (most < n) n = most;
    };
    limit(px, sx, W);
    limit(py, sy, H);
    if (n < 1) n = 1;
    const bool copy = !out && direct;
    const int to = raster->bits->format;
    const bool contiguous =
        copy && sy == 0 && std::llabs(sx - 0x10000) < 256 &&
        ((to == pix16 && bitmap->format == 4) || (to == pix32 && bitmap->format == 5));
    const i64 first = px >> 16;
    for (i64 k = 0; k < n; ++k) {
      const int x = x1 + static_cast<int>(k);
      if (copy) {
        const i64 column = contiguous ? first + k : px >> 16;
        const u32 v = bitmap->Raw(static_cast<int>(FloorMod(column, bitmap->width)),
                                  static_cast<int>(FloorMod(py >> 16, bitmap->height)));
        raster->bits->Put(x, y, DirectValue(v, x, y));
      } else {
        bool known = false;
        Rgbi c = Fetch(px, py, known);
        Rgbi& place = out ? out[x - start] : slab[k];
        if (!known) c = place;
        if (hasMap) ApplyMap(c);
        place = c;
        if (!out) raster->DrawSlab(x, x + 1, &c);
      }
      px += sx;
      py += sy;
    }
    x1 += static_cast<int>(n);
  }
}

// ---- the three operations --------------------------------------------------

void RColor::Draw(int x1, int x2) {
  if (type == kSolid) {
    DrawSolid(x1, x2);
  } else if (type == kBitmap) {
    BitmapSlab(x1, x2, nullptr);
  } else {
    for (; x1 < x2; x1 += 256) {
      const int end = x1 + 256 < x2 ? x1 + 256 : x2;
      Rgbi buf[256];
      BuildGradient(x1, end, buf);
      raster->DrawSlab(x1, end, buf);
    }
  }
}

void RColor::Composite(int x1, int x2, Rgbi* out) {
  if (type == kSolid) {
    for (int x = x1; x < x2; ++x, ++out) *out = Over(rgb, *out);
    return;
  }
  std::vector<Rgbi> span(static_cast<size_t>(x2 - x1));
  Rgbi* to = transparent ? span.data() : out;
  if (type == kBitmap) {
    BitmapSlab(x1, x2, to);
  } else {
    BuildGradient(x1, x2, to);
  }
  if (!transparent) return;
  for (size_t i = 0; i < span.size(); ++i) out[i] = Over(span[i], out[i]);
}

void RColor::CalcPixel(int x) {
  const int y = raster->bitY;
  if (type == kGradient) {
    const Point p = Transform(inverse, {x << 8, y << 8});
    int i = fillStyle == 18 ? PointLength(p) >> 14 : (p.x >> 15) + 128;
    if (i > 256) i = 256;
    if (i < 0) i = 0;
    rgb = FromWord(colorRamp[static_cast<size_t>(i)]);
    return;
  }
  const Point p = Transform(inverse, {static_cast<i32>(static_cast<u32>(x) << 16),
                                      static_cast<i32>(static_cast<u32>(y) << 16)});
  if (Clipped()) {
    rgb = bitmap->GetPixel(p.x >> 16, p.y >> 16);
  } else {
    bool known = false;
    const Rgbi c = Fetch(p.x, p.y, known);
    if (known) rgb = c;
  }
  if (hasMap) ApplyMap(rgb);
}

}  // namespace vexel::model
