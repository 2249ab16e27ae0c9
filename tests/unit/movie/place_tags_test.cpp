// Placement tags.
#include <gtest/gtest.h>

#include "author/writer.h"
#include "support/check_stage.h"
#include "support/test_player.h"

namespace vexel {
namespace {

using author::Bytes;
using author::Cxform;
using author::Matrix;
using author::MovieWriter;
using author::Placement;
using author::TagStream;
using test::Children;
using test::TestPlayer;

class PlaceTags : public ::testing::Test {
 protected:
  PlaceTags() {
    author::ShapeBuilder box;
    box.Style(box.AddFill(author::Color{200, 0, 0})).Rectangle(author::Rect::Pixels(0, 0, 10, 10));
    movie.DefineShape(1, box).DefineShape(2, box);
  }
  ~PlaceTags() override { EXPECT_EQ(test::CheckStage(player.display), ""); }

  void Run() {
    movie.FrameEnd().End();
    const Bytes bytes = movie.Finish();
    player.PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()));
    EXPECT_EQ(player.DrawFrame(0, true), 0);
  }
  SObject* At(uint16_t depth) { return player.display.FindObject(player.rootObject, depth); }

  MovieWriter movie{100, 100};
  TestPlayer player;
};

TEST_F(PlaceTags, BodyThatEndsBehindTheMatrixHasAClearColorTransform) {
  movie.PlaceObject(1, 5, Matrix::Translate(20, 40));
  Run();
  ASSERT_NE(At(5), nullptr);
  EXPECT_EQ(At(5)->mat.tx, 20);
  EXPECT_EQ(At(5)->mat.ty, 40);
  EXPECT_EQ(At(5)->cxform.flags, 0);
  EXPECT_EQ(At(5)->cxform.aa, 256);
  EXPECT_EQ(At(5)->ratio, 0);
  EXPECT_EQ(At(5)->clipDepth, 0);
}

TEST_F(PlaceTags, FirstFormReadsAColorTransformWithoutAlpha) {
  Cxform cxform;
  cxform.redMul = 100;
  movie.PlaceObject(1, 5, Matrix::Translate(20, 40), cxform);
  Run();
  EXPECT_EQ(At(5)->cxform.flags, 1);
  EXPECT_EQ(At(5)->cxform.ra, 100);
  EXPECT_EQ(At(5)->cxform.aa, 256);
}

TEST_F(PlaceTags, SecondFormFillsInWhatIsAbsent) {
  movie.Place({.depth = 3, .character = 1});
  Run();
  ASSERT_NE(At(3), nullptr);
  EXPECT_EQ(At(3)->mat.a, 0x10000);
  EXPECT_EQ(At(3)->mat.tx, 0);
  EXPECT_EQ(At(3)->cxform.flags, 0);
  EXPECT_EQ(At(3)->ratio, 0);
  EXPECT_EQ(At(3)->name, nullptr);
  EXPECT_EQ(At(3)->clipDepth, 0);
}

TEST_F(PlaceTags, SecondFormReadsEveryField) {
  Cxform cxform = Cxform::Alpha(0.5);
  movie.Place({.depth = 3,
               .character = 1,
               .matrix = Matrix::Translate(7, 8),
               .cxform = cxform,
               .ratio = 0x8001,
               .clipDepth = 9});
  movie.Place({.depth = 4, .character = 1, .name = "bob"});
  Run();
  EXPECT_EQ(At(3)->mat.ty, 8);
  EXPECT_EQ(At(3)->cxform.aa, 128);
  EXPECT_EQ(At(3)->ratio, 0x8001);
  EXPECT_EQ(At(3)->clipDepth, 9);
  EXPECT_STREQ(At(4)->name, "bob");
}

TEST_F(PlaceTags, ClipDepthBehindANameIsReadFromTheName) {
  movie.Place({.depth = 3, .character = 1, .name = "AB", .clipDepth = 77});
  Run();
  EXPECT_STREQ(At(3)->name, "AB");
  EXPECT_EQ(At(3)->clipDepth, 'A' | 'B' << 8);
}

