// Which font a field draws with. The built-in fonts are made by hand here, each
// with its id as its ascent.
#include "draw_fixture.h"

namespace vexel::test {
namespace {

class EditFonts : public DrawFixture {
 protected:
  EditFonts() { DefineBuiltIns(); }

  void DefineBuiltIns() {
    author::MovieWriter movie(1, 1);
    for (uint16_t id = 1; id <= 23; id += 2) {
      author::Font font = BoxFont("Built in");
      font.ascent = static_cast<int16_t>(id);
      movie.DefineFont2(id, font);
    }
    movie.FrameEnd().End();
    const author::Bytes bytes = movie.Finish();
    player->fontPlayer.PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()));
    player->fontPlayer.DoTags(0);
  }

  FontDesc Describe() {
    FontDesc desc;
    text->GetFontDesc(desc);
    return desc;
  }
  // The built-in font that stands in for one of this name and style; 0 for none.
  int32_t StandIn(std::string name, uint16_t style) {
    Reset();
    DefineBuiltIns();
    author::TagStream fonts;
    fonts.DefineFont2(kBoxFont, BoxFont(std::move(name), style));
    author::EditTextField field = Field();
    field.flags = 0;
    Place(field, {0, 2080, 0, 5080}, fonts);
    const FontDesc desc = Describe();
    return desc.font && desc.font->player == &player->fontPlayer ? desc.font->id : 0;
  }
};

TEST_F(EditFonts, AFieldThatUsesOutlinesTakesTheMoviesFont) {
  Place(Field());
  const FontDesc desc = Describe();
  EXPECT_EQ(desc.font, player->FindCharacter(kBoxFont));
  EXPECT_STREQ(desc.fontName, "Boxes");
  EXPECT_EQ(desc.fontHeight, kHeight);
  EXPECT_FALSE(desc.bold || desc.italic || desc.shiftJIS);
  EXPECT_GT(desc.codeTableOffset, 0);
}

TEST_F(EditFonts, TheStyleOfTheSecondFormIsInItsFlags) {
  for (uint16_t style : {0x01, 0x02, 0x40}) {
    Reset();
    author::TagStream fonts;
    fonts.DefineFont2(kBoxFont, BoxFont("Boxes", style));
    Place(Field(), {0, 2080, 0, 5080}, fonts);
    const FontDesc desc = Describe();
    EXPECT_EQ(desc.bold, style == 0x01);
    EXPECT_EQ(desc.italic, style == 0x02);
    EXPECT_EQ(desc.shiftJIS, style == 0x40);
  }
}

TEST_F(EditFonts, NameAndStyleOfTheFirstFormAreInTheRecordBesideIt) {
  for (uint8_t style : {0x00, 0x01, 0x02, 0x04, 0x06}) {
    Reset();
    DefineBuiltIns();
    author::TagStream fonts;
    fonts.DefineFont(kBoxFont, BoxFont()).DefineFontInfo(kBoxFont, BoxFont("_sans"), style, true);
    author::EditTextField field = Field();
    field.flags = 0;
    Place(field, {0, 2080, 0, 5080}, fonts);
    const FontDesc desc = Describe();
    EXPECT_STREQ(desc.fontName, "_sans");
    EXPECT_EQ(desc.bold, (style & 0x02) != 0);
    EXPECT_EQ(desc.italic, (style & 0x04) != 0);
    ASSERT_NE(desc.font, nullptr);
    EXPECT_EQ(desc.font->id, 9 + (desc.bold ? 2 : 0) + (desc.italic ? 2 : 0));
  }
}

TEST_F(EditFonts, AFontOfTheFirstFormWithoutThatRecordIsPlain) {
  author::TagStream fonts;
  fonts.DefineFont(kBoxFont, BoxFont());
  author::EditTextField field = Field();
  field.flags = 0;
  Place(field, {0, 2080, 0, 5080}, fonts);
  const FontDesc desc = Describe();
  EXPECT_STREQ(desc.fontName, "");
  ASSERT_NE(desc.font, nullptr);
  EXPECT_EQ(desc.font->id, 1);
  EXPECT_TRUE(Draw("a"));
}

TEST_F(EditFonts, AFieldWithoutAFontUsesTheBuiltInSerif) {
  author::EditTextField field;
  Place(field);
  const FontDesc desc = Describe();
  ASSERT_NE(desc.font, nullptr);
  EXPECT_EQ(desc.font, player->fontPlayer.FindCharacter(1));
  EXPECT_EQ(desc.fontHeight, 360);
}

