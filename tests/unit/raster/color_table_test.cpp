#include "raster/color_table.h"

#include <gtest/gtest.h>

namespace vexel {
namespace {

TEST(ColorTable, IsMadeEmptyAndBlack) {
  const SColorTable table;
  EXPECT_EQ(table.n, 0);
  EXPECT_EQ(table.colors[255], 0u);
}

TEST(ColorTable, EqualComparesCountAndColoursButNotAlpha) {
  SColorTable a, b;
  a.n = b.n = 2;
  a.colors[1] = 0xFF112233;
  b.colors[1] = 0x00112233;
  EXPECT_TRUE(ColorTableEqual(&a, &b));
  b.colors[1] = 0xFF112234;
  EXPECT_FALSE(ColorTableEqual(&a, &b));
  b.colors[1] = 0xFF112233;
  b.colors[2] = 99;  // behind the count
  EXPECT_TRUE(ColorTableEqual(&a, &b));
  b.n = 3;
  EXPECT_FALSE(ColorTableEqual(&a, &b));
}

TEST(ColorTable, CopyTakesTheCountedEntries) {
  SColorTable a, b;
  a.n = 2;
  a.colors[0] = 1;
  a.colors[1] = 2;
  a.colors[2] = 3;
  b.colors[2] = 77;
  ColorTableCopy(&a, &b);
  EXPECT_EQ(b.n, 2);
  EXPECT_EQ(b.colors[0], 1u);
  EXPECT_EQ(b.colors[1], 2u);
  EXPECT_EQ(b.colors[2], 77u);
}

TEST(ColorTable, StandardColoursChangeRedFastest) {
  SColorTable table;
  SetStandardColors(&table);
  EXPECT_EQ(table.n, 216);
  EXPECT_EQ(table.colors[0], 0u);
  EXPECT_EQ(table.colors[1], 0x330000u);
  EXPECT_EQ(table.colors[6], 0x003300u);
  EXPECT_EQ(table.colors[36], 0x000033u);
  EXPECT_EQ(table.colors[215], 0xFFFFFFu);
}

TEST(ColorTable, StandardColoursLeaveAlphaAlone) {
  SColorTable table;
  table.colors[5] = 0xAB000000;
  SetStandardColors(&table);
  EXPECT_EQ(table.colors[5], 0xABFF0000u);
}

}  // namespace
}  // namespace vexel
