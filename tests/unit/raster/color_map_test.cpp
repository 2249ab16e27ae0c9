#include "raster/color_map.h"

#include "paint_kit.h"

namespace vexel {
namespace {

RColorMap MapOf(int32_t mul, int32_t add, bool hasAlpha) {
  RColorMap map;
  BuildMapChannel(mul, add, map.red);
  BuildMapChannel(mul, add, map.green);
  BuildMapChannel(mul, add, map.blue);
  BuildMapChannel(mul, add, map.alpha);
  map.alpha[0] = 0;
  map.hasAlpha = hasAlpha;
  return map;
}

TEST(ColorMap, AlphaZeroGivesZeroWithoutADivision) {
  const RColorMap map = MapOf(256, 100, true);
  RGBI p = {5, 6, 7, 0};
  ApplyColorMap(&map, &p);
  EXPECT_EQ(PackPix32(p), 0u);
}

TEST(ColorMap, ChannelsAreHeldToTheirRange) {
  uint8_t table[256];
  BuildMapChannel(512, 0, table);
  EXPECT_EQ(table[100], 200);
  EXPECT_EQ(table[200], 255);
  BuildMapChannel(256, -50, table);
  EXPECT_EQ(table[40], 0);
  EXPECT_EQ(table[60], 10);
}

TEST(ColorMap, WithAlphaThePremultiplicationIsUndoneAndDone) {
  const RColorMap map = MapOf(256, 0, true);
  RGBI p = {64, 64, 64, 128};
  ApplyColorMap(&map, &p);
  EXPECT_EQ(p.alpha, 128);
  EXPECT_EQ(p.red, (64 * (0xFF00 / 128) >> 8) * 129 >> 8);
}

TEST(ColorMap, ChannelBrighterThanItsAlphaCountsAsFull) {
  const RColorMap map = MapOf(256, 0, true);
  RGBI p = {255, 0, 0, 1};
  ApplyColorMap(&map, &p);
  EXPECT_EQ(p.blue, 255 * 2 >> 8);
}

TEST(ColorMap, WithoutAlphaEachChannelGoesThroughItsTable) {
  const RColorMap map = MapOf(128, 0, false);
  RGBI p[2] = {{200, 100, 50, 255}, {2, 4, 6, 8}};
  ApplyColorMap(&map, p, 2);
  EXPECT_EQ(PackPix32(p[0]), 0x7F193264u);
  EXPECT_EQ(PackPix32(p[1]), 0x04030201u);
}

}  // namespace
}  // namespace vexel
