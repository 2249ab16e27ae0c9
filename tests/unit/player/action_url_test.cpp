// Navigation requests.
#include <string>
#include <vector>

#include "action_fixture.h"

namespace vexel::test {
namespace {

class Urls : public ActionTest {
 protected:
  // The request that ActionGetURLExpr makes; "" for none.
  std::string Expr(int flags, const char* url, const char* window, ScriptThread* thread = nullptr,
                   const char* target = "") {
    player.requests.clear();
    Run(ActionBuilder().SetTarget(target).Push(url).Push(window).GetURLExpr(
            static_cast<uint8_t>(flags)),
        thread);
    return player.requests.empty() ? "" : player.requests[0];
  }
};

TEST_F(Urls, GoOutInOrderWhenAllScriptsHaveFinished) {
  Queue(ActionBuilder().GetURL("a", "w").GetURL("b", ""));
  Queue(ActionBuilder().Push("c").Push("v").GetURLExpr(0));
  player.DoActions();
  EXPECT_EQ(player.requests, (std::vector<std::string>{"a > w", "b > ", "c > v"}));
}

TEST_F(Urls, TheThirtyThirdOfARunIsIgnored) {
  ActionBuilder block;
  for (int i = 0; i < 31; ++i) block.GetURL("u", "w");
  block.Push("32").Push("w").GetURLExpr(0);
  block.GetURL("33", "w").Push("34").Push("w").GetURLExpr(2);
  Run(block);
  ASSERT_EQ(player.requests.size(), 32u);
  EXPECT_EQ(player.requests.back(), "32 > w");
  Run(ActionBuilder().GetURL("next", "w"));
  EXPECT_EQ(player.requests.back(), "next > w");
}

TEST_F(Urls, MayCarryTheTargetsVariables) {
  EXPECT_EQ(Expr(1, "http://h/p", "w", a->thread), "http://h/p > w #1");
  a->thread->SetVariable("n", "1 2");
  a->thread->SetVariable("m", "&");
  EXPECT_EQ(Expr(0, "http://h/p", "w", a->thread), "http://h/p > w");
  EXPECT_EQ(Expr(1, "http://h/p", "w", a->thread), "http://h/p?n=1+2&m=%26 > w #1");
  EXPECT_EQ(Expr(2, "http://h/p", "w", a->thread), "http://h/p > w < n=1+2&m=%26 #2");
  EXPECT_EQ(Expr(3, "http://h/p", "w", a->thread), "http://h/p > w #3");
  EXPECT_EQ(Expr(0x81, "u", "w", a->thread), "u?n=1+2&m=%26 > w #129");
}

TEST_F(Urls, AMachinesNameAloneGetsASlash) {
  a->thread->SetVariable("n", "1");
  EXPECT_EQ(Expr(1, "http://host", "w", a->thread), "http://host/?n=1 > w #1");
  EXPECT_EQ(Expr(1, "page", "w", a->thread), "page?n=1 > w #1");
}

TEST_F(Urls, MailIsNeverPosted) {
  a->thread->SetVariable("n", "1");
  EXPECT_EQ(Expr(2, "mailto:me", "w", a->thread), "mailto:me > w #2");
  EXPECT_EQ(Expr(2, " \tMailTo:me", "w", a->thread), " \tMailTo:me > w #2");
  EXPECT_EQ(Expr(2, "mailtoo:me", "w", a->thread), "mailtoo:me > w < n=1 #2");
  EXPECT_EQ(Expr(2, "mailto", "w", a->thread), "mailto > w < n=1 #2");
}

TEST_F(Urls, WithoutATargetNothingIsCarried) {
  EXPECT_EQ(Expr(1, "u", "w", nullptr, "nowhere"), "u > w #1");
  EXPECT_EQ(Expr(2, "u", "w", nullptr, "nowhere"), "u > w #2");
}

TEST_F(Urls, AWholeLayerIsNamedAsItStands) {
  EXPECT_EQ(Expr(0x40, "u", "_level5"), "u > _level5");
  EXPECT_EQ(Expr(0x40, "u", "_level5/"), "u > _level5/");
  EXPECT_EQ(Expr(0xC0, "u", "_vexel5"), "u > _vexel5 #128");
}

TEST_F(Urls, ASpriteOfALayerIsFoundInIt) {
  OpenNested(2);
  EXPECT_EQ(Expr(0x40, "u", "_level2/a"), "u > _level2/a #64");
  EXPECT_EQ(Expr(0x40, "u", "_level2/nowhere"), "");
  EXPECT_EQ(Expr(0x40, "u", "_level7/a"), "");
}

TEST_F(Urls, ASpriteIsNamedByItsFullPath) {
  EXPECT_EQ(Expr(0x40, "u", "a"), "u > /a #64");
  EXPECT_EQ(Expr(0x40, "u", "b", a->thread), "u > /a/b #64");
  EXPECT_EQ(Expr(0x41, "u", "a", nullptr, "nowhere"), "u > /a #65");
  EXPECT_EQ(Expr(0x40, "u", "nowhere"), "");
}

TEST_F(Urls, TheTopIsTheWholeLayer) {
  EXPECT_EQ(Expr(0x40, "u", "/", a->thread), "u > _level0");
  EXPECT_EQ(Expr(0x40, "u", "..", a->thread), "u > _level0");
  ScriptPlayer* layer = OpenNested(2);
  EXPECT_EQ(Expr(0x40, "u", "/", layer), "u > _level2");
  EXPECT_EQ(Expr(0x40, "u", "..", layer->rootObject->firstChild->thread), "u > _level2");
  EXPECT_EQ(Expr(0x40, "u", "/", nullptr, "nowhere"), "u > _level0");
}

TEST_F(Urls, AnEmptyPathIsTheTarget) {
  EXPECT_EQ(Expr(0x40, "u", "", a->thread), "u > /a #64");
  EXPECT_EQ(Expr(0x40, "u", ""), "u > _level0");
}

TEST_F(Urls, TheVariablesAreThoseOfTheTargetAndNotOfTheWindow) {
  b->thread->SetVariable("n", "1");
  player.ClearVariables();
  EXPECT_EQ(Expr(0x42, "u", "a/b"), "u > /a/b #66");
  EXPECT_EQ(Expr(0x42, "u", "..", b->thread), "u > /a < n=1 #66");
}

struct Reentrant : TestPlayer {
  void GetURL(const char* url, const char* window, const char* post, int32_t flags) override {
    TestPlayer::GetURL(url, window, post, flags);
    DoActions();
  }
};

TEST_F(Urls, ARequestMayCauseAnotherRun) {
  Reentrant other;
  other.loaded = true;
  const auto queue = [&other](const ActionBuilder& block) {
    other.display.actionList.PushAction(CopyBytes(block.Finish()), &other);
  };
  queue(ActionBuilder().GetURL("a", "w").GetURL("b", "w"));
  other.DoActions();
  EXPECT_EQ(other.requests.size(), 2u);
  EXPECT_EQ(other.actionDepth, 0);
}

TEST_F(Urls, TextsBeyondTheBudgetVoidTheirRequest) {
  const std::string text(1 << 20, '!');
  for (int i = 0; i < 22; ++i) {
    a->thread->SetVariable(std::to_string(i).c_str(), text.c_str());
  }
  EXPECT_EQ(Expr(2, "u", "w", a->thread), "");
  a->thread->ClearVariables();
  EXPECT_EQ(Expr(2, "u", "w", a->thread), "u > w #2");
}

}  // namespace
}  // namespace vexel::test
