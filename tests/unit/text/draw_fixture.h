// Fields with a font of plain boxes, drawn where one unit of the font is one of
// the movie and of the device, so that a test can tell every coordinate.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "author/writer.h"
#include "movie/character.h"
#include "raster/edge.h"
#include "raster/rcolor.h"
#include "stage/stroker.h"
#include "support/check_stage.h"
#include "support/test_player.h"
#include "text/edit_text.h"

namespace vexel::test {

inline constexpr uint16_t kBoxFont = 7;
inline constexpr uint16_t kField = 9;
inline constexpr int32_t kAdvance = 100;
inline constexpr int32_t kAscent = 700;
inline constexpr int32_t kLineHeight = 1000;  // ascent and descent
inline constexpr int32_t kHeight = 1024;      // of the font's square

// The glyph of `code`: 80 wide and as high as the code, on the baseline.
inline author::Glyph BoxGlyph(uint16_t code, int16_t advance = kAdvance) {
  author::Glyph glyph;
  glyph.code = code;
  glyph.advance = advance;
  author::ShapeBuilder outline;
  outline.AddFill(author::Color{});
  outline.Fill1(1).Rectangle({10, 90, -int32_t{code}, 0});
  glyph.outline = outline.records();
  return glyph;
}

// Of the signs and letters that tests use; a blank has no outline.
inline author::Font BoxFont(std::string name = "Boxes", uint16_t style = 0) {
  author::Font font;
  font.name = std::move(name);
  font.flags = static_cast<uint16_t>(author::kFontAnsi | author::kFontHasLayout | style);
  font.ascent = kAscent;
  font.descent = kLineHeight - kAscent;
  font.leading = 333;
  for (char c : std::string(" *-ABCabcdefghijklmn")) {
    font.glyphs.push_back(BoxGlyph(static_cast<uint8_t>(c)));
    if (c == ' ') font.glyphs.back().outline.clear();
  }
  return font;
}

// A rectangle of the picture, by the order of its colour.
struct Box {
  uint32_t order;
  SCOORD xmin, xmax, ymin, ymax;
  bool operator==(const Box&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Box& box) {
  return out << box.order << ": " << box.xmin << " to " << box.xmax << ", " << box.ymin << " to "
             << box.ymax;
}

class DrawFixture : public testing::Test {
 protected:
  DrawFixture() { Reset(); }
  ~DrawFixture() override { EXPECT_EQ(CheckStage(player->display), ""); }

  // A player whose built-in fonts are none at all.
  void Reset() {
    player.reset();
    player = std::make_unique<TestPlayer>();
    player->fontState = FontState::kLoaded;
  }

  // A field of the box font, without a border, in a movie with `fonts` in front.
  SObject* Place(const author::EditTextField& field, author::Rect bounds,
                 const author::TagStream& fonts) {
    author::MovieWriter movie(100, 100);
    movie.Raw(fonts.bytes());
    movie.DefineEditText(kField, bounds, field).Place(kField, 1).FrameEnd().End();
    player->Push(movie.Finish());
    object = player->rootObject->firstChild;
    text = object->editText;
    return object;
  }
  SObject* Place(const author::EditTextField& field, author::Rect bounds = {0, 2080, 0, 5080}) {
    author::TagStream fonts;
    fonts.DefineFont2(kBoxFont, BoxFont());
    return Place(field, bounds, fonts);
  }
  static author::EditTextField Field(uint16_t flags = 0) {
    author::EditTextField field;
    field.flags = static_cast<uint16_t>(flags | author::kEditOutlines);
    field.font = kBoxFont;
    field.height = kHeight;
    return field;
  }
  static author::EditTextField WithLayout(uint16_t flags, author::EditTextLayout layout) {
    author::EditTextField field = Field(flags);
    field.layout = layout;
    return field;
  }

  // Draws anew with `characters` in the field; what Draw answered.
  bool Draw(const char* characters) {
    text->SetBuffer(characters);
    return Draw();
  }
  bool Draw(const MATRIX* mat = nullptr) {
    STransform t;
    MatrixIdentity(&t.mat);
    t.cxform.Clear();
    if (mat) t.mat = *mat;
    object->FreeCache();
    player->display.antialias = false;
    object->devBounds = {0, 0, 0, 0};
    object->BuildEdges(&t);
    return text->drawn;
  }
  void Focus() {
    player->focus.Set(object);
    player->cursorBlink = true;
  }
  void Select(int32_t anchor, int32_t cursor) {
    text->selectionAnchor = anchor;
    text->selectionCursor = cursor;
  }

  // All areas of two upright edges, as they were added. Lines are not areas.
  std::vector<Box> Boxes() const {
    std::vector<const REdge*> edges;
    for (const REdge* e = object->edges; e; e = e->next) edges.insert(edges.begin(), e);
    std::vector<Box> boxes;
    for (size_t i = 0; i + 1 < edges.size(); ++i) {
      const REdge& e = *edges[i];
      const REdge& f = *edges[i + 1];
      if (e.anchor1.y != f.anchor1.y || e.anchor2.y != f.anchor2.y || e.color1 != f.color1 ||
          e.dir == f.dir || !e.color1) {
        continue;
      }
      const int x1 = std::min(e.anchor1.x, f.anchor1.x);
      const int x2 = std::max(e.anchor1.x, f.anchor1.x);
      boxes.push_back({e.color1->order, x1, x2, e.anchor1.y, e.anchor2.y});
      ++i;
    }
    return boxes;
  }
  std::vector<Box> Boxes(uint32_t order) const {
    std::vector<Box> boxes;
    for (const Box& box : Boxes())
      if (box.order == order) boxes.push_back(box);
    return boxes;
  }
  // The characters shown, a row a line, read off the height and the place of
  // their boxes; blanks show nothing.
  std::string Shown() const {
    std::string rows;
    SCOORD baseline = text->textRect.ymin + kAscent;
    for (const Box& box : Boxes()) {
      if (box.order != 1 && box.order != 3) continue;
      if (box.xmax - box.xmin != 80) continue;
      for (; baseline < box.ymax; baseline += kLineHeight) rows += '/';
      rows += static_cast<char>(box.ymax - box.ymin);
    }
    return rows;
  }
  // Where the boxes of the characters start, less the 10 units in front of each.
  std::vector<SCOORD> Starts() const {
    std::vector<SCOORD> starts;
    for (const Box& box : Boxes())
      if ((box.order == 1 || box.order == 3) && box.xmax - box.xmin == 80)
        starts.push_back(box.xmin - 10);
    return starts;
  }
  // The cursors: a line of one unit is a box of one unit's width.
  std::vector<Box> Cursors() const {
    std::vector<Box> cursors;
    for (const Box& box : Boxes(1))
      if (box.xmax - box.xmin == 1) cursors.push_back(box);
    return cursors;
  }
  std::vector<int32_t> LineStarts() const {
    std::vector<int32_t> starts;
    for (int32_t i = 0; i <= text->lineCount; ++i) starts.push_back(text->lineStarts.At(i));
    return starts;
  }
  RColor* Color(uint32_t order) const {
    for (RColor* color = object->colors; color; color = color->next)
      if (color->order == order) return color;
    return nullptr;
  }

  std::unique_ptr<TestPlayer> player;
  SObject* object = nullptr;
  EditText* text = nullptr;
};

}  // namespace vexel::test
