// The picture of a field against the same areas, lines and glyphs placed by
// hand, pixel by pixel.
#include "draw_fixture.h"

namespace vexel::test {
namespace {

using author::Matrix;
using author::Placement;
using author::ShapeBuilder;

constexpr author::Rect kBounds = {0, 1500, 0, 1100};
constexpr uint16_t kTextHeight = 300;
constexpr int32_t kWidth = 150;  // of a character: 512 of 1024
constexpr author::Color kBackground = {90, 140, 60, 255};
constexpr author::Color kTextColor = {200, 30, 90, 255};

// Circles, so that curves take part.
author::Font RoundFont() {
  author::Font font = BoxFont();
  for (author::Glyph& glyph : font.glyphs) {
    if (glyph.code == ' ') continue;
    ShapeBuilder outline;
    outline.AddFill(kTextColor);
    outline.Fill1(1).Ellipse({250, -300}, 200, 2 * glyph.code);
    outline.Fill1(1).Rectangle({100, 400, 50, 90});
    glyph.outline = outline.records();
  }
  for (author::Glyph& glyph : font.glyphs) glyph.advance = 512;
  font.ascent = 700;
  font.descent = 300;
  return font;
}

struct Look {
  Matrix matrix{};
  bool smooth = true;
  std::optional<author::Cxform> cxform{};
};

class EditPicture : public DrawFixture {
 protected:
  using Pixels = std::vector<uint8_t>;

  static author::MovieWriter Begin() {
    author::MovieWriter movie(100, 100);
    movie.BackgroundColor(kBackground).DefineFont2(kBoxFont, RoundFont());
    return movie;
  }
  void Play(author::MovieWriter& movie, bool smooth) {
    movie.FrameEnd().End();
    Reset();
    player->highQuality = smooth;
    player->Push(movie.Finish());
    ASSERT_EQ(player->display.antialias, smooth);
  }
  Pixels Paint() {
    player->display.ModifyCamera();
    player->display.Update();
    const CBitBuffer& bits = player->bits;
    return Pixels(bits.baseAddr, bits.baseAddr + bits.rowBytes * 100);
  }
  static std::string FirstDifference(const Pixels& a, const Pixels& b) {
    for (size_t i = 0; i < a.size() && i < b.size(); ++i) {
      if (a[i] == b[i]) continue;
      return "byte " + std::to_string(i % 400) + " of row " + std::to_string(i / 400) + ": " +
             std::to_string(a[i]) + ", " + std::to_string(b[i]);
    }
    return a.size() == b.size() ? "" : "sizes";
  }
  static Placement At(uint16_t id, uint16_t depth, const Look& look) {
    Placement placement;
    placement.character = id;
    placement.depth = depth;
    placement.matrix = look.matrix;
    placement.cxform = look.cxform;
    return placement;
  }

  // The two rows "ab cd" and "ef", wrapped behind the blank, with the b to the e
  // selected and the cursor at `cursor` if it is not negative.
  Pixels FieldPicture(const Look& look, int32_t anchor, int32_t cursor) {
    author::EditTextField field = Field(author::kEditBorder | author::kEditWordWrap);
    field.height = kTextHeight;
    field.color = kTextColor;
    field.layout = author::EditTextLayout{
        .align = 0, .leftMargin = 60, .rightMargin = 500, .indent = 90, .leading = 40};
    author::MovieWriter movie = Begin();
    movie.DefineEditText(kField, kBounds, field).Place(At(kField, 1, look));
    Play(movie, look.smooth);
    object = player->rootObject->firstChild;
    text = object->editText;
    text->SetBuffer("ab cdef");
    Select(anchor, cursor);
    Focus();
    Pixels pixels = Paint();
    EXPECT_TRUE(text->drawn);
    EXPECT_EQ(LineStarts(), (std::vector<int32_t>{0, 3, 7}));
    return pixels;
  }

  // The same by hand: glyphs `from` to `to` - 1 of the field as a static text.
  static void Glyphs(author::MovieWriter* movie, uint16_t id, int from, int to,
                     author::Color color) {
    const author::Font font = RoundFont();
    author::StaticText out;
    for (int i = from; i < to; ++i) {
      const int row = i < 3 ? 0 : 1;
      author::TextRun run;
      run.font = kBoxFont;
      run.height = kTextHeight;
      run.color = color;
      run.x = static_cast<int16_t>(row == 0 ? 40 + 60 + 90 + i * kWidth : 100 + (i - 3) * kWidth);
      run.y = static_cast<int16_t>(40 + 205 + row * kRow);
      run.glyphs = {{static_cast<uint32_t>(font.Find(static_cast<uint8_t>("ab cdef"[i]))), 0}};
      out.runs.push_back(run);
    }
    movie->DefineText(id, kBounds, out);
  }
  static ShapeBuilder Area(author::Color color, author::Rect rect) {
    ShapeBuilder shape;
    shape.Style(shape.AddFill(color)).Rectangle(rect);
    return shape;
  }
  static ShapeBuilder Line(author::Color color, const std::vector<author::Point>& points) {
    ShapeBuilder shape;
    shape.Line(shape.AddLine(1, color)).MoveTo(points[0]);
    for (size_t i = 1; i < points.size(); ++i) shape.LineTo(points[i]);
    return shape;
  }

