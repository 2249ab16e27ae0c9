// Keys and the mouse. There is no X server here: the look-up of keys answers
// what a test tells it.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#undef None
#undef Bool

#include "engine_fixture.h"

namespace {

KeySym s_keysym = NoSymbol;
std::string s_text;
int s_lookUps = 0;

}  // namespace

// Takes the place of the library's.
extern "C" int XLookupString(XKeyEvent*, char* buffer, int size, KeySym* keysym, XComposeStatus*) {
  ++s_lookUps;
  *keysym = s_keysym;
  const int count = std::min(size, static_cast<int>(s_text.size()));
  memcpy(buffer, s_text.data(), static_cast<size_t>(count));
  return count;
}

namespace vexel::test {
namespace {

// Notes what reaches the player, through a button that fires on keys.
class EngineEvents : public EngineFixture {
 protected:
  EngineEvents() { x = {}; }

  // A movie whose button takes all of the picture.
  void PlayButton() {
    author::MovieWriter movie(100, 80);
    author::ShapeBuilder box;
    box.Style(box.AddFill(author::Color{200, 0, 0})).Rectangle(author::Rect::Pixels(0, 0, 50, 80));
    movie.DefineShape(1, box);
    const auto set = [](const char* name) {
      author::ActionBuilder actions;
      actions.SetVariable(name, "1");
      return actions.Finish();
    };
    movie.DefineButton2(
        2, false,
        {{author::kButtonUp | author::kButtonOver | author::kButtonDown | author::kButtonHit,
          1,
          1,
          {},
          {}}},
        {{1 << author::kEventRollOver, set("over")},
         {1 << author::kEventPress, set("press")},
         {1 << author::kEventRelease, set("release")}});
    movie.PlaceObject(2, 1);
    movie.FrameEnd().End();
    Play(movie.Finish());
    engine->OnTimeSync(0);
  }
  INT32 Send(UINT32 code) {
    event = {code, nullptr, nullptr, &x, 77, 77};
    return engine->HandleEvent(&event);
  }
  bool Key(KeySym keysym, const char* text, unsigned state = 0) {
    s_keysym = keysym;
    s_text = text;
    x.xkey.display = reinterpret_cast<Display*>(this);
    x.xkey.state = state;
    EXPECT_EQ(Send(ZEM_EVENT_X_KEY_PRESS), ZEM_OK);
    return event.handled != 0;
  }
  bool Button(UINT32 code, unsigned button, int left, int top) {
    x.xbutton.button = button;
    x.xbutton.x = left;
    x.xbutton.y = top;
    EXPECT_EQ(Send(code), ZEM_OK);
    return event.handled != 0;
  }
  bool Motion(int left, int top) {
    x.xmotion.x = left;
    x.xmotion.y = top;
    EXPECT_EQ(Send(ZEM_EVENT_X_MOTION), ZEM_OK);
    return event.handled != 0;
  }
  bool Is(const char* name) { return engine->FindVariable(name) != nullptr; }

