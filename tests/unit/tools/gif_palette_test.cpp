#include "export/gif_palette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "export/gif_dither.h"

namespace vexel::tools {
namespace {

using Pixels = std::vector<uint8_t>;

void Append(Pixels* pixels, Rgb color, size_t count = 1) {
  for (; count > 0; count--) pixels->insert(pixels->end(), {color.red, color.green, color.blue});
}

std::vector<Rgb> PaletteOf(const Pixels& pixels) {
  ColorCount count;
  count.Add(pixels.data(), pixels.size() / 3);
  return count.Choose();
}

// `colors` different ones, whatever their order.
Pixels Different(uint32_t colors) {
  Pixels pixels;
  for (uint32_t i = 0; i < colors; i++) {
    const uint32_t color = i * 40503 & 0xFFFFFF;
    Append(&pixels, {static_cast<uint8_t>(color >> 16), static_cast<uint8_t>(color >> 8),
                     static_cast<uint8_t>(color)});
  }
  return pixels;
}

Pixels Shown(const std::vector<Rgb>& palette, const Pixels& pixels, int32_t width) {
  Dither dither(palette);
  std::vector<uint8_t> indices(static_cast<size_t>(width));
  Pixels shown;
  const int32_t rows = static_cast<int32_t>(pixels.size()) / 3 / width;
  for (int32_t y = 0; y < rows; y++) {
    dither.Row(&pixels[static_cast<size_t>(3 * width * y)], width, y, indices.data());
    for (const uint8_t index : indices) Append(&shown, palette[index]);
  }
  return shown;
}

TEST(GifPalette, AFilmOfAsManyColorsAsThePaletteKeepsThemAll) {
  const Pixels pixels = Different(kPaletteColors);
  const std::vector<Rgb> palette = PaletteOf(pixels);
  EXPECT_EQ(palette.size(), kPaletteColors);
  EXPECT_EQ(Shown(palette, pixels, 51), pixels);
}

TEST(GifPalette, ColorsOfOneCellAreKeptApartIfTheyAreFew) {
  Pixels pixels;
  Append(&pixels, {0, 0, 0});
  Append(&pixels, {1, 2, 3});
  Append(&pixels, {3, 3, 3});
  EXPECT_EQ(Shown(PaletteOf(pixels), pixels, 3), pixels);
}

TEST(GifPalette, MoreColorsAreCutDown) {
  EXPECT_EQ(PaletteOf(Different(kPaletteColors + 1)).size(), kPaletteColors);
  EXPECT_EQ(PaletteOf(Different(60000)).size(), kPaletteColors);
}

TEST(GifPalette, MoreColorsThanThePaletteInFewCellsNeedFewEntries) {
  Pixels pixels;
  for (int i = 0; i < 512; i++)
    Append(&pixels, {static_cast<uint8_t>(i & 7), static_cast<uint8_t>(i >> 3 & 7),
                     static_cast<uint8_t>(i >> 6)});
  EXPECT_EQ(PaletteOf(pixels).size(), 8u);
}

TEST(GifPalette, AreasKeepTheirColorExactly) {
  Pixels pixels = Different(20000);
  const Rgb area{12, 200, 77};
  Append(&pixels, area, 100000);
  const std::vector<Rgb> palette = PaletteOf(pixels);
  EXPECT_NE(std::find(palette.begin(), palette.end(), area), palette.end());
}

TEST(GifDither, APatternHasTheMeanOfTheColorItStandsFor) {
  for (int wanted = 0; wanted <= 40; wanted++) {
    Pixels pixels;
    const auto part = static_cast<uint8_t>(100 + wanted);
    Append(&pixels, {part, part, part}, 64);
    const Pixels shown = Shown({{100, 100, 100}, {140, 140, 140}}, pixels, 8);
    double sum = 0;
    for (const uint8_t value : shown) sum += value;
    // Near an entry the grain of a pattern would be worse than the error.
    EXPECT_NEAR(sum / static_cast<double>(shown.size()), part, wanted == 20 ? 0.5 : 8.5) << wanted;
  }
}

TEST(GifDither, AColorOfThePaletteIsNeverPatterned) {
  std::mt19937 random(7);
  std::vector<Rgb> palette;
  for (size_t i = 0; i < kPaletteColors; i++)
    palette.push_back({static_cast<uint8_t>(random()), static_cast<uint8_t>(random()),
                       static_cast<uint8_t>(random())});
  for (const Rgb& color : palette) {
    Pixels pixels;
    Append(&pixels, color, 64);
    ASSERT_EQ(Shown(palette, pixels, 8), pixels);
  }
}

TEST(GifDither, TheSamePixelGetsTheSamePatternWhateverStandsAround) {
  std::mt19937 random(8);
  const std::vector<Rgb> palette = {{0, 0, 0}, {255, 255, 255}, {255, 0, 0}};
  const Rgb color{128, 100, 100};
  Pixels alone;
  Append(&alone, color, 64);
  Pixels among = alone;
  for (size_t i = 0; i < 32; i++) among[3 * i] = static_cast<uint8_t>(random());
  const Pixels shownAlone = Shown(palette, alone, 8);
  const Pixels shownAmong = Shown(palette, among, 8);
  EXPECT_TRUE(std::equal(shownAlone.begin() + 96, shownAlone.end(), shownAmong.begin() + 96));
}

}  // namespace
}  // namespace vexel::tools
