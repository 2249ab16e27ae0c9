// The walk over the tree: layers, masks and what they clip.
#include "shape_fixture.h"

namespace vexel::test {
namespace {

class Drawing : public ShapeFixture {
 protected:
  // Colours are asked for their layer and clipper before the paint drops them.
  void Draw() {
    stage.raster.Attach(&player.bits, nullptr, false);
    stage.raster.BeginPaint();
    STransform t;
    MatrixIdentity(&t.mat);
    t.cxform.Clear();
    stage.root.Draw(&stage.raster, t, nullptr);
  }
  SObject* PlaceRect(SObject* parent, uint16_t depth) {
    SObject* object = Place(parent, depth, rect);
    object->devBounds = {0, 50, 0, 50};
    return object;
  }
  SObject* PlaceRect(uint16_t depth) { return PlaceRect(&stage.root, depth); }
  SObject* PlaceMask(uint16_t depth, uint16_t clipDepth) {
    SObject* object = PlaceRect(depth);
    object->clipDepth = clipDepth;
    return object;
  }
  static uint32_t Layer(const SObject* object) { return object->colors->order >> 16; }

  SCharacter* rect = DefineRect(1, {0, 50, 0, 50});
};

TEST_F(Drawing, AnObjectLiesBeneathItsChildrenAndTheyFollowByDepth) {
  SObject* parent = PlaceRect(5);
  SObject* high = PlaceRect(parent, 9);
  SObject* low = PlaceRect(parent, 2);
  SObject* after = PlaceRect(6);
  Draw();
  EXPECT_LT(Layer(parent), Layer(low));
  EXPECT_LT(Layer(low), Layer(high));
  EXPECT_LT(Layer(high), Layer(after));
  EXPECT_TRUE(high->drawn);
  EXPECT_EQ(low->colors->clipColor, nullptr);
}

TEST_F(Drawing, OfTwoAtEqualDepthTheSecondIsBeneath) {
  SObject* first = PlaceRect(5);
  SObject* second = PlaceRect(5);
  Draw();
  EXPECT_LT(Layer(second), Layer(first));
}

TEST_F(Drawing, AnInvisibleSubtreeIsSkipped) {
  SObject* parent = PlaceRect(5);
  SObject* child = PlaceRect(parent, 1);
  parent->visible = false;
  Draw();
  EXPECT_EQ(parent->edges, nullptr);
  EXPECT_EQ(child->edges, nullptr);
  EXPECT_FALSE(child->drawn);
}

TEST_F(Drawing, WhatLiesOutsideIsNotBuiltButItsChildrenAre) {
  SObject* parent = PlaceRect(5);
  SObject* child = PlaceRect(parent, 1);
  parent->devBounds = {2000, 2050, 0, 50};
  Draw();
  EXPECT_EQ(parent->edges, nullptr);
  EXPECT_FALSE(parent->drawn);
  EXPECT_TRUE(child->drawn);
  parent->devBounds = {100, 150, 0, 50};
  Draw();
  EXPECT_TRUE(parent->drawn) << "touching the clip counts";
}

TEST_F(Drawing, AnInvisibleMaskStillClips) {
  SObject* mask = PlaceMask(5, 7);
  mask->visible = false;
  mask->devBounds = {9000, 9001, 0, 1};
  SObject* inside = PlaceRect(6);
  SObject* outside = PlaceRect(8);
  Draw();
  EXPECT_EQ(inside->colors->clipColor, mask->colors);
  EXPECT_EQ(outside->colors->clipColor, nullptr);
  EXPECT_TRUE(mask->drawn);
}

TEST_F(Drawing, AMaskIsALayerAboveWhatItClips) {
  SObject* mask = PlaceMask(5, 7);
  SObject* last = PlaceRect(7);
  SObject* outside = PlaceRect(8);
  Draw();
  EXPECT_EQ(last->colors->clipColor, mask->colors) << "the clip depth belongs to it";
  EXPECT_GT(Layer(mask), Layer(last));
  EXPECT_LT(Layer(mask), Layer(outside));
}

TEST_F(Drawing, ASpriteAsAMaskClipsNothing) {
  SCharacter* sprite = DefineSprite(2, author::TagStream());
  SObject* mask = Place(5, sprite);
  mask->clipDepth = 9;
  SObject* part = PlaceRect(mask, 1);
  SObject* object = PlaceRect(6);
  Draw();
  EXPECT_EQ(object->colors->clipColor, nullptr);
  EXPECT_TRUE(object->drawn);
  EXPECT_FALSE(part->drawn) << "children of a mask are not drawn";
}

TEST_F(Drawing, OfNestedMasksTheInnerIsClippedByTheOuter) {
  SObject* outer = PlaceMask(1, 9);
  SObject* inner = PlaceMask(2, 5);
  SObject* both = PlaceRect(3);
  SObject* one = PlaceRect(7);
  SObject* none = PlaceRect(10);
  Draw();
  EXPECT_EQ(outer->colors->clipColor, OutermostClip());
  EXPECT_EQ(inner->colors->clipColor, outer->colors);
  EXPECT_EQ(both->colors->clipColor, inner->colors);
  EXPECT_EQ(one->colors->clipColor, outer->colors);
  EXPECT_EQ(none->colors->clipColor, nullptr);
}

TEST_F(Drawing, AMasksOwnTransformDoesNotMoveWhatItClips) {
  SObject* mask = PlaceMask(1, 9);
  mask->mat.tx = 30;
  SObject* inside = PlaceRect(2);
  Draw();
  EXPECT_EQ(BoundsOf(Edges(mask->edges)).xmin, 30);
  EXPECT_EQ(BoundsOf(Edges(inside->edges)).xmin, 0);
}

TEST_F(Drawing, TransformsGoDownTheTree) {
  SObject* parent = PlaceRect(5);
  parent->mat.tx = 10;
  SObject* child = PlaceRect(parent, 1);
  child->mat.tx = 3;
  child->cxform.aa = 128;
  child->cxform.CalcFlags();
  Draw();
  EXPECT_EQ(BoundsOf(Edges(child->edges)).xmin, 13);
  EXPECT_EQ(child->colors->rgb.alpha, 127);
  EXPECT_EQ(parent->colors->rgb.alpha, 255);
}

TEST_F(Drawing, MasksBeyondTheNestingLimitDoNotClip) {
  for (uint16_t depth = 1; depth <= 300; ++depth) PlaceMask(depth, 400);
  SObject* inside = PlaceRect(350);
  Draw();
  SObject* mask = stage.FindObject(&stage.root, 256);
  EXPECT_EQ(inside->colors->clipColor, mask->colors);
  EXPECT_EQ(stage.FindObject(&stage.root, 257)->colors, nullptr);
}

TEST_F(Drawing, MasksAndNestingTogetherAreLimited) {
  SObject* parent = &stage.root;
  for (int level = 0; level < 200; ++level) {
    SObject* mask = PlaceRect(parent, 1);
    mask->clipDepth = 9;
    PlaceRect(parent, 2)->clipDepth = 9;
    parent = PlaceRect(parent, 3);
  }
  Draw();
  EXPECT_TRUE(parent->drawn);
}

}  // namespace
}  // namespace vexel::test
