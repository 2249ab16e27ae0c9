#include <memory>
#include <vector>

#include "movie/budget.h"
#include "support/stage_fixture.h"

namespace vexel::test {
namespace {

class Stage : public StageFixture {};

TEST_F(Stage, ABackgroundOfTheSamePriorityChangesNothing) {
  stage.SetBackgroundColor({1, 2, 3, 255}, 1);
  stage.dirtyCount = 0;
  stage.SetBackgroundColor({9, 9, 9, 255}, 1);
  EXPECT_EQ(stage.backgroundColor.red, 1);
  EXPECT_EQ(stage.dirtyCount, 0);
  stage.SetBackgroundColor({9, 9, 9, 255}, 2);
  EXPECT_EQ(stage.backgroundColor.red, 9);
  EXPECT_EQ(stage.dirtyCount, 1);
}

TEST_F(Stage, TheSameColourRaisesThePriorityAndInvalidatesNothing) {
  stage.dirtyCount = 0;
  stage.SetBackgroundColor({255, 255, 255, 255}, 5);
  EXPECT_EQ(stage.backgroundPriority, 5);
  EXPECT_EQ(stage.dirtyCount, 0);
}

TEST_F(Stage, AColourOfPriority2OutlivesAReset) {
  stage.SetBackgroundColor({1, 2, 3, 255}, 1);
  stage.dirtyCount = 0;
  stage.Reset();
  EXPECT_EQ(stage.backgroundColor.red, 255);
  EXPECT_EQ(stage.backgroundPriority, 0);
  EXPECT_EQ(stage.dirtyCount, 1);
  stage.SetBackgroundColor({1, 2, 3, 255}, 2);
  stage.dirtyCount = 0;
  stage.Reset();
  EXPECT_EQ(stage.backgroundColor.red, 1);
  EXPECT_EQ(stage.dirtyCount, 0);
}

TEST_F(Stage, EdgesAndColoursEndAtTheirBudgets) {
  std::vector<REdge*> edges;
  while (REdge* edge = stage.NewEdge()) edges.push_back(edge);
  EXPECT_EQ(edges.size(), static_cast<size_t>(kMaxEdges));
  for (REdge* edge : edges) stage.FreeEdge(edge);
  EXPECT_EQ(stage.edgeCount, 0);

  std::vector<RColor*> colors;
  while (RColor* color = stage.NewColor()) {
    color->SetUp(&stage.raster);
    colors.push_back(color);
  }
  EXPECT_EQ(colors.size(), static_cast<size_t>(kMaxStageColors));
  for (RColor* color : colors) stage.FreeColor(color);
  EXPECT_EQ(stage.colorCount, 0);
}

TEST_F(Stage, FreeingTheCacheKeepsThePictureAndGivesBlocksBack) {
  author::ShapeBuilder box;
  box.Style(box.AddFill(author::Color{200, 0, 0})).Rectangle(author::Rect::Pixels(10, 10, 60, 60));
  author::MovieWriter movie(100, 100);
  movie.DefineShape(1, box).Place(1, 1).FrameEnd().End();
  player.gotHeader = false;
  player.Push(movie.Finish());
  stage.Update();
  EXPECT_GT(stage.edgeCount, 0);
  stage.FreeCache();
  EXPECT_EQ(stage.edgeCount, 0);
  EXPECT_EQ(stage.colorCount, 0);
  EXPECT_EQ(stage.edgeAlloc.firstBlock, nullptr);
  EXPECT_EQ(stage.colorAlloc.firstBlock, nullptr);
  stage.InvalidateRect(&stage.devViewRect);
  stage.Update();
  EXPECT_EQ(player.Pixel(30, 30), 0xC80000u);
}

TEST_F(Stage, AMorphsBoundsLieBetweenItsTwoShapes) {
  SCharacter* morph = Define(1, charMorphShape);
  morph->bounds = {0, 100, 0, 100};
  morph->bounds2 = {200, 300, 0, 200};
  PlaceInfo info = Info(1, morph);
  info.ratio = 0x8000;
  SObject* object = stage.PlaceObject(&stage.root, &info);
  MATRIX identity;
  MatrixIdentity(&identity);
  object->CalcDevBounds(&identity);
  EXPECT_EQ(object->devBounds.xmin, 100);
  EXPECT_EQ(object->devBounds.xmax, 200);
  EXPECT_EQ(object->devBounds.ymax, 150);
}

TEST_F(Stage, TheRootHasNoBoundsOfItsOwn) {
  stage.root.CalcDevBounds(&stage.camera.mat);
  EXPECT_TRUE(RectIsEmpty(&stage.root.devBounds));
}

}  // namespace
}  // namespace vexel::test
