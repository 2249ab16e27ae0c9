// Colours, colour transforms and decoded bitmaps.
#include "color.h"

namespace vexel::model {

void Rgbi::Set(u32 low, u32 high) {
  blue = static_cast<u16>(low);
  green = static_cast<u16>(low >> 16);
  red = static_cast<u16>(high);
  alpha = static_cast<u16>(high >> 16);
}

Rgbi FromWord(u32 w) {
  Rgbi r;
  r.alpha = w >> 24;
  r.red = (w >> 16) & 255;
  r.green = (w >> 8) & 255;
  r.blue = w & 255;
  return r;
}

Rgbi Over(const Rgbi& src, const Rgbi& dst) {
  const u32 k = 256u - src.alpha;
  Rgbi r;
  r.Set((((k * dst.Low()) >> 8) + src.Low()) & 0xFF00FF,
        (((k * dst.High()) >> 8) + src.High()) & 0xFF00FF);
  return r;
}

void Premultiply(Rgbi& c) {
  const u32 k = c.alpha + 1u;
  c.red = static_cast<u16>((c.red * k) >> 8);
  c.green = static_cast<u16>((c.green * k) >> 8);
  c.blue = static_cast<u16>((c.blue * k) >> 8);
}

Srgb Lerp(Srgb a, Srgb b, i32 t) {
  if (t <= 0) return a;
  if (t >= 0x10000) return b;
  auto mix = [t](u8 p, u8 q) { return static_cast<u8>(Lerp(i32{p}, i32{q}, t)); };
  return {mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue), mix(a.alpha, b.alpha)};
}

Rgbi Lerp(const Rgbi& a, const Rgbi& b, i32 t) {
  auto mix = [t](u16 p, u16 q) { return static_cast<u16>(Lerp(i32{p}, i32{q}, t)); };
  Rgbi r;
  r.red = mix(a.red, b.red);
  r.green = mix(a.green, b.green);
  r.blue = mix(a.blue, b.blue);
  r.alpha = mix(a.alpha, b.alpha);
  return r;
}

static i32 Clip(i32 r) {
  if ((r & 0xFF00) == 0) return r;
  return r > 0 ? 255 : 0;
}
static i32 ApplyChannel(i32 v, i32 mul, i32 add) {
  return Clip(((v * mul) >> 8) + add);
}
static i32 ApplyChannelB(i32 v, i32 add) {
  return Clip(v + add);
}

void ColorTransform::CalcFlags() {
  flags = 0;
  if (aa != 256 || ra != 256 || ga != 256 || ba != 256) flags |= 1;
  if (ab != 0 || rb != 0 || gb != 0 || bb != 0) flags |= 2;
}

void ColorTransform::ConcatWith(const ColorTransform& o) {
  if (o.flags == 0) return;
  if (flags == 0) {
    *this = o;
    return;
  }
  auto mix = [](i16& mul, i16& add, i16 omul, i16 oadd) {
    add = static_cast<i16>(add + ((i32{mul} * oadd) >> 8));
    mul = static_cast<i16>((i32{mul} * omul) >> 8);
  };
  mix(aa, ab, o.aa, o.ab);
  mix(ra, rb, o.ra, o.rb);
  mix(ga, gb, o.ga, o.gb);
  mix(ba, bb, o.ba, o.bb);
  CalcFlags();
}

void ColorTransform::Apply(Rgbi& c) const {
  if (flags == 0) return;
  if (flags & 1) {
    c.alpha = static_cast<u16>(ApplyChannel(c.alpha, aa, ab));
    c.red = static_cast<u16>(ApplyChannel(c.red, ra, rb));
    c.green = static_cast<u16>(ApplyChannel(c.green, ga, gb));
    c.blue = static_cast<u16>(ApplyChannel(c.blue, ba, bb));
  } else {
    c.alpha = static_cast<u16>(ApplyChannelB(c.alpha, ab));
    c.red = static_cast<u16>(ApplyChannelB(c.red, rb));
    c.green = static_cast<u16>(ApplyChannelB(c.green, gb));
    c.blue = static_cast<u16>(ApplyChannelB(c.blue, bb));
  }
}

