// The tags that define characters.
#include <gtest/gtest.h>

#include <cstring>

#include "author/writer.h"
#include "movie/script_player.h"

namespace vexel {
namespace {

using author::BitWriter;
using author::Bytes;
using author::MovieWriter;

// Runs the tags of a movie without a stage.
class Definitions : public ::testing::Test {
 protected:
  void Run() {
    const Bytes bytes = movie.Finish();
    player.PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()));
    while (player.DoTag() == kScriptOk) {
    }
  }
  static Bytes Data(const DataSpan& span) { return Bytes(span.bytes, span.bytes + span.length); }

  MovieWriter movie{100, 100};
  ScriptPlayer player;
};

// An id, a rectangle and some bytes.
Bytes WithRect(uint16_t id, const author::Rect& rect, const Bytes& rest) {
  BitWriter out;
  out.U16(id);
  author::WriteRect(out, rect);
  out.Append(rest);
  return out.Take();
}

TEST_F(Definitions, ShapesKeepBoundsAndRest) {
  const Bytes rest = {1, 2, 3, 4};
  movie.Tag(2, WithRect(1, {-20, 30, -40, 50}, rest));
  movie.Tag(22, WithRect(2, {}, rest)).Tag(32, WithRect(3, {}, rest));
  Run();
  const SCharacter* shape = player.FindCharacter(1);
  ASSERT_NE(shape, nullptr);
  EXPECT_EQ(shape->type, charShape);
  EXPECT_EQ(shape->tagCode, 2);
  EXPECT_EQ(shape->player, &player);
  EXPECT_EQ(shape->bounds.xmin, -20);
  EXPECT_EQ(shape->bounds.xmax, 30);
  EXPECT_EQ(shape->bounds.ymin, -40);
  EXPECT_EQ(shape->bounds.ymax, 50);
  EXPECT_EQ(Data(shape->data), rest);
  EXPECT_EQ(player.FindCharacter(2)->tagCode, 22);
  EXPECT_EQ(player.FindCharacter(3)->tagCode, 32);
}

TEST_F(Definitions, SecondDefinitionOfAnIdIsIgnored) {
  movie.Tag(2, WithRect(1, {}, {1})).Tag(22, WithRect(1, {}, {2}));
  Run();
  EXPECT_EQ(player.FindCharacter(1)->tagCode, 2);
  EXPECT_EQ(Data(player.FindCharacter(1)->data), Bytes{1});
}

TEST_F(Definitions, MorphShapesKeepBothBounds) {
  BitWriter out;
  out.U16(7);
  author::WriteRect(out, {0, 10, 0, 20});
  author::WriteRect(out, {0, 30, 0, 40});
  out.U32(5);
  movie.Tag(46, out.bytes());
  Run();
  const SCharacter* morph = player.FindCharacter(7);
  EXPECT_EQ(morph->type, charMorphShape);
  EXPECT_EQ(morph->tagCode, 46);
  EXPECT_EQ(morph->bounds.ymax, 20);
  EXPECT_EQ(morph->bounds2.ymax, 40);
  EXPECT_EQ(Data(morph->data), (Bytes{5, 0, 0, 0}));
}

TEST_F(Definitions, ButtonsKeepTheirRecords) {
  movie.Tag(7, Bytes{1, 0, 9, 8, 7}).Tag(34, Bytes{2, 0, 1, 9, 8, 7});
  Run();
  EXPECT_EQ(player.FindCharacter(1)->type, charButton);
  EXPECT_FALSE(player.FindCharacter(1)->trackAsMenu);
  EXPECT_TRUE(player.FindCharacter(2)->trackAsMenu);
  EXPECT_EQ(Data(player.FindCharacter(1)->data), (Bytes{9, 8, 7}));
  EXPECT_EQ(Data(player.FindCharacter(2)->data), (Bytes{9, 8, 7}));
}

TEST_F(Definitions, ButtonExtraNeedsAButtonThatHasNone) {
  movie.Tag(7, Bytes{1, 0}).Tag(2, WithRect(2, {}, {}));
  movie.Tag(23, Bytes{1, 0, 5}).Tag(23, Bytes{1, 0, 6}).Tag(23, Bytes{2, 0, 7});
  movie.Tag(23, Bytes{9, 0, 7});
  Run();
  EXPECT_EQ(Data(player.FindCharacter(1)->cxformData), Bytes{5});
  EXPECT_EQ(player.FindCharacter(2)->cxformData.bytes, nullptr);
}

TEST_F(Definitions, FontsOfTheFirstFormHaveNoExtras) {
  movie.Tag(10, Bytes{4, 0, 1, 2, 3});
  Run();
  const SCharacter* font = player.FindCharacter(4);
  EXPECT_EQ(font->type, charFont);
  EXPECT_EQ(font->tagCode, 10);
  EXPECT_EQ(font->glyphCount, 0);
  EXPECT_EQ(font->fontFlags, 0);
  EXPECT_EQ(font->nameSize, 0);
  EXPECT_EQ(font->fontInfo.bytes, nullptr);
  EXPECT_EQ(Data(font->data), (Bytes{1, 2, 3}));
}

