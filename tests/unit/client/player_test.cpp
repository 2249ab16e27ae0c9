#include "client/core/player.h"

#include <gtest/gtest.h>

#include "client/core/context.h"
#include "client/core/hyper_navigate.h"

namespace vexel::client {
namespace {

using Calls = std::vector<std::string>;

class Sink : public Object<IZEMClientAdviseSink> {
 public:
  explicit Sink(Calls* calls) : calls_(calls) {}
  std::function<void()> onPosition;

  INT32 OnPosLength(UINT32 pos, UINT32 len) override {
    Note("position", pos, len);
    if (onPosition) onPosition();
    return ZEM_OK;
  }
  INT32 OnPresentationOpened() override { return ZEM_OK; }
  INT32 OnPresentationClosed() override { return ZEM_OK; }
  INT32 OnStatisticsChanged() override { return ZEM_OK; }
  INT32 OnPreSeek(UINT32 from, UINT32 to) override { return Note("before", from, to); }
  INT32 OnPostSeek(UINT32 from, UINT32 to) override { return Note("behind", from, to); }
  INT32 OnStop() override { return Note("stop", 0, 0); }
  INT32 OnPause(UINT32 time) override { return Note("pause", time, 0); }
  INT32 OnBegin(UINT32 time) override { return Note("begin", time, 0); }
  INT32 OnBuffering(UINT32, UINT16) override { return ZEM_OK; }
  INT32 OnContacting(const char*) override { return ZEM_OK; }

 private:
  INT32 Note(const std::string& what, UINT32 a, UINT32 b) {
    calls_->push_back("sink " + what + " " + std::to_string(a) + " " + std::to_string(b));
    return ZEM_OK;
  }
  Calls* calls_;
};

class ThePlayer : public testing::Test, public PlayerListener {
 protected:
  Calls calls;
  uint64_t now = 500;
  EventLoop loop;
  Ref<Context> context = Make<Context>();
  Ref<Player> player = Make<Player>(&loop, context.get(), [this] { return now; });
  Ref<Sink> sink = Make<Sink>(&calls);

  void SetUp() override {
    player->SetListener(this);
    ASSERT_EQ(player->AddAdviseSink(sink.get()), ZEM_OK);
  }
  void TearDown() override { player->Close(); }

  void OnBegin(uint32_t time) override { calls.push_back("begin " + std::to_string(time)); }
  void OnPause(uint32_t time) override { calls.push_back("pause " + std::to_string(time)); }
  void OnSeek(uint32_t from, uint32_t to) override {
    calls.push_back("seek " + std::to_string(from) + " " + std::to_string(to));
  }
  void OnStop() override { calls.push_back("stop"); }
  void OnOpenURL(const std::string& url) override { calls.push_back("open " + url); }
};

TEST_F(ThePlayer, ItsClockRunsFromBeginToPause) {
  EXPECT_EQ(player->GetPosition(), 0u);
  player->Begin();
  now += 250;
  EXPECT_EQ(player->GetPosition(), 250u);
  EXPECT_TRUE(player->IsRunning());
  player->Pause();
  now += 1000;
  EXPECT_EQ(player->GetPosition(), 250u);
  player->Begin();
  now += 50;
  EXPECT_EQ(player->GetPosition(), 300u);
  EXPECT_EQ(calls, (Calls{"begin 0", "sink begin 0 0", "pause 250", "sink pause 250 0", "begin 250",
                          "sink begin 250 0"}));
}

TEST_F(ThePlayer, BeginAndPauseTwiceAreOnce) {
  player->Begin();
  player->Begin();
  player->Pause();
  player->Pause();
  EXPECT_EQ(calls.size(), 4u);
}

TEST_F(ThePlayer, SeekTellsBeforeAndBehind) {
  player->Begin();
  now += 100;
  calls.clear();
  player->Seek(5000);
  EXPECT_EQ(player->GetPosition(), 5000u);
  EXPECT_EQ(calls, (Calls{"sink before 100 5000", "seek 100 5000", "sink behind 100 5000"}));
}

TEST_F(ThePlayer, AnotherPresentationIsOpenedAtBeginAndNotInsideTheCall) {
  EXPECT_EQ(player->OpenURL("http://a/next"), ZEM_OK);
  while (loop.Turn(false)) {
  }
  EXPECT_TRUE(calls.empty());
  player->Begin();
  EXPECT_TRUE(calls.empty());
  EXPECT_TRUE(loop.RunUntil([this] { return !calls.empty(); }, 10000));
  EXPECT_EQ(calls, Calls{"open http://a/next"});
}

TEST_F(ThePlayer, TellsWhereItIsEvenWhileItStands) {
  player->SetLength(9000);
  player->TellPosition();
  EXPECT_EQ(calls, Calls{"sink position 0 9000"});
}

TEST_F(ThePlayer, ASinkMayGoInsideItsCall) {
  const auto second = Make<Sink>(&calls);
  player->AddAdviseSink(second.get());
  sink->onPosition = [&] {
    player->RemoveAdviseSink(sink.get());
    player->RemoveAdviseSink(second.get());
  };
  player->TellPosition();
  EXPECT_EQ(calls.size(), 1u);
  EXPECT_EQ(player->RemoveAdviseSink(sink.get()), ZEM_UNEXPECTED);
}

TEST_F(ThePlayer, TakesASinkOnce) {
  EXPECT_EQ(player->AddAdviseSink(sink.get()), ZEM_UNEXPECTED);
  EXPECT_EQ(player->AddAdviseSink(nullptr), ZEM_BAD_ARGUMENT);
}

TEST_F(ThePlayer, NavigatesByTheContextsService) {
  const auto navigate = Query<IZEMHyperNavigate>(static_cast<IZEMPlayer*>(player.get()));
  ASSERT_TRUE(navigate);
  EXPECT_EQ(navigate->GoToURL("http://a/", ""), ZEM_UNEXPECTED);
  context->Offer<IZEMHyperNavigate>(
      Make<HyperNavigate>([](const std::string&, const std::string&) { return true; }).get());
  EXPECT_EQ(navigate->GoToURL("http://a/", ""), ZEM_OK);
}

TEST_F(ThePlayer, StopGoesBackToTheBeginning) {
  player->Begin();
  now += 100;
  player->Stop();
  EXPECT_EQ(player->GetPosition(), 0u);
  EXPECT_FALSE(player->IsRunning());
}

}  // namespace
}  // namespace vexel::client
