// A movie with buttons, 100 by 100 pixels, written by a test and played.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "author/writer.h"
#include "movie/character.h"
#include "movie/script_player.h"
#include "stage/button.h"
#include "support/check_stage.h"
#include "support/test_player.h"

namespace vexel::test {

// Depths of a button's records, by what shows them; the button's own depth is
// added.
inline constexpr uint16_t kIdleLayer = 1;
inline constexpr uint16_t kOverLayer = 2;
inline constexpr uint16_t kPressedLayer = 3;
inline constexpr uint16_t kHitLayer = 4;

class ButtonFixture : public ::testing::Test {
 protected:
  ~ButtonFixture() override { EXPECT_EQ(CheckStage(stage), ""); }

  // A filled rectangle, in pixels.
  void Rectangle(uint16_t id, int left, int top, int right, int bottom) {
    author::ShapeBuilder shape;
    shape.AddFill(author::Color{255, 0, 0, 255});
    shape.Style(1).Rectangle(author::Rect::Pixels(left, top, right, bottom));
    movie.DefineShape(id, shape);
  }

  // One record for each state and the hit area, all of the character `area`.
  static std::vector<author::ButtonRecord> Records(uint16_t area) {
    return {{author::kButtonUp, area, kIdleLayer, {}, {}},
            {author::kButtonOver, area, kOverLayer, {}, {}},
            {author::kButtonDown, area, kPressedLayer, {}, {}},
            {author::kButtonHit, area, kHitLayer, {}, {}}};
  }
  // Action blocks tell who they are by an action code that does nothing here.
  static author::Bytes Block(char mark) { return {static_cast<uint8_t>(mark), 0}; }
  // Fires '0' to '8' for the transitions of those numbers.
  static std::vector<author::ButtonActions> AllActions() {
    std::vector<author::ButtonActions> actions;
    for (int i = 0; i <= buttonMenuDragOut; ++i) {
      actions.push_back({static_cast<uint16_t>(1 << i), Block(static_cast<char>('0' + i))});
    }
    return actions;
  }
  void Button(uint16_t id, uint16_t area, bool menu = false) {
    movie.DefineButton2(id, menu, Records(area), AllActions());
  }

  // Plays what was written up to its first frame, and updates bounds.
  void Load() {
    movie.FrameEnd().End();
    player.Push(movie.Finish());
    player.TakeCalls();
    stage.CalcUpdate();
  }

  SObject* At(uint16_t depth) { return stage.FindObject(player.rootObject, depth); }

  // In pixels of the client.
  SObject* HitTest(int x, int y) {
    const SPOINT pt = {x, y};
    return stage.HitTest(&pt);
  }
  SObject* HitButton(int x, int y) {
    const SPOINT pt = {x, y};
    return stage.HitButton(&pt);
  }

  // Marks of the waiting blocks, which it takes off the queue.
  std::string Fired() {
    std::string marks;
    DataSpan action;
    ScriptThread* thread;
    while (stage.actionList.PopAction(&action, &thread)) {
      if (action.bytes) marks += static_cast<char>(action.bytes[0]);
    }
    return marks;
  }

  author::MovieWriter movie{100, 100};
  TestPlayer player{100, 100};
  DisplayList& stage = player.display;
};

}  // namespace vexel::test
