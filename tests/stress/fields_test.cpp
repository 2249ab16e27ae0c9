// The life of a movie with text fields, each time with another allocation
// failing: a field keeps the text that it has, or has none at all.
#include <gtest/gtest.h>

#include "author/writer.h"
#include "player/key_codes.h"
#include "stress/fail_alloc.h"
#include "support/check_stage.h"
#include "support/test_player.h"
#include "text/edit_text.h"

namespace vexel::test {
namespace {

// A life asks for at least as many blocks.
constexpr int64_t kFewestAllocations = 100;

author::Bytes FieldMovie() {
  author::Font font;
  font.name = "Boxes";
  font.flags = author::kFontAnsi | author::kFontHasLayout;
  font.ascent = 700;
  font.descent = 300;
  for (const char c : std::string(" abcdef")) {
    author::Glyph glyph;
    glyph.code = static_cast<uint8_t>(c);
    glyph.advance = 500;
    author::ShapeBuilder outline;
    outline.AddFill(author::Color{});
    outline.Fill1(1).Rectangle({10, 400, -600, 0});
    glyph.outline = outline.records();
    font.glyphs.push_back(glyph);
  }
  author::EditTextField field;
  field.flags =
      author::kEditOutlines | author::kEditMultiline | author::kEditWordWrap | author::kEditBorder;
  field.font = 1;
  field.variable = "v";
  field.initialText = "abc def";
  author::EditTextField other = field;
  other.flags = author::kEditOutlines;
  other.variable = "w";
  author::MovieWriter movie(60, 40);
  movie.DefineFont2(1, font);
  movie.DefineEditText(2, author::Rect::Pixels(0, 0, 60, 30), field);
  movie.DefineEditText(3, author::Rect::Pixels(0, 0, 60, 30), other);
  author::Placement change;
  change.depth = 2;
  change.move = true;
  change.character = 2;
  movie.Place(2, 1).Place(3, 2).FrameEnd().Place(change).FrameEnd().End();
  return movie.Finish();
}

void Check(const SPlayer& player, const char* where) {
  AllocationPause pause;
  ASSERT_EQ(CheckStage(player.display), "") << where;
  for (const EditText* text = player.display.texts; text; text = text->nextText) {
    if (!text->buffer) {
      ASSERT_EQ(text->length, 0) << where;
      continue;
    }
    ASSERT_EQ(EditText::WideStrLen(text->buffer), text->length) << where;
    ASSERT_LE(text->selectionAnchor, text->length) << where;
    ASSERT_LE(text->selectionCursor, text->length) << where;
  }
}

void Edit(SPlayer* player) {
  player->focus.Set(player->rootObject ? player->rootObject->firstChild : nullptr);
  for (const int32_t key : {int32_t{'a'}, int32_t{kKeyReturn}, int32_t{kKeyEnd}, int32_t{'b'},
                            int32_t{kKeyBackspace}, int32_t{kKeyDelete}, int32_t{kKeyCopy},
                            int32_t{kKeySelectAll}, int32_t{kKeyCut}, int32_t{'f'}}) {
    player->HandleKeyDown(key, kModifierShift);
    player->display.Update();
    Check(*player, "a key");
  }
}

void Live(const author::Bytes& movie) {
  TestPlayer player(60, 40);
  player.fontState = FontState::kLoaded;
  player.Push(movie);
  Check(player, "placed");
  player.display.Update();
  Check(player, "drawn");
  Edit(&player);
  const SPOINT at = {20, 10};
  player.MouseDown(&at);
  player.display.Update();
  player.MouseUp(&at);
  Check(player, "clicked");
  player.SetVariable("v", "dab feed");
  player.display.Update();
  Check(player, "a variable");
  player.StepThreads();
  Check(player, "another text");
  player.GotoFrame(0);
  player.display.Update();
  Check(player, "back at the start");
}

void LiveWithout(FailMode mode) {
  const author::Bytes movie = FieldMovie();
  int64_t n = 1;
  for (;; n += 1 + n / 100) {
    ArmAllocations(mode, n);
    Live(movie);
    if (!DisarmAllocations() || testing::Test::HasFatalFailure()) break;
  }
  EXPECT_GT(n, kFewestAllocations) << "they no longer come by here";
}

TEST(FieldsOutOfMemory, AnySingleAllocationMayFail) {
  LiveWithout(FailMode::kOnce);
}

TEST(FieldsOutOfMemory, MemoryMayEndAnywhere) {
  LiveWithout(FailMode::kForever);
}

}  // namespace
}  // namespace vexel::test
