#include "host/render_thread_manager.h"

#include <gtest/gtest.h>

#include <functional>

#include "host/fake_host.h"

namespace vexel {
namespace {

using test::Bytes;
using test::MakeBuffer;
using test::MakePacket;
using test::New;
using test::Ptr;

UINT32 g_now = 0;

// Records what reaches the engine; a burst may take time.
struct FakeEngine final : test::Fake<IZEMRenderer>, IOnPacketHandler {
  struct SiteUser final : test::Fake<IZEMSiteUser> {
    SiteUser() : Fake(IID_IZEMSiteUser) {}
    INT32 AttachSite(IZEMSite*) override { return ZEM_OK; }
    INT32 DetachSite() override { return ZEM_OK; }
    INT32 HandleEvent(_QKxEvent* event) override {
      events.push_back(event->event);
      return 5;
    }
    INT32 NeedsWindowedSites() override { return 0; }
    std::vector<UINT32> events;
  };

  FakeEngine() : Fake(IID_IZEMRenderer) { others[IID_IZEMSiteUser] = siteUser.get(); }
  // Whoever asks for the renderer gets it without its own interface.
  void HideRenderer() { hidden = true; }
  INT32 QueryInterface(const ZEMID& id, void** out) override {
    if (hidden && !ZEMIsEqualID(id, IID_IUnknown)) return ZEM_NO_INTERFACE;
    return Fake::QueryInterface(id, out);
  }

  INT32 Note(const std::string& call) {
    calls.push_back(call);
    return 7;
  }
  INT32 GetRendererInfo(const char**&, UINT32& granularity) override {
    granularity = 100;
    return Note("GetRendererInfo");
  }
  INT32 StartStream(IZEMStream*, IZEMPlayer*) override { return Note("StartStream"); }
  INT32 EndStream() override { return Note("EndStream"); }
  INT32 OnHeader(IZEMValues*) override { return Note("OnHeader"); }
  INT32 OnPacket(IZEMPacket* packet, INT32 offset) override {
    const Bytes bytes = test::BytesOf(packet);
    return Note("OnPacket " + std::to_string(bytes.empty() ? -1 : bytes[0]) + " " +
                std::to_string(offset));
  }
  INT32 OnTimeSync(UINT32 time) override {
    g_now += burstMs;
    Note("OnTimeSync " + std::to_string(time));
    if (onSync) onSync();
    return 9;
  }
  INT32 OnPreSeek(UINT32 a, UINT32 b) override {
    return Note("OnPreSeek " + std::to_string(a) + " " + std::to_string(b));
  }
  INT32 OnPostSeek(UINT32 a, UINT32 b) override {
    return Note("OnPostSeek " + std::to_string(a) + " " + std::to_string(b));
  }
  INT32 OnPause(UINT32 time) override { return Note("OnPause " + std::to_string(time)); }
  INT32 OnBegin(UINT32 time) override { return Note("OnBegin " + std::to_string(time)); }
  INT32 OnBuffering(UINT32, UINT16 percent) override {
    return Note("OnBuffering " + std::to_string(percent));
  }
  INT32 GetDisplayType(UINT32& type, IZEMBuffer*&) override {
    type = 7;
    return Note("GetDisplayType");
  }
  INT32 OnEndofPackets() override { return Note("OnEndofPackets"); }
  INT32 AddLateWriteBuffer(IZEMBuffer* buffer) override {
    Note("Late " + std::to_string(buffer->GetBuffer()[0]));
    return buffer->GetBuffer()[0] == refused ? ZEM_FAILED : ZEM_OK;
  }

  Ptr<SiteUser> siteUser = New<SiteUser>();
  std::vector<std::string> calls;
  UINT32 burstMs = 0;
  int refused = -1;
  bool hidden = false;
  std::function<void()> onSync;
};

struct ManagerTest : testing::Test {
  ManagerTest() { g_now = 100000; }
  using Calls = std::vector<std::string>;
  static UINT32 Now() { return g_now; }

  Ptr<FakeEngine> engine = New<FakeEngine>();
  CRenderThreadManager manager{static_cast<IZEMRenderer*>(engine.get()), engine.get(), 50, Now};
  Calls& calls = engine->calls;

