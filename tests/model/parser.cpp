// Bit and byte reading over movie data.
#include "parser.h"

namespace vexel::model {

u8 Parser::At(i64 p) const {
  return p >= 0 && p < Size() ? (*script)[static_cast<size_t>(p)] : 0;
}

void Parser::InitBits() {
  bitPos = 0;
  bitBuf = 0;
}

// Bit by bit: the unread bits of the present byte are the low bitPos of bitBuf.
u32 Parser::GetBits(int n) {
  u32 v = 0;
  while (n-- > 0) {
    if (bitPos == 0) {
      bitBuf = At(pos++);
      bitPos = 8;
    }
    --bitPos;
    v = v << 1 | ((bitBuf >> bitPos) & 1);
  }
  return v;
}

i32 Parser::GetSBits(int n) {
  if (n == 0) return 0;
  u32 v = GetBits(n);
  if (n < 32 && (v >> (n - 1)) & 1) v |= ~0u << n;
  return static_cast<i32>(v);
}

u32 Parser::GetByte() {
  return At(pos++);
}
u32 Parser::GetWord() {
  const u32 low = GetByte();
  return low | GetByte() << 8;
}
u32 Parser::GetDWord() {
  const u32 low = GetWord();
  return low | GetWord() << 16;
}

Rgbi Parser::GetRgbi(bool alpha) {
  Rgbi c;
  c.red = static_cast<u16>(GetByte());
  c.green = static_cast<u16>(GetByte());
  c.blue = static_cast<u16>(GetByte());
  c.alpha = alpha ? static_cast<u16>(GetByte()) : 255;
  return c;
}

Srgb Parser::GetSrgb(bool alpha) {
  Srgb c;
  c.red = static_cast<u8>(GetByte());
  c.green = static_cast<u8>(GetByte());
  c.blue = static_cast<u8>(GetByte());
  c.alpha = alpha ? static_cast<u8>(GetByte()) : 255;
  return c;
}

Rect Parser::GetRect() {
  InitBits();
  const int n = static_cast<int>(GetBits(5));
  Rect r;
  r.xmin = GetSBits(n);
  r.xmax = GetSBits(n);
  r.ymin = GetSBits(n);
  r.ymax = GetSBits(n);
  return r;
}

Matrix Parser::GetMatrix() {
  InitBits();
  Matrix m;
  if (GetBits(1)) {
    const int n = static_cast<int>(GetBits(5));
    m.a = GetSBits(n);
    m.d = GetSBits(n);
  }
  if (GetBits(1)) {
    const int n = static_cast<int>(GetBits(5));
    m.b = GetSBits(n);
    m.c = GetSBits(n);
  }
  const int n = static_cast<int>(GetBits(5));
  m.tx = GetSBits(n);
  m.ty = GetSBits(n);
  return m;
}

ColorTransform Parser::GetColorTransform(bool alpha) {
  InitBits();
  ColorTransform t;
  t.flags = GetBits(2);
  const int n = static_cast<int>(GetBits(4));
  if (t.flags & 1) {
    t.ra = static_cast<i16>(GetSBits(n));
    t.ga = static_cast<i16>(GetSBits(n));
    t.ba = static_cast<i16>(GetSBits(n));
    if (alpha) t.aa = static_cast<i16>(GetSBits(n));
  }
  if (t.flags & 2) {
    t.rb = static_cast<i16>(GetSBits(n));
    t.gb = static_cast<i16>(GetSBits(n));
    t.bb = static_cast<i16>(GetSBits(n));
    if (alpha) t.ab = static_cast<i16>(GetSBits(n));
  }
  return t;
}

int Parser::GetTag(i64 limit) {
  tagPos = pos;
  if (limit - pos < 2) return -1;
  const u32 word = GetWord();
  i64 length = word & 63;
  if (length == 63) {
    if (limit - pos < 4) {
      pos = tagPos;
      return -1;
    }
    length = GetDWord();
  }
  if (pos + length > limit) {
    pos = tagPos;
    return -1;
  }
  tagEnd = pos + length;
  tagCode = static_cast<int>(word >> 6);
  return tagCode;
}

Bytes Slice(const Bytes& b, i64 start, i64 end) {
  const i64 size = b ? static_cast<i64>(b->size()) : 0;
  if (end > size) end = size;
  if (start < 0) start = 0;
  if (start > end) start = end;
  return std::make_shared<const std::vector<u8>>(
      b ? b->begin() + start : std::vector<u8>::const_iterator(),
      b ? b->begin() + end : std::vector<u8>::const_iterator());
}

}  // namespace vexel::model
