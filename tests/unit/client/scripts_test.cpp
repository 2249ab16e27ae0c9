#include "client/stream/scripts.h"

#include <gtest/gtest.h>

#include "client/stream/movie_index.h"
#include "movie/tags.h"
#include "unit/client/test_movies.h"

namespace vexel::client {
namespace {

using Bytes = std::vector<uint8_t>;

// One tag, with its length in four bytes.
Bytes Tag(int32_t code, const Bytes& body) {
  const auto word = static_cast<uint32_t>(code << 6 | 63);
  Bytes tag{static_cast<uint8_t>(word), static_cast<uint8_t>(word >> 8)};
  for (size_t i = 0; i < 4; i++) tag.push_back(static_cast<uint8_t>(body.size() >> 8 * i));
  tag.insert(tag.end(), body.begin(), body.end());
  return tag;
}

Bytes Joined(std::initializer_list<Bytes> parts) {
  Bytes joined;
  for (const Bytes& part : parts) joined.insert(joined.end(), part.begin(), part.end());
  return joined;
}

Bytes Sprite(const Bytes& tags) {
  return Tag(kTagDefineSprite, Joined({{1, 0, 2, 0}, tags}));
}

const Bytes kFrame = Tag(kTagFrameEnd, {});
const Bytes kActions = Tag(kTagFrameActions, {7, 0});

TEST(HasScripts, FramesAloneAreNone) {
  EXPECT_FALSE(HasScripts({}));
  const MovieIndex movie(FramesOf({10, 100, 0}));
  EXPECT_FALSE(HasScripts(movie.bytes().subspan(movie.head().size())));
  EXPECT_FALSE(HasScripts(Joined({Sprite(Joined({kFrame, kFrame})), kFrame})));
}

TEST(HasScripts, ActionsOfAFrameAreFound) {
  EXPECT_TRUE(HasScripts(Joined({kFrame, kFrame, kActions, kFrame})));
}

TEST(HasScripts, ActionsInASpriteAreFound) {
  EXPECT_TRUE(HasScripts(Joined({Sprite(Joined({kFrame, kActions})), kFrame})));
}

TEST(HasScripts, ButtonsAreFound) {
  EXPECT_TRUE(HasScripts(Joined({Tag(kTagDefineButton, {1, 0}), kFrame})));
  EXPECT_TRUE(HasScripts(Joined({Tag(kTagDefineButton2, {1, 0}), kFrame})));
}

TEST(HasScripts, NothingIsLookedForBehindTheEnd) {
  EXPECT_FALSE(HasScripts(Joined({kFrame, Tag(kTagEnd, {}), kActions})));
}

TEST(HasScripts, SpritesInSpritesAreNone) {
  Bytes tags = kActions;
  for (int depth = 0; depth < 2; depth++) tags = Sprite(tags);
  EXPECT_FALSE(HasScripts(tags));
}

TEST(HasScripts, WhatIsCutShortEndsTheSearch) {
  const Bytes whole = Joined({kFrame, Sprite(kActions), kActions});
  for (size_t size = 0; size < kFrame.size() + Sprite(kActions).size(); size++)
    EXPECT_FALSE(HasScripts(std::span(whole).first(size))) << size;
  // A sprite that is whole, and whose last tag is not.
  EXPECT_FALSE(HasScripts(Sprite({0x3F, 3, 9, 0, 0, 0})));
}

}  // namespace
}  // namespace vexel::client
