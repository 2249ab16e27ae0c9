// Quadratic curves.
#include "geometry/curve.h"

#include <gtest/gtest.h>

#include <random>

namespace vexel {
namespace {

CURVE Curve(SPOINT a, SPOINT c, SPOINT b) {
  return {a, c, b, false};
}
CURVE Line(SPOINT a, SPOINT b) {
  CURVE c;
  CurveSetLine(&a, &b, &c);
  return c;
}

TEST(CurveFlatness, OfAControlOnTheChordsMiddleIsZero) {
  const CURVE c = Curve({0, 0}, {50, 20}, {100, 40});
  EXPECT_FALSE(c.isLine);
  EXPECT_EQ(CurveFlatness(&c), 0);
  const CURVE bent = Curve({0, 0}, {50, 30}, {100, 0});
  EXPECT_EQ(CurveFlatness(&bent), 30);
  CURVE line = bent;
  line.isLine = true;
  EXPECT_EQ(CurveFlatness(&line), 0);
}

TEST(CurveCalcExtreme, FindsTheTopOfAnArch) {
  EXPECT_EQ(CurveCalcExtreme(0, 10, 0), 5);
  EXPECT_EQ(CurveCalcExtreme(0, 5, 10), 0) << "no second difference";
  EXPECT_EQ(CurveCalcExtreme(0, 5, 20), 0) << "before the start";
  EXPECT_EQ(CurveCalcExtreme(0, 18, 20), 0) << "beyond the end";
  EXPECT_EQ(CurveCalcExtreme(10, 0, 10), 5);
}

TEST(CurveTightBounds, HoldsTheExtremeAndNotTheControl) {
  const CURVE c = Curve({0, 0}, {50, 100}, {100, 0});
  SRECT r;
  CurveTightBounds(&c, &r);
  EXPECT_EQ(r.ymax, 50);
  CurveBounds(&c, &r);
  EXPECT_EQ(r.ymax, 100);
  EXPECT_EQ(r.xmin, 0);
  EXPECT_EQ(r.xmax, 100);
}

TEST(CurveBounds, EqualsTheUnionOfItsPoints) {
  std::mt19937 random(5);
  const auto point = [&] {
    return SPOINT{static_cast<int32_t>(random() % 2000) - 1000,
                  static_cast<int32_t>(random() % 2000) - 1000};
  };
  for (int i = 0; i < 10000; ++i) {
    CURVE c = Curve(point(), point(), point());
    c.isLine = i % 3 == 0;
    SRECT r, expected;
    CurveBounds(&c, &r);
    RectSetPoint2(&c.anchor1, &c.anchor2, &expected);
    if (!c.isLine) RectUnionPoint(&c.control, &expected);
    ASSERT_TRUE(RectEqual(&r, &expected, 0));
  }
}

TEST(CurveBoundsSect, RejectsCurvesApartAndMeasuresTheOthers) {
  const CURVE a = Curve({0, 0}, {5, 5}, {10, 0}), b = Line({20, 0}, {50, 2});
  SCOORD size1 = -1, size2 = -1;
  EXPECT_FALSE(CurveBoundsSect(&a, &b, 4, 5, &size1, &size2));
  EXPECT_EQ(size1, -1);
  EXPECT_TRUE(CurveBoundsSect(&a, &b, 5, 5, &size1, &size2));
  EXPECT_EQ(size1, 10);
  EXPECT_EQ(size2, 30);
}

TEST(CurveCalcPoint, MeetsTheAnchorsAndTheExactMiddle) {
  const CURVE c = Curve({-7, 3}, {40, 91}, {101, -20});
  SPOINT p;
  CurveCalcPoint(&c, 0, &p);
  EXPECT_EQ(p, c.anchor1);
  CurveCalcPoint(&c, kFixedOne, &p);
  EXPECT_TRUE(PointEqual(&p, &c.anchor2, 1));
  CurveCalcPoint(&c, 0x8000, &p);
  EXPECT_EQ(p, (SPOINT{(-7 + 80 + 101) / 4, (3 + 182 - 20) / 4}));
  const CURVE below = Curve({-1, -3}, {-1, -3}, {0, -1});
  CurveCalcPoint(&below, 0x8000, &p);
  EXPECT_EQ(p, (SPOINT{0, -2})) << "quarters toward zero";
}

TEST(CurveTangentAngle, FallsBackToTheChord) {
  const CURVE c = Curve({0, 0}, {0, 0}, {100, 100});
  const SPOINT end = {100, 100};
  EXPECT_EQ(CurveTangentAngle(&c, 0), PointAngle(&end, nullptr));
  const CURVE bent = Curve({0, 0}, {0, 20}, {100, 20});
  EXPECT_EQ(CurveTangentAngle(&bent, 0), 90 * kFixedOne);
  EXPECT_EQ(CurveTangentAngle(&bent, kFixedOne), 0);
  const CURVE shortArm = Curve({0, 0}, {0, 19}, {100, 0});
  EXPECT_EQ(CurveTangentAngle(&shortArm, 0), 0) << "an arm of 19 counts as 9";
}

TEST(CurveTangentAngle, IsThatOfTheNearerEnd) {
  const CURVE c = Curve({0, 0}, {0, 1000}, {1000, 1000});
  EXPECT_EQ(CurveTangentAngle(&c, 0x7FFF), 90 * kFixedOne);
  EXPECT_EQ(CurveTangentAngle(&c, 0x8000), 0);
}

TEST(CurveReverse, InPlaceSwapsTheAnchorsOnly) {
  CURVE c = Curve({1, 2}, {3, 4}, {5, 6});
  c.isLine = true;
  CurveReverse(&c, &c);
  EXPECT_EQ(c.anchor1, (SPOINT{5, 6}));
  EXPECT_EQ(c.anchor2, (SPOINT{1, 2}));
  EXPECT_EQ(c.control, (SPOINT{3, 4}));
  EXPECT_TRUE(c.isLine);
  CURVE other = Curve({0, 0}, {0, 0}, {0, 0});
  CurveReverse(&c, &other);
  EXPECT_EQ(other.anchor1, (SPOINT{1, 2}));
  EXPECT_EQ(other.control, (SPOINT{3, 4}));
  EXPECT_TRUE(other.isLine);
}

TEST(CurveStep, TakesAsManyStepsAsAsked) {
  const CURVE c = Curve({0, 0}, {100, 200}, {300, 0});
  CURVE_STEPPER st;
  CurveInitStepper(&c, 16, &st);
  for (int i = 0; i < 16; ++i) EXPECT_TRUE(CurveStep(&st)) << i;
  EXPECT_FALSE(CurveStep(&st));
  EXPECT_EQ(st.t, kFixedOne);
}

TEST(CurveStep, EndsShortByTheSecondDifferenceOverTheSteps) {
  const CURVE c = Curve({0, 0}, {0, 0}, {1600, 0});
  CURVE_STEPPER st;
  CurveInitStepper(&c, 16, &st);
  while (CurveStep(&st)) {
  }
  EXPECT_EQ(st.pt.x, 1500);
}

TEST(CurveInitStepper, CountsNoStepsAsOne) {
  const CURVE c = Curve({0, 0}, {50, 0}, {100, 0});
  CURVE_STEPPER st;
  CurveInitStepper(&c, 0, &st);
  EXPECT_TRUE(CurveStep(&st));
  EXPECT_FALSE(CurveStep(&st));
}

TEST(CurveLength, OfAStraightCurveIsThatOfItsChord) {
  const CURVE c = Curve({0, 0}, {800, 0}, {1600, 0});
  EXPECT_EQ(CurveLength(&c), 1600);
  const CURVE line = Line({0, 0}, {300, 0});
  EXPECT_EQ(CurveLength(&line), 300);
}

TEST(CurveFindLength, BeyondTheEndGivesTheLastParameter) {
  const CURVE c = Curve({0, 0}, {800, 0}, {1600, 0});
  EXPECT_EQ(CurveFindLength(&c, 100000), kFixedOne);
  EXPECT_EQ(CurveFindLength(&c, 800), 0x8000);
  EXPECT_EQ(CurveFindLength(&c, 850), 0x8800);
  EXPECT_EQ(CurveFindLength(&c, 0), 0);
  EXPECT_EQ(CurveFindLength(&c, -100), 0);
  const CURVE line = Line({0, 0}, {1600, 0});
  EXPECT_EQ(CurveFindLength(&line, 400), 0x4000);
  EXPECT_EQ(CurveFindLength(&line, 4000), kFixedOne);
  const CURVE point = Line({0, 0}, {0, 0});
  EXPECT_EQ(CurveFindLength(&point, 5), kFixedOne);
}

TEST(CurveNearestPoint, WithNoReachNeverSucceeds) {
  const CURVE c = Curve({0, 0}, {100, 200}, {200, 0});
  SPOINT out = {-9, -9};
  for (SPOINT p : {SPOINT{0, 0}, SPOINT{100, 100}, SPOINT{200, 0}}) {
    EXPECT_EQ(CurveNearestPoint(&c, &p, 0, &out), kNoParam);
    EXPECT_EQ(out, (SPOINT{-9, -9}));
  }
}

TEST(CurveNearestPoint, FindsThePointOfACurveAndOfALine) {
  const CURVE c = Curve({0, 0}, {1000, 2000}, {2000, 0});
  const SPOINT above = {1000, 1300};
  SPOINT out;
  EXPECT_NEAR(CurveNearestPoint(&c, &above, 1000, &out), 0x8000, 0x100);
  const SPOINT top = {1000, 1000};
  EXPECT_TRUE(PointEqual(&out, &top, 10));
  const CURVE line = Line({0, 0}, {400, 0});
  const SPOINT beside = {100, 50};
  EXPECT_EQ(CurveNearestPoint(&line, &beside, 51, &out), 0x4000);
  EXPECT_EQ(out, (SPOINT{100, 0}));
  EXPECT_EQ(CurveNearestPoint(&line, &beside, 50, &out), kNoParam);
}

TEST(CurveNearestPoint, IsAsNearAsASweepOfTheCurve) {
  std::mt19937 random(6);
  const auto point = [&] {
    return SPOINT{static_cast<int32_t>(random() % 4000), static_cast<int32_t>(random() % 4000)};
  };
  for (int i = 0; i < 300; ++i) {
    const CURVE c = Curve(point(), point(), point());
    const SPOINT p = point();
    SPOINT out;
    ASSERT_GE(CurveNearestPoint(&c, &p, 100000, &out), 0);
    SCOORD best = 100000;
    for (SFIXED t = 0; t <= kFixedOne; t += 64) {
      SPOINT q;
      CurveCalcPoint(&c, t, &q);
      best = std::min(best, PointDistance(&p, &q));
    }
    ASSERT_NEAR(PointDistance(&p, &out), best, 12) << i;
  }
}

TEST(CurveXRaySect, CountsTheTopAnchorAndNotTheBottomOne) {
  const CURVE c = Curve({100, 0}, {120, 50}, {100, 100});
  const SPOINT top = {0, 0}, bottom = {0, 100}, between = {0, 50}, right = {200, 50};
  EXPECT_EQ(CurveXRaySect(&c, &top, 0), 1);
  EXPECT_EQ(CurveXRaySect(&c, &bottom, 0), 0);
  EXPECT_EQ(CurveXRaySect(&c, &between, 0), 1);
  EXPECT_EQ(CurveXRaySect(&c, &right, 0), 0);
}

TEST(CurveXRaySect, TellsTheSideOfACurveWithinItsBox) {
  const CURVE c = Curve({0, 0}, {200, 500}, {0, 1000});
  const SPOINT left = {80, 500}, right = {120, 500};
  EXPECT_EQ(CurveXRaySect(&c, &left, 0) % 2, 1);
  EXPECT_EQ(CurveXRaySect(&c, &right, 0) % 2, 0);
}

TEST(CurveDivide, InPlaceAndAtParameters) {
  const CURVE c = Curve({0, 0}, {101, 200}, {301, 0});
  CURVE first, second;
  CurveDivide(&c, &first, &second);
  EXPECT_EQ(first.control, (SPOINT{50, 100}));
  EXPECT_EQ(second.control, (SPOINT{201, 100}));
  EXPECT_EQ(first.anchor2, (SPOINT{125, 100}));
  EXPECT_EQ(second.anchor1, first.anchor2);
  CURVE same = c;
  CurveDivide(&same, &same, &second);
  EXPECT_EQ(same.anchor2, first.anchor2);
  EXPECT_EQ(second.anchor2, c.anchor2);
  CurveDivide(&c, 0x4000, &first, &second);
  EXPECT_EQ(first.control, (SPOINT{25, 50}));
  EXPECT_EQ(second.control, (SPOINT{151, 150}));
  EXPECT_EQ(first.anchor2, (SPOINT{57, 75}));
}

TEST(CurveDivideTwo, OrdersItsParameters) {
  const CURVE c = Curve({0, 0}, {500, 1000}, {1000, 0});
  CURVE a1, m1, b1, a2, m2, b2;
  CurveDivideTwo(&c, 0x4000, 0xC000, &a1, &m1, &b1);
  CurveDivideTwo(&c, 0xC000, 0x4000, &a2, &m2, &b2);
  EXPECT_EQ(m1.anchor1, m2.anchor1);
  EXPECT_EQ(m1.anchor2, m2.anchor2);
  EXPECT_EQ(a1.anchor2, (SPOINT{250, 375}));
  const SPOINT end = {750, 375};
  EXPECT_TRUE(PointEqual(&m1.anchor2, &end, 12));
  EXPECT_EQ(b1.anchor2, c.anchor2);
}

TEST(CurveIsExtreme, WantsALongArm) {
  const CURVE sharp = Curve({0, 0}, {0, 100}, {20, 0}), round = Curve({0, 0}, {50, 50}, {100, 0});
  EXPECT_TRUE(CurveIsExtreme(&sharp));
  EXPECT_FALSE(CurveIsExtreme(&round));
  const CURVE small = Curve({0, 0}, {0, 13}, {0, 0});
  EXPECT_FALSE(CurveIsExtreme(&small));
  const CURVE larger = Curve({0, 0}, {0, 14}, {0, 0});
  EXPECT_TRUE(CurveIsExtreme(&larger));
}

TEST(CurveAdjust, KeepsTheLongerArm) {
  const CURVE c = Curve({0, 0}, {80, 40}, {100, 0});
  const SPOINT p1 = {0, 0}, p2 = {200, 0};
  CURVE out;
  CurveAdjust(&c, &p1, &p2, &out);
  EXPECT_EQ(out.control, (SPOINT{160, 80}));
  EXPECT_FALSE(out.isLine);
  const CURVE point = Curve({5, 5}, {9, 5}, {5, 5});
  CurveAdjust(&point, &p1, &p1, &out);
  EXPECT_EQ(out.control, (SPOINT{4, 0})) << "no chord: the scale is 1";
}

TEST(CurveTransform, KeepsTheFlag) {
  CURVE c = Line({0, 0}, {10, 20});
  MATRIX m;
  MatrixTranslate(5, 6, &m);
  CurveTransform(&c, &m, &c);
  EXPECT_EQ(c.anchor2, (SPOINT{15, 26}));
  EXPECT_EQ(c.control, (SPOINT{10, 16}));
  EXPECT_TRUE(c.isLine);
}

}  // namespace
}  // namespace vexel
