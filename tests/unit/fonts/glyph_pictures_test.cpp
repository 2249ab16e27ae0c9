// The built-in glyphs as our player draws them, beside FreeType's picture of the
// very same outline: the one that stands in the font movie, not the font file's.
// So the two differ by how they fill an outline, and by nothing else.
#include <ft2build.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include "author/font_list.h"
#include "author/movie_writer.h"
#include "support/test_player.h"
#include "text/built_in_fonts.h"

namespace vexel {
namespace {

using author::Font;
using author::Glyph;
using author::kPixel;

constexpr int kHeight = 64;  // pixels of the square
constexpr int kCell = 96;    // each glyph has a field of its own
constexpr int kColumns = 16;
constexpr int kLeft = 16;  // the pen in the field
constexpr int kBaseline = 70;

// Of 255: of a font's pixels, and of the middle glyph of all fonts. The player takes
// sixteen samples a pixel, and corners go to quarters of a pixel; a bar of one pixel's height
// suffers most from that.
constexpr double kMost = 4.0;
constexpr double kMostOfOne = 20.0;

struct Gray {
  int width = 0;
  int height = 0;
  std::vector<uint8_t> ink;  // 0 paper, 255 ink
  uint8_t& At(int x, int y) { return ink[static_cast<size_t>(y * width + x)]; }
};

author::Bytes MovieOf(const Font& font) {
  const int rows = static_cast<int>(font.glyphs.size() + kColumns - 1) / kColumns;
  author::MovieWriter movie(kColumns * kCell, rows * kCell);
  author::StaticText text;
  for (size_t i = 0; i < font.glyphs.size(); ++i) {
    author::TextRun run;
    run.font = 1;
    run.height = kHeight * kPixel;
    run.color = author::Color{0, 0, 0, 255};
    run.x = static_cast<int16_t>((static_cast<int>(i) % kColumns * kCell + kLeft) * kPixel);
    run.y = static_cast<int16_t>((static_cast<int>(i) / kColumns * kCell + kBaseline) * kPixel);
    run.glyphs.push_back({static_cast<uint32_t>(i), 0});
    text.runs.push_back(run);
  }
  movie.BackgroundColor({255, 255, 255, 255}).DefineFont2(1, font);
  movie.DefineText(2, author::Rect::Pixels(0, 0, kColumns * kCell, rows * kCell), text);
  movie.Place(2, 1).FrameEnd().End();
  return movie.Finish();
}

// A picture of all glyphs by our player, at its best quality.
Gray Ours(const Font& font) {
  const int rows = static_cast<int>(font.glyphs.size() + kColumns - 1) / kColumns;
  Gray picture{kColumns * kCell, rows * kCell, {}};
  test::TestPlayer player(picture.width, picture.height);
  player.highQuality = true;
  player.Push(MovieOf(font));
  player.display.Update();
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x)
      picture.ink.push_back(static_cast<uint8_t>(255 - (player.Pixel(x, y) & 0xFF)));
  }
  return picture;
}

// FreeType's picture of a record's outline in a field. A unit of the square is
// 4 of FreeType's 64ths of a pixel, so nothing is rounded on the way.
Gray Theirs(FT_Library library, const Glyph& glyph) {
  constexpr int kUnit = 64 * kHeight / author::kGlyphEm;
  static_assert(kUnit * author::kGlyphEm == 64 * kHeight);
  std::vector<FT_Vector> points;
  std::vector<char> tags;
  std::vector<short> ends;
  author::Point pen;
  const auto add = [&](author::Point p, char tag) {
    points.push_back({kLeft * 64 + p.x * kUnit, (kCell - kBaseline) * 64 - p.y * kUnit});
    tags.push_back(tag);
  };
  const auto end = [&] {
    if (!points.empty() && (ends.empty() || ends.back() + 1 < static_cast<int>(points.size())))
      ends.push_back(static_cast<short>(points.size() - 1));
  };
  bool drawing = false;
  for (const author::ShapeRecord& record : glyph.outline) {
    if (record.kind == author::RecordKind::kChange) {
      if (record.flags & author::kChangeMove) {
        end();
        pen = record.move;
        drawing = false;
      }
      continue;
    }
    if (!drawing) add(pen, FT_CURVE_TAG_ON);
    drawing = true;
    if (record.kind == author::RecordKind::kCurve) {
      pen = pen + record.control;
      add(pen, FT_CURVE_TAG_CONIC);
    }
    pen = pen + record.anchor;
    add(pen, FT_CURVE_TAG_ON);
  }
  end();
  Gray picture{kCell, kCell, std::vector<uint8_t>(kCell * kCell)};
  if (points.empty()) return picture;
  FT_Outline outline = {};
  outline.n_contours = static_cast<short>(ends.size());
  outline.n_points = static_cast<short>(points.size());
  outline.points = points.data();
  outline.tags = tags.data();
  outline.contours = ends.data();
  outline.flags = FT_OUTLINE_EVEN_ODD_FILL;
  FT_Bitmap bitmap = {};
  bitmap.rows = bitmap.width = kCell;
  bitmap.pitch = kCell;
  bitmap.buffer = picture.ink.data();
  bitmap.num_grays = 256;
  bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
  EXPECT_EQ(FT_Outline_Get_Bitmap(library, &outline, &bitmap), 0);
  return picture;
}

