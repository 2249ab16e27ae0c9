// Scripts: what each construct compiles to, and what is refused.
#include "author/script/script.h"

#include <gtest/gtest.h>

#include "author/script/action_text.h"

namespace vexel::author {
namespace {

Bytes Compile(const std::string& text) {
  const SourceText source("script", text);
  return CompileScript(WholeSource(source));
}

std::string Code(const std::string& text) {
  return DisassembleActions(Compile(text), 0);
}

std::string ErrorOf(const std::string& text) {
  try {
    Compile(text);
  } catch (const SourceError& error) {
    return error.what();
  }
  return "none";
}

// The block is held to mnemonics, one line each.
void Expect(const std::string& script, const std::string& actions) {
  const SourceText source("actions", actions);
  EXPECT_EQ(Code(script), DisassembleActions(AssembleActions(WholeSource(source)), 0)) << script;
}

void ExpectError(const std::string& script, const std::string& part) {
  EXPECT_NE(ErrorOf(script).find(part), std::string::npos) << script << "\n" << ErrorOf(script);
}

TEST(Script, EmptyScriptIsAnEmptyBlock) {
  EXPECT_EQ(Compile(""), Bytes{0});
  EXPECT_EQ(Compile(" ; // nothing\n;"), Bytes{0});
}

TEST(Script, AssignmentsPushNameThenValue) {
  Expect("total = price * count",
         "push \"total\"; push \"price\"; getVariable; push \"count\"; getVariable; multiply; "
         "setVariable");
  Expect("/clip:x = 1; ../a:b = \"t\"; _level1:y = 2",
         "push \"/clip:x\"; push \"1\"; setVariable; push \"../a:b\"; push \"t\"; setVariable; "
         "push \"_level1:y\"; push \"2\"; setVariable");
  Expect("n += 1; n &= \"x\"",
         "push \"n\"; push \"n\"; getVariable; push \"1\"; add; setVariable;"
         "push \"n\"; push \"n\"; getVariable; push \"x\"; concat; setVariable");
}

TEST(Script, PropertiesGoByPathAndNumber) {
  Expect("/clip.x = 10", "push \"/clip\"; push \"0\"; push \"10\"; setProperty");
  Expect("a/b.rotation -= /c.y",
         "push \"a/b\"; push \"10\"; push \"a/b\"; push \"10\"; getProperty; push \"/c\"; "
         "push \"1\"; getProperty; subtract; setProperty");
  Expect("this.alpha = parent.alpha / root.frames",
         "push \"\"; push \"6\"; push \"..\"; push \"6\"; getProperty; push \"/\"; push \"5\"; "
         "getProperty; divide; setProperty");
  Expect("x = property(\"c\" & i, height); setProperty(p, name, \"n\")",
         "push \"x\"; push \"c\"; push \"i\"; getVariable; concat; push \"9\"; getProperty; "
         "setVariable; push \"p\"; getVariable; push \"13\"; push \"n\"; setProperty");
}

TEST(Script, WordsForPlacesStandInPaths) {
  Expect("parent/clip:x = this", "push \"../clip:x\"; push \"\"; setVariable");
  Expect("root/clip.x = root:n",
         "push \"/clip\"; push \"0\"; push \"/:n\"; getVariable; setProperty");
  Expect("this/clip:x = parent:y", "push \"clip:x\"; push \"..:y\"; getVariable; setVariable");
}

TEST(Script, ScrollOfAFieldIsAVariable) {
  Expect("field.scroll = field.maxscroll",
         "push \"field.scroll\"; push \"field.maxscroll\"; getVariable; setVariable");
  Expect("/clip:field.scroll = 3", "push \"/clip:field.scroll\"; push \"3\"; setVariable");
}

TEST(Script, DivisionAndPathsAreToldApart) {
  Expect("x = a/b",
         "push \"x\"; push \"a\"; getVariable; push \"b\"; getVariable; divide; setVariable");
  Expect("x = a/b:c", "push \"x\"; push \"a/b:c\"; getVariable; setVariable");
  Expect("x = a / b:c",
         "push \"x\"; push \"a\"; getVariable; push \"b:c\"; getVariable; divide; setVariable");
  Expect(
      "x = a\n/b:c = 1",
      "push \"x\"; push \"a\"; getVariable; setVariable; push \"/b:c\"; push \"1\"; setVariable");
  Expect("x = (a\n/b)",
         "push \"x\"; push \"a\"; getVariable; push \"b\"; getVariable; divide; setVariable");
}

TEST(Script, OperatorsBindByTheirStrength) {
  Expect("x = a & b + c * -d",
         "push \"x\"; push \"a\"; getVariable; push \"b\"; getVariable; push \"c\"; getVariable; "
         "push \"0\"; push \"d\"; getVariable; subtract; multiply; add; concat; setVariable");
  Expect("x = (a + b) * c",
         "push \"x\"; push \"a\"; getVariable; push \"b\"; getVariable; add; push \"c\"; "
         "getVariable; multiply; setVariable");
  Expect("x = a - b - c",
         "push \"x\"; push \"a\"; getVariable; push \"b\"; getVariable; subtract; push \"c\"; "
         "getVariable; subtract; setVariable");
  Expect("x = not a == b and c or d < e",
         "push \"x\"; push \"a\"; getVariable; push \"b\"; getVariable; equals; not; "
         "push \"c\"; getVariable; not; not; and; push \"d\"; getVariable; push \"e\"; "
         "getVariable; less; or; setVariable");
}

TEST(Script, ComparisonsOfNumbers) {
  const std::string a = "push \"a\"; getVariable; ";
  const std::string b = "push \"b\"; getVariable; ";
  const auto with = [](const std::string& code) { return "push \"x\"; " + code + "; setVariable"; };
  Expect("x = a == b", with(a + b + "equals"));
  Expect("x = a != b", with(a + b + "equals; not"));
  Expect("x = a < b", with(a + b + "less"));
  Expect("x = a >= b", with(a + b + "less; not"));
  Expect("x = a > b", with(b + a + "less"));
  Expect("x = a <= b", with(b + a + "less; not"));
}

TEST(Script, ComparisonsOfTexts) {
  const std::string a = "push \"a\"; getVariable; ";
  const std::string b = "push \"b\"; getVariable; ";
  const auto with = [](const std::string& code) { return "push \"x\"; " + code + "; setVariable"; };
  Expect("x = a is b", with(a + b + "stringEquals"));
  Expect("x = a is not b", with(a + b + "stringEquals; not"));
  Expect("x = a before b", with(a + b + "stringLess"));
  Expect("x = a after b", with(b + a + "stringLess"));
}

TEST(Script, TruthsOfAnyValuesCanBeJoined) {
  // Half is true for if, but not for the action of and: it is made a truth.
  Expect("x = 0.5 and true", "push \"x\"; push \"0.5\"; not; not; push \"1\"; and; setVariable");
  Expect("x = not not a", "push \"x\"; push \"a\"; getVariable; not; not; setVariable");
  Expect("x = not not not a", "push \"x\"; push \"a\"; getVariable; not; setVariable");
}

TEST(Script, NumbersAreTheTextsOfTheirValues) {
  Expect("x = 007; x = 1.50; x = .5; x = 5.; x = 00.0; x = 1.0e5; x = -0; x = -2.5; x = 1000",
         "push \"x\"; push \"7\"; setVariable; push \"x\"; push \"1.5\"; setVariable;"
         "push \"x\"; push \"0.5\"; setVariable; push \"x\"; push \"5\"; setVariable;"
         "push \"x\"; push \"0\"; setVariable; push \"x\"; push \"1e5\"; setVariable;"
         "push \"x\"; push \"0\"; setVariable; push \"x\"; push \"-2.5\"; setVariable;"
         "push \"x\"; push \"1000\"; setVariable");
}

TEST(Script, ConstantsAreFoldedOnlyWhereNobodyCanTell) {
  Expect("x = 60 * 60 - 1", "push \"x\"; push \"3599\"; setVariable");
  Expect("x = 2 - 5", "push \"x\"; push \"-3\"; setVariable");
  Expect("x = \"a\" & 1 + 1", "push \"x\"; push \"a2\"; setVariable");
  Expect("x = 0.1 + 0.2", "push \"x\"; push \"0.1\"; push \"0.2\"; add; setVariable");
  Expect("x = 1 / 2", "push \"x\"; push \"1\"; push \"2\"; divide; setVariable");
  Expect("x = 999999999 + 1", "push \"x\"; push \"999999999\"; push \"1\"; add; setVariable");
  Expect("x = \"1\" + 1", "push \"x\"; push \"1\"; push \"1\"; add; setVariable");
}

TEST(Script, ConditionsChooseStatements) {
  Expect("if (a) x = 1",
         "push \"a\"; getVariable; not; if L1; push \"x\"; push \"1\"; setVariable; L1:");
  Expect("if (not a) { stop() } else { play() }",
         "push \"a\"; getVariable; if L1; stop; jump L2; L1: play; L2:");
  Expect("if (a) stop(); else if (b) play()\nelse nextFrame()",
         "push \"a\"; getVariable; not; if L1; stop; jump L3; L1: push \"b\"; getVariable; not; "
         "if L2; play; jump L3; L2: nextFrame; L3:");
  Expect("if (a) stop() else play()",
         "push \"a\"; getVariable; not; if L1; stop; jump L2; L1: play; L2:");
}

TEST(Script, LoopsTestBehindTheirStatements) {
  Expect("while (i < 3) i += 1",
         "jump L2; L1: push \"i\"; push \"i\"; getVariable; push \"1\"; add; setVariable; "
         "L2: push \"i\"; getVariable; push \"3\"; less; if L1");
  Expect("while (true) { if (a) break; if (b) continue; play() }",
         "L1: push \"a\"; getVariable; not; if L2; jump L5; L2: push \"b\"; getVariable; not; "
         "if L3; jump L4; L3: play; L4: jump L1; L5:");
}

TEST(Script, BlocksOfWithSetAndRestoreTheTarget) {
  Expect("with \"/clip\" { stop() }", "setTarget \"/clip\"; stop; setTarget \"\"");
  Expect("with (\"c\" & i) { stop() }",
         "push \"c\"; push \"i\"; getVariable; concat; setTargetExpr; stop; setTarget \"\"");
}

TEST(Script, WithInsideWithGoesBackToTheOuterOne) {
  Expect("with \"/a\" { with \"/b\" { stop() } play() }",
         "setTarget \"/a\"; setTarget \"/b\"; stop; setTarget \"/a\"; play; setTarget \"\"");
  Expect("while (true) { with \"/a\" { with \"/b\" { break } } }",
         "L1: setTarget \"/a\"; setTarget \"/b\"; setTarget \"\"; jump L2; setTarget \"/a\"; "
         "setTarget \"\"; jump L1; L2:");
}

TEST(Script, FramesAreNumbersLabelsOrPaths) {
  Expect("gotoAndStop(5)", "gotoFrame 4");
  Expect("gotoAndPlay(5)", "gotoFrame 4; play");
  Expect("gotoAndStop(\"cheap\")", "gotoLabel \"cheap\"");
  Expect("gotoAndPlay(\"cheap\")", "push \"cheap\"; gotoExpr play");
  Expect("gotoAndStop(\"/clip:5\")", "push \"/clip:5\"; gotoExpr stop");
  Expect("gotoAndStop(\"5\")", "push \"5\"; gotoExpr stop");
  Expect("gotoAndStop(n)", "push \"n\"; getVariable; gotoExpr stop");
  Expect("call(\"sub\")", "push \"sub\"; call");
}

TEST(Script, IfLoadedSkipsTheJumpToItsStatements) {
  Expect("ifLoaded (3) { play() } else { stop() }",
         "waitForFrame 2 skip 1; jump L1; jump L2; L1: play; jump L3; L2: stop; L3:");
  Expect("ifLoaded (\"end\") play()",
         "push \"end\"; waitForFrameExpr skip 1; jump L1; jump L2; L1: play; L2:");
}

TEST(Script, FunctionsOfValues) {
  const auto with = [](const std::string& code) { return "push \"x\"; " + code + "; setVariable"; };
  Expect("x = int(2.5)", with("push \"2.5\"; toInteger"));
  Expect("x = random(6)", with("push \"6\"; random"));
  Expect("x = length(\"ab\")", with("push \"ab\"; stringLength"));
  Expect("x = substring(\"abc\", 2, 1)", with("push \"abc\"; push \"2\"; push \"1\"; substring"));
  Expect("x = ord(\"a\")", with("push \"a\"; charCode"));
  Expect("x = chr(65)", with("push \"65\"; charFromCode"));
  Expect("x = getTime()", with("getTime"));
  Expect("x = get(\"a\" & i)", with("push \"a\"; push \"i\"; getVariable; concat; getVariable"));
  Expect("x = lengthMB(\"ab\")", with("push \"ab\"; stringLengthMB"));
  Expect("x = substringMB(\"abc\", 2, 1)",
         with("push \"abc\"; push \"2\"; push \"1\"; substringMB"));
  Expect("x = ordMB(\"a\")", with("push \"a\"; charCodeMB"));
  Expect("x = chrMB(65)", with("push \"65\"; charFromCodeMB"));
}

TEST(Script, FunctionsThatAreStatements) {
  Expect("play(); stop(); nextFrame(); prevFrame(); toggleQuality(); stopDrag()",
         "play; stop; nextFrame; prevFrame; toggleQuality; stopDrag");
  Expect("set(\"a\" & i, 3)",
         "push \"a\"; push \"i\"; getVariable; concat; push \"3\"; setVariable");
  Expect("cloneSprite(\"star\", \"star\" & i, i)",
         "push \"star\"; push \"star\"; push \"i\"; getVariable; concat; push \"i\"; getVariable; "
         "push \"16384\"; add; cloneSprite");
  Expect("cloneSprite(\"a\", \"b\", 2); removeSprite(\"b\")",
         "push \"a\"; push \"b\"; push \"16386\"; cloneSprite; push \"b\"; removeSprite");
}

TEST(Script, DragsTakeTheirLimitsFirst) {
  Expect("startDrag(this)", "push \"0\"; push \"0\"; push \"\"; startDrag");
  Expect("startDrag(\"/p\", true)", "push \"0\"; push \"1\"; push \"/p\"; startDrag");
  Expect("startDrag(\"/p\", false, 10, 20, 30, 40)",
         "push \"10\"; push \"20\"; push \"30\"; push \"40\"; push \"1\"; push \"0\"; push \"/p\"; "
         "startDrag");
}

TEST(Script, AddressesAreFetchedAndSentTo) {
  Expect("getURL(\"a.html\")", "getURL \"a.html\" \"\"");
  Expect("getURL(\"a.html\", \"_blank\")", "getURL \"a.html\" \"_blank\"");
  Expect("getURL(\"a.cgi\", \"_self\", \"post\")",
         "push \"a.cgi\"; push \"_self\"; getURLExpr post");
  Expect("getURL(u)", "push \"u\"; getVariable; push \"\"; getURLExpr none");
  Expect("loadMovie(\"m.vxf\", \"/box\", \"get\")",
         "push \"m.vxf\"; push \"/box\"; getURLExpr get target");
  Expect("unloadMovie(\"_level1\")", "push \"\"; push \"_level1\"; getURLExpr target");
  Expect("loadVariables(\"v.txt\", \"/\")",
         "push \"v.txt\"; push \"/\"; getURLExpr target variables");
}

TEST(ScriptErrors, TellPlaceAndHint) {
  EXPECT_EQ(ErrorOf("x = 1\n  gotoAndStp(3)"),
            "script:2:3: no statement is called gotoAndStp; did you mean gotoAndStop?\n"
            "  gotoAndStp(3)\n"
            "  ^");
  EXPECT_EQ(ErrorOf("x = clip.alhpa"),
            "script:1:10: there is no property alhpa; did you mean alpha?\n"
            "x = clip.alhpa\n"
            "         ^");
}

TEST(ScriptErrors, EachMistakeHasItsWords) {
  ExpectError("x", "behind x stands =");
  ExpectError("x = ", "here stands a value");
  ExpectError("x = 1 2", "complete before this");
  ExpectError("x = 1 }", "no block is open");
  ExpectError("if (x) {", "never closed");
  ExpectError("if x", "here stands (");
  ExpectError("if (x)", "here stands a statement");
  ExpectError("else", "here stands a statement");
  ExpectError("3 = x", "here stands a statement");
  ExpectError("while = 3", "here stands (");
  ExpectError("true = 3", "here stands a statement");
  ExpectError("x = (1", "here stands ) to close");
  ExpectError("x = random(1", "here stands ) or a comma");
  ExpectError("x = random()", "random takes 1 values, not 0");
  ExpectError("x = rndom(1)", "did you mean random?");
  ExpectError("x = play()", "no function play gives a value");
  ExpectError("random(3)", "no statement is called random");
  ExpectError("x = 3x", "this is no number");
  ExpectError("x = 1.2.3", "this is no number");
  ExpectError("x = 1e", "one to four digits");
  ExpectError("x = \"a", "no closing quote");
  ExpectError("x = \"\\x00\"", "zero byte");
  ExpectError("x = /clip", "a path is followed by");
  ExpectError("x = a < b < c", "cannot be chained");
  ExpectError("if (name == \"anna\") stop()", "texts are compared with is");
  ExpectError("/clip.width = 3", "the property width can only be read");
  ExpectError("setProperty(\"a\", frames, 3)", "the property frames can only be read");
  ExpectError("setProperty(\"a\", 3, 3)", "the name of a property");
  ExpectError("setProperty(\"a\")", "here stands , and a property's name");
  ExpectError("x = clip:a.b", ".scroll and .maxscroll");
  ExpectError("break", "break stands in no loop");
  ExpectError("with \"a\" stop()", "statements in braces");
  ExpectError("with (a) { with \"b\" { } }", "no other with");
  ExpectError("gotoAndStop(0)", "frames are counted from 1");
  ExpectError("gotoAndPlay(65537)", "frames are counted from 1");
  ExpectError("cloneSprite(\"a\", \"b\", 49152)", "0 to 49151");
  ExpectError("startDrag(\"a\", 1, 2)", "limits of a drag are four");
  ExpectError("getURL(\"a\", \"b\", \"put\")", "\"get\" or \"post\"");
  ExpectError("x = a $ b", "complete before this");
  ExpectError("$", "here stands a statement");
}

TEST(ScriptErrors, JumpsTooFarTellTheBlock) {
  std::string body;
  for (int i = 0; i < 3000; ++i) body += "abc = 1\n";
  EXPECT_EQ(ErrorOf("if (x) {\n" + body + "}").substr(0, 29), "script:1:1: a jump over 45000");
  ExpectError("while (x) {\n" + body + "}", "script:1:1: a jump over");
  EXPECT_EQ(ErrorOf("if (x) {\n" + body.substr(0, 8 * 1900) + "}"), "none");
}

TEST(ScriptErrors, DepthAndLengthAreBounded) {
  const auto times = [](int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
  };
  ExpectError("x = " + times(100000, "("), "nested too deep");
  ExpectError("x = " + times(100000, "int("), "nested too deep");
  ExpectError(times(100000, "if (x) "), "nested too deep");
  ExpectError(times(100000, "while (x) {"), "nested too deep");
  ExpectError("x = 1" + times(100000, " + a"), "too long");
  ExpectError("x = \"" + std::string(70000, 'a') + "\"", "65533 are the most");
  ExpectError("with \"" + std::string(70000, 'a') + "\" {}", "65533 are the most");
  ExpectError("with \"" + std::string(60000, 'a') + "\" {" + times(1000, "with \"a\" {}") + "}",
              "16 MiB");
  EXPECT_EQ(ErrorOf("x = " + times(100001, "-") + "a"), "none");
  EXPECT_EQ(ErrorOf("x = " + times(100001, "not ") + "a"), "none");
  EXPECT_EQ(ErrorOf(times(150, "if (x) ") + "stop()"), "none");
  EXPECT_EQ(ErrorOf("if (x) stop()" + times(500, " else if (y) stop()")), "none");
}

}  // namespace
}  // namespace vexel::author