  void PutPacket(UINT8 name) { manager.OnPacket(MakePacket({name}).get(), 0); }
  void PutLate(UINT8 name) { manager.AddLateWriteBuffer(MakeBuffer({name, 0, 0, 0, 1}).get()); }
  // A stream with a duration, non-linear or not.
  void Header(bool nonLinear, UINT32 duration) {
    const Ptr<IZEMValues> header = test::MakeValues();
    header->SetPropertyULONG32("Duration", duration);
    manager.OnHeader(header.get());
    manager.SetNonLinear(nonLinear);
    calls.clear();
  }
};

TEST_F(ManagerTest, PacketsWaitForTheTimeSyncAndGoInOrder) {
  PutPacket(1);
  PutPacket(2);
  PutLate(3);
  EXPECT_TRUE(calls.empty());
  EXPECT_EQ(manager.OnTimeSync(500), 9) << "the engine's answer";
  EXPECT_EQ(calls, Calls({"OnPacket 1 0", "OnPacket 2 0", "Late 3", "OnTimeSync 500"}));
  EXPECT_EQ(manager.GetPacketCount(), 0);
}

TEST_F(ManagerTest, SyncWithinTheBlockedSpanDoesNothingAndPacketsWait) {
  engine->burstMs = 100;
  manager.OnTimeSync(1000);
  calls.clear();
  PutPacket(1);
  g_now += 1;
  EXPECT_EQ(manager.OnTimeSync(1001), ZEM_OK);
  EXPECT_TRUE(calls.empty());
  EXPECT_EQ(manager.GetPacketCount(), 1);
  g_now += 98;  // 199 after the burst's start
  manager.OnTimeSync(1100);
  EXPECT_TRUE(calls.empty());
  g_now += 1;
  manager.OnTimeSync(1101);
  EXPECT_EQ(calls, Calls({"OnPacket 1 0", "OnTimeSync 1101"})) << "dropped syncs are not made up";
}

TEST_F(ManagerTest, LongBurstBlocksForOneSecondAtMost) {
  engine->burstMs = 900;
  manager.OnTimeSync(0);
  calls.clear();
  engine->burstMs = 0;
  g_now += 99;
  manager.OnTimeSync(1);
  EXPECT_TRUE(calls.empty());
  g_now += 1;
  manager.OnTimeSync(2);
  EXPECT_EQ(calls.size(), 1u) << "1000 ms after its start, not 1800";
}

TEST_F(ManagerTest, PercentageSetsTheSpan) {
  CRenderThreadManager at70(static_cast<IZEMRenderer*>(engine.get()), engine.get(), 70, Now);
  engine->burstMs = 35;
  at70.OnTimeSync(0);
  calls.clear();
  g_now += 14;
  at70.OnTimeSync(1);
  EXPECT_TRUE(calls.empty());
  g_now += 1;
  at70.OnTimeSync(2);
  EXPECT_EQ(calls.size(), 1u) << "50 ms after the start of a burst of 35";
}

TEST_F(ManagerTest, PercentageOfZeroCountsAsOne) {
  CRenderThreadManager at0(static_cast<IZEMRenderer*>(engine.get()), engine.get(), 0, Now);
  engine->burstMs = 5;
  at0.OnTimeSync(0);
  engine->burstMs = 0;
  calls.clear();
  g_now += 494;
  at0.OnTimeSync(0);
  EXPECT_TRUE(calls.empty());
  g_now += 1;
  at0.OnTimeSync(0);
  EXPECT_EQ(calls.size(), 1u);
}

TEST_F(ManagerTest, ClockMayWrap) {
  g_now = 0xFFFFFFF0;
  CRenderThreadManager wrapping(static_cast<IZEMRenderer*>(engine.get()), engine.get(), 50, Now);
  engine->burstMs = 0x20;
  wrapping.OnTimeSync(0);
  calls.clear();
  g_now += 0x1F;
  wrapping.OnTimeSync(0);
  EXPECT_TRUE(calls.empty());
  g_now += 1;
  wrapping.OnTimeSync(0);
  EXPECT_EQ(calls.size(), 1u);
}

TEST_F(ManagerTest, SyncInsideABurstIsIgnored) {
  engine->onSync = [this] { EXPECT_EQ(manager.OnTimeSync(600), ZEM_OK); };
  manager.OnTimeSync(500);
  EXPECT_EQ(calls, Calls({"OnTimeSync 500"}));
}

TEST_F(ManagerTest, FailedLateWriteIsOfferedAgainAndADoneOneReleasedOnce) {
  const Ptr<IZEMBuffer> done = MakeBuffer({1, 0, 0, 0, 1});
  const Ptr<IZEMBuffer> refused = MakeBuffer({2, 0, 0, 0, 1});
  manager.AddLateWriteBuffer(done.get());
  manager.AddLateWriteBuffer(refused.get());
  engine->refused = 2;
  manager.OnTimeSync(0);
  EXPECT_EQ(manager.GetLateWriteCount(), 1);
  done->AddRef();
  EXPECT_EQ(done->Release(), 1u);
  refused->AddRef();
  EXPECT_EQ(refused->Release(), 2u);
  calls.clear();
  manager.OnTimeSync(1);
  EXPECT_EQ(calls, Calls({"Late 2", "OnTimeSync 1"}));
  engine->refused = -1;
  manager.OnTimeSync(2);
  EXPECT_EQ(manager.GetLateWriteCount(), 0);
  refused->AddRef();
  EXPECT_EQ(refused->Release(), 1u);
}

TEST_F(ManagerTest, OldestLateWriteGoesWhenTooManyWait) {
  engine->refused = 1;
  for (int i = 0; i < 4096; ++i) PutLate(1);
  EXPECT_EQ(manager.GetLateWriteCount(), 4096);
  PutLate(9);
  EXPECT_EQ(manager.GetLateWriteCount(), 4096);
  manager.OnTimeSync(0);
  EXPECT_EQ(manager.GetLateWriteCount(), 4095);
}

TEST_F(ManagerTest, LateWriteNeedsItsPosition) {
  EXPECT_EQ(manager.AddLateWriteBuffer(nullptr), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(manager.AddLateWriteBuffer(MakeBuffer({1, 2, 3}).get()), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(manager.GetLateWriteCount(), 0);
}

TEST_F(ManagerTest, DestructionReleasesWhatWaits) {
  const Ptr<IZEMBuffer> late = MakeBuffer({1, 0, 0, 0, 1});
  const Ptr<IZEMPacket> packet = MakePacket({1});
  {
    CRenderThreadManager other(static_cast<IZEMRenderer*>(engine.get()), engine.get(), 50, Now);
    other.AddLateWriteBuffer(late.get());
    other.OnPacket(packet.get(), 0);
  }
  late->AddRef();
  EXPECT_EQ(late->Release(), 1u);
  packet->AddRef();
  EXPECT_EQ(packet->Release(), 1u);
}

TEST_F(ManagerTest, NegativeOffsetLargerThanTheTimeGivesStreamTimeZero) {
  manager.OnPacket(MakePacket({1}).get(), -500);
  manager.OnTimeSync(499);
  EXPECT_EQ(calls.back(), "OnTimeSync 0");
  manager.OnTimeSync(500);
  EXPECT_EQ(calls.back(), "OnTimeSync 0");
  manager.OnTimeSync(700);
  EXPECT_EQ(calls.back(), "OnTimeSync 200");
  EXPECT_EQ(manager.OnPacket(MakePacket({1}).get(), 30), ZEM_OK);
  manager.OnTimeSync(700);
  EXPECT_EQ(calls.back(), "OnTimeSync 730");
}

TEST_F(ManagerTest, TimeSyncSetsTheStreamTimeRunning) {
  manager.OnTimeSync(1234);
  EXPECT_TRUE(manager.IsStreamTimeRunning());
  EXPECT_EQ(manager.GetStreamTime(), 1234u);
  g_now += 5000;
  EXPECT_EQ(manager.GetStreamTime(), 1234u) << "it moves with time syncs alone";
}

TEST_F(ManagerTest, SeekAndPauseStopTheStreamTimeAtTheirs) {
  manager.OnTimeSync(100);
  EXPECT_EQ(manager.OnPreSeek(100, 900), 7);
  EXPECT_FALSE(manager.IsStreamTimeRunning());
  EXPECT_EQ(manager.GetStreamTime(), 900u);
  manager.OnTimeSync(100);
  manager.OnPostSeek(100, 800);
  EXPECT_EQ(manager.GetStreamTime(), 800u);
  manager.OnTimeSync(100);
  manager.OnPause(150);
  EXPECT_FALSE(manager.IsStreamTimeRunning());
  EXPECT_EQ(manager.GetStreamTime(), 150u);
  EXPECT_EQ(calls.back(), "OnPause 150");
}

TEST_F(ManagerTest, BufferingStopsTheStreamTimeBelowAHundredPercent) {
  manager.OnTimeSync(100);
  manager.OnBuffering(1, 100);
  EXPECT_TRUE(manager.IsStreamTimeRunning());
  manager.OnBuffering(1, 99);
  EXPECT_FALSE(manager.IsStreamTimeRunning());
  EXPECT_EQ(manager.GetStreamTime(), 100u);
}

TEST_F(ManagerTest, EndOfALinearStreamStopsTheTimeAtItsDuration) {
  Header(false, 5000);
  manager.OnTimeSync(100);
  manager.EndStream();
  EXPECT_FALSE(manager.IsStreamTimeRunning());
  EXPECT_EQ(manager.GetStreamTime(), 5000u);
}

TEST_F(ManagerTest, EndOfANonLinearStreamLeavesTheTimeRunningBehindItsDuration) {
  Header(true, 5000);
  manager.OnTimeSync(4999);
  manager.EndStream();
  EXPECT_FALSE(manager.IsStreamTimeRunning());
  EXPECT_EQ(manager.GetStreamTime(), 4999u);
  manager.OnTimeSync(5000);
  manager.EndStream();
  EXPECT_TRUE(manager.IsStreamTimeRunning());
}

TEST_F(ManagerTest, HeaderDropsWhatWaitsOfAnEarlierStream) {
  PutPacket(1);
  PutLate(2);
  Header(true, 5000);
  EXPECT_EQ(manager.GetPacketCount(), 0);
  EXPECT_EQ(manager.GetLateWriteCount(), 0);
  PutPacket(3);
  manager.OnTimeSync(0);
  EXPECT_EQ(calls, Calls({"OnPacket 3 0", "OnTimeSync 0"}));
}

TEST_F(ManagerTest, MissingDurationIsEndless) {
  manager.OnHeader(test::MakeValues().get());
  manager.OnTimeSync(5);
  manager.EndStream();
  EXPECT_EQ(manager.GetStreamTime(), 0xFFFFFFFFu);
  EXPECT_EQ(manager.OnHeader(nullptr), 7) << "the engine decides";
}

TEST_F(ManagerTest, DetachedSiteStopsTheTimeOfANonLinearStreamOnly) {
  manager.OnTimeSync(100);
  calls.clear();
  EXPECT_EQ(manager.DetachSite(), ZEM_OK);
  EXPECT_TRUE(manager.IsStreamTimeRunning());
  manager.SetNonLinear(true);
  manager.DetachSite();
  EXPECT_FALSE(manager.IsStreamTimeRunning());
  EXPECT_TRUE(calls.empty()) << "not passed on";
}

TEST_F(ManagerTest, PositionDrivesAStoppedNonLinearMovie) {
  Header(true, 5000);
  EXPECT_EQ(manager.OnPosLength(10, 5000), ZEM_OK);
  EXPECT_TRUE(calls.empty()) << "no time sync has come";
  manager.OnTimeSync(20);
  manager.OnPosLength(30, 5000);
  EXPECT_EQ(calls, Calls({"OnTimeSync 20"})) << "the time runs";
  manager.OnPause(40);
  manager.OnPosLength(50, 5000);
  EXPECT_EQ(calls.back(), "OnTimeSync 50");
  manager.OnPosLength(60, 5000);
  EXPECT_EQ(calls.back(), "OnTimeSync 50") << "one report drives one burst";
  manager.SetNonLinear(false);
  manager.OnPause(70);
  manager.OnPosLength(80, 5000);
  EXPECT_EQ(calls.back(), "OnPause 70");
}

TEST_F(ManagerTest, PassesAllElseOn) {
  const char** mimeTypes = nullptr;
  UINT32 number = 0;
  IZEMBuffer* info = nullptr;
  EXPECT_EQ(manager.GetRendererInfo(mimeTypes, number), 7);
  EXPECT_EQ(number, 100u);
  EXPECT_EQ(manager.StartStream(nullptr, nullptr), 7);
  EXPECT_EQ(manager.OnBegin(5), 7);
  EXPECT_EQ(manager.GetDisplayType(number, info), 7);
  EXPECT_EQ(number, 7u);
  EXPECT_EQ(manager.OnEndofPackets(), 7);
  _QKxEvent event = {};
  event.event = 6;
  EXPECT_EQ(manager.HandleEvent(&event), 5);
  EXPECT_EQ(engine->siteUser->events, std::vector<UINT32>({6}));
  EXPECT_EQ(calls, Calls({"GetRendererInfo", "StartStream", "OnBegin 5", "GetDisplayType",
                          "OnEndofPackets"}));
}

TEST_F(ManagerTest, WithoutEngineEachCallSaysSo) {
  engine->HideRenderer();
  CRenderThreadManager bare(static_cast<IZEMRenderer*>(engine.get()), engine.get(), 50, Now);
  const char** mimeTypes = nullptr;
  UINT32 number = 0;
  IZEMBuffer* info = nullptr;
  _QKxEvent event = {};
  EXPECT_EQ(bare.GetRendererInfo(mimeTypes, number), ZEM_UNEXPECTED);
  EXPECT_EQ(bare.StartStream(nullptr, nullptr), ZEM_UNEXPECTED);
  EXPECT_EQ(bare.EndStream(), ZEM_UNEXPECTED);
  EXPECT_EQ(bare.OnHeader(nullptr), ZEM_UNEXPECTED);
  EXPECT_EQ(bare.OnTimeSync(0), ZEM_UNEXPECTED);
  EXPECT_EQ(bare.OnPause(0), ZEM_UNEXPECTED);
  EXPECT_EQ(bare.OnBegin(0), ZEM_UNEXPECTED);
  EXPECT_EQ(bare.OnBuffering(0, 0), ZEM_UNEXPECTED);
  EXPECT_EQ(bare.GetDisplayType(number, info), ZEM_UNEXPECTED);
  EXPECT_EQ(bare.OnEndofPackets(), ZEM_UNEXPECTED);
  EXPECT_EQ(bare.HandleEvent(&event), ZEM_UNEXPECTED);
  EXPECT_EQ(bare.OnPreSeek(1, 2), ZEM_UNEXPECTED);
  EXPECT_EQ(bare.GetStreamTime(), 2u) << "a seek stops the time even so";
  EXPECT_EQ(bare.OnPostSeek(2, 3), ZEM_UNEXPECTED);
  EXPECT_EQ(bare.GetStreamTime(), 3u);
}

TEST_F(ManagerTest, HoldsTheEngineUntilDestruction) {
  const UINT32 before = engine->refs();
  {
    CRenderThreadManager other(static_cast<IZEMRenderer*>(engine.get()), engine.get(), 50, Now);
    EXPECT_EQ(engine->refs(), before + 1);
  }
  EXPECT_EQ(engine->refs(), before);
}

TEST_F(ManagerTest, NullPacketIsRefused) {
  EXPECT_EQ(manager.OnPacket(nullptr, 5), ZEM_BAD_ARGUMENT);
}

TEST_F(ManagerTest, WhatWaitsIsLimited) {
  const Ptr<IZEMPacket> big = MakePacket(Bytes(64 << 20));
  int taken = 0;
  while (taken < 100 && manager.OnPacket(big.get(), 0) == ZEM_OK) ++taken;
  EXPECT_EQ(taken, 15) << "a gigabyte, with something for each packet itself";
  manager.OnTimeSync(0);
  EXPECT_EQ(manager.OnPacket(big.get(), 0), ZEM_OK);
}

}  // namespace
}  // namespace vexel