  // 205 and 87 are ascent and descent of 300: 205.08 and 87.9.
  static constexpr int32_t kRow = 205 + 87 + 40;
};

// The selection holds the b, the blank, and c to e; its cursor end is the first.
constexpr int32_t kFrom = 1;
constexpr int32_t kTo = 6;

std::vector<Look> Looks() {
  std::vector<Look> looks;
  author::Cxform tint;
  tint.redMul = 128;
  tint.redAdd = 40;
  tint.greenMul = 200;
  for (bool smooth : {true, false}) {
    looks.push_back({Matrix::Scale(1, 1, 200, 300), smooth});
    looks.push_back({Matrix::Scale(1.07, 0.83, 111, 57), smooth, tint});
    looks.push_back({Matrix::Rotate(33, 0.8, 0.9, 900, 100), smooth});
    looks.push_back({Matrix::Scale(-1, 1, 1800, 100), smooth});
  }
  return looks;
}

TEST_F(EditPicture, AFieldWithSelectionIsItsPartsPlacedByHand) {
  const author::Color black, white = {255, 255, 255, 255};
  for (const Look& look : Looks()) {
    const Pixels field = FieldPicture(look, kTo, kFrom);
    author::MovieWriter movie = Begin();
    movie.DefineShape(1, Area(white, kBounds)).Place(At(1, 1, look));
    Glyphs(&movie, 2, 0, kFrom, kTextColor);
    Glyphs(&movie, 3, kTo, 7, kTextColor);
    movie.Place(At(2, 2, look)).Place(At(3, 3, look));
    // The first row's rectangle reaches down to the second's.
    const int32_t left = 40 + 60 + 90 + kFrom * kWidth;
    movie.DefineShape(4, Area(black, {left, left + 2 * kWidth, 40, 40 + kRow}));
    movie.DefineShape(5, Area(black, {100, 100 + 3 * kWidth, 40 + kRow, 40 + kRow + kTextHeight}));
    movie.DefineShape(6, Line(black, {{0, 0}, {0, 1100}, {1500, 1100}, {1500, 0}, {0, 0}}));
    movie.Place(At(4, 4, look)).Place(At(5, 5, look)).Place(At(6, 6, look));
    Glyphs(&movie, 20, kFrom, kTo, white);
    movie.Place(At(20, 7, look));
    // The cursor, in the colour of the text, lies beneath the selection.
    movie.DefineShape(8, Line(kTextColor, {{left, 40}, {left, 40 + kTextHeight}}));
    movie.Place(At(8, 3, look));
    Play(movie, look.smooth);
    EXPECT_EQ(FirstDifference(Paint(), field), "")
        << "smooth " << look.smooth << ", scale " << look.matrix.a << " " << look.matrix.b;
  }
}

TEST_F(EditPicture, AFieldWithACursorIsItsPartsPlacedByHand) {
  const author::Color black, white = {255, 255, 255, 255};
  for (const Look& look : Looks()) {
    // In front of the blank, where no glyph is near: where both meet, edges of one
    // colour in opposite directions leave a hole.
    const Pixels field = FieldPicture(look, 2, 2);
    author::MovieWriter movie = Begin();
    movie.DefineShape(1, Area(white, kBounds)).Place(At(1, 1, look));
    Glyphs(&movie, 2, 0, 7, kTextColor);
    movie.Place(At(2, 2, look));
    const int32_t x = 190 + 2 * kWidth;
    movie.DefineShape(3, Line(kTextColor, {{x, 40}, {x, 40 + kTextHeight}}));
    movie.Place(At(3, 3, look));
    movie.DefineShape(6, Line(black, {{0, 0}, {0, 1100}, {1500, 1100}, {1500, 0}, {0, 0}}));
    movie.Place(At(6, 6, look));
    Play(movie, look.smooth);
    EXPECT_EQ(FirstDifference(Paint(), field), "")
        << "smooth " << look.smooth << ", scale " << look.matrix.a << " " << look.matrix.b;
  }
}

// A mask without colours leaves what it should clip to be drawn as it is.
TEST_F(EditPicture, AFieldAsAMaskClipsNothing) {
  for (bool mask : {true, false}) {
    author::MovieWriter movie = Begin();
    author::EditTextField field = Field(author::kEditBorder);
    if (mask) {
      Placement placement = At(kField, 1, {});
      placement.clipDepth = 5;
      movie.DefineEditText(kField, kBounds, field).Place(placement);
    }
    movie.DefineShape(4, Area({1, 2, 3, 255}, {200, 1900, 200, 1900})).Place(4, 2);
    Play(movie, true);
    const Pixels pixels = Paint();
    static Pixels masked;
    if (mask) {
      masked = pixels;
    } else {
      EXPECT_EQ(FirstDifference(pixels, masked), "");
    }
  }
}

// Dirty rectangles paint a field again from the edges that it has.
TEST_F(EditPicture, APartialPaintGivesTheSamePixels) {
  const Pixels whole = FieldPicture({}, 5, 5);
  const SRECT part = {40, 200, 40, 200};
  memset(player->bits.baseAddr, 0, static_cast<size_t>(player->bits.rowBytes) * 100);
  player->display.InvalidateRect(&player->display.devViewRect);
  player->display.Update();
  player->display.InvalidateRect(&part);
  player->display.Update();
  EXPECT_EQ(memcmp(player->bits.baseAddr, whole.data(), whole.size()), 0);
}

}  // namespace
}  // namespace vexel::test