TEST_F(Definitions, Font2KeepsItsNameInFrontOfItsData) {
  movie.Tag(48, Bytes{4, 0, 0x34, 0x12, 3, 'a', 'b', 'c', 9, 1, 0xAA, 0xBB});
  Run();
  const SCharacter* font = player.FindCharacter(4);
  EXPECT_EQ(font->fontFlags, 0x1234);
  EXPECT_EQ(font->glyphCount, 0x0109);
  EXPECT_EQ(font->nameSize, 6);
  EXPECT_EQ(Data(font->data), (Bytes{0xAA, 0xBB}));
  EXPECT_EQ(memcmp(font->data.bytes - font->nameSize, "\3abc", 4), 0);
}

TEST_F(Definitions, Font2NameLongerThanItsTagLeavesNoData) {
  for (uint8_t length : {3, 4, 200}) {
    ScriptPlayer other;
    MovieWriter short_(100, 100);
    short_.Tag(48, Bytes{4, 0, 0, 0, length, 'a', 'b', 'c'}).FrameEnd();
    const Bytes bytes = short_.Finish();
    other.PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()));
    other.DoTag();
    const SCharacter* font = other.FindCharacter(4);
    EXPECT_EQ(font->data.length, 0);
    EXPECT_EQ(font->nameSize, 4);
  }
}

TEST_F(Definitions, FontInfoNeedsAFontThatHasNone) {
  movie.Tag(10, Bytes{4, 0}).Tag(2, WithRect(2, {}, {}));
  movie.Tag(13, Bytes{4, 0, 5}).Tag(13, Bytes{4, 0, 6}).Tag(13, Bytes{2, 0, 7});
  movie.Tag(13, Bytes{9, 0, 7});
  Run();
  EXPECT_EQ(Data(player.FindCharacter(4)->fontInfo), Bytes{5});
  EXPECT_EQ(player.FindCharacter(2)->fontInfo.bytes, nullptr);
}

TEST_F(Definitions, TextsKeepBoundsAndRest) {
  movie.Tag(11, WithRect(1, {0, 9, 0, 8}, {1, 2})).Tag(33, WithRect(2, {}, {}));
  movie.Tag(37, WithRect(3, {0, 7, 0, 6}, {0, 1, 2}));
  Run();
  EXPECT_EQ(player.FindCharacter(1)->type, charText);
  EXPECT_EQ(player.FindCharacter(1)->bounds.xmax, 9);
  EXPECT_EQ(Data(player.FindCharacter(1)->data), (Bytes{1, 2}));
  EXPECT_EQ(player.FindCharacter(2)->tagCode, 33);
  EXPECT_EQ(player.FindCharacter(3)->type, charEditText);
  EXPECT_EQ(Data(player.FindCharacter(3)->data), (Bytes{0, 1, 2}));
}

TEST_F(Definitions, SpritesKeepTheirTags) {
  author::TagStream sprite;
  sprite.FrameEnd().FrameEnd().End();
  movie.DefineSprite(1, sprite);
  Run();
  EXPECT_EQ(player.FindCharacter(1)->type, charSprite);
  EXPECT_EQ(player.FindCharacter(1)->frameCount, 2);
  EXPECT_EQ(Data(player.FindCharacter(1)->data), sprite.bytes());
}

TEST_F(Definitions, BitmapsKeepTheirWholeTag) {
  movie.Tag(20, Bytes{1, 0, 5, 6}, author::TagForm::kLong);
  movie.Tag(21, Bytes{2, 0, 5, 6}, author::TagForm::kShort);
  Run();
  EXPECT_EQ(player.FindCharacter(1)->type, charBitmap);
  EXPECT_EQ(player.FindCharacter(1)->data.length, 10);
  EXPECT_EQ(player.FindCharacter(2)->data.length, 6);
}

TEST_F(Definitions, SystemIdsAreNotDefined) {
  for (uint16_t id : {65532, 65533, 65534, 65535}) movie.Tag(2, WithRect(id, {}, {1}));
  movie.Tag(2, WithRect(65531, {}, {1}));
  Run();
  for (uint16_t id : {65532, 65533, 65534, 65535}) EXPECT_EQ(player.FindCharacter(id), nullptr);
  EXPECT_NE(player.FindCharacter(65531), nullptr);
}

TEST_F(Definitions, BodiesShorterThanTheirFieldsKeepNoData) {
  for (int code : {2, 46, 7, 34, 10, 48, 11, 37, 39, 20}) {
    ScriptPlayer other;
    MovieWriter short_(100, 100);
    short_.Tag(code, Bytes{1}, author::TagForm::kShort);
    const Bytes bytes = short_.Finish();
    other.PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()));
    other.DoTag();
    const SCharacter* character = other.FindCharacter(1);
    ASSERT_NE(character, nullptr) << code;
    EXPECT_GE(character->data.length, 0);
    EXPECT_LE(character->data.length, 3);
  }
}

TEST_F(Definitions, DataStaysWhereItLiesAndOutlivesTheMovie) {
  movie.Tag(10, Bytes{4, 0, 1, 2, 3});
  Run();
  const DataSpan data = player.FindCharacter(4)->data;
  EXPECT_EQ(data.block.Get(), player.scriptBlock.Get());
  player.ClearScript();
  EXPECT_EQ(Data(data), (Bytes{1, 2, 3}));
}

}  // namespace
}  // namespace vexel
