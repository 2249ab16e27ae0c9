#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "movie/budget.h"
#include "movie/script_player.h"
#include "support/stage_fixture.h"

namespace vexel::test {
namespace {

class Placing : public StageFixture {};

TEST_F(Placing, OfTwoAtEqualDepthTheSecondIsFirstInTheListAndRemovedFirst) {
  SCharacter* shape = Define(1, charShape);
  SObject* first = Place(5, shape);
  SObject* second = Place(5, shape);
  EXPECT_EQ(stage.root.firstChild, second);
  EXPECT_EQ(second->next, first);
  EXPECT_EQ(stage.FindObject(&stage.root, 5), second);

  stage.RemoveObject(&stage.root, 5);
  EXPECT_EQ(stage.root.firstChild, first);
  stage.RemoveObject(&stage.root, 5);
  EXPECT_EQ(stage.root.firstChild, nullptr);
}

TEST_F(Placing, ChildrenStandInAscendingDepth) {
  SCharacter* shape = Define(1, charShape);
  for (const uint16_t depth : {7, 1, 65535, 0, 7, 3}) Place(depth, shape);
  EXPECT_EQ(Children(stage.root), "0 1 3 7 7 65535");
}

TEST_F(Placing, ANewObjectIsVisibleDirtyAndHasItsParentsTimeline) {
  SObject* layer = Place(0, Define(1, charRoot));
  layer->thread = &player;
  PlaceInfo info = Info(3, Define(2, charShape));
  info.ratio = 77;
  info.clipDepth = 9;
  info.scriptControlled = true;
  stage.dirty = false;
  SObject* object = stage.PlaceObject(layer, &info);
  EXPECT_EQ(object->thread, &player);
  EXPECT_EQ(object->ratio, 77);
  EXPECT_EQ(object->clipDepth, 0) << "not given by the flags";
  EXPECT_TRUE(object->scriptControlled);
  EXPECT_TRUE(object->visible);
  EXPECT_TRUE(object->dirty);
  EXPECT_TRUE(stage.dirty);
  EXPECT_FALSE(object->drawn);
  info.depth = 4;
  info.flags |= kPlaceClipDepth;
  EXPECT_EQ(stage.PlaceObject(layer, &info)->clipDepth, 9);
  stage.RemoveObject(layer);
}

TEST_F(Placing, SpritesWithoutANameAreCountedThroughAllMoviesAndNamedOnesAreNot) {
  const author::TagStream empty;
  SCharacter* sprite = DefineSprite(1, empty);
  EXPECT_STREQ(Place(1, sprite)->name, "instance1");
  EXPECT_STREQ(PlaceNamed(2, sprite, "wheel")->name, "wheel");
  EXPECT_STREQ(Place(3, sprite)->name, "instance2");
  stage.Reset();
  ScriptPlayer* layer = player.OpenLayer(3, false);
  layer->gotHeader = true;
  SCharacter* other = layer->CreateCharacter(1);
  other->type = charSprite;
  EXPECT_STREQ(Place(4, other)->name, "instance3");
  EXPECT_EQ(Place(5, Define(2, charShape))->name, nullptr) << "a shape gets no name";
  stage.RemoveObject(&stage.root, 4);
}

TEST_F(Placing, ASpritesFirstFrameIsOnTheStageAtOnce) {
  Define(1, charShape);
  author::TagStream tags;
  tags.Place(1, 4).FrameEnd().Place(1, 5).FrameEnd();
  SObject* sprite = Place(2, DefineSprite(2, tags));
  ASSERT_NE(sprite->thread, nullptr);
  EXPECT_EQ(sprite->thread->rootObject, sprite);
  EXPECT_EQ(sprite->thread->player, &player);
  EXPECT_EQ(sprite->thread->layerDepth, 2);
  EXPECT_EQ(sprite->thread->curFrame, 0);
  EXPECT_EQ(sprite->thread->numFrames, 2);
  EXPECT_EQ(stage.threads, sprite->thread) << "timelines join at the head";
  EXPECT_EQ(Children(*sprite), "4");
  EXPECT_EQ(sprite->firstChild->thread, sprite->thread);
}

TEST_F(Placing, RemovingASpriteDeletesItsTimeline) {
  const author::TagStream empty;
  SObject* sprite = Place(2, DefineSprite(2, empty));
  WeakSlot<ScriptThread> thread(sprite->thread);
  WeakSlot<SObject> object(sprite);
  stage.RemoveObject(&stage.root, 2);
  EXPECT_FALSE(thread);
  EXPECT_FALSE(object);
  EXPECT_EQ(stage.threads, &player);
}

TEST_F(Placing, MovingChangesWhatTheFlagsNameAndNothingElse) {
  SObject* object = Place(1, Define(1, charShape));
  PlaceInfo info = Info(1);
  info.mat.tx = 40;
  info.cxform.ra = 128;
  info.ratio = 9;
  object->dirty = false;
  EXPECT_EQ(stage.MoveObject(&stage.root, &info), object);
  EXPECT_TRUE(object->dirty) << "even when nothing is given";
  EXPECT_EQ(object->mat.tx, 0);
  info.flags = kPlaceMatrix;
  stage.MoveObject(&stage.root, &info);
  EXPECT_EQ(object->mat.tx, 40);
  EXPECT_EQ(object->cxform.ra, 256);
  info.flags = kPlaceCxform | kPlaceRatio;
  stage.MoveObject(&stage.root, &info);
  EXPECT_EQ(object->cxform.ra, 128);
  EXPECT_EQ(object->ratio, 9);
}

TEST_F(Placing, MovingAnEmptyDepthDoesNothing) {
  Place(2, Define(1, charShape));
  const PlaceInfo info = Info(1);
  EXPECT_EQ(stage.MoveObject(&stage.root, &info), nullptr);
  stage.RemoveObject(&stage.root, 1);
  stage.RemoveObject(&stage.root, 3);
  EXPECT_EQ(Children(stage.root), "2");
}

TEST_F(Placing, MovingChangesTheCharacterUnlessAButtonOrSpriteMeetsAnotherKind) {
  const author::TagStream empty;
  struct Kind {
    uint16_t id;
    SCharacter* character;
  };
  SCharacter* shape = Define(1, charShape);
  SCharacter* shape2 = Define(2, charShape);
  SCharacter* button = Define(3, charButton);
  SCharacter* button2 = Define(4, charButton);
  SCharacter* sprite = DefineSprite(5, empty);
  SCharacter* sprite2 = DefineSprite(6, empty);
  SCharacter* text = Define(7, charText);
  const auto changes = [&](SCharacter* from, SCharacter* to) {
    SObject* object = Place(1, from);
    PlaceInfo info = Info(1, to);
    EXPECT_EQ(stage.MoveObject(&stage.root, &info), object);
    const bool changed = object->character == to;
    EXPECT_TRUE(changed || object->character == from);
    stage.RemoveObject(&stage.root, 1);
    return changed;
  };
  EXPECT_FALSE(changes(shape, button));
  EXPECT_FALSE(changes(button, shape));
  EXPECT_FALSE(changes(button, sprite));
  EXPECT_FALSE(changes(sprite, text));
  EXPECT_TRUE(changes(shape, shape2));
  EXPECT_TRUE(changes(button, button2));
  EXPECT_TRUE(changes(sprite, sprite2));
  EXPECT_TRUE(changes(text, shape));
}

TEST_F(Placing, MovingAScriptControlledObjectReturnsNullAndDoesNotMarkIt) {
  SObject* object = Place(1, Define(1, charShape));
  object->scriptControlled = true;
  object->dirty = false;
  stage.dirty = false;
  PlaceInfo info = Info(1);
  info.flags = kPlaceMatrix;
  info.mat.tx = 40;
  EXPECT_EQ(stage.MoveObject(&stage.root, &info), nullptr);
  EXPECT_FALSE(object->dirty);
  EXPECT_FALSE(stage.dirty);
  EXPECT_EQ(object->mat.tx, 0);
}

TEST_F(Placing, ATrackedButtonThatComesBackInheritsItsState) {
  SCharacter* button = Define(1, charButton);
  SObject* tracked = Place(6, button);
  EXPECT_EQ(tracked->buttonState, 1);
  EXPECT_EQ(stage.button, nullptr) << "nothing was tracked yet";
  stage.button = tracked;
  stage.buttonState = 3;
  stage.savedButtonParent = &stage.root;
  stage.savedButtonCharacter = button;
  stage.savedButtonDepth = 6;
  stage.savedButtonRatio = 0;

  stage.RemoveObject(&stage.root, 6);
  EXPECT_EQ(stage.button, nullptr);
  EXPECT_EQ(stage.buttonState, 3);
  EXPECT_EQ(stage.savedButtonCharacter, button);

  SObject* other = Place(7, button);
  EXPECT_EQ(other->buttonState, 1) << "another depth is another button";
  SObject* again = Place(6, button);
  EXPECT_EQ(again->buttonState, 3);
  EXPECT_EQ(stage.button, again);
}

TEST_F(Placing, AFreedCharacterLivesUntilItsLastObjectIsGone) {
  SObject* a = Place(1, Define(1, charShape));
  Place(2, a->character);
  player.FreeCharacter(1);
  EXPECT_EQ(player.FindCharacter(1), nullptr);
  EXPECT_EQ(a->character->bounds.xmax, 100);
  stage.RemoveObject(&stage.root, 2);
  EXPECT_EQ(a->character->bounds.xmax, 100);
  stage.RemoveObject(&stage.root, 1);
}

TEST_F(Placing, NestingEndsAtItsLimit) {
  // A sprite that places itself in its first frame.
  author::TagStream tags;
  tags.Place(1, 1).FrameEnd();
  SObject* object = Place(1, DefineSprite(1, tags));
  int32_t levels = 0;
  for (; object; object = object->firstChild) ++levels;
  EXPECT_EQ(levels, kMaxNesting);
  EXPECT_EQ(stage.objectCount, kMaxNesting);
}

TEST_F(Placing, ObjectsEndAtTheirBudget) {
  // Two of itself on every level would make 2^256 of them.
  author::TagStream tags;
  tags.Place(1, 1).Place(1, 2).FrameEnd();
  Place(1, DefineSprite(1, tags));
  EXPECT_EQ(stage.objectCount, kMaxObjects);
  EXPECT_EQ(Place(9, Define(2, charShape)), nullptr);
  EXPECT_EQ(CheckStage(stage), "");
  stage.RemoveObject(&stage.root, 1);
  EXPECT_EQ(stage.objectCount, 0);
}

TEST_F(Placing, RemovingTheRootObjectOfALayerTakesAllUnderItAlong) {
  const author::TagStream empty;
  SObject* layer = Place(0, Define(1, charRoot));
  SCharacter* sprite = DefineSprite(2, empty);
  Place(layer, 1, sprite);
  Place(Place(layer, 2, sprite), 1, sprite);
  EXPECT_EQ(stage.objectCount, 4);
  stage.RemoveObject(layer);
  EXPECT_EQ(stage.objectCount, 0);
  EXPECT_EQ(stage.threads, &player);
}

TEST_F(Placing, RemovingAnObjectTakesItselfAndNotItsNeighbourAtTheSameDepth) {
  SCharacter* shape = Define(1, charShape);
  SObject* first = Place(5, shape);
  SObject* second = Place(5, shape);
  stage.RemoveObject(first);
  EXPECT_EQ(stage.root.firstChild, second);
  EXPECT_EQ(second->next, nullptr);
}

// Objects as a plain list says they stand: the last placed first among equals.
class PlainChildren {
 public:
  void Place(uint16_t depth, SObject* object) {
    auto at = std::find_if(m_list.begin(), m_list.end(),
                           [&](const Entry& e) { return e.depth >= depth; });
    m_list.insert(at, {depth, object});
  }
  SObject* Find(uint16_t depth) const {
    for (const Entry& e : m_list) {
      if (e.depth == depth) return e.object;
    }
    return nullptr;
  }
  void Remove(uint16_t depth) {
    auto at = std::find_if(m_list.begin(), m_list.end(),
                           [&](const Entry& e) { return e.depth == depth; });
    if (at != m_list.end()) m_list.erase(at);
  }
  void ExpectSame(const SObject& parent) const {
    const SObject* child = parent.firstChild;
    for (const Entry& e : m_list) {
      ASSERT_EQ(child, e.object) << "at depth " << e.depth;
      child = child->next;
    }
    ASSERT_EQ(child, nullptr);
  }