// The mean of the differences over the box of the pixels that either picture
// inks; a blank has none, and counts for nothing.
struct Difference {
  int64_t sum = 0;
  int64_t pixels = 0;
  double Mean() const {
    return pixels == 0 ? 0 : static_cast<double>(sum) / static_cast<double>(pixels);
  }
};

Difference Compare(Gray& ours, int index, Gray& theirs) {
  const int left = index % kColumns * kCell;
  const int top = index / kColumns * kCell;
  int xmin = kCell, xmax = -1, ymin = kCell, ymax = -1;
  for (int y = 0; y < kCell; ++y) {
    for (int x = 0; x < kCell; ++x) {
      if (theirs.At(x, y) == 0 && ours.At(left + x, top + y) == 0) continue;
      xmin = std::min(xmin, x);
      xmax = std::max(xmax, x);
      ymin = std::min(ymin, y);
      ymax = std::max(ymax, y);
    }
  }
  Difference difference;
  for (int y = ymin; y <= ymax; ++y) {
    for (int x = xmin; x <= xmax; ++x) {
      difference.sum += std::abs(int{theirs.At(x, y)} - int{ours.At(left + x, top + y)});
      ++difference.pixels;
    }
  }
  return difference;
}

TEST(GlyphPictures, AreWhatFreeTypeMakesOfTheSameOutlines) {
  char* data = nullptr;
  const int32_t size = GetUnixFontData(&data);
  ASSERT_GT(size, 0);
  const std::unique_ptr<char[]> owner(data);
  std::vector<author::ListedFont> fonts;
  ASSERT_TRUE(author::ListFonts({reinterpret_cast<const uint8_t*>(data), static_cast<size_t>(size)},
                                &fonts));
  FT_Library library = nullptr;
  ASSERT_EQ(FT_Init_FreeType(&library), 0);

  std::vector<double> all;
  std::printf("mean absolute difference of 255, at %d pixels\n", kHeight);
  for (const author::ListedFont& listed : fonts) {
    Gray ours = Ours(listed.font);
    Difference font;
    double worst = 0;
    int worstCode = 0;
    for (size_t i = 0; i < listed.font.glyphs.size(); ++i) {
      const Glyph& glyph = listed.font.glyphs[i];
      Gray theirs = Theirs(library, glyph);
      const Difference one = Compare(ours, static_cast<int>(i), theirs);
      EXPECT_EQ(one.pixels == 0, glyph.outline.empty()) << listed.id << ": " << glyph.code;
      if (one.pixels != 0) all.push_back(one.Mean());
      font.sum += one.sum;
      font.pixels += one.pixels;
      if (one.Mean() > worst) {
        worst = one.Mean();
        worstCode = glyph.code;
      }
    }
    std::printf("%2d %-15s %s%s: %.2f, worst glyph %.2f (code %d)\n", listed.id,
                listed.font.name.c_str(), listed.font.flags & author::kFontBold ? "b" : "-",
                listed.font.flags & author::kFontItalic ? "i" : "-", font.Mean(), worst, worstCode);
    EXPECT_LE(font.Mean(), kMost) << listed.id;
    EXPECT_LE(worst, kMostOfOne) << listed.id << ": " << worstCode;
  }
  FT_Done_FreeType(library);

  std::nth_element(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(all.size() / 2),
                   all.end());
  const double median = all[all.size() / 2];
  std::printf("median of %zu glyphs with outlines: %.2f\n", all.size(), median);
  EXPECT_LE(median, kMost);
}

}  // namespace
}  // namespace vexel
