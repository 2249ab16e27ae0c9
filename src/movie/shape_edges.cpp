// Edge records: a bit stream of pen moves, style changes, lines and curves.
#include "movie/shape_parser.h"

namespace vexel {

namespace {

// What is added to the size field of an edge; that of a move stands as it is.
constexpr int32_t kEdgeSizeBase = 2;

}  // namespace

int32_t SShapeParser::GetEdge(CURVE* out) {
  if (GetBits(1)) {
    out->anchor1 = curPtDev;
    out->isLine = GetBits(1) != 0;
    const int32_t size = static_cast<int32_t>(GetBits(4)) + kEdgeSizeBase;
    if (out->isLine) {
      if (GetBits(1)) {
        curPt.x = WrapAdd(curPt.x, GetSBits(size));
        curPt.y = WrapAdd(curPt.y, GetSBits(size));
      } else if (GetBits(1)) {
        curPt.y = WrapAdd(curPt.y, GetSBits(size));
      } else {
        curPt.x = WrapAdd(curPt.x, GetSBits(size));
      }
      MatrixTransformPoint(&mat, &curPt, &out->anchor2);
      out->control = CurveMidPoint(out->anchor1, out->anchor2);
    } else {
      curPt.x = WrapAdd(curPt.x, GetSBits(size));
      curPt.y = WrapAdd(curPt.y, GetSBits(size));
      MatrixTransformPoint(&mat, &curPt, &out->control);
      curPt.x = WrapAdd(curPt.x, GetSBits(size));
      curPt.y = WrapAdd(curPt.y, GetSBits(size));
      MatrixTransformPoint(&mat, &curPt, &out->anchor2);
    }
    curPtDev = out->anchor2;
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
