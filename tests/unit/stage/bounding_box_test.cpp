#include "geometry/rect.h"
#include "support/stage_fixture.h"

namespace vexel::test {
namespace {

class BoundingBox : public StageFixture {
 protected:
  static bool Is(const SRECT& box, const SRECT& wanted) { return RectEqual(&box, &wanted, 0); }
  static SRECT Of(const SObject* object) {
    SRECT box;
    GetBoundingBox(object, &box);
    return box;
  }
};

TEST_F(BoundingBox, IsTheBoundsUnderTheObjectsOwnTransform) {
  SCharacter* shape = Define(1, charShape);
  shape->bounds = {-10, 30, 5, 25};
  SObject* object = PlaceAt(&stage.root, 1, shape, 100);
  object->mat.a = 2 * kFixedOne;
  EXPECT_TRUE(Is(Of(object), {80, 160, 5, 25}));
}

TEST_F(BoundingBox, HoldsAllChildrenUnseenOnesAndMaskedOnesToo) {
  SCharacter* sprite = Define(1, charSprite);
  RectSetEmpty(&sprite->bounds);
  SCharacter* shape = Define(2, charShape);
  SObject* outer = PlaceAt(&stage.root, 1, sprite, 1000);
  const SRECT nothing = Of(outer);
  EXPECT_TRUE(RectIsEmpty(&nothing)) << "without children there is nothing";
  SObject* inner = PlaceAt(outer, 1, sprite, 10);
  inner->mat.d = kFixedOne / 2;
  PlaceAt(inner, 5, shape, 3);
  PlaceAt(outer, 2, shape, 500)->visible = false;
  PlaceAt(outer, 3, shape, -7)->clipDepth = 9;
  PlaceAt(outer, 4, shape, 800);
  EXPECT_TRUE(Is(Of(inner), {13, 113, 0, 50}));
  EXPECT_TRUE(Is(Of(outer), {993, 1900, 0, 100}));
}

TEST_F(BoundingBox, OfAMorphIsThatOfItsStart) {
  SCharacter* morph = Define(1, charMorphShape);
  morph->bounds2 = {0, 900, 0, 900};
  SObject* object = Place(1, morph);
  object->ratio = 65535;
  EXPECT_TRUE(Is(Of(object), {0, 100, 0, 100}));
}

TEST_F(BoundingBox, IsMappedByTheMatrixThatIsGiven) {
  SObject* object = PlaceAt(&stage.root, 1, Define(1, charShape), 50);
  MATRIX twice;
  MatrixScale(2 * kFixedOne, 3 * kFixedOne, &twice);
  SRECT box;
  GetBoundingBox(object, &twice, &box);
  EXPECT_TRUE(Is(box, {100, 300, 0, 300}));
}

TEST_F(BoundingBox, OfTheRootHoldsTheWholeStage) {
  Place(1, Define(1, charShape));
  PlaceAt(&stage.root, 2, Define(2, charShape), 300);
  EXPECT_TRUE(Is(Of(&stage.root), {0, 400, 0, 100}));
}

}  // namespace
}  // namespace vexel::test
