#include "author/fonts/font_file.h"

#include <gtest/gtest.h>

#include "support/small_font.h"

namespace vexel::author {
namespace {

using test::SmallFont;

SmallFont Sample() {
  SmallFont font;
  font.glyphs = {{' ', 250}, {'A', 600, {test::SquareContour(100, 0, 400, 700)}}};
  return font;
}

TEST(FontFile, MeasuresAreBroughtToTheSquareOf1024) {
  const FontFile file(test::TrueTypeFile(Sample()));
  EXPECT_EQ(file.family(), "Small");
  EXPECT_EQ(file.ascent(), 819);                    // 800 * 1.024 = 819.2
  EXPECT_EQ(file.descent(), 205);                   // 204.8
  EXPECT_EQ(file.leading(), 92);                    // 92.16
  EXPECT_EQ(file.Advance(file.GlyphOf('A')), 614);  // 614.4
  EXPECT_EQ(file.Advance(file.GlyphOf(' ')), 256);
}

TEST(FontFile, HalvesGoUpward) {
  SmallFont font = Sample();
  font.unitsPerEm = 2048;
  font.glyphs = {{'a', 1229}, {'b', 1227}};
  font.kerning = {{1, 2, -113}};
  const FontFile file(test::TrueTypeFile(font));
  EXPECT_EQ(file.Advance(file.GlyphOf('a')), 615);
  EXPECT_EQ(file.Advance(file.GlyphOf('b')), 614);
  EXPECT_EQ(file.Kerning(file.GlyphOf('a'), file.GlyphOf('b')), -56);
  EXPECT_EQ(file.Kerning(file.GlyphOf('b'), file.GlyphOf('a')), 0);
}

TEST(FontFile, TheStyleIsTold) {
  SmallFont font = Sample();
  EXPECT_FALSE(FontFile(test::TrueTypeFile(font)).bold());
  EXPECT_FALSE(FontFile(test::TrueTypeFile(font)).italic());
  font.bold = font.italic = true;
  EXPECT_TRUE(FontFile(test::TrueTypeFile(font)).bold());
  EXPECT_TRUE(FontFile(test::TrueTypeFile(font)).italic());
}

TEST(FontFile, OutlinesAreClosedAndUpsideDown) {
  const FontFile file(test::TrueTypeFile(Sample()));
  const VectorPath path = file.Outline(file.GlyphOf('A'));
  ASSERT_EQ(path.commands.size(), 6u);  // a move, four sides, close
  EXPECT_EQ(path.commands.back().op, PathOp::kClose);
  const Box box = path.Bounds();
  EXPECT_DOUBLE_EQ(box.xmin, 102.4);
  EXPECT_DOUBLE_EQ(box.xmax, 512);
  EXPECT_DOUBLE_EQ(box.ymin, -716.8);
  EXPECT_DOUBLE_EQ(box.ymax, 0);
  EXPECT_TRUE(file.Outline(file.GlyphOf(' ')).IsEmpty());
}

TEST(FontFile, OpenTypeOutlinesAreCubics) {
  SmallFont font;
  font.glyphs = {{'o', 700, {test::CubicCircle(300, 300, 250)}}};
  const FontFile file(test::OpenTypeFile(font));
  const VectorPath path = file.Outline(file.GlyphOf('o'));
  int cubics = 0;
  for (const PathCommand& command : path.commands) cubics += command.op == PathOp::kCubic;
  EXPECT_EQ(cubics, 4);
  EXPECT_NEAR(path.Bounds().Width(), 512, 1e-9);
}

TEST(FontFile, ACharacterThatIsNotThereIsGlyphZero) {
  const FontFile file(test::TrueTypeFile(Sample()));
  EXPECT_EQ(file.GlyphOf('B'), 0u);
  EXPECT_EQ(file.GlyphOf('A'), 2u);
}

TEST(FontFile, WhatIsNoFontIsRefused) {
  EXPECT_THROW(FontFile(Bytes{}), FontError);
  EXPECT_THROW(FontFile(Bytes(100, 'x')), FontError);
  Bytes cut = test::TrueTypeFile(Sample());
  cut.resize(40);
  EXPECT_THROW(FontFile{cut}, FontError);
}

TEST(FontFile, AGlyphOfMorePointsThanItHoldsIsDamaged) {
  Bytes bytes = test::TrueTypeFile(Sample());
  // The last glyph stands last: 10 bytes of head, the contour's last point, ...
  constexpr size_t kGlyph = 36, kLastPoint = 10;
  bytes[bytes.size() - kGlyph + kLastPoint] = 0x70;
  const FontFile file(bytes);
  EXPECT_THROW(file.Outline(file.GlyphOf('A')), FontError);
  EXPECT_THROW(file.Advance(file.GlyphOf('A')), FontError);
}

TEST(FontFile, AGlyphMayBeMadeOfOthers) {
  SmallFont font = Sample();
  font.glyphs.push_back({'B', 600, {}, {2, 1}});
  const FontFile file(test::TrueTypeFile(font));
  EXPECT_EQ(file.Outline(file.GlyphOf('B')).commands.size(), 6u);
}

TEST(FontFile, AGlyphMadeOfTheOneBeforeTwiceManyTimesOverIsRefused) {
  SmallFont font;
  font.glyphs = {{'A', 500}};
  for (uint16_t i = 1; i < 60; ++i) font.glyphs.push_back({uint32_t{'A'} + i, 500, {}, {i, i}});
  const FontFile file(test::TrueTypeFile(font));
  EXPECT_NO_THROW(file.Outline(file.GlyphOf('A' + 5)));
  EXPECT_THROW(file.Outline(file.GlyphOf('A' + 59)), FontError);
  EXPECT_THROW(file.Outline(file.GlyphOf('A' + 12)), FontError);
}

TEST(FontFile, AGlyphMadeOfItselfIsRefused) {
  SmallFont font = Sample();
  font.glyphs.push_back({'B', 600, {}, {3}});
  const FontFile file(test::TrueTypeFile(font));
  EXPECT_THROW(file.Outline(file.GlyphOf('B')), FontError);
}

TEST(FontFile, AFileThatIsNotThereSaysSo) {
  EXPECT_THROW(ReadFontFile("/none/none.ttf"), FontError);
}

}  // namespace
}  // namespace vexel::author
