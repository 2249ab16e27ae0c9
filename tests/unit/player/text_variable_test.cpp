#include "field_fixture.h"
#include "player/variable_loader.h"
#include "support/stage_fixture.h"

namespace vexel::test {
namespace {

using author::ActionBuilder;

// Fields and the variables that they show.
class TextVariable : public FieldFixture {
 protected:
  // Two fields of "x", 10 and 20, and one of "y", 30.
  void Begin() {
    PlaceField(10, Field("x"));
    PlaceField(20, Field("x"), 50);
    PlaceField(30, Field("y"), 0, 50);
    Start();
  }
  std::string Shown(uint16_t depth) { return Shown(Text(depth)); }
  static std::string Shown(const EditText* text) {
    char* bytes = text ? text->GetBuffer() : nullptr;
    const std::string shown = bytes ? bytes : "(none)";
    delete[] bytes;
    return shown;
  }
  void Script(const ActionBuilder& actions) {
    stage.actionList.PushAction(CopyBytes(actions.Finish()), &player);
    player.DoActions();
    Show();
  }
};

TEST_F(TextVariable, TypingWritesTheVariable) {
  Begin();
  EXPECT_EQ(Value("x"), "(null)");
  Click(5, 10);
  Type("ab");
  EXPECT_EQ(Value("x"), "ab");
  Key(kKeyBackspace);
  EXPECT_EQ(Value("x"), "a");
  EXPECT_EQ(Value("y"), "(null)");
}

TEST_F(TextVariable, TypingShowsInTheOtherFieldsOfTheVariable) {
  Begin();
  Click(5, 10);
  Type("ab");
  Key(kKeyLeft);
  EXPECT_FALSE(At(20)->dirty);
  player.HandleKeyDown('c', 0);
  EXPECT_EQ(Shown(20), "acb");
  EXPECT_TRUE(At(20)->dirty);
  EXPECT_EQ(State(10), "ac|b") << "its own write leaves the field alone";
  EXPECT_EQ(Shown(30), "");
}

TEST_F(TextVariable, AScriptsWriteShowsInEveryFieldOfTheVariable) {
  Begin();
  Script(ActionBuilder().SetVariable("X", "new"));
  EXPECT_EQ(Shown(10), "new");
  EXPECT_EQ(Shown(20), "new");
  EXPECT_EQ(Shown(30), "");
}

TEST_F(TextVariable, AScriptsWriteReachesTheFieldWithTheFocus) {
  Begin();
  Click(5, 10);
  Type("abc");
  Script(ActionBuilder().SetVariable("x", "no"));
  EXPECT_EQ(State(10), "no|") << "the cursor stays within the text";
}

TEST_F(TextVariable, AWriteThatIsNotForcedSparesTheFieldWithTheFocus) {
  Begin();
  Click(5, 10);
  Type("abc");
  player.SetVariable(&player, "x", "no", false);
  EXPECT_EQ(Value("x"), "no");
  EXPECT_EQ(Shown(10), "abc");
  EXPECT_EQ(Shown(20), "no");
}

TEST_F(TextVariable, AnyKeyWritesBackATextThatDiffersFromItsVariable) {
  Begin();
  Click(5, 10);
  Type("abc");
  player.SetVariable(&player, "x", "ABC", false);
  Key(kKeyLeft);
  EXPECT_EQ(Value("x"), "abc") << "the case of letters counts";
}

TEST_F(TextVariable, EveryWayOfWritingShows) {
  Begin();
  ScriptVariable* x = player.MakeVariable({"x", 1});
  player.StoreVariable(x, ScriptValue::Number(1.5));
  EXPECT_EQ(Shown(10), "1.5");
  EXPECT_TRUE(x->value.IsNumber()) << "showing a number leaves it one";
  player.ScriptThread::SetVariable("x", "two");
  EXPECT_EQ(Shown(10), "two");
  DecodeQueryString(&player, "y=1&x=%74hree");
  EXPECT_EQ(Shown(10), "three");
  EXPECT_EQ(Shown(30), "1");
  ScriptPlayer* loader = player.OpenVariableLoader(0, nullptr);
  const std::string form = "x=four";
  loader->PushDataBuf(reinterpret_cast<const uint8_t*>(form.data()),
                      static_cast<int32_t>(form.size()));
  loader->SetDataComplete();
  EXPECT_EQ(Shown(10), "four");
  player.SetVariable(&player, "/:x", "five");
  EXPECT_EQ(Shown(10), "five");
  player.SetVariable(&player, "x", nullptr);
  EXPECT_EQ(Shown(10), "") << "no value shows as the empty text";
}

TEST_F(TextVariable, AScriptCountsInAField) {
  Begin();
  ActionBuilder count;
  count.SetVariable("x", "0");
  for (int i = 0; i < 12; ++i) {
    count.Push("x").GetVariable("x").Push("1").Op(kActionAdd).Op(kActionSetVariable);
  }
  Script(count);
  EXPECT_EQ(Shown(10), "12");
  EXPECT_EQ(Shown(20), "12");
}

TEST_F(TextVariable, AFieldWithoutAVariableIsTypedInto) {
  PlaceField(10, Field(""));
  Start();
  Click(5, 10);
  EXPECT_TRUE(Key('a'));
  EXPECT_EQ(State(10), "a|");
  EXPECT_EQ(player.FindVariable(""), nullptr);
}

TEST_F(TextVariable, AnEmptyTextWithoutAVariableMakesNone) {
  Begin();
  Click(5, 10);
  Key(kKeyLeft);
  EXPECT_EQ(Value("x"), "(null)");
  Type("a");
  Key(kKeyBackspace);
  EXPECT_EQ(Value("x"), "");
}

// The initial text is the field's own, so it does not reach another field that
// is being typed into.
TEST_F(TextVariable, AnInitialTextSparesTheFieldWithTheFocus) {
  author::EditTextField other = Field("/:x");
  other.initialText = "first";
  PlaceField(10, Field("x"));
  movie.FrameEnd();
  PlaceField(20, other, 50);
  Load();
  Show();
  Click(5, 10);
  ASSERT_EQ(Focus(), 10);
  Text(10)->SetBuffer("mine");
  player.GotoFrame(1);
  EXPECT_EQ(Value("x"), "first");
  EXPECT_EQ(Shown(10), "mine");
  EXPECT_EQ(Shown(20), "first");
}

// A field in a sprite, which shows its own timeline's variable, and one beside
// it that names that by a path.
class TextPath : public TextVariable {
 protected:
  void Begin() {
    movie.DefineEditText(10, author::Rect::Pixels(0, 0, 40, 20), Field("x"));
    author::TagStream tags;
    tags.Place(10, 10).FrameEnd();
    tags.FrameLabel("x_changed").FrameActions(ActionBuilder().SetVariable("seen", "1")).FrameEnd();
    tags.End();
    movie.DefineSprite(4, tags);
    movie.Place({.depth = 5, .character = 4, .name = "s"});
    PlaceField(20, Field("/s:x"), 50);
    PlaceField(30, Field("x"), 0, 50);
    Start();
    player.display.FindObject(player.rootObject, 5)->thread->StopPlay();
  }
  ScriptThread* Sprite() { return At(5)->thread; }
  EditText* Inner() { return At(5)->firstChild->editText; }
};

TEST_F(TextPath, FieldsOfOneVariableShareItAcrossTimelines) {
  Begin();
  Click(55, 10);
  Type("a");
  EXPECT_EQ(Value("/s:x"), "a");
  EXPECT_EQ(Shown(Inner()), "a");
  Click(5, 10);
  Type("b");
  EXPECT_EQ(Shown(20), Shown(Inner()));
  EXPECT_EQ(Shown(30), "") << "the root's x is another";
  EXPECT_EQ(Value("x"), "(null)");
}

TEST_F(TextPath, TheChangedFrameIsThatOfTheVariablesTimeline) {
  Begin();
  Click(55, 10);
  Type("a");
  EXPECT_EQ(Value("/s:seen"), "1");
}

TEST_F(TextPath, TheChangedFrameOfANameIsThatOfTheFieldsTimeline) {
  Begin();
  Click(5, 10);
  Type("a");
  EXPECT_EQ(Value("/s:seen"), "1");
}

// A frame that runs after each edit.
class TextChanged : public TextVariable {
 protected:
  // Field 10 of "x", 20 of the same, and the frame "x_changed" behind.
  void Begin(const ActionBuilder& changed) {
    PlaceField(10, Field("x"));
    PlaceField(20, Field("x"), 50);
    movie.FrameEnd();
    movie.FrameLabel("X_Changed").FrameActions(changed);
    movie.FrameEnd();
    movie.RemoveObject(10).RemoveObject(20);
    Load();
    player.StopPlay();
    Show();
    Click(5, 10);
    ASSERT_EQ(Focus(), 10);
  }
};

TEST_F(TextChanged, RunsAfterEachEditThatChangesTheText) {
  Begin(Log("!"));
  Type("ab");
  EXPECT_EQ(Logged(), "!!");
  Key(kKeyLeft);
  EXPECT_EQ(Logged(), "") << "the cursor alone changes nothing";
  Key(kKeyDelete);
  EXPECT_EQ(Logged(), "!");
  Key(kKeyDelete);
  EXPECT_EQ(Logged(), "") << "at the end there is nothing to delete";
  EXPECT_EQ(player.CurrentFrame(), 0) << "the frame is called, not gone to";
}

TEST_F(TextChanged, SeesTheNewText) {
  ActionBuilder copy;
  copy.Push("copy").GetVariable("x").Op(kActionSetVariable);
  Begin(copy);
  Type("ab");
  EXPECT_EQ(Value("copy"), "ab");
}

TEST_F(TextChanged, MayWriteTheFieldItself) {
  Begin(ActionBuilder().SetVariable("x", "7"));
  Type("ab");
  EXPECT_EQ(Shown(10), "7");
  EXPECT_EQ(Shown(20), "7");
}

TEST_F(TextChanged, MayTakeTheFieldAway) {
  Begin(ActionBuilder().GotoFrame(2));
  EXPECT_TRUE(Key('a'));
  EXPECT_EQ(Focus(), 0);
  EXPECT_EQ(At(10), nullptr);
  EXPECT_EQ(Value("x"), "a");
  EXPECT_FALSE(Key('b'));
}

TEST_F(TextChanged, RunsForAKeyOnly) {
  Begin(Log("!"));
  player.SetVariable(&player, "x", "new");
  EXPECT_EQ(Logged(), "");
  EXPECT_EQ(player.TakeCalls().find("UpdateScreen UpdateScreen"), std::string::npos);
}

// The lines of a field, as properties behind its variable's name.
class TextScroll : public TextVariable {
 protected:
  // Two lines are seen of five.
  void Begin() {
    PlaceField(10, Field("x", author::kEditMultiline), 0, 0, 40, 30);
    PlaceField(20, Field("y"), 50);
    Start();
    player.SetVariable(&player, "x", "a\rb\rc\rd\re");
    Show();
  }
};

TEST_F(TextScroll, TellsTheFirstLineThatIsSeenAndTheLastThatCanBe) {
  Begin();
  ASSERT_EQ(Text(10)->CalcVisibleLines(), 2);
  EXPECT_EQ(Value("x.scroll"), "1");
  EXPECT_EQ(Value("x.maxscroll"), "4");
  EXPECT_EQ(Value("/:x.scroll"), "1");
  EXPECT_EQ(Value("y.maxscroll"), "1");
}

TEST_F(TextScroll, SetsTheFirstLineThatIsSeen) {
  Begin();
  player.SetVariable(&player, "x.scroll", "3");
  EXPECT_EQ(Text(10)->vscroll, 2);
  EXPECT_TRUE(At(10)->dirty);
  EXPECT_EQ(Value("x.scroll"), "3");
  player.SetVariable(&player, "x.scroll", "99");
  EXPECT_EQ(Value("x.scroll"), "4");
  player.SetVariable(&player, "x.scroll", "0");
  EXPECT_EQ(Value("x.scroll"), "1");
  player.SetVariable(&player, "x.scroll", "-5", false);
  EXPECT_EQ(Value("x.scroll"), "1");
}

TEST_F(TextScroll, TakesIntegersOnly) {
  Begin();
  for (const char* value : {"2.5", "two", "", "2 "}) {
    player.SetVariable(&player, "x.scroll", value);
    EXPECT_EQ(Text(10)->vscroll, 0) << value;
  }
  player.SetVariable(&player, "x.scroll", nullptr);
  EXPECT_EQ(Text(10)->vscroll, 0);
}

TEST_F(TextScroll, TheLastLineCannotBeWritten) {
  Begin();
  player.SetVariable(&player, "x.maxscroll", "2");
  EXPECT_EQ(Value("x.maxscroll"), "4");
  EXPECT_EQ(Value("x.scroll"), "1");
}

TEST_F(TextScroll, OtherNamesWithADotAreNothing) {
  Begin();
  for (const char* name : {"x.Scroll", "x.scroll.scroll", "x.", ".scroll", "z.scroll", "X.scroll",
                           "x.scrolls", "x.max", "/s:x.scroll"}) {
    player.SetVariable(&player, name, "3");
    EXPECT_EQ(Value(name), "(null)") << name;
  }
  EXPECT_EQ(Text(10)->vscroll, 0);
}

TEST_F(TextScroll, AScriptScrolls) {
  Begin();
  Script(ActionBuilder()
             .SetVariable("x.scroll", "2")
             .Push("line")
             .GetVariable("x.scroll")
             .Op(kActionSetVariable));
  EXPECT_EQ(Value("line"), "2");
}

// Going back in time and forth again.
class FocusSeek : public FieldFixture {
 protected:
  // Frames: 0 and 1 with the field 10; in frame 2 it stands elsewhere; frame 3
  // is without; in 4 it is back.
  void Begin() {
    author::TagStream tags;
    tags.FrameEnd().End();
    movie.DefineSprite(4, tags);
    PlaceField(10, Field("x"));
    movie.Place(4, 20).FrameEnd();
    movie.Place(4, 21).FrameEnd();
    movie.Move(10, author::Matrix::Translate(40, 0)).FrameEnd();
    movie.RemoveObject(10).FrameEnd();
    movie.Place(10, 10).FrameEnd();
    movie.End();
    player.Push(movie.Finish());
    player.StopPlay();
    stage.CalcUpdate();
    Show();
    Click(5, 10);
    Type("abcdef");
    Down(13, 10);
    Move(23, 10, true);
    ASSERT_EQ(State(10), "ab<cd|ef");
  }
};

TEST_F(FocusSeek, AFieldThatIsKeptKeepsFocusAndSelection) {
  Begin();
  const SObject* field = At(10);
  player.GotoFrame(1);
  player.GotoFrame(0);
  EXPECT_EQ(At(10), field);
  EXPECT_EQ(Focus(), 10);
  EXPECT_EQ(State(10), "ab<cd|ef");
  EXPECT_TRUE(player.IsSelecting());
}

TEST_F(FocusSeek, AFieldThatIsPlacedAnewTakesFocusAndSelectionUp) {
  Begin();
  player.GotoFrame(2);
  const SObject* field = At(10);
  EXPECT_EQ(Focus(), 10);
  player.GotoFrame(1);
  EXPECT_NE(At(10), field) << "it stood elsewhere";
  EXPECT_EQ(player.focus.Get(), At(10));
  EXPECT_EQ(State(10), "ab<cd|ef");
  EXPECT_TRUE(player.IsSelecting());
  Show();
  Key('z');
  EXPECT_EQ(Value("x"), "abzef");
}

// What the sprites do that are placed on the way is part of the way.
TEST_F(FocusSeek, SpritesOnTheWayLeaveTheFocusAlone) {
  author::TagStream tags;
  tags.FrameEnd().End();
  movie.DefineSprite(4, tags);
  movie.Place(4, 5);
  PlaceField(10, Field("x"));
  movie.Place(4, 20).FrameEnd();
  movie.Move(10, author::Matrix::Translate(40, 0)).FrameEnd().End();
  player.Push(movie.Finish());
  player.StopPlay();
  stage.CalcUpdate();
  Show();
  Click(5, 10);
  Type("abc");
  player.GotoFrame(1);
  player.GotoFrame(0);
  EXPECT_EQ(player.focus.Get(), At(10));
  EXPECT_EQ(State(10), "abc|");
}

TEST_F(FocusSeek, AFrameWithoutTheFieldEndsTheFocus) {
  Begin();
  player.GotoFrame(3);
  EXPECT_EQ(Focus(), 0);
  player.GotoFrame(4);
  EXPECT_EQ(Focus(), 0);
  player.GotoFrame(0);
  EXPECT_EQ(Focus(), 0);
  EXPECT_EQ(State(10), "|abcdef");
}

TEST_F(FocusSeek, AFrameThatIsPassedWithoutTheFieldDoesNot) {
  Begin();
  player.GotoFrame(4);
  EXPECT_EQ(Focus(), 10) << "removed and placed again in one run of tags";
  EXPECT_EQ(State(10), "ab<cd|ef");
}

TEST_F(FocusSeek, NothingIsKeptOnceTheTagsHaveRun) {
  Begin();
  player.GotoFrame(1);
  EXPECT_FALSE(player.saveFocus.Restore(Text(10)));
}

}  // namespace
}  // namespace vexel::test