  XEvent x;
  _QKxEvent event = {};
};

TEST_F(EngineEvents, NullEventIsABadArgument) {
  EXPECT_EQ(engine->HandleEvent(nullptr), ZEM_BAD_ARGUMENT);
}

TEST_F(EngineEvents, ResultAndHandledAreCleared) {
  PlayButton();
  EXPECT_EQ(Send(3), ZEM_OK);
  EXPECT_EQ(event.result, 0u);
  EXPECT_EQ(event.handled, 0);
}

TEST_F(EngineEvents, EventWithoutItsXEventIsNotHandled) {
  PlayButton();
  for (UINT32 code : {2u, 4u, 5u, 6u, 12u, 8193u, 0u, 0xFFFFFFFFu}) {
    event = {code, nullptr, nullptr, nullptr, 77, 77};
    EXPECT_EQ(engine->HandleEvent(&event), ZEM_OK);
    EXPECT_EQ(event.handled, 0);
    EXPECT_EQ(event.result, 0u);
  }
}

TEST_F(EngineEvents, KeysBeforeAMovieAreHandledAllTheSame) {
  EXPECT_TRUE(Key(XK_Left, ""));
}

TEST_F(EngineEvents, KeyWithoutADisplayIsNotHandled) {
  x.xkey.display = nullptr;
  EXPECT_EQ(Send(ZEM_EVENT_X_KEY_PRESS), ZEM_OK);
  EXPECT_EQ(event.handled, 0);
}

TEST_F(EngineEvents, ButtonPressAndReleaseReachTheMovie) {
  PlayButton();
  EXPECT_TRUE(Motion(10, 10));
  EXPECT_TRUE(Is("over"));
  EXPECT_FALSE(Button(ZEM_EVENT_X_BUTTON_PRESS, Button1, 10, 10));
  EXPECT_TRUE(Is("press"));
  EXPECT_FALSE(Is("release"));
  EXPECT_FALSE(Button(ZEM_EVENT_X_BUTTON_RELEASE, Button1, 10, 10));
  EXPECT_TRUE(Is("release"));
}

TEST_F(EngineEvents, Button3IsIgnoredButMotionStillCounts) {
  PlayButton();
  EXPECT_FALSE(Button(ZEM_EVENT_X_BUTTON_PRESS, Button3, 10, 10));
  EXPECT_TRUE(Motion(10, 10));
  EXPECT_TRUE(Is("over"));
  EXPECT_FALSE(Is("press"));
  EXPECT_EQ(engine->mouseState, kMouseUp);
  EXPECT_FALSE(Button(ZEM_EVENT_X_BUTTON_RELEASE, Button3, 10, 10));
  EXPECT_FALSE(Is("release"));
}

TEST_F(EngineEvents, MotionKnowsTheButton) {
  PlayButton();
  Motion(10, 10);
  Button(ZEM_EVENT_X_BUTTON_PRESS, Button1, 10, 10);
  Motion(11, 12);
  EXPECT_EQ(engine->mouseState, kMouseDown);
  EXPECT_EQ(engine->mousePoint.x, 11);
  EXPECT_EQ(engine->mousePoint.y, 12);
  Button(ZEM_EVENT_X_BUTTON_RELEASE, Button1, 10, 10);
  Motion(13, 12);
  EXPECT_EQ(engine->mouseState, kMouseUp);
}

// --- Keys, as a field with the focus sees them ---

class EngineKeys : public EngineEvents {
 protected:
  // A field for the variable "t", with the focus and the cursor at its end.
  void PlayField(const char* text) {
    author::MovieWriter movie(100, 80);
    author::EditTextField field;
    field.variable = "t";
    field.initialText = text;
    movie.DefineEditText(1, author::Rect::Pixels(0, 0, 90, 40), field);
    movie.PlaceObject(1, 1).FrameEnd().End();
    Play(movie.Finish());
    engine->OnTimeSync(0);
    Motion(80, 5);
    Button(ZEM_EVENT_X_BUTTON_PRESS, Button1, 80, 5);
    Button(ZEM_EVENT_X_BUTTON_RELEASE, Button1, 80, 5);
    ASSERT_TRUE(engine->focus);
  }
  std::string Text() {
    char* text = engine->GetVariable(engine.get(), "t");
    const std::string value = text ? text : "(none)";
    FreeStr(text);
    return value;
  }
};

TEST_F(EngineKeys, CharactersAreTyped) {
  PlayField("ab");
  EXPECT_TRUE(Key(XK_c, "c"));
  EXPECT_EQ(Text(), "abc");
}

TEST_F(EngineKeys, EachByteOfATextIsAKey) {
  PlayField("");
  EXPECT_TRUE(Key(XK_c, "xyz"));
  EXPECT_EQ(Text(), "xyz");
  EXPECT_TRUE(Key(XK_adiaeresis, "\xE4"));
  EXPECT_EQ(Text(), "xyz\xE4");
}

TEST_F(EngineKeys, SevenBytesAtMost) {
  PlayField("");
  EXPECT_TRUE(Key(XK_c, "0123456789"));
  EXPECT_EQ(Text(), "0123456");
}

TEST_F(EngineKeys, BackspaceAndDeleteEdit) {
  PlayField("abc");
  EXPECT_TRUE(Key(XK_BackSpace, "\b"));
  EXPECT_EQ(Text(), "ab");
  EXPECT_TRUE(Key(XK_Home, ""));
  EXPECT_TRUE(Key(XK_Delete, "\x7F"));
  EXPECT_EQ(Text(), "b");
}

TEST_F(EngineKeys, ShiftAndControlWithLeftSelectAsTheirModifiersSay) {
  PlayField("abc");
  // Shift draws a selection, which the next character replaces; with Control it
  // goes by words.
  EXPECT_TRUE(Key(XK_Left, "", ShiftMask));
  EXPECT_TRUE(Key(XK_x, "x"));
  EXPECT_EQ(Text(), "abx");
  EXPECT_TRUE(Key(XK_Left, "", ShiftMask | ControlMask));
  EXPECT_TRUE(Key(XK_y, "y"));
  EXPECT_EQ(Text(), "y");
}

TEST_F(EngineKeys, KeyThatMeansNothingIsNotHandled) {
  PlayField("ab");
  EXPECT_FALSE(Key(XK_Control_L, "", ControlMask));
  EXPECT_EQ(event.handled, 0);
  EXPECT_EQ(Text(), "ab");
}

TEST_F(EngineKeys, KeyReleasesAreNotLookedAt) {
  PlayField("ab");
  s_keysym = XK_c;
  s_text = "c";
  const int before = s_lookUps;
  x.xkey.display = reinterpret_cast<Display*>(this);
  EXPECT_EQ(Send(3), ZEM_OK);
  EXPECT_EQ(s_lookUps, before);
  EXPECT_EQ(Text(), "ab");
}

TEST_F(EngineKeys, TextCursorBlinksEvery500Milliseconds) {
  PlayField("ab");
  const auto phase = [this](UINT32 time) {
    engine->OnTimeSync(time);
    return engine->cursorBlink;
  };
  const bool first = phase(500);
  EXPECT_NE(phase(501), first);
  EXPECT_NE(phase(1001), first);
  EXPECT_EQ(phase(1002), first);
}

}  // namespace
}  // namespace vexel::test
