// A movie with buttons whose actions write down that they ran.
#pragma once

#include <string>

#include "player/text.h"
#include "support/button_fixture.h"

namespace vexel::test {

class InputFixture : public ButtonFixture {
 protected:
  // Appends `mark` to the variable "log" of the button's timeline.
  static author::ActionBuilder Log(const std::string& mark) {
    author::ActionBuilder actions;
    actions.Push("log").GetVariable("log").Push(mark);
    actions.Op(kActionConcat).Op(kActionSetVariable);
    return actions;
  }
  static author::ButtonActions On(uint16_t conditions, const author::ActionBuilder& actions) {
    return {conditions, actions.Finish()};
  }
  // A button that logs `name` and the number of each transition.
  void LoggingButton(uint16_t id, uint16_t area, const std::string& name, bool menu = false) {
    std::vector<author::ButtonActions> actions;
    for (int i = 0; i <= buttonMenuDragOut; ++i) {
      actions.push_back(On(static_cast<uint16_t>(1 << i), Log(name + std::to_string(i) + ' ')));
    }
    movie.DefineButton2(id, menu, Records(area), actions);
  }
  // What was logged since the last time.
  std::string Logged() {
    char* text = player.GetVariable(&player, "log");
    const std::string log = text ? text : "";
    FreeStr(text);
    player.SetVariable(&player, "log", "");
    return log;
  }

  void Down(int x, int y) {
    const SPOINT pt = {x, y};
    player.MouseDown(&pt);
  }
  void Move(int x, int y, bool down = false) {
    const SPOINT pt = {x, y};
    player.MouseMove(&pt, down);
  }
  void Up(int x, int y) {
    const SPOINT pt = {x, y};
    player.MouseUp(&pt);
  }
  bool FrameIs(SCOORD left, SCOORD right, SCOORD top, SCOORD bottom) const {
    const SRECT wanted = {left * kDevPerPixel, right * kDevPerPixel, top * kDevPerPixel,
                          bottom * kDevPerPixel};
    return RectEqual(&stage.tabFocusRect, &wanted, 0);
  }
};

}  // namespace vexel::test
