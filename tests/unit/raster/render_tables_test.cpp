#include "raster/render_tables.h"

#include <gtest/gtest.h>

namespace vexel {
namespace {

TEST(RenderTables, WeightsSumToEight) {
  BuildRenderTables();
  for (const auto& column : PixCoverage) {
    for (const auto& w : column) EXPECT_EQ(w[0] + w[1] + w[2] + w[3], 8);
  }
  const int32_t whole[] = {8, 0, 0, 0};
  const int32_t middle[] = {2, 2, 2, 2};
  const int32_t near[] = {6, 1, 1, 0};
  for (int i = 0; i < 4; i++) {
    EXPECT_EQ(PixCoverage[0][0][i], whole[i]);
    EXPECT_EQ(PixCoverage[4][4][i], middle[i]);
    EXPECT_EQ(PixCoverage[1][1][i], near[i]);
  }
}

TEST(RenderTables, SquaresStopAtSixteenBits) {
  BuildRenderTables();
  EXPECT_EQ(squareTable[255], 65025);
  EXPECT_EQ(squareTable[256], 65535);
  EXPECT_EQ(squareTable[257], 65535);
}

}  // namespace
}  // namespace vexel
