// The built-in fonts become characters once.
#include <gtest/gtest.h>

#include "author/writer.h"
#include "movie/observer.h"
#include "stage/display_list.h"
#include "support/test_player.h"
#include "text/edit_text.h"

namespace vexel::test {
namespace {

class FontLoading : public testing::Test {
 protected:
  // The field of a movie that has one without a font.
  EditText* PlaceField() {
    author::EditTextField field;
    field.initialText = "Vexel";
    author::MovieWriter movie(100, 100);
    movie.DefineEditText(9, {0, 2000, 0, 2000}, field).Place(9, 1).FrameEnd().End();
    player.Push(movie.Finish());
    return player.rootObject->firstChild->editText;
  }
  void Paint() {
    player.display.ModifyCamera();
    player.display.Update();
  }

  TestPlayer player;
};

TEST_F(FontLoading, TwelveFontsAreDefined) {
  ASSERT_TRUE(player.LoadBuiltInFonts());
  EXPECT_EQ(player.fontState, FontState::kLoaded);
  const struct {
    const char* name;
    int16_t ascent, descent;
  } kFamilies[] = {{"Times New Roman", 912, 222}, {"Arial", 927, 217}, {"Courier New", 852, 308}};
  for (uint16_t id = 1; id <= 23; id += 2) {
    SCharacter* font = player.fontPlayer.FindCharacter(id);
    ASSERT_NE(font, nullptr) << id;
    EXPECT_EQ(font->type, charFont);
    EXPECT_EQ(font->tagCode, 48);
    EXPECT_EQ(font->glyphCount, 224);
    EXPECT_EQ(font->fontFlags, 0x90 | ((id - 1) / 2 & 3));
    const auto& family = kFamilies[(id - 1) / 8];
    const std::string name(reinterpret_cast<char*>(font->data.bytes) - font->nameSize + 1,
                           font->data.bytes[-font->nameSize]);
    EXPECT_EQ(name, family.name);
    FontDesc desc;
    desc.font = font;
    memcpy(&desc.codeTableOffset, font->data.bytes + 2 * 224, 2);
    desc.codeTableOffset &= 0xFFFF;
    for (uint16_t code = 32; code < 256; ++code) EXPECT_EQ(desc.FindGlyph(code), code - 32);
    EXPECT_EQ(desc.Ascent(), family.ascent);
    EXPECT_EQ(desc.Descent(), family.descent);
  }
  EXPECT_EQ(player.fontPlayer.FindCharacter(2), nullptr);
}

TEST_F(FontLoading, TheirMovieIsListedAndPlacesNothing) {
  ASSERT_TRUE(player.LoadBuiltInFonts());
  EXPECT_EQ(player.display.threads, &player.fontPlayer);
  EXPECT_EQ(player.fontPlayer.layerDepth, 16000);
  EXPECT_EQ(player.fontPlayer.splayer, &player);
  EXPECT_FALSE(player.fontPlayer.playing);
  PlaceField();
  for (uint32_t time = 0; time < 2000; time += 100) player.DoPlay(time);
  EXPECT_EQ(player.fontPlayer.rootObject, nullptr);
  EXPECT_EQ(Children(player.display.root), "0");
}

TEST_F(FontLoading, ItHappensWithTheFirstFieldDrawn) {
  EditText* text = PlaceField();
  EXPECT_EQ(player.fontState, FontState::kNotTried);
  Paint();
  EXPECT_EQ(player.fontState, FontState::kLoaded);
  EXPECT_TRUE(text->drawn);
  EXPECT_NE(text->object->edges, nullptr);
}

TEST_F(FontLoading, LoadedOnceTheyStay) {
  ASSERT_TRUE(player.LoadBuiltInFonts());
  SCharacter* font = player.fontPlayer.FindCharacter(1);
  EXPECT_TRUE(player.LoadBuiltInFonts());
  EXPECT_EQ(player.fontPlayer.FindCharacter(1), font);
  player.ClearScript();
  EXPECT_EQ(player.fontPlayer.FindCharacter(1), font);
}

TEST_F(FontLoading, AfterAFailureASecondFieldDoesNotUnpackThemAgain) {
  player.fontState = FontState::kFailed;
  EditText* text = PlaceField();
  Paint();
  EXPECT_FALSE(text->drawn);
  Paint();
  EXPECT_EQ(player.fontState, FontState::kFailed);
  EXPECT_EQ(player.fontPlayer.len, 0);
  EXPECT_EQ(player.fontPlayer.listLink, nullptr);
}

TEST_F(FontLoading, AMovieThatSpentItsTagsStillGetsItsFonts) {
  player.display.tagsLeft = 0;
  ASSERT_TRUE(player.LoadBuiltInFonts());
  EXPECT_NE(player.fontPlayer.FindCharacter(23), nullptr);
  EXPECT_EQ(player.display.tagsLeft, 0);
}

TEST_F(FontLoading, ToolsDoNotSeeTheFontsTags) {
  struct Counter : PlayObserver {
    void OnTag(const ScriptThread&) override { ++tags; }
    void OnFrame(const ScriptThread&) override { ++tags; }
    int tags = 0;
  } counter;
  player.display.observer = &counter;
  ASSERT_TRUE(player.LoadBuiltInFonts());
  EXPECT_EQ(counter.tags, 0);
  EXPECT_EQ(player.display.observer, &counter);
  player.display.observer = nullptr;
}

}  // namespace
}  // namespace vexel::test
