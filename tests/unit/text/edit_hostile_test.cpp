// Records and fonts that lie. Nothing is promised of the picture, only that it
// ends, within memory and time, and leaves the stage whole.
#include <random>

#include "draw_fixture.h"

namespace vexel::test {
namespace {

class EditHostile : public DrawFixture {
 protected:
  // Draws with everything that reads what a Draw leaves.
  void Exercise() {
    Focus();
    for (bool smooth : {false, true}) {
      player->display.antialias = smooth;
      STransform t;
      MatrixIdentity(&t.mat);
      t.cxform.Clear();
      object->FreeCache();
      object->BuildEdges(&t);
      text->CalcMaxVScroll();
      SPOINT pixel = {3, 3};
      text->DoMouse(&pixel, true);
      object->DrawEditText(&t);
    }
  }
};

TEST_F(EditHostile, FontsCutShortAnywhere) {
  Place(Field(author::kEditBorder));
  text->SetBuffer("abc ABC*-\rxyz");
  SCharacter* font = player->FindCharacter(kBoxFont);
  const int32_t whole = font->data.length;
  for (int32_t length = whole; length >= 0; --length) {
    font->data.length = length;
    Exercise();
  }
}

TEST_F(EditHostile, FontsOfRandomBytes) {
  std::mt19937 random(7);
  for (int round = 0; round < 3000; ++round) {
    if (round % 50 == 0) {
      Reset();
      Place(Field(round % 100 ? author::kEditBorder : author::kEditWordWrap));
      text->SetBuffer("abc ABC*-\rxyz defghijkl\nmn");
    }
    SCharacter* font = player->FindCharacter(kBoxFont);
    for (int i = 0; i < 4; ++i)
      font->data.bytes[random() % static_cast<uint32_t>(font->data.length)] =
          static_cast<uint8_t>(random());
    if (round % 7 == 0) font->fontFlags = static_cast<uint16_t>(random());
    if (round % 11 == 0) font->glyphCount = static_cast<uint16_t>(random());
    Exercise();
  }
}

TEST_F(EditHostile, RecordsOfRandomBytes) {
  std::mt19937 random(8);
  for (int round = 0; round < 3000; ++round) {
    if (round % 50 == 0) {
      Reset();
      author::EditTextField field = WithLayout(author::kEditBorder, {.indent = 30});
      field.color = author::Color{1, 2, 3, 4};
      Place(field);
      text->SetBuffer("abc ABC*-\rxyz defghijkl\nmn");
    }
    DataSpan& data = object->character->data;
    for (int i = 0; i < 3; ++i)
      data.bytes[random() % static_cast<uint32_t>(data.length)] = static_cast<uint8_t>(random());
    data.bytes[2] = kBoxFont;
    data.bytes[3] = 0;
    text->flags = static_cast<uint16_t>(random());
    text->hscroll = static_cast<int32_t>(random() % 40);
    text->vscroll = static_cast<int32_t>(random() % 6);
    text->scrollToCursor = round & 1;
    Select(static_cast<int32_t>(random() % 27), static_cast<int32_t>(random() % 27));
    Exercise();
  }
}

TEST_F(EditHostile, BoundsOfAnySize) {
  const SCOORD coords[] = {kInt32Min, -0x40000000, -33000, -1,         0,        1,
                           79,        80,          81,     0x40000000, kInt32Max};
  for (SCOORD xmin : coords) {
    for (SCOORD xmax : coords) {
      Reset();
      Place(WithLayout(xmin & 1 ? author::kEditBorder | author::kEditWordWrap : author::kEditBorder,
                       {.align = static_cast<uint8_t>(xmax & 3), .rightMargin = 0xFFFF}));
      text->SetBuffer("abc ABC*-\rxyz defghijkl\nmn");
      object->character->bounds = {xmin, xmax, xmin, xmax};
      Exercise();
    }
  }
}

TEST_F(EditHostile, HeightsAndLeadingsAtTheirLimits) {
  for (uint16_t height : {0, 1, 0x7FFF, 0xFFFF}) {
    for (int leading : {-0x8000, -1000, -1, 0, 0x7FFF}) {
      Reset();
      author::EditTextField field =
          WithLayout(0, {.indent = 0xFFFF, .leading = static_cast<int16_t>(leading)});
      field.height = height;
      Place(field);
      text->SetBuffer("abc\r\r\rABC\n");
      Exercise();
    }
  }
}

// A height of 1 makes as many rows as there are lines, a width of 0 endless ones.
TEST_F(EditHostile, AMillionCharactersEndSoon) {
  author::TagStream fonts;
  author::Font font = BoxFont();
  for (author::Glyph& glyph : font.glyphs) glyph.advance = 0;
  fonts.DefineFont2(kBoxFont, font);
  for (const char* pattern : {"a", "a\r", "\r", "Z"}) {
    Reset();
    Place(Field(author::kEditWordWrap), {0, 2080, 0, 200000}, fonts);
    std::string all;
    while (all.size() < 1000000) all += pattern;
    text->SetBuffer(all.c_str());
    Exercise();
    EXPECT_LE(player->display.edgeCount, kMaxEdges);
  }
}

// Each glyph is long and leaves no edge.
TEST_F(EditHostile, LongEmptyGlyphsEndTheText) {
  author::TagStream fonts;
  author::Font font = BoxFont();
  font.flags |= author::kFontWideOffsets;
  author::ShapeBuilder outline;
  outline.AddFill(author::Color{});
  outline.Fill1(1);
  for (int i = 0; i < 5000; ++i) outline.LineTo({i % 2, 0});
  for (author::Glyph& glyph : font.glyphs) {
    glyph.advance = 0;
    if (glyph.code == 'a') glyph.outline = outline.records();
  }
  fonts.DefineFont2(kBoxFont, font);
  Place(Field(), {0, 2080, 0, 5080}, fonts);
  text->SetBuffer(std::string(100000, 'a').c_str());
  Exercise();
}

}  // namespace
}  // namespace vexel::test
