#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "raster/color_table.h"
#include "unit/raster/raster_row.h"

namespace vexel {
namespace {

struct Itab {
  uint8_t cells[kInverseTableSize];
  explicit Itab(uint8_t fill = 0) { std::memset(cells, fill, sizeof cells); }
};

// The same by looking at each cell for itself, round by round.
void PlainInverseTable(const SColorTable& table, uint8_t* itab) {
  int dist[kInverseTableSize];
  for (int& d : dist) d = 255;
  int unset = kInverseTableSize;
  for (int radius = 3; radius <= 15 && unset > 0; radius++) {
    for (int i = 0; i < table.n; i++) {
      const int c[3] = {static_cast<int>(table.colors[i] >> 16 & 255),
                        static_cast<int>(table.colors[i] >> 8 & 255),
                        static_cast<int>(table.colors[i] & 255)};
      for (int cell = 0; cell < kInverseTableSize; cell++) {
        const int at[3] = {cell >> 8, cell >> 4 & 15, cell & 15};
        bool inside = true;
        int d = 0;
        for (int k = 0; k < 3; k++) {
          inside = inside && std::abs(at[k] - (c[k] >> 4)) <= radius;
          d += std::abs((at[k] == 15 ? 255 : at[k] * 16) - c[k]);
        }
        if (!inside) continue;
        if (d > 254) d = 254;
        if (d < dist[cell]) {
          if (dist[cell] == 255) unset--;
          dist[cell] = d;
          itab[cell] = static_cast<uint8_t>(i);
        }
      }
    }
  }
}

TEST(InverseTable, OneColourFillsAllCells) {
  for (const RGB8 color : {0x000000u, 0xFFFFFFu, 0x804020u}) {
    SColorTable table;
    table.n = 1;
    table.colors[0] = color;
    Itab itab(9);
    BuildInverseTable(&table, itab.cells);
    for (const uint8_t cell : itab.cells) ASSERT_EQ(cell, 0);
  }
}

TEST(InverseTable, AnEmptyPaletteLeavesItAsItWas) {
  const SColorTable table;
  Itab itab(123);
  BuildInverseTable(&table, itab.cells);
  for (const uint8_t cell : itab.cells) ASSERT_EQ(cell, 123);
}

TEST(InverseTable, TheLowerIndexKeepsACellAtEqualDistance) {
  SColorTable table;
  table.n = 3;
  table.colors[0] = 0xFFFFFF;
  table.colors[1] = 0x000000;
  table.colors[2] = 0x200000;
  Itab itab;
  BuildInverseTable(&table, itab.cells);
  EXPECT_EQ(itab.cells[InverseTableCell(1, 0, 0)], 1);  // 16 from both
  EXPECT_EQ(itab.cells[InverseTableCell(2, 0, 0)], 2);
}

TEST(InverseTable, DuplicatesGoToTheFirst) {
  SColorTable table;
  table.n = 4;
  for (int i = 0; i < 4; i++) table.colors[i] = 0x808080;
  Itab itab(5);
  BuildInverseTable(&table, itab.cells);
  for (const uint8_t cell : itab.cells) ASSERT_EQ(cell, 0);
}

TEST(InverseTable, FillCubeStaysInItsRadiusAndCountsNewCells) {
  Itab itab(200);
  ITabBuilder builder(itab.cells);
  builder.FillCube(0x808080, 7, 1);
  EXPECT_EQ(builder.remaining, kInverseTableSize - 27);
  EXPECT_EQ(itab.cells[InverseTableCell(8, 8, 8)], 7);
  EXPECT_EQ(itab.cells[InverseTableCell(7, 9, 8)], 7);
  EXPECT_EQ(itab.cells[InverseTableCell(10, 8, 8)], 200);
  builder.FillCube(0x808080, 8, 1);
  EXPECT_EQ(builder.remaining, kInverseTableSize - 27);
  EXPECT_EQ(itab.cells[InverseTableCell(8, 8, 8)], 7);
}

TEST(InverseTable, DistancesAbove254CountAsThat) {
  Itab itab(200);
  ITabBuilder builder(itab.cells);
  builder.FillCube(0x000000, 1, 15);
  EXPECT_EQ(builder.remaining, 0);
  EXPECT_EQ(builder.dist[InverseTableCell(15, 15, 15)], 254);
  EXPECT_EQ(itab.cells[InverseTableCell(15, 15, 15)], 1);
}

TEST(InverseTable, MatchesThePlainSearch) {
  test::Random random(11);
  for (const int32_t n : {2, 7, 16, 100, 256}) {
    const SColorTable table = test::RandomTable(random, n);
    Itab got, want;
    BuildInverseTable(&table, got.cells);
    PlainInverseTable(table, want.cells);
    EXPECT_EQ(std::memcmp(got.cells, want.cells, sizeof got.cells), 0) << n;
  }
}

}  // namespace
}  // namespace vexel
