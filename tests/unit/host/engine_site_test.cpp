// Drawing on the site: what is damaged, when it is redrawn, and what size the
// picture has.
#include "engine_fixture.h"

namespace vexel::test {
namespace {

class EngineSite : public EngineFixture {};

TEST_F(EngineSite, TimeSyncDrawsAndForcesTwoRedraws) {
  Play(BoxMovie(3));
  host.site->damage.clear();
  engine->OnTimeSync(0);
  EXPECT_EQ(host.site->redraws, 2);
  ASSERT_FALSE(host.site->damage.empty());
  EXPECT_TRUE(damage.m_bReadyToDraw);
  // The first sync takes the step to frame 1.
  EXPECT_EQ(Pixel(15, 5), 0xC80000u);
  EXPECT_EQ(Pixel(50, 50), 0xFFFFFFu);
}

TEST_F(EngineSite, Update0MarksDamageAndDoesNotRedraw) {
  Play(BoxMovie(3));
  host.site->damage.clear();
  engine->Update(0);
  EXPECT_EQ(host.site->damage.size(), 1u);
  EXPECT_EQ(host.site->redraws, 0);
  EXPECT_FALSE(damage.m_bReadyToDraw);
}

TEST_F(EngineSite, Update1WithoutDamageDoesNotRedraw) {
  Play(BoxMovie(3));
  engine->Update(1);
  // What was just drawn is reported once more.
  engine->Update(1);
  const int redraws = host.site->redraws;
  const size_t reports = host.site->damage.size();
  engine->Update(1);
  EXPECT_EQ(host.site->redraws, redraws);
  EXPECT_EQ(host.site->damage.size(), reports);
}

TEST_F(EngineSite, DamageIsWhatChanged) {
  Play(BoxMovie(3));
  engine->Update(1);
  engine->Update(1);
  host.site->damage.clear();
  engine->OnTimeSync(0);
  ASSERT_EQ(host.site->damage.size(), 1u);
  const _QKxRect rect = host.site->damage[0];
  // The box at both places, and a rim.
  EXPECT_EQ(rect.left, 0);
  EXPECT_EQ(rect.top, 0);
  EXPECT_LE(rect.right, 24);
  EXPECT_LE(rect.bottom, 14);
}

TEST_F(EngineSite, NewSizeIsDrawnAtOnce) {
  Play(BoxMovie(3));
  engine->OnTimeSync(0);
  host.site->redraws = 0;
  host.site->damage.clear();
  damage.SetupDoubleBuffer({50, 40});
  engine->SetBufferSize({50, 40});
  EXPECT_EQ(host.site->redraws, 1);
  ASSERT_EQ(host.site->damage.size(), 2u);
  EXPECT_EQ(host.site->damage[1].right, 50);
  engine->UpdateDoubleBuffer();
  EXPECT_EQ(Pixel(7, 2), 0xC80000u);
  EXPECT_EQ(Pixel(12, 2), 0xFFFFFFu);
}

TEST_F(EngineSite, SameSizeChangesNothing) {
  Play(BoxMovie(3));
  engine->OnTimeSync(0);
  host.site->redraws = 0;
  engine->SetBufferSize({100, 80});
  EXPECT_EQ(host.site->redraws, 0);
}

// The player's bitmap and the picture differ in size for a moment: nothing is
// copied then.
TEST_F(EngineSite, PictureOfAnotherSizeIsLeftAlone) {
  Play(BoxMovie(3));
  engine->OnTimeSync(0);
  damage.SetupDoubleBuffer({200, 160});
  engine->UpdateDoubleBuffer();
  EXPECT_EQ(Pixel(5, 5), 0u);
  damage.SetupDoubleBuffer({1, 1});
  engine->UpdateDoubleBuffer();
}

TEST_F(EngineSite, EmptySizeIsASuccessWithNothingToShow) {
  Play(BoxMovie(3));
  engine->SetBufferSize({0, 40});
  EXPECT_TRUE(engine->UpdateBuffer(true));
  EXPECT_FALSE(engine->bits.BitsValid());
  engine->OnTimeSync(0);
  engine->SetBufferSize({100, 80});
  EXPECT_TRUE(engine->UpdateBuffer(true));
  EXPECT_TRUE(engine->bits.BitsValid());
}

TEST_F(EngineSite, SizeThatHasNoBitmapIsNotShown) {
  Play(BoxMovie(3));
  engine->SetBufferSize({20000, 40});
  EXPECT_FALSE(engine->UpdateBuffer(true));
  engine->OnTimeSync(0);
  EXPECT_FALSE(engine->bits.BitsValid());
}

TEST_F(EngineSite, WithoutADamageManagerTheMovieRuns) {
  Play(BoxMovie(3));
  engine->SetDamageManager(nullptr);
  engine->OnTimeSync(0);
  engine->SetBufferSize({50, 40});
  engine->OnTimeSync(1000);
  EXPECT_TRUE(engine->bits.BitsValid());
}

TEST_F(EngineSite, EngineMayBeShutDownInsideARedraw) {
  Play(BoxMovie(3));
  host.site->onRedraw = [this] { engine->Shutdown(); };
  engine->OnTimeSync(0);
  EXPECT_EQ(host.site->redraws, 1);
}

TEST_F(EngineSite, EngineMayBeReleasedInsideARedraw) {
  Play(BoxMovie(3));
  CVexelEngine* raw = engine.get();
  host.site->onRedraw = [this] {
    if (!engine) return;
    engine->Shutdown();
    engine = {};
  };
  raw->OnTimeSync(0);
  EXPECT_FALSE(engine);
  engine = new CVexelEngine;
}

TEST_F(EngineSite, TimeSyncInsideARedrawIsIgnored) {
  Play(BoxMovie(9));
  host.site->onRedraw = [this] { EXPECT_EQ(engine->OnTimeSync(90000), ZEM_OK); };
  engine->OnTimeSync(0);
  EXPECT_EQ(engine->CurrentFrame(), 1);
}

TEST_F(EngineSite, SizeMayChangeInsideARedraw) {
  Play(BoxMovie(3));
  int turn = 0;
  host.site->onRedraw = [this, &turn] {
    const _QKxSize size = {100 + ++turn, 80};
    damage.SetupDoubleBuffer(size);
    engine->SetBufferSize(size);
    engine->UpdateDoubleBuffer();
  };
  engine->OnTimeSync(0);
  EXPECT_EQ(engine->GetMediaSize().width, 100 + turn);
  EXPECT_EQ(damage.m_lWidth, 100 + turn);
  // The movie stands in the middle.
  EXPECT_EQ(Pixel(15 + turn / 2, 5), 0xC80000u);
}

TEST_F(EngineSite, ClientRectIsThePicture) {
  Play(BoxMovie(1));
  SRECT rect;
  engine->ClientRect(&rect);
  EXPECT_EQ(rect.xmin, 0);
  EXPECT_EQ(rect.xmax, 100);
  EXPECT_EQ(rect.ymin, 0);
  EXPECT_EQ(rect.ymax, 80);
}

TEST_F(EngineSite, PointerShapeFollowsTheStage) {
  Play(BoxMovie(1));
  engine->UpdateCursor(0);
  EXPECT_EQ(engine->PointerShape(), 0);
  engine->display.mouseOverEditText = true;
  engine->UpdateCursor(0);
  EXPECT_EQ(engine->PointerShape(), 3);
  engine->zoomRect = {0, 20, 0, 20};
  engine->UpdateCursor(0);
  EXPECT_EQ(engine->PointerShape(), 1);
  SObject button;
  engine->display.button = &button;
  engine->UpdateCursor(0);
  EXPECT_EQ(engine->PointerShape(), 2);
  engine->display.button = nullptr;
}

TEST_F(EngineSite, NeedsNoWindowOfTheSystem) {
  EXPECT_EQ(engine->NeedsWindowedSites(), 0);
}

}  // namespace
}  // namespace vexel::test
