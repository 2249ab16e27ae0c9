#include "raster/pixel_format.h"

#include <gtest/gtest.h>

namespace vexel {
namespace {

TEST(PixelFormat, DepthsEndWithATenth32) {
  const int32_t want[10] = {1, 2, 4, 8, 16, 16, 24, 32, 32, 32};
  for (int i = 0; i < 10; i++) EXPECT_EQ(mapPixelFormatToDepth[i], want[i]);
}

TEST(PixelFormat, ExpansionRepeatsTwoEntries) {
  EXPECT_EQ(pix16Expand[12], 0x5Fu);
  EXPECT_EQ(pix16Expand[13], 0x6Fu);
  EXPECT_EQ(pix16Expand[28], 0xDFu);
  EXPECT_EQ(pix16Expand[31], 0xFFu);
  EXPECT_EQ(pix16Expand[0], 0u);
  for (uint32_t i = 1; i < 32; i++) {
    if (i != 12 && i != 28) {
      EXPECT_EQ(pix16Expand[i], 8 * i + 7);
    }
  }
}

TEST(PixelFormat, ExpansionsOfRedAndGreenAreShifted) {
  for (uint32_t i = 0; i < 32; i++) {
    EXPECT_EQ(pix16ExpandR[i], 0xFF000000u + (pix16Expand[i] << 16));
    EXPECT_EQ(pix16ExpandG[i], pix16Expand[i] << 8);
  }
}

}  // namespace
}  // namespace vexel
