#include <gtest/gtest.h>

#include "raster/color_table.h"

namespace vexel {
namespace {

SColorTable Gray(uint32_t level) {
  SColorTable table;
  table.n = 2;
  table.colors[1] = level * 0x010101;
  return table;
}

TEST(ColorInfo, EqualPalettesShareOne) {
  const SColorTable table = Gray(200);
  SColorInfo* a = GetColorInfo(&table);
  SColorInfo* b = GetColorInfo(&table);
  EXPECT_EQ(a, b);
  EXPECT_EQ(a->refCount, 2);
  EXPECT_EQ(a->itab[kInverseTableSize - 1], 1);
  ReleaseColorInfo(a);
  EXPECT_EQ(firstColorInfo, b);
  ReleaseColorInfo(b);
  EXPECT_EQ(firstColorInfo, nullptr);
}

TEST(ColorInfo, CreatedOnesAreNotShared) {
  const SColorTable table = Gray(9);
  SColorInfo* a = CreateColorInfo(&table);
  EXPECT_EQ(a->refCount, 1);
  EXPECT_EQ(firstColorInfo, nullptr);
  SColorInfo* b = GetColorInfo(&table);
  EXPECT_NE(a, b);
  ReleaseColorInfo(a);
  EXPECT_EQ(firstColorInfo, b);
  ReleaseColorInfo(b);
}

TEST(ColorInfo, CanBeReleasedFromAnyPlaceInTheList) {
  const SColorTable tables[3] = {Gray(1), Gray(2), Gray(3)};
  SColorInfo* infos[3];
  for (int i = 0; i < 3; i++) infos[i] = GetColorInfo(&tables[i]);
  ReleaseColorInfo(infos[1]);
  EXPECT_EQ(firstColorInfo, infos[2]);
  EXPECT_EQ(infos[2]->next, infos[0]);
  ReleaseColorInfo(infos[0]);
  EXPECT_EQ(infos[2]->next, nullptr);
  ReleaseColorInfo(infos[2]);
  EXPECT_EQ(firstColorInfo, nullptr);
}

TEST(ColorInfo, ReleasingNullDoesNothing) {
  ReleaseColorInfo(nullptr);
}

}  // namespace
}  // namespace vexel
