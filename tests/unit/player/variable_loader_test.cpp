// Form-encoded text into variables: of an address, and of a stream.
#include "player/variable_loader.h"

#include "nested_movie.h"
#include "player/url_builder.h"

namespace vexel::test {
namespace {

// "name=value;" for each variable of `thread` but "$version".
std::string Variables(const ScriptThread& thread) {
  std::string out;
  for (ScriptVariable* v = thread.firstVariable; v; v = v->next) {
    if (v->name[0] == '$') continue;
    out += std::string(v->name) + '=' + (v->Text() ? v->Text() : "(null)") + ';';
  }
  return out;
}

std::string Decode(const char* text) {
  ScriptThread thread;
  DecodeQueryString(&thread, text);
  return Variables(thread);
}

TEST(DecodeQueryStringTest, SetsAVariableForEachFieldWithAName) {
  EXPECT_EQ(Decode("a=1&b&=3&c=%41+%z"), "a=1;b=;c=A ;");
  EXPECT_EQ(Decode("a=1&b&=3&c=%41+%zz"), "a=1;b=;c=A z;");  // only one goes with the sign
}

TEST(DecodeQueryStringTest, NothingGivesNothing) {
  EXPECT_EQ(Decode(""), "");
  EXPECT_EQ(Decode("&"), "");
  EXPECT_EQ(Decode("&&=&=="), "");
}

TEST(DecodeQueryStringTest, OnlyTheFirstEqualSignDivides) {
  EXPECT_EQ(Decode("a=1=2&b=&"), "a=1=2;b=;");
}

TEST(DecodeQueryStringTest, ALaterFieldReplacesAnEarlierOne) {
  EXPECT_EQ(Decode("a=1&B=2&A=3"), "a=3;B=2;");
}

TEST(DecodeQueryStringTest, NamesAreDecodedToo) {
  EXPECT_EQ(Decode("a%3D+b=%3d%26"), "a= b==&;");
}

TEST(DecodeQueryStringTest, ANameWithADotOrAColonIsAName) {
  EXPECT_EQ(Decode("a.b=1&/a:c=2"), "a.b=1;/a:c=2;");
}

TEST(DecodeQueryStringTest, APercentSignTakesWhatFollowsItEvenASeparator) {
  EXPECT_EQ(Decode("a=%&b=2"), "a=b=2;");
  EXPECT_EQ(Decode("a=%4&b=2"), "a=b=2;");
  EXPECT_EQ(Decode("%=a=1"), "a=1;");
}

TEST(DecodeQueryStringTest, APercentSignAtTheEndIsDropped) {
  EXPECT_EQ(Decode("a=1%"), "a=1;");
  EXPECT_EQ(Decode("a=1%4"), "a=1;");
}

TEST(DecodeQueryStringTest, AnEncodedZeroEndsAText) {
  EXPECT_EQ(Decode("a%00b=1%002&%00=3"), "a=1;");
}

TEST(ExtractVariablesTest, ReadsWhatFollowsTheFirstQuestionMark) {
  ScriptThread thread;
  ExtractVariables(&thread, "http://h/m?a=1&b=x?y");
  EXPECT_EQ(Variables(thread), "a=1;b=x?y;");
}

TEST(ExtractVariablesTest, WithoutAQuestionMarkThereIsNothing) {
  ScriptThread thread;
  ExtractVariables(&thread, "http://h/m&a=1");
  ExtractVariables(&thread, "m?");
  ExtractVariables(&thread, nullptr);
  ExtractVariables(nullptr, "m?a=1");
  EXPECT_EQ(Variables(thread), "");
}

class VariableLoader : public NestedMovieTest {
 protected:
  // Loads `text` in pieces of `piece` bytes.
  void Load(int32_t layer, const char* target, const std::string& text, size_t piece = 1 << 20) {
    ScriptPlayer* loader = player.OpenVariableLoader(layer, target);
    ASSERT_NE(loader, nullptr);
    for (size_t at = 0; at < text.size(); at += piece) {
      const std::string part = text.substr(at, piece);
      loader->PushDataBuf(reinterpret_cast<const uint8_t*>(part.data()),
                          static_cast<int32_t>(part.size()));
    }
    loader->SetDataComplete();
  }
};

TEST_F(VariableLoader, IsOnNoList) {
  ScriptPlayer* loader = player.OpenVariableLoader(3, "/a");
  EXPECT_EQ(loader->splayer, &player);
  EXPECT_TRUE(loader->variableLoader);
  EXPECT_EQ(loader->loaderLayer, 3);
  EXPECT_STREQ(loader->loaderTarget, "/a");
  EXPECT_EQ(player.nextLayer, nullptr);
  EXPECT_EQ(loader->listLink, nullptr);
  EXPECT_EQ(loader->display, nullptr);
  loader->SetDataComplete();
}

TEST_F(VariableLoader, SetsTheVariablesOfItsTarget) {
  Load(0, "/a/b", "x=1&y=two+words");
  EXPECT_EQ(Variables(*b->thread), "x=1;y=two words;");
}

TEST_F(VariableLoader, ARelativePathStartsAtTheFirstObjectOfLayerZero) {
  Load(0, "b", "x=1");
  EXPECT_EQ(Variables(*b->thread), "x=1;");
  Load(0, "..", "x=2");
  EXPECT_EQ(Variables(player), "x=2;");
}

TEST_F(VariableLoader, TakesItsTextInAnyPieces) {
  std::string text;
  for (int i = 0; i < 400; ++i) {
    text.append("v").append(std::to_string(i)).append("=").append(i % 40, 'x').append("&");
  }
  Load(0, "/a", text);
  Load(0, "/a/b", text, 7);
  EXPECT_EQ(Variables(*a->thread), Variables(*b->thread));
  EXPECT_EQ(Take(player.GetVariable(a->thread, "v39")), std::string(39, 'x'));
}

TEST_F(VariableLoader, ATextEndsAtAZero) {
  Load(0, "/a", std::string("x=1&y=2\0&z=3", 12));
  EXPECT_EQ(Variables(*a->thread), "x=1;y=2;");
}

TEST_F(VariableLoader, ATargetThatIsNotThereGetsNothing) {
  Load(0, "/none", "x=1");
  Load(2, "/none", "x=1");
  EXPECT_EQ(Variables(player), "");
  EXPECT_EQ(player.nextLayer, nullptr);
}

TEST_F(VariableLoader, ATargetThatNamesALayerOpensIt) {
  Load(0, "_level4", "x=1");
  ASSERT_NE(player.nextLayer, nullptr);
  EXPECT_EQ(player.nextLayer->layerDepth, 4);
  EXPECT_EQ(Variables(*player.nextLayer), "x=1;");
  EXPECT_EQ(player.nextLayer->rootObject, nullptr);
}

TEST_F(VariableLoader, WithoutATargetTheLayerGetsARootObject) {
  Load(6, nullptr, "x=1");
  const ScriptPlayer* layer = player.nextLayer;
  ASSERT_NE(layer, nullptr);
  EXPECT_EQ(layer->layerDepth, 6);
  ASSERT_NE(layer->rootObject, nullptr);
  EXPECT_EQ(layer->rootObject->character->type, charRoot);
  EXPECT_EQ(layer->rootObject->character->id, kRootId);
  EXPECT_EQ(layer->rootObject->depth, 6);
  EXPECT_EQ(Take(player.GetVariable(a->thread, "_level6:x")), "1");
}

TEST_F(VariableLoader, ALayerKeepsItsMovie) {
  const ScriptPlayer* layer = OpenNested(2);
  const SObject* root = layer->rootObject;
  Load(2, nullptr, "x=1");
  EXPECT_EQ(layer->rootObject, root);
  EXPECT_NE(root->firstChild, nullptr);
  EXPECT_EQ(Variables(*layer), "x=1;");
  Load(0, nullptr, "x=2");
  EXPECT_EQ(Variables(player), "x=2;");
  EXPECT_EQ(player.rootObject->firstChild, a);
}

TEST_F(VariableLoader, ALayerThatCannotBeOpenedGetsNothing) {
  Load(-1, nullptr, "x=1");
  Load(65536, nullptr, "x=1");
  Load(0, "_level65536", "x=1");
  EXPECT_EQ(player.nextLayer, nullptr);
}

TEST_F(VariableLoader, WithoutDataNothingIsOpened) {
  Load(6, nullptr, "");
  EXPECT_EQ(player.nextLayer, nullptr);
}

TEST_F(VariableLoader, APlainMovieIsNotEndedByItsStream) {
  ScriptPlayer* layer = OpenNested(2);
  layer->SetDataComplete();
  player.SetDataComplete();
  EXPECT_EQ(player.nextLayer, layer);
  EXPECT_EQ(Take(player.GetTargetPath(layer->rootObject)), "_level2");
}

}  // namespace
}  // namespace vexel::test
