#include "author/morph_builder.h"

#include <gtest/gtest.h>

#include "reader.h"

namespace vexel::author {
namespace {

TEST(MorphBuilder, StylesComeInPairs) {
  MorphBuilder morph;
  morph.AddFill({1, 2, 3, 4}, {5, 6, 7, 8});
  morph.AddLine({10, 20, {9, 9, 9, 9}, {8, 8, 8, 8}});
  BitWriter out;
  morph.Write(out);
  Reader in(out.bytes());
  const uint32_t offset = in.U32();
  EXPECT_EQ(in.U8(), 1u);
  EXPECT_EQ(in.U8(), 0u);
  for (uint32_t byte = 1; byte <= 8; ++byte) EXPECT_EQ(in.U8(), byte);
  EXPECT_EQ(in.U8(), 1u);
  EXPECT_EQ(in.U16(), 10u);
  EXPECT_EQ(in.U16(), 20u);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(in.U8(), 9u);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(in.U8(), 8u);
  EXPECT_EQ(in.U8(), 0x11u);  // widths of the start edges
  EXPECT_EQ(in.U8(), 0u);
  EXPECT_EQ(in.pos(), 4 + offset);
  EXPECT_EQ(in.U8(), 0u);
  EXPECT_EQ(in.U8(), 0u);
  EXPECT_TRUE(in.done());
}

TEST(MorphBuilder, GradientAndBitmapPairsStandInFileOrder) {
  MorphBuilder morph;
  MorphFill gradient;
  gradient.type = kFillLinear;
  gradient.stops = {{1, {2, 3, 4, 5}, 6, {7, 8, 9, 10}}};
  morph.AddFill(gradient);
  MorphFill bitmap;
  bitmap.type = kFillBitmapTiled;
  bitmap.bitmap = 0x0B0A;
  morph.AddFill(bitmap);
  BitWriter out;
  morph.Write(out);
  Reader in(out.bytes(), 4);
  const Bytes want = {2, 0x10, 0, 0, 1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0x40, 0x0A, 0x0B, 0, 0, 0};
  for (uint8_t byte : want) EXPECT_EQ(in.U8(), byte);
}

TEST(MorphBuilder, TheEndHalfCarriesMovesAndEdgesOnly) {
  MorphBuilder morph;
  morph.Style(morph.AddFill({}, {}))
      .MoveTo({0, 0}, {3, 3})
      .LineTo({8, 0}, {11, 3})
      .CurveTo({8, 4}, {8, 8}, {12, 8}, {11, 11});
  BitWriter out;
  morph.Write(out);
  Reader head(out.bytes());
  Reader in(out.bytes(), 4 + head.U32());
  EXPECT_EQ(in.Bits(8), 0u);
  EXPECT_EQ(in.Bits(6), 1u);
  EXPECT_EQ(in.Bits(5), 3u);
  EXPECT_EQ(in.SBits(3), 3);
  EXPECT_EQ(in.SBits(3), 3);
  EXPECT_EQ(in.Bits(6), 0b110011u);
  EXPECT_EQ(in.Bits(2), 0u);
  EXPECT_EQ(in.SBits(5), 8);
  EXPECT_EQ(in.Bits(2), 0b10u);
  EXPECT_EQ(morph.StartBounds(), (Rect{0, 8, 0, 8}));
  EXPECT_EQ(morph.EndBounds(), (Rect{3, 12, 3, 11}));
}

TEST(MorphBuilder, TheEndHalfCanBeCutShort) {
  MorphBuilder morph;
  morph.MoveTo({0, 0}, {0, 0}).LineTo({8, 0}, {8, 0}).LineTo({8, 8}, {8, 8});
  BitWriter whole;
  morph.Write(whole);
  morph.endRecordsMissing = 2;
  BitWriter cut;
  morph.Write(cut);
  EXPECT_LT(cut.size(), whole.size());
  morph.endRecordsMissing = 99;
  BitWriter empty;
  EXPECT_NO_THROW(morph.Write(empty));
}

TEST(MorphBuilder, CountsCanBeForcedLong) {
  MorphBuilder morph;
  morph.longFillCount = morph.longLineCount = true;
  BitWriter out;
  morph.Write(out);
  EXPECT_EQ((Bytes{out.bytes().begin() + 4, out.bytes().begin() + 10}),
            (Bytes{255, 0, 0, 255, 0, 0}));
}

TEST(MorphBuilder, BoundsGrowByEachEndsOwnLine) {
  MorphBuilder morph;
  morph.Style(0, morph.AddLine({20, 60, {}, {}})).MoveTo({0, 0}, {0, 0}).LineTo({100, 0}, {0, 50});
  EXPECT_EQ(morph.StartBounds(), (Rect{-10, 110, -10, 10}));
  EXPECT_EQ(morph.EndBounds(), (Rect{-30, 30, -30, 80}));
}

}  // namespace
}  // namespace vexel::author
