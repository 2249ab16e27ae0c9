#include "paint_kit.h"
#include "raster/slabs.h"

namespace vexel {
namespace {

using test::PaintKit;

constexpr uint16_t kTiled = 64;
constexpr uint16_t kClipped = 65;

// Row values 0xFF000000 + column + 16 * row.
std::vector<uint32_t> Numbered(int32_t width, int32_t height) {
  std::vector<uint32_t> v;
  for (int32_t y = 0; y < height; y++) {
    for (int32_t x = 0; x < width; x++) {
      v.push_back(0xFF000000u + static_cast<uint32_t>(x + 16 * y));
    }
  }
  return v;
}

TEST(BitmapSlab, TiledBitmapWithNegativeStartWraps) {
  PaintKit kit(8, 2);
  const MATRIX shifted = {kFixedOne, 0, 0, kFixedOne, -4 * kFixedOne, -kFixedOne};
  RColor* c = kit.Bitmap(3, 2, Numbered(3, 2), kTiled, shifted);
  kit.Box(c, 0, 0, 32, 8);
  kit.Paint();
  for (int32_t x = 0; x < 8; x++) {
    EXPECT_EQ(kit.At(x, 0), 0xFF000000u + static_cast<uint32_t>((x + 2) % 3 + 16)) << x;
    EXPECT_EQ(kit.At(x, 1), 0xFF000000u + static_cast<uint32_t>((x + 2) % 3)) << x;
  }
}

TEST(BitmapSlab, FallingStepSamplesPixelZeroAtTheRim) {
  PaintKit kit(8, 1);
  const MATRIX mirrored = {-kFixedOne, 0, 0, kFixedOne, 0, 0};
  RColor* c = kit.Bitmap(3, 1, Numbered(3, 1), kTiled, mirrored);
  kit.Box(c, 0, 0, 32, 4);
  kit.Paint();
  const uint32_t columns[] = {0, 2, 1, 0, 2, 1, 0, 2};
  for (int32_t x = 0; x < 8; x++) EXPECT_EQ(kit.At(x, 0), 0xFF000000u + columns[x]) << x;
}

TEST(BitmapSlab, ScaleOfOneOn16BitsCopiesAWholePiece) {
  PaintKit kit(600, 1, true, pix16);
  SBitmapCore* b = &kit.bitmaps.emplace_back();
  b->PIInit();
  ASSERT_TRUE(b->PICreate(bm16Bit, 600, 1, nullptr, 0));
  for (int32_t x = 0; x < 600; x++) {
    const auto v = static_cast<uint16_t>(x * 37);
    std::memcpy(b->baseAddr + 2 * x, &v, 2);
  }
  RColor* c = kit.NewColor(colorBitmap);
  c->bm.bitmap = b;
  c->bm.fillStyle = kTiled;
  c->bm.invMat = {kFixedOne, 0, 0, kFixedOne, 0, 0};
  c->bm.cxform.Clear();
  c->BuildCache();
  // The routine is called with whole pieces of 256 pixels.
  static int32_t calls[8];
  static int32_t nCalls;
  nCalls = 0;
  ASSERT_EQ(c->bm.directBltProc, Blt16to16);
  c->bm.directBltProc = [](BltInfo info, SPOINT& pos, int32_t count, void* dst) {
    calls[nCalls++ & 7] = count;
    Blt16to16(info, pos, count, dst);
  };
  kit.Box(c, 0, 0, 2400, 4);
  kit.Paint();
  ASSERT_EQ(nCalls, 3);
  EXPECT_EQ(calls[0], 256);
  EXPECT_EQ(calls[1], 256);
  EXPECT_EQ(calls[2], 88);
  EXPECT_EQ(std::memcmp(kit.buffer.baseAddr, b->baseAddr, 1200), 0);
}

TEST(BitmapSlab, ClippedBitmapRepeatsItsEdgeOutside) {
  PaintKit kit(8, 4);
  const MATRIX shifted = {kFixedOne, 0, 0, kFixedOne, -2 * kFixedOne, -kFixedOne};
  RColor* c = kit.Bitmap(3, 2, Numbered(3, 2), kClipped, shifted);
  kit.Box(c, 0, 0, 32, 16);
  kit.Paint();
  for (int32_t y = 0; y < 4; y++) {
    const int32_t row = y < 2 ? 0 : 1;
    for (int32_t x = 0; x < 8; x++) {
      const int32_t column = x < 2 ? 0 : x > 4 ? 2 : x - 2;
      EXPECT_EQ(kit.At(x, y), 0xFF000000u + static_cast<uint32_t>(column + 16 * row)) << x;
    }
  }
}

TEST(BitmapSlab, RightOutsideIsSampledOneStepTooFar) {
  PaintKit kit(4, 1);
  // Two bitmap pixels a device pixel: the position behind the span's end lies
  // outside, so the last pixel takes the edge instead of column 6.
  const MATRIX doubled = {2 * kFixedOne, 0, 0, kFixedOne, 0, 0};
  RColor* c = kit.Bitmap(8, 1, Numbered(8, 1), kClipped, doubled);
  kit.Box(c, 0, 0, 16, 4);
  kit.Paint();
  const uint32_t columns[] = {0, 2, 4, 7};
  for (int32_t x = 0; x < 4; x++) EXPECT_EQ(kit.At(x, 0), 0xFF000000u + columns[x]) << x;
}

TEST(BitmapSlab, EnormousStepsEnd) {
  PaintKit kit(64, 64);
  const MATRIX wild = {0x7FFFFFFF, -0x7FFFFFFF, 0x12345678, -0x7FFFFFFF, 0x7FFFFFFF, -5};
  for (const uint16_t style : {kTiled, kClipped}) {
    kit.Box(kit.Bitmap(3, 5, Numbered(3, 5), style, wild), 0, 0, 256, 256);
    kit.Paint();
  }
}

TEST(BitmapSlab, BitmapsOfFewBitsDrawOnlyTheirEdge) {
  PaintKit kit(8, 1);
  SBitmapCore* b = &kit.bitmaps.emplace_back();
  b->PIInit();
  SColorTable table;
  table.n = 2;
  table.colors[0] = 0xFF111111;
  table.colors[1] = 0xFF222222;
  ASSERT_TRUE(b->PICreate(bm1Bit, 4, 1, &table, 0));
  b->baseAddr[0] = 0xFF;
  RColor* c = kit.NewColor(colorBitmap);
  c->bm.bitmap = b;
  c->bm.fillStyle = kClipped;
  c->bm.invMat = {kFixedOne, 0, 0, kFixedOne, 0, 0};
  c->bm.cxform.Clear();
  c->BuildCache();
  kit.Box(c, 0, 0, 32, 4);
  kit.Paint();
  EXPECT_EQ(kit.At(0, 0), 0u);
  EXPECT_EQ(kit.At(5, 0), 0xFF222222u);
}

}  // namespace
}  // namespace vexel
