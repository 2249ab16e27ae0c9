// Static texts become the outlines of their glyphs.
#include "shape_fixture.h"
#include "stage/text_edges.h"

namespace vexel::test {
namespace {

using author::StaticText;
using author::TextRun;

class TextEdges : public ShapeFixture {
 protected:
  // Glyph i is a square as wide as the design square and (i + 1) / 4 as high.
  SCharacter* DefineFont(uint16_t id, bool wide = false) {
    author::Font font;
    for (uint16_t i = 0; i < 3; ++i) {
      author::Glyph glyph;
      glyph.code = static_cast<uint16_t>('a' + i);
      author::ShapeBuilder outline;
      outline.AddFill(kRed);
      outline.Fill1(1).Rectangle({0, 1024, 0, 256 * (i + 1)});
      glyph.outline = outline.records();
      font.glyphs.push_back(glyph);
    }
    author::BitWriter out;
    if (!wide) {
      author::WriteFont(out, font);
      return DefineBytes(id, charFont, out);
    }
    author::BitWriter shapes;
    author::WriteFont(shapes, font);
    const author::Bytes bytes = shapes.Take();
    for (uint32_t i = 0; i < 3; ++i)
      out.U32(static_cast<uint32_t>(bytes[2 * i] | bytes[2 * i + 1] << 8) + 6);
    out.Append(std::span(bytes).subspan(6));
    SCharacter* character = DefineBytes(id, charFont, out);
    character->fontFlags = author::kFontWideOffsets;
    return character;
  }

  SObject* PlaceText(const StaticText& text, bool alpha = false) {
    author::BitWriter out;
    author::WriteStaticText(out, text, alpha);
    SCharacter* character = DefineBytes(100, charText, out);
    character->tagCode = alpha ? 33 : 11;
    return Place(1, character);
  }

