// Sprites cloned and removed by scripts.
#include <gtest/gtest.h>

#include "author/writer.h"
#include "support/check_stage.h"
#include "support/test_player.h"

namespace vexel {
namespace {

using author::Bytes;
using author::MovieWriter;
using author::TagStream;
using test::Children;
using test::TestPlayer;

// A sprite "a" of two frames at depth 3, with everything that a place can have.
class SpriteOps : public ::testing::Test {
 protected:
  SpriteOps() {
    author::ShapeBuilder box;
    box.Style(box.AddFill(author::Color{200, 0, 0})).Rectangle(author::Rect::Pixels(0, 0, 10, 10));
    TagStream sprite;
    sprite.Place(1, 1).FrameEnd().FrameEnd().End();
    MovieWriter movie(100, 100);
    movie.DefineShape(1, box).DefineSprite(2, sprite);
    movie.Place({.depth = 3,
                 .character = 2,
                 .matrix = author::Matrix::Translate(40, 60),
                 .cxform = author::Cxform::Alpha(0.5),
                 .ratio = 12,
                 .name = "a"});
    movie.FrameEnd().End();
    const Bytes bytes = movie.Finish();
    player.PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()));
    player.DrawFrame(0, true);
    At(3)->clipDepth = 8;
  }
  ~SpriteOps() override { EXPECT_EQ(test::CheckStage(player.display), ""); }

  SObject* At(uint16_t depth) { return player.display.FindObject(player.rootObject, depth); }

  TestPlayer player;
};

TEST_F(SpriteOps, CloneCopiesPlaceAndCharacter) {
  CloneSprite(At(3)->thread, "b", 20000);
  const SObject* clone = At(20000);
  ASSERT_NE(clone, nullptr);
  EXPECT_STREQ(clone->name, "b");
  EXPECT_EQ(clone->character, At(3)->character);
  EXPECT_EQ(clone->mat.tx, 40);
  EXPECT_EQ(clone->cxform.aa, 128);
  EXPECT_EQ(clone->ratio, 65535);
  EXPECT_EQ(clone->clipDepth, 8);
  EXPECT_FALSE(clone->scriptControlled);
  EXPECT_NE(clone->thread, At(3)->thread);
  EXPECT_EQ(clone->thread->curFrame, 0);
  EXPECT_EQ(Children(*clone), "1");
}

TEST_F(SpriteOps, CloneWithoutANameIsNamedByTheStage) {
  CloneSprite(At(3)->thread, nullptr, 20000);
  EXPECT_STREQ(At(20000)->name, "instance1");
}

TEST_F(SpriteOps, CloneReplacesWhatStandsAtItsDepth) {
  CloneSprite(At(3)->thread, "b", 20000);
  CloneSprite(At(3)->thread, "c", 20000);
  EXPECT_EQ(Children(*player.rootObject), "3:a 20000:c");
}

TEST_F(SpriteOps, CloneOntoItsOwnDepthReplacesTheSource) {
  player.FreeCharacter(2);
  CloneSprite(At(3)->thread, "b", 3);
  EXPECT_EQ(Children(*player.rootObject), "3:b");
  EXPECT_EQ(Children(*At(3)), "1");
}

TEST_F(SpriteOps, RootAndNullAreNotCloned) {
  CloneSprite(nullptr, "b", 5);
  CloneSprite(&player, "b", 5);
  EXPECT_EQ(Children(*player.rootObject), "3:a");
  EXPECT_EQ(Children(player.display.root), "0");
}

TEST_F(SpriteOps, RemoveTakesTheSpriteOffTheStage) {
  WeakSlot<ScriptThread> thread(At(3)->thread);
  RemoveSprite(thread.Get(), false);
  EXPECT_EQ(Children(*player.rootObject), "");
  EXPECT_EQ(thread.Get(), nullptr);
}

TEST_F(SpriteOps, RemoveThatKeepsThePlaceLeavesAnEmptySprite) {
  At(3)->scriptControlled = true;
  RemoveSprite(At(3)->thread, true);
  const SObject* empty = At(3);
  ASSERT_NE(empty, nullptr);
  EXPECT_STREQ(empty->name, "a");
  EXPECT_EQ(empty->character->id, 65532);
  EXPECT_EQ(empty->character->type, charSprite);
  EXPECT_EQ(empty->character->frameCount, 0);
  EXPECT_EQ(empty->mat.ty, 60);
  EXPECT_EQ(empty->cxform.aa, 128);
  EXPECT_EQ(empty->ratio, 12);
  EXPECT_EQ(empty->clipDepth, 0);
  EXPECT_TRUE(empty->scriptControlled);
  EXPECT_EQ(empty->firstChild, nullptr);
  ASSERT_NE(empty->thread, nullptr);
  EXPECT_EQ(empty->thread->curFrame, -1);
  EXPECT_EQ(player.FindCharacter(2)->uses, 0);
}

TEST_F(SpriteOps, RootAndNullAreNotRemoved) {
  RemoveSprite(nullptr, true);
  RemoveSprite(&player, true);
  RemoveSprite(&player, false);
  EXPECT_EQ(Children(player.display.root), "0");
}

TEST_F(SpriteOps, EmptySpriteCanBeRemovedAndClonedAgain) {
  RemoveSprite(At(3)->thread, true);
  CloneSprite(At(3)->thread, "b", 20000);
  EXPECT_EQ(At(3)->character->uses, 2);
  RemoveSprite(At(3)->thread, false);
  EXPECT_EQ(At(20000)->character->uses, 1);
  RemoveSprite(At(20000)->thread, false);
  EXPECT_EQ(Children(*player.rootObject), "");
}

}  // namespace
}  // namespace vexel
