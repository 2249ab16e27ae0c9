#include "support/stage_fixture.h"

namespace vexel::test {
namespace {

TEST(PlayerTest, StartsEmptyAndAtItsBest) {
  TestPlayer player;
  EXPECT_TRUE(player.highQuality);
  EXPECT_FALSE(player.autoQuality);
  EXPECT_FALSE(player.loaded);
  EXPECT_FALSE(player.running);
  EXPECT_TRUE(player.firstPlay);
  EXPECT_EQ(player.framesSinceQualityChange, 1000);
  EXPECT_TRUE(RectIsEmpty(&player.zoomRect));
  EXPECT_EQ(player.display.threads, &player);
  EXPECT_EQ(player.splayer, &player);
  EXPECT_EQ(player.ScriptThread::display, &player.display);
  EXPECT_EQ(player.display.bits, &player.bits);
}

TEST(PlayerTest, EndsInTheMiddleOfAMovieWithLayersWithoutCallingThePlatform) {
  author::TagStream wheel;
  wheel.FrameEnd().FrameEnd();
  author::MovieWriter movie(100, 100);
  movie.DefineSprite(1, wheel).Place(1, 4).FrameEnd().FrameEnd().End();
  const author::Bytes bytes = movie.Finish();
  TestPlayer player;
  player.Push(bytes);
  for (const int32_t number : {2, 9}) {
    ScriptPlayer* layer = player.OpenLayer(number, false);
    layer->PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()));
    layer->DrawFrame(0, true);
  }
  player.display.Update();
  EXPECT_EQ(player.display.objectCount, 6);
}

TEST(PlayerTest, FreeingTheBufferMarksTheWholeView) {
  TestPlayer player;
  player.display.Update();
  EXPECT_EQ(player.display.dirtyCount, 0);
  player.FreeBuffer();
  EXPECT_EQ(player.bits.baseAddr, nullptr);
  ASSERT_EQ(player.display.dirtyCount, 1);
  EXPECT_EQ(player.display.dirtyRect[0].xmax, 400);
}

}  // namespace
}  // namespace vexel::test
