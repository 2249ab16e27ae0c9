// The style tables of shapes.
#include <gtest/gtest.h>

#include <memory>

#include "author/writer.h"
#include "movie/budget.h"
#include "movie/shape_parser.h"
#include "raster/raster.h"
#include "raster/rcolor.h"
#include "support/test_player.h"

namespace vexel {
namespace {

using author::BitWriter;
using author::Bytes;
using author::Color;
using author::FillStyle;
using author::ShapeRecord;
using author::StyleTables;

constexpr MATRIX kIdentity = {0x10000, 0, 0, 0x10000, 0, 0};

class ShapeStyles : public ::testing::Test {
 protected:
  void Shape(const StyleTables& styles, const std::vector<ShapeRecord>& records = {}) {
    BitWriter out;
    author::WriteShape(out, styles, records, alpha);
    bytes = out.Take();
  }
  void Fills(const std::vector<FillStyle>& fills) {
    StyleTables styles;
    styles.fills = fills;
    Shape(styles);
  }
  std::unique_ptr<SShapeParser> Parser(const MATRIX& matrix = kIdentity) {
    auto parser = std::make_unique<SShapeParser>(&player, bytes.data(),
                                                 static_cast<int32_t>(bytes.size()), 0, &matrix);
    parser->getAlpha = alpha;
    return parser;
  }
  std::unique_ptr<SShapeParser> Read() {
    auto parser = Parser();
    EXPECT_TRUE(parser->GetStyles());
    return parser;
  }
  SCharacter* DefineBitmap(uint16_t id) {
    author::MovieWriter movie(10, 10);
    movie.DefineLossless(id, author::Picture(2, 2, Color{0, 255, 0}), false);
    const Bytes file = movie.Finish();
    player.PushDataBuf(file.data(), static_cast<int32_t>(file.size()));
    player.DoTag();
    return player.FindCharacter(id);
  }

