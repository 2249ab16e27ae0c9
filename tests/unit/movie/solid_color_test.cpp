// Plain colours of fills, lines and texts.
#include <gtest/gtest.h>

#include "movie/solid_color.h"
#include "raster/rcolor.h"

namespace vexel {
namespace {

class SolidColor : public ::testing::Test {
 protected:
  SolidColor() {
    color.SetUp(nullptr);
    cxform.Clear();
  }
  // 0xAARRGGBB.
  uint32_t Set(uint16_t red, uint16_t green, uint16_t blue, uint16_t alpha) {
    color.transparent = false;
    SetSolidColor(&color, {blue, green, red, alpha}, cxform);
    return uint32_t{color.rgb.alpha} << 24 | uint32_t{color.rgb.red} << 16 |
           uint32_t{color.rgb.green} << 8 | color.rgb.blue;
  }

  RColor color;
  ColorTransform cxform;
};

TEST_F(SolidColor, OpaqueOnesStayAsTheyAre) {
  EXPECT_EQ(Set(200, 100, 7, 255), 0xFFC86407u);
  EXPECT_FALSE(color.transparent);
}

TEST_F(SolidColor, OthersAreMultipliedByTheirAlphaAndOne) {
  EXPECT_EQ(Set(200, 100, 255, 254), 0xFEC763FEu);
  EXPECT_TRUE(color.transparent);
  EXPECT_EQ(Set(200, 100, 255, 0), 0x00000000u);
}

TEST_F(SolidColor, TheTransformComesFirst) {
  cxform.flags = ColorTransform::kHasMul | ColorTransform::kHasAdd;
  cxform.aa = 128;
  cxform.rb = 100;
  EXPECT_EQ(Set(100, 100, 0, 255), 0x7F643200u);
  EXPECT_TRUE(color.transparent);
}

}  // namespace
}  // namespace vexel
