#include "author/fonts/specimen.h"

#include <algorithm>

#include "author/movie_writer.h"

namespace vexel::author {

namespace {

constexpr uint16_t kFontId = 1;
constexpr uint16_t kTextId = 2;
constexpr uint16_t kHeight = 24 * kPixel;
constexpr int32_t kWidth = 600 * kPixel;
constexpr int32_t kMargin = 20 * kPixel;
constexpr Color kPaper = {255, 255, 255, 255};
constexpr Color kInk = {0, 0, 0, 255};

constexpr size_t kMaxInRun = 255;
// A text says its baselines in 16 bits. Fonts with more glyphs than fit above
// the last one show the first of theirs.
constexpr int32_t kLastBaseline = 32000;

int32_t OnStage(int32_t units) {
  return units * kHeight / kGlyphEm;
}

// The glyphs in rows. Returns the last baseline.
int32_t SetRows(const Font& font, StaticText* text) {
  const int32_t ascent = OnStage(std::max<int32_t>(font.ascent, 0));
  const int32_t lineHeight =
      std::max<int32_t>(ascent + OnStage(std::max(0, font.descent + font.leading)), kHeight);
  int32_t x = kMargin;
  int32_t y = kMargin + ascent;
  for (size_t i = 0; i < font.glyphs.size(); ++i) {
    const int32_t advance = OnStage(std::max<int32_t>(font.glyphs[i].advance, 0));
    const bool full = x + advance > kWidth - kMargin && x > kMargin;
    if (full) {
      x = kMargin;
      if (y + lineHeight > kLastBaseline) break;
      y += lineHeight;
    }
    if (i == 0 || full || text->runs.back().glyphs.size() == kMaxInRun) {
      TextRun run;
      run.font = kFontId;
      run.height = kHeight;
      run.color = kInk;
      run.x = static_cast<int16_t>(x);
      run.y = static_cast<int16_t>(y);
      text->runs.push_back(run);
    }
    text->runs.back().glyphs.push_back({static_cast<uint32_t>(i), advance});
    x += advance;
  }
  return y;
}

}  // namespace

Bytes SpecimenMovie(const Font& font) {
  StaticText text;
  const int32_t bottom = SetRows(font, &text) + OnStage(std::max<int32_t>(font.descent, 0));
  const Rect stage = {0, kWidth, 0, (bottom + kMargin + kPixel - 1) / kPixel * kPixel};
  constexpr uint16_t kRate = 12 << 8;
  MovieWriter movie(stage, kRate);
  movie.BackgroundColor(kPaper).DefineFont2(kFontId, font).DefineText(kTextId, stage, text);
  movie.Place(kTextId, 1).FrameEnd().End();
  return movie.Finish();
}

}  // namespace vexel::author
