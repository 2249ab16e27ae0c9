#include "author/tag_stream.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "reader.h"

namespace vexel::author {
namespace {

TEST(TagStream, AShortTagHasItsLengthInTheHeader) {
  TagStream tags;
  tags.Tag(43, Bytes(62));
  EXPECT_EQ(tags.bytes().size(), 64u);
  Reader in(tags.bytes());
  EXPECT_EQ(in.U16(), (43u << 6) | 62);
}

TEST(TagStream, From63BytesOnTheLengthFollows) {
  TagStream tags;
  tags.Tag(43, Bytes(63));
  Reader in(tags.bytes());
  EXPECT_EQ(in.U16(), (43u << 6) | 63);
  EXPECT_EQ(in.U32(), 63u);
}

TEST(TagStream, BitmapTagsAreAlwaysLong) {
  TagStream tags;
  tags.DefineBits(5, kTagDefineBitsLossless, {1});
  EXPECT_EQ(tags.bytes(), (Bytes{0x3F, 0x05, 3, 0, 0, 0, 5, 0, 1}));
  TagStream forced;
  forced.Tag(kTagDefineBits, Bytes(2), TagForm::kShort);
  EXPECT_EQ(forced.bytes().size(), 4u);
}

TEST(TagStream, FormsCanBeForcedAndLengthsCanLie) {
  TagStream tags;
  tags.Tag(kTagFrameEnd, {}, TagForm::kLong);
  EXPECT_EQ(tags.bytes(), (Bytes{0x7F, 0, 0, 0, 0, 0}));
  EXPECT_THROW(tags.Tag(1, Bytes(63), TagForm::kShort), std::range_error);
  EXPECT_THROW(tags.Tag(1024, {}), std::range_error);
  TagStream lie;
  lie.LyingTag(kTagFrameActions, 0xFFFFFFFF, {});
  EXPECT_EQ(lie.bytes(), (Bytes{0x3F, 0x03, 0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(TagStream, SmallTags) {
  TagStream tags;
  tags.BackgroundColor({1, 2, 3}).FrameLabel("a").FreeCharacter(0x0102).RemoveObject(7, 9);
  tags.RemoveObject(9).SyncFrame().FreeAll().FrameActions(Bytes{0}).FrameEnd().End();
  EXPECT_EQ(tags.bytes(),
            (Bytes{0x43, 0x02, 1,    2,    3,    0xC2, 0x0A, 'a',  0,    0xC2, 0x00, 2,
                   1,    0x44, 0x01, 7,    0,    9,    0,    0x02, 0x07, 9,    0,    0x40,
                   0x07, 0xC0, 0x07, 0x01, 0x03, 0,    0x40, 0x00, 0x00, 0x00}));
  EXPECT_EQ(tags.frames(), 1);
  EXPECT_EQ(tags.tags(), 10);
}

TEST(TagStream, APlacementOfTheFirstFormMayEndBehindItsMatrix) {
  TagStream tags;
  tags.PlaceObject(1, 2);
  EXPECT_EQ(tags.bytes(), (Bytes{0x05, 0x01, 1, 0, 2, 0, 0}));
  TagStream colored;
  colored.PlaceObject(1, 2, {}, Cxform{});
  EXPECT_EQ(colored.bytes(), (Bytes{0x06, 0x01, 1, 0, 2, 0, 0, 0}));
}

TEST(TagStream, APlacementOfTheSecondFormWritesWhatItHas) {
  Placement placement;
  placement.depth = 3;
  placement.character = 4;
  placement.matrix = Matrix{};
  placement.cxform = Cxform{};
  placement.ratio = 0x0506;
  placement.clipDepth = 0x0708;
  TagStream tags;
  tags.Place(placement);
  EXPECT_EQ(tags.bytes(), (Bytes{0x8B, 0x06, 0x5E, 3, 0, 4, 0, 0, 0, 0x06, 0x05, 0x08, 0x07}));
  TagStream move;
  move.Move(3, {});
  EXPECT_EQ(move.bytes(), (Bytes{0x84, 0x06, 0x05, 3, 0, 0}));
}

TEST(TagStream, ANameLeavesNoRoomForAClipDepth) {
  Placement placement;
  placement.character = 4;
  placement.name = "ab";
  placement.clipDepth = 'a' | 'b' << 8;
  TagStream tags;
  tags.Place(placement);
  EXPECT_EQ(tags.bytes(), (Bytes{0x88, 0x06, 0x62, 0, 0, 4, 0, 'a', 'b', 0}));
}

TEST(TagStream, ASpriteHoldsItsFrameCountAndTags) {
  TagStream sprite;
  sprite.FrameEnd().FrameEnd().End();
  TagStream tags;
  tags.DefineSprite(0x0A0B, sprite);
  EXPECT_EQ(tags.bytes(), (Bytes{0xCA, 0x09, 0x0B, 0x0A, 2, 0, 0x40, 0, 0x40, 0, 0, 0}));
  TagStream lie;
  lie.DefineSprite(1, sprite, 500);
  EXPECT_EQ(lie.bytes()[4], 0xF4);
}

TEST(TagStream, AShapeIsIdBoundsAndData) {
  ShapeBuilder shape;
  shape.Style(shape.AddFill(Color{1, 2, 3})).Rectangle({0, 3, 0, 3});
  TagStream tags;
  tags.DefineShape(6, shape, kTagDefineShape);
  Reader in(tags.bytes());
  EXPECT_EQ(in.U16() >> 6, 2u);
  EXPECT_EQ(in.U16(), 6u);
  EXPECT_EQ(in.Bits(5), 3u);
  in.Bits(12);
  EXPECT_EQ(in.U8(), 1u);
}

TEST(TagStream, AMorphHasTwoBounds) {
  MorphBuilder morph;
  TagStream tags;
  tags.DefineMorphShape(6, morph);
  Reader in(tags.bytes());
  EXPECT_EQ(in.U16() >> 6, 46u);
  EXPECT_EQ(in.U16(), 6u);
  EXPECT_EQ(in.U8(), 0u);
  EXPECT_EQ(in.U8(), 0u);
  EXPECT_EQ(in.U32(), 4u);
}

TEST(TagStream, EveryDefinitionCarriesItsCodeAndId) {
  const Font font = BlockFont("F");
  const Picture picture(2, 2);
  const auto code = [](const TagStream& tags) {
    Reader in(tags.bytes());
    const uint32_t word = in.U16();
    if ((word & 63) == 63) in.U32();
    EXPECT_EQ(in.U16(), 0x0201u);
    return static_cast<int>(word >> 6);
  };
  const uint16_t id = 0x0201;
  EXPECT_EQ(code(TagStream().DefineFont(id, font)), 10);
  EXPECT_EQ(code(TagStream().DefineFont2(id, font)), 48);
  EXPECT_EQ(code(TagStream().DefineFontInfo(id, font, 0, false)), 13);
  EXPECT_EQ(code(TagStream().DefineText(id, {}, {}, false)), 11);
  EXPECT_EQ(code(TagStream().DefineText(id, {}, {}, true)), 33);
  EXPECT_EQ(code(TagStream().DefineEditText(id, {}, {})), 37);
  EXPECT_EQ(code(TagStream().DefineButton(id, {}, {0})), 7);
  EXPECT_EQ(code(TagStream().DefineButton2(id, false, {}, {})), 34);
  EXPECT_EQ(code(TagStream().DefineButtonExtra(id, {})), 23);
  EXPECT_EQ(code(TagStream().DefineLossless(id, picture, false)), 20);
  EXPECT_EQ(code(TagStream().DefineLossless(id, picture, true)), 36);
  EXPECT_EQ(code(TagStream().DefineJpeg(id, {})), 21);
  EXPECT_EQ(TagStream().DefineJPEGTables({9}).bytes(), (Bytes{0x01, 0x02, 9}));
}

TEST(TagList, EveryCodeHasOneRowInAscendingOrder) {
  int last = -1;
  for (const TagInfo& info : kTagInfos) {
    EXPECT_GT(info.code, last) << info.word;
    EXPECT_EQ(FindTagInfo(info.code), &info);
    last = info.code;
  }
  EXPECT_STREQ(TagName(22), "DefineShape");
  EXPECT_STREQ(TagName(0), "TagEnd");
  EXPECT_EQ(TagName(14), nullptr);
}

}  // namespace
}  // namespace vexel::author
