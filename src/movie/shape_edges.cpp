// Edge records: a bit stream of pen moves, style changes, lines and curves.
#include "movie/shape_parser.h"

namespace vexel {

namespace {

// What is added to the size field of an edge; that of a move stands as it is.
constexpr int32_t kEdgeSizeBase = 2;

// An edge record takes 74 bits at most. Wherever 16 bytes remain it is read
// through a window of 64 bits instead of field by field, which is most of the
// time that shapes take to parse.
constexpr int32_t kWindowBytes = 16;

// The 64 bits at `bit`, counted from the start of the data; the lowest 7 may be
// missing.
uint64_t WindowAt(const uint8_t* data, int64_t bit) {
  return BigEndian64(data + (bit >> 3)) << (bit & 7);
}

// The signed field of `size` bits that begins `skip` bits into the window.
int32_t Field(uint64_t window, int32_t skip, int32_t size) {
  return static_cast<int32_t>(static_cast<int64_t>(window << skip) >> (64 - size));
}

}  // namespace

inline void SShapeParser::GetLineEdge(CURVE* out, const SPOINT& delta) {
  out->anchor1 = curPtDev;
  curPt = curPt + delta;
  MatrixTransformPoint(&mat, &curPt, &curPtDev);
  out->control = CurveMidPoint(out->anchor1, curPtDev);
  out->anchor2 = curPtDev;
  out->isLine = true;
}

inline void SShapeParser::GetCurveEdge(CURVE* out, const SPOINT& control, const SPOINT& anchor) {
  out->anchor1 = curPtDev;
  curPt = curPt + control;
  MatrixTransformPoint(&mat, &curPt, &out->control);
  curPt = curPt + anchor;
  MatrixTransformPoint(&mat, &curPt, &curPtDev);
  out->anchor2 = curPtDev;
  out->isLine = false;
}

inline bool SShapeParser::GetEdgeThroughWindow(CURVE* out) {
  int64_t bit = int64_t{pos} * 8 - bitPos;
  if ((bit >> 3) > dataEnd - kWindowBytes) return false;
  const uint64_t window = WindowAt(script, bit);
  if (!(window >> 63)) return false;
  const int32_t size = static_cast<int32_t>(window >> 58 & 15) + kEdgeSizeBase;
  if (!(window >> 62 & 1)) {
    bit += 6;
    const uint64_t rest = WindowAt(script, bit + 2 * size);
    GetCurveEdge(out, {Field(window, 6, size), Field(window, 6 + size, size)},
                 {Field(rest, 0, size), Field(rest, size, size)});
    bit += 4 * size;
  } else if (window >> 57 & 1) {
    GetLineEdge(out, {Field(window, 7, size), Field(window, 7 + size, size)});
    bit += 7 + 2 * size;
  } else {
    const int32_t delta = Field(window, 8, size);
    const bool vertical = window >> 56 & 1;
    GetLineEdge(out, vertical ? SPOINT{0, delta} : SPOINT{delta, 0});
    bit += 8 + size;
  }
  pos = static_cast<int32_t>((bit + 7) >> 3);
  bitPos = static_cast<int32_t>(-bit & 7);
  bitBuf = script[pos - 1] & ((1u << bitPos) - 1);
  return true;
}

int32_t SShapeParser::GetEdge(CURVE* out) {
  if (GetEdgeThroughWindow(out)) return kEdgeRecord;
  if (GetBits(1)) {
    const bool isLine = GetBits(1) != 0;
    const int32_t size = static_cast<int32_t>(GetBits(4)) + kEdgeSizeBase;
    if (!isLine) {
      SPOINT control, anchor;
      control.x = GetSBits(size);
      control.y = GetSBits(size);
      anchor.x = GetSBits(size);
      anchor.y = GetSBits(size);
      GetCurveEdge(out, control, anchor);
      return kEdgeRecord;
    }
    SPOINT delta = {0, 0};
    const bool both = GetBits(1) != 0;
    const bool vertical = !both && GetBits(1) != 0;
    if (!vertical) delta.x = GetSBits(size);
    if (both || vertical) delta.y = GetSBits(size);
    GetLineEdge(out, delta);
    return kEdgeRecord;
  }

  const int32_t flags = static_cast<int32_t>(GetBits(5));
  if (flags == 0) return kEndOfShape;
  if (flags & kEdgeMove) {
    const int32_t size = static_cast<int32_t>(GetBits(5));
    curPt.x = GetSBits(size);
    curPt.y = GetSBits(size);
    MatrixTransformPoint(&mat, &curPt, &curPtDev);
  }
  if (flags & kEdgeFill0) fill0 = static_cast<int32_t>(GetBits(nFillBits));
  if (flags & kEdgeFill1) fill1 = static_cast<int32_t>(GetBits(nFillBits));
  if (flags & kEdgeLine) line = static_cast<int32_t>(GetBits(nLineBits));
  if (flags & kEdgeNewStyles) {
    // Colours of later tables sort above those of earlier ones, which stay on
    // the list. A table that finds no memory ends the shape.
    layer = WrapAdd(layer, WrapAdd(nLines, nFills));
    if (!GetStyles()) return kEndOfShape;
  }
  return flags;
}

}  // namespace vexel
