#include "input_fixture.h"

namespace vexel::test {
namespace {

class Drags : public InputFixture {
 protected:
  // Sprite "a" (20 by 20 pixels at 10, 10) inside sprite "outer", which stands
  // at 20, 0 and scales by 2 in x; a shape at the bottom, and sprite "b" over
  // its lower right.
  void LoadSprites() {
    Rectangle(1, 0, 0, 20, 20);
    Rectangle(2, 0, 0, 100, 100);
    author::TagStream inner;
    inner.Place(1, 1).FrameEnd();
    movie.DefineSprite(3, inner);
    author::TagStream outer;
    outer.Place(
        {.depth = 1, .character = 3, .matrix = author::Matrix::Translate(200, 200), .name = "a"});
    movie.DefineSprite(4, outer.FrameEnd());
    movie.Place(2, 1);
    movie.Place(
        {.depth = 2, .character = 3, .matrix = author::Matrix::Translate(1600, 1600), .name = "b"});
    movie.Place({.depth = 10,
                 .character = 4,
                 .matrix = author::Matrix::Scale(2, 1, 400, 0),
                 .name = "outer"});
    Load();
    a = At(10)->firstChild;
  }
  void StartDrag(SObject* object, bool center, int x = 50, int y = 20) {
    player.mousePoint = {x, y};
    player.dragPoint = player.mousePoint;
    player.dragObject.Set(object);
    player.dragging = true;
    object->dragCenter = center;
    object->scriptControlled = true;
  }
  std::string Position() const {
    return std::to_string(a->mat.tx) + ' ' + std::to_string(a->mat.ty);
  }
  SObject* a = nullptr;
};

TEST_F(Drags, TheObjectMovesWithThePointerInItsParentsUnits) {
  LoadSprites();
  StartDrag(a, false);
  Move(60, 25);
  EXPECT_EQ(Position(), "300 300") << "a pixel is 10 twentieths in x, and 20 in y";
  EXPECT_TRUE(a->dirty);
  EXPECT_EQ(player.dragPoint.x, 60);
  Move(58, 25);
  EXPECT_EQ(Position(), "280 300");
  Up(50, 20);
  EXPECT_EQ(Position(), "200 200");
}

TEST_F(Drags, WithTheCentreTheOriginIsUnderThePointer) {
  LoadSprites();
  StartDrag(a, true);
  Move(60, 25);
  EXPECT_EQ(Position(), "400 500");
  Move(20, 0);
  EXPECT_EQ(Position(), "0 0");
}

TEST_F(Drags, WithoutAntiAliasingPixelsAreTheSame) {
  LoadSprites();
  player.highQuality = false;
  player.SetCamera(kCameraOnly);
  stage.CalcUpdate();
  StartDrag(a, false);
  Move(60, 25);
  EXPECT_EQ(Position(), "300 300");
}

TEST_F(Drags, AConstraintStopsTheObjectAndItComesBackFromTheClampedPoint) {
  LoadSprites();
  StartDrag(a, false);
  a->dragConstraint = {0, 260, 0, 4000};
  Move(70, 20);
  EXPECT_EQ(Position(), "260 200");
  EXPECT_EQ(player.dragPoint.x, 56) << "6 pixels did it";
  Move(60, 20);
  EXPECT_EQ(Position(), "260 200") << "still to the right of the clamped point";
  Move(54, 20);
  EXPECT_EQ(Position(), "240 200");
}

TEST_F(Drags, WithTheCentreItComesBackAtOnce) {
  LoadSprites();
  StartDrag(a, true);
  a->dragConstraint = {0, 260, 0, 100};
  Move(70, 50);
  EXPECT_EQ(Position(), "260 100");
  EXPECT_EQ(player.dragPoint.x, 46);
  EXPECT_EQ(player.dragPoint.y, 5);
  Move(44, 50);
  EXPECT_EQ(Position(), "240 100");
}

TEST_F(Drags, TheDropTargetIsLookedForUnderThePointerOfTheLastEvent) {
  LoadSprites();
  StartDrag(a, false);
  stage.CalcUpdate();
  Move(90, 90);
  ASSERT_NE(a->dropTarget, nullptr);
  EXPECT_STREQ(a->dropTarget, "/") << "what lay at 50, 20 but for the dragged object";
  EXPECT_EQ(player.mousePoint.x, 90);
  stage.CalcUpdate();
  Move(91, 90);
  EXPECT_STREQ(a->dropTarget, "/b");
  EXPECT_TRUE(a->visible);
}

TEST_F(Drags, TheDropTargetIsNotTheDraggedObject) {
  LoadSprites();
  StartDrag(a, false, 55, 15);
  EXPECT_EQ(HitTest(55, 15), a->firstChild);
  player.UpdateDropTarget();
  EXPECT_STREQ(a->dropTarget, "/");
  a->visible = false;
  player.UpdateDropTarget();
  EXPECT_FALSE(a->visible) << "as it was";
}

TEST_F(Drags, OverNothingThereIsNoDropTarget) {
  LoadSprites();
  StartDrag(a, false);
  player.UpdateDropTarget();
  EXPECT_NE(a->dropTarget, nullptr);
  player.mousePoint = {500, 500};
  player.UpdateDropTarget();
  EXPECT_EQ(a->dropTarget, nullptr);
}

TEST_F(Drags, ADragEndsWithItsObject) {
  LoadSprites();
  StartDrag(a, false);
  stage.RemoveObject(At(10));
  EXPECT_FALSE(player.dragObject);
  EXPECT_FALSE(player.dragging);
  Move(60, 25);
  player.UpdateDropTarget();
}

TEST_F(Drags, ADragEndsWithTheMovie) {
  LoadSprites();
  StartDrag(a, false);
  player.UpdateDropTarget();
  player.ClearScript();
  EXPECT_FALSE(player.dragObject);
  EXPECT_FALSE(player.dragging);
}

TEST_F(Drags, ALayersRootMayBeDragged) {
  LoadSprites();
  StartDrag(player.rootObject, false);
  Move(60, 25);
  EXPECT_EQ(player.rootObject->mat.tx, 200);
  EXPECT_EQ(player.rootObject->mat.ty, 100);
}

TEST_F(Drags, AScriptStartsAndStopsADrag) {
  Rectangle(1, 0, 0, 20, 20);
  author::TagStream inner;
  inner.Place(1, 1).FrameEnd();
  movie.DefineSprite(3, inner);
  Rectangle(2, 60, 60, 100, 100);
  author::ActionBuilder start;
  for (const char* operand : {"0", "0", "30", "40", "1", "0", "a"}) start.Push(operand);
  start.Op(kActionStartDrag);
  author::ActionBuilder stop;
  stop.Op(kActionStopDrag);
  movie.DefineButton2(11, false, Records(2),
                      {On(1 << buttonPress, start), On(1 << buttonRelease, stop)});
  movie.Place({.depth = 1, .character = 3, .name = "a"}).Place(11, 10);
  Load();
  a = At(1);
  Move(70, 70);
  Down(70, 70);
  EXPECT_EQ(player.dragObject.Get(), a);
  Move(75, 72, true);
  EXPECT_EQ(Position(), "100 40");
  Move(99, 99, true);
  EXPECT_EQ(Position(), "580 580") << "30 by 40 pixels are the limit, 29 were moved";
  Move(1000, 1000, true);
  EXPECT_EQ(Position(), "600 800");
}

TEST_F(Drags, DegenerateMatricesAndFarPointsMoveItSomewhere) {
  LoadSprites();
  StartDrag(a, false);
  At(10)->mat.a = 0;
  At(10)->mat.d = 0;
  Move(kInt32Max, kInt32Min);
  Move(kInt32Min, kInt32Max);
  a->dragCenter = true;
  a->dragConstraint = {-5, 5, kInt32Min + 1, kInt32Max};
  Move(kInt32Max, kInt32Max);
  EXPECT_LE(a->mat.tx, 5);
}

}  // namespace
}  // namespace vexel::test
