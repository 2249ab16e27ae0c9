// Matrices and the interpolation of morphs.
#include "geometry/matrix.h"

#include <gtest/gtest.h>

#include <random>

#include "geometry/interpolate.h"

namespace vexel {
namespace {

TEST(MatrixInvert, OfASingularMatrixIsTheIdentity) {
  const MATRIX m = {kFixedOne, kFixedOne, kFixedOne, kFixedOne, 7, 8};
  MATRIX inverse;
  MatrixInvert(&m, &inverse);
  EXPECT_TRUE(MatrixIsIdentity(&inverse));
}

TEST(MatrixInvert, OfAZeroScaleIsTheIdentity) {
  for (const MATRIX& m : {MATRIX{0, 0, 0, 0, 5, 5}, MATRIX{kFixedOne, 0, 0, 0, 5, 5},
                          MATRIX{0, 0, 0, kFixedOne, 5, 5}}) {
    MATRIX inverse;
    MatrixInvert(&m, &inverse);
    EXPECT_TRUE(MatrixIsIdentity(&inverse));
  }
}

TEST(MatrixInvert, OfTinyElementsWithARotationKeepsFixedPoint) {
  const MATRIX m = {0x80, 0x40, -0x40, 0x80, 0, 0};
  MATRIX inverse;
  MatrixInvert(&m, &inverse);
  // The determinant is 0x5000 in units of 2^-32: 0x80 / 0x5000 is 409.6.
  EXPECT_EQ(inverse.a, 26843545);
  EXPECT_EQ(inverse.d, 26843545);
  EXPECT_EQ(inverse.b, -13421772);
  EXPECT_EQ(inverse.c, 13421772);
}

TEST(MatrixInvert, OfTheExtremeElementEnds) {
  const MATRIX m = {kInt32Min, 1, kInt32Min, kInt32Min, kInt32Min, kInt32Min};
  MATRIX inverse;
  MatrixInvert(&m, &inverse);
}

TEST(MatrixInvert, UndoesTheMatrix) {
  std::mt19937 random(4);
  for (int i = 0; i < 2000; ++i) {
    MATRIX m, scale, inverse;
    MatrixRotate(static_cast<SFIXED>(random() % (360 << 16)), &m);
    MatrixScale(0x4000 + static_cast<SFIXED>(random() % 0x40000),
                0x4000 + static_cast<SFIXED>(random() % 0x40000), &scale);
    MatrixConcat(&m, &scale, &m);
    m.tx = static_cast<SCOORD>(random() % 20000) - 10000;
    m.ty = static_cast<SCOORD>(random() % 20000) - 10000;
    MatrixInvert(&m, &inverse);
    SPOINT p = {3000, -4000}, q;
    MatrixTransformPoint(&m, &p, &q);
    MatrixTransformPoint(&inverse, &q, &q);
    ASSERT_NEAR(q.x, p.x, 8) << m.a << " " << m.b << " " << m.c << " " << m.d;
    ASSERT_NEAR(q.y, p.y, 8);
  }
}

TEST(MatrixConcat, MayStoreIntoItsArguments) {
  const MATRIX m = {0x18000, 0x4000, -0x2000, 0x8000, 100, -50};
  MATRIX expected, inPlace = m;
  MatrixConcat(&m, &m, &expected);
  MatrixConcat(&inPlace, &inPlace, &inPlace);
  EXPECT_TRUE(MatrixEqual(&inPlace, &expected, 0));
  EXPECT_EQ(expected.a, FixedMul(m.a, m.a) + FixedMul(m.b, m.c));
  EXPECT_EQ(expected.b, FixedMul(m.b, m.d) + FixedMul(m.a, m.b));
  EXPECT_EQ(expected.c, FixedMul(m.d, m.c) + FixedMul(m.c, m.a));
  EXPECT_EQ(expected.d, FixedMul(m.d, m.d) + FixedMul(m.c, m.b));
  EXPECT_EQ(expected.tx, FixedMul(100, m.a) + 100 + FixedMul(-50, m.c));
  EXPECT_EQ(expected.ty, FixedMul(-50, m.d) - 50 + FixedMul(100, m.b));
}

TEST(MatrixTransformPoint, RoundsEachProductByItself) {
  const MATRIX m = {0x8000, 0x8000, 0x8000, 0x8000, 10, 20};
  SPOINT p = {1, 1};
  MatrixTransformPoint(&m, &p, &p);
  EXPECT_EQ(p, (SPOINT{12, 22}));
  p = {1, 1};
  MatrixDeltaTransformPoint(&m, &p, &p);
  EXPECT_EQ(p, (SPOINT{2, 2}));
}

TEST(MatrixTransformRect, TakesTheBoundsOfTheCorners) {
  MATRIX m;
  MatrixRotate(90 << 16, &m);
  SRECT r = {0, 10, 0, 20};
  MatrixTransformRect(&m, &r, &r);
  EXPECT_EQ(r.xmin, -20);
  EXPECT_EQ(r.xmax, 0);
  EXPECT_EQ(r.ymin, 0);
  EXPECT_EQ(r.ymax, 10);
  RectSetEmpty(&r);
  MatrixTransformRect(&m, &r, &r);
  EXPECT_TRUE(RectIsEmpty(&r));
}

TEST(MatrixTransformThickness, NeverLosesALine) {
  MATRIX m;
  MatrixScale(655, 655, &m);
  EXPECT_EQ(MatrixTransformThickness(&m, 1), 1);
  EXPECT_EQ(MatrixTransformThickness(&m, 0), 0);
  MatrixScale(2 * kFixedOne, 2 * kFixedOne, &m);
  EXPECT_EQ(MatrixTransformThickness(&m, 100), 200);
}

TEST(MatrixMap, FromAZeroWidthCountsItAsOne) {
  const SRECT thin = {5, 5, 0, 10}, dst = {0, 100, 0, 100};
  MATRIX m;
  MatrixMap(&thin, &dst, &m);
  EXPECT_EQ(m.a, 100 * kFixedOne);
  EXPECT_EQ(m.d, 10 * kFixedOne);
  EXPECT_EQ(m.tx, -500);
}

TEST(MatrixMap, AlignsByTheLeftAndTheBottom) {
  const SRECT src = {0, 3, 0, 3}, dst = {10, 20, 10, 20};
  MATRIX m;
  MatrixMap(&src, &dst, &m);
  EXPECT_EQ(m.tx, 10);
  EXPECT_EQ(m.ty, 20 - FixedMul(3, m.d));
}

TEST(MatrixMapAspect, MeetsTheCentres) {
  const SRECT src = {0, 100, 0, 100}, dst = {0, 200, 0, 400};
  MATRIX m;
  MatrixMapAspect(&src, &dst, &m);
  EXPECT_EQ(m.a, 2 * kFixedOne);
  EXPECT_EQ(m.d, 2 * kFixedOne);
  EXPECT_EQ(m.tx, 0);
  EXPECT_EQ(m.ty, 100);
}

TEST(MatrixDecompose, GivesScalesAndDirection) {
  MATRIX m;
  MatrixRotate(90 << 16, &m);
  SPOINT scale;
  SFIXED rotation;
  MatrixDecompose(&m, &scale, &rotation);
  EXPECT_EQ(scale, (SPOINT{kFixedOne, kFixedOne}));
  EXPECT_EQ(rotation, 90 << 16);
}

TEST(MatrixIsScaleOnly, IsFalseForAMirrorImage) {
  MATRIX m;
  MatrixScale(-kFixedOne, kFixedOne, &m);
  EXPECT_FALSE(MatrixIsScaleOnly(&m));
  MatrixIdentity(&m);
  m.b = 16;
  m.c = -16;
  EXPECT_TRUE(MatrixIsScaleOnly(&m));
  m.b = 17;
  EXPECT_FALSE(MatrixIsScaleOnly(&m));
}

TEST(Interpolate, OfBytesCopiesTheEndsAndRoundsTheMean) {
  const SRGB a = {0, 10, 255, 40}, b = {255, 11, 0, 200};
  SRGB out;
  Interpolate(&a, &b, kFixedOne, &out);
  EXPECT_EQ(out.alpha, 200);
  EXPECT_EQ(out.red, 255);
  Interpolate(&a, &b, 0x20000, &out);
  EXPECT_EQ(out.red, 255);
  Interpolate(&a, &b, -5, &out);
  EXPECT_EQ(out.blue, 255);
  Interpolate(&a, &b, 0x8000, &out);
  EXPECT_EQ(out.red, 128);
  EXPECT_EQ(out.green, 11);
  EXPECT_EQ(out.blue, 128) << "255 - 127.5, ties upward";
  EXPECT_EQ(out.alpha, 120);
}

TEST(Interpolate, OfWordsIsNotClamped) {
  const RGBI a = {0, 100, 65535, 4}, b = {10, 50, 0, 4};
  RGBI out;
  Interpolate(&a, &b, 0x20000, &out);
  EXPECT_EQ(out.blue, 20);
  EXPECT_EQ(out.green, 0);
  EXPECT_EQ(out.red, 1) << "65535 - 131070, narrowed";
  EXPECT_EQ(out.alpha, 4);
}

TEST(Interpolate, GoesFieldByField) {
  const MATRIX a = {0, 2, 4, 6, 8, 10}, b = {100, 102, 104, 106, 108, 110};
  MATRIX m;
  Interpolate(&a, &b, 0x8000, &m);
  const MATRIX expected = {50, 52, 54, 56, 58, 60};
  EXPECT_TRUE(MatrixEqual(&m, &expected, 0));
  const SRECT r1 = {0, 10, 20, 30}, r2 = {2, 12, 22, 32};
  SRECT r;
  Interpolate(&r1, &r2, 0, &r);
  EXPECT_TRUE(RectEqual(&r, &r1, 0));
  Interpolate(&r1, &r2, kFixedOne, &r);
  EXPECT_TRUE(RectEqual(&r, &r2, 0));
}

}  // namespace
}  // namespace vexel
