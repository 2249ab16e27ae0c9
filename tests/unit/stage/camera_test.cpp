#include "support/stage_fixture.h"

namespace vexel::test {
namespace {

constexpr SRECT kMovie = {0, 4000, 0, 2000};  // 200 by 100 pixels
constexpr SRECT kScreen = {0, 400, 0, 400};   // pixels

class Camera : public ::testing::Test {
 protected:
  MATRIX Set(bool smooth, int32_t mode, const SRECT& movie = kMovie,
             const SRECT& screen = kScreen) {
    stage.SetCamera(&movie, &screen, smooth, mode);
    return stage.camera.mat;
  }
  DisplayList stage;
};

TEST_F(Camera, FitTakesTheSmallerScaleAndCentres) {
  const MATRIX m = Set(false, 0);
  EXPECT_EQ(m.a, 6553);  // 400 / 4000
  EXPECT_EQ(m.d, 6553);
  EXPECT_EQ(m.b, 0);
  EXPECT_EQ(m.c, 0);
  EXPECT_EQ(m.tx, 200 - 200);
  EXPECT_EQ(m.ty, 200 - 100);
  EXPECT_FALSE(stage.antialias);
}

TEST_F(Camera, FillTakesTheGreaterScale) {
  const MATRIX m = Set(false, 1);
  EXPECT_EQ(m.a, 13107);
  EXPECT_EQ(m.d, 13107);
  EXPECT_EQ(m.tx, -200);
  EXPECT_EQ(m.ty, 0);
}

TEST_F(Camera, StretchKeepsBothAndSoDoModesWithoutANameOfTheirOwn) {
  for (const int32_t mode : {2, 4, 15}) {
    const MATRIX m = Set(false, mode);
    EXPECT_EQ(m.a, 6553);
    EXPECT_EQ(m.d, 13107);
  }
}

TEST_F(Camera, FixedSizeIsATwentiethOfAPixel) {
  EXPECT_EQ(Set(false, 3).a, 3276);
  EXPECT_EQ(Set(true, 3).a, 13107);
}

TEST_F(Camera, AntiAliasingCountsQuarterPixels) {
  const MATRIX m = Set(true, 0);
  EXPECT_EQ(m.a, 26214);
  EXPECT_EQ(m.ty, 800 - 400);
  EXPECT_TRUE(stage.antialias);
  EXPECT_EQ(stage.devViewRect.xmax, 8000);
  EXPECT_EQ(stage.raster.ditherKind, ditherErrorDiffusion);
  Set(false, 0);
  EXPECT_EQ(stage.raster.ditherKind, ditherOrdered);
}

TEST_F(Camera, AlignsToEdgesAndPrefersLeftAndTop) {
  EXPECT_EQ(Set(false, 0x40).ty, 0);
  EXPECT_EQ(Set(false, 0x80).ty, 400 - 200);
  EXPECT_EQ(Set(false, 0xC0).ty, 0);
  const SRECT tall = {0, 2000, 0, 4000};
  EXPECT_EQ(Set(false, 0x10, tall).tx, 0);
  EXPECT_EQ(Set(false, 0x20, tall).tx, 200);
  EXPECT_EQ(Set(false, 0x30, tall).tx, 0);
}

TEST_F(Camera, MidpointsShiftTowardMinusInfinity) {
  const SRECT movie = {-101, 100, 0, 2000};
  // The middle of -101 and 100 is -1; at 400 / 201 that is 2 pixels right.
  EXPECT_EQ(Set(false, 2, movie).tx, 200 + 2);
}

TEST_F(Camera, AMovieWithoutSizeCountsAs16AndDividesByNothing) {
  const SRECT none = {50, 50, 70, 70};
  const MATRIX m = Set(false, 2, none);
  EXPECT_EQ(m.a, 400 * 65536 / 16);
  EXPECT_EQ(m.d, 400 * 65536 / 16);
  const SRECT reversed = {100, 0, 100, 0};
  EXPECT_EQ(Set(false, 2, reversed).a, 400 * 65536 / 16);
  const SRECT point = {0, 0, 0, 0};
  EXPECT_EQ(Set(false, 2, kMovie, point).a, 16 * 65536 / 4000) << "so does the screen";
}

TEST_F(Camera, UnchangedArgumentsInvalidateNothing) {
  Set(true, 0);
  stage.dirtyCount = 0;
  stage.dirty = false;
  Set(true, 0);
  EXPECT_EQ(stage.dirtyCount, 0);
  EXPECT_FALSE(stage.dirty);
  Set(true, 1);
  EXPECT_EQ(stage.dirtyCount, 1);
  EXPECT_TRUE(stage.dirty);
}

TEST_F(Camera, SmoothBitmapsNeedQualityAndAStillMovie) {
  Set(true, 0);
  EXPECT_TRUE(stage.raster.smooth);
  stage.dirty = false;
  stage.animating = true;
  Set(true, 0);
  EXPECT_FALSE(stage.raster.smooth);
  EXPECT_TRUE(stage.dirty) << "the switch alone is a change";
  stage.animating = false;
  Set(false, 0);
  EXPECT_FALSE(stage.raster.smooth);
}

TEST_F(Camera, TheViewIsTheTargetsAnd2000PixelsWithoutOne) {
  EXPECT_EQ(stage.devViewRect.xmax, 2000);
  CBitBuffer bits;
  stage.SetBits(&bits);
  EXPECT_EQ(stage.devViewRect.xmax, 2000) << "a buffer without pixels is no target";
  ASSERT_TRUE(bits.CreateBits(pix32, nullptr, 30, 40));
  stage.dirtyCount = 0;
  stage.SetBits(&bits);
  EXPECT_EQ(stage.devViewRect.xmax, 30);
  EXPECT_EQ(stage.devViewRect.ymax, 40);
  EXPECT_EQ(stage.dirtyCount, 1);
  stage.SetBits(nullptr);
}

TEST_F(Camera, HugeRectanglesSaturateAndWrapWithoutTrapping) {
  const SRECT huge = {kInt32Min + 1, kInt32Max, kInt32Min + 1, kInt32Max};
  for (const int32_t mode : {0, 1, 2, 3, 0x10, 0x20, 0x40, 0x80}) {
    Set(true, mode, huge);
    Set(false, mode, kMovie, huge);
    Set(true, mode, huge, huge);
  }
}

}  // namespace
}  // namespace vexel::test
