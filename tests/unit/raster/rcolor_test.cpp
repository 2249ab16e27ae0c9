#include "raster/rcolor.h"

#include "paint_kit.h"
#include "raster/slabs.h"

namespace vexel {
namespace {

using test::PaintKit;

constexpr MATRIX kUnit = {kFixedOne, 0, 0, kFixedOne, 0, 0};

RColor* Ramp(PaintKit* kit, const GradColorRamp& stops) {
  RColor* c = kit->NewColor(colorGradient);
  c->grad.fillStyle = 16;
  c->grad.invGradMat = kUnit;
  c->grad.ramp = stops;
  c->BuildCache();
  return c;
}

TEST(RColor, GradientOfOneStopIsSolid) {
  PaintKit kit(2, 2);
  GradColorRamp stops = {};
  stops.nColors = 1;
  stops.colorRatio[0] = 100;
  stops.color[0] = {10, 20, 30, 255};
  const RColor* c = Ramp(&kit, stops);
  for (int32_t i = 0; i < kRampEntries; i++) EXPECT_EQ(c->grad.colorRamp[i], 0xFF0A141Eu) << i;
}

TEST(RColor, FirstStopAtZeroIsExactThere) {
  PaintKit kit(2, 2);
  const RColor* c = kit.Gradient(16, 0xFF102030, 0xFFFFFFFF, kUnit);
  EXPECT_EQ(c->grad.colorRamp[0], 0xFF102030u);
  EXPECT_EQ(c->grad.colorRamp[255], 0xFFFFFFFFu);
  EXPECT_EQ(c->grad.colorRamp[256], 0xFFFFFFFFu);
}

TEST(RColor, StopsOfEqualRatioMakeAHardStep) {
  PaintKit kit(2, 2);
  GradColorRamp stops = {};
  stops.nColors = 4;
  const uint8_t ratios[] = {0, 128, 128, 255};
  for (int i = 0; i < 4; i++) {
    stops.colorRatio[i] = ratios[i];
    stops.color[i] = i < 2 ? SRGB{255, 0, 0, 255} : SRGB{0, 0, 255, 255};
  }
  const RColor* c = Ramp(&kit, stops);
  EXPECT_EQ(c->grad.colorRamp[128], 0xFFFF0000u);
  // One entry takes up the second of the two stops.
  EXPECT_EQ(c->grad.colorRamp[130], 0xFF0000FFu);
}

TEST(RColor, FallingRatiosStayInRange) {
  PaintKit kit(2, 2);
  GradColorRamp stops = {};
  stops.nColors = 3;
  const uint8_t ratios[] = {200, 50, 100};
  for (int i = 0; i < 3; i++) {
    stops.colorRatio[i] = ratios[i];
    stops.color[i] = {static_cast<uint8_t>(i * 120), 255, 0, 255};
  }
  const RColor* c = Ramp(&kit, stops);
  for (int32_t i = 0; i < kRampEntries; i++) {
    EXPECT_EQ(c->grad.colorRamp[i] >> 24, 255u) << i;
    EXPECT_EQ(c->grad.colorRamp[i] & 0xFF00, 0xFF00u) << i;
  }
}

TEST(RColor, RampIsPremultiplied) {
  PaintKit kit(2, 2);
  const RColor* c = kit.Gradient(16, 0x80FF8040, 0x00FFFFFF, kUnit);
  EXPECT_EQ(c->grad.colorRamp[0], 0x80804020u);  // channels times 129 / 256
  EXPECT_EQ(c->grad.colorRamp[256], 0u);
}

TEST(RColor, PaletteThatHoldsTheColorNeedsNoMixing) {
  PaintKit kit(8, 8, true, pix8);
  const RColor* c = kit.Solid(0xFF3366CC);
  const uint8_t first = c->solid.pat[0][0];
  EXPECT_EQ(kit.buffer.cinfo->ctab.colors[first] & 0xFFFFFF, 0x3366CCu);
  for (const auto& row : c->solid.pat) {
    for (int i = 0; i < 4; i++) EXPECT_EQ(row[i], first);
  }
}

TEST(RColor, PaletteWithoutTheColorMixesTwo) {
  PaintKit kit(8, 8, true, pix8);
  const RColor* c = kit.Solid(0xFF1A1A1A);
  bool mixed = false;
  for (const auto& row : c->solid.pat) {
    for (int i = 0; i < 4; i++) mixed = mixed || row[i] != c->solid.pat[0][0];
  }
  EXPECT_TRUE(mixed);
}

TEST(RColor, WhiteOnOneBitIsAllSecondColorAndBlackAllFirst) {
  PaintKit kit(8, 8, true, pix8);
  SColorTable table;
  table.n = 2;
  table.colors[1] = 0xFFFFFF;
  SColorInfo* info = CreateColorInfo(&table);
  CBitBuffer buffer;
  ASSERT_TRUE(buffer.CreateBits(pix1, info, 8, 8));
  ReleaseColorInfo(info);
  kit.raster.Attach(&buffer, nullptr, true);
  const RColor* white = kit.Solid(0xFFFFFFFF);
  const RColor* black = kit.Solid(0xFF000000);
  for (int row = 0; row < 4; row++) {
    EXPECT_EQ(white->solid.pat[row][0], 0xFF);
    EXPECT_EQ(black->solid.pat[row][0], 0x00);
  }
}

TEST(RColor, MissingBitmapShowsItsSolidColor) {
  PaintKit kit(2, 2);
  RColor* c = kit.NewColor(colorBitmap);
  c->bm.bitmap = nullptr;
  c->BuildCache();
  EXPECT_EQ(c->colorType, colorSolid);
  EXPECT_TRUE(c->cacheValid);
  kit.Box(c, 0, 0, 8, 8);
  kit.Paint();
  EXPECT_EQ(kit.At(1, 1), 0xFFFF0000u);
}

TEST(RColor, CacheCountsTheUsesOfABitmap) {
  PaintKit kit(2, 2);
  RColor* c = kit.Bitmap(1, 1, {0xFFFFFFFF}, 64, kUnit);
  EXPECT_EQ(c->bm.bitmap->useCount, 1);
  c->BuildCache();
  EXPECT_EQ(c->bm.bitmap->useCount, 1);
  c->FreeCache();
  EXPECT_EQ(c->bm.bitmap->useCount, 0);
}

TEST(RColor, ColorTransformOfABitmapGoesThroughATable) {
  PaintKit kit(4, 4);
  RColor* c = kit.Bitmap(1, 1, {0xFF204060}, 64, kUnit);
  c->FreeCache();
  c->bm.cxform.ra = 128;
  c->bm.cxform.CalcFlags();
  c->BuildCache();
  ASSERT_NE(c->bm.colorMap, nullptr);
  EXPECT_EQ(c->bm.directBltProc, nullptr);
  kit.Box(c, 0, 0, 16, 16);
  kit.Paint();
  EXPECT_EQ(kit.At(1, 1), 0xFF104060u);
}

TEST(RColor, SolidDitherTwoDrawsByPixelsAndKeepsNoCache) {
  PaintKit kit(2, 2);
  kit.raster.solidDither = 2;
  const RColor* c = kit.Solid(0xFF123456);
  EXPECT_FALSE(c->cacheValid);
  EXPECT_EQ(c->drawSlabProc, DrawDitherSlab);
}

TEST(RColor, PatternsInvertAndPale) {
  PaintKit kit(4, 4);
  RColor* c = kit.NewColor(colorSolid);
  c->rgb = UnpackPix32(0xFF102030);
  c->pattern = 1;
  c->BuildCache();
  kit.Box(c, 0, 0, 16, 16);
  kit.Paint();
  EXPECT_EQ(kit.At(0, 0), 0xFF102030u);  // mask 0xA5A5, top bit set
  EXPECT_EQ(kit.At(1, 0), 0xFFFFFFFFu);
}

}  // namespace
}  // namespace vexel
