#include <random>

#include "geometry/curve.h"
#include "movie/edit_text_flags.h"
#include "raster/edge.h"
#include "raster/rcolor.h"
#include "support/button_fixture.h"

namespace vexel::test {
namespace {

using author::TagStream;

class HitTests : public ButtonFixture {
 protected:
  void DefineShape(uint16_t id, const author::ShapeBuilder& shape) { movie.DefineShape(id, shape); }
  void PlaceMask(uint16_t id, uint16_t depth, uint16_t clipDepth) {
    movie.Place(author::Placement{.depth = depth, .character = id, .clipDepth = clipDepth});
  }
  void EditText(uint16_t id, author::Rect bounds, uint16_t flags) {
    author::EditTextField field;
    field.flags = flags;
    movie.DefineEditText(id, bounds, field);
  }
};

TEST_F(HitTests, TheObjectOfGreaterDepthIsFound) {
  Rectangle(1, 0, 0, 50, 50);
  Rectangle(2, 20, 20, 70, 70);
  movie.Place(2, 30).Place(1, 10);
  Load();
  EXPECT_EQ(HitTest(30, 30), At(30));
  EXPECT_EQ(HitTest(10, 10), At(10));
  EXPECT_EQ(HitTest(60, 60), At(30));
  EXPECT_EQ(HitTest(80, 80), nullptr);
}

TEST_F(HitTests, WhatAMaskHidesIsNotHitOutsideTheMask) {
  Rectangle(1, 0, 0, 100, 100);
  Rectangle(2, 0, 0, 50, 50);
  movie.Place(1, 1);
  PlaceMask(2, 5, 7);
  movie.Place(1, 6).Place(1, 7);
  Load();
  EXPECT_EQ(HitTest(20, 20), At(7));
  EXPECT_EQ(HitTest(70, 70), At(1)) << "what lies below the masked objects";
}

TEST_F(HitTests, TheObjectsAboveAMasksDepthAreNotMasked) {
  Rectangle(1, 0, 0, 100, 100);
  Rectangle(2, 0, 0, 50, 50);
  PlaceMask(2, 5, 7);
  movie.Place(1, 6).Place(1, 8);
  Load();
  EXPECT_EQ(HitTest(70, 70), At(8));
}

TEST_F(HitTests, AMaskItselfIsNeverFoundAndMasksEvenWhenUnseen) {
  Rectangle(1, 0, 0, 100, 100);
  Rectangle(2, 0, 0, 50, 50);
  PlaceMask(2, 5, 7);
  movie.Place(1, 6);
  Load();
  stage.RemoveObject(At(6));
  EXPECT_EQ(HitTest(20, 20), nullptr);
  movie = author::MovieWriter(100, 100);
  player.ClearScript();
  Rectangle(1, 0, 0, 100, 100);
  Rectangle(2, 0, 0, 50, 50);
  PlaceMask(2, 5, 7);
  movie.Place(1, 6);
  Load();
  At(5)->visible = false;
  EXPECT_EQ(HitTest(20, 20), At(6));
  EXPECT_EQ(HitTest(70, 70), nullptr);
}

TEST_F(HitTests, AMaskInsideAMaskMasksOnItsOwn) {
  Rectangle(1, 0, 0, 100, 100);
  Rectangle(2, 0, 0, 60, 100);
  Rectangle(3, 40, 0, 100, 100);
  PlaceMask(2, 5, 9);
  PlaceMask(3, 6, 7);
  movie.Place(1, 7).Place(1, 8);
  Load();
  EXPECT_EQ(HitTest(50, 50), At(8));
  EXPECT_EQ(HitTest(20, 50), At(8));
  EXPECT_EQ(HitTest(80, 50), nullptr);
  stage.RemoveObject(At(8));
  EXPECT_EQ(HitTest(50, 50), At(7));
  EXPECT_EQ(HitTest(20, 50), nullptr);
}

TEST_F(HitTests, AMaskThatEndsTheListHidesTheRest) {
  Rectangle(1, 0, 0, 100, 100);
  Rectangle(2, 0, 0, 50, 50);
  PlaceMask(2, 5, 65535);
  movie.Place(1, 6).Place(1, 60);
  Load();
  EXPECT_EQ(HitTest(70, 70), nullptr);
  EXPECT_EQ(HitTest(20, 20), At(60));
}

TEST_F(HitTests, AMasksOwnChildrenDoNotMask) {
  Rectangle(1, 0, 0, 100, 100);
  TagStream frames;
  frames.Place(1, 1).FrameEnd();
  movie.DefineSprite(5, frames);
  PlaceMask(5, 5, 7);
  movie.Place(1, 6);
  Load();
  EXPECT_EQ(HitTest(50, 50), nullptr);
}

TEST_F(HitTests, AChildHidesItsParentAndAnUnseenObjectItsWholeSubtree) {
  Rectangle(1, 0, 0, 50, 50);
  TagStream frames;
  frames.Place(1, 3).FrameEnd();
  movie.DefineSprite(5, frames);
  movie.Place(1, 1).Place(5, 10);
  Load();
  EXPECT_EQ(HitTest(20, 20), At(10)->firstChild);
  At(10)->visible = false;
  EXPECT_EQ(HitTest(20, 20), At(1));
  stage.root.visible = false;
  EXPECT_EQ(HitTest(20, 20), nullptr);
}

TEST_F(HitTests, AHoleIsNotInTheShapeAndATransparentFillIs) {
  author::ShapeBuilder shape;
  shape.AddFill(author::Color{255, 0, 0, 0});
  shape.Style(1).Rectangle(author::Rect::Pixels(0, 0, 60, 60));
  shape.MoveTo({400, 400}).LineTo({400, 800}).LineTo({800, 800}).LineTo({800, 400}).Close();
  DefineShape(1, shape);
  movie.Place(1, 1);
  Load();
  EXPECT_EQ(HitTest(10, 10), At(1));
  EXPECT_EQ(HitTest(30, 30), nullptr);
  EXPECT_EQ(HitTest(50, 30), At(1));
}

TEST_F(HitTests, AFillOnEitherSideOfAnEdgeIsHit) {
  author::ShapeBuilder shape;
  shape.AddFill(author::Color{255, 0, 0, 255});
  shape.AddFill(author::Color{0, 255, 0, 255});
  shape.Fill1(1).Fill0(0).Rectangle(author::Rect::Pixels(0, 0, 30, 30));
  shape.Fill1(2).Fill0(1).MoveTo({200, 200}).LineTo({400, 200}).LineTo({400, 400});
  shape.LineTo({200, 400}).Close();
  DefineShape(1, shape);
  movie.Place(1, 1);
  Load();
  EXPECT_EQ(HitTest(5, 5), At(1));
  EXPECT_EQ(HitTest(15, 15), At(1));
  EXPECT_EQ(HitTest(35, 15), nullptr);
}

TEST_F(HitTests, StrokesCount) {
  author::ShapeBuilder shape;
  shape.AddLine(200, author::Color{0, 0, 255, 255});
  shape.Style(0, 1).MoveTo({200, 1000}).LineTo({1800, 1000});
  DefineShape(1, shape);
  movie.Place(1, 1);
  Load();
  EXPECT_EQ(HitTest(50, 50), At(1));
  EXPECT_EQ(HitTest(50, 53), At(1));
  EXPECT_EQ(HitTest(50, 60), nullptr);
}

TEST_F(HitTests, CurvesAreFollowed) {
  author::ShapeBuilder shape;
  shape.AddFill(author::Color{255, 0, 0, 255});
  shape.Style(1).Ellipse({1000, 1000}, 800, 600);
  DefineShape(1, shape);
  movie.Place(1, 1);
  Load();
  EXPECT_EQ(HitTest(50, 50), At(1));
  EXPECT_EQ(HitTest(50, 21), At(1));
  EXPECT_EQ(HitTest(13, 23), nullptr) << "a corner of the bounds";
  EXPECT_EQ(HitTest(86, 76), nullptr);
  EXPECT_EQ(HitTest(12, 50), At(1));
}

TEST_F(HitTests, TheRectangleIsOpenOnTheLeftAndBelowAndClosedOnTheRightAndAbove) {
  Rectangle(1, 20, 20, 40, 40);
  movie.Place(1, 1);
  Load();
  EXPECT_EQ(HitTest(20, 30), nullptr);
  EXPECT_EQ(HitTest(21, 30), At(1));
  EXPECT_EQ(HitTest(40, 30), At(1));
  EXPECT_EQ(HitTest(41, 30), nullptr);
  EXPECT_EQ(HitTest(30, 20), At(1));
  EXPECT_EQ(HitTest(30, 19), nullptr);
  EXPECT_EQ(HitTest(30, 40), nullptr);
}

TEST_F(HitTests, CountersAreBackAtRest) {
  Rectangle(1, 0, 0, 50, 50);
  movie.Place(1, 1);
  Load();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(HitTest(20, 20), At(1));
  for (const RColor* c = At(1)->colors; c; c = c->next) EXPECT_EQ(c->visible, 0);
}

TEST_F(HitTests, AnEdgeWithoutAColourIsPassedOver) {
  Rectangle(1, 0, 0, 50, 50);
  movie.Place(1, 1);
  Load();
  EXPECT_EQ(HitTest(20, 20), At(1));
  int rule = 0;
  for (REdge* e = At(1)->edges; e; e = e->next) {
    e->color1 = e->color2 = nullptr;
    e->fillRule = static_cast<uint8_t>(rule++ % kFillRuleCount);
  }
  EXPECT_EQ(HitTest(20, 20), nullptr);
}

TEST_F(HitTests, WindingCountsTurnInEightBits) {
  Rectangle(1, 0, 0, 50, 50);
  movie.Place(1, 1);
  Load();
  EXPECT_EQ(HitTest(20, 20), At(1));
  for (REdge* e = At(1)->edges; e; e = e->next) {
    e->color1 = At(1)->colors;
    e->fillRule = ruleWinding;
    e->dir = -128;
  }
  EXPECT_EQ(HitTest(20, 20), At(1));
  At(1)->colors->visible = -128;
  EXPECT_EQ(HitTest(20, 20), nullptr) << "twice 128 is 0";
}

TEST_F(HitTests, ObjectsAwayFromThePointBuildNoEdges) {
  Rectangle(1, 0, 0, 20, 20);
  Rectangle(2, 50, 50, 70, 70);
  movie.Place(1, 1).Place(2, 2);
  Load();
  EXPECT_EQ(HitTest(10, 10), At(1));
  EXPECT_NE(At(1)->edges, nullptr);
  EXPECT_EQ(At(2)->edges, nullptr);
}

TEST_F(HitTests, EdgesThatAreThereAreUsed) {
  Rectangle(1, 0, 0, 20, 20);
  movie.Place(1, 1);
  Load();
  EXPECT_EQ(HitTest(10, 10), At(1));
  const REdge* edges = At(1)->edges;
  EXPECT_EQ(HitTest(11, 10), At(1));
  EXPECT_EQ(At(1)->edges, edges);
}

TEST_F(HitTests, WhatIsNewIsHitOnceItsBoundsAreKnown) {
  Rectangle(1, 0, 0, 20, 20);
  movie.Place(1, 1).FrameEnd().End();
  player.Push(movie.Finish());
  EXPECT_EQ(HitTest(10, 10), nullptr);
  stage.CalcUpdate();
  EXPECT_EQ(HitTest(10, 10), At(1));
}

TEST_F(HitTests, AnyObjectIsFoundOutsideTheViewAndButtonsAreNot) {
  Rectangle(1, 0, 0, 300, 300);
  Button(11, 1);
  movie.Place(11, 10);
  Load();
  EXPECT_EQ(HitTest(200, 200), At(10)->firstChild);
  EXPECT_EQ(HitButton(200, 200), nullptr);
  EXPECT_EQ(HitButton(100, 100), At(10)) << "the view's last sides are inside";
  EXPECT_EQ(HitButton(101, 100), nullptr);
  EXPECT_EQ(HitButton(-1, 50), nullptr);
}

TEST_F(HitTests, PointsArePixelsWithAndWithoutAntiAliasing) {
  Rectangle(1, 20, 20, 40, 40);
  Button(11, 1);
  movie.Place(11, 10);
  Load();
  for (const bool smooth : {true, false}) {
    player.highQuality = smooth;
    player.SetCamera(kCameraOnly);
    stage.CalcUpdate();
    EXPECT_EQ(stage.antialias, smooth);
    EXPECT_EQ(HitTest(30, 30), At(10)->firstChild);
    EXPECT_EQ(HitButton(30, 30), At(10));
    EXPECT_EQ(HitButton(45, 45), nullptr);
  }
}

TEST_F(HitTests, FarPointsWrapAndHitNothing) {
  Rectangle(1, 20, 20, 40, 40);
  Button(11, 1);
  movie.Place(11, 10);
  Load();
  for (const int32_t far : {kInt32Max, kInt32Min, 1 << 29}) {
    EXPECT_EQ(HitTest(far, far), nullptr);
    EXPECT_EQ(HitButton(far, far), nullptr);
  }
}

// Buttons.

TEST_F(HitTests, AButtonIsHitByItsHitAreaAndNotByWhatItShows) {
  Rectangle(1, 0, 0, 20, 20);
  Rectangle(2, 50, 50, 70, 70);
  movie.DefineButton2(11, false,
                      {{author::kButtonUp, 1, 1, {}, {}}, {author::kButtonHit, 2, 2, {}, {}}}, {});
  movie.Place(11, 10);
  Load();
  EXPECT_EQ(HitButton(10, 10), nullptr);
  EXPECT_EQ(HitButton(60, 60), At(10));
  EXPECT_EQ(stage.edgeCount, 0) << "the area's edges are gone again";
  EXPECT_EQ(stage.colorCount, 0);
}

TEST_F(HitTests, AHitAreaHasTheMatrixOfItsRecordUnderTheButtons) {
  Rectangle(1, 0, 0, 10, 10);
  movie.DefineButton2(11, false,
                      {{author::kButtonHit, 1, 1, author::Matrix::Scale(2, 1, 200, 0), {}}}, {});
  movie.Place(11, 10, author::Matrix::Scale(1, 3, 0, 400));
  Load();
  EXPECT_EQ(HitButton(29, 49), At(10));
  EXPECT_EQ(HitButton(31, 49), nullptr);
  EXPECT_EQ(HitButton(29, 51), nullptr);
  EXPECT_EQ(HitButton(9, 30), nullptr);
}

TEST_F(HitTests, AnyOfSeveralHitRecordsWillDo) {
  Rectangle(1, 0, 0, 10, 10);
  movie.DefineButton(11,
                     {{author::kButtonHit, 1, 1, {}, {}},
                      {author::kButtonHit, 99, 1, {}, {}},
                      {author::kButtonHit, 1, 1, author::Matrix::Translate(400, 0), {}}},
                     Block('x'));
  movie.Place(11, 10);
  Load();
  EXPECT_EQ(HitButton(5, 5), At(10));
  EXPECT_EQ(HitButton(15, 5), nullptr);
  EXPECT_EQ(HitButton(25, 5), At(10));
}

TEST_F(HitTests, OtherObjectsNeitherCountNorHideAButton) {
  Rectangle(1, 0, 0, 50, 50);
  Button(11, 1);
  movie.Place(11, 10).Place(1, 20);
  Load();
  EXPECT_EQ(HitTest(20, 20), At(20));
  EXPECT_EQ(HitButton(20, 20), At(10));
}

TEST_F(HitTests, TheUpperOfTwoButtonsIsHitAndAnUnseenOneIsNot) {
  Rectangle(1, 0, 0, 50, 50);
  Button(11, 1);
  movie.Place(11, 10).Place(11, 20);
  Load();
  EXPECT_EQ(HitButton(20, 20), At(20));
  At(20)->visible = false;
  EXPECT_EQ(HitButton(20, 20), At(10));
}

TEST_F(HitTests, AMaskMasksButtons) {
  Rectangle(1, 0, 0, 100, 100);
  Rectangle(2, 0, 0, 50, 50);
  Button(11, 1);
  PlaceMask(2, 5, 10);
  movie.Place(11, 10);
  Load();
  EXPECT_EQ(HitButton(20, 20), At(10));
  EXPECT_EQ(HitButton(70, 70), nullptr);
}

TEST_F(HitTests, AButtonInsideAButtonLiesAboveIt) {
  Rectangle(1, 0, 0, 60, 60);
  Rectangle(2, 0, 0, 20, 20);
  Button(11, 2);
  movie.DefineButton2(12, false,
                      {{author::kButtonUp, 11, 1, {}, {}}, {author::kButtonHit, 1, 2, {}, {}}}, {});
  movie.Place(12, 10);
  Load();
  EXPECT_EQ(HitButton(10, 10), At(10)->firstChild);
  EXPECT_EQ(HitButton(40, 40), At(10));
}

// Edit text.

TEST_F(HitTests, AnEditTextIsHitByItsBoundsUnderItsTransform) {
  EditText(7, author::Rect::Pixels(0, 0, 20, 10), 0);
  movie.Place(7, 10, author::Matrix::Rotate(90, 1, 1, 1000, 1000));
  Load();
  EXPECT_EQ(HitTest(45, 65), At(10));
  EXPECT_EQ(HitButton(45, 65), At(10));
  EXPECT_EQ(HitTest(55, 65), nullptr);
  EXPECT_EQ(HitButton(55, 65), nullptr);
}

TEST_F(HitTests, AnEditTextThatCannotBeSelectedIsNotHit) {
  EditText(7, author::Rect::Pixels(0, 0, 40, 40), kEditTextNoSelect);
  EditText(8, author::Rect::Pixels(0, 0, 40, 40), kEditTextReadOnly);
  movie.Place(8, 5).Place(7, 10);
  Load();
  EXPECT_EQ(HitTest(20, 20), At(5));
  EXPECT_EQ(HitButton(20, 20), At(5)) << "a read-only text can be selected";
}

TEST_F(HitTests, AnEditTextHidesAButton) {
  Rectangle(1, 0, 0, 50, 50);
  Button(11, 1);
  EditText(7, author::Rect::Pixels(0, 0, 40, 40), 0);
  movie.Place(11, 10).Place(7, 20);
  Load();
  EXPECT_EQ(HitButton(20, 20), At(20));
  EXPECT_EQ(HitButton(45, 45), At(10));
}

TEST_F(HitTests, AnEditTextMayBeAHitArea) {
  EditText(7, author::Rect::Pixels(0, 0, 40, 40), 0);
  EditText(8, author::Rect::Pixels(0, 0, 40, 40), kEditTextNoSelect);
  movie.DefineButton2(11, false, {{author::kButtonHit, 7, 1, {}, {}}}, {});
  movie.DefineButton2(12, false, {{author::kButtonHit, 8, 1, {}, {}}}, {});
  movie.Place(11, 10).Place(12, 20, author::Matrix::Translate(1000, 0));
  Load();
  EXPECT_EQ(HitButton(20, 20), At(10));
  EXPECT_EQ(HitButton(70, 20), nullptr);
}

// The walks as they are meant, without a thought for what they cost.

bool PlainHitOne(SObject* o, const STransform& t, const SPOINT& pt) {
  if (o->character && o->character->type == charEditText) {
    if (EditTextFlags(o->character) & kEditTextNoSelect) return false;
    MATRIX inverse;
    MatrixInvert(&t.mat, &inverse);
    SPOINT p;
    MatrixTransformPoint(&inverse, &pt, &p);
    return RectPointIn(&o->character->bounds, &p);
  }
  if (!RectPointIn(&o->devBounds, &pt)) return false;
  if (!o->edges) o->BuildEdges(&t);
  bool any = false;
  for (RColor* c = o->colors; c; c = c->next) {
    int count = 0;
    for (REdge* e = o->edges; e; e = e->next) {
      CURVE curve = {{e->anchor1.x, e->anchor1.y},
                     {e->control.x, e->control.y},
                     {e->anchor2.x, e->anchor2.y},
                     e->isLine};
      if (e->anchor1.y > pt.y || e->anchor2.y <= pt.y || !CurveXRaySect(&curve, &pt, 0)) continue;
      if (e->fillRule == ruleWinding) {
        if (e->color1 == c) count += e->dir;
      } else {
        if (e->color1 == c) count ^= 1;
        if (e->fillRule == ruleEdgeEdge && e->color2 == c) count ^= 1;
      }
    }
    any |= count != 0;
  }
  return any;
}

void PlainWalk(SObject* o, STransform t, const SPOINT& pt, bool buttons, SObject** found) {
  if (!o->visible) return;
  t = Concatenated(o, t);
  const bool isText = o->character && o->character->type == charEditText;
  if (!buttons) {
    if (PlainHitOne(o, t, pt)) *found = o;
  } else if (isText && PlainHitOne(o, t, pt)) {
    *found = o;
    return;
  } else if (o->character && o->character->type == charButton) {
    ButtonRecordReader reader(o->character, o->display);
    ButtonRecord record;
    while (reader.Next(&record)) {
      SCharacter* character = reader.FindCharacter(record);
      if (!(record.states & kButtonHitArea) || !character) continue;
      SObject area;
      area.display = o->display;
      area.character = character;
      character->AddRef();
      area.cxform.Clear();
      STransform inner = t;
      MatrixConcat(&record.mat, &t.mat, &inner.mat);
      area.CalcDevBounds(&inner.mat);
      const bool hit = PlainHitOne(&area, inner, pt);
      area.Free();
      if (hit) *found = o;
      if (hit) break;
    }
  }
  SObject* child = o->firstChild;
  while (child) {
    if (child->clipDepth == 0) {
      PlainWalk(child, t, pt, buttons, found);
      child = child->next;
    } else if (PlainHitOne(child, Concatenated(child, t), pt)) {
      child = child->next;
    } else {
      const uint16_t until = child->clipDepth;
      do {
        child = child->next;
      } while (child && child->depth <= until);
    }
  }
}

class RandomHits : public HitTests, public ::testing::WithParamInterface<uint32_t> {};

TEST_P(RandomHits, AreThoseOfThePlainWalk) {
  std::mt19937 random(GetParam());
  const auto below = [&](uint32_t n) { return static_cast<int>(random() % n); };
  const auto matrix = [&] {
    return author::Matrix::Rotate(below(360), 0.3 + below(20) / 10.0, 0.3 + below(20) / 10.0,
                                  below(2000), below(2000));
  };
  for (uint16_t id = 1; id <= 4; ++id) {
    author::ShapeBuilder shape;
    shape.AddFill(author::Color{255, 0, 0, 255});
    shape.AddFill(author::Color{0, 255, 0, 0});
    shape.AddLine(100, author::Color{0, 0, 255, 255});
    shape.Style(1, id & 1).MoveTo({below(1000), below(1000)});
    for (int i = 0; i < 6; ++i) {
      if (i == 3) shape.Fill0(2);
      shape.CurveTo({below(1000), below(1000)}, {below(1000), below(1000)});
    }
    shape.Close();
    DefineShape(id, shape);
  }
  EditText(5, author::Rect::Pixels(0, 0, 30, 20), 0);
  EditText(6, author::Rect::Pixels(0, 0, 30, 20), kEditTextNoSelect);
  for (uint16_t id = 7; id <= 12; ++id) {
    std::vector<author::ButtonRecord> records;
    for (int i = 0; i < 5; ++i) {
      records.push_back({static_cast<uint8_t>(1 + below(15)),
                         static_cast<uint16_t>(1 + below(i == 0 ? id - 1 : 6)),
                         static_cast<uint16_t>(below(9)),
                         matrix(),
                         {}});
    }
    movie.DefineButton2(id, false, records, {});
  }
  for (uint16_t id = 13; id <= 16; ++id) {
    TagStream frames;
    for (int i = 0; i < 4; ++i) {
      author::Placement placement{
          .depth = static_cast<uint16_t>(below(20)),
          .character = static_cast<uint16_t>(1 + below(i == 0 ? id - 1 : 12)),
          .matrix = matrix()};
      if (below(4) == 0) placement.clipDepth = static_cast<uint16_t>(below(20));
      frames.Place(placement);
    }
    movie.DefineSprite(id, frames.FrameEnd());
  }
  for (int i = 0; i < 30; ++i) {
    author::Placement placement{.depth = static_cast<uint16_t>(below(60)),
                                .character = static_cast<uint16_t>(1 + below(16)),
                                .matrix = matrix()};
    if (below(8) == 0) placement.clipDepth = static_cast<uint16_t>(below(60));
    movie.Place(placement);
  }
  Load();
  for (SObject* o = player.rootObject->firstChild; o; o = o->next) o->visible = below(10) != 0;
  for (int i = 0; i < 150; ++i) {
    const SPOINT pixel = {below(120) - 10, below(120) - 10};
    const SPOINT pt = {pixel.x * kDevPerPixel, pixel.y * kDevPerPixel};
    SObject* wanted = nullptr;
    PlainWalk(&stage.root, stage.camera, pt, false, &wanted);
    ASSERT_EQ(stage.HitTest(&pixel), wanted) << pixel.x << ", " << pixel.y;
    wanted = nullptr;
    if (RectPointIn(&stage.devViewRect, &pt)) {
      PlainWalk(&stage.root, stage.camera, pt, true, &wanted);
    }
    ASSERT_EQ(stage.HitButton(&pixel), wanted) << pixel.x << ", " << pixel.y;
  }
}
INSTANTIATE_TEST_SUITE_P(Seeds, RandomHits, ::testing::Range(1u, 25u));

}  // namespace
}  // namespace vexel::test
