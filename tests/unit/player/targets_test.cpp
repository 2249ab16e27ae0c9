// Target paths, variables by path, and frames by number and label.
#include "nested_movie.h"

namespace vexel::test {
namespace {

class Targets : public NestedMovieTest {
 protected:
  ScriptThread* Find(SObject* start, const std::string& path) {
    return player.FindTarget(start, path.c_str());
  }
  // "frame" or "null" for what a text speaks of, seen from the root timeline.
  std::string Frame(const std::string& text, const ScriptThread* expected) {
    int32_t frame = -5;
    ScriptThread* found = player.ResolveFrameNum(text.c_str(), nullptr, &frame);
    if (!found) return frame == -5 ? "null" : "null, but a frame";
    return found == expected ? std::to_string(frame) : "another timeline";
  }
  std::string Get(const char* name) { return Take(player.GetVariable(nullptr, name)); }
};

TEST_F(Targets, TwoParentsUpFromAChildOfAChildIsTheRoot) {
  EXPECT_EQ(Find(b, "../.."), &player);
  EXPECT_EQ(Find(b, "../../"), &player);
  EXPECT_EQ(Find(b, ".."), a->thread);
}

TEST_F(Targets, ThreeParentsUpFromAChildOfAChildIsTheStageWhichHasNoTimeline) {
  EXPECT_EQ(Find(b, "../../.."), nullptr);
  EXPECT_EQ(Find(b, "../../../.."), nullptr);
  EXPECT_EQ(Find(b, "../../../../a"), nullptr);
}

TEST_F(Targets, FromTheStageNoNameLeadsBackDown) {
  EXPECT_EQ(Find(b, "../../../a"), nullptr);
}

TEST_F(Targets, ASlashIsTheTopOfTheLayerFromAnywhere) {
  EXPECT_EQ(Find(b, "/"), &player);
  EXPECT_EQ(Find(a, "/"), &player);
  EXPECT_EQ(Find(player.rootObject, "/"), &player);
  ScriptPlayer* layer = OpenNested(2);
  EXPECT_EQ(Find(layer->rootObject->firstChild->firstChild, "/"), layer);
}

TEST_F(Targets, ASlashOnTheStageItselfIsTheStage) {
  EXPECT_EQ(Find(&player.display.root, "/"), nullptr);
}

TEST_F(Targets, AnEmptyPathIsTheStart) {
  EXPECT_EQ(Find(b, ""), b->thread);
  EXPECT_EQ(Find(player.rootObject, ""), &player);
}

TEST_F(Targets, AnEmptyPathFromAShapeIsTheTimelineThatHoldsIt) {
  EXPECT_EQ(Find(b->firstChild, ""), b->thread);
}

TEST_F(Targets, NoStartAndNoPathFindNothing) {
  EXPECT_EQ(Find(nullptr, ""), nullptr);
  EXPECT_EQ(Find(nullptr, "/"), nullptr);
  EXPECT_EQ(Find(nullptr, "/a"), nullptr);
  EXPECT_EQ(Find(nullptr, "a"), nullptr);
  EXPECT_EQ(Find(nullptr, ".."), nullptr);
  EXPECT_EQ(player.FindTarget(a, nullptr), nullptr);
}

TEST_F(Targets, AnUnnamedSpriteIsFoundByItsAutomaticName) {
  const SObject* unnamed = a->next;
  ASSERT_NE(unnamed->name, nullptr);
  EXPECT_EQ(std::string(unnamed->name), "instance1");
  EXPECT_EQ(Find(player.rootObject, "instance1"), unnamed->thread);
  EXPECT_EQ(Find(b, "/INSTANCE1"), unnamed->thread);
}

TEST_F(Targets, NamesGoDownWithoutRegardToCase) {
  EXPECT_EQ(Find(player.rootObject, "a/b"), b->thread);
  EXPECT_EQ(Find(player.rootObject, "A/B/"), b->thread);
  EXPECT_EQ(Find(b, "/a/b"), b->thread);
  EXPECT_EQ(Find(b, "../../a"), a->thread);
  EXPECT_EQ(Find(player.rootObject, "b"), nullptr);
  EXPECT_EQ(Find(player.rootObject, "a/c"), nullptr);
}

TEST_F(Targets, TwoSlashesNameASpriteWithAnEmptyName) {
  EXPECT_EQ(Find(player.rootObject, "//"), nullptr);
  EXPECT_EQ(Find(player.rootObject, "a//b"), nullptr);
  FreeStr(b->name);
  b->name = CreateStr("");
  EXPECT_EQ(Find(player.rootObject, "a//"), b->thread);
}

TEST_F(Targets, ALayersNameMayBeginAPath) {
  ScriptPlayer* layer = OpenNested(3);
  SObject* there = layer->rootObject->firstChild;
  EXPECT_EQ(Find(b, "_level3"), layer);
  EXPECT_EQ(Find(b, "_VEXEL3/a"), there->thread);
  EXPECT_EQ(Find(there, "_level0/a/b"), b->thread);
  EXPECT_EQ(Find(there, "_level/a"), a->thread);
  EXPECT_EQ(Find(nullptr, "_level0"), &player);
}

TEST_F(Targets, ALayersNameMeansNothingFurtherOnNorBehindASlash) {
  OpenNested(3);
  EXPECT_EQ(Find(b, "/_level3"), nullptr);
  EXPECT_EQ(Find(b, "../_level3"), nullptr);
}

TEST_F(Targets, ALayerThatIsNotThereOrHasNoRootObjectIsNotFound) {
  EXPECT_EQ(Find(b, "_level3"), nullptr);
  ASSERT_NE(player.OpenLayer(3, false), nullptr);
  EXPECT_EQ(Find(b, "_level3"), nullptr);
  EXPECT_EQ(Find(b, "_level3/a"), nullptr);
}

TEST_F(Targets, ALayersNameHidesASpriteOfThatNameUnlessASlashPrecedes) {
  FreeStr(a->name);
  a->name = CreateStr("_level0");
  EXPECT_EQ(Find(player.rootObject, "_level0"), &player);
  EXPECT_EQ(Find(player.rootObject, "/_level0"), a->thread);
}

TEST_F(Targets, OnlySpritesAndLoadedMoviesAreFoundByName) {
  SObject* button = a->next->next;
  ASSERT_EQ(button->character->type, charButton);
  button->name = CreateStr("button");
  EXPECT_EQ(Find(player.rootObject, "button"), nullptr);
  b->firstChild->name = CreateStr("shape");
  EXPECT_EQ(Find(b, "shape"), nullptr);
  ScriptPlayer* movie = player.OpenSprite(a->thread);
  ASSERT_NE(movie, nullptr);
  EXPECT_EQ(Find(player.rootObject, "a"), movie);
}

TEST_F(Targets, TheFirstOfTwoWithOneNameIsFound) {
  SObject* second = a->next;
  FreeStr(second->name);
  second->name = CreateStr("A");
  EXPECT_EQ(Find(player.rootObject, "a"), a->thread);
}

TEST_F(Targets, ANameOf127CharactersIsFoundAndItsSlashTaken) {
  const std::string name(127, 'n');
  FreeStr(a->name);
  a->name = CreateStr(name.c_str());
  EXPECT_EQ(Find(player.rootObject, name), a->thread);
  EXPECT_EQ(Find(player.rootObject, name + "/b"), b->thread);
  EXPECT_EQ(Find(player.rootObject, name + "/"), a->thread);
}

TEST_F(Targets, ALongerNameCountsAsTwoNames) {
  const std::string name(127, 'n');
  FreeStr(a->name);
  a->name = CreateStr((name + "b").c_str());
  EXPECT_EQ(Find(player.rootObject, name + "b"), nullptr);
  FreeStr(a->name);
  a->name = CreateStr(name.c_str());
  EXPECT_EQ(Find(player.rootObject, name + "b"), b->thread);
  EXPECT_EQ(Find(player.rootObject, std::string(100000, 'n')), nullptr);
}

TEST_F(Targets, ThePathOfAnObjectLeadsBackToIt) {
  EXPECT_EQ(Take(player.GetTargetPath(b)), "/a/b");
  EXPECT_EQ(Take(player.GetTargetPath(a)), "/a");
  EXPECT_EQ(Take(player.GetTargetPath(player.rootObject)), "/");
}

TEST_F(Targets, ThePathInAFurtherLayerBeginsWithItsName) {
  ScriptPlayer* layer = OpenNested(2);
  SObject* there = layer->rootObject->firstChild->firstChild;
  EXPECT_EQ(Take(player.GetTargetPath(there)), "_level2/a/b");
  EXPECT_EQ(Take(player.GetTargetPath(layer->rootObject)), "_level2");
  EXPECT_EQ(player.FindTarget(a, "_level2/a/b"), there->thread);
  ScriptPlayer* highest = OpenNested(65535);
  EXPECT_EQ(Take(player.GetTargetPath(highest->rootObject->firstChild)), "_level65535/a");
}

TEST_F(Targets, AnObjectWithoutANameIsAQuestionMarkInAPath) {
  EXPECT_EQ(Take(player.GetTargetPath(b->firstChild)), "/a/b/?");
}

TEST_F(Targets, ThePathInALoadedMovieHasTheLayerThatItStandsIn) {
  ScriptPlayer* layer = OpenNested(2);
  ScriptPlayer* movie = player.OpenSprite(layer->rootObject->firstChild->thread);
  ASSERT_NE(movie, nullptr);
  EXPECT_EQ(Take(player.GetTargetPath(movie->rootObject)), "_level2/a");
}

TEST_F(Targets, ThePathOfNothingIsASlash) {
  EXPECT_EQ(Take(player.GetTargetPath(nullptr)), "/");
  EXPECT_EQ(Take(player.GetTargetPath(&player.display.root)), "/");
}

TEST_F(Targets, TheDeepestObjectsHaveAPath) {
  SObject* at = b;
  PlaceInfo info;
  MatrixIdentity(&info.mat);
  info.cxform.Clear();
  info.flags = kPlaceCharacter | kPlaceName;
  info.character = player.FindCharacter(4);
  info.name = "x";
  info.depth = 9;
  while (SObject* below = player.display.PlaceObject(at, &info)) at = below;
  EXPECT_EQ(at->nesting, 256);
  const std::string path = Take(player.GetTargetPath(at));
  EXPECT_EQ(path.substr(0, 8), "/a/b/x/x");
  EXPECT_EQ(path.size(), 2u * 255);
}

TEST_F(Targets, APathBeyondTheBudgetIsNull) {
  for (SObject* object : {a, b}) {
    FreeStr(object->name);
    object->name = CreateStr(std::string(600000, 'n').c_str());
  }
  EXPECT_NE(Take(player.GetTargetPath(a)), "(null)");
  EXPECT_EQ(Take(player.GetTargetPath(b)), "(null)");
}

TEST_F(Targets, AVariableIsSoughtInTheTimelineBeforeTheColon) {
  const char* name;
  EXPECT_EQ(player.ResolveVariable("x", a->thread, &name), a->thread);
  EXPECT_STREQ(name, "x");
  EXPECT_EQ(player.ResolveVariable("x", nullptr, &name), &player);
  EXPECT_EQ(player.ResolveVariable("/a/b:x:y", nullptr, &name), b->thread);
  EXPECT_STREQ(name, "x:y");
  EXPECT_EQ(player.ResolveVariable("b:", a->thread, &name), b->thread);
  EXPECT_STREQ(name, "");
  EXPECT_EQ(player.ResolveVariable(":x", a->thread, &name), a->thread);
  EXPECT_EQ(player.ResolveVariable("none:x", nullptr, &name), nullptr);
}

TEST_F(Targets, VariablesAreReadAndWrittenByPath) {
  player.SetVariable(nullptr, "/a:Foo", "1");
  player.SetVariable(a->thread, "fOO", "2");
  player.SetVariable(a->thread, "b:foo", "3");
  player.SetVariable(nullptr, "none:foo", "4");
  EXPECT_EQ(Get("/a:FOO"), "2");
  EXPECT_EQ(Get("a/b:foo"), "3");
  EXPECT_EQ(Get("foo"), "(null)");
  EXPECT_EQ(Get("none:foo"), "(null)");
  EXPECT_STREQ(a->thread->firstVariable->name, "Foo");
}

TEST_F(Targets, AVariableWithoutAValueReadsAsNull) {
  player.SetVariable(nullptr, "x", nullptr);
  EXPECT_NE(player.FindVariable("x"), nullptr);
  EXPECT_EQ(Get("x"), "(null)");
  player.SetVariable(nullptr, "", "1");
  player.SetVariable(nullptr, "a:", "1");
  EXPECT_EQ(a->thread->firstVariable, nullptr);
}

TEST_F(Targets, ANameWithADotIsNeverAVariable) {
  player.SetVariable(nullptr, "a.b", "1");
  player.SetVariable(nullptr, "/a:x.y", "1");
  EXPECT_EQ(player.FindVariable("a.b"), nullptr);
  EXPECT_EQ(a->thread->firstVariable, nullptr);
  player.ScriptThread::SetVariable("c.d", "1");
  EXPECT_EQ(Get("a.b"), "(null)");
  EXPECT_EQ(Get("c.d"), "(null)");
}

TEST_F(Targets, TheScrollLineOfAFieldThatIsNotThereIsNull) {
  player.SetVariable(nullptr, "x.scroll", "2");
  EXPECT_EQ(Get("x.scroll"), "(null)");
  EXPECT_EQ(Get("x.maxscroll"), "(null)");
}

TEST_F(Targets, TheColonIsFoundBeforeTheDot) {
  FreeStr(a->name);
  a->name = CreateStr("a.b");
  player.SetVariable(nullptr, "a.b:x", "1");
  EXPECT_EQ(Get("/a.b:x"), "1");
}

TEST_F(Targets, FramesCountFromOne) {
  EXPECT_EQ(Frame("3", &player), "2");
  EXPECT_EQ(Frame("+3", &player), "2");
  EXPECT_EQ(Frame("1", &player), "0");
  EXPECT_EQ(Frame("99999", &player), "99998");
}

TEST_F(Targets, FrameZeroAndNegativeFramesAreNone) {
  EXPECT_EQ(Frame("0", &player), "null");
  EXPECT_EQ(Frame("-3", &player), "null");
  EXPECT_EQ(Frame("-2147483648", &player), "null");
  EXPECT_EQ(Frame("2147483648", &player), "null");
}

TEST_F(Targets, AnythingElseIsALabel) {
  EXPECT_EQ(Frame("intro", &player), "3");
  EXPECT_EQ(Frame("INTRO", &player), "3");
  EXPECT_EQ(Frame("outro", &player), "null");
  EXPECT_EQ(Frame("3x", &player), "null");
  EXPECT_EQ(Frame("", &player), "null");
  EXPECT_EQ(Frame("+", &player), "null");
}

TEST_F(Targets, AFrameMayHaveAPath) {
  EXPECT_EQ(Frame("/a:7", a->thread), "6");
  EXPECT_EQ(Frame("/a:intro", a->thread), "null");
  EXPECT_EQ(Frame("a:/intro", a->thread), "null");
  EXPECT_EQ(Frame("none:7", a->thread), "null");
  int32_t frame;
  EXPECT_EQ(player.ResolveFrameNum("/:intro", b->thread, &frame), &player);
  EXPECT_EQ(frame, 3);
}

}  // namespace
}  // namespace vexel::test
