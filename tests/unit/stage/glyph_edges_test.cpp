// Glyphs that are copied against glyphs that are read each time.
#include "stage/glyph_edges.h"

#include <random>

#include "movie/script_player.h"
#include "shape_fixture.h"
#include "stage/character_parser.h"

namespace vexel::test {
namespace {

class GlyphCopies : public ShapeFixture {
 protected:
  void SetUp() override {
    object = Place(1, Define(1, charText));
    object->devBounds = {0, 100, 0, 100};
    for (uint32_t order : {0, 1}) {
      RColor* color = stage.NewColor();
      color->SetUp(&stage.raster);
      color->rgb = {};
      color->order = order;
      color->next = object->colors;
      object->colors = color;
    }
  }

  // A font of `count` glyphs drawn with a seeded pen; each `styled` one has
  // style tables of its own in the middle.
  SCharacter* DefineFont(uint16_t id, uint16_t count, int styled) {
    author::Font font;
    for (uint16_t i = 0; i < count; ++i) {
      author::ShapeBuilder outline;
      outline.AddFill(kRed);
      outline.Fill1(1);
      if (i % 3 == 1) outline.Fill0(1);
      const auto point = [&] {
        return author::Point{static_cast<int32_t>(random() % 1400) - 200,
                             static_cast<int32_t>(random() % 1400) - 200};
      };
      for (int path = 0; path < 3; ++path) {
        outline.MoveTo(point());
        for (int k = 0; k < 5; ++k) {
          if (random() % 2) {
            outline.CurveTo(point(), point());
          } else {
            outline.LineTo(point());
          }
        }
        outline.Close();
        if (styled && i % styled == 0 && path == 1) {
          outline.NewStyles();
          outline.Style(outline.AddFill(kBlue));
        }
      }
      author::Glyph glyph;
      glyph.outline = outline.records();
      glyph.fillBits = 2;
      font.glyphs.push_back(glyph);
    }
    author::BitWriter out;
    author::WriteFont(out, font);
    SCharacter* character = DefineBytes(id, charFont, out);
    character->glyphCount = count;
    return character;
  }

  // The plain way.
  void Read(SCharacter* font, uint32_t glyph, const MATRIX* mat, RColor* color) {
    SCharacterParser parser(font->player, font->data.bytes, font->data.length,
                            static_cast<int32_t>(FontOffset(font, glyph)), mat);
    parser.object = object;
    parser.UseGlyphColor(color);
    parser.BuildEdges(false, &object->devBounds);
  }
  RColor* AnyColor() {
    const uint32_t which = random() % 8;
    RColor* color = object->colors;
    while (color->order > 1) color = color->next;
    return which == 0 ? nullptr : which < 4 ? color : color->next;
  }
  void FreeAll() {
    stage.FreeEdges(&object->edges);
    while (object->colors->order > 1 || object->colors->rgb.red != 0) {
      RColor* color = object->colors;
      object->colors = color->next;
      stage.FreeColor(color);
    }
  }
  // Colours that glyphs made are told by their place in the list.
  static void ByOrder(std::vector<PlainEdge>* edges, const SObject* owner) {
    std::vector<const RColor*> colors;
    for (const RColor* c = owner->colors; c; c = c->next) colors.insert(colors.begin(), c);
    const auto number = [&](const RColor* color) {
      const auto at = std::find(colors.begin(), colors.end(), color);
      return reinterpret_cast<RColor*>(at - colors.begin() + 1);
    };
    for (PlainEdge& e : *edges) {
      if (e.color1) e.color1 = number(e.color1);
      if (e.color2) e.color2 = number(e.color2);
    }
  }

  struct Stand {
    uint32_t glyph;
    MATRIX mat;
    RColor* color;
  };
  void ExpectTheSame(SCharacter* font, const std::vector<Stand>& text, int round) {
    for (const Stand& s : text) Read(font, s.glyph, &s.mat, s.color);
    std::vector<PlainEdge> expected = Edges(object->edges);
    ByOrder(&expected, object);
    FreeAll();
    {
      GlyphEdges glyphs(object);
      for (const Stand& s : text) glyphs.Add(font, s.glyph, &s.mat, s.color);
    }
    std::vector<PlainEdge> edges = Edges(object->edges);
    ByOrder(&edges, object);
    FreeAll();
    ASSERT_EQ(edges, expected) << "round " << round;
  }

