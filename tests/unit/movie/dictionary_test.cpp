// The dictionary of characters, and how long they live.
#include <gtest/gtest.h>

#include <vector>

#include "author/writer.h"
#include "support/stage_fixture.h"

namespace vexel {
namespace {

using author::Bytes;

struct Lost {
  std::vector<uint16_t> ids;
  static void Note(void* arg, uint16_t id) { static_cast<Lost*>(arg)->ids.push_back(id); }
};

TEST(Dictionary, IdsOfOneBucketAreAllFound) {
  ScriptPlayer player;
  SCharacter* a = player.CreateCharacter(100);
  SCharacter* b = player.CreateCharacter(228);
  SCharacter* c = player.CreateCharacter(356);
  EXPECT_EQ(player.FindCharacter(100), a);
  EXPECT_EQ(player.FindCharacter(228), b);
  EXPECT_EQ(player.FindCharacter(356), c);
  EXPECT_EQ(player.charIndex[100], c);
  player.FreeCharacter(228);
  EXPECT_EQ(player.FindCharacter(100), a);
  EXPECT_EQ(player.FindCharacter(228), nullptr);
  EXPECT_EQ(player.FindCharacter(356), c);
}

TEST(Dictionary, TakenIdGivesNull) {
  ScriptPlayer player;
  EXPECT_NE(player.CreateCharacter(5), nullptr);
  EXPECT_EQ(player.CreateCharacter(5), nullptr);
}

TEST(Dictionary, NewCharacterIsEmpty) {
  ScriptPlayer player;
  const SCharacter* character = player.CreateCharacter(5);
  EXPECT_TRUE(RectIsEmpty(&character->bounds));
  EXPECT_EQ(character->data.bytes, nullptr);
  EXPECT_EQ(character->tagCode, 0);
  EXPECT_EQ(character->player, &player);
}

TEST(Dictionary, FreeingAnUnknownIdDoesNothing) {
  ScriptPlayer player;
  player.CreateCharacter(5);
  player.FreeCharacter(6);
  player.FreeCharacter(5 + 128);
  EXPECT_NE(player.FindCharacter(5), nullptr);
}

TEST(Dictionary, FailedLookUpsAreReported) {
  ScriptPlayer player;
  Lost lost;
  player.FindCharacter(1);
  EXPECT_FALSE(player.lostFlag);
  player.lostCallback = Lost::Note;
  player.lostArg = &lost;
  player.FindCharacter(7);
  player.FindCharacter(8);
  EXPECT_TRUE(player.lostFlag);
  EXPECT_EQ(lost.ids, (std::vector<uint16_t>{7, 8}));
}

TEST(Dictionary, LookUpOf65535IsNotReported) {
  ScriptPlayer player;
  Lost lost;
  player.lostCallback = Lost::Note;
  player.lostArg = &lost;
  EXPECT_EQ(player.FindCharacter(65535), nullptr);
  EXPECT_FALSE(player.lostFlag);
  EXPECT_TRUE(lost.ids.empty());
}

TEST(Dictionary, PlaceholderBelongsToItsMovie) {
  ScriptPlayer player;
  ASSERT_NE(player.lostCharacter, nullptr);
  EXPECT_EQ(player.lostCharacter->type, charLost);
  EXPECT_EQ(player.lostCharacter->id, 0);
  EXPECT_EQ(player.lostCharacter->player, &player);
  EXPECT_TRUE(RectIsEmpty(&player.lostCharacter->bounds));
  EXPECT_EQ(player.FindCharacter(0), nullptr);
}

TEST(Dictionary, FreeAllEmptiesAndRewinds) {
  test::TestPlayer player;
  author::MovieWriter movie(100, 100);
  movie.Tag(10, Bytes{1, 0}).Tag(10, Bytes{129, 0}).Place(1, 4).FrameEnd().FrameEnd().End();
  player.Push(movie.Finish());
  player.Seek(1);
  EXPECT_NE(player.rootObject, nullptr);
  player.FreeAll();
  EXPECT_EQ(player.rootObject, nullptr);
  EXPECT_EQ(player.display.root.firstChild, nullptr);
  EXPECT_EQ(player.FindCharacter(1), nullptr);
  EXPECT_EQ(player.FindCharacter(129), nullptr);
  EXPECT_EQ(player.FindCharacter(65534), nullptr);
  EXPECT_EQ(player.pos, player.startPos);
  EXPECT_EQ(player.curFrame, -1);
  EXPECT_FALSE(player.atEnd);
  // The movie is still there, and plays from its start.
  EXPECT_EQ(player.DrawFrame(1, true), 0);
  EXPECT_NE(player.FindCharacter(1), nullptr);
}

TEST(Dictionary, ClearScriptForgetsTheMovie) {
  test::TestPlayer player;
  author::MovieWriter movie(100, 100);
  movie.FrameEnd().End();
  player.Push(movie.Finish());
  player.SetVariable("x", "1");
  player.streamData = &player;
  player.ScriptPlayer::ClearScript();
  EXPECT_EQ(player.script, nullptr);
  EXPECT_EQ(player.scriptLen, -1);
  EXPECT_EQ(player.numFramesComplete, -1);
  EXPECT_EQ(player.headerBytes, 0);
  EXPECT_EQ(player.scanPos, 0);
  EXPECT_FALSE(player.gotHeader);
  EXPECT_EQ(player.streamData, nullptr);
  EXPECT_EQ(player.firstVariable, nullptr);
  EXPECT_EQ(player.len, 0);
}

class CharacterLife : public test::StageFixture {};

TEST_F(CharacterLife, FreedCharacterLivesAsLongAsItIsPlaced) {
  SCharacter* character = Define(1, charShape);
  Place(1, character);
  Place(2, character);
  EXPECT_EQ(character->uses, 2);
  player.FreeCharacter(1);
  EXPECT_EQ(player.FindCharacter(1), nullptr);
  EXPECT_FALSE(character->listed);
  stage.RemoveObject(&stage.root, 1);
  EXPECT_EQ(character->uses, 1);
  stage.RemoveObject(&stage.root, 2);
}

TEST_F(CharacterLife, FreedIdMayBeDefinedAnewWhileTheOldOneIsShown) {
  SCharacter* old = Define(1, charShape);
  Place(1, old);
  player.FreeCharacter(1);
  SCharacter* fresh = Define(1, charShape);
  ASSERT_NE(fresh, nullptr);
  EXPECT_NE(fresh, old);
  EXPECT_EQ(player.FindCharacter(1), fresh);
  player.FreeCharacter(1);
  EXPECT_EQ(old->uses, 1);
}

TEST_F(CharacterLife, ManyFreedCharactersInUseAreLetGoOfInAnyOrder) {
  const int count = 500;
  for (int i = 0; i < count; ++i) {
    Place(static_cast<uint16_t>(i * 7 % count), Define(static_cast<uint16_t>(i), charShape));
  }
  for (int i = 0; i < count; ++i) player.FreeCharacter(static_cast<uint16_t>(i));
  for (int i = 0; i < count; ++i) stage.RemoveObject(&stage.root, static_cast<uint16_t>(i));
  // The placeholder is what is left.
  EXPECT_EQ(test::UsedItems(player.charAlloc), 1);
}

TEST_F(CharacterLife, BitmapLivesAsLongAsAColorUsesIt) {
  SCharacter* bitmap = Define(1, charBitmap);
  ASSERT_TRUE(player.CreateBits(bitmap, bm32Bit, 4, 4, nullptr));
  bitmap->bits.useCount = 1;
  player.FreeCharacter(1);
  EXPECT_NE(bitmap->bits.baseAddr, nullptr);
  bitmap->bits.useCount = 0;
  player.FreeCache();
  EXPECT_EQ(test::UsedItems(player.charAlloc), 1);
}

TEST_F(CharacterLife, BitmapsThatColorsLeftAreFoundWhenManyGather) {
  SCharacter* bitmaps[200];
  for (int i = 0; i < 200; ++i) {
    bitmaps[i] = Define(static_cast<uint16_t>(i), charBitmap);
    bitmaps[i]->bits.useCount = 1;
    player.FreeCharacter(static_cast<uint16_t>(i));
    bitmaps[i]->bits.useCount = 0;
  }
  EXPECT_LT(test::UsedItems(player.charAlloc), 1 + kReapFirst);
}

TEST_F(CharacterLife, FreeCacheDropsOnlyBitmapsOutOfUse) {
  SCharacter* used = Define(1, charBitmap);
  SCharacter* unused = Define(2, charBitmap);
  ASSERT_TRUE(player.CreateBits(used, bm32Bit, 4, 4, nullptr));
  ASSERT_TRUE(player.CreateBits(unused, bm32Bit, 4, 4, nullptr));
  used->bits.useCount = 1;
  player.FreeCache();
  EXPECT_NE(used->bits.baseAddr, nullptr);
  EXPECT_EQ(unused->bits.baseAddr, nullptr);
  used->bits.useCount = 0;
}

TEST_F(CharacterLife, PoolCharacterGoesWithItsLastUser) {
  SCharacter* character = player.CreatePoolCharacter(kEmptySpriteId, charSprite);
  ASSERT_NE(character, nullptr);
  EXPECT_EQ(player.FindCharacter(kEmptySpriteId), nullptr);
  Place(1, character);
  character->Release();
  EXPECT_EQ(test::UsedItems(player.charAlloc), 2);
  stage.RemoveObject(&stage.root, 1);
  EXPECT_EQ(test::UsedItems(player.charAlloc), 1);
}

TEST_F(CharacterLife, HeapCharacterGoesWithItsLastUser) {
  SCharacter* character = CreateHeapCharacter(&player, kLoadedMovieId, charShape);
  ASSERT_NE(character, nullptr);
  Place(1, character);
  character->Release();
  EXPECT_EQ(stage.root.firstChild->character->uses, 1);
}

}  // namespace
}  // namespace vexel
