#include "host/advise_sink.h"

#include <gtest/gtest.h>

#include "host/fake_host.h"

namespace vexel {
namespace {

using test::Ptr;

// Records the position reports that come through.
struct FakeManager final : CRenderThreadManager {
  FakeManager() : CRenderThreadManager(nullptr, nullptr, 50) {}
  INT32 OnPosLength(UINT32 position, UINT32 length) override {
    reports.push_back({position, length});
    return 3;
  }
  std::vector<std::pair<UINT32, UINT32>> reports;
};

struct AdviseSinkTest : testing::Test {
  // Player and sink hold each other.
  ~AdviseSinkTest() override {
    if (sink) sink->Remove();
  }

  test::FakeHost host;
  FakeManager manager;
  Ptr<CVexelClientAdviseSink> sink = test::New<CVexelClientAdviseSink>();
  std::vector<std::string>& lines = host.log->lines;

  INT32 Add() { return sink->Add(host.context.get(), host.player.get(), &manager); }
};

TEST_F(AdviseSinkTest, ListensToThePlayer) {
  EXPECT_EQ(Add(), ZEM_OK);
  ASSERT_EQ(host.player->sinks.size(), 1u);
  EXPECT_EQ(host.player->sinks[0].get(), sink.get());
  EXPECT_EQ(host.player->refs(), 2u);
}

TEST_F(AdviseSinkTest, NeedsAllThree) {
  EXPECT_EQ(sink->Add(nullptr, host.player.get(), &manager), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(sink->Add(host.context.get(), nullptr, &manager), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(sink->Add(host.context.get(), host.player.get(), nullptr), ZEM_BAD_ARGUMENT);
}

TEST_F(AdviseSinkTest, PassesPositionsOn) {
  Add();
  EXPECT_EQ(sink->OnPosLength(100, 2000), 3);
  ASSERT_EQ(manager.reports.size(), 1u);
  EXPECT_EQ(manager.reports[0].first, 100u);
  EXPECT_EQ(manager.reports[0].second, 2000u);
  EXPECT_EQ(lines, std::vector<std::string>({"14 CAS:OnPosLength(100,2000)"}));
}

TEST_F(AdviseSinkTest, LogsAllAdvice) {
  Add();
  sink->OnPresentationOpened();
  sink->OnPresentationClosed();
  sink->OnStatisticsChanged();
  sink->OnPreSeek(1, 4000000000);
  sink->OnPostSeek(3, 4);
  sink->OnStop();
  sink->OnPause(5);
  sink->OnBegin(6);
  sink->OnBuffering(7, 65535);
  sink->OnContacting("host.example");
  EXPECT_EQ(lines, std::vector<std::string>(
                       {"14 CAS:OnPresentationOpened()", "14 CAS:OnPresentationClosed()",
                        "14 CAS:OnStatisticsChanged()", "14 CAS:OnPreSeek(1,4000000000)",
                        "14 CAS:OnPostSeek(3,4)", "14 CAS:OnStop()", "14 CAS:OnPause(5)",
                        "14 CAS:OnBegin(6)", "14 CAS:OnBuffering(7,65535)",
                        "14 CAS:OnContacting(host.example)"}));
}

TEST_F(AdviseSinkTest, RemoveLetsGoOfAll) {
  Add();
  sink->Remove();
  EXPECT_TRUE(host.player->sinks.empty());
  EXPECT_EQ(host.player->refs(), 1u);
  EXPECT_EQ(sink->OnPosLength(1, 2), ZEM_OK);
  EXPECT_TRUE(manager.reports.empty());
  EXPECT_TRUE(lines.empty()) << "the log is gone, too";
  sink->Remove();
}

TEST_F(AdviseSinkTest, DestructionStopsListening) {
  struct Forgetful final : test::Fake<IZEMPlayer> {
    Forgetful() : Fake(IID_IZEMPlayer) {}
    INT32 GetContext(IUnknown*&) override { return ZEM_FAILED; }
    UINT32 GetPosition() override { return 0; }
    UINT32 GetLength() override { return 0; }
    INT32 IsRunning() override { return 0; }
    INT32 OpenURL(const char*) override { return ZEM_OK; }
    INT32 Begin() override { return ZEM_OK; }
    INT32 Stop() override { return ZEM_OK; }
    INT32 Pause() override { return ZEM_OK; }
    INT32 Seek(UINT32) override { return ZEM_OK; }
    // Keeps no reference, and takes one for a moment.
    INT32 AddAdviseSink(IZEMClientAdviseSink*) override { return ZEM_OK; }
    INT32 RemoveAdviseSink(IZEMClientAdviseSink* sink) override {
      sink->AddRef();
      sink->Release();
      ++removed;
      return ZEM_OK;
    }
    int removed = 0;
  };
  const auto player = test::New<Forgetful>();
  sink->Add(host.context.get(), player.get(), &manager);
  sink = {};
  EXPECT_EQ(player->removed, 1);
  EXPECT_EQ(player->refs(), 1u);
}

TEST_F(AdviseSinkTest, AnswersForItsInterface) {
  IUnknown* object = sink.get();
  EXPECT_TRUE(test::Query<IUnknown>(object, IID_IUnknown));
  EXPECT_TRUE(test::Query<IZEMClientAdviseSink>(object, IID_IZEMClientAdviseSink));
  EXPECT_FALSE(test::Query<IUnknown>(object, IID_IZEMSite));
  EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), ZEM_BAD_ARGUMENT);
}

TEST_F(AdviseSinkTest, WorksWithoutALog) {
  host.Without(IID_IZEMErrorMessages);
  EXPECT_EQ(Add(), ZEM_OK);
  sink->OnStop();
  EXPECT_TRUE(lines.empty());
}

}  // namespace
}  // namespace vexel
