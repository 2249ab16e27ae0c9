#include "raster/color_transform.h"

#include <gtest/gtest.h>

#include <random>

#include "raster/rcolor.h"

namespace vexel {
namespace {

ColorTransform Make(int16_t aa, int16_t ab, int16_t ra, int16_t rb, int16_t ga, int16_t gb,
                    int16_t ba, int16_t bb) {
  ColorTransform t = {0, aa, ab, ra, rb, ga, gb, ba, bb};
  t.CalcFlags();
  return t;
}

ColorTransform Identity() {
  ColorTransform t;
  t.Clear();
  return t;
}

TEST(ApplyChannel, ClampsToAByte) {
  EXPECT_EQ(ApplyChannel(255, 256, 0), 255);
  EXPECT_EQ(ApplyChannel(255, 256, 1), 255);
  EXPECT_EQ(ApplyChannel(10, 256, -20), 0);
  EXPECT_EQ(ApplyChannel(100, 128, 7), 57);
}

TEST(ApplyChannel, RoundsNegativeProductsDown) {
  EXPECT_EQ(ApplyChannel(255, -1, 10), 9);  // -255 / 256 is -1 after the shift
}

TEST(ApplyChannel, LeavesSumsWithAClearSecondByteUnclamped) {
  EXPECT_EQ(ApplyChannel(255, -32768, -32768), -65408);
  EXPECT_EQ(ApplyChannel(255, -32768, -32641), -65281);
  EXPECT_EQ(ApplyChannel(255, -32768, -32640), 0);
  // The store keeps the low byte.
  SRGB c = {255, 0, 0, 0};
  EXPECT_EQ(Make(256, 0, -32768, -32768, 256, 0, 256, 0).Apply(c).red, 128);
}

TEST(ApplyChannelB, AddsOnly) {
  EXPECT_EQ(ApplyChannelB(100, 0, 50), 150);
  EXPECT_EQ(ApplyChannelB(200, 0, 56), 255);
  EXPECT_EQ(ApplyChannelB(200, 0, -201), 0);
}

TEST(ColorTransform, ClearedIsTheIdentity) {
  const ColorTransform t = Identity();
  EXPECT_EQ(t.flags, 0);
  RGBI p = {1, 2, 300, 4};
  t.Apply(&p, 1);
  EXPECT_EQ(p.red, 300);
  EXPECT_EQ(t.Apply(SRGB{9, 8, 7, 6}).green, 8);
}

TEST(ColorTransform, FlagsTellMultipliersAndAdditions) {
  EXPECT_EQ(Make(256, 0, 256, 0, 256, 0, 256, 0).flags, 0);
  EXPECT_EQ(Make(255, 0, 256, 0, 256, 0, 256, 0).flags, ColorTransform::kHasMul);
  EXPECT_EQ(Make(256, 0, 256, 0, 256, 0, 256, -1).flags, ColorTransform::kHasAdd);
  EXPECT_EQ(Make(256, 1, 0, 0, 256, 0, 256, 0).flags, 3);
}

TEST(ColorTransform, PixelsIgnoreMultipliersWhenTheFlagIsClear) {
  ColorTransform t = Make(256, 5, 256, 10, 256, -10, 256, 20);
  EXPECT_EQ(t.flags, 2);
  t.ra = 0;  // stale flags: the multiplier must not be read
  RGBI p = {30, 20, 10, 100};
  t.Apply(&p, 1);
  EXPECT_EQ(p.alpha, 105);
  EXPECT_EQ(p.red, 20);
  EXPECT_EQ(p.green, 10);
  EXPECT_EQ(p.blue, 50);
}

TEST(ColorTransform, ColoursUseMultipliersEvenWhenTheFlagIsClear) {
  ColorTransform t = Make(256, 0, 256, 10, 256, 0, 256, 0);
  t.ra = 0;
  EXPECT_EQ(t.Apply(SRGB{200, 0, 0, 0}).red, 10);
}

TEST(ColorTransform, TransformsTheCountedStopsOfARamp) {
  GradColorRamp ramp = {};
  ramp.nColors = 2;
  for (SRGB& c : ramp.color) c = {100, 100, 100, 100};
  Make(128, 0, 256, 1, 256, 2, 256, 3).Apply(&ramp);
  EXPECT_EQ(ramp.color[1].red, 101);
  EXPECT_EQ(ramp.color[1].green, 102);
  EXPECT_EQ(ramp.color[1].blue, 103);
  EXPECT_EQ(ramp.color[1].alpha, 50);
  EXPECT_EQ(ramp.color[2].red, 100);
}

TEST(ColorTransform, ConcatOntoAClearedOneCopiesFlagsToo) {
  ColorTransform stale = Make(256, 0, 128, 3, 256, 0, 256, 0);
  stale.flags = 7;
  ColorTransform t = Identity();
  t.Concat(&stale);
  EXPECT_TRUE(Equal(&t, &stale));
}

TEST(ColorTransform, ConcatOfAClearedOneChangesNothing) {
  ColorTransform t = Make(1, 2, 3, 4, 5, 6, 7, 8);
  const ColorTransform before = t, cleared = Identity();
  t.Concat(&cleared);
  EXPECT_TRUE(Equal(&t, &before));
}

TEST(ColorTransform, ConcatAppliesTheOtherFirst) {
  ColorTransform outer = Make(256, 0, 128, 10, 256, 0, 256, 0);
  const ColorTransform inner = Make(256, 0, 128, 21, 256, 0, 256, 0);
  outer.Concat(&inner);
  EXPECT_EQ(outer.ra, 64);
  EXPECT_EQ(outer.rb, 20);  // 10 + (128 * 21 >> 8)
  EXPECT_EQ(outer.flags, 3);
}

TEST(ColorTransform, ConcatKeepsSixteenBits) {
  ColorTransform outer = Make(256, 0, 32767, 32767, 256, 0, 256, 0);
  const ColorTransform inner = Make(256, 0, 512, 512, 256, 0, 256, 0);
  outer.Concat(&inner);
  EXPECT_EQ(outer.rb, static_cast<int16_t>(32767 + (32767 * 512 >> 8)));
  EXPECT_EQ(outer.ra, static_cast<int16_t>(32767 * 512 >> 8));
}

TEST(ColorTransform, ConcatWithItself) {
  ColorTransform t = Make(256, 0, 128, 100, 256, 0, 256, 0);
  t.Concat(&t);
  EXPECT_EQ(t.ra, 64);
  EXPECT_EQ(t.rb, 150);
}

TEST(ColorTransform, EqualComparesFlags) {
  ColorTransform a = Make(256, 0, 128, 3, 256, 0, 256, 0), b = a;
  EXPECT_TRUE(Equal(&a, &b));
  b.flags = 0;
  EXPECT_FALSE(Equal(&a, &b));
  b = a;
  b.bb = 1;
  EXPECT_FALSE(Equal(&a, &b));
}

TEST(ColorTransform, PixelsMatchThePlainFormula) {
  std::mt19937 random(7);
  for (int i = 0; i < 20000; i++) {
    const auto mul = static_cast<int16_t>(random());
    const auto add = static_cast<int16_t>(static_cast<int32_t>(random() % 1023) - 511);
    const int32_t v = static_cast<int32_t>(random() % 256);
    const int64_t r = ((int64_t{v} * mul) >> 8) + add;
    const int64_t want = r < 0 ? 0 : r > 255 ? 255 : r;
    EXPECT_EQ(ApplyChannel(v, mul, add), want) << v << " " << mul << " " << add;
  }
}

}  // namespace
}  // namespace vexel
