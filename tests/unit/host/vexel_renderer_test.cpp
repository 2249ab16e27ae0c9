#include "host/vexel_renderer.h"

#include <gtest/gtest.h>

#include "host/session.h"

namespace vexel {
namespace {

using test::Bytes;
using test::FramedFile;
using test::FramesOf;
using test::Ptr;
using test::Query;
using test::Session;
using test::SlidingBox;
using Lines = std::vector<std::string>;

struct RendererTest : testing::Test, Session {
  RendererTest() : alive(test::g_alive) {}
  // Lines of the log from the shell, those of the engine left out.
  Lines ShellLines() const {
    Lines lines;
    for (const std::string& line : host.log->lines) {
      if (line.find("Header Info") == std::string::npos &&
          line.find("OnPacket():") == std::string::npos) {
        lines.push_back(line);
      }
    }
    return lines;
  }
  size_t CountOf(const std::string& line) const {
    return static_cast<size_t>(std::count(host.log->lines.begin(), host.log->lines.end(), line));
  }
  int alive;
  FramedFile file = FramesOf(SlidingBox(5));
};

TEST_F(RendererTest, CreateInstanceNeedsAPlaceForTheResult) {
  EXPECT_EQ(ZEMCreateInstance(nullptr), ZEM_BAD_ARGUMENT);
}

TEST_F(RendererTest, AnswersForItsInterfaces) {
  EXPECT_TRUE(plugin);
  EXPECT_TRUE(renderer);
  EXPECT_TRUE(siteUser);
  EXPECT_EQ(static_cast<IUnknown*>(plugin.get()), unknown.get()) << "one identity";
  EXPECT_EQ(Query<IUnknown>(renderer.get(), IID_IUnknown).get(), unknown.get());
  void* out = this;
  EXPECT_EQ(unknown->QueryInterface(IID_IZEMPlayer, &out), ZEM_NO_INTERFACE);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(unknown->QueryInterface(IID_IZEMSiteUserSupplier, &out), ZEM_UNEXPECTED);
  EXPECT_EQ(unknown->QueryInterface(IID_IUnknown, nullptr), ZEM_BAD_ARGUMENT);
}

TEST_F(RendererTest, TellsWhatItIsBeforeAnythingElse) {
  INT32 loadMultiple = 0;
  const char *description = nullptr, *copyright = nullptr, *moreInfo = nullptr;
  UINT32 version = 0;
  EXPECT_EQ(plugin->GetPluginInfo(loadMultiple, description, copyright, moreInfo, version), ZEM_OK);
  EXPECT_EQ(loadMultiple, 1);
  EXPECT_EQ(version, 0x6000747Eu);
  for (const char* text : {description, copyright, moreInfo}) EXPECT_NE(text, nullptr);
  EXPECT_EQ(siteUser->NeedsWindowedSites(), 0);
}

TEST_F(RendererTest, SaysSoBeforeInitPlugin) {
  const char** mimeTypes = nullptr;
  UINT32 number = 0;
  IZEMBuffer* info = nullptr;
  _QKxEvent event = {};
  event.event = 6;
  EXPECT_EQ(renderer->GetRendererInfo(mimeTypes, number), ZEM_UNEXPECTED);
  EXPECT_EQ(Start(), ZEM_UNEXPECTED);
  EXPECT_EQ(renderer->EndStream(), ZEM_UNEXPECTED);
  EXPECT_EQ(renderer->OnHeader(nullptr), ZEM_UNEXPECTED);
  EXPECT_EQ(Put({1}), ZEM_UNEXPECTED);
  EXPECT_EQ(renderer->OnTimeSync(0), ZEM_UNEXPECTED);
  EXPECT_EQ(renderer->OnPreSeek(0, 0), ZEM_UNEXPECTED);
  EXPECT_EQ(renderer->OnPostSeek(0, 0), ZEM_UNEXPECTED);
  EXPECT_EQ(renderer->OnPause(0), ZEM_UNEXPECTED);
  EXPECT_EQ(renderer->OnBegin(0), ZEM_UNEXPECTED);
  EXPECT_EQ(renderer->OnBuffering(0, 0), ZEM_UNEXPECTED);
  EXPECT_EQ(renderer->GetDisplayType(number, info), ZEM_UNEXPECTED);
  EXPECT_EQ(renderer->OnEndofPackets(), ZEM_UNEXPECTED);
  EXPECT_EQ(siteUser->AttachSite(host.site.get()), ZEM_UNEXPECTED);
  EXPECT_EQ(siteUser->DetachSite(), ZEM_UNEXPECTED);
  EXPECT_EQ(siteUser->HandleEvent(&event), ZEM_UNEXPECTED);
}

TEST_F(RendererTest, InitPluginNeedsAContextWithAFactory) {
  EXPECT_EQ(plugin->InitPlugin(nullptr), ZEM_BAD_ARGUMENT);
  host.Without(IID_IZEMCommonClassFactory);
  EXPECT_EQ(Init(), ZEM_NO_INTERFACE);
  EXPECT_EQ(Start(), ZEM_UNEXPECTED);
}

TEST_F(RendererTest, InitPluginTakesWhatTheContextHas) {
  for (const ZEMID* id :
       {&IID_IZEMErrorMessages, &IID_IZEMPreferences, &IID_IZEMScheduler, &IID_IZEMContextMenu,
        &IID_IZEMHyperNavigate, &IID_IZEMUpgradeCollection}) {
    host.Without(*id);
  }
  EXPECT_EQ(Init(), ZEM_OK) << "all but the factory is optional";
  OpenFile(file);
  Put(file.Cut(file.bounds[0], file.bounds.back()));
  Sync(0);
  EXPECT_EQ(Pixel(5, 5), 0xC80000u);
  EXPECT_TRUE(host.log->lines.empty());
}

TEST_F(RendererTest, TellsItsTypesAndHowOftenItWantsTheTime) {
  Init();
  const char** mimeTypes = nullptr;
  UINT32 granularity = 0;
  ASSERT_EQ(renderer->GetRendererInfo(mimeTypes, granularity), ZEM_OK);
  EXPECT_STREQ(mimeTypes[0], "application/x-brightarc-vexel");
  EXPECT_STREQ(mimeTypes[1], "application/x-brightarc-vexel2");
  EXPECT_EQ(mimeTypes[2], nullptr);
  EXPECT_EQ(granularity, 100u);
  UINT32 type = 0;
  IZEMBuffer* info = reinterpret_cast<IZEMBuffer*>(this);
  EXPECT_EQ(renderer->GetDisplayType(type, info), ZEM_OK);
  EXPECT_EQ(type, 7u);
  EXPECT_EQ(info, reinterpret_cast<IZEMBuffer*>(this)) << "left alone";
}

TEST_F(RendererTest, LogsEachCallToTheLetter) {
  OpenFile(file);
  Put(file.Cut(file.bounds[0], file.bounds[1]), 4000000000);
  renderer->OnTimeSync(100);
  renderer->OnPreSeek(100, 4000000000);
  renderer->OnPostSeek(200, 300);
  renderer->OnPause(400);
  renderer->OnBegin(500);
  renderer->OnBuffering(2, 99);
  renderer->OnEndofPackets();
  host.player->sinks[0]->OnStop();
  renderer->OnPacket(test::MakeLostPacket().get(), -7);
  renderer->EndStream();
  Detach();
  EXPECT_EQ(
      ShellLines(),
      Lines({"14 StartStream()", "14 OnHeader()", "14 AttachSite()",
             "15 OnPacket(,0) pPacket->GetTime()=4000000000", "15 OnTimeSync(100)",
             "14 OnPreSeek(100,4000000000)", "14 OnPostSeek(200,300)", "14 OnPause(400)",
             "14 OnBegin(500)", "14 OnBuffering(2,99)", "14 OnEndofPackets()", "14 CAS:OnStop()",
             "15 OnPacket(,-7) pPacket->GetTime()=0", "14 EndStream()", "14 DetachSite()"}));
  EXPECT_EQ(host.log->odd, 0);
}

TEST_F(RendererTest, StartStreamMakesItselfTheUserOfItsSites) {
  Init();
  ASSERT_EQ(Start(), ZEM_OK);
  const auto supplier = Query<IZEMSiteUserSupplier>(unknown.get(), IID_IZEMSiteUserSupplier);
  ASSERT_TRUE(supplier);
  Ptr<IZEMSiteUser> user;
  EXPECT_EQ(supplier->CreateSiteUser(user.Out()), ZEM_OK);
  EXPECT_EQ(user.get(), siteUser.get());
  EXPECT_EQ(host.player->sinks.size(), 1u);
}

TEST_F(RendererTest, StartStreamPassesFailuresOn) {
  Init();
  host.factory->failAfter = 0;
  EXPECT_EQ(Start(), ZEM_OUT_OF_MEMORY) << "no supplier";
  host.factory->failAfter = -1;
  EXPECT_EQ(renderer->StartStream(nullptr, host.player.get()), ZEM_BAD_ARGUMENT);
  host.player->addResult = ZEM_FAILED;
  EXPECT_EQ(Start(), ZEM_FAILED);
  host.player->addResult = ZEM_OK;
  EXPECT_EQ(Start(), ZEM_OK);
  EXPECT_EQ(host.player->sinks.size(), 1u);
}

TEST_F(RendererTest, StreamIsNotReplacedFromInsideACall) {
  Init();
  INT32 start = ZEM_OK, header = ZEM_OK;
  const Ptr<IZEMValues> values = test::MakeValues();
  test::g_inside = [&] {
    // Behind the report to the log, of which the inner calls make more.
    test::g_inside = nullptr;
    start = Start();
    header = renderer->OnHeader(values.get());
  };
  EXPECT_EQ(Start(), ZEM_OK);
  EXPECT_EQ(start, ZEM_UNEXPECTED);
  EXPECT_EQ(header, ZEM_UNEXPECTED);
  EXPECT_EQ(CountOf("14 StartStream()"), 2u);
}

TEST_F(RendererTest, SecondStartStreamListensOnce) {
  Init();
  Start();
  EXPECT_EQ(Start(), ZEM_OK);
  EXPECT_EQ(host.player->sinks.size(), 1u);
}

TEST_F(RendererTest, AsksTheSiteForTheMoviesSize) {
  OpenFile(file);
  ASSERT_EQ(host.site->wishes.size(), 1u);
  EXPECT_EQ(host.site->wishes[0].width, 100);
  EXPECT_EQ(host.site->wishes[0].height, 80);
  EXPECT_EQ(siteUser->AttachSite(host.site.get()), ZEM_UNEXPECTED) << "one is attached";
  Detach();
  EXPECT_EQ(siteUser->AttachSite(nullptr), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(Attach(), ZEM_OK);
}

TEST_F(RendererTest, PlaysANonLinearMovieOntoTheSurface) {
  OpenFile(file);
  _QKxEvent event = {};
  EXPECT_EQ(host.site->Draw(event), ZEM_OK);
  EXPECT_EQ(event.handled, 0) << "nothing has been drawn yet";
  Put(file.Cut(file.bounds[0], file.bounds.back()));
  EXPECT_EQ(host.site->redraws, 0) << "packets only wait";
  Sync(0);
  EXPECT_EQ(host.site->redraws, 2) << "two redraws in a row";
  EXPECT_EQ(host.site->surface->copies, 2);
  EXPECT_EQ(host.site->surface->lastDest.right, 100);
  EXPECT_EQ(host.site->surface->lastSource.bottom, 80);
  EXPECT_EQ(Pixel(5, 5), 0xC80000u);
  EXPECT_EQ(Pixel(15, 5), 0xFFFFFFu);
  EXPECT_EQ(host.site->Draw(event), ZEM_OK);
  EXPECT_EQ(event.handled, 1);
  EXPECT_EQ(event.result, 0u);
}

TEST_F(RendererTest, DrawingEventNeedsSurfaceAndSite) {
  OpenFile(file);
  Put(file.Cut(file.bounds[0], file.bounds.back()));
  Sync(0);
  _QKxEvent event = {ZEM_EVENT_DRAW, nullptr, nullptr, nullptr, 5, 5};
  EXPECT_EQ(siteUser->HandleEvent(&event), ZEM_OK);
  EXPECT_EQ(event.handled, 0);
  Detach();
  event.param1 = host.site->surface.get();
  EXPECT_EQ(siteUser->HandleEvent(&event), ZEM_OK);
  EXPECT_EQ(event.handled, 0);
}

TEST_F(RendererTest, EventsAreClearedFirst) {
  Init();
  _QKxEvent event = {ZEM_EVENT_X_EXPOSE, nullptr, nullptr, nullptr, 5, 6};
  EXPECT_EQ(siteUser->HandleEvent(&event), ZEM_OK);
  EXPECT_EQ(event.result, 0u);
  EXPECT_EQ(event.handled, 0);
  event = {777, nullptr, nullptr, nullptr, 5, 6};
  EXPECT_EQ(siteUser->HandleEvent(&event), ZEM_OK);
  EXPECT_EQ(event.handled, 0);
  EXPECT_EQ(siteUser->HandleEvent(nullptr), ZEM_OK);
}

TEST_F(RendererTest, PictureFollowsTheSite) {
  OpenFile(file);
  Put(file.Cut(file.bounds[0], file.bounds.back()));
  Sync(0);
  host.site->size = {200, 160};
  _QKxEvent event = {};
  host.site->Draw(event);
  EXPECT_EQ(host.site->surface->info.width, 200);
  EXPECT_EQ(host.site->surface->lastDest.right, 200);
  EXPECT_EQ(Pixel(15, 15), 0xC80000u) << "twice as big";
  EXPECT_EQ(Pixel(25, 15), 0xFFFFFFu);
}

TEST_F(RendererTest, PictureEndsAtTwoThousandPixels) {
  OpenFile(file);
  Put(file.Cut(file.bounds[0], file.bounds.back()));
  Sync(0);
  struct Case {
    _QKxSize site, picture;
  };
  for (const Case& c : {Case{{4000, 1000}, {2000, 500}}, Case{{2000, 2000}, {2000, 2000}},
                        Case{{2001, 10}, {2000, 9}}}) {
    host.site->size = c.site;
    _QKxEvent event = {};
    host.site->Draw(event);
    EXPECT_EQ(host.site->surface->info.width, c.picture.width);
    EXPECT_EQ(host.site->surface->info.height, c.picture.height);
    EXPECT_EQ(host.site->surface->lastDest.right, c.site.width) << "the surface stretches";
    EXPECT_EQ(host.site->surface->lastSource.right, c.picture.width);
  }
}

TEST_F(RendererTest, HugeMoviesAreDrawnSmallerFromTheStart) {
  file = FramesOf(SlidingBox(2, 3000, 300));
  OpenFile(file);
  EXPECT_EQ(host.site->wishes[0].width, 3000) << "the wish is for the movie's own size";
  Put(file.Cut(file.bounds[0], file.bounds.back()));
  Sync(0);
  EXPECT_EQ(host.site->surface->info.width, 2000);
  EXPECT_EQ(host.site->surface->info.height, 200);
}

TEST_F(RendererTest, EmptySiteDrawsNothing) {
  OpenFile(file);
  Put(file.Cut(file.bounds[0], file.bounds.back()));
  Sync(0);
  const int copies = host.site->surface->copies;
  for (const _QKxSize size : {_QKxSize{0, 0}, _QKxSize{-5, 100}, _QKxSize{100, 0}}) {
    host.site->size = size;
    _QKxEvent event = {};
    EXPECT_EQ(host.site->Draw(event), ZEM_OK);
  }
  EXPECT_EQ(host.site->surface->copies, copies);
}

TEST_F(RendererTest, SiteMayDetachInsideARedraw) {
  OpenFile(file);
  Put(file.Cut(file.bounds[0], file.bounds.back()));
  host.site->onRedraw = [this] {
    host.site->onRedraw = [] {};
    Detach();
  };
  Sync(0);
  EXPECT_EQ(host.site->redraws, 1);
  EXPECT_EQ(host.site->refs(), 1u);
}

TEST_F(RendererTest, ClientMayLetGoInsideARedraw) {
  OpenFile(file);
  Put(file.Cut(file.bounds[0], file.bounds.back()));
  IZEMRenderer* last = renderer.get();
  host.site->onRedraw = [this] {
    host.site->onRedraw = [] {};
    LetGo();
    unknown = {};
  };
  host.site->user = nullptr;
  last->OnTimeSync(0);
  EXPECT_EQ(host.site->refs(), 1u) << "all is gone when the call returns";
  EXPECT_EQ(host.player->refs(), 1u);
  EXPECT_EQ(host.context->refs(), 1u);
}

TEST_F(RendererTest, PositionReportsDriveAMovieThatIsPaused) {
  OpenFile(file);
  Sync(0);
  Put(file.Cut(file.bounds[0], file.bounds.back()));
  renderer->OnBuffering(1, 50);
  const auto sink = host.player->sinks.at(0);
  const int before = host.site->redraws;
  Wait();
  sink->OnPosLength(0, 500);
  EXPECT_EQ(host.site->redraws, before + 2);
  EXPECT_EQ(CountOf("14 CAS:OnPosLength(0,500)"), 1u);
}

TEST_F(RendererTest, LostPacketsAreAskedForOverTheWayBack) {
  OpenFile(file);
  Put(file.Cut(file.bounds[2], file.bounds[3]));
  ASSERT_EQ(host.backChannel->sent.size(), 1u);
  const Bytes request = test::BytesOf(host.backChannel->sent[0].get());
  EXPECT_EQ(request.size(), 12u);
  EXPECT_EQ(request[3], file.bounds[0]);
  EXPECT_EQ(request[7], file.bounds[2] - file.bounds[0]);
  renderer->EndStream();
  Put(file.Cut(file.bounds[0], file.bounds[1]));
  EXPECT_EQ(host.backChannel->sent.size(), 1u) << "nobody is there behind the end";
}

TEST_F(RendererTest, NewHeaderBeginsAnew) {
  OpenFile(file);
  Put(file.Cut(file.bounds[0], file.bounds[2]));
  renderer->EndStream();
  Start();
  EXPECT_EQ(Header(true, Bytes(file.bytes.begin(), file.bytes.begin() + file.bounds[0])), ZEM_OK);
  host.backChannel->sent.clear();
  Put(file.Cut(file.bounds[0], file.bounds.back()));
  EXPECT_TRUE(host.backChannel->sent.empty()) << "positions stand at the head again";
  Sync(0);
  EXPECT_EQ(Pixel(5, 5), 0xC80000u);
}

TEST_F(RendererTest, FullSessionLeavesNothingBehind) {
  {
    Session session;
    session.OpenFile(file);
    session.Put(file.Cut(file.bounds[0], file.bounds.back()));
    session.Sync(0);
    session.renderer->OnEndofPackets();
    session.Sync(20000);
    EXPECT_FALSE(session.host.scheduler->timers.empty()) << "a clock of its own runs on";
    session.host.scheduler->Advance(1000);
    session.renderer->EndStream();
    session.Detach();
    EXPECT_TRUE(session.host.scheduler->timers.empty());
    EXPECT_TRUE(session.host.player->sinks.empty());
    EXPECT_EQ(session.host.site->refs(), 1u);
    session.LetGo();
    EXPECT_EQ(session.unknown->AddRef(), 2u) << "the client holds the last reference";
    session.unknown->Release();
  }
  EXPECT_EQ(test::g_alive, alive);
}

TEST_F(RendererTest, ReleaseDoesWhatTheClientLeftUndone) {
  {
    Session session;
    session.OpenFile(file);
    session.Put(file.Cut(file.bounds[0], file.bounds.back()));
    session.Sync(0);
    session.Sync(20000);
    session.host.site->user = nullptr;
    session.LetGo();
    session.unknown = {};
    EXPECT_TRUE(session.host.player->sinks.empty());
    EXPECT_TRUE(session.host.scheduler->timers.empty());
    EXPECT_EQ(session.host.site->refs(), 1u);
    EXPECT_EQ(session.host.log->lines.end()[-2], "14 EndStream()");
    EXPECT_EQ(session.host.log->lines.end()[-1], "14 DetachSite()");
  }
  EXPECT_EQ(test::g_alive, alive);
}

TEST_F(RendererTest, ReleaseBeforeAStreamIsSilent) {
  Init();
  LetGo();
  unknown = {};
  EXPECT_TRUE(host.log->lines.empty());
  EXPECT_EQ(host.context->refs(), 1u);
}

TEST_F(RendererTest, InitPluginTwiceBeginsAnew) {
  OpenFile(file);
  const auto sink = host.player->sinks.at(0);
  EXPECT_EQ(Init(), ZEM_OK);
  EXPECT_TRUE(host.player->sinks.empty());
  EXPECT_EQ(host.site->refs(), 1u);
  EXPECT_EQ(sink->OnPosLength(1, 2), ZEM_OK) << "it knows nobody any more";
  OpenFile(file);
  Put(file.Cut(file.bounds[0], file.bounds.back()));
  Sync(0);
  EXPECT_EQ(Pixel(5, 5), 0xC80000u);
}

TEST_F(RendererTest, TwoInstancesPlaySideBySide) {
  Session other;
  const FramedFile wide = FramesOf(SlidingBox(5, 40, 30));
  OpenFile(file);
  other.OpenFile(wide);
  for (size_t k = 0; k < 5; ++k) {
    Put(file.Cut(file.bounds[k], file.bounds[k + 1]));
    other.Put(wide.Cut(wide.bounds[k], wide.bounds[k + 1]));
  }
  Sync(0);
  EXPECT_EQ(host.site->surface->copies, 2);
  EXPECT_EQ(other.host.site->surface->copies, 0);
  other.Sync(0);
  EXPECT_EQ(Pixel(5, 5), 0xC80000u);
  EXPECT_EQ(other.Pixel(5, 5), 0xC80000u);
  EXPECT_EQ(other.host.site->surface->info.width, 40);
  LetGo();
  host.site->user = nullptr;
  unknown = {};
  other.host.site->size = {80, 60};
  _QKxEvent event = {};
  other.host.site->Draw(event);
  EXPECT_EQ(other.Pixel(15, 15), 0xC80000u) << "one goes, the other stays";
}

}  // namespace
}  // namespace vexel