void ColorTransform::Apply(Ramp& ramp) const {
  if (flags == 0) return;
  for (int i = 0; i < ramp.n; ++i) {
    Srgb& c = ramp.color[i];
    c.alpha = static_cast<u8>(ApplyChannel(c.alpha, aa, ab));
    c.red = static_cast<u8>(ApplyChannel(c.red, ra, rb));
    c.green = static_cast<u8>(ApplyChannel(c.green, ga, gb));
    c.blue = static_cast<u8>(ApplyChannel(c.blue, ba, bb));
  }
}

u32 Pix16Expand(u32 v) {
  if (v == 0) return 0;
  if (v == 12 || v == 28) --v;
  return 8 * v + 7;
}

static int RowBytes(int format, int width) {
  switch (format) {
    case 0:
      return ((width + 31) >> 5) * 4;
    case 1:
      return ((width + 15) >> 4) * 4;
    case 2:
      return ((width + 7) >> 3) * 4;
    case 3:
      return (width + 3) & ~3;
    case 4:
      return (2 * width + 3) & ~3;
    case 5:
      return 4 * width;
    default:
      return 0;
  }
}

bool Bitmap::Create(int f, int w, int h, const std::vector<u32>& table) {
  Free();
  transparent = false;
  for (u32 c : table) {
    if ((c >> 24) < 255) transparent = true;
  }
  if (f < 0 || f > 5 || w < 1 || h < 1 || w > 32767 || h > 32767) return false;
  if (i64{w} * h > (i64{1} << 26)) return false;
  format = f;
  width = w;
  height = h;
  rowBytes = RowBytes(f, w);
  if (f < 4) {
    palette.assign(256, 0);
    for (size_t i = 0; i < table.size() && i < 256; ++i) palette[i] = table[i];
  }
  bytes.assign(static_cast<size_t>(rowBytes) * h, 0);
  valid = true;
  return true;
}

void Bitmap::Free() {
  valid = false;
  palette.clear();
  bytes.clear();
}

u32 Bitmap::Raw(int x, int y) const {
  const u8* row = bytes.data() + static_cast<size_t>(rowBytes) * y;
  if (format < 4) {
    const int bits = 1 << format, perByte = 8 / bits;
    const int shift = 8 - bits - (x % perByte) * bits;
    return (row[x / perByte] >> shift) & ((1 << bits) - 1);
  }
  if (format == 4) return row[2 * x] | u32{row[2 * x + 1]} << 8;
  const u8* p = row + 4 * x;
  return p[0] | u32{p[1]} << 8 | u32{p[2]} << 16 | u32{p[3]} << 24;
}

Rgbi Bitmap::GetPixel(i64 x, i64 y) const {
  if (x > width - 1) x = width - 1;
  if (x < 0) x = 0;
  if (y > height - 1) y = height - 1;
  if (y < 0) y = 0;
  const u32 v = Raw(static_cast<int>(x), static_cast<int>(y));
  if (format < 4) return FromWord(palette[v]);
  if (format == 5) return FromWord(v);
  Rgbi r;
  r.alpha = 255;
  r.red = static_cast<u16>(Pix16Expand((v >> 10) & 31));
  r.green = static_cast<u16>(Pix16Expand((v >> 5) & 31));
  r.blue = static_cast<u16>(Pix16Expand(v & 31));
  return r;
}

void Bitmap::SwapBits() {
  if (format < 4) return;
  for (size_t i = 0; i + 4 <= bytes.size(); i += 4) {
    u8* p = bytes.data() + i;
    if (format == 4) {
      std::swap(p[0], p[1]);
      std::swap(p[2], p[3]);
    } else {
      std::swap(p[0], p[3]);
      std::swap(p[1], p[2]);
    }
  }
}

}  // namespace vexel::model
