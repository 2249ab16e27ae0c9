// Edge records read through a window give what reading field by field gives.
#include <gtest/gtest.h>

#include <random>

#include "author/writer.h"
#include "movie/shape_parser.h"

namespace vexel::test {
namespace {

// Field by field, as the records are laid out.
int32_t PlainGetEdge(SParser* in, SShapeParser* pen, CURVE* out) {
  if (in->GetBits(1) == 0) {
    const int32_t flags = static_cast<int32_t>(in->GetBits(5));
    if (flags & kEdgeMove) {
      const int32_t size = static_cast<int32_t>(in->GetBits(5));
      pen->curPt.x = in->GetSBits(size);
      pen->curPt.y = in->GetSBits(size);
      MatrixTransformPoint(&pen->mat, &pen->curPt, &pen->curPtDev);
    }
    if (flags & kEdgeFill0) in->GetBits(pen->nFillBits);
    if (flags & kEdgeFill1) in->GetBits(pen->nFillBits);
    if (flags & kEdgeLine) in->GetBits(pen->nLineBits);
    return flags == 0 ? kEndOfShape : flags;
  }
  out->anchor1 = pen->curPtDev;
  out->isLine = in->GetBits(1) != 0;
  const int32_t size = static_cast<int32_t>(in->GetBits(4)) + 2;
  const auto advance = [&](bool x, bool y) {
    if (x) pen->curPt.x = WrapAdd(pen->curPt.x, in->GetSBits(size));
    if (y) pen->curPt.y = WrapAdd(pen->curPt.y, in->GetSBits(size));
    MatrixTransformPoint(&pen->mat, &pen->curPt, &pen->curPtDev);
  };
  if (!out->isLine) {
    advance(true, true);
    out->control = pen->curPtDev;
    advance(true, true);
  } else if (in->GetBits(1)) {
    advance(true, true);
  } else {
    const bool vertical = in->GetBits(1) != 0;
    advance(!vertical, vertical);
  }
  out->anchor2 = pen->curPtDev;
  if (out->isLine) out->control = CurveMidPoint(out->anchor1, out->anchor2);
  return kEdgeRecord;
}

TEST(ShapeEdgesTwin, RandomBitsReadTheSameToTheLastByte) {
  std::mt19937 random(21);
  for (int round = 0; round < 3000; ++round) {
    uint8_t data[200];
    const int32_t size = static_cast<int32_t>(random() % sizeof data) + 1;
    for (int32_t i = 0; i < size; ++i) data[i] = static_cast<uint8_t>(random() | random() % 256);
    const MATRIX mat = {0x12345, round % 2 ? 0x777 : 0, round % 2 ? -0x999 : 0, -0x23456, 5, 6};
    SShapeParser parser(nullptr, data, size, 0, &mat);
    SShapeParser pen(nullptr, data, size, 0, &mat);
    SParser in(data, size);
    parser.nFillBits = pen.nFillBits = static_cast<int32_t>(random() % 16);
    parser.nLineBits = pen.nLineBits = static_cast<int32_t>(random() % 16);
    for (;;) {
      // New tables are another matter.
      SParser ahead = in;
      if (ahead.GetBits(1) == 0 && (ahead.GetBits(5) & kEdgeNewStyles)) break;
      CURVE curve = {}, plain = {};
      const int32_t record = parser.GetEdge(&curve);
      ASSERT_EQ(record, PlainGetEdge(&in, &pen, &plain)) << round;
      ASSERT_EQ(parser.pos, in.pos);
      ASSERT_EQ(parser.bitPos, in.bitPos);
      ASSERT_EQ(parser.bitBuf, in.bitBuf);
      if (record == kEndOfShape) break;
      if (record != kEdgeRecord) continue;
      ASSERT_EQ(curve.anchor1, plain.anchor1) << round;
      ASSERT_EQ(curve.control, plain.control);
      ASSERT_EQ(curve.anchor2, plain.anchor2);
      ASSERT_EQ(curve.isLine, plain.isLine);
      ASSERT_EQ(parser.curPt, pen.curPt);
    }
  }
}

}  // namespace
}  // namespace vexel::test
