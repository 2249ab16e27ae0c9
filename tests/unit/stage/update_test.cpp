#include "support/stage_fixture.h"

namespace vexel::test {
namespace {

using author::Color;
using author::MovieWriter;
using author::Rect;
using author::ShapeBuilder;

constexpr uint32_t kWhite = 0xFFFFFF;
constexpr uint32_t kRed = 0xC80000;

ShapeBuilder Box(const Rect& r, Color color = Color{200, 0, 0}) {
  ShapeBuilder box;
  box.Style(box.AddFill(color)).Rectangle(r);
  return box;
}

// A red box of 10 by 10 pixels at the origin of 100 by 100, placed at depth 1.
author::Bytes BoxMovie() {
  MovieWriter movie(100, 100);
  movie.DefineShape(1, Box(Rect::Pixels(0, 0, 10, 10)));
  movie.Place(1, 1).FrameEnd().End();
  return movie.Finish();
}

class Updating : public StageFixture {
 protected:
  // Clears what a reader of the screen would have copied.
  SRECT TakeScreenDirt() {
    const SRECT r = stage.screenDirtyRect;
    RectSetEmpty(&stage.screenDirtyRect);
    return r;
  }
  SObject* BoxObject() {
    player.gotHeader = false;
    player.Push(BoxMovie());
    stage.Update();
    TakeScreenDirt();
    return player.rootObject->firstChild;
  }
};

TEST_F(Updating, PaintsTheWholeViewFirstAndThenOnlyWhatIsDirty) {
  SObject* box = BoxObject();
  EXPECT_EQ(player.Pixel(5, 5), kRed);
  EXPECT_EQ(player.Pixel(15, 5), kWhite);
  box->Modify();
  box->mat.tx = 40 * 20;
  stage.Update();
  EXPECT_EQ(player.Pixel(5, 5), kWhite);
  EXPECT_EQ(player.Pixel(45, 5), kRed);
  const SRECT dirt = TakeScreenDirt();
  EXPECT_EQ(dirt.xmin, 0);
  EXPECT_EQ(dirt.xmax, 52);
  EXPECT_EQ(dirt.ymin, 0);
  EXPECT_EQ(dirt.ymax, 12);
}

TEST_F(Updating, NothingDirtyPaintsNothing) {
  BoxObject();
  player.bits.baseAddr[0] = 0x55;
  stage.Update();
  EXPECT_EQ(player.bits.baseAddr[0], 0x55);
  const SRECT dirt = TakeScreenDirt();
  EXPECT_TRUE(RectIsEmpty(&dirt));
}

TEST_F(Updating, AnObjectThatMovesOffTheViewLeavesOnlyItsOldGroundDirty) {
  SObject* box = BoxObject();
  box->Modify();
  box->mat.tx = 500 * 20;
  stage.CalcUpdate();
  ASSERT_EQ(stage.dirtyCount, 1);
  EXPECT_EQ(stage.dirtyRect[0].xmax, 40 + 8) << "quarter-pixels";
  stage.Update();
  EXPECT_EQ(player.Pixel(5, 5), kWhite);
}

TEST_F(Updating, AnUnchangedObjectKeepsItsEdges) {
  SObject* box = BoxObject();
  const REdge* edges = box->edges;
  ASSERT_NE(edges, nullptr);
  stage.InvalidateRect(&stage.devViewRect);
  stage.Update();
  EXPECT_EQ(box->edges, edges);
  EXPECT_TRUE(box->drawn);
}

TEST_F(Updating, AParentsMoveMovesItsChildren) {
  SObject* box = BoxObject();
  player.rootObject->Modify();
  player.rootObject->mat.ty = 30 * 20;
  stage.CalcUpdate();
  EXPECT_EQ(box->devBounds.ymin, 120);
  EXPECT_EQ(box->edges, nullptr);
  EXPECT_FALSE(box->drawn);
  stage.Update();
  EXPECT_EQ(player.Pixel(5, 35), kRed);
}

TEST_F(Updating, AnInvisibleObjectIsUpdatedAndNotDrawn) {
  SObject* box = BoxObject();
  box->visible = false;
  box->Modify();
  stage.Update();
  EXPECT_FALSE(box->dirty);
  EXPECT_FALSE(box->drawn);
  EXPECT_EQ(player.Pixel(5, 5), kWhite);
}

TEST_F(Updating, WithoutATargetTheDirtIsThrownAway) {
  BoxObject()->Modify();
  stage.SetBits(nullptr);
  EXPECT_EQ(stage.dirtyCount, 1);
  stage.Update();
  EXPECT_EQ(stage.dirtyCount, 0);
  EXPECT_TRUE(RectIsEmpty(&stage.devDirtyUnion));
  const SRECT dirt = TakeScreenDirt();
  EXPECT_TRUE(RectIsEmpty(&dirt));
}

TEST_F(Updating, ATargetWithoutPixelsIsMarkedOnTheScreenAndNotPainted) {
  BoxObject();
  player.FreeBuffer();
  EXPECT_EQ(stage.dirtyCount, 1);
  stage.Update();
  EXPECT_EQ(stage.dirtyCount, 0);
  TakeScreenDirt();
}

TEST_F(Updating, DeviceUnitsBecomePixelsByTruncation) {
  stage.antialias = true;
  const SRECT dev = {7, 9, 7, 9};
  SRECT pixels;
  stage.CalcBitsDirty(&dev, &pixels);
  EXPECT_EQ(pixels.xmin, 1);
  EXPECT_EQ(pixels.ymin, 1);
  EXPECT_EQ(pixels.xmax, 2);
  EXPECT_EQ(pixels.ymax, 2);
  const SRECT below = {-7, -3, -4, 3};
  stage.CalcBitsDirty(&below, &pixels);
  EXPECT_EQ(pixels.xmin, -1);
  EXPECT_EQ(pixels.xmax, 0);
  EXPECT_EQ(pixels.ymin, -1);
  EXPECT_EQ(pixels.ymax, 0);
  SRECT empty;
  RectSetEmpty(&empty);
  stage.CalcBitsDirty(&empty, &pixels);
  EXPECT_TRUE(RectIsEmpty(&pixels));
  stage.antialias = false;
  stage.CalcBitsDirty(&dev, &pixels);
  EXPECT_EQ(pixels.xmax, 9);
}

// The growth of 2 pixels is what covers the pixels that truncation cuts off.
TEST_F(Updating, APartialPixelAtTheFarSideIsRepainted) {
  SObject* box = BoxObject();
  box->Modify();
  box->mat.tx = 7;  // about a third of a pixel
  stage.Update();
  EXPECT_NE(player.Pixel(10, 5), kWhite);
  box->Modify();
  box->mat.tx = 0;
  stage.Update();
  EXPECT_EQ(player.Pixel(10, 5), kWhite);
}

TEST_F(Updating, ABackgroundOf0LeavesTheOldPixelsAndMinus1PaintsWhite) {
  BoxObject();
  stage.SetBackgroundColor({0, 0, 0, 0}, 1);
  memset(player.bits.baseAddr, 0x40, static_cast<size_t>(player.bits.rowBytes) * 100);
  stage.Update();
  EXPECT_EQ(player.Pixel(50, 50), 0x404040u);
  EXPECT_EQ(player.Pixel(5, 5), kRed);
  stage.Reset();
  stage.Update();
  EXPECT_EQ(player.Pixel(50, 50), kWhite);
}

TEST_F(Updating, TheBackgroundColourFillsTheClipInEveryFormat) {
  for (const bool smooth : {true, false}) {
    player.highQuality = smooth;
    player.SetCamera(kCameraOnly);
    stage.SetBackgroundColor({10, 20, 30, 255}, stage.backgroundPriority + 1);
    stage.InvalidateRect(&stage.devViewRect);
    stage.Update();
    for (const int at : {0, 50, 99}) {
      EXPECT_EQ(player.Pixel(at, at), 0x0A141Eu);
    }
  }
}

TEST_F(Updating, OverlappingDirtIsPaintedOnce) {
  BoxObject();
  // A half-transparent box over a background of 0 darkens with every paint.
  MovieWriter movie(100, 100);
  movie.DefineShape(1, Box(Rect::Pixels(0, 0, 100, 100), Color{0, 0, 0, 128}));
  movie.Place(1, 1).FrameEnd().End();
  player.ClearScript();
  stage.SetBackgroundColor({0, 0, 0, 0}, 1);
  player.Push(movie.Finish());
  stage.Update();
  memset(player.bits.baseAddr, 0xFF, static_cast<size_t>(player.bits.rowBytes) * 100);
  const SRECT a = {40, 160, 40, 160};
  const SRECT b = {150, 280, 150, 280};
  stage.InvalidateRect(&a);
  stage.InvalidateRect(&b);
  ASSERT_EQ(stage.dirtyCount, 2);
  stage.Update();
  const uint32_t once = player.Pixel(20, 20);
  EXPECT_EQ(player.Pixel(60, 60), once);
  for (int i = 36; i < 44; ++i) EXPECT_EQ(player.Pixel(i, i), once) << i;
}

TEST_F(Updating, OfTwoObjectsAtOneDepthTheFirstPlacedLiesOnTop) {
  MovieWriter movie(100, 100);
  movie.DefineShape(1, Box(Rect::Pixels(0, 0, 10, 10)));
  movie.DefineShape(2, Box(Rect::Pixels(5, 0, 15, 10), Color{0, 0, 200}));
  movie.Place(1, 1).Place(2, 1).FrameEnd().End();
  player.gotHeader = false;
  player.Push(movie.Finish());
  stage.Update();
  EXPECT_EQ(player.Pixel(7, 5), kRed);
  EXPECT_EQ(player.Pixel(12, 5), 0x0000C8u);
}

TEST_F(Updating, TheFocusFrameLiesOnTopAndIsThreePixelsWide) {
  BoxObject();
  stage.tabFocusRect = {20, 120, 20, 80};  // quarter-pixels: 5..30 by 5..20
  stage.InvalidateRect(&stage.tabFocusRect);
  stage.Update();
  constexpr uint32_t kYellow = 0xFFFF00;
  for (const int y : {5, 6, 7, 17, 18, 19}) EXPECT_EQ(player.Pixel(10, y), kYellow) << y;
  for (const int x : {5, 6, 7, 27, 28, 29}) EXPECT_EQ(player.Pixel(x, 10), kYellow) << x;
  EXPECT_EQ(player.Pixel(8, 8), kRed) << "the frame is hollow";
  EXPECT_EQ(player.Pixel(4, 5), kRed);
  EXPECT_EQ(player.Pixel(30, 10), kWhite);
  stage.useFocusRect = false;
  stage.InvalidateRect(&stage.tabFocusRect);
  stage.Update();
  EXPECT_EQ(player.Pixel(20, 18), kWhite);
  EXPECT_EQ(stage.edgeCount, CountEdges(stage.root)) << "the frame's edges go back";
}

TEST_F(Updating, ALyingTargetRectangleIsCutToTheBuffer) {
  BoxObject();
  for (const SRECT& r : {SRECT{-50, 3000, -7, 900}, SRECT{20, 10, 5, 5}, SRECT{200, 300, 0, 10},
                         SRECT{kEmptyCoord, kEmptyCoord, kEmptyCoord, kEmptyCoord}}) {
    stage.UpdateRect(&r);
  }
  EXPECT_EQ(player.Pixel(5, 5), kRed);
}

}  // namespace
}  // namespace vexel::test
