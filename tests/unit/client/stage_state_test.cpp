#include "client/stream/stage_state.h"

#include <gtest/gtest.h>

#include "unit/client/test_movies.h"

namespace vexel::client {
namespace {

// The key frame of what stands behind all tags of a stream.
std::vector<uint8_t> KeyOf(const author::TagStream& tags, bool* expressible = nullptr) {
  author::MovieWriter writer(50, 50, 10);
  writer.Raw(tags.bytes()).FrameEnd();
  const MovieIndex movie(writer.Finish());
  StageState stage;
  for (const MovieTag& tag : movie.tags()) stage.Apply(movie, tag);
  if (expressible) *expressible = stage.expressible();
  return stage.KeyFrame({});
}

std::vector<uint8_t> Placed(const author::TagStream& tags) {
  author::TagStream key;
  key.SyncFrame().Raw(tags.bytes());
  return key.bytes();
}

TEST(StageState, RepeatsPlacementsAsTheyWereWritten) {
  const author::Cxform tint{.redMul = 100, .blueAdd = -20};
  author::TagStream tags, expected;
  tags.PlaceObject(1, 4, author::Matrix::Scale(2, 3, 40, 60), tint);
  tags.Place(
      {.depth = 2, .character = 9, .matrix = author::Matrix::Translate(10, 0), .cxform = tint});
  expected.PlaceObject(9, 2, author::Matrix::Translate(10, 0), tint);
  expected.PlaceObject(1, 4, author::Matrix::Scale(2, 3, 40, 60), tint);
  EXPECT_EQ(KeyOf(tags), Placed(expected));
}

TEST(StageState, OfEqualDepthsTheLastStandsFirst) {
  author::TagStream tags, expected;
  tags.Place(1, 4).Place(2, 4);
  expected.PlaceObject(2, 4).PlaceObject(1, 4);
  EXPECT_EQ(KeyOf(tags), Placed(expected));
}

TEST(StageState, MovesAndRemovals) {
  author::TagStream tags, expected;
  tags.Place(1, 4).Place(2, 5).Place(3, 6).Move(5, author::Matrix::Translate(7, 7));
  tags.RemoveObject(1, 4).RemoveObject(6).RemoveObject(99).Move(98, author::Matrix());
  expected.PlaceObject(2, 5, author::Matrix::Translate(7, 7));
  EXPECT_EQ(KeyOf(tags), Placed(expected));
}

TEST(StageState, ACharacterIsExchangedForOneOfItsKindOnly) {
  author::TagStream sprite, tags, expected;
  sprite.FrameEnd().End();
  tags.DefineSprite(1, sprite).DefineSprite(2, sprite);
  tags.Place(1, 4).Place({.move = true, .depth = 4, .character = 2});
  tags.Place(1, 5).Place({.move = true, .depth = 5, .character = 30});
  expected.PlaceObject(2, 4).PlaceObject(1, 5);
  EXPECT_EQ(KeyOf(tags), Placed(expected));
}

TEST(StageState, AlphaCannotBeSaid) {
  author::TagStream tags;
  tags.Place({.depth = 2, .character = 9, .cxform = author::Cxform::Alpha(0.5)});
  bool expressible = true;
  KeyOf(tags, &expressible);
  EXPECT_FALSE(expressible);
  tags.RemoveObject(2);
  KeyOf(tags, &expressible);
  EXPECT_TRUE(expressible);
}

TEST(StageState, ATagCutShortChangesNothing) {
  author::TagStream tags, expected;
  tags.Place(1, 4)
      .Tag(kTagPlaceObject, author::Bytes{1})
      .Tag(kTagPlaceObject2, {})
      .Tag(kTagRemoveObject, {});
  expected.PlaceObject(1, 4);
  EXPECT_EQ(KeyOf(tags), Placed(expected));
}

}  // namespace
}  // namespace vexel::client
