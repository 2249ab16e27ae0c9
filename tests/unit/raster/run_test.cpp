#include "raster/run.h"

#include "paint_kit.h"
#include "raster/composite.h"

namespace vexel {
namespace {

using test::Over;
using test::PaintKit;
using test::Sixteenths;

constexpr uint32_t kBack = 0xFF0000FF;

TEST(Run, ThirteenthColorTakesTheTwelfthPlace) {
  PaintKit kit(2, 1);
  std::vector<uint32_t> shades;
  for (uint32_t i = 0; i < 13; i++) {
    shades.push_back(0x40000000u + (i << 16) + (3 * i << 8) + 0x30);
    kit.Box(kit.Solid(shades.back()), 0, 0, 8, 4);
  }
  kit.Paint();
  // Layers 12 to 2 stand in the first eleven places, and the lowest of all in
  // the twelfth. The overwritten place also makes the run impure, so that its
  // stacks are summed before the background comes in.
  uint32_t sum = shades[0];
  for (uint32_t i = 2; i < 13; i++) sum = Over(shades[i], sum);
  EXPECT_EQ(kit.At(0, 0), Over(sum, kBack));
}

TEST(Run, TwelveColorsStayPureAndComposeOneByOne) {
  PaintKit kit(2, 1);
  uint32_t expected = kBack;
  for (uint32_t i = 0; i < 12; i++) {
    const uint32_t shade = 0x40000000u + (i << 16) + (3 * i << 8) + 0x30;
    kit.Box(kit.Solid(shade), 0, 0, 8, 4);
    expected = Over(shade, expected);
  }
  kit.Paint();
  EXPECT_EQ(kit.At(0, 0), expected);
}

TEST(Run, FewerColorsOnOneSubScanlineMakeItImpure) {
  PaintKit kit(2, 1);
  const uint32_t lower = 0x55112233;
  const uint32_t upper = 0x31203010;
  kit.Box(kit.Solid(lower), 0, 0, 8, 4);
  kit.Box(kit.Solid(upper), 0, 0, 8, 3);
  kit.Paint();
  const uint32_t both = Over(upper, lower);
  uint32_t mean = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    mean |= ((both >> shift & 255) * 3 + (lower >> shift & 255)) / 4 << shift;
  }
  EXPECT_EQ(kit.At(0, 0), Over(mean, kBack));
}

TEST(Run, PureRunOfFourComposesOntoTheBackgroundColorByColor) {
  PaintKit kit(2, 1);
  const uint32_t lower = 0x55112233;
  const uint32_t upper = 0x31203010;
  kit.Box(kit.Solid(lower), 0, 0, 8, 4);
  kit.Box(kit.Solid(upper), 0, 0, 8, 4);
  kit.Paint();
  EXPECT_EQ(kit.At(0, 0), Over(upper, Over(lower, kBack)));
}

TEST(Run, RunInsideOnePixelCountsItsQuarters) {
  PaintKit kit(2, 1);
  kit.Box(kit.Solid(0xFF00FF00), 1, 0, 3, 4);
  kit.Paint();
  EXPECT_EQ(kit.At(0, 0), Over(Sixteenths(0xFF00FF00, 8), kBack));
}

TEST(Run, PixelSumsTheColorsOfAllItsRuns) {
  PaintKit kit(1, 1);
  kit.Box(kit.Solid(0xFFFF0000), 0, 0, 1, 4);
  kit.Box(kit.Solid(0xFF00FF00), 1, 0, 4, 4);
  kit.Paint();
  EXPECT_EQ(kit.At(0, 0), 0xFF3FBF00);
}

TEST(Run, CalcColorKeepsItsValueForThePixel) {
  PaintKit kit(8, 1);
  RColor* c = kit.Gradient(16, 0xFFFF0000, 0xFF0000FF, {kFixedOne * 64, 0, 0, kFixedOne, 0, 0});
  kit.raster.SetYCoord(0);
  RRun run = {};
  run.nStacks = 4;
  run.isPure = true;
  run.typeMask = colorGradient;
  for (auto& stack : run.stacks) stack[0] = c;
  RGBI first;
  run.CalcColor(3, 0, &first);
  c->rgb.red = 77;  // not asked for again: the key says that it is pixel 3
  RGBI second;
  run.CalcColor(3, 0, &second);
  EXPECT_EQ(second.red, 4 * 77);
  EXPECT_EQ(second.blue, first.blue);
  run.CalcColor(4, 0, &second);
  EXPECT_NE(second.red, 4 * 77);
}

TEST(Run, OpaqueRunMakesTheKeptAlphaFull) {
  PaintKit kit(8, 1);
  RColor* c = kit.Bitmap(1, 1, {0x10203040}, 65, {kFixedOne, 0, 0, kFixedOne, 0, 0});
  kit.raster.SetYCoord(0);
  RRun run = {};
  run.nStacks = 1;
  run.isPure = true;
  run.typeMask = colorBitmap;
  run.stackN[0] = 1;
  run.stacks[0][0] = c;
  RGBI out;
  run.CalcColor(0, 0, &out);
  EXPECT_EQ(out.alpha, 255);
  EXPECT_EQ(c->rgb.alpha, 255);
  // A run with a transparent colour takes what is kept.
  run.transparent = true;
  run.CalcColor(0, 0, &out);
  EXPECT_EQ(out.alpha, 255);
  run.CalcColor(1, 0, &out);
  EXPECT_EQ(out.alpha, 0x10);
}

}  // namespace
}  // namespace vexel
