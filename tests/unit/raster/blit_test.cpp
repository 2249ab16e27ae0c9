#include "raster/blit.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "raster/dither.h"
#include "raster/format_table.h"
#include "unit/raster/raster_row.h"

namespace vexel {
namespace {

using test::Below;
using test::RasterRow;

constexpr int32_t kFormats[] = {bm8Bit, bm16Bit, bm32Bit};

// A bitmap of random pixels in memory of exactly its size.
class Source {
 public:
  Source(test::Random& random, int32_t format, int32_t width, int32_t height)
      : table(test::RandomTable(random, 256)), depth(SBitmapBitsPerPixel(format)) {
    const int32_t rowBytes = SBitmapCalcRowbytes(format, width);
    bytes.resize(static_cast<size_t>(rowBytes * height));
    for (uint8_t& b : bytes) b = static_cast<uint8_t>(random());
    info = {};
    info.baseAddr = bytes.data();
    info.rowBytes = rowBytes;
    info.colors = table.colors;
    info.width = width;
    info.height = height;
  }

  uint32_t Raw(int32_t x, int32_t y) const {
    uint32_t v = 0;
    for (int32_t i = depth / 8 - 1; i >= 0; i--) {
      v = v << 8 | bytes[static_cast<size_t>(y * info.rowBytes + x * (depth / 8) + i)];
    }
    return v;
  }

