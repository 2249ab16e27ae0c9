// Edge records.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

#include "author/writer.h"
#include "movie/shape_parser.h"
#include "raster/rcolor.h"
#include "support/test_player.h"

namespace vexel {
namespace {

using author::BitWriter;
using author::Bytes;
using author::LineForm;
using author::ShapeRecord;

constexpr MATRIX kIdentity = {0x10000, 0, 0, 0x10000, 0, 0};

// Reads bare edge records, as those of a glyph with index widths of 4 bits.
class ShapeEdges : public ::testing::Test {
 protected:
  void Records(const std::vector<ShapeRecord>& records) {
    BitWriter out;
    author::WriteEdges(out, records, 4, 4);
    bytes = out.Take();
  }
  // `matrix` maps to device units.
  std::unique_ptr<SShapeParser> Parser(const MATRIX& matrix = kIdentity) {
    auto parser = std::make_unique<SShapeParser>(nullptr, bytes.data(),
                                                 static_cast<int32_t>(bytes.size()), 0, &matrix);
    parser->InitBits();
    parser->nFillBits = static_cast<int32_t>(parser->GetBits(4));
    parser->nLineBits = static_cast<int32_t>(parser->GetBits(4));
    return parser;
  }

  Bytes bytes;
  CURVE edge = {};
};

TEST_F(ShapeEdges, StraightEdgeIsADegenerateCurve) {
  Records({ShapeRecord::Move({10, 20}), ShapeRecord::LineBy({7, -4})});
  auto parser = Parser();
  EXPECT_EQ(parser->GetEdge(&edge), kEdgeMove);
  EXPECT_EQ(parser->GetEdge(&edge), kEdgeRecord);
  EXPECT_TRUE(edge.isLine);
  EXPECT_EQ(edge.anchor1.x, 10);
  EXPECT_EQ(edge.anchor1.y, 20);
  EXPECT_EQ(edge.anchor2.x, 17);
  EXPECT_EQ(edge.anchor2.y, 16);
  EXPECT_EQ(edge.control.x, 13);
  EXPECT_EQ(edge.control.y, 18);
  EXPECT_EQ(parser->GetEdge(&edge), kEndOfShape);
}

TEST_F(ShapeEdges, MidpointIsRoundedDown) {
  Records({ShapeRecord::LineBy({-7, -5})});
  auto parser = Parser();
  parser->GetEdge(&edge);
  EXPECT_EQ(edge.control.x, -4);
  EXPECT_EQ(edge.control.y, -3);
}

TEST_F(ShapeEdges, AxisEdgesHaveOneDelta) {
  for (int delta : {-30, 5}) {
    ShapeRecord down = ShapeRecord::LineBy({0, delta});
    down.lineForm = LineForm::kVertical;
    ShapeRecord right = ShapeRecord::LineBy({delta, 0});
    right.lineForm = LineForm::kHorizontal;
    ShapeRecord both = ShapeRecord::LineBy({delta, 0});
    both.lineForm = LineForm::kBoth;
    Records({down, right, both});
    auto parser = Parser();
    parser->GetEdge(&edge);
    EXPECT_EQ(edge.anchor2.x, 0);
    EXPECT_EQ(edge.anchor2.y, delta);
    parser->GetEdge(&edge);
    EXPECT_EQ(edge.anchor2.x, delta);
    parser->GetEdge(&edge);
    EXPECT_EQ(edge.anchor2.x, 2 * delta);
    EXPECT_EQ(edge.anchor2.y, delta);
  }
}

TEST_F(ShapeEdges, CurveAnchorIsRelativeToItsControl) {
  Records({ShapeRecord::Move({100, 100}), ShapeRecord::CurveBy({10, 20}, {-5, 30})});
  auto parser = Parser();
  parser->GetEdge(&edge);
  EXPECT_EQ(parser->GetEdge(&edge), kEdgeRecord);
  EXPECT_FALSE(edge.isLine);
  EXPECT_EQ(edge.control.x, 110);
  EXPECT_EQ(edge.control.y, 120);
  EXPECT_EQ(edge.anchor2.x, 105);
  EXPECT_EQ(edge.anchor2.y, 150);
  EXPECT_EQ(parser->curPt.x, 105);
}

TEST_F(ShapeEdges, EdgeSizesAddTwoAndMoveSizesDoNot) {
  BitWriter out;
  out.Bits(0x44, 8);  // index widths
  out.Bits(0b000001, 6);
  out.Bits(3, 5);  // a move of 3 bits
  out.SBits(-4, 3);
  out.SBits(3, 3);
  out.Bits(0b11, 2);
  out.Bits(1, 4);  // an edge of 1 + 2 bits
  out.Bits(1, 1);
  out.SBits(-4, 3);
  out.SBits(3, 3);
  out.Bits(0, 6);
  bytes = out.Take();
  auto parser = Parser();
  EXPECT_EQ(parser->GetEdge(&edge), kEdgeMove);
  EXPECT_EQ(parser->curPt.x, -4);
  EXPECT_EQ(parser->curPt.y, 3);
  EXPECT_EQ(parser->GetEdge(&edge), kEdgeRecord);
  EXPECT_EQ(parser->curPt.x, -8);
  EXPECT_EQ(parser->curPt.y, 6);
  EXPECT_EQ(parser->GetEdge(&edge), kEndOfShape);
}

TEST_F(ShapeEdges, MovesAreAbsoluteAndEdgesRelative) {
  Records({ShapeRecord::Move({50, 60}), ShapeRecord::LineBy({1, 1}), ShapeRecord::Move({5, 6}),
           ShapeRecord::LineBy({1, 1})});
  auto parser = Parser();
  parser->GetEdge(&edge);
  parser->GetEdge(&edge);
  EXPECT_EQ(edge.anchor2.x, 51);
  parser->GetEdge(&edge);
  EXPECT_EQ(parser->curPtDev.x, 5);
  parser->GetEdge(&edge);
  EXPECT_EQ(edge.anchor1.y, 6);
  EXPECT_EQ(edge.anchor2.y, 7);
}

TEST_F(ShapeEdges, SelectionsKeepTheirNumbersUntilChanged) {
  ShapeRecord first;
  first.flags = author::kChangeFill0 | author::kChangeFill1 | author::kChangeLine;
  first.fill0 = 3;
  first.fill1 = 15;
  first.line = 2;
  ShapeRecord second;
  second.flags = author::kChangeFill1;
  second.fill1 = 1;
  Records({first, second});
  auto parser = Parser();
  EXPECT_EQ(parser->GetEdge(&edge), kEdgeFill0 | kEdgeFill1 | kEdgeLine);
  EXPECT_EQ(parser->GetEdge(&edge), kEdgeFill1);
  EXPECT_EQ(parser->fill0, 3);
  EXPECT_EQ(parser->fill1, 1);
  EXPECT_EQ(parser->line, 2);
}

TEST_F(ShapeEdges, PointsGoThroughTheMatrixOneByOne) {
  const MATRIX matrix = {0x8000, 0x4000, -0x2000, 0x18000, 30, -40};
  Records({ShapeRecord::Move({11, 23}), ShapeRecord::LineBy({5, 9}),
           ShapeRecord::CurveBy({3, 3}, {7, -1})});
  auto parser = Parser(matrix);
  EXPECT_EQ(parser->curPtDev.x, 30);
  EXPECT_EQ(parser->curPtDev.y, -40);
  parser->GetEdge(&edge);
  parser->GetEdge(&edge);
  SPOINT expected = {16, 32};
  MatrixTransformPoint(&matrix, &expected, &expected);
  EXPECT_EQ(edge.anchor2.x, expected.x);
  EXPECT_EQ(edge.anchor2.y, expected.y);
  parser->GetEdge(&edge);
  EXPECT_EQ(edge.anchor1.x, expected.x);
  expected = {26, 34};
  MatrixTransformPoint(&matrix, &expected, &expected);
  EXPECT_EQ(edge.anchor2.x, expected.x);
  EXPECT_EQ(edge.anchor2.y, expected.y);
}

TEST_F(ShapeEdges, DataThatEndsEarlyReadsAsTheEnd) {
  Records({ShapeRecord::Move({50, 60}), ShapeRecord::LineBy({1000, 1}),
           ShapeRecord::LineBy({1000, 1}), ShapeRecord::LineBy({1000, 1})});
  const Bytes whole = bytes;
  for (size_t size = 0; size < whole.size(); ++size) {
    bytes.assign(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(size));
    auto parser = Parser();
    int records = 0;
    while (parser->GetEdge(&edge) != kEndOfShape) ASSERT_LT(++records, 10);
  }
}

TEST_F(ShapeEdges, PenWrapsAround) {
  std::vector<ShapeRecord> records = {ShapeRecord::Move({0x3FFFFFFF, -0x40000000})};
  for (int i = 0; i < 40000; ++i) records.push_back(ShapeRecord::LineBy({65535, -65536}));
  Records(records);
  auto parser = Parser();
  while (parser->GetEdge(&edge) != kEndOfShape) {
  }
  EXPECT_EQ(parser->curPt.x, WrapAdd(0x3FFFFFFF, WrapMul(40000, 65535)));
}

TEST_F(ShapeEdges, RandomBytesEndAndStayInside) {
  std::mt19937 random(9);
  for (int round = 0; round < 300; ++round) {
    test::TestPlayer player(10, 10);
    bytes.resize(random() % 200);
    for (uint8_t& b : bytes) b = static_cast<uint8_t>(random());
    SShapeParser parser(&player, bytes.data(), static_cast<int32_t>(bytes.size()), 0, &kIdentity);
    if (!parser.GetStyles()) continue;
    int records = 0;
    while (parser.GetEdge(&edge) != kEndOfShape) ASSERT_LT(++records, 2000);
  }
}

}  // namespace
}  // namespace vexel
