// Shapes become edges with the colours of their two sides.
#include "shape_fixture.h"
#include "stage/character_parser.h"

namespace vexel::test {
namespace {

using author::ShapeBuilder;
using author::ShapeRecord;

class ShapeEdges : public ShapeFixture {
 protected:
  SObject* PlaceShape(const ShapeBuilder& shape) { return Place(1, DefineShape(1, shape)); }
};

TEST_F(ShapeEdges, ALoneFillOnSideOneGoesToTheFirstColourWithTheEvenOddRule) {
  ShapeBuilder shape;
  shape.AddFill(kRed);
  shape.Fill1(1).MoveTo({0, 0}).LineTo({0, 100});
  SObject* object = PlaceShape(shape);
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_EQ(edges.size(), 1u);
  EXPECT_EQ(edges[0].color1, Color(object, 1));
  EXPECT_EQ(edges[0].color2, nullptr);
  EXPECT_EQ(edges[0].rule, ruleEvenOdd);
  EXPECT_EQ(edges[0].dir, 1);
}

TEST_F(ShapeEdges, FillsOnBothSidesTakeTheEdgeRule) {
  ShapeBuilder shape;
  shape.AddFill(kRed);
  shape.AddFill(kBlue);
  shape.Fill0(2).Fill1(1).MoveTo({0, 0}).LineTo({0, 100});
  SObject* object = PlaceShape(shape);
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_EQ(edges.size(), 1u);
  EXPECT_EQ(edges[0].color1, Color(object, 2));
  EXPECT_EQ(edges[0].color2, Color(object, 1));
  EXPECT_EQ(edges[0].rule, ruleEdgeEdge);
}

TEST_F(ShapeEdges, TheSameFillOnBothSidesKeepsBothInAShape) {
  ShapeBuilder shape;
  shape.AddFill(kRed);
  shape.Fill0(1).Fill1(1).MoveTo({0, 0}).LineTo({0, 100});
  SObject* object = PlaceShape(shape);
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_EQ(edges.size(), 1u);
  EXPECT_EQ(edges[0].color2, Color(object, 1));
  EXPECT_EQ(edges[0].rule, ruleEdgeEdge);
}

TEST_F(ShapeEdges, AHorizontalSideYieldsNoneThoughItsStrokeDoes) {
  ShapeBuilder shape;
  shape.AddFill(kRed);
  shape.AddLine(20, kBlue);
  shape.Style(1).MoveTo({0, 0}).LineTo({100, 0});
  EXPECT_TRUE(Build(PlaceShape(shape)).empty());
  ShapeBuilder stroked;
  stroked.AddFill(kRed);
  stroked.AddLine(20, kBlue);
  stroked.Style(1, 1).MoveTo({0, 0}).LineTo({100, 0});
  SObject* object = Place(2, DefineShape(2, stroked));
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_FALSE(edges.empty());
  for (const PlainEdge& e : edges) EXPECT_EQ(e.color1, Color(object, 2));
}

TEST_F(ShapeEdges, AMoveEndsAStrokeAndBeginsAnother) {
  ShapeBuilder two;
  two.AddLine(20, kBlue);
  two.Style(0, 1).MoveTo({0, 0}).LineTo({100, 0}).MoveTo({100, 0}).LineTo({200, 0});
  ShapeBuilder one;
  one.AddLine(20, kBlue);
  one.Style(0, 1).MoveTo({0, 0}).LineTo({100, 0}).LineTo({200, 0});
  const size_t apart = Build(Place(1, DefineShape(1, two))).size();
  const size_t joined = Build(Place(2, DefineShape(2, one))).size();
  EXPECT_EQ(apart - joined, 2u * 4) << "two more caps of four arcs";
}

TEST_F(ShapeEdges, NewTablesWithoutASelectionKeepTheOldColours) {
  ShapeBuilder shape;
  shape.AddFill(kRed);
  shape.Fill1(1).MoveTo({0, 0}).LineTo({0, 100});
  ShapeRecord styles;
  styles.flags = author::kChangeStyles;
  styles.styles.fills.push_back(author::FillStyle::Solid(kBlue));
  shape.Record(styles).LineTo({0, 200});
  shape.Fill1(1).LineTo({0, 300});
  SObject* object = PlaceShape(shape);
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_EQ(edges.size(), 3u);
  EXPECT_EQ(edges[1].color1, edges[0].color1);
  EXPECT_EQ(edges[2].color1, Color(object, 2));
}

TEST_F(ShapeEdges, AnIndexBeyondTheTableIsNoStyle) {
  ShapeBuilder shape;
  shape.AddFill(kRed);
  shape.AddLine(20, kRed);
  shape.mutableStyles().fillBits = 4;
  shape.mutableStyles().lineBits = 4;
  ShapeRecord change;
  change.flags = author::kChangeFill0 | author::kChangeFill1 | author::kChangeLine;
  change.fill0 = 2;
  change.fill1 = 15;
  change.line = 9;
  shape.Record(change).LineTo({0, 100});
  EXPECT_TRUE(Build(PlaceShape(shape)).empty());
}

TEST_F(ShapeEdges, FarToTheLeftTheyBecomeVerticalLinesAndTheFillStaysRight) {
  SObject* object = Place(1, DefineRect(1, {-900, 10, 0, 100}));
  STransform t;
  MatrixScale(100 * kFixedOne, kFixedOne, &t.mat);
  t.cxform.Clear();
  object->devBounds = {-90000, 1000, 0, 100};
  object->BuildEdges(&t);
  const std::vector<PlainEdge> edges = Edges(object->edges);
  ASSERT_EQ(edges.size(), 2u);
  EXPECT_EQ(BoundsOf(edges).xmin, -32000);
  EXPECT_EQ(BoundsOf(edges).xmax, 1000);
  EXPECT_EQ(WindingAt(edges, -20, 50) & 1, 1);
  EXPECT_EQ(WindingAt(edges, 1001, 50) & 1, 0);
}

TEST_F(ShapeEdges, BoundsWithinTheSafeRangeSkipTheTests) {
  SObject* object = Place(1, DefineRect(1, {0, 10, 0, 100}));
  STransform t;
  MatrixIdentity(&t.mat);
  t.cxform.Clear();
  SCharacterParser parser(&player, object->character->data.bytes, object->character->data.length, 0,
                          &t.mat);
  parser.object = object;
  SRECT bounds = {-32000, 32000, -32000, 32000};
  parser.BuildEdges(true, &bounds);
  EXPECT_FALSE(parser.preclip);
  bounds.xmax = 32001;
  SCharacterParser other(&player, object->character->data.bytes, object->character->data.length, 0,
                         &t.mat);
  other.object = object;
  other.BuildEdges(true, &bounds);
  EXPECT_TRUE(other.preclip);
}

TEST_F(ShapeEdges, AMaskIsOneColourWithoutStrokes) {
  ShapeBuilder shape;
  shape.AddFill(kRed);
  shape.AddFill(kBlue);
  shape.AddLine(20, kBlue);
  shape.Style(1, 1).Rectangle({0, 100, 0, 100});
  shape.Style(2, 1).Rectangle({200, 300, 0, 100});
  SObject* object = PlaceShape(shape);
  object->clipDepth = 9;
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_EQ(edges.size(), 4u);
  RColor* clip = object->colors;
  EXPECT_EQ(clip->colorType, colorClip);
  EXPECT_TRUE(clip->transparent);
  EXPECT_EQ(clip->order, 0u);
  for (const PlainEdge& e : edges) EXPECT_EQ(e.color1, clip);
}

TEST_F(ShapeEdges, NewTablesInsideAMaskStandBeforeItsColour) {
  ShapeBuilder shape;
  shape.AddFill(kRed);
  shape.Style(1).Rectangle({0, 100, 0, 100});
  shape.NewStyles();
  shape.AddFill(kBlue);
  shape.Style(1).Rectangle({200, 300, 0, 100});
  SObject* object = PlaceShape(shape);
  object->clipDepth = 9;
  const std::vector<PlainEdge> edges = Build(object);
  ASSERT_EQ(edges.size(), 4u);
  EXPECT_EQ(edges[3].color1, object->colors);
  EXPECT_EQ(object->colors->colorType, colorSolid);
  EXPECT_EQ(edges[0].color1->colorType, colorClip);
}

TEST_F(ShapeEdges, WhatIsBuiltStays) {
  SObject* object = Place(1, DefineRect(1, {0, 10, 0, 100}));
  Build(object);
  REdge* edges = object->edges;
  STransform t;
  MatrixTranslate(50, 50, &t.mat);
  t.cxform.Clear();
  object->BuildEdges(&t);
  EXPECT_EQ(object->edges, edges);
  EXPECT_EQ(edges->anchor1.y, 0);
}

TEST_F(ShapeEdges, AMovieInAnErrorStateDrawsNothingNew) {
  SObject* object = Place(1, DefineRect(1, {0, 10, 0, 100}));
  player.scriptErr = -1;
  EXPECT_TRUE(Build(object).empty());
  player.scriptErr = 0;
  EXPECT_EQ(Build(object).size(), 2u);
}

TEST_F(ShapeEdges, OtherKindsBuildNothing) {
  for (uint8_t type : {charBitmap, charButton, charSprite, charEditText, charLost}) {
    SObject* object = Place(1, DefineRect(static_cast<uint16_t>(10 + type), {0, 10, 0, 100}));
    object->character->type = type;
    EXPECT_TRUE(Build(object).empty()) << int{type};
    object->character->type = charShape;
  }
}

TEST_F(ShapeEdges, WithoutColoursTheShapeIsGivenUp) {
  SObject* object = Place(1, DefineRect(1, {0, 10, 0, 100}));
  const int32_t count = stage.colorCount;
  stage.colorCount = kMaxStageColors;
  EXPECT_TRUE(Build(object).empty());
  stage.colorCount = count;
}

TEST_F(ShapeEdges, CutShortAnywhereItEnds) {
  ShapeBuilder shape;
  shape.AddFill(kRed);
  shape.AddLine(20, kBlue);
  shape.Style(1, 1).Ellipse({0, 0}, 100, 60).RoundRectangle({0, 300, 0, 200}, 30);
  SObject* object = PlaceShape(shape);
  for (int32_t length = object->character->data.length; length > 0; --length) {
    object->character->data.length = length;
    Build(object);
  }
}

}  // namespace
}  // namespace vexel::test