  SColorTable table;
  int32_t depth;
  std::vector<uint8_t> bytes;
  BltInfo info;
};

uint32_t Pix16(uint32_t v) {
  return 0xFF000000u | pix16Expand[v >> 10 & 31] << 16 | pix16Expand[v >> 5 & 31] << 8 |
         pix16Expand[v & 31];
}

// What a routine makes of the source pixel v, the plain way. `at` is the byte's
// column in the row.
uint32_t Plain(int32_t format, int32_t source, const Source& from, uint32_t v, int32_t y,
               int32_t at, const uint8_t* itab) {
  const uint32_t c = source == bm8Bit ? from.table.colors[v] : v;
  const uint32_t r = c >> 16 & 255, g = c >> 8 & 255, b = c & 255;
  switch (format) {
    case pix8: {
      const uint32_t d = dither8x8[y & 7][at & 7];
      uint32_t ch[3] = {r, g, b};
      if (source == bm16Bit) {
        for (uint32_t i = 0; i < 3; i++) ch[i] = (v >> (10 - 5 * i) & 31) * 8;
      }
      uint32_t cell = 0;
      for (const uint32_t channel : ch) cell = cell * 16 + std::min(15u, (channel + d) / 16);
      return itab[cell];
    }
    case pix16:
      return source == bm16Bit ? v : r / 8 * 1024 + g / 8 * 32 + b / 8;
    case pix16A:
      if (source == bm16Bit) return (v >> 5 << 6 | (v & 63)) & 0xFFFF;
      return r / 8 * 2048 + g / 4 * 32 + b / 8;
    default:
      return source == bm8Bit ? c & 0xFFFFFF : source == bm16Bit ? Pix16(v) : v;
  }
}

// A start and steps that keep n samples inside a bitmap.
struct Walk {
  SPOINT start;
  SFIXED dx, dy;
};
Walk RandomWalk(test::Random& random, int32_t width, int32_t height, int32_t n) {
  const auto axis = [&](int32_t size, SFIXED* start, SFIXED* step) {
    const uint32_t limit = static_cast<uint32_t>(size) << 16;
    const auto a = static_cast<int32_t>(Below(random, limit));
    const auto b = static_cast<int32_t>(Below(random, limit));
    *start = a;
    *step = n > 1 ? (b - a) / (n - 1) : 0;
  };
  Walk walk;
  axis(width, &walk.start.x, &walk.dx);
  axis(height, &walk.start.y, &walk.dy);
  if (Below(random, 3) == 0) walk.dy = 0;
  return walk;
}

TEST(Blit, DirectRoutinesMatchThePlainPixels) {
  test::Random random(21);
  for (const int32_t format : {pix8, pix16, pix16A, pix32}) {
    const int32_t bytesPerPixel = mapPixelFormatToDepth[format] / 8;
    for (const int32_t source : kFormats) {
      const BltProc proc = pixelFormats[format].directBlt[source];
      ASSERT_NE(proc, nullptr);
      for (int i = 0; i < 200; i++) {
        RasterRow row(format, 120, test::StandardTable(), static_cast<int32_t>(Below(random, 4)));
        row.SetRow(static_cast<int32_t>(Below(random, 16)));
        Source from(random, source, 1 + static_cast<int32_t>(Below(random, 40)),
                    1 + static_cast<int32_t>(Below(random, 9)));
        from.info.color = &row.color;
        from.info.itab = row.raster.cinfo->itab;
        const auto n = static_cast<int32_t>(Below(random, 100));
        const Walk walk = RandomWalk(random, from.info.width, from.info.height, n);
        from.info.dx = walk.dx;
        from.info.dy = walk.dy;

        const auto first = static_cast<int32_t>(Below(random, 20)) + row.raster.xOffset;
        auto want = row.Row();
        SPOINT at = walk.start;
        for (int32_t k = 0; k < n; k++) {
          const uint32_t v = Plain(format, source, from, from.Raw(at.x >> 16, at.y >> 16),
                                   row.raster.bitY, first + k, from.info.itab);
          for (int32_t byte = 0; byte < bytesPerPixel; byte++) {
            want[static_cast<size_t>((first + k) * bytesPerPixel + byte)] =
                static_cast<uint8_t>(v >> 8 * byte);
          }
          at.x += walk.dx;
          at.y += walk.dy;
        }
        SPOINT pos = walk.start;
        proc(from.info, pos, n, row.raster.rowAddr + first * bytesPerPixel);
        ASSERT_EQ(row.Row(), want) << "format " << format << " from " << source << " dx " << walk.dx
                                   << " dy " << walk.dy << " n " << n;
        ASSERT_EQ(pos, at);
      }
    }
  }
}

TEST(Blit, RoutinesIntoRGBIMatchThePlainPixels) {
  test::Random random(22);
  for (const int32_t source : kFormats) {
    for (int i = 0; i < 200; i++) {
      Source from(random, source, 1 + static_cast<int32_t>(Below(random, 40)),
                  1 + static_cast<int32_t>(Below(random, 9)));
      const auto n = static_cast<int32_t>(Below(random, 100));
      const Walk walk = RandomWalk(random, from.info.width, from.info.height, n);
      from.info.dx = walk.dx;
      from.info.dy = walk.dy;
      std::vector<RGBI> out(static_cast<size_t>(n) + 1, RGBI{1, 2, 3, 4});
      SPOINT pos = walk.start, at = walk.start;
      bltProcs[source](from.info, pos, n, out.data());
      for (int32_t k = 0; k < n; k++) {
        const uint32_t v = from.Raw(at.x >> 16, at.y >> 16);
        const uint32_t want = source == bm8Bit    ? from.table.colors[v]
                              : source == bm16Bit ? Pix16(v)
                                                  : v;
        ASSERT_EQ(test::Word(out[static_cast<size_t>(k)]), want);
        at.x += walk.dx;
        at.y += walk.dy;
      }
      ASSERT_EQ(test::Word(out.back()), 0x04030201u);
      ASSERT_EQ(pos, at);
    }
  }
}

TEST(Blit, PackedSourcesLeaveTheDestinationUntouched) {
  test::Random random(23);
  Source from(random, bm8Bit, 4, 4);
  from.info.dx = kFixedOne;
  RGBI out = {1, 2, 3, 4};
  SPOINT pos = {5, 6};
  for (const int32_t source : {bm1Bit, bm2Bit, bm4Bit}) {
    EXPECT_EQ(bltProcs[source], BltXtoI);
    bltProcs[source](from.info, pos, 1, &out);
  }
  EXPECT_EQ(test::Word(out), 0x04030201u);
  EXPECT_EQ(pos, (SPOINT{5, 6}));
}

TEST(Blit, From8To32BitsGivesAlphaZeroAndFrom16BitsAlpha255) {
  test::Random random(24);
  Source eight(random, bm8Bit, 1, 1), sixteen(random, bm16Bit, 1, 1);
  eight.table.colors[eight.bytes[0]] = 0xCC112233;
  uint32_t out = 0;
  SPOINT pos = {0, 0};
  Blt8to32(eight.info, pos, 1, &out);
  EXPECT_EQ(out, 0x00112233u);
  Blt16to32(sixteen.info, pos, 1, &out);
  EXPECT_EQ(out >> 24, 0xFFu);
}

TEST(Blit, The16ATargetTakesTheLowGreenBitFromBitFive) {
  test::Random random(25);
  Source from(random, bm16Bit, 1, 1);
  for (const auto& [v, want] : std::initializer_list<std::array<uint32_t, 2>>{{0x0020, 0x0060},
                                                                              {0x0040, 0x0080},
                                                                              {0x03E0, 0x07E0},
                                                                              {0x7FFF, 0xFFFF},
                                                                              {0x001F, 0x001F}}) {
    from.bytes[0] = static_cast<uint8_t>(v);
    from.bytes[1] = static_cast<uint8_t>(v >> 8);
    uint16_t out = 0;
    SPOINT pos = {0, 0};
    Blt16to16A(from.info, pos, 1, &out);
    EXPECT_EQ(out, want) << v;
  }
}

// Sampling that starts close below the next pixel tells the paths apart: a
// real step of more than one pixel jumps over one at once.
std::vector<uint32_t> Columns(BltProc proc, int32_t source, SFIXED dx, int32_t n, SPOINT* pos) {
  test::Random random(26);
  Source from(random, source, 300, 1);
  for (int32_t x = 0; x < 300; x++) {
    from.bytes[static_cast<size_t>(x * (from.depth / 8))] = static_cast<uint8_t>(x);
    from.bytes[static_cast<size_t>(x * (from.depth / 8) + 1)] = static_cast<uint8_t>(x >> 8);
  }
  from.info.dx = dx;
  *pos = {0x1FFFF, 0};
  std::vector<uint8_t> out(static_cast<size_t>(n) * 4);
  proc(from.info, *pos, n, out.data());
  std::vector<uint32_t> columns;
  for (int32_t i = 0; i < n; i++) {
    const auto at = static_cast<size_t>(i * (from.depth / 8));
    columns.push_back(out[at] | uint32_t{out[at + 1]} << 8);
  }
  return columns;
}

TEST(Blit, StepsNearOneTakeTheContiguousPath) {
  const struct {
    BltProc proc;
    int32_t source;
  } both[] = {{Blt16to16, bm16Bit}, {Blt32to32, bm32Bit}};
  for (const auto& [proc, source] : both) {
    SPOINT pos;
    auto got = Columns(proc, source, kFixedOne + 255, 4, &pos);
    EXPECT_EQ(got, (std::vector<uint32_t>{1, 2, 3, 4}));
    EXPECT_EQ(pos.x, 0x1FFFF + 4 * (kFixedOne + 255));
    got = Columns(proc, source, kFixedOne + 256, 4, &pos);
    EXPECT_EQ(got, (std::vector<uint32_t>{1, 3, 4, 5}));
    EXPECT_EQ(pos.x, 0x1FFFF + 4 * (kFixedOne + 256));
    EXPECT_EQ(Columns(proc, source, kFixedOne - 255, 4, &pos)[3], 4u);
  }
  // Only these two have it.
  SPOINT pos;
  EXPECT_EQ(Columns(Blt16to16A, bm16Bit, kFixedOne + 255, 2, &pos)[1], 3u);
}

TEST(Blit, AContiguousPieceThatOutgrowsTheRowGoesOnAtItsStart) {
  test::Random random(27);
  Source from(random, bm32Bit, 256, 1);
  from.info.dx = kFixedOne - 255;
  std::vector<uint32_t> out(256);
  SPOINT pos = {kFixedOne, 0};
  Blt32to32(from.info, pos, 256, out.data());
  EXPECT_EQ(out[254], from.Raw(255, 0));
  EXPECT_EQ(out[255], from.Raw(0, 0));
}

TEST(Blit, TheEndMayLieFarOutside) {
  test::Random random(28);
  Source from(random, bm32Bit, 2, 2);
  from.info.dx = kInt32Max;
  from.info.dy = kInt32Min;
  uint32_t out = 0;
  SPOINT pos = {kFixedOne, kFixedOne};
  Blt32to32(from.info, pos, 1, &out);
  EXPECT_EQ(out, from.Raw(1, 1));
  EXPECT_EQ(pos.x, WrapAdd(kFixedOne, kInt32Max));
}

}  // namespace
}  // namespace vexel
