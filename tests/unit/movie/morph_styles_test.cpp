// The style tables of morph shapes.
#include <gtest/gtest.h>

#include <memory>

#include "author/writer.h"
#include "geometry/interpolate.h"
#include "movie/shape_parser.h"
#include "raster/rcolor.h"
#include "support/test_player.h"

namespace vexel {
namespace {

using author::Bytes;
using author::Matrix;
using author::MorphBuilder;
using author::MorphFill;

constexpr MATRIX kIdentity = {0x10000, 0, 0, 0x10000, 0, 0};

class MorphStyles : public ::testing::Test {
 protected:
  std::unique_ptr<SShapeParser> Read(const MorphBuilder& morph, SFIXED ratio) {
    author::BitWriter out;
    morph.Write(out);
    bytes = out.Take();
    auto parser = std::make_unique<SShapeParser>(&player, bytes.data(),
                                                 static_cast<int32_t>(bytes.size()), 0, &kIdentity);
    parser->GetDWord();  // where the end shape is
    parser->ratio = ratio;
    parser->getAlpha = true;
    EXPECT_TRUE(parser->GetMorphStyles());
    return parser;
  }

  test::TestPlayer player{10, 10};
  Bytes bytes;
};

TEST_F(MorphStyles, SolidsAreMixedAndThenPremultiplied) {
  MorphBuilder morph;
  morph.AddFill({0, 100, 200, 255}, {100, 200, 0, 0});
  auto parser = Read(morph, 0x8000);
  const RColor* color = parser->fillTable[1];
  EXPECT_EQ(color->rgb.alpha, Interpolate(255, 0, 0x8000));
  const int32_t scale = color->rgb.alpha + 1;
  EXPECT_EQ(color->rgb.red, 50 * scale >> 8);
  EXPECT_EQ(color->rgb.green, 150 * scale >> 8);
  EXPECT_EQ(color->rgb.blue, 100 * scale >> 8);
  EXPECT_TRUE(color->transparent);
  EXPECT_FALSE(Read(morph, 0)->fillTable[1]->transparent);
}

TEST_F(MorphStyles, GradientsMixMatricesPositionsAndColors) {
  MorphBuilder morph;
  MorphFill fill;
  fill.type = 0x12;
  fill.startMatrix = Matrix::Translate(100, 200);
  fill.endMatrix = Matrix::Scale(2, 2, 300, 0);
  fill.stops = {{10, {10, 20, 30}, 20, {30, 20, 10}}, {200, {0, 0, 0}, 100, {255, 255, 255, 7}}};
  morph.AddFill(fill);
  auto parser = Read(morph, 0x4000);
  const RColor* color = parser->fillTable[1];
  EXPECT_EQ(color->colorType, colorGradient);
  EXPECT_EQ(color->grad.fillStyle, kRadialFill);
  EXPECT_EQ(color->grad.gradMat.tx, 150);
  EXPECT_EQ(color->grad.gradMat.ty, 150);
  EXPECT_EQ(color->grad.gradMat.a, 0x14000);
  EXPECT_EQ(color->grad.ramp.nColors, 2);
  EXPECT_EQ(color->grad.ramp.colorRatio[0], Interpolate(10, 20, 0x4000));
  EXPECT_EQ(color->grad.ramp.colorRatio[1], 175);
  EXPECT_EQ(color->grad.ramp.color[0].red, 15);
  EXPECT_EQ(color->grad.ramp.color[0].blue, 25);
}

TEST_F(MorphStyles, AlphaOfEitherEndMakesAGradientTransparent) {
  for (int end = 0; end < 3; ++end) {
    MorphBuilder morph;
    MorphFill fill;
    fill.type = 0x10;
    const author::Color faded = {1, 2, 3, 254};
    fill.stops = {{0, end == 1 ? faded : author::Color{}, 0, end == 2 ? faded : author::Color{}}};
    morph.AddFill(fill);
    EXPECT_EQ(Read(morph, end == 1 ? 0x10000 : 0)->fillTable[1]->transparent, end != 0);
  }
}

TEST_F(MorphStyles, TextureStaysAtItsStart) {
  SCharacter* bitmap = player.CreateCharacter(5);
  bitmap->type = charBitmap;
  MorphBuilder morph;
  MorphFill fill;
  fill.type = 0x41;
  fill.bitmap = 5;
  fill.startMatrix = Matrix::Translate(100, 200);
  fill.endMatrix = Matrix::Translate(900, 900);
  morph.AddFill(fill);
  morph.AddFill({1, 2, 3}, {1, 2, 3});
  for (SFIXED ratio : {0, 0x8000, 0xFFFF}) {
    auto parser = Read(morph, ratio);
    EXPECT_EQ(parser->fillTable[1]->colorType, colorBitmap);
    EXPECT_EQ(parser->fillTable[1]->bm.bitsMat.tx, 100);
    EXPECT_EQ(parser->fillTable[1]->bm.bitsMat.ty, 200);
    EXPECT_EQ(parser->fillTable[2]->rgb.red, 1);
  }
}

TEST_F(MorphStyles, LinesMixWidthsAndColors) {
  MorphBuilder morph;
  morph.AddFill({1, 2, 3}, {1, 2, 3});
  morph.AddLine({20, 60, {0, 0, 0}, {200, 100, 50}});
  morph.AddLine({65535, 0, {}, {}});
  auto parser = Read(morph, 0x8000);
  EXPECT_EQ(parser->nLines, 2);
  EXPECT_EQ(parser->lineTable[1].thickness, 40);
  EXPECT_EQ(parser->lineTable[1].color->rgb.red, 100);
  EXPECT_EQ(parser->lineTable[1].color->order, 2u);
  EXPECT_EQ(parser->lineTable[2].thickness, Interpolate(65535, 0, 0x8000));
}

TEST_F(MorphStyles, StopsBeforeTheIndexWidths) {
  MorphBuilder morph;
  morph.AddFill({1, 2, 3}, {1, 2, 3});
  morph.AddLine({20, 60, {}, {}});
  morph.Style(1, 1).MoveTo({0, 0}, {0, 0}).LineTo({20, 0}, {40, 0});
  auto parser = Read(morph, 0);
  EXPECT_EQ(parser->nFillBits, 0);
  parser->InitBits();
  EXPECT_EQ(parser->GetBits(4), 1u);
  EXPECT_EQ(parser->GetBits(4), 1u);
}

TEST_F(MorphStyles, CountsMayBeExtended) {
  MorphBuilder morph;
  for (int i = 0; i < 300; ++i) morph.AddFill({1, 2, 3}, {1, 2, 3});
  morph.longLineCount = true;
  morph.AddLine({20, 60, {}, {}});
  auto parser = Read(morph, 0);
  EXPECT_EQ(parser->nFills, 300);
  EXPECT_EQ(parser->nLines, 1);
}

}  // namespace
}  // namespace vexel
