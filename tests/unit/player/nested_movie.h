// A player with a movie of sprites in sprites, for what is found by paths.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "author/writer.h"
#include "movie/character.h"
#include "player/text.h"
#include "support/check_stage.h"
#include "support/test_player.h"

namespace vexel::test {

// The text that a call hands out, or "(null)", and its memory freed.
inline std::string Take(char* text) {
  const std::string taken = text ? text : "(null)";
  FreeStr(text);
  return taken;
}

// Ten frames, the fourth labelled "intro". At depth 1 sprite "a" of eight
// frames, which holds sprite "b" at its depth 1; at depth 2 a sprite without a
// name of its own; at depth 3 a button, which holds a shape. The shape is 10 by
// 20 pixels; sprite "b" shows it, 2 pixels to the right.
inline author::Bytes NestedMovie() {
  author::ShapeBuilder box;
  box.Style(box.AddFill(author::Color{200, 0, 0})).Rectangle(author::Rect::Pixels(0, 0, 10, 20));
  author::TagStream inner;
  inner.Place(1, 1, author::Matrix::Translate(40, 0)).FrameEnd().End();
  author::TagStream outer;
  outer.Place({.depth = 1, .character = 2, .name = "b"});
  for (int i = 0; i < 8; ++i) outer.FrameEnd();
  outer.End();
  author::MovieWriter movie(100, 100);
  movie.DefineShape(1, box).DefineSprite(2, inner).DefineSprite(3, outer);
  author::ButtonRecord record;
  record.states = author::kButtonUp | author::kButtonHit;
  record.character = 1;
  movie.DefineButton(4, {record}, {0});
  movie.Place({.depth = 1, .character = 3, .name = "a"}).Place(2, 2).Place(4, 3);
  for (int i = 0; i < 10; ++i) {
    if (i == 3) movie.FrameLabel("intro");
    movie.FrameEnd();
    if (i == 0) movie.Move(1, author::Matrix::Translate(200, 0));
  }
  movie.End();
  return movie.Finish();
}

class NestedMovieTest : public ::testing::Test {
 protected:
  NestedMovieTest() {
    player.Push(NestedMovie());
    player.TakeCalls();
    a = player.rootObject->firstChild;
    b = a->firstChild;
  }
  ~NestedMovieTest() override { EXPECT_EQ(CheckStage(player.display), ""); }

  ScriptPlayer* OpenNested(int32_t layer) {
    ScriptPlayer* opened = player.OpenLayer(layer, false);
    const author::Bytes bytes = NestedMovie();
    opened->PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()));
    opened->DrawFrame(0, true);
    return opened;
  }

  TestPlayer player;
  SObject* a;
  SObject* b;
};

}  // namespace vexel::test
