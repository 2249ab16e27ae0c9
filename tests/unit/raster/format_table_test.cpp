#include "raster/format_table.h"

#include <gtest/gtest.h>

#include <string>

namespace vexel {
namespace {

TEST(FormatTable, RowsAgreeWithTheDepths) {
  const char* const names[] = {"pix1",   "pix2",  "pix4",  "pix8",  "pix16",
                               "pix16A", "pix24", "pix32", "pix32A"};
  for (int32_t i = 0; i < kPixelFormatCount; i++) {
    EXPECT_EQ(pixelFormats[i].depth, mapPixelFormatToDepth[i]);
    EXPECT_EQ(std::string(pixelFormats[i].name), names[i]);
    EXPECT_NE(pixelFormats[i].drawRGBSlab, nullptr);
    EXPECT_NE(pixelFormats[i].getBackground, nullptr);
    EXPECT_NE(pixelFormats[i].drawSolidSlab, nullptr);
  }
}

TEST(FormatTable, FormatsShareRoutinesWhereTheyReadAlike) {
  EXPECT_EQ(pixelFormats[pix16A].drawSolidSlab, DrawSolidSlab16);
  EXPECT_EQ(pixelFormats[pix32A].getBackground, GetBackground32);
  EXPECT_EQ(pixelFormats[pix32A].drawSolidSlab, DrawSolidSlab32);
}

TEST(FormatTable, DirectCopiesExistForFourFormatsFromThreeDepths) {
  for (int32_t format = 0; format < kPixelFormatCount; format++) {
    const bool has = format == pix8 || format == pix16 || format == pix16A || format == pix32;
    for (int32_t source = 0; source < kBitmapFormatCount; source++) {
      EXPECT_EQ(pixelFormats[format].directBlt[source] != nullptr, has && source >= bm8Bit)
          << format << " from " << source;
    }
  }
}

}  // namespace
}  // namespace vexel
