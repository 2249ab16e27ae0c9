// A field that is typed and clicked into. It shows 20 characters of 100 units in
// each of 5 rows of 1000, from 40, 40 on; a pixel is a unit.
#pragma once

#include <string>

#include "draw_fixture.h"
#include "player/key_codes.h"
#include "text/clipboard.h"

namespace vexel::test {

class EditFixture : public DrawFixture {
 protected:
  EditFixture() {
    EditText::m_insertMode = true;
    calls.clear();
    ClipboardPlatform platform;
    platform.setData = [](const char* data) { calls += std::string("set '") + data + "' "; };
    platform.startPaste = [](SPlayer*) { calls += "paste "; };
    platform.ownSelection = [](SPlayer*, bool own) { calls += own ? "own " : "disown "; };
    SetClipboardPlatform(platform);
  }
  ~EditFixture() override {
    SetClipboardPlatform({});
    EditText::m_insertMode = true;
  }

  // A drawn field with `characters`, the cursor in front of them.
  void Make(const std::string& characters, uint16_t flags = 0) {
    Place(Field(flags));
    ASSERT_TRUE(Draw(characters.c_str()));
  }
  void MakeLimited(const std::string& characters, uint16_t maxLength) {
    author::EditTextField field = Field();
    field.maxLength = maxLength;
    Place(field);
    ASSERT_TRUE(Draw(characters.c_str()));
  }

  void At(int32_t cursor) { Select(cursor, cursor); }
  void Key(int32_t key, int32_t modifiers = 0) { text->HandleKeyDown(key, modifiers); }
  void Type(const std::string& characters) {
    for (const char c : characters) Key(c);
  }
  void Mouse(int x, int y, bool down) {
    const SPOINT pixel = {x, y};
    object->EditTextMouse(&pixel, down);
  }
  // A press and a release, long after whatever was before.
  void Click(int x, int y) {
    TestClock::tick += 10000;
    Mouse(x, y, true);
    Mouse(x, y, false);
  }

  std::string Text() const {
    char* bytes = text->GetBuffer();
    const std::string result = bytes ? bytes : "(none)";
    delete[] bytes;
    return result;
  }
  // The text with the cursor as '|' and the anchor, if it is elsewhere, as '<'.
  std::string State() const {
    const std::string all = Text();
    const auto size = static_cast<int32_t>(all.size());
    std::string state;
    for (int32_t i = 0; i <= size; ++i) {
      if (i == text->selectionCursor) state += '|';
      if (i == text->selectionAnchor && text->HasSelection()) state += '<';
      if (i < size) state += all[static_cast<size_t>(i)];
    }
    return state;
  }
  std::string AfterKey(int32_t key, int32_t modifiers = 0) {
    Key(key, modifiers);
    return State();
  }
  std::string Calls() { return std::exchange(calls, ""); }

  static inline std::string calls;
};

}  // namespace vexel::test
