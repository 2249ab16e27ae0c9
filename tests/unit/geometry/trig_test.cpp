// Fixed-point products and quotients, sine, cosine and arctangent.
#include "geometry/trig.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geometry/sine_table.h"

namespace vexel {
namespace {

constexpr SFIXED Degrees(int n) {
  return n * kFixedOne;
}

TEST(FixedMul, SaturatesAtBothEnds) {
  EXPECT_EQ(FixedMul(kInt32Max, kInt32Max), kInt32Max);
  EXPECT_EQ(FixedMul(kInt32Min, kInt32Max), kInt32Min);
  EXPECT_EQ(FixedMul(kInt32Min, kInt32Min), kInt32Max);
}

TEST(FixedMul, RoundsTiesUpward) {
  EXPECT_EQ(FixedMul(1, 0x8000), 1);
  EXPECT_EQ(FixedMul(-1, 0x8000), 0);
  EXPECT_EQ(FixedMul(-3, 0x8000), -1);
}

TEST(FixedDiv, RecognisesOneOverflowOnly) {
  EXPECT_EQ(FixedDiv(kInt32Min, kFixedOne), kInt32Min);
  EXPECT_EQ(FixedDiv(0x8000, 1), kInt32Max);
  EXPECT_EQ(FixedDiv(-0x8000, -1), kInt32Max);
  EXPECT_EQ(FixedDiv(0x10000, 1), 0) << "larger quotients wrap";
  EXPECT_EQ(FixedDiv(0x18000, 1), kInt32Max) << "wraps to 0x80000000";
}

TEST(FixedDiv, TruncatesTowardZero) {
  EXPECT_EQ(FixedDiv(1, 3), 0x5555);
  EXPECT_EQ(FixedDiv(-1, 3), -0x5555);
}

TEST(FixedDiv, OfZeroDivisorGivesTheExtremeOfTheSign) {
  EXPECT_EQ(FixedDiv(0, 0), 0);
  EXPECT_EQ(FixedDiv(5, 0), kInt32Max);
  EXPECT_EQ(FixedDiv(-5, 0), kInt32Min);
}

TEST(FixedNearestMultiple, RoundsHalvesAwayFromZero) {
  EXPECT_EQ(FixedNearestMultiple(5, 10), 10);
  EXPECT_EQ(FixedNearestMultiple(4, 10), 0);
  EXPECT_EQ(FixedNearestMultiple(-5, 10), -10);
  EXPECT_EQ(FixedNearestMultiple(-4, 10), 0);
  EXPECT_EQ(FixedNearestMultiple(7, 0), 7);
  EXPECT_EQ(FixedNearestMultiple(kInt32Max, 1), kInt32Max);
}

TEST(SineTable, HoldsTruncatedSinesSymmetricAroundNinetyDegrees) {
  EXPECT_EQ(kSine[0], 0u);
  EXPECT_EQ(kSine[120], 0x40000000u);
  EXPECT_EQ(kSine[360], 0x80000000u);
  for (int k = 0; k < 512; ++k) {
    const double exact = std::sin(k * 3.14159265358979323846 / 720) * 2147483648.0;
    EXPECT_NEAR(kSine[k], exact, 1.001) << k;
    if (k > 208) {
      EXPECT_EQ(kSine[k], kSine[720 - k]) << k;
    }
  }
}

TEST(Sine, IsExactAtTheQuadrants) {
  EXPECT_EQ(_FPSin(0, 16, 16), 0);
  EXPECT_EQ(_FPSin(Degrees(90), 16, 16), 0x10000);
  EXPECT_EQ(_FPSin(Degrees(180), 16, 16), 0);
  EXPECT_EQ(_FPSin(Degrees(270), 16, 16), -0x10000);
  EXPECT_EQ(_FPSin(Degrees(-360), 16, 16), 0);
  EXPECT_EQ(_FPSin(Degrees(-90), 16, 16), -0x10000);
  EXPECT_EQ(_FPSin(Degrees(30), 16, 16), 0x8000);
  EXPECT_EQ(_FPSin(Degrees(3600 + 30), 16, 16), 0x8000);
}

TEST(Cosine, IsExactAtTheQuadrants) {
  EXPECT_EQ(_FPCos(0, 16, 16), 0x10000);
  EXPECT_EQ(_FPCos(Degrees(-360), 16, 16), 0x10000);
  EXPECT_EQ(_FPCos(Degrees(90), 16, 16), 0);
  EXPECT_EQ(_FPCos(Degrees(180), 16, 16), -0x10000);
  EXPECT_EQ(_FPCos(Degrees(270), 16, 16), 0);
  EXPECT_EQ(_FPCos(Degrees(60), 16, 16), 0x8000);
  EXPECT_EQ(_FPCos(Degrees(240), 16, 16), -0x8000);
}

TEST(Sine, InterpolatesOnlyAQuarterOfTheWay) {
  // An eighth of a degree is half a cell; the result lies an eighth of the way
  // from entry 0 to entry 1. Read with 30 bits the truncation does not hide it.
  const int32_t wrong = static_cast<int32_t>(kSine[1] / 2 / 2);
  const int32_t eighth = static_cast<int32_t>(kSine[1] / 8 / 2);
  EXPECT_NEAR(__FPSin(0x2000, 16, 30), eighth, 2);
  EXPECT_GT(std::abs(__FPSin(0x2000, 16, 30) - wrong), 1000);
}

TEST(Sine, TakesAnyArgument) {
  for (int32_t angle : {kInt32Min, kInt32Min + 1, -1, kInt32Max}) {
    for (int frac = -1; frac < 40; ++frac) {
      for (int out = -1; out < 40; ++out) {
        _FPSin(angle, frac, out);
        _FPCos(angle, frac, out);
        __FPSin(angle, frac, out);
        _FPATan(angle, frac, out);
        _FPATan2(angle, angle, frac, out);
      }
    }
    EXPECT_LE(std::abs(_FPSin(angle, 16, 16)), kFixedOne);
    EXPECT_LE(std::abs(_FPCos(angle, 16, 16)), kFixedOne);
    EXPECT_EQ(_FPSin(angle, 16, 99), _FPSin(angle, 16, 30));
    EXPECT_EQ(_FPSin(angle, 21, 16), _FPSin(angle, 20, 16));
    EXPECT_EQ(_FPATan(angle, 0, 16), _FPATan(angle, 2, 16));
  }
}

TEST(Sine, FollowsTheTrueSineWithinACell) {
  for (SFIXED a = Degrees(-720); a < Degrees(720); a += 997) {
    const double exact = std::sin(a / 65536.0 * 3.14159265358979323846 / 180) * 65536;
    EXPECT_NEAR(_FPSin(a, 16, 16), exact, 290) << a;
  }
}

TEST(ArcTangent, OfTheOriginIsNinetyDegrees) {
  EXPECT_EQ(_FPATan2(0, 0, 16, 16), 0x5A0000);
}

TEST(ArcTangent, OfTheNegativeXAxisIsPlus180Degrees) {
  EXPECT_EQ(_FPATan2(0, -1, 16, 16), Degrees(180));
}

TEST(ArcTangent, OfTheThirdQuadrantLiesBelowMinus90Degrees) {
  EXPECT_LT(_FPATan2(-1, -1, 16, 16), Degrees(-90));
  EXPECT_NEAR(_FPATan2(-1, -1, 16, 16), Degrees(-135), 64);
}

TEST(ArcTangent, OfVerticalVectorsIsExact) {
  EXPECT_EQ(_FPATan2(7, 0, 16, 16), Degrees(90));
  EXPECT_EQ(_FPATan2(-7, 0, 16, 16), Degrees(-90));
}

TEST(ArcTangent, FollowsTheTrueOne) {
  for (int32_t x = -0x50000; x < 0x50000; x += 331) {
    const double exact = std::atan(x / 65536.0) * 180 / 3.14159265358979323846 * 65536;
    EXPECT_NEAR(_FPATan(x, 16, 16), exact, 70) << x;
  }
}

TEST(ArcTangent, RoundsNinetyDegreesToTheResultsBits) {
  EXPECT_EQ(_FPATan2(1, 0, 16, 20), 0x5A00000);
  EXPECT_EQ(_FPATan2(1, 0, 16, 21), 0x5A00000 * 2);
  EXPECT_EQ(_FPATan2(1, 0, 16, 0), 90);
}

TEST(Tangent, IsTheQuotientOfSineAndCosine) {
  EXPECT_EQ(FixedTan(0), 0);
  EXPECT_EQ(FixedTan(Degrees(45)), 0x10000);
  EXPECT_EQ(FixedTan(Degrees(90)), kInt32Max);
}

}  // namespace
}  // namespace vexel
