#include "raster/raster.h"

#include "paint_kit.h"

namespace vexel {
namespace {

using test::Over;
using test::PaintKit;
using test::Sixteenths;

constexpr uint32_t kBack = 0xFF0000FF;
constexpr uint32_t kRed = 0xFFFF0000;
constexpr uint32_t kGreen = 0xFF00FF00;

TEST(Raster, AbuttingShapesOfOneColorLeaveNoSeam) {
  PaintKit kit(4, 1);
  RColor* c = kit.Solid(kRed);
  // The shared edge toggles the colour off and on again at the same x.
  kit.AddLayer(
      {kit.Edge(ruleEdgeEdge, c, nullptr, 0, 0, 0, 4), kit.Edge(ruleEdgeEdge, c, c, 6, 0, 6, 4),
       kit.Edge(ruleEdgeEdge, nullptr, c, 16, 0, 16, 4)},
      c);
  kit.Paint();
  for (int32_t x = 0; x < 4; x++) EXPECT_EQ(kit.At(x, 0), kRed) << x;
}

TEST(Raster, SliverBetweenSubScanlinesPaintsNothing) {
  PaintKit kit(4, 1);
  RColor* c = kit.Solid(kRed);
  // An edge list can't hold it: it would start and end on the same scanline.
  kit.Box(c, 0, 2, 16, 2);
  kit.Paint();
  for (int32_t x = 0; x < 4; x++) EXPECT_EQ(kit.At(x, 0), kBack);
}

TEST(Raster, OneSampleIsASixteenth) {
  PaintKit kit(3, 1);
  kit.Box(kit.Solid(kRed), 5, 1, 6, 2);
  kit.Paint();
  EXPECT_EQ(kit.At(0, 0), kBack);
  EXPECT_EQ(kit.At(1, 0), Over(Sixteenths(kRed, 1), kBack));
  EXPECT_EQ(kit.At(2, 0), kBack);
}

TEST(Raster, ThreeOfFourSubScanlinesPaintAlpha191) {
  PaintKit kit(4, 1);
  kit.Box(kit.Solid(kRed), 0, 1, 16, 4);
  kit.Paint();
  for (int32_t x = 0; x < 4; x++) EXPECT_EQ(kit.At(x, 0), Over(0xBFBF0000, kBack)) << x;
}

TEST(Raster, TransparentColorComposesOverBackground) {
  PaintKit kit(2, 1);
  kit.Box(kit.Solid(0x80800000), 0, 0, 8, 4);
  kit.Paint();
  EXPECT_EQ(kit.At(0, 0), Over(0x80800000, kBack));
}

TEST(Raster, TransparentColorComposesOverWhiteWithoutBackground) {
  PaintKit kit(2, 1);
  kit.raster.useBackground = false;
  kit.Box(kit.Solid(0x80800000), 0, 0, 8, 4);
  kit.Paint();
  // White whose alpha is 0.
  EXPECT_EQ(kit.At(0, 0), Over(0x80800000, 0x00FFFFFF));
}

TEST(Raster, ClipColorIsNeverDrawn) {
  PaintKit kit(4, 1);
  RColor* mask = kit.Clip();
  kit.Box(mask, 0, 0, 16, 4, OutermostClip());
  kit.Paint();
  for (int32_t x = 0; x < 4; x++) EXPECT_EQ(kit.At(x, 0), kBack);
}

TEST(Raster, MaskedColorShowsOnlyWhereAllMasksAreOn) {
  PaintKit kit(8, 2);
  RColor* outer = kit.Clip();
  RColor* inner = kit.Clip();
  RColor* c = kit.Solid(kRed);
  kit.Box(c, 0, 0, 32, 8, inner);
  kit.Box(inner, 8, 0, 32, 4, outer);
  kit.Box(outer, 0, 0, 20, 8, OutermostClip());
  kit.Paint();
  for (int32_t x = 0; x < 8; x++) {
    EXPECT_EQ(kit.At(x, 0), x >= 2 && x < 5 ? kRed : kBack) << x;
    EXPECT_EQ(kit.At(x, 1), kBack) << x;
  }
}

TEST(Raster, MaskLeftOnByAnOpenOutlineStaysOnInAPictureWithoutItsEdges) {
  PaintKit kit(4, 1);
  RColor* outer = kit.Clip();
  RColor* inner = kit.Clip();
  kit.AddLayer({kit.Edge(ruleEvenOdd, inner, nullptr, 0, 0, 0, 4)}, inner, outer);
  kit.AddLayer({kit.Edge(ruleEvenOdd, outer, nullptr, 0, 0, 0, 4)}, outer, OutermostClip());
  kit.Paint();
  kit.Box(kit.Solid(kRed), 0, 0, 8, 4, inner);
  kit.Paint();
  EXPECT_EQ(kit.At(0, 0), kRed);
  EXPECT_EQ(kit.At(3, 0), kBack);
  outer->visible = 0;
  kit.Box(kit.Solid(kGreen), 0, 0, 8, 4, inner);
  kit.Paint();
  EXPECT_EQ(kit.At(0, 0), kRed);
}

TEST(Raster, ColorClippedByTheMarkItselfIsShown) {
  PaintKit kit(2, 1);
  kit.Box(kit.Solid(kRed), 0, 0, 8, 4, OutermostClip());
  kit.Paint();
  EXPECT_EQ(kit.At(0, 0), kRed);
}

TEST(Raster, ClippedOpaqueColorDoesNotHideWhereItsMaskIsOff) {
  PaintKit kit(4, 1);
  RColor* mask = kit.Clip();
  kit.Box(kit.Solid(kGreen), 0, 0, 16, 4);
  kit.Box(kit.Solid(kRed), 0, 0, 16, 4, mask);
  kit.Box(mask, 8, 0, 16, 4, OutermostClip());
  kit.Paint();
  EXPECT_EQ(kit.At(0, 0), kGreen);
  EXPECT_EQ(kit.At(1, 0), kGreen);
  EXPECT_EQ(kit.At(2, 0), kRed);
}

TEST(Raster, LineThatStartsAboveTheClipEntersByMultiplication) {
  PaintKit kit(8, 2);
  RColor* c = kit.Solid(kRed);
  kit.AddLayer({kit.Edge(ruleEvenOdd, c, nullptr, 0, -32, 40, 8),
                kit.Edge(ruleEvenOdd, c, nullptr, 64, -32, 64, 8)},
               c);
  kit.Paint();
  // x at scanline y is 32 + y: 32..35 in row 0, past the buffer; 36.. below.
  PaintKit same(8, 2);
  RColor* d = same.Solid(kRed);
  same.AddLayer({same.Edge(ruleEvenOdd, d, nullptr, 32, 0, 40, 8),
                 same.Edge(ruleEvenOdd, d, nullptr, 64, 0, 64, 8)},
                d);
  same.Paint();
  for (int32_t x = 0; x < 8; x++) {
    EXPECT_EQ(kit.At(x, 0), same.At(x, 0));
    EXPECT_EQ(kit.At(x, 1), same.At(x, 1));
  }
}

TEST(Raster, CurveThatStartsAboveTheClipIsCaughtUp) {
  // The same picture, once whole and once with the top rows clipped away.
  const auto paint = [](PaintKit* kit) {
    RColor* c = kit->Solid(kRed);
    kit->AddLayer({kit->Curve(ruleEvenOdd, c, 0, 0, 40, 10, 12, 32),
                   kit->Edge(ruleEvenOdd, c, nullptr, 60, 0, 60, 32)},
                  c);
    kit->Paint();
  };
  PaintKit whole(16, 8);
  paint(&whole);
  PaintKit part(16, 8);
  const SRECT clip = {0, 16, 5, 8};
  part.raster.Attach(&part.buffer, &clip, true);
  part.raster.BeginPaint();
  paint(&part);
  for (int32_t x = 0; x < 16; x++) {
    EXPECT_EQ(part.At(x, 4), kBack);
    for (int32_t y = 5; y < 8; y++) EXPECT_EQ(part.At(x, y), whole.At(x, y)) << x << "," << y;
  }
}

TEST(Raster, ShapeThatEndsAtTheClipPaintsNoFurtherRow) {
  PaintKit kit(2, 4);
  const SRECT clip = {0, 2, 0, 2};
  kit.raster.Attach(&kit.buffer, &clip, true);
  kit.raster.BeginPaint();
  kit.Box(kit.Solid(kRed), 0, 0, 8, 8);
  kit.Paint();
  EXPECT_EQ(kit.At(0, 1), kRed);
  EXPECT_EQ(kit.At(0, 2), kBack);
}

TEST(Raster, EdgeThatStartsAtTheLowerLimitHasAPlace) {
  PaintKit kit(2, 4);
  const SRECT clip = {0, 2, 0, 2};
  kit.raster.Attach(&kit.buffer, &clip, true);
  kit.raster.BeginPaint();
  kit.Box(kit.Solid(kRed), 0, 8, 8, 16);
  kit.Paint();
  for (int32_t y = 0; y < 4; y++) EXPECT_EQ(kit.At(0, y), kBack);
}

TEST(Raster, EmptyClipPaintsNothing) {
  for (const bool antialias : {false, true}) {
    PaintKit kit(2, 2, antialias);
    SRECT clip;
    RectSetEmpty(&clip);
    kit.raster.Attach(&kit.buffer, &clip, antialias);
    kit.raster.BeginPaint();
    kit.Box(kit.Solid(kRed), -30000, -30000, 30000, 30000);
    kit.Paint();
    EXPECT_EQ(kit.At(0, 0), kBack);
  }
}

TEST(Raster, NullBufferTakesEdgesAndPaintsNothing) {
  PaintKit kit(2, 2);
  kit.raster.Attach(nullptr, nullptr, true);
  EXPECT_FALSE(kit.raster.BitsValid());
  kit.raster.BeginPaint();
  kit.Box(kit.Solid(kRed), 0, 0, 8, 8);
  kit.raster.PaintBits();
  EXPECT_EQ(kit.At(0, 0), kBack);
}

TEST(Raster, EdgeThatDoesNotGoDownIsPassedOver) {
  PaintKit kit(4, 4);
  RColor* c = kit.Solid(kRed);
  kit.AddLayer({kit.Edge(ruleEvenOdd, c, nullptr, 4, 8, 4, 8),
                kit.Edge(ruleEvenOdd, c, nullptr, 4, 12, 4, 4)},
               c);
  kit.Paint();
  EXPECT_EQ(kit.At(2, 2), kBack);
}

TEST(Raster, UnbalancedOutlineDoesNotRunIntoTheNextScanline) {
  PaintKit kit(4, 2);
  RColor* c = kit.Solid(kRed);
  kit.AddLayer({kit.Edge(ruleEvenOdd, c, nullptr, 4, 0, 4, 4)}, c);
  kit.Paint();
  EXPECT_EQ(kit.At(2, 0), kBack);  // no span is drawn behind the last edge
  EXPECT_EQ(kit.At(2, 1), kBack);
}

TEST(Raster, ColorsOfLaterLayersLieOnTop) {
  PaintKit kit(2, 1);
  RColor* upper = kit.Solid(kGreen);
  RColor* lower = kit.Solid(kRed);
  kit.Box(lower, 0, 0, 8, 4);
  kit.Box(upper, 0, 0, 4, 4);
  kit.Paint();
  EXPECT_EQ(kit.At(0, 0), kGreen);
  EXPECT_EQ(kit.At(1, 0), kRed);
}

TEST(Raster, LayerRisesWithoutColors) {
  PaintKit kit(2, 1);
  kit.raster.AddEdges(nullptr, nullptr, nullptr);
  EXPECT_EQ(kit.raster.layer, 0x10000u);
  EXPECT_FALSE(kit.raster.hasEdges);
}

TEST(Raster, WindingCountsDirections) {
  PaintKit kit(4, 1);
  RColor* c = kit.Solid(kRed);
  kit.AddLayer({kit.Edge(ruleWinding, c, nullptr, 0, 0, 0, 4, 1),
                kit.Edge(ruleWinding, c, nullptr, 4, 0, 4, 4, 1),
                kit.Edge(ruleWinding, c, nullptr, 8, 0, 8, 4, -1),
                kit.Edge(ruleWinding, c, nullptr, 12, 0, 12, 4, -1)},
               c);
  kit.Paint();
  EXPECT_EQ(kit.At(0, 0), kRed);
  EXPECT_EQ(kit.At(1, 0), kRed);
  EXPECT_EQ(kit.At(2, 0), kRed);
  EXPECT_EQ(kit.At(3, 0), kBack);
}

TEST(Raster, WindingCountWrapsAtEightBits) {
  PaintKit kit(4, 1);
  RColor* c = kit.Solid(kRed);
  std::vector<REdge*> list;
  for (int i = 0; i < 256; i++) list.push_back(kit.Edge(ruleWinding, c, nullptr, 4, 0, 4, 4, 1));
  list.push_back(kit.Edge(ruleWinding, c, nullptr, 8, 0, 8, 4, 1));
  list.push_back(kit.Edge(ruleWinding, c, nullptr, 12, 0, 12, 4, -1));
  kit.AddLayer(list, c);
  kit.Paint();
  EXPECT_EQ(kit.At(1, 0), kBack);
  EXPECT_EQ(kit.At(2, 0), kRed);
  EXPECT_EQ(kit.At(3, 0), kBack);
}

// Where edges meet, an outline that is left open ends its span and starts anew,
// or goes on and shows nothing, by the order of the edges.
TEST(Raster, OpenOutlinesFeelTheOrderOfMeetingEdges) {
  for (const int8_t first : {1, -1}) {
    PaintKit kit(4, 1);
    RColor* c = kit.Solid(kRed);
    const int8_t second = static_cast<int8_t>(-first);
    kit.AddLayer({kit.Edge(ruleWinding, c, nullptr, 0, 0, 0, 4, 1),
                  kit.Edge(ruleWinding, c, nullptr, 8, 0, 8, 4, first),
                  kit.Edge(ruleWinding, c, nullptr, 8, 0, 8, 4, second)},
                 c);
    kit.Paint();
    EXPECT_EQ(kit.At(0, 0), first == 1 ? kRed : kBack);
    EXPECT_EQ(kit.At(1, 0), first == 1 ? kRed : kBack);
    EXPECT_EQ(kit.At(2, 0), kBack);
  }
}

TEST(Raster, WindingEdgeWithoutDirectionIsHarmless) {
  PaintKit kit(4, 1);
  RColor* c = kit.Solid(kRed);
  kit.AddLayer({kit.Edge(ruleWinding, c, nullptr, 0, 0, 0, 4, 0),
                kit.Edge(ruleWinding, c, nullptr, 4, 0, 4, 4, 1),
                kit.Edge(ruleWinding, c, nullptr, 8, 0, 8, 4, -1)},
               c);
  kit.Paint();
  EXPECT_EQ(kit.At(1, 0), kRed);
}

TEST(Raster, FlushPaintsAndBeginsAgainOnTop) {
  PaintKit kit(2, 1);
  kit.raster.useBackground = false;
  kit.Box(kit.Solid(kRed), 0, 0, 8, 4);
  kit.raster.Flush();
  EXPECT_EQ(kit.At(0, 0), kRed);
  EXPECT_TRUE(kit.raster.useBackground);
  EXPECT_FALSE(kit.raster.hasEdges);
  EXPECT_EQ(kit.raster.layer, 0u);
}

TEST(Raster, FillBackgroundFillsTheClip) {
  for (const bool antialias : {false, true}) {
    PaintKit kit(3, 3, antialias);
    const SRECT clip = {1, 3, 1, 2};
    kit.raster.Attach(&kit.buffer, &clip, antialias);
    kit.raster.FillBackground({0, 255, 0, 255});
    EXPECT_TRUE(kit.raster.useBackground);
    for (int32_t y = 0; y < 3; y++) {
      for (int32_t x = 0; x < 3; x++) {
        EXPECT_EQ(kit.At(x, y), x >= 1 && y == 1 ? kGreen : kBack) << x << "," << y;
      }
    }
  }
}

TEST(Raster, WhiteBackgroundNeedsNoReading) {
  PaintKit kit(3, 3);
  kit.raster.FillBackground({255, 255, 255, 255});
  EXPECT_FALSE(kit.raster.useBackground);
  EXPECT_EQ(kit.At(2, 2), 0xFFFFFFFF);
}

TEST(Raster, UseAlphaChannelChangesOnlyTheNumberOf32Bits) {
  PaintKit kit(2, 2);
  const DrawRGBSlabProc draw = kit.raster.drawRGBSlab;
  kit.raster.UseAlphaChannel();
  EXPECT_EQ(kit.raster.pixelFormat, pix32A);
  EXPECT_EQ(kit.raster.drawRGBSlab, draw);
  PaintKit other(2, 2, true, pix16);
  other.raster.UseAlphaChannel();
  EXPECT_EQ(other.raster.pixelFormat, pix16);
}

TEST(Raster, InvertedBufferHasItsFirstRowAtTheBottom) {
  PaintKit kit(2, 3);
  kit.buffer.inverted = true;
  kit.raster.Attach(&kit.buffer, nullptr, true);
  kit.raster.BeginPaint();
  kit.Box(kit.Solid(kRed), 0, 0, 8, 4);
  kit.Paint();
  EXPECT_EQ(kit.At(0, 2), kRed);
  EXPECT_EQ(kit.At(0, 0), kBack);
}

TEST(Raster, FreeEmptiesKeepsTheMapBlocks) {
  PaintKit kit(2, 2);
  kit.raster.mapAlloc.Free(kit.raster.mapAlloc.Alloc());
  kit.raster.rampAlloc.Free(kit.raster.rampAlloc.Alloc());
  kit.raster.FreeEmpties();
  EXPECT_NE(kit.raster.mapAlloc.firstBlock, nullptr);
  EXPECT_EQ(kit.raster.rampAlloc.firstBlock, nullptr);
}

// A quadratic sort would take minutes.
TEST(Raster, ManyCrossingEdgesSortQuickly) {
  for (const bool antialias : {false, true}) {
    for (const FillRule rule : {ruleEvenOdd, ruleWinding}) {
      PaintKit kit(64, 16, antialias);
      RColor* c = kit.Solid(0x80800000);
      std::vector<REdge*> list;
      for (int i = 0; i < 50000; i++) {
        list.push_back(kit.Edge(rule, c, nullptr, i % 2 == 0 ? 30000 - i / 2 : -30000 + i, 0,
                                i % 2 == 0 ? -30000 : 30000, 64));
      }
      kit.AddLayer(list, c);
      kit.Paint();
    }
  }
}

TEST(Raster, MidEdgesWithoutAntialiasingFallOnWholePixels) {
  PaintKit kit(8, 2, false);
  kit.Box(kit.Solid(kRed), 2, 0, 5, 1);
  kit.Paint();
  for (int32_t x = 0; x < 8; x++) {
    EXPECT_EQ(kit.At(x, 0), x >= 2 && x < 5 ? kRed : kBack);
    EXPECT_EQ(kit.At(x, 1), kBack);
  }
}

}  // namespace
}  // namespace vexel
