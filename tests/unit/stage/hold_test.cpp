#include "movie/script_player.h"
#include "support/stage_fixture.h"

namespace vexel::test {
namespace {

class Hold : public StageFixture {
 protected:
  Hold() {
    shape = Define(1, charShape);
    other = Define(2, charShape);
    sprite = DefineSprite(3, author::TagStream());
  }
  SCharacter* shape;
  SCharacter* other;
  SCharacter* sprite;
};

TEST_F(Hold, KeepsObjectsThatAreRebuiltJustAsTheyWere) {
  SObject* a = Place(1, shape);
  SObject* b = Place(2, sprite);
  ScriptThread* thread = b->thread;
  a->drawn = true;
  stage.dirtyCount = 0;
  stage.BeginHold(&stage.root);
  EXPECT_EQ(stage.root.firstChild, nullptr);
  Place(1, shape);
  PlaceNamed(2, sprite, "rebuilt");
  a->dirty = b->dirty = false;
  stage.FinishHold();
  EXPECT_EQ(stage.root.firstChild, a);
  EXPECT_EQ(a->next, b);
  EXPECT_EQ(b->thread, thread);
  EXPECT_STREQ(b->name, "instance1");
  EXPECT_FALSE(a->dirty);
  EXPECT_FALSE(b->dirty);
  EXPECT_EQ(stage.dirtyCount, 0) << "nothing was drawn anew";
}

TEST_F(Hold, ABackwardSeekKeepsObjectsTimelinesVariablesAndTheTrackedButton) {
  author::TagStream wheel;
  wheel.FrameEnd().FrameEnd().FrameEnd().End();
  DefineSprite(10, wheel);
  Define(11, charButton);
  author::TagStream tags;
  tags.Place(10, 1).Place(11, 2).Place(1, 3).FrameEnd();
  tags.Place(2, 4).FrameEnd();
  tags.End();
  SObject* movie = Place(1, DefineSprite(12, tags));
  ScriptThread* timeline = movie->thread;
  timeline->DoFrame(1);
  ASSERT_EQ(Children(*movie), "1:instance2 2 3 4");
  SObject* child = movie->firstChild;
  SObject* button = child->next;
  child->thread->DoFrame(1);
  child->thread->DoFrame(1);
  child->thread->SetVariable("speed", "7");
  button->buttonState = 2;
  stage.button = button;

  timeline->Seek(0);
  EXPECT_EQ(Children(*movie), "1:instance2 2 3") << "what frame 0 does not have is gone";
  EXPECT_EQ(movie->firstChild, child);
  EXPECT_EQ(child->thread->curFrame, 2);
  EXPECT_STREQ(child->thread->FindVariable("speed")->Text(), "7");
  EXPECT_EQ(child->next, button);
  EXPECT_EQ(button->buttonState, 2);
  EXPECT_EQ(stage.button, button);
}

TEST_F(Hold, WhatTheTimelineDoesNotKnowStaysAboveDepth16383Only) {
  Place(16383, shape);
  SObject* kept = Place(16384, shape);
  SObject* top = Place(65535, shape);
  stage.BeginHold(&stage.root);
  Place(3, other);
  stage.FinishHold();
  EXPECT_EQ(Children(stage.root), "3 16384 65535");
  EXPECT_EQ(stage.root.firstChild->next, kept);
  EXPECT_EQ(kept->next, top);
}

TEST_F(Hold, ARunTimeObjectStandsBeforeARebuiltOneAbove) {
  SObject* kept = Place(20000, shape);
  stage.BeginHold(&stage.root);
  Place(19999, other);
  Place(20001, other);
  stage.FinishHold();
  EXPECT_EQ(Children(stage.root), "19999 20000 20001");
  EXPECT_EQ(stage.root.firstChild->next, kept);
}

TEST_F(Hold, AMovedShapeIsReplacedAndAMovedSpriteTakesTheNewPlace) {
  SObject* a = Place(1, shape);
  SObject* b = Place(2, sprite);
  WeakSlot<SObject> oldShape(a);
  stage.BeginHold(&stage.root);
  SObject* rebuilt = PlaceAt(&stage.root, 1, shape, 40);
  PlaceAt(&stage.root, 2, sprite, 60);
  b->dirty = false;
  stage.FinishHold();
  EXPECT_FALSE(oldShape);
  EXPECT_EQ(stage.root.firstChild, rebuilt);
  EXPECT_EQ(rebuilt->next, b);
  EXPECT_EQ(b->mat.tx, 60);
  EXPECT_TRUE(b->dirty);
}

TEST_F(Hold, AScriptControlledSpriteKeepsItsOwnPlace) {
  SObject* b = Place(2, sprite);
  b->scriptControlled = true;
  b->mat.tx = 5;
  stage.BeginHold(&stage.root);
  PlaceAt(&stage.root, 2, sprite, 60);
  b->dirty = false;
  stage.FinishHold();
  EXPECT_EQ(stage.root.firstChild, b);
  EXPECT_EQ(b->mat.tx, 5);
  EXPECT_FALSE(b->dirty);
}

TEST_F(Hold, TwoSpritesOfDifferentCharactersKeepTheOldOne) {
  SCharacter* sprite2 = DefineSprite(4, author::TagStream());
  SObject* old = Place(2, sprite);
  stage.BeginHold(&stage.root);
  PlaceAt(&stage.root, 2, sprite2, 60);
  stage.FinishHold();
  EXPECT_EQ(stage.root.firstChild, old);
  EXPECT_EQ(old->character, sprite) << "only the place is taken over";
  EXPECT_EQ(old->mat.tx, 60);
}

TEST_F(Hold, AnotherRatioOrCharacterIsReplaced) {
  WeakSlot<SObject> a(Place(1, shape));
  WeakSlot<SObject> b(Place(2, shape));
  stage.BeginHold(&stage.root);
  PlaceInfo info = Info(1, shape);
  info.ratio = 9;
  stage.PlaceObject(&stage.root, &info);
  Place(2, other);
  stage.FinishHold();
  EXPECT_FALSE(a);
  EXPECT_FALSE(b);
  EXPECT_EQ(Children(stage.root), "1 2");
}

TEST_F(Hold, ATrackedButtonThatWasRebuiltMovesToTheKeptObject) {
  SCharacter* button = Define(9, charButton);
  SObject* old = Place(2, button);
  stage.BeginHold(&stage.root);
  stage.button = Place(2, button);
  stage.FinishHold();
  EXPECT_EQ(stage.root.firstChild, old);
  EXPECT_EQ(stage.button, old);
}

// The walk stays before an object that it took in, so of two held objects at
// one depth the second is measured against the first.
TEST_F(Hold, OfSeveralObjectsAtOneDepthTheLastHeldOneReplacesTheOthers) {
  Place(1, shape);
  SObject* low = Place(1, shape);
  SObject* high = low->next;
  stage.BeginHold(&stage.root);
  SObject* rebuilt2 = Place(1, shape);
  SObject* rebuilt = Place(1, shape);
  stage.FinishHold();
  EXPECT_EQ(stage.root.firstChild, high);
  EXPECT_EQ(high->next, rebuilt2);
  EXPECT_EQ(rebuilt2->next, nullptr);
  EXPECT_NE(rebuilt, rebuilt2);
}

TEST_F(Hold, ASecondHoldFinishesTheFirst) {
  SObject* layer = Place(1, Define(8, charRoot));
  Place(layer, 1, shape);
  stage.BeginHold(layer);
  stage.BeginHold(&stage.root);
  EXPECT_EQ(layer->firstChild, nullptr);
  Place(1, layer->character);
  stage.FinishHold();
  EXPECT_EQ(stage.root.firstChild, layer);
}

TEST_F(Hold, RemovingTheHoldersObjectFreesWhatItHeld) {
  SObject* layer = Place(1, Define(8, charRoot));
  Place(layer, 1, shape);
  stage.BeginHold(layer);
  Place(layer, 2, sprite);
  stage.RemoveObject(layer);
  EXPECT_EQ(stage.objectCount, 0);
  stage.FinishHold();
}

}  // namespace
}  // namespace vexel::test