TEST_F(EditFonts, AFontIdOfZeroIsTheBuiltInSerifToo) {
  for (uint16_t flags : {0x0000, 0x0100}) {
    Reset();
    DefineBuiltIns();
    author::EditTextField field;
    field.flags = flags;
    field.font = 0;
    field.height = 200;
    Place(field);
    const FontDesc desc = Describe();
    EXPECT_EQ(desc.font, player->fontPlayer.FindCharacter(1));
    EXPECT_EQ(desc.fontHeight, 200);
  }
}

TEST_F(EditFonts, SerifAndEveryUnknownFamilyAreTheFirstFont) {
  EXPECT_EQ(StandIn("_serif", 0), 1);
  EXPECT_EQ(StandIn("No Such Family", 0), 1);
  EXPECT_EQ(StandIn("", 0), 1);
  EXPECT_EQ(StandIn("_SANS", 0), 1);
  EXPECT_EQ(StandIn("_sans ", 0), 1);
}

TEST_F(EditFonts, BoldTypewriterIsFont19) {
  EXPECT_EQ(StandIn("_typewriter", 0), 17);
  EXPECT_EQ(StandIn("_typewriter", author::kFontBold), 19);
}

TEST_F(EditFonts, BoldAndItalicSansIsFont13) {
  EXPECT_EQ(StandIn("_sans", 0), 9);
  EXPECT_EQ(StandIn("_sans", author::kFontBold), 11);
  EXPECT_EQ(StandIn("_sans", author::kFontItalic), 11);
  EXPECT_EQ(StandIn("_sans", author::kFontBold | author::kFontItalic), 13);
}

TEST_F(EditFonts, AFontThatIsNotThereIsDescribedAndNull) {
  for (uint16_t flags : {0x0000, 0x0100}) {
    Reset();
    DefineBuiltIns();
    author::EditTextField field;
    field.flags = flags;
    field.font = 55;
    field.height = 200;
    Place(field);
    const FontDesc desc = Describe();
    EXPECT_EQ(desc.font, nullptr);
    EXPECT_STREQ(desc.fontName, "Times New Roman");
    EXPECT_EQ(desc.fontHeight, 360);
    EXPECT_EQ(desc.codeTableOffset, -1);
  }
}

TEST_F(EditFonts, AnotherKindOfCharacterIsNoFont) {
  author::EditTextField field = Field();
  field.font = kField;
  Place(field);
  EXPECT_EQ(Describe().font, nullptr);
}

TEST_F(EditFonts, WithoutAPlayerThereAreNoBuiltInFonts) {
  author::EditTextField field;
  Place(field);
  player->splayer = nullptr;
  EXPECT_EQ(Describe().font, nullptr);
  player->splayer = player.get();
}

TEST_F(EditFonts, TheCodeTableStandsBehindTheLastOffset) {
  for (uint16_t flags : {uint16_t{0}, uint16_t{author::kFontWideOffsets}}) {
    Reset();
    author::TagStream fonts;
    fonts.DefineFont2(kBoxFont, BoxFont("Boxes", flags));
    Place(Field(), {0, 2080, 0, 5080}, fonts);
    const FontDesc desc = Describe();
    ASSERT_NE(desc.font, nullptr);
    EXPECT_EQ(desc.font->data.bytes[desc.codeTableOffset], ' ');
    EXPECT_EQ(desc.font->data.bytes[desc.codeTableOffset + 1], '*');
  }
}

TEST_F(EditFonts, ANameCutShortEndsWhereItsTagDoes) {
  author::TagStream fonts;
  const author::Bytes body = {kBoxFont, 0, 0, 0, 200, 'a', 'b'};
  fonts.Tag(kTagDefineFont2, body);
  Place(Field(), {0, 2080, 0, 5080}, fonts);
  const FontDesc desc = Describe();
  EXPECT_LE(strlen(desc.fontName), 2u);
  Draw("ab");
}

TEST_F(EditFonts, AShortRecordReadsAsZeros) {
  Place(Field());
  const int32_t whole = object->character->data.length;
  for (int32_t length = whole; length >= 0; --length) {
    object->character->data.length = length;
    Describe();
    Draw("abc");
  }
  EXPECT_EQ(Describe().fontHeight, 360);
}

}  // namespace
}  // namespace vexel::test
