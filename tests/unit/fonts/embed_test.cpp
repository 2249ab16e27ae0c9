#include "author/fonts/embed.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "author/font_list.h"
#include "author/fonts/specimen.h"
#include "support/small_font.h"

namespace vexel::author {
namespace {

using test::SmallFont;
using test::SquareContour;

SmallFont Sample() {
  SmallFont font;
  font.unitsPerEm = 1024;  // so that the numbers stay
  font.glyphs = {{' ', 250},
                 {'A', 600, {SquareContour(100, 0, 400, 700)}},
                 {'B', 500, {SquareContour(0, -100, 300, 300)}},
                 {0x416, 900, {SquareContour(10, 0, 20, 30)}}};
  return font;
}

std::vector<WantedGlyph> Wanted(std::initializer_list<uint32_t> characters) {
  std::vector<WantedGlyph> wanted;
  for (uint32_t character : characters)
    wanted.push_back({character, static_cast<uint16_t>(character)});
  return wanted;
}

int Edges(const Glyph& glyph) {
  int edges = 0;
  for (const ShapeRecord& record : glyph.outline) edges += record.kind != RecordKind::kChange;
  return edges;
}

Rect BoundsOf(const Glyph& glyph) {
  ShapeBuilder shape;
  for (const ShapeRecord& record : glyph.outline) shape.Record(record);
  return shape.Bounds();
}

TEST(Embed, GlyphsComeInAscendingCodesAndOnce) {
  const FontFile file(test::TrueTypeFile(Sample()));
  const Embedded made = EmbedFont(file, Wanted({'B', ' ', 'A', 'B'}));
  ASSERT_EQ(made.font.glyphs.size(), 3u);
  EXPECT_EQ(made.font.glyphs[0].code, ' ');
  EXPECT_EQ(made.font.glyphs[1].code, 'A');
  EXPECT_EQ(made.font.glyphs[2].code, 'B');
  EXPECT_EQ(made.font.glyphs[1].advance, 600);
  EXPECT_TRUE(made.font.glyphs[0].outline.empty());
  EXPECT_TRUE(made.missing.empty());
  EXPECT_EQ(made.font.name, "Small");
  EXPECT_EQ(made.font.flags, kFontAnsi | kFontHasLayout);
}

TEST(Embed, OutlinesSelectFillOneWithTheBaselineAtZero) {
  const FontFile file(test::TrueTypeFile(Sample()));
  const Embedded made = EmbedFont(file, Wanted({'B'}));
  const Glyph& glyph = made.font.glyphs[0];
  ASSERT_FALSE(glyph.outline.empty());
  EXPECT_TRUE(glyph.outline[0].flags & kChangeFill1);
  EXPECT_EQ(glyph.outline[0].fill1, 1u);
  EXPECT_EQ(BoundsOf(glyph), (Rect{0, 300, -200, 100}));
  EXPECT_EQ(Edges(glyph), 4);
}

TEST(Embed, MissingCharactersAreLeftOutAndTold) {
  const FontFile file(test::TrueTypeFile(Sample()));
  const Embedded made = EmbedFont(file, Wanted({'C', 'A', 'D'}));
  EXPECT_EQ(made.font.glyphs.size(), 1u);
  EXPECT_EQ(made.missing, (std::vector<uint32_t>{'C', 'D'}));
}

TEST(Embed, KeptMissingCharactersAreAsWideAsTheBlank) {
  const FontFile file(test::TrueTypeFile(Sample()));
  EmbedOptions options;
  options.keepMissing = true;
  const Embedded made = EmbedFont(file, Wanted({'A', 'C'}), options);
  ASSERT_EQ(made.font.glyphs.size(), 2u);
  EXPECT_EQ(made.font.glyphs[1].advance, 250);
  EXPECT_TRUE(made.font.glyphs[1].outline.empty());
  EXPECT_EQ(made.missing, (std::vector<uint32_t>{'C'}));
}

TEST(Embed, CodesAboveAByteMakeAllCodesWide) {
  const FontFile file(test::TrueTypeFile(Sample()));
  const Embedded made = EmbedFont(file, Wanted({'A', 0x416}));
  EXPECT_TRUE(made.font.flags & kFontWideCodes);
  BitWriter out;
  EXPECT_NO_THROW(WriteFont2(out, made.font));
}

TEST(Embed, ManyOutlinesMakeTheOffsetsWide) {
  SmallFont font;
  font.unitsPerEm = 1024;
  std::vector<WantedGlyph> wanted;
  for (uint32_t character = 'A'; character < 'A' + 120; ++character) {
    test::SmallGlyph glyph{character, 500};
    for (int i = 0; i < 100; ++i) glyph.contours.push_back(SquareContour(i * 17, i * 13, 7, 9));
    font.glyphs.push_back(glyph);
    wanted.push_back({character, static_cast<uint16_t>(character)});
  }
  const FontFile file(test::TrueTypeFile(font));
  const Embedded few = EmbedFont(file, std::span(wanted).first(20));
  EXPECT_FALSE(few.font.flags & kFontWideOffsets);
  const Embedded many = EmbedFont(file, wanted);
  EXPECT_TRUE(many.font.flags & kFontWideOffsets);
  BitWriter out;
  EXPECT_NO_THROW(WriteFont2(out, many.font));
}

TEST(Embed, OverlappingContoursBecomeOne) {
  SmallFont font;
  font.unitsPerEm = 1024;
  font.glyphs = {{'x', 500, {SquareContour(0, 0, 300, 100), SquareContour(100, -100, 100, 300)}}};
  const FontFile file(test::TrueTypeFile(font));
  const Embedded made = EmbedFont(file, Wanted({'x'}));
  EXPECT_EQ(made.holed, 0u);
  // A cross has twelve sides; toggled, its middle would be a hole.
  EXPECT_EQ(Edges(made.font.glyphs[0]), 12);
  EXPECT_EQ(BoundsOf(made.font.glyphs[0]), (Rect{0, 300, -200, 100}));
}

TEST(Embed, AHoleStaysAHole) {
  SmallFont font;
  font.unitsPerEm = 1024;
  test::FontContour hole = SquareContour(100, 100, 100, 100);
  std::reverse(hole.begin(), hole.end());
  font.glyphs = {{'o', 500, {SquareContour(0, 0, 300, 300), hole}}};
  const FontFile file(test::TrueTypeFile(font));
  EXPECT_EQ(Edges(EmbedFont(file, Wanted({'o'})).font.glyphs[0]), 8);
}

TEST(Embed, CubicsBecomeQuadraticsWithinTheTolerance) {
  constexpr int kRadius = 400;
  SmallFont font;
  font.unitsPerEm = 1024;
  font.glyphs = {{'o', 900, {test::CubicCircle(450, 300, kRadius)}}};
  const FontFile file(test::OpenTypeFile(font));
  const Embedded made = EmbedFont(file, Wanted({'o'}));
  Point pen;
  int curves = 0;
  for (const ShapeRecord& record : made.font.glyphs[0].outline) {
    if (record.kind == RecordKind::kChange) {
      if (record.flags & kChangeMove) pen = record.move;
      continue;
    }
    ASSERT_EQ(record.kind, RecordKind::kCurve);
    ++curves;
    const Point control = pen + record.control, end = control + record.anchor;
    for (double t = 0; t <= 1; t += 1.0 / 16) {
      const double u = 1 - t;
      const double x = u * u * pen.x + 2 * u * t * control.x + t * t * end.x;
      const double y = u * u * pen.y + 2 * u * t * control.y + t * t * end.y;
      // The cubic itself is off the circle by a thousandth of a quarter, the
      // tolerance is a quarter unit, and rounding moves a point by 0.71.
      EXPECT_NEAR(std::hypot(x - 450, y + 300), kRadius, 0.11 + 0.25 + 0.71);
    }
    pen = end;
  }
  EXPECT_GE(curves, 8);
}

TEST(Embed, BoundsAndKerningStandBehindTheAdvances) {
  SmallFont font = Sample();
  font.kerning = {{2, 3, -40}, {3, 2, 15}, {3, 4, -90}};
  const FontFile file(test::TrueTypeFile(font));
  const Embedded made = EmbedFont(file, Wanted({'A', 'B'}));
  const KerningPair pairs[] = {{'A', 'B', -40}, {'B', 'A', 15}};
  EXPECT_EQ(made.font.behind, BoundsAndKerning(made.font, pairs));
}

TEST(Embed, PairsThatMoveLeastGoFirstWhenThereIsNoRoom) {
  SmallFont font = Sample();
  font.kerning = {{2, 2, -5}, {2, 3, -40}, {3, 2, 50}};
  const FontFile file(test::TrueTypeFile(font));
  EmbedOptions options;
  options.maxBehind = EmbedFont(file, Wanted({'A', 'B'})).font.behind.size() - 1;
  const Embedded made = EmbedFont(file, Wanted({'A', 'B'}), options);
  const KerningPair pairs[] = {{'A', 'B', -40}, {'B', 'A', 50}};
  EXPECT_EQ(made.font.behind, BoundsAndKerning(made.font, pairs));
}

TEST(Embed, AGlyphOfAbsurdSizeIsRefused) {
  SmallFont font;
  font.unitsPerEm = 16;
  font.glyphs = {{'x', 20, {SquareContour(0, 0, 30000, 10)}}};
  const FontFile file(test::TrueTypeFile(font));
  EXPECT_THROW(EmbedFont(file, Wanted({'x'})), FontError);
}

TEST(Specimen, ShowsEveryGlyphAndCarriesTheFont) {
  const FontFile file(test::TrueTypeFile(Sample()));
  const Embedded made = EmbedFont(file, Wanted({' ', 'A', 'B', 0x416}));
  const Bytes movie = SpecimenMovie(made.font);
  std::vector<ListedFont> fonts;
  ASSERT_TRUE(ListFonts(movie, &fonts));
  ASSERT_EQ(fonts.size(), 1u);
  EXPECT_TRUE(fonts[0].exact);
  EXPECT_EQ(fonts[0].id, 1);
  EXPECT_EQ(fonts[0].font.glyphs.size(), 4u);
  EXPECT_EQ(fonts[0].font.behind, made.font.behind);
  EXPECT_EQ(fonts[0].BlankAdvance(), 250);
}

TEST(Specimen, AFontOfManyGlyphsEndsWhereTheBaselinesDo) {
  Font font;
  font.flags = kFontWideCodes | kFontHasLayout;
  font.ascent = 1000;
  for (int i = 0; i < 5000; ++i) font.glyphs.push_back({static_cast<uint16_t>(i + 32), 1000, {}});
  std::vector<ListedFont> fonts;
  EXPECT_TRUE(ListFonts(SpecimenMovie(font), &fonts));
}

}  // namespace
}  // namespace vexel::author
