#include "author/shape.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

#include "reader.h"

namespace vexel::author {
namespace {

Bytes Edges(const std::vector<ShapeRecord>& records, int fillBits = 0, int lineBits = 0) {
  BitWriter out;
  WriteEdges(out, records, fillBits, lineBits);
  return out.Take();
}

TEST(Shape, StyleTablesStandInFileOrder) {
  StyleTables styles;
  styles.fills.push_back(FillStyle::Solid({1, 2, 3, 4}));
  styles.lines.push_back({0x0102, {5, 6, 7, 8}});
  BitWriter out;
  WriteStyleTables(out, styles, true);
  EXPECT_EQ(out.bytes(), (Bytes{1, 0, 1, 2, 3, 4, 1, 0x02, 0x01, 5, 6, 7, 8}));
  BitWriter opaque;
  WriteStyleTables(opaque, styles, false);
  EXPECT_EQ(opaque.bytes(), (Bytes{1, 0, 1, 2, 3, 1, 0x02, 0x01, 5, 6, 7}));
}

TEST(Shape, AGradientIsMatrixCountAndStops) {
  StyleTables styles;
  styles.fills.push_back(FillStyle::Radial({}, {{0, {9, 8, 7}}, {255, {1, 1, 1}}}));
  BitWriter out;
  WriteStyleTables(out, styles, false);
  EXPECT_EQ(out.bytes(), (Bytes{1, 0x12, 0, 2, 0, 9, 8, 7, 255, 1, 1, 1, 0}));
}

TEST(Shape, ABitmapFillIsIdAndMatrix) {
  StyleTables styles;
  styles.fills.push_back(FillStyle::Bitmap(0x1234, {}, false));
  styles.fills.push_back(FillStyle::Bitmap(7, {}, true));
  BitWriter out;
  WriteStyleTables(out, styles, false);
  EXPECT_EQ(out.bytes(), (Bytes{2, 0x40, 0x34, 0x12, 0, 0x41, 7, 0, 0, 0}));
}

TEST(Shape, CountsTurnLongAt255OrWhenForced) {
  StyleTables styles;
  styles.fills.resize(254);
  BitWriter out;
  WriteStyleTables(out, styles, false);
  EXPECT_EQ(out.bytes()[0], 254);
  styles.fills.resize(255);
  out.Take();
  WriteStyleTables(out, styles, false);
  EXPECT_EQ((Bytes{out.bytes().begin(), out.bytes().begin() + 3}), (Bytes{255, 255, 0}));
  styles.fills.resize(3);
  styles.longFillCount = styles.longLineCount = true;
  out.Take();
  WriteStyleTables(out, styles, false);
  EXPECT_EQ((Bytes{out.bytes().begin(), out.bytes().begin() + 3}), (Bytes{255, 3, 0}));
  EXPECT_EQ((Bytes{out.bytes().end() - 3, out.bytes().end()}), (Bytes{255, 0, 0}));
}

TEST(Shape, AnEmptyShapeIsWidthsAndEnd) {
  EXPECT_EQ(Edges({}, 3, 2), (Bytes{0x32, 0x00}));
}

TEST(Shape, AMoveStatesItsOwnWidthAndAnEdgeItsWidthLessTwo) {
  Reader in(Edges({ShapeRecord::Move({5, -3}), ShapeRecord::LineBy({20, -7}),
                   ShapeRecord::CurveBy({1, 0}, {0, 1})}));
  in.Bits(8);
  EXPECT_EQ(in.Bits(6), 1u);  // a style change, move alone
  EXPECT_EQ(in.Bits(5), 4u);
  EXPECT_EQ(in.SBits(4), 5);
  EXPECT_EQ(in.SBits(4), -3);
  EXPECT_EQ(in.Bits(2), 3u);
  EXPECT_EQ(in.Bits(4), 4u);  // 6 bits
  EXPECT_EQ(in.Bits(1), 1u);
  EXPECT_EQ(in.SBits(6), 20);
  EXPECT_EQ(in.SBits(6), -7);
  EXPECT_EQ(in.Bits(2), 2u);
  EXPECT_EQ(in.Bits(4), 0u);  // 2 bits, the least
  EXPECT_EQ(in.SBits(2), 1);
  EXPECT_EQ(in.SBits(2), 0);
  EXPECT_EQ(in.SBits(2), 0);
  EXPECT_EQ(in.SBits(2), 1);
  EXPECT_EQ(in.Bits(6), 0u);
}

TEST(Shape, EdgesAlongAnAxisLeaveTheOtherDeltaOut) {
  Reader in(Edges({ShapeRecord::LineBy({0, 9}), ShapeRecord::LineBy({9, 0})}));
  in.Bits(8);
  EXPECT_EQ(in.Bits(6), 0b110011u);
  EXPECT_EQ(in.Bits(2), 0b01u);
  EXPECT_EQ(in.SBits(5), 9);
  EXPECT_EQ(in.Bits(6), 0b110011u);
  EXPECT_EQ(in.Bits(2), 0b00u);
  EXPECT_EQ(in.SBits(5), 9);
}

TEST(Shape, FormsAndWidthsOfEdgesCanBeForced) {
  ShapeRecord line = ShapeRecord::LineBy({0, 1});
  line.lineForm = LineForm::kBoth;
  line.bits = 17;
  Reader in(Edges({line}));
  in.Bits(8);
  EXPECT_EQ(in.Bits(6), 0b111111u);
  EXPECT_EQ(in.Bits(1), 1u);
  EXPECT_EQ(in.SBits(17), 0);
  EXPECT_EQ(in.SBits(17), 1);
  line = ShapeRecord::LineBy({1, 1});
  line.lineForm = LineForm::kVertical;
  EXPECT_THROW(Edges({line}), std::range_error);
  line = ShapeRecord::LineBy({65536, 0});
  EXPECT_THROW(Edges({line}), std::range_error);
}

TEST(Shape, ASelectionStandsInTheIndexWidths) {
  ShapeRecord change;
  change.flags = kChangeFill0 | kChangeFill1 | kChangeLine;
  change.fill0 = 5;
  change.fill1 = 2;
  change.line = 1;
  Reader in(Edges({change}, 3, 4));
  in.Bits(8);
  EXPECT_EQ(in.Bits(6), 0x0Eu);
  EXPECT_EQ(in.Bits(3), 5u);
  EXPECT_EQ(in.Bits(3), 2u);
  EXPECT_EQ(in.Bits(4), 1u);
}

TEST(Shape, NewTablesBeginOnAByteAndChangeTheWidths) {
  ShapeRecord change;
  change.flags = kChangeStyles;
  change.styles.fills.resize(4);
  ShapeRecord select;
  select.flags = kChangeFill1;
  select.fill1 = 4;
  BitWriter out;
  WriteEdges(out, {change, select}, 1, 0, false);
  Reader in(out.bytes());
  in.Bits(8);
  EXPECT_EQ(in.Bits(6), 0x10u);
  EXPECT_EQ(in.U8(), 4u);
  in.Skip(16);
  EXPECT_EQ(in.U8(), 0u);
  EXPECT_EQ(in.Bits(8), 0x30u);
  EXPECT_EQ(in.Bits(6), 0x04u);
  EXPECT_EQ(in.Bits(3), 4u);
}

TEST(Shape, AStyleChangeWithoutFlagsIsRefused) {
  EXPECT_THROW(Edges({ShapeRecord{}}), std::range_error);
}

TEST(Shape, WidthsFollowTheTablesUnlessForced) {
  StyleTables styles;
  styles.fills.resize(8);
  styles.lines.resize(1);
  EXPECT_EQ(FillBits(styles), 4);
  EXPECT_EQ(LineBits(styles), 1);
  styles.fillBits = 9;
  EXPECT_EQ(FillBits(styles), 9);
}

}  // namespace
}  // namespace vexel::author
