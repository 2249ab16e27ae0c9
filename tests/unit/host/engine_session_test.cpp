// The engine behind its shell, and what it shows beside what a player alone
// shows of the same movie.
#include <gtest/gtest.h>

#include "base/tick_count.h"
#include "engine_fixture.h"
#include "host/session.h"
#include "movie/tags.h"
#include "support/random_movie.h"
#include "support/test_player.h"

namespace vexel::test {
namespace {

// --- Re-entrance ---

class EngineSession : public ::testing::Test {
 protected:
  void Play(const Bytes& movie) {
    session.OpenFile(FramesOf(movie));
    const FramedFile file = FramesOf(movie);
    session.Put(file.Cut(file.bounds[0], file.bounds.back()));
  }
  INT32 Draw() { return host.site->Draw(event); }

  Session session;
  FakeHost& host = session.host;
  _QKxEvent event = {};
};

TEST_F(EngineSession, SecondSiteIsUnexpected) {
  Play(SlidingBox(3));
  const Ptr<FakeSite> other = New<FakeSite>();
  EXPECT_EQ(session.siteUser->AttachSite(other.get()), ZEM_UNEXPECTED);
  session.Detach();
  EXPECT_EQ(session.siteUser->AttachSite(other.get()), ZEM_OK);
}

TEST_F(EngineSession, NothingIsDrawnBeforeTheFirstUpdate) {
  Play(SlidingBox(3));
  EXPECT_EQ(Draw(), ZEM_OK);
  EXPECT_EQ(event.handled, 0);
  session.renderer->OnTimeSync(0);
  EXPECT_EQ(Draw(), ZEM_OK);
  EXPECT_EQ(event.handled, 1);
}

TEST_F(EngineSession, SiteMayDrawInsideItsSetSize) {
  int draws = 0;
  host.site->onSize = [&] {
    ++draws;
    host.site->user = session.siteUser.get();
    Draw();
  };
  Play(SlidingBox(3));
  EXPECT_EQ(draws, 1);
  EXPECT_EQ(event.handled, 0);
  session.renderer->OnTimeSync(0);
  session.Detach();
  // Now there is something to show.
  session.Attach();
  EXPECT_EQ(draws, 2);
  EXPECT_EQ(event.handled, 1);
}

TEST_F(EngineSession, SiteMayDetachInsideItsSetSize) {
  host.site->onSize = [&] { session.siteUser->DetachSite(); };
  Play(SlidingBox(3));
  session.renderer->OnTimeSync(0);
  EXPECT_EQ(host.site->redraws, 0);
}

TEST_F(EngineSession, PluginIsNotInitialisedAgainInsideARedraw) {
  Play(SlidingBox(3));
  INT32 result = ZEM_OK;
  host.site->onRedraw = [&] {
    result = session.Init();
    Draw();
  };
  session.renderer->OnTimeSync(0);
  EXPECT_EQ(result, ZEM_UNEXPECTED);
  EXPECT_EQ(event.handled, 1);
  EXPECT_EQ(session.Init(), ZEM_OK);
}

TEST_F(EngineSession, ClientMayLetGoInsideARedrawThatAPositionReportLedTo) {
  Play(SlidingBox(3));
  session.renderer->OnTimeSync(0);
  session.renderer->OnPause(0);
  host.site->onRedraw = [&] {
    host.site->user = nullptr;
    session.LetGo();
    session.unknown = {};
  };
  const Ptr<IZEMClientAdviseSink> sink = host.player->sinks.front();
  // The throttle may still hold the first ones back.
  for (UINT32 i = 0; i < 2000 && session.unknown; ++i) sink->OnPosLength(1000 + i * 100, 0);
  EXPECT_TRUE(host.player->sinks.empty() || session.unknown);
}

TEST_F(EngineSession, SiteThatNeverRestsIsDrawnAllTheSame) {
  Play(SlidingBox(3));
  host.site->onRedraw = [&] {
    host.site->size.width = 50 + (host.site->size.width + 1) % 50;
    Draw();
  };
  session.renderer->OnTimeSync(0);
  EXPECT_GE(host.site->redraws, 2);
  EXPECT_LE(host.site->redraws, 64);
}

TEST_F(EngineSession, SecondHeaderChangesThePicture) {
  Play(SlidingBox(3));
  session.renderer->OnTimeSync(0);
  const Bytes other = SlidingBox(3, 300, 200);
  const FramedFile file = FramesOf(other);
  session.Header(true, Bytes(other.begin(), other.begin() + file.bounds[0]));
  session.Put(file.Cut(file.bounds[0], file.bounds.back()));
  session.renderer->OnTimeSync(0);
  Draw();
  const FakeSurface& surface = *host.site->surface;
  EXPECT_EQ(surface.info.width, surface.lastSource.right);
  EXPECT_EQ(surface.info.height, surface.lastSource.bottom);
  EXPECT_EQ(surface.lastDest.right, 100);
}

TEST_F(EngineSession, ActionsMayOpenAnotherPresentation) {
  author::MovieWriter movie(100, 80);
  author::ActionBuilder actions;
  actions.GetURL("http://a/b.vxf", "_kest");
  movie.FrameEnd().FrameActions(actions).FrameEnd().End();
  Play(movie.Finish());
  session.renderer->OnTimeSync(0);
  EXPECT_EQ(host.player->calls, (std::vector<std::string>{"OpenURL http://a/b.vxf", "Begin"}));
}

// --- Pictures ---

class Pictures : public EngineFixture, public ::testing::WithParamInterface<UINT32> {
 protected:
  ~Pictures() override { SetTickClock(GetTickCount); }
  // The picture on the site is that of the player's buffer.
  void Compare(const TestPlayer& player, const char* when, int at) {
    ASSERT_EQ(damage.m_lWidth, player.bits.width);
    ASSERT_EQ(damage.m_lHeight, player.bits.height);
    const size_t bytes =
        static_cast<size_t>(player.bits.rowBytes) * static_cast<size_t>(player.bits.height);
    ASSERT_EQ(memcmp(damage.UseDoubleBuffer(), player.bits.baseAddr, bytes), 0)
        << "seed " << GetParam() << " " << when << " " << at;
  }
  static _QKxSize SizeOf(const Bytes& movie) {
    TestPlayer player(0, 0);
    player.PushDataBuf(movie.data(), static_cast<int32_t>(movie.size()));
    return {(player.frame.xmax - player.frame.xmin) / 20,
            (player.frame.ymax - player.frame.ymin) / 20};
  }
};

TEST_P(Pictures, OfANonLinearStreamAreThoseOfTheFile) {
  const Bytes movie = author::RandomMovie(GetParam());
  const _QKxSize size = SizeOf(movie);
  TestPlayer player(size.width, size.height);
  player.Push(movie);
  player.loop = false;
  Play(movie);
  for (UINT32 time = 0; time < 1500; time += 100) {
    engine->OnTimeSync(time);
    player.DoPlay(time);
    player.display.Update();
    Compare(player, "time", static_cast<int>(time));
  }
}

TEST_P(Pictures, OfALinearStreamAreThoseOfTheFile) {
  const Bytes movie = author::RandomMovie(GetParam());
  const _QKxSize size = SizeOf(movie);
  TestPlayer player(size.width, size.height);
  player.PushDataBuf(movie.data(), static_cast<int32_t>(movie.size()));
  player.SetCamera(kCameraOnly);
  SParser walk(movie.data(), static_cast<int32_t>(movie.size()), player.startPos);
  Open(0, Bytes(movie.begin(), movie.begin() + walk.pos));

  Bytes frame = {1 | 4};
  UINT32 count = 0;
  for (int32_t code; (code = walk.GetTag(kNoTagLimit)) > kTagEnd; walk.pos = walk.tagEnd) {
    if (code == kTagFrameEnd) {
      Packet(frame, count * 100);
      ++count;
      frame = {static_cast<UINT8>(1 | (count & 15) << 4)};
      continue;
    }
    const Bytes tag(movie.begin() + walk.tagPos, movie.begin() + walk.tagEnd);
    // Definitions go ahead; frames pass them over.
    Packet(Joined({0}, tag));
    frame = Joined(frame, tag);
  }
  for (UINT32 i = 0; i < count; ++i) {
    engine->OnTimeSync(i * 100);
    player.DrawFrame(static_cast<int32_t>(i), false);
    player.display.Update();
    Compare(player, "frame", static_cast<int>(i));
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, Pictures, ::testing::Range(1u, 41u));

}  // namespace
}  // namespace vexel::test