TEST_F(PlaceTags, NamesAreCutAtTheTag) {
  // Flags: a name and a character; the text has no zero.
  movie.Tag(26, Bytes{0x22, 3, 0, 1, 0, 'x', 'y'});
  movie.Tag(26, Bytes{0x22, 4, 0, 1, 0});
  Run();
  EXPECT_STREQ(At(3)->name, "xy");
  EXPECT_STREQ(At(4)->name, "");
}

TEST_F(PlaceTags, MoveOnAnEmptyDepthChangesNothing) {
  movie.Place(1, 1);
  movie.Place({.move = true, .depth = 2, .character = 1, .matrix = Matrix::Translate(5, 5)});
  Run();
  EXPECT_EQ(Children(*player.rootObject), "1");
}

TEST_F(PlaceTags, MoveChangesWhatItNames) {
  movie.Place({.depth = 1, .character = 1, .matrix = Matrix::Translate(5, 6), .ratio = 10});
  movie.Place({.move = true, .depth = 1, .ratio = 500});
  Run();
  EXPECT_EQ(At(1)->mat.tx, 5);
  EXPECT_EQ(At(1)->ratio, 500);
  EXPECT_EQ(At(1)->character->id, 1);
}

TEST_F(PlaceTags, MoveMayChangeTheCharacter) {
  movie.Place(1, 1);
  movie.Place({.move = true, .depth = 1, .character = 2});
  Run();
  EXPECT_EQ(At(1)->character->id, 2);
  EXPECT_EQ(player.FindCharacter(1)->uses, 0);
}

TEST_F(PlaceTags, MissingCharacterOnTheRootIsStoodInFor) {
  movie.Place(99, 1).PlaceObject(98, 2);
  Run();
  ASSERT_NE(At(1), nullptr);
  EXPECT_EQ(At(1)->character, player.lostCharacter);
  EXPECT_EQ(At(2)->character, player.lostCharacter);
  EXPECT_EQ(player.lostCharacter->player, &player);
}

TEST_F(PlaceTags, MissingCharacterInASpriteIsDropped) {
  TagStream sprite;
  sprite.Place(99, 1).PlaceObject(99, 3).Place(1, 2).FrameEnd().End();
  movie.DefineSprite(10, sprite).Place(10, 1);
  Run();
  EXPECT_EQ(Children(*At(1)), "2");
}

TEST_F(PlaceTags, PlacementWithoutACharacterPlacesNothing) {
  movie.Place({.depth = 3, .matrix = Matrix::Translate(7, 8)});
  Run();
  EXPECT_EQ(Children(*player.rootObject), "");
}

TEST_F(PlaceTags, SystemIdsAreNotPlaced) {
  for (uint16_t id : {65532, 65533, 65534, 65535}) {
    movie.Place(id, static_cast<uint16_t>(id - 65500)).PlaceObject(id, 7);
  }
  Run();
  EXPECT_EQ(Children(*player.rootObject), "");
}

TEST_F(PlaceTags, CloneFlagOfAFileIsIgnored) {
  movie.Tag(26, Bytes{0x82, 3, 0, 1, 0});
  Run();
  EXPECT_NE(At(3), nullptr);
}

TEST_F(PlaceTags, BothFormsRemove) {
  movie.Place(1, 1).Place(2, 2).Place(1, 3);
  movie.RemoveObject(77, 1).RemoveObject(3).RemoveObject(9);
  Run();
  EXPECT_EQ(Children(*player.rootObject), "2");
}

TEST_F(PlaceTags, FreedCharacterStaysOnTheStageUntilRemoved) {
  movie.Place(1, 1).FreeCharacter(1).FrameEnd();
  movie.RemoveObject(1);
  Run();
  EXPECT_EQ(player.FindCharacter(1), nullptr);
  EXPECT_EQ(At(1)->character->id, 1);
  EXPECT_EQ(At(1)->character->uses, 1);
  player.DrawFrame(1, false);
  EXPECT_EQ(At(1), nullptr);
}

}  // namespace
}  // namespace vexel
