#include "client/desktop/picture_copy.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace vexel::client {
namespace {

constexpr uint32_t kColor = 0xFFFFFF;

struct Picture {
  Picture(int w, int h, uint32_t color = 0)
      : width(w), height(h), words(static_cast<size_t>(w) * static_cast<size_t>(h), color) {}

  PictureMemory memory() { return {words.data(), width, height, width * 4, kPictureLayout}; }
  uint32_t& at(int x, int y) {
    return words[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
  }
  uint32_t color(int x, int y) { return at(x, y) & kColor; }
  _QKxRect all() const { return {0, 0, width, height}; }

  int width, height;
  std::vector<uint32_t> words;
};

Picture Noise(int width, int height, unsigned seed) {
  Picture picture(width, height);
  std::mt19937 random(seed);
  for (uint32_t& word : picture.words) word = random();
  return picture;
}

int Channel(uint32_t color, int shift) {
  return static_cast<int>(color >> shift & 255);
}

// Linear interpolation between the centres of pixels, in floating point.
double Enlarged(Picture& from, double x, double y, int shift) {
  const auto pixel = [&](int column, int row) {
    column = std::clamp(column, 0, from.width - 1);
    row = std::clamp(row, 0, from.height - 1);
    return static_cast<double>(Channel(from.at(column, row), shift));
  };
  x -= 0.5;
  y -= 0.5;
  const int column = static_cast<int>(std::floor(x)), row = static_cast<int>(std::floor(y));
  const double right = x - column, down = y - row;
  return (pixel(column, row) * (1 - right) + pixel(column + 1, row) * right) * (1 - down) +
         (pixel(column, row + 1) * (1 - right) + pixel(column + 1, row + 1) * right) * down;
}

TEST(PictureCopy, EqualSizesAreCopiedPixelByPixel) {
  Picture from = Noise(37, 11, 1), to(40, 20, 0x123456);
  ASSERT_TRUE(CopyPicture(from.memory(), {2, 1, 32, 11}, to.memory(), {5, 7, 35, 17}, to.all()));
  for (int y = 0; y < to.height; y++) {
    for (int x = 0; x < to.width; x++) {
      const bool inside = x >= 5 && x < 35 && y >= 7 && y < 17;
      ASSERT_EQ(to.color(x, y), inside ? from.color(x - 3, y - 6) : 0x123456u) << x << ' ' << y;
    }
  }
}

TEST(PictureCopy, NothingOutsideThePartIsWritten) {
  Picture from = Noise(20, 20, 2), to(30, 30, 0x00ABCDEF);
  ASSERT_TRUE(CopyPicture(from.memory(), from.all(), to.memory(), to.all(), {3, 4, 10, 12}));
  for (int y = 0; y < to.height; y++) {
    for (int x = 0; x < to.width; x++) {
      const bool inside = x >= 3 && x < 10 && y >= 4 && y < 12;
      ASSERT_TRUE(inside || to.at(x, y) == 0x00ABCDEFu) << x << ' ' << y;
    }
  }
}

TEST(PictureCopy, APlaceThatReachesBeyondTheMemoryIsCutOff) {
  Picture from = Noise(20, 20, 3), to(10, 10);
  ASSERT_TRUE(
      CopyPicture(from.memory(), from.all(), to.memory(), {-5, -4, 15, 16}, {-9, -9, 99, 99}));
  EXPECT_EQ(to.color(0, 0), from.color(5, 4));
  EXPECT_EQ(to.color(9, 9), from.color(14, 13));
  EXPECT_TRUE(
      CopyPicture(from.memory(), from.all(), to.memory(), {50, 50, 70, 70}, {0, 0, 99, 99}));
}

TEST(PictureCopy, EnlargingIsLinearBetweenTheCentresOfPixels) {
  for (const auto& [width, height] : {std::pair{52, 33}, std::pair{80, 25}, std::pair{123, 77}}) {
    Picture from = Noise(40, 25, 4), to(width, height);
    ASSERT_TRUE(CopyPicture(from.memory(), from.all(), to.memory(), to.all(), to.all()));
    for (int y = 0; y < height; y++) {
      for (int x = 0; x < width; x++) {
        for (const int shift : {16, 8, 0}) {
          const double ideal = Enlarged(from, (x + 0.5) * from.width / width,
                                        (y + 0.5) * from.height / height, shift);
          // Places between pixels are told apart in steps of 1 / 128.
          ASSERT_NEAR(Channel(to.at(x, y), shift), ideal, 6) << x << ' ' << y;
        }
      }
    }
  }
}

TEST(PictureCopy, ReducingTakesTheMeanOfWhatEachPixelCovers) {
  Picture from = Noise(80, 60, 5), to(20, 20);
  ASSERT_TRUE(CopyPicture(from.memory(), from.all(), to.memory(), to.all(), to.all()));
  for (int y = 0; y < 20; y++) {
    for (int x = 0; x < 20; x++) {
      for (const int shift : {16, 8, 0}) {
        int sum = 0;
        for (int i = 0; i < 12; i++) sum += Channel(from.at(x * 4 + i % 4, y * 3 + i / 4), shift);
        ASSERT_NEAR(Channel(to.at(x, y), shift), sum / 12, 2) << x << ' ' << y;
      }
    }
  }
}

TEST(PictureCopy, OneColourStaysItselfAtAllSizes) {
  Picture from(30, 20, 0xFF8040C0);
  for (const auto& [width, height] : {std::pair{7, 5}, std::pair{30, 20}, std::pair{99, 70}}) {
    Picture to(width, height);
    ASSERT_TRUE(CopyPicture(from.memory(), from.all(), to.memory(), to.all(), to.all()));
    for (const uint32_t word : to.words) ASSERT_EQ(word & kColor, 0x8040C0u) << width;
  }
}

// A change of a few pixels, copied as a part, gives what copying all would.
TEST(PictureCopy, ChangedPixelsReachNoFurtherThanTheirPart) {
  std::mt19937 random(6);
  for (int turn = 0; turn < 60; turn++) {
    const auto below = [&](int limit) {
      return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    Picture from = Noise(60 + below(20), 50 + below(20), 7);
    const int kind = turn % 3;  // equal, larger, smaller
    const int width = kind == 0   ? from.width
                      : kind == 1 ? from.width + 1 + below(90)
                                  : 20 + below(30);
    const int height = kind == 0   ? from.height
                       : kind == 1 ? from.height + 1 + below(90)
                                   : 20 + below(30);
    Picture part(width, height), whole(width, height);
    ASSERT_TRUE(CopyPicture(from.memory(), from.all(), part.memory(), part.all(), part.all()));

    _QKxRect changed{below(50), below(40), 0, 0};
    changed.right = changed.left + 1 + below(10);
    changed.bottom = changed.top + 1 + below(10);
    for (int y = changed.top; y < changed.bottom; y++) {
      for (int x = changed.left; x < changed.right; x++) from.at(x, y) ^= kColor;
    }
    const _QKxRect written = PartOf(part.all(), from.all(), changed);
    ASSERT_TRUE(CopyPicture(from.memory(), from.all(), part.memory(), part.all(), written));
    ASSERT_TRUE(CopyPicture(from.memory(), from.all(), whole.memory(), whole.all(), whole.all()));
    for (int y = 0; y < height; y++) {
      for (int x = 0; x < width; x++) {
        ASSERT_EQ(part.color(x, y), whole.color(x, y))
            << "turn " << turn << ": " << x << ' ' << y << " of " << width << 'x' << height;
      }
    }
  }
}

TEST(PictureCopy, DisplaysOfOtherLayoutsGetTheSameColours) {
  const uint32_t color = 0x00F82040;  // exact in 5 bits a colour
  const struct {
    PixelLayout layout;
    uint32_t pixel;
  } cases[] = {
      {{32, 0x0000FF, 0xFF00, 0xFF0000}, 0x4020F8},
      {{32, 0xFF00, 0xFF0000, 0xFF000000}, 0x4020F800},
      {{32, 0xFF000000, 0xFF0000, 0xFF00}, 0xF8204000},
      {{24, 0xFF0000, 0xFF00, 0xFF}, 0xF82040},
      {{24, 0x0000FF, 0xFF00, 0xFF0000}, 0x4020F8},
      {{16, 0xF800, 0x07E0, 0x001F}, 31 << 11 | 8 << 5 | 8},
      {{16, 0x001F, 0x07E0, 0xF800}, 8 << 11 | 8 << 5 | 31},
      {{16, 0x7C00, 0x03E0, 0x001F}, 31 << 10 | 4 << 5 | 8},
      {{16, 0x001F, 0x03E0, 0x7C00}, 8 << 10 | 4 << 5 | 31},
      {{8, 0xE0, 0x1C, 0x03}, 7 << 5 | 1 << 2 | 1},
      {{8, 0x07, 0x38, 0xC0}, 1 << 6 | 1 << 3 | 7},
  };
  Picture from(4, 4, color);
  for (const auto& one : cases) {
    ASSERT_TRUE(KnowsLayout(one.layout));
    std::vector<uint32_t> words(8);
    const PictureMemory to{words.data(), 2, 2, 16, one.layout};
    ASSERT_TRUE(CopyPicture(from.memory(), {0, 0, 2, 2}, to, {0, 0, 2, 2}, {0, 0, 2, 2}));
    const uint32_t mask = one.layout.red | one.layout.green | one.layout.blue;
    EXPECT_EQ(words[0] & mask, one.pixel) << one.layout.bitsPerPixel << ' ' << one.layout.red;
    // And back, as a saved picture is made.
    Picture back(2, 2);
    ASSERT_TRUE(CopyPicture(to, {0, 0, 2, 2}, back.memory(), back.all(), back.all()));
    for (const int shift : {16, 8, 0})
      EXPECT_NEAR(Channel(back.at(1, 1), shift), Channel(color, shift), 0xFF / 3 / 2 + 1);
  }
}

TEST(PictureCopy, TenBitsAColourAreFilled) {
  Picture from(2, 2, 0xFF0080);
  std::vector<uint32_t> words(4);
  const PictureMemory to{words.data(), 2, 2, 8, {32, 0x3FF00000, 0xFFC00, 0x3FF}};
  ASSERT_TRUE(CopyPicture(from.memory(), from.all(), to, from.all(), from.all()));
  EXPECT_EQ(words[3] >> 20 & 0x3FF, 0x3FFu);
  EXPECT_EQ(words[3] >> 10 & 0x3FF, 0u);
  EXPECT_NEAR(static_cast<int>(words[3] & 0x3FF), 0x80 * 0x3FF / 0xFF, 1);
}

TEST(PictureCopy, APaletteIsRefused) {
  EXPECT_FALSE(KnowsLayout({8, 0, 0, 0}));
  Picture from(2, 2, 0xFFFFFF);
  std::vector<uint32_t> words(4);
  const PictureMemory to{words.data(), 2, 2, 4, {8, 0, 0, 0}};
  EXPECT_FALSE(CopyPicture(from.memory(), from.all(), to, from.all(), from.all()));
}

}  // namespace
}  // namespace vexel::client
