// Pixel formats, palettes, dithers.
#include "pixels.h"

namespace vexel::model {

Palette StandardPalette() {
  Palette p;
  p.colors.assign(256, 0);
  for (u32 b = 0; b < 6; ++b) {
    for (u32 g = 0; g < 6; ++g) {
      for (u32 r = 0; r < 6; ++r) {
        p.colors[p.n++] = (r * 51) << 16 | (g * 51) << 8 | b * 51;
      }
    }
  }
  p.itab.assign(4096, 0);
  std::vector<u8> dist(4096, 255);
  int remaining = 4096;
  for (int radius = 3; radius <= 15 && remaining > 0; ++radius) {
    for (int index = 0; index < p.n; ++index) {
      const int R = (p.colors[index] >> 16) & 255, G = (p.colors[index] >> 8) & 255,
                B = p.colors[index] & 255;
      for (int r = 0; r < 16; ++r) {
        if (std::abs(r - (R >> 4)) > radius) continue;
        for (int g = 0; g < 16; ++g) {
          if (std::abs(g - (G >> 4)) > radius) continue;
          for (int b = 0; b < 16; ++b) {
            if (std::abs(b - (B >> 4)) > radius) continue;
            auto value = [](int cell) { return cell == 15 ? 255 : cell << 4; };
            int d = std::abs(value(r) - R) + std::abs(value(g) - G) + std::abs(value(b) - B);
            if (d > 254) d = 254;
            const int cell = r << 8 | g << 4 | b;
            if (d < dist[cell]) {
              if (dist[cell] > 254) --remaining;
              dist[cell] = static_cast<u8>(d);
              p.itab[cell] = static_cast<u8>(index);
            }
          }
        }
      }
    }
  }
  return p;
}

void Buffer::Create(int f, int w, int h) {
  static const int depths[9] = {1, 2, 4, 8, 16, 16, 24, 32, 32};
  format = f;
  depth = depths[f];
  width = w;
  height = h;
  rowBytes = ((w * depth + 31) >> 3) & ~3;
  if (f <= pix8) palette = StandardPalette();
  bytes.assign(static_cast<size_t>(rowBytes) * h, 0);
}

void Buffer::Put(int x, int y, u32 v) {
  u8* row = bytes.data() + static_cast<size_t>(rowBytes) * y;
  if (depth < 8) {
    const int perByte = 8 / depth, shift = 8 - depth - (x % perByte) * depth;
    const u32 mask = ((1u << depth) - 1) << shift;
    u8& byte = row[x / perByte];
    byte = static_cast<u8>((byte & ~mask) | ((v << shift) & mask));
    return;
  }
  for (int i = 0; i < depth / 8; ++i) row[x * (depth / 8) + i] = static_cast<u8>(v >> (8 * i));
}

u32 Pack16(const Rgbi& c) {
  return (c.red & 248u) << 7 | (c.green & 248u) << 2 | c.blue >> 3;
}
u32 Pack16A(const Rgbi& c) {
  return (c.red & 248u) << 8 | (c.green & 252u) << 3 | c.blue >> 3;
}
u32 Pack32(const Rgbi& c) {
  return u32{c.alpha} << 24 | u32{c.red} << 16 | u32{c.green} << 8 | u32{c.blue};
}

static const int dither4x4[4][4] = {{7, 0, 5, 1}, {2, 6, 4, 3}, {4, 3, 7, 2}, {0, 6, 1, 5}};
static const int dither8x8[8][8] = {{0, 8, 0, 8, 1, 9, 15, 7},    {10, 6, 2, 14, 11, 7, 3, 13},
                                    {4, 14, 10, 2, 5, 15, 11, 1}, {12, 4, 12, 6, 13, 3, 5, 9},
                                    {1, 9, 15, 7, 2, 10, 0, 6},   {11, 7, 3, 13, 12, 8, 4, 12},
                                    {5, 15, 9, 1, 6, 14, 10, 0},  {13, 3, 11, 5, 14, 2, 4, 8}};
static const int noise8x8[8][8] = {{7, 0, 0, 7, 0, 7, 7, 0}, {0, 7, 0, 7, 0, 7, 0, 7},
                                   {0, 7, 7, 0, 7, 0, 7, 7}, {0, 7, 7, 0, 7, 0, 7, 7},
                                   {7, 0, 7, 0, 0, 7, 0, 7}, {0, 7, 0, 7, 7, 0, 7, 0},
                                   {7, 7, 0, 7, 0, 7, 0, 0}, {0, 7, 7, 0, 7, 0, 7, 7}};

int PlainIndex(const Rgbi& c) {
  return (c.red & 240) << 4 | (c.green & 240) | (c.blue & 240) >> 4;
}

int OrderedIndex(const Rgbi& c, int x, int y) {
  const int d = dither8x8[y & 7][x & 7];
  auto channel = [d](int v) {
    v = (v + d) >> 4;
    return v > 15 ? 15 : v;
  };
  return channel(c.red) << 8 | channel(c.green) << 4 | channel(c.blue);
}

void SpanWriter::NextRow() {
  if (!haveErrors) return;
  errorThis.swap(errorNext);
  errorNext.assign(errorNext.size(), 0);
}

void SpanWriter::EndPaint() {
  haveErrors = false;
  errorThis.clear();
  errorNext.clear();
}

int SpanWriter::Diffuse(int x, int y, const Rgbi& c) {
  if (!haveErrors) {
    errorThis.assign(3 * bits->width + 6, 0);
    errorNext.assign(3 * bits->width + 6, 0);
    haveErrors = true;
  }
  const int noise = noise8x8[y & 7][x & 7];
  const int channels[3] = {c.red, c.green, c.blue};
  int v[3], index[3];
  for (int k = 0; k < 3; ++k) {
    v[k] = channels[k] + errorThis[(x + 1) * 3 + k];
    index[k] = (v[k] + noise) >> 4;
    if (index[k] < 0) index[k] = 0;
    if (index[k] > 15) index[k] = 15;
  }
  const int pixel = bits->palette.itab[index[0] << 8 | index[1] << 4 | index[2]];
  const u32 color = bits->palette.colors[pixel];
  const int shown[3] = {static_cast<int>(color >> 16 & 255), static_cast<int>(color >> 8 & 255),
                        static_cast<int>(color & 255)};
  for (int k = 0; k < 3; ++k) {
    const int e = v[k] - shown[k];
    errorThis[(x + 2) * 3 + k] += e >> 1;
    errorNext[x * 3 + k] += e >> 2;
    errorNext[(x + 1) * 3 + k] += e >> 2;
  }
  return pixel;
}

void SpanWriter::Write(int x1, int x2, int y, const Rgbi* pixels) {
  for (int x = x1; x < x2; ++x) {
    const Rgbi& c = *pixels++;
    switch (bits->format) {
      case pix24:
        bits->Put(x, y, (c.red & 255u) << 16 | (c.green & 255u) << 8 | (c.blue & 255u));
        break;
      case pix32:
      case pix32A:
        bits->Put(x, y, Pack32(c));
        break;
      case pix16:
        if (ditherKind == 0) {
          bits->Put(x, y, Pack16(c));
        } else {
          const int d = dither4x4[y & 3][x & 3];
          auto channel = [d](int v) {
            v = (v + d) >> 3;
            return static_cast<u32>(v > 31 ? 31 : v);
          };
          bits->Put(x, y, channel(c.red) << 10 | channel(c.green) << 5 | channel(c.blue));
        }
        break;
      case pix16A:
        if (ditherKind == 0) {
          bits->Put(x, y, Pack16A(c));
        } else {
          const int d = dither4x4[y & 3][x & 3];
          const int r = c.red + d, g = c.green + (d >> 1), b = c.blue + d;
          u32 v = r >= 255 ? 0xF800u : (r & 248u) << 8;
          v |= g >= 255 ? 0x7E0u : (g & 252u) << 3;
          v |= b >= 255 ? 0x1Fu : (b & 248u) >> 3;
          bits->Put(x, y, v);
        }
        break;
      default: {
        int index;
        if (ditherKind == 2) {
          index = Diffuse(x, y, c);
        } else if (ditherKind == 1) {
          index = bits->palette.itab[OrderedIndex(c, x, y)];
        } else {
          index = bits->palette.itab[PlainIndex(c)];
        }
        bits->Put(x, y, static_cast<u32>(index));
      }
    }
  }
}

}  // namespace vexel::model