  static TextRun Run(std::vector<author::GlyphEntry> glyphs) {
    TextRun run;
    run.font = 7;
    run.height = 1024;
    run.color = kRed;
    run.glyphs = std::move(glyphs);
    return run;
  }
};

TEST_F(TextEdges, GlyphsStandSideBySideAndWind) {
  DefineFont(7);
  StaticText text;
  text.runs = {Run({{0, 2000}, {2, 100}})};
  SObject* object = PlaceText(text);
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_EQ(edges.size(), 4u);
  EXPECT_EQ(BoundsOf(edges).xmax, 2000 + 1024);
  EXPECT_EQ(edges[0].y2, 256);
  EXPECT_EQ(edges[2].y2, 768);
  for (const PlainEdge& e : edges) {
    EXPECT_EQ(e.rule, ruleWinding);
    EXPECT_EQ(e.color1, Color(object, 0));
  }
}

TEST_F(TextEdges, ARunOfZeroGlyphsStillReadsOne) {
  DefineFont(7);
  StaticText text;
  text.runs = {Run({{1, 500}})};
  text.runs[0].count = 0;
  const std::vector<PlainEdge> edges = Build(PlaceText(text));
  ASSERT_EQ(edges.size(), 2u);
  EXPECT_EQ(edges[0].y2, 512);
}

TEST_F(TextEdges, HeightAndPlaceGoWithTheMatrix) {
  DefineFont(7);
  StaticText text;
  text.matrix.tx = 10;
  text.runs = {Run({{0, 0}})};
  text.runs[0].height = 512;
  text.runs[0].x = -100;
  text.runs[0].y = 40;
  MATRIX mat;
  MatrixScale(2 * kFixedOne, 2 * kFixedOne, &mat);
  const SRECT r = BoundsOf(Build(PlaceText(text), &mat));
  EXPECT_EQ(r.xmin, -180);
  EXPECT_EQ(r.xmax, -180 + 1024);
  EXPECT_EQ(r.ymin, 80);
  EXPECT_EQ(r.ymax, 80 + 256);
}

TEST_F(TextEdges, AMissingFontMovesThePenOnly) {
  DefineFont(7);
  DefineRect(8, {0, 10, 0, 10});
  for (uint16_t id : {8, 999}) {
    StaticText text;
    text.runs = {Run({{0, 300}}), Run({{0, 0}})};
    text.runs[0].font = id;
    SObject* object = PlaceText(text);
    const std::vector<PlainEdge> edges = Build(object);
    ASSERT_EQ(edges.size(), 2u) << id;
    EXPECT_EQ(BoundsOf(edges).xmin, 300);
    stage.RemoveObject(object);
    player.FreeCharacter(100);
  }
}

TEST_F(TextEdges, ColoursAreLayersAndLastOverRuns) {
  DefineFont(7);
  StaticText text;
  text.runs = {Run({{0, 0}}), Run({{0, 0}}), Run({{0, 0}})};
  text.runs[0].color = author::Color{200, 100, 50, 127};
  text.runs[1].color.reset();
  text.runs[2].color = kBlue;
  SObject* object = PlaceText(text, true);
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_EQ(edges.size(), 6u);
  RColor* first = Color(object, 0);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(edges[0].color1, first);
  EXPECT_EQ(edges[2].color1, first);
  EXPECT_EQ(edges[4].color1, Color(object, 1));
  EXPECT_TRUE(first->transparent);
  EXPECT_EQ(first->rgb.red, 100) << "200 * 128 / 256";
  EXPECT_EQ(first->rgb.alpha, 127);
  EXPECT_FALSE(Color(object, 1)->transparent);
}

TEST_F(TextEdges, TheTransformIsAppliedBeforePremultiplying) {
  DefineFont(7);
  StaticText text;
  text.runs = {Run({{0, 0}})};
  SObject* object = PlaceText(text);
  STransform t;
  MatrixIdentity(&t.mat);
  t.cxform.Clear();
  t.cxform.aa = 128;
  t.cxform.CalcFlags();
  object->BuildEdges(&t);
  EXPECT_EQ(object->colors->rgb.alpha, 127);
  EXPECT_EQ(object->colors->rgb.red, 127);
  EXPECT_TRUE(object->colors->transparent);
}

TEST_F(TextEdges, AMaskHasOneColourForAllGlyphs) {
  DefineFont(7);
  StaticText text;
  text.runs = {Run({{0, 0}}), Run({{1, 0}})};
  SObject* object = PlaceText(text);
  object->clipDepth = 4;
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_EQ(Colors(object).size(), 1u);
  EXPECT_EQ(object->colors->colorType, colorClip);
  for (const PlainEdge& e : edges) EXPECT_EQ(e.color1, object->colors);
}

TEST_F(TextEdges, WithoutAColourTheTextEndsAndKeepsWhatIsBuilt) {
  DefineFont(7);
  StaticText text;
  text.runs = {Run({{0, 0}}), Run({{1, 0}})};
  SObject* object = PlaceText(text);
  stage.colorCount += kMaxStageColors - 1;
  EXPECT_EQ(Build(object).size(), 2u);
  stage.colorCount -= kMaxStageColors - 1;
}

TEST_F(TextEdges, OffsetsMayBeWide) {
  DefineFont(7, true);
  StaticText text;
  text.runs = {Run({{2, 0}})};
  const std::vector<PlainEdge> edges = Build(PlaceText(text));
  ASSERT_EQ(edges.size(), 2u);
  EXPECT_EQ(edges[0].y2, 768);
}

TEST_F(TextEdges, CutShortAnywhereItEnds) {
  SCharacter* font = DefineFont(7);
  StaticText text;
  text.runs = {Run({{0, 10}, {65, 7}}), Run({{1, 0}})};
  SObject* object = PlaceText(text);
  const int32_t whole = object->character->data.length;
  for (int32_t length = whole; length >= 0; --length) {
    object->character->data.length = length;
    Build(object);
  }
  object->character->data.length = whole;
  for (; font->data.length >= 0; --font->data.length) Build(object);
  font->data.length = 0;
}

TEST_F(TextEdges, EndlessRunsOfALongGlyphAreCutShort) {
  author::BitWriter glyph;
  glyph.U16(2);
  glyph.Bits(0x00, 8);
  // Moves of no size: 11 bits each, and no edge.
  for (int i = 0; i < 100000; ++i) {
    glyph.Bits(0x01, 6);
    glyph.Bits(0, 5);
  }
  DefineBytes(7, charFont, glyph);
  author::BitWriter out;
  out.U8(0);
  out.U8(0);
  out.U8(0);
  for (int i = 0; i < 2000; ++i) {
    out.U8(i == 0 ? author::kRunFont : 0x80);
    if (i == 0) {
      out.U16(7);
      out.U16(20);
    }
    out.U8(255);
  }
  SObject* object = Place(1, DefineBytes(100, charText, out));
  EXPECT_TRUE(Build(object).empty());
}

}  // namespace
}  // namespace vexel::test