  test::TestPlayer player{10, 10};
  bool alpha = true;
  Bytes bytes;
};

TEST_F(ShapeStyles, StylesAreNumberedFromOneAndLinkedAtTheHead) {
  StyleTables styles;
  styles.fills = {FillStyle::Solid({1, 2, 3}), FillStyle::Solid({4, 5, 6})};
  styles.lines = {{20, {7, 8, 9}}, {40, {10, 11, 12}}};
  Shape(styles);
  auto parser = Read();
  EXPECT_EQ(parser->nFills, 2);
  EXPECT_EQ(parser->nLines, 2);
  EXPECT_EQ(parser->nFillBits, 2);
  EXPECT_EQ(parser->nLineBits, 2);
  EXPECT_EQ(parser->fillTable[0], nullptr);
  EXPECT_EQ(parser->lineTable[0].color, nullptr);
  EXPECT_EQ(parser->fillTable[1]->order, 1u);
  EXPECT_EQ(parser->fillTable[2]->order, 2u);
  EXPECT_EQ(parser->lineTable[1].color->order, 3u);
  EXPECT_EQ(parser->lineTable[2].color->order, 4u);
  EXPECT_EQ(parser->ownColors, parser->lineTable[2].color);
  EXPECT_EQ(parser->ownColors->next, parser->lineTable[1].color);
  EXPECT_EQ(parser->fillTable[1]->rgb.red, 1);
  EXPECT_EQ(parser->fillTable[1]->rgb.blue, 3);
  EXPECT_EQ(parser->fillTable[1]->colorType, colorSolid);
  EXPECT_EQ(player.display.colorCount, 4);
  parser.reset();
  EXPECT_EQ(player.display.colorCount, 0);
}

TEST_F(ShapeStyles, WidthsGoThroughTheMatrix) {
  StyleTables styles;
  styles.lines = {{100, {}}, {0, {}}, {1, {}}};
  Shape(styles);
  const MATRIX half = {0x8000, 0, 0, 0x8000, 0, 0};
  auto parser = Parser(half);
  ASSERT_TRUE(parser->GetStyles());
  EXPECT_EQ(parser->lineTable[1].thickness, MatrixTransformThickness(&half, 100));
  EXPECT_EQ(parser->lineTable[2].thickness, 0);
  EXPECT_EQ(parser->lineTable[3].thickness, 1);
}

TEST_F(ShapeStyles, Counts254InlineAnd255Extended) {
  Fills(std::vector<FillStyle>(254, FillStyle::Solid({1, 2, 3})));
  auto parser = Read();
  EXPECT_EQ(parser->nFills, 254);
  const auto inside = [&](const void* p) {
    const auto* first = reinterpret_cast<const uint8_t*>(parser.get());
    const auto* at = static_cast<const uint8_t*>(p);
    return at >= first && at < first + sizeof(SShapeParser);
  };
  EXPECT_TRUE(inside(parser->fillTable));
  EXPECT_NE(parser->fillTable[254], nullptr);

  StyleTables styles;
  styles.fills.assign(3, FillStyle::Solid({1, 2, 3}));
  styles.longFillCount = true;
  Shape(styles);
  EXPECT_EQ(bytes[0], 255);
  parser = Read();
  EXPECT_EQ(parser->nFills, 3);
  EXPECT_FALSE(inside(parser->fillTable));
  EXPECT_TRUE(inside(parser->lineTable));

  styles.fills.assign(1000, FillStyle::Solid({1, 2, 3}));
  styles.lines.assign(700, {20, {}});
  Shape(styles);
  parser = Read();
  EXPECT_EQ(parser->nFills, 1000);
  EXPECT_EQ(parser->nLines, 700);
  EXPECT_EQ(parser->lineTable[700].color->order, 1700u);
}

TEST_F(ShapeStyles, SmallTableAfterASmallHeapTableGoesBackInline) {
  StyleTables first;
  first.fills.assign(3, FillStyle::Solid({1, 2, 3}));
  first.lines.assign(2, {20, {}});
  first.longFillCount = true;
  first.longLineCount = true;
  ShapeRecord change;
  change.flags = author::kChangeStyles;
  change.styles.fills.assign(200, FillStyle::Solid({4, 5, 6}));
  change.styles.lines.assign(200, {20, {}});
  Shape(first, {change});
  auto parser = Read();
  CURVE edge;
  EXPECT_EQ(parser->GetEdge(&edge), kEdgeNewStyles);
  EXPECT_EQ(parser->nFills, 200);
  EXPECT_EQ(parser->fillTable[200]->rgb.red, 4);
  EXPECT_EQ(parser->GetEdge(&edge), kEndOfShape);
}

TEST_F(ShapeStyles, NewStylesReplaceTheTablesAndKeepTheSelections) {
  StyleTables first;
  first.fills = {FillStyle::Solid({1, 1, 1}), FillStyle::Solid({2, 2, 2})};
  first.lines = {{20, {}}};
  ShapeRecord select;
  select.flags = author::kChangeFill1 | author::kChangeLine;
  select.fill1 = 2;
  select.line = 1;
  ShapeRecord change;
  change.flags = author::kChangeStyles | author::kChangeFill0;
  change.fill0 = 1;
  change.styles.fills = {FillStyle::Solid({9, 9, 9})};
  Shape(first, {select, change, ShapeRecord::LineBy({1, 2})});
  auto parser = Read();
  CURVE edge;
  EXPECT_EQ(parser->GetEdge(&edge), kEdgeFill1 | kEdgeLine);
  EXPECT_EQ(parser->GetEdge(&edge), kEdgeNewStyles | kEdgeFill0);
  EXPECT_EQ(parser->fill0, 1);
  EXPECT_EQ(parser->fill1, 2);
  EXPECT_EQ(parser->line, 1);
  EXPECT_EQ(parser->nFills, 1);
  EXPECT_EQ(parser->nLines, 0);
  EXPECT_EQ(parser->layer, 3);
  EXPECT_EQ(parser->fillTable[1]->rgb.red, 9);
  EXPECT_EQ(parser->fillTable[1]->order, 4u);
  EXPECT_EQ(player.display.colorCount, 4);
  EXPECT_EQ(parser->GetEdge(&edge), kEdgeRecord);
  EXPECT_EQ(edge.anchor2.y, 2);
}

TEST_F(ShapeStyles, AlphaBelow255Premultiplies) {
  Fills({FillStyle::Solid({200, 100, 255, 255}), FillStyle::Solid({200, 100, 255, 254}),
         FillStyle::Solid({200, 100, 255, 0})});
  auto parser = Read();
  EXPECT_EQ(parser->fillTable[1]->rgb.red, 200);
  EXPECT_FALSE(parser->fillTable[1]->transparent);
  EXPECT_EQ(parser->fillTable[2]->rgb.red, 200 * 255 >> 8);
  EXPECT_EQ(parser->fillTable[2]->rgb.green, 100 * 255 >> 8);
  EXPECT_EQ(parser->fillTable[2]->rgb.blue, 255 * 255 >> 8);
  EXPECT_EQ(parser->fillTable[2]->rgb.alpha, 254);
  EXPECT_TRUE(parser->fillTable[2]->transparent);
  EXPECT_EQ(parser->fillTable[3]->rgb.red, 200 >> 8);
  EXPECT_TRUE(parser->fillTable[3]->transparent);
}

TEST_F(ShapeStyles, ColorsWithoutAlphaBytesAreOpaque) {
  alpha = false;
  StyleTables styles;
  styles.fills = {FillStyle::Solid({200, 100, 50, 7})};
  styles.lines = {{20, {1, 2, 3, 4}}};
  Shape(styles);
  auto parser = Read();
  EXPECT_EQ(parser->fillTable[1]->rgb.alpha, 255);
  EXPECT_EQ(parser->lineTable[1].color->rgb.alpha, 255);
  EXPECT_EQ(parser->lineTable[1].color->rgb.blue, 3);
}

TEST_F(ShapeStyles, ColorTransformComesBeforePremultiplication) {
  StyleTables styles;
  styles.fills = {FillStyle::Solid({200, 100, 50})};
  styles.lines = {{20, {200, 100, 50}}};
  Shape(styles);
  auto parser = Parser();
  parser->cxform.aa = 128;
  parser->cxform.rb = 20;
  parser->cxform.CalcFlags();
  ASSERT_TRUE(parser->GetStyles());
  for (const RColor* color : {parser->fillTable[1], parser->lineTable[1].color}) {
    EXPECT_EQ(color->rgb.alpha, 127);
    EXPECT_EQ(color->rgb.red, 220 * 128 >> 8);
    EXPECT_EQ(color->rgb.green, 100 * 128 >> 8);
    EXPECT_TRUE(color->transparent);
  }
}

TEST_F(ShapeStyles, GradientsKeepTheirTypeAndStops) {
  const author::Matrix matrix = author::Matrix::Scale(0.5, 2, 30, 40);
  Fills({FillStyle::Linear(matrix, {{0, {1, 2, 3}}, {255, {4, 5, 6}}}),
         FillStyle::Radial(matrix, {{10, {1, 2, 3, 254}}})});
  auto parser = Read();
  const RColor* linear = parser->fillTable[1];
  EXPECT_EQ(linear->colorType, colorGradient);
  EXPECT_EQ(linear->grad.fillStyle, 0x10u);
  EXPECT_EQ(linear->grad.gradMat.a, 0x8000);
  EXPECT_EQ(linear->grad.gradMat.ty, 40);
  EXPECT_EQ(linear->grad.ramp.nColors, 2);
  EXPECT_EQ(linear->grad.ramp.colorRatio[1], 255);
  EXPECT_EQ(linear->grad.ramp.color[1].green, 5);
  EXPECT_FALSE(linear->transparent);
  EXPECT_EQ(parser->fillTable[2]->grad.fillStyle, kRadialFill);
  EXPECT_TRUE(parser->fillTable[2]->transparent);
}

TEST_F(ShapeStyles, GradientsReadAllStopsAndKeepEight) {
  std::vector<author::GradientStop> stops;
  for (int i = 0; i < 20; ++i) stops.push_back({static_cast<uint8_t>(i), {1, 2, 3}});
  Fills({FillStyle::Linear({}, stops), FillStyle::Solid({9, 9, 9})});
  auto parser = Read();
  EXPECT_EQ(parser->fillTable[1]->grad.ramp.nColors, 8);
  EXPECT_EQ(parser->fillTable[1]->grad.ramp.colorRatio[7], 7);
  EXPECT_EQ(parser->fillTable[2]->rgb.red, 9);
}

TEST_F(ShapeStyles, GradientWithoutStopsIsTransparentBlack) {
  Fills({FillStyle::Linear({}, {})});
  auto parser = Read();
  const GradColorRamp& ramp = parser->fillTable[1]->grad.ramp;
  EXPECT_EQ(ramp.nColors, 1);
  EXPECT_EQ(ramp.color[0].alpha, 0);
  EXPECT_EQ(ramp.color[0].red, 0);
  EXPECT_TRUE(parser->fillTable[1]->transparent);
}

TEST_F(ShapeStyles, ColorTransformFadesGradients) {
  Fills({FillStyle::Linear({}, {{0, {100, 100, 100}}})});
  for (int kind = 0; kind < 3; ++kind) {
    auto parser = Parser();
    parser->cxform.ra = 128;
    if (kind == 1) parser->cxform.aa = 255;
    if (kind == 2) parser->cxform.ab = -1;
    parser->cxform.CalcFlags();
    ASSERT_TRUE(parser->GetStyles());
    EXPECT_EQ(parser->fillTable[1]->grad.ramp.color[0].red, 50);
    EXPECT_EQ(parser->fillTable[1]->transparent, kind != 0);
  }
}

TEST_F(ShapeStyles, GradientIsTestedBeforeBitmap) {
  FillStyle both = FillStyle::Linear({}, {{0, {1, 2, 3}}});
  both.type = 0x50;
  Fills({both});
  EXPECT_EQ(Read()->fillTable[1]->colorType, colorGradient);
}

TEST_F(ShapeStyles, MissingBitmapShowsRed) {
  player.CreateCharacter(3);  // a shape
  Fills({FillStyle::Bitmap(77, {}), FillStyle::Bitmap(3, {})});
  auto parser = Parser();
  parser->raster = &player.display.raster;
  ASSERT_TRUE(parser->GetStyles());
  for (int i = 1; i <= 2; ++i) {
    const RColor* color = parser->fillTable[i];
    EXPECT_EQ(color->colorType, colorSolid);
    EXPECT_EQ(color->rgb.red, 255);
    EXPECT_EQ(color->rgb.green, 0);
    EXPECT_EQ(color->rgb.blue, 0);
    EXPECT_EQ(color->rgb.alpha, 255);
  }
}

TEST_F(ShapeStyles, BitmapsAreDecodedWhenAFillNeedsThem) {
  SCharacter* bitmap = DefineBitmap(5);
  Fills({FillStyle::Bitmap(5, author::Matrix::Scale(20, 20, 40, 60), true)});
  EXPECT_EQ(bitmap->bits.baseAddr, nullptr);
  auto parser = Parser();
  parser->cxform.ra = 100;
  parser->cxform.CalcFlags();
  ASSERT_TRUE(parser->GetStyles());
  const RColor* color = parser->fillTable[1];
  EXPECT_NE(bitmap->bits.baseAddr, nullptr);
  EXPECT_EQ(color->colorType, colorBitmap);
  EXPECT_EQ(color->bm.bitmap, &bitmap->bits);
  EXPECT_EQ(color->bm.fillStyle, 0x41);
  EXPECT_EQ(color->bm.bitsMat.a, 20 << 16);
  EXPECT_EQ(color->bm.bitsMat.ty, 60);
  EXPECT_EQ(color->bm.cxform.ra, 100);
  EXPECT_EQ(color->rgb.red, 255);
}

TEST_F(ShapeStyles, BitmapWithoutPixelsFallsBackToItsPlainColor) {
  SCharacter* bitmap = player.CreateCharacter(5);
  bitmap->type = charBitmap;
  Fills({FillStyle::Bitmap(5, {})});
  auto parser = Parser();
  parser->raster = &player.display.raster;
  ASSERT_TRUE(parser->GetStyles());
  EXPECT_EQ(parser->fillTable[1]->colorType, colorSolid);
  EXPECT_EQ(parser->fillTable[1]->rgb.red, 255);
}

// Attaches the rasterizer to the player's pixels.
class CachedStyles : public ShapeStyles {
 protected:
  std::unique_ptr<SShapeParser> ReadCached(const MATRIX& matrix, bool antialias) {
    SRECT clip = {0, 10, 0, 10};
    player.display.raster.Attach(&player.bits, &clip, antialias);
    auto parser = Parser(matrix);
    parser->raster = &player.display.raster;
    EXPECT_TRUE(parser->GetStyles());
    return parser;
  }
  // The same by hand: scale, shift, concatenate, invert.
  static MATRIX Inverse(MATRIX style, MATRIX device, bool antialias, int shift) {
    if (antialias) {
      const MATRIX quarter = {0x4000, 0, 0, 0x4000, 0, 0};
      MatrixConcat(&device, &quarter, &device);
    }
    style.tx = WrapShl(style.tx, shift);
    style.ty = WrapShl(style.ty, shift);
    device.tx = WrapShl(device.tx, shift);
    device.ty = WrapShl(device.ty, shift);
    MATRIX whole;
    MatrixConcat(&style, &device, &whole);
    MATRIX inverse;
    MatrixInvert(&whole, &inverse);
    return inverse;
  }
};

TEST_F(CachedStyles, MatricesAreInvertedWithExtraFractionBits) {
  DefineBitmap(5);
  Fills({FillStyle::Bitmap(5, author::Matrix::Rotate(30, 20, 20, 43, 61)),
         FillStyle::Linear(author::Matrix::Rotate(-10, 0.1, 0.3, 77, 99), {{0, {1, 2, 3}}})});
  const MATRIX device = {0xC000, 0x1000, -0x800, 0xD000, 37, 91};
  for (bool antialias : {false, true}) {
    auto parser = ReadCached(device, antialias);
    const RColor* bitmap = parser->fillTable[1];
    ASSERT_EQ(bitmap->colorType, colorBitmap);
    EXPECT_TRUE(bitmap->cacheValid);
    const MATRIX bm = Inverse(bitmap->bm.bitsMat, device, antialias, 16);
    EXPECT_TRUE(MatrixEqual(&bitmap->bm.invMat, &bm, 0));
    const RColor* gradient = parser->fillTable[2];
    EXPECT_TRUE(gradient->cacheValid);
    const MATRIX grad = Inverse(gradient->grad.gradMat, device, antialias, 8);
    EXPECT_TRUE(MatrixEqual(&gradient->grad.invGradMat, &grad, 0));
  }
}

TEST_F(CachedStyles, BitmapIsInUseWhileItsColorIsCached) {
  SCharacter* bitmap = DefineBitmap(5);
  Fills({FillStyle::Bitmap(5, {})});
  {
    auto parser = ReadCached(kIdentity, false);
    EXPECT_EQ(bitmap->bits.useCount, 1);
    EXPECT_FALSE(parser->fillTable[1]->transparent);
    player.FreeCharacter(5);
    EXPECT_NE(parser->fillTable[1]->bm.bitmap->baseAddr, nullptr);
  }
  EXPECT_EQ(bitmap->bits.useCount, 0);
}

TEST_F(CachedStyles, SolidsAreCachedToo) {
  Fills({FillStyle::Solid({1, 2, 3})});
  EXPECT_TRUE(ReadCached(kIdentity, true)->fillTable[1]->cacheValid);
}

TEST_F(ShapeStyles, CountsEndWithTheData) {
  BitWriter out;
  out.U8(255);
  out.U16(65535);
  out.U8(0);
  out.Append(Bytes{1, 2, 3, 255});
  bytes = out.Take();
  auto parser = Read();
  EXPECT_EQ(parser->nFills, 1);
  EXPECT_EQ(parser->nLines, 0);
  CURVE edge;
  EXPECT_EQ(parser->GetEdge(&edge), kEndOfShape);
}

TEST_F(ShapeStyles, ExhaustedColorsGiveTheShapeUp) {
  player.display.colorCount = kMaxStageColors - 1;
  Fills({FillStyle::Solid({1, 2, 3}), FillStyle::Solid({1, 2, 3})});
  {
    auto parser = Parser();
    EXPECT_FALSE(parser->GetStyles());
    EXPECT_EQ(parser->nFills, 1);
    EXPECT_NE(parser->ownColors, nullptr);
  }
  player.display.colorCount = 0;
}

TEST_F(ShapeStyles, ExhaustedColorsInNewStylesEndTheShape) {
  StyleTables first;
  ShapeRecord change;
  change.flags = author::kChangeStyles;
  change.styles.fills.assign(2, FillStyle::Solid({4, 5, 6}));
  Shape(first, {change, ShapeRecord::LineBy({1, 2})});
  auto parser = Read();
  player.display.colorCount = kMaxStageColors - 1;
  CURVE edge;
  EXPECT_EQ(parser->GetEdge(&edge), kEndOfShape);
  parser.reset();
  player.display.colorCount = 0;
}

}  // namespace
}  // namespace vexel