 private:
  struct Entry {
    uint16_t depth;
    SObject* object;
  };
  std::vector<Entry> m_list;
};

TEST_F(Placing, LookUpsEqualThoseOfAPlainList) {
  SCharacter* shape = Define(1, charShape);
  SObject* parents[] = {Place(1, Define(2, charRoot)), Place(2, Define(3, charRoot))};
  PlainChildren plain[2];
  std::mt19937 random(3);
  for (int i = 0; i < 20000; ++i) {
    const auto which = random() % 2;
    SObject* parent = parents[which];
    // Runs of ascending depths, as timelines have them, among random ones.
    const auto depth = static_cast<uint16_t>(i % 3 ? i % 40 : random() % 40);
    switch (random() % 5) {
      case 0:
      case 1:
        plain[which].Place(depth, Place(parent, depth, shape));
        break;
      case 2: {
        const PlaceInfo info = Info(depth);
        ASSERT_EQ(stage.MoveObject(parent, &info), plain[which].Find(depth)) << i;
        break;
      }
      case 3:
        ASSERT_EQ(stage.FindObject(parent, depth), plain[which].Find(depth)) << i;
        break;
      default:
        stage.RemoveObject(parent, depth);
        plain[which].Remove(depth);
    }
    if (i % 2000 == 0) {
      stage.BeginHold(parent);
      stage.FinishHold();
      plain[which] = PlainChildren();
    }
    plain[which].ExpectSame(*parent);
    if (HasFatalFailure()) return;
  }
}

TEST_F(Placing, LongWalksAreTakenOffTheTagBudget) {
  SCharacter* shape = Define(1, charShape);
  for (uint16_t depth = 1; depth <= 6400; ++depth) Place(depth, shape);
  EXPECT_EQ(stage.tagsLeft, kMaxTagsPerCall) << "ascending depths need no walk";
  stage.FindObject(&stage.root, 1);
  stage.FindObject(&stage.root, 6400);
  EXPECT_EQ(stage.tagsLeft, kMaxTagsPerCall - 99);
}

}  // namespace
}  // namespace vexel::test
