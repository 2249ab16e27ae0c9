// The shared records. Each states its widths in a field in front of the values,
// so the smallest width that holds them all is looked for first.
#include "author/records.h"

#include <algorithm>
#include <array>

namespace vexel::author {

namespace {

int WidthOr(int forced, int needed) {
  return forced == kAuto ? needed : forced;
}

void WritePair(BitWriter& out, int forcedBits, int32_t first, int32_t second) {
  const std::array<int32_t, 2> values = {first, second};
  const int bits = WidthOr(forcedBits, SignedWidth(values));
  out.Bits(static_cast<uint32_t>(bits), 5);
  for (int32_t value : values) out.SBits(value, bits);
}

}  // namespace

void WriteRect(BitWriter& out, const Rect& rect, int forcedBits) {
  const std::array<int32_t, 4> values = {rect.xmin, rect.xmax, rect.ymin, rect.ymax};
  const int bits = WidthOr(forcedBits, SignedWidth(values));
  out.Align();
  out.Bits(static_cast<uint32_t>(bits), 5);
  for (int32_t value : values) out.SBits(value, bits);
  out.Align();
}

void WriteMatrix(BitWriter& out, const Matrix& matrix, const MatrixForm& form) {
  const bool scale = form.scale == kAuto ? matrix.a != kOne || matrix.d != kOne : form.scale != 0;
  const bool rotate = form.rotate == kAuto ? matrix.b != 0 || matrix.c != 0 : form.rotate != 0;
  out.Align();
  out.Bits(scale, 1);
  if (scale) WritePair(out, form.scaleBits, matrix.a, matrix.d);
  out.Bits(rotate, 1);
  if (rotate) WritePair(out, form.rotateBits, matrix.b, matrix.c);
  WritePair(out, form.translateBits, matrix.tx, matrix.ty);
  out.Align();
}

void WriteCxform(BitWriter& out, const Cxform& cxform, bool alpha, const CxformForm& form) {
  const std::array<int32_t, 4> muls = {cxform.redMul, cxform.greenMul, cxform.blueMul,
                                       cxform.alphaMul};
  const std::array<int32_t, 4> adds = {cxform.redAdd, cxform.greenAdd, cxform.blueAdd,
                                       cxform.alphaAdd};
  const size_t channels = alpha ? 4 : 3;
  int flags = form.flags;
  if (flags == kAuto) {
    flags = 0;
    for (size_t i = 0; i < channels; ++i) {
      if (muls[i] != 256) flags |= 1;
      if (adds[i] != 0) flags |= 2;
    }
  }
  int needed = 0;
  for (size_t i = 0; i < channels; ++i) {
    if (flags & 1) needed = std::max(needed, SignedWidth(muls[i]));
    if (flags & 2) needed = std::max(needed, SignedWidth(adds[i]));
  }
  const int bits = WidthOr(form.bits, needed);
  out.Align();
  out.Bits(static_cast<uint32_t>(flags), 2);
  out.Bits(static_cast<uint32_t>(bits), 4);
  for (size_t i = 0; (flags & 1) && i < channels; ++i) out.SBits(muls[i], bits);
  for (size_t i = 0; (flags & 2) && i < channels; ++i) out.SBits(adds[i], bits);
  out.Align();
}

void WriteColor(BitWriter& out, Color color, bool alpha) {
  out.U8(color.red);
  out.U8(color.green);
  out.U8(color.blue);
  if (alpha) out.U8(color.alpha);
}

}  // namespace vexel::author
