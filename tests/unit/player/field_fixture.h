// Movies with text fields that a test clicks and types into. Characters are 5
// pixels wide and lines 11.7 pixels high; a field's text begins 2 pixels inside
// its upper left corner.
#pragma once

#include <string>

#include "input_fixture.h"
#include "nested_movie.h"
#include "player/key_codes.h"
#include "text/clipboard.h"
#include "text/edit_text.h"

namespace vexel::test {

class FieldFixture : public InputFixture {
 protected:
  static constexpr uint16_t kFont = 200;

  FieldFixture() {
    player.fontState = FontState::kLoaded;  // the movie has all fonts that it needs
    EditText::m_insertMode = true;
    clips.clear();
    ClipboardPlatform platform;
    platform.setData = [](const char* text) { clips += std::string("set ") + text + ' '; };
    platform.startPaste = [](SPlayer*) { clips += "paste "; };
    platform.ownSelection = [](SPlayer*, bool own) { clips += own ? "own " : "disown "; };
    SetClipboardPlatform(platform);
    author::Font font;
    font.name = "Bars";
    font.flags = author::kFontAnsi | author::kFontHasLayout;
    font.ascent = 700;
    font.descent = 300;
    for (char c = ' '; c <= '~'; ++c) {
      author::Glyph glyph;
      glyph.code = static_cast<uint8_t>(c);
      glyph.advance = 427;  // 100 twentieths
      author::ShapeBuilder bar;
      bar.AddFill(author::Color{});
      bar.Fill1(1).Rectangle({100, 300, -600, 0});
      glyph.outline = bar.records();
      font.glyphs.push_back(glyph);
    }
    movie.DefineFont2(kFont, font);
  }
  ~FieldFixture() override {
    SetClipboardPlatform({});
    EditText::m_insertMode = true;
  }

  static author::EditTextField Field(const std::string& variable, uint16_t flags = 0) {
    author::EditTextField field;
    field.flags = static_cast<uint16_t>(flags | author::kEditOutlines);
    field.font = kFont;
    field.variable = variable;
    return field;
  }
  // A field of 40 by 20 pixels with its upper left corner at `x`, `y`; the
  // character's id is its depth.
  void PlaceField(uint16_t depth, const author::EditTextField& field, int x = 0, int y = 0,
                  int width = 40, int height = 20) {
    movie.DefineEditText(depth, author::Rect::Pixels(0, 0, width, height), field);
    movie.Place(depth, depth, author::Matrix::Translate(20 * x, 20 * y));
  }

  void Show() { stage.Update(); }
  // Plays to the first frame and shows it, so that fields take input.
  void Start() {
    Load();
    Show();
    player.TakeCalls();
    Clips();
  }

  EditText* Text(uint16_t depth) {
    SObject* object = At(depth);
    return object ? object->editText : nullptr;
  }
  // The text of a field with its cursor as '|', and the anchor as '<' if it is
  // elsewhere.
  static std::string State(const EditText* text) {
    if (!text) return "(no field)";
    std::string state;
    for (int32_t i = 0; i <= text->length; ++i) {
      if (i == text->selectionCursor) state += '|';
      if (i == text->selectionAnchor && text->HasSelection()) state += '<';
      if (i < text->length) state += static_cast<char>(text->buffer[i]);
    }
    return state;
  }
  std::string State(uint16_t depth) { return State(Text(depth)); }
  // Depth of the field that has the focus; 0 for none.
  int Focus() const {
    const SObject* object = player.focus.Get();
    return object ? object->depth : 0;
  }
  std::string Value(const char* name) { return Take(player.GetVariable(&player, name)); }

  // A press and a release, long after whatever was before.
  void Click(int x, int y) {
    TestClock::tick += 10000;
    Down(x, y);
    Up(x, y);
    Show();
  }
  bool Key(int32_t key, int32_t modifiers = 0) {
    const bool wanted = player.HandleKeyDown(key, modifiers);
    Show();
    return wanted;
  }
  void Type(const std::string& text) {
    for (const char c : text) Key(c);
  }
  // What the clipboard was told since the last time.
  static std::string Clips() { return std::exchange(clips, ""); }

 private:
  static inline std::string clips;
};

}  // namespace vexel::test
