// Scripts compiled by the writer, and run: what a person writes is what happens.
#include "action_fixture.h"
#include "author/script/script.h"

namespace vexel::test {
namespace {

class ScriptLanguage : public ActionTest {
 protected:
  void RunScript(const std::string& text) {
    const author::SourceText source("script", text);
    RunBytes(author::CompileScript(author::WholeSource(source)));
  }
  // The value of an expression.
  std::string Of(const std::string& expression) {
    RunScript("result = " + expression);
    return Variable("result");
  }
};

TEST_F(ScriptLanguage, ArithmeticBindsAsInMathematics) {
  EXPECT_EQ(Of("2 + 3 * 4"), "14");
  EXPECT_EQ(Of("(2 + 3) * 4"), "20");
  EXPECT_EQ(Of("10 - 4 - 3"), "3");
  EXPECT_EQ(Of("0.1 + 0.2"), "0.3");
  EXPECT_EQ(Of("-2 * -3"), "6");
  EXPECT_EQ(Of("1 / 4"), "0.25");
  EXPECT_EQ(Of("1 / 0"), "#ERROR#");
  RunScript("n = 5");
  EXPECT_EQ(Of("-n"), "-5");
  EXPECT_EQ(Of("\"n=\" & n + 1"), "n=6");
}

TEST_F(ScriptLanguage, ConstantsFoldToWhatThePlayerWouldSay) {
  for (const char* pair :
       {"60, 60", "999999999, 1", "7, 12", "12345, 67890", "0, 5", "31622, 31622"}) {
    const std::string a(pair, std::string(pair).find(','));
    const std::string b(pair + a.size() + 2);
    RunScript("a = " + a + "; b = " + b);
    for (const std::string op : {"+", "-", "*"}) {
      EXPECT_EQ(Of(a + " " + op + " " + b), Of("a " + op + " b")) << a << op << b;
      EXPECT_EQ(Of("-" + a + " " + op + " " + b), Of("-a " + op + " b")) << a << op << b;
    }
  }
}

TEST_F(ScriptLanguage, ComparisonsOfNumbersAndTexts) {
  const std::string expressions[] = {"1 < 2",
                                     "2 > 1",
                                     "2 >= 2",
                                     "2 <= 2",
                                     "10 == 10.0",
                                     "1 != 2",
                                     "\"a\" is \"a\"",
                                     "\"a\" is not \"A\"",
                                     "\"10\" before \"9\"",
                                     "\"b\" after \"a\"",
                                     "not (9 < 10 and \"9\" before \"10\")"};
  for (const std::string& expression : expressions) {
    EXPECT_EQ(Of(expression), "1") << expression;
    EXPECT_EQ(Of("not (" + expression + ")"), "0") << expression;
  }
}

TEST_F(ScriptLanguage, EveryNumberButZeroIsTrueEverywhere) {
  EXPECT_EQ(Of("0.5 and 1"), "1");
  EXPECT_EQ(Of("0.5 or 0"), "1");
  EXPECT_EQ(Of("0 or 0"), "0");
  RunScript("if (0.5) x = \"yes\" else x = \"no\"");
  EXPECT_EQ(Variable("x"), "yes");
}

TEST_F(ScriptLanguage, LoopsBreakAndContinue) {
  RunScript(
      "i = 0; odd = 0\n"
      "while (true) {\n"
      "  i += 1\n"
      "  if (i > 100) break\n"
      "  if (int(i / 2) * 2 == i) continue\n"
      "  odd += i\n"
      "}\n");
  EXPECT_EQ(Variable("i"), "101");
  EXPECT_EQ(Variable("odd"), "2500");
  RunScript("while (false) never = 1");
  EXPECT_EQ(Variable("never"), "(none)");
}

TEST_F(ScriptLanguage, ElseBelongsToTheNearestIf) {
  const std::string script =
      "if (n == 1) { x = \"one\" } else if (n == 2) x = \"two\"\nelse { x = \"many\" }";
  RunScript("n = 1\n" + script);
  EXPECT_EQ(Variable("x"), "one");
  RunScript("n = 2\n" + script);
  EXPECT_EQ(Variable("x"), "two");
  RunScript("n = 3\n" + script);
  EXPECT_EQ(Variable("x"), "many");
}

TEST_F(ScriptLanguage, PathsReachOtherTimelines) {
  RunScript("/a:speed = 3; a/b:deep = /a:speed * 2; /a/b:up = 1");
  EXPECT_EQ(Variable(*a->thread, "speed"), "3");
  EXPECT_EQ(Variable(*b->thread, "deep"), "6");
  EXPECT_EQ(Variable(*b->thread, "up"), "1");
}

TEST_F(ScriptLanguage, WithSetsTheTimelineAndGoesBack) {
  RunScript(
      "with \"/a\" {\n"
      "  x = 1\n"
      "  with \"/a/b\" { x = 2 }\n"
      "  y = 3\n"
      "  nextFrame()\n"
      "}\n"
      "x = 4\n"
      "while (true) { with (\"/\" & \"a\") { z = 5; break } }\n"
      "z = 6");
  EXPECT_EQ(Variable(*a->thread, "x"), "1");
  EXPECT_EQ(Variable(*b->thread, "x"), "2");
  EXPECT_EQ(Variable(*a->thread, "y"), "3");
  EXPECT_EQ(a->thread->curFrame, 1);
  EXPECT_EQ(Variable("x"), "4");
  EXPECT_EQ(Variable(*a->thread, "z"), "5");
  EXPECT_EQ(Variable("z"), "6");
}

TEST_F(ScriptLanguage, PropertiesAreReadAndWritten) {
  RunScript("/a.x = 30; a.y = a.x + 5; this.alpha = 50; w = property(\"/a/b\", width)");
  EXPECT_EQ(a->mat.tx, 600);
  EXPECT_EQ(a->mat.ty, 700);
  EXPECT_EQ(Variable("w"), "10");
  EXPECT_EQ(Of("this.alpha"), "50");
  EXPECT_EQ(Of("/a.frames & \" \" & root.frames"), "8 10");
}

TEST_F(ScriptLanguage, FramesAreReachedByNumberLabelAndPath) {
  RunScript("gotoAndStop(3)");
  EXPECT_EQ(player.curFrame, 2);
  EXPECT_FALSE(player.playing);
  RunScript("gotoAndPlay(5)");
  EXPECT_EQ(player.curFrame, 4);
  EXPECT_TRUE(player.playing);
  RunScript("gotoAndStop(\"intro\")");
  EXPECT_EQ(player.curFrame, 3);
  RunScript("n = 6; gotoAndPlay(n + 1)");
  EXPECT_EQ(player.curFrame, 6);
  RunScript("gotoAndStop(\"/a:4\")");
  EXPECT_EQ(a->thread->curFrame, 3);
}

TEST_F(ScriptLanguage, LoadedFramesTakeTheFirstBlock) {
  const std::string script = "ifLoaded (4) { x = \"loaded\" } else { x = \"waiting\" }";
  RunScript(script);
  EXPECT_EQ(Variable("x"), "loaded");
  player.numFramesComplete = 2;
  RunScript(script);
  EXPECT_EQ(Variable("x"), "waiting");
  RunScript("ifLoaded (\"intro\") y = 1 else y = 2");
  EXPECT_EQ(Variable("y"), "2");
}

TEST_F(ScriptLanguage, FunctionsOfTexts) {
  EXPECT_EQ(Of("length(\"abc\")"), "3");
  EXPECT_EQ(Of("substring(\"abcdef\", 2, 3)"), "bcd");
  EXPECT_EQ(Of("chr(ord(\"a\") + 1)"), "b");
  EXPECT_EQ(Of("int(-2.7)"), "-2");
  EXPECT_EQ(Of("random(1)"), "0");
  RunScript("set(\"box\" & 3, \"full\")");
  EXPECT_EQ(Of("get(\"box\" & 3)"), "full");
}

TEST_F(ScriptLanguage, SpritesAreClonedDraggedAndRemoved) {
  RunScript("cloneSprite(\"a\", \"c\", 2); /c.x = 7");
  EXPECT_EQ(Of("/c.name"), "c");
  RunScript("startDrag(\"/c\", true, 1, 2, 30, 40)");
  ASSERT_TRUE(player.dragObject);
  EXPECT_TRUE(player.dragObject->dragCenter);
  EXPECT_EQ(player.dragObject->dragConstraint.xmin, 20);
  EXPECT_EQ(player.dragObject->dragConstraint.ymin, 40);
  EXPECT_EQ(player.dragObject->dragConstraint.xmax, 600);
  EXPECT_EQ(player.dragObject->dragConstraint.ymax, 800);
  RunScript("stopDrag(); removeSprite(\"/c\")");
  EXPECT_EQ(Of("/c.name"), "");
}

}  // namespace
}  // namespace vexel::test
