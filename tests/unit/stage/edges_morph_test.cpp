// Morph shapes at their ratio.
#include "shape_fixture.h"

namespace vexel::test {
namespace {

using author::MorphBuilder;

class MorphEdges : public ShapeFixture {
 protected:
  SObject* PlaceMorph(const MorphBuilder& morph, uint16_t ratio = 0) {
    SObject* object = Place(1, DefineMorph(1, morph));
    object->ratio = ratio;
    return object;
  }
};

TEST_F(MorphEdges, TheSameFillOnBothSidesIsOneColourWithTheEvenOddRule) {
  MorphBuilder morph;
  morph.AddFill(kRed, kBlue);
  morph.Fill0(1).Fill1(1).MoveTo({0, 0}, {0, 0}).LineTo({0, 100}, {0, 100});
  SObject* object = PlaceMorph(morph);
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_EQ(edges.size(), 1u);
  EXPECT_EQ(edges[0].color1, Color(object, 1));
  EXPECT_EQ(edges[0].color2, nullptr);
  EXPECT_EQ(edges[0].rule, ruleEvenOdd);
}

TEST_F(MorphEdges, ALoneFillOnSideOneStaysThereWithTheEdgeRule) {
  MorphBuilder morph;
  morph.AddFill(kRed, kBlue);
  morph.Fill1(1).MoveTo({0, 0}, {0, 0}).LineTo({0, 100}, {0, 100});
  SObject* object = PlaceMorph(morph);
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_EQ(edges.size(), 1u);
  EXPECT_EQ(edges[0].color1, nullptr);
  EXPECT_EQ(edges[0].color2, Color(object, 1));
  EXPECT_EQ(edges[0].rule, ruleEdgeEdge);
}

TEST_F(MorphEdges, AllPointsLieBetweenTheTwoShapes) {
  MorphBuilder morph;
  morph.AddFill(kRed, kBlue);
  morph.Fill0(1)
      .MoveTo({0, 0}, {100, 100})
      .CurveTo({50, 50}, {0, 100}, {250, 150}, {100, 200})
      .LineTo({3, 180}, {100, 360});
  SObject* object = PlaceMorph(morph);
  std::vector<PlainEdge> edges = Build(object);
  ASSERT_EQ(edges.size(), 2u);
  EXPECT_EQ(edges[0].cx, 50);
  EXPECT_EQ(edges[1].x2, 3);
  object->ratio = 0x8000;
  edges = Build(object);
  ASSERT_EQ(edges.size(), 2u);
  EXPECT_EQ(edges[0].x1, 50);
  EXPECT_EQ(edges[0].cx, 150);
  EXPECT_EQ(edges[0].cy, 100);
  EXPECT_EQ(edges[0].x2, 50);
  EXPECT_EQ(edges[0].y2, 150);
  EXPECT_EQ(edges[1].x2, 52) << "3 + 48.5, ties upward";
  EXPECT_EQ(edges[1].y2, 270);
  object->ratio = 0xFFFF;
  edges = Build(object);
  EXPECT_EQ(edges[0].x1, 100) << "just under the end shape, and rounded to it";
}

TEST_F(MorphEdges, AnEndShapeThatIsShorterStaysAtItsPen) {
  MorphBuilder morph;
  morph.AddFill(kRed, kBlue);
  morph.Fill0(1)
      .MoveTo({0, 0}, {0, 0})
      .LineTo({0, 100}, {0, 200})
      .LineTo({0, 300}, {40, 400})
      .LineTo({0, 500}, {0, 600});
  morph.endRecordsMissing = 2;
  SObject* object = PlaceMorph(morph, 0x8000);
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_EQ(edges.size(), 3u);
  EXPECT_EQ(edges[0].y2, 150);
  EXPECT_EQ(edges[1].y1, 150);
  EXPECT_EQ(edges[1].y2, 250) << "between 300 and the pen at 200";
  EXPECT_EQ(edges[2].y2, 350);
}

TEST_F(MorphEdges, AnEndBeyondTheDataReadsAsAPointAtTheOrigin) {
  MorphBuilder morph;
  morph.AddFill(kRed, kBlue);
  morph.Fill0(1).MoveTo({100, 100}, {0, 0}).LineTo({100, 200}, {0, 200});
  SObject* object = PlaceMorph(morph, 0x8000);
  object->character->data.bytes[3] = 0xFF;
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_EQ(edges.size(), 1u);
  EXPECT_EQ(edges[0].y1, 50);
  EXPECT_EQ(edges[0].y2, 100);
}

TEST_F(MorphEdges, ALineWithoutAWidthIsNotDrawn) {
  MorphBuilder morph;
  author::MorphLine line;
  line.startWidth = 0;
  line.endWidth = 40;
  line.startColor = line.endColor = kRed;
  morph.AddLine(line);
  morph.Line(1).MoveTo({0, 0}, {0, 0}).LineTo({0, 100}, {0, 100});
  SObject* object = PlaceMorph(morph);
  EXPECT_TRUE(Build(object).empty());
  object->ratio = 0x8000;
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_FALSE(edges.empty());
  EXPECT_EQ(BoundsOf(edges).xmax, 10);
  EXPECT_EQ(edges[0].color1, Color(object, 1));
}

TEST_F(MorphEdges, AMaskIsOneColour) {
  MorphBuilder morph;
  morph.AddFill(kRed, kBlue);
  morph.Fill0(1).MoveTo({0, 0}, {0, 0}).LineTo({0, 100}, {0, 100});
  SObject* object = PlaceMorph(morph);
  object->clipDepth = 5;
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_EQ(edges.size(), 1u);
  EXPECT_EQ(edges[0].color1, object->colors);
  EXPECT_EQ(object->colors->colorType, colorClip);
}

TEST_F(MorphEdges, CutShortAnywhereItEnds) {
  MorphBuilder morph;
  morph.AddFill(kRed, kBlue);
  morph.AddLine({});
  morph.Style(1, 1).MoveTo({0, 0}, {0, 0}).LineTo({0, 100}, {0, 200});
  SObject* object = PlaceMorph(morph, 0x1234);
  for (int32_t length = object->character->data.length; length >= 0; --length) {
    object->character->data.length = length;
    Build(object);
  }
}

}  // namespace
}  // namespace vexel::test
