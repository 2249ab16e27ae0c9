#include "author/text.h"

#include <gtest/gtest.h>

#include "reader.h"

namespace vexel::author {
namespace {

TEST(StaticText, ARunStandsInFileOrder) {
  StaticText text;
  TextRun run;
  run.font = 0x0102;
  run.height = 0x0304;
  run.color = Color{1, 2, 3, 4};
  run.x = -2;
  run.y = 5;
  run.glyphs = {{3, 10}, {0, -1}};
  text.runs = {run};
  BitWriter out;
  WriteStaticText(out, text, true);
  Reader in(out.bytes());
  EXPECT_EQ(in.U8(), 0u);  // the matrix
  EXPECT_EQ(in.U8(), 2u);
  EXPECT_EQ(in.U8(), 5u);
  EXPECT_EQ(in.U8(), 0x0Fu);
  EXPECT_EQ(in.U16(), 0x0102u);
  for (uint32_t c : {1u, 2u, 3u, 4u}) EXPECT_EQ(in.U8(), c);
  EXPECT_EQ(in.S16(), -2);
  EXPECT_EQ(in.S16(), 5);
  EXPECT_EQ(in.U16(), 0x0304u);
  EXPECT_EQ(in.U8(), 2u);
  EXPECT_EQ(in.Bits(2), 3u);
  EXPECT_EQ(in.SBits(5), 10);
  EXPECT_EQ(in.Bits(2), 0u);
  EXPECT_EQ(in.SBits(5), -1);
  EXPECT_EQ(in.U8(), 0u);
  EXPECT_TRUE(in.done());
}

TEST(StaticText, ARunWithoutPartsStillHasFlags) {
  StaticText text;
  text.runs.resize(1);
  text.runs[0].glyphs = {{1, 1}};
  BitWriter out;
  WriteStaticText(out, text, false);
  EXPECT_EQ(out.bytes()[3], 0x80);
}

TEST(StaticText, WidthsFlagsAndCountCanBeForced) {
  StaticText text;
  text.glyphBits = 12;
  text.advanceBits = 20;
  text.runs.resize(1);
  text.runs[0].flags = 0x41;
  text.runs[0].count = 0;
  text.runs[0].glyphs = {{1, 1}};
  BitWriter out;
  WriteStaticText(out, text, false);
  EXPECT_EQ((Bytes{out.bytes().begin() + 1, out.bytes().begin() + 7}),
            (Bytes{12, 20, 0x41, 0, 0, 0}));
  EXPECT_EQ(out.size(), 12u);
}

TEST(StaticText, ColoursWithoutAlphaHaveThreeBytes) {
  StaticText text;
  text.runs.resize(1);
  text.runs[0].color = Color{1, 2, 3, 4};
  BitWriter out;
  WriteStaticText(out, text, false);
  EXPECT_EQ(out.bytes(), (Bytes{0, 0, 0, 4, 1, 2, 3, 0, 0}));
}

TEST(StaticText, MadeRunsScaleAdvancesAndLeaveOutWhatTheFontLacks) {
  const Font font = BlockFont("Blocks");
  const TextRun run = MakeRun(font, 7, 512, "A~B");
  ASSERT_EQ(run.glyphs.size(), 2u);
  EXPECT_EQ(run.glyphs[0].advance, 300);
  EXPECT_EQ(font.glyphs[run.glyphs[1].index].code, 'B');
  EXPECT_EQ(*run.font, 7);
}

TEST(EditText, PartsSetTheirFlagsAndStandInFileOrder) {
  EditTextField field;
  field.flags = kEditMultiline | kEditOutlines;
  field.font = 9;
  field.height = 240;
  field.color = Color{1, 2, 3, 4};
  field.maxLength = 77;
  field.layout = EditTextLayout{2, 10, 20, 30, -5};
  field.variable = "v";
  field.initialText = "hi";
  BitWriter out;
  WriteEditText(out, field);
  Reader in(out.bytes());
  EXPECT_EQ(in.U16(), 0x2000u | 0x0100 | 0x0080 | 0x0020 | 0x0004 | 0x0002 | 0x0001);
  EXPECT_EQ(in.U16(), 9u);
  EXPECT_EQ(in.U16(), 240u);
  for (uint32_t c : {1u, 2u, 3u, 4u}) EXPECT_EQ(in.U8(), c);
  EXPECT_EQ(in.U16(), 77u);
  EXPECT_EQ(in.U8(), 2u);
  EXPECT_EQ(in.U16(), 10u);
  EXPECT_EQ(in.U16(), 20u);
  EXPECT_EQ(in.U16(), 30u);
  EXPECT_EQ(in.S16(), -5);
  EXPECT_EQ(in.Text(), "v");
  EXPECT_EQ(in.Text(), "hi");
  EXPECT_TRUE(in.done());
}

TEST(EditText, ABareFieldIsFlagsAndName) {
  BitWriter out;
  WriteEditText(out, {});
  EXPECT_EQ(out.bytes(), (Bytes{0, 0, 0}));
}

}  // namespace
}  // namespace vexel::author