  std::mt19937 random{5};
  SObject* object = nullptr;
};

TEST_F(GlyphCopies, EqualTheGlyphsReadEachTime) {
  SCharacter* plain = DefineFont(2, 400, 0);
  SCharacter* styled = DefineFont(3, 12, 4);
  for (int round = 0; round < 600; ++round) {
    stage.antialias = round & 1;
    object->devBounds = round % 5 == 0 ? SRECT{-40000, 40000, 0, 100} : SRECT{0, 100, 0, 100};
    MATRIX mat;
    MatrixScale(static_cast<SFIXED>(random() % 0x18000), static_cast<SFIXED>(random() % 0x8000),
                &mat);
    if (random() % 3 == 0) mat.b = static_cast<SFIXED>(random() % 0x20000) - 0x10000;
    if (random() % 3 == 0) mat.c = static_cast<SFIXED>(random() % 0x20000) - 0x10000;
    if (random() % 7 == 0) mat.a *= 30;
    const uint32_t reach = round % 3 == 0 ? 100000 : 2000;
    std::vector<Stand> text;
    for (int i = 0; i < 30; ++i) {
      mat.tx = static_cast<SCOORD>(random() % reach) - static_cast<SCOORD>(reach / 2);
      mat.ty = static_cast<SCOORD>(random() % reach) - static_cast<SCOORD>(reach / 2);
      if (random() % 50 == 0) mat.ty = kInt32Max - static_cast<SCOORD>(random() % 3000);
      if (random() % 50 == 0) mat.tx = kInt32Min;
      if (random() % 20 == 0) mat.d += 1;
      const uint32_t glyph = round % 4 ? random() % 6 : random() % 400;
      text.push_back({glyph, mat, AnyColor()});
    }
    ExpectTheSame(plain, text, round);
    for (Stand& s : text) s.glyph %= 12;
    if (round % 10 == 0) ExpectTheSame(styled, text, round);
    if (HasFatalFailure()) return;
  }
}

TEST_F(GlyphCopies, TheBudgetOfEdgesEndsAtTheSameEdge) {
  SCharacter* font = DefineFont(2, 3, 0);
  MATRIX mat;
  MatrixScale(kFixedOne / 4, kFixedOne / 4, &mat);
  Read(font, 0, &mat, object->colors);
  const auto perGlyph = static_cast<int32_t>(Edges(object->edges).size());
  FreeAll();
  for (int32_t left = 0; left < 3 * perGlyph; ++left) {
    std::vector<Stand> text;
    for (int i = 0; i < 4; ++i) {
      mat.tx = 10 * i;
      text.push_back({0, mat, object->colors});
    }
    stage.edgeCount = kMaxEdges - left;
    ExpectTheSame(font, text, left);
    stage.edgeCount = 0;
    if (HasFatalFailure()) return;
  }
}

TEST_F(GlyphCopies, ReadingIsPaidForAndCopyingIsNot) {
  SCharacter* font = DefineFont(2, 2, 0);
  MATRIX mat;
  MatrixScale(kFixedOne / 4, kFixedOne / 4, &mat);
  GlyphEdges glyphs(object);
  int32_t before = stage.tagsLeft;
  const int32_t cost = glyphs.Add(font, 0, &mat, object->colors);
  EXPECT_EQ(before - stage.tagsLeft, 1 + cost / 4);
  before = stage.tagsLeft;
  mat.tx = 10;
  EXPECT_EQ(glyphs.Add(font, 0, &mat, object->colors), cost);
  EXPECT_EQ(stage.tagsLeft, before);

  stage.tagsLeft = 0;
  const int32_t edges = stage.edgeCount;
  EXPECT_GT(glyphs.Add(font, 1, &mat, object->colors), 0);
  EXPECT_EQ(stage.edgeCount, edges);
  glyphs.Add(font, 0, &mat, object->colors);
  EXPECT_EQ(stage.edgeCount, edges / 2 * 3) << "a copy costs nothing";
}

TEST_F(GlyphCopies, OffsetsAreOfEitherWidthAndMayLieAnywhere) {
  SCharacter* font = Define(4, charFont);
  font->data = CopyBytes({0x34, 0x12, 0x78, 0x56, 0xFF});
  EXPECT_EQ(FontOffset(font, 0), 0x1234u);
  EXPECT_EQ(FontOffset(font, 1), 0x5678u);
  EXPECT_EQ(FontOffset(font, 2), 0xFFu);
  EXPECT_EQ(FontOffset(font, 3), 0u);
  EXPECT_EQ(FontOffset(font, 0xFFFFFFFF), 0u);
  font->fontFlags = author::kFontWideOffsets;
  EXPECT_EQ(FontOffset(font, 0), 0x56781234u);
  EXPECT_EQ(FontOffset(font, 1), 0xFFu);
}

}  // namespace
}  // namespace vexel::test
