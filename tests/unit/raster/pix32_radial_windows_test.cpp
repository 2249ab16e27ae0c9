// What the vector forms rely on in a window: how far its guesses are off.
#include "raster/pix32_radial_windows.h"

#include <gtest/gtest.h>

namespace vexel {
namespace {

constexpr int32_t kSize = 16;
using Windows = RadialWindows<kSize>;
constexpr const Windows& kWindows = radialWindows<kSize>;

int32_t Guess(int32_t base, int32_t excess) {
  return static_cast<int32_t>((int64_t{excess} * kWindows.inverse[base]) >> 16);
}

TEST(RadialWindowsTest, AWindowHoldsWhatLiesBetweenTheSquaresAtItsEnds) {
  for (int32_t base = 0; base <= Windows::kLastBase; base++) {
    const int32_t end = base + kSize;
    EXPECT_EQ(kWindows.first[base], base * base + 1);
    EXPECT_EQ(kWindows.first[base] + kWindows.room[base], end * end);
    EXPECT_LE(kWindows.room[base], 65536);
  }
}

TEST(RadialWindowsTest, AGuessIsTooLowByNoMoreThanTheCorrectionsAndNeverTooHigh) {
  for (int32_t base = 0; base <= Windows::kLastBase; base++) {
    const int32_t corrections = base < Windows::kCloseBase ? Windows::kCorrections : 1;
    int32_t index = base;
    for (int32_t excess = 0; excess < kWindows.room[base]; excess++) {
      const int32_t d = kWindows.first[base] + excess;
      while (radialSquares.at[index + 1] <= d) index++;
      const int32_t guess = Guess(base, excess);
      ASSERT_LE(base + guess, index) << "base " << base << ", square " << d;
      ASSERT_GE(base + guess + corrections, index) << "base " << base << ", square " << d;
    }
  }
}

TEST(RadialWindowsTest, AGuessAtASquareIsTooLow) {
  for (int32_t base = 0; base <= Windows::kLastBase; base++) {
    for (int32_t i = 1; i < kSize; i++) {
      const int32_t excess = radialSquares.at[base + i] - kWindows.first[base];
      EXPECT_LT(Guess(base, excess), i) << "base " << base;
    }
  }
}

}  // namespace
}  // namespace vexel
