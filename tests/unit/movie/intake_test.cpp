// Movies as they arrive.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "author/writer.h"
#include "movie/budget.h"
#include "movie/script_player.h"
#include "support/test_player.h"

namespace vexel {
namespace {

using author::Bytes;
using author::MovieWriter;
using test::TestPlayer;

void Push(ScriptPlayer* player, const Bytes& bytes, size_t from, size_t to) {
  player->PushDataBuf(bytes.data() + from, static_cast<int32_t>(to - from));
}
void Push(ScriptPlayer* player, const Bytes& bytes) {
  Push(player, bytes, 0, bytes.size());
}

Bytes ThreeFrames() {
  MovieWriter movie({0, 4000, 0, 2000}, 0x0C80, 4);
  movie.BackgroundColor({1, 2, 3}).FrameEnd().FrameLabel("two").FrameEnd();
  movie.FrameEnd().End();
  return movie.Finish();
}

void ExpectSame(const ScriptPlayer& a, const ScriptPlayer& b) {
  EXPECT_EQ(a.frame.xmin, b.frame.xmin);
  EXPECT_EQ(a.frame.xmax, b.frame.xmax);
  EXPECT_EQ(a.frame.ymin, b.frame.ymin);
  EXPECT_EQ(a.frame.ymax, b.frame.ymax);
  EXPECT_EQ(a.frameRate, b.frameRate);
  EXPECT_EQ(a.frameDelay, b.frameDelay);
  EXPECT_EQ(a.numFrames, b.numFrames);
  EXPECT_EQ(a.numFramesComplete, b.numFramesComplete);
  EXPECT_EQ(a.startPos, b.startPos);
  EXPECT_EQ(a.version, b.version);
  EXPECT_EQ(a.scriptErr, b.scriptErr);
  EXPECT_EQ(a.len, b.len);
}

TEST(Intake, StartsWithA72PixelStage) {
  ScriptPlayer player;
  EXPECT_EQ(player.frame.xmax, 1440);
  EXPECT_EQ(player.frame.ymax, 1440);
  EXPECT_EQ(player.scriptLen, -1);
  EXPECT_EQ(player.numFramesComplete, -1);
}

TEST(Intake, ReadsTheHeader) {
  ScriptPlayer player;
  Push(&player, ThreeFrames());
  EXPECT_TRUE(player.gotHeader);
  EXPECT_EQ(player.version, 4);
  EXPECT_EQ(player.frame.xmax, 4000);
  EXPECT_EQ(player.frame.ymax, 2000);
  EXPECT_EQ(player.frameRate, 0xC8000);
  EXPECT_EQ(player.frameDelay, 80);
  EXPECT_EQ(player.numFrames, 3);
  EXPECT_EQ(player.curFrame, -1);
  EXPECT_EQ(player.pos, player.startPos);
}

TEST(Intake, ByteByByteGivesTheSameAsWhole) {
  // Rectangles of every size: some end behind the 19 bytes that are waited for.
  for (int bits = 13; bits < 32; ++bits) {
    MovieWriter movie({0, 4000, 0, 2000}, 0x0C00);
    movie.header().rectBits = bits;
    movie.FrameEnd().Tag(1, Bytes{9, 9}).FrameEnd().End();
    const Bytes bytes = movie.Finish();
    ScriptPlayer whole;
    Push(&whole, bytes);
    ScriptPlayer slow;
    int32_t complete = -1;
    for (size_t i = 0; i < bytes.size(); ++i) {
      Push(&slow, bytes, i, i + 1);
      EXPECT_GE(slow.numFramesComplete, complete);
      complete = slow.numFramesComplete;
    }
    ExpectSame(whole, slow);
    EXPECT_EQ(whole.frame.xmax, 4000);
  }
}

TEST(Intake, RandomCutsGiveTheSameAsWhole) {
  const Bytes bytes = ThreeFrames();
  ScriptPlayer whole;
  Push(&whole, bytes);
  std::mt19937 random(4);
  for (int round = 0; round < 100; ++round) {
    ScriptPlayer cut;
    for (size_t at = 0; at < bytes.size();) {
      const size_t next = std::min(bytes.size(), at + 1 + random() % 9);
      Push(&cut, bytes, at, next);
      at = next;
    }
    ExpectSame(whole, cut);
  }
}

TEST(Intake, ChunkInsideALongHeaderLeavesScanPosAtTheTag) {
  MovieWriter movie(100, 100);
  movie.FrameEnd();
  const size_t before = movie.Finish().size();
  movie.Tag(43, Bytes(100, 'x'), author::TagForm::kLong).FrameEnd().End();
  const Bytes bytes = movie.Finish();
  for (size_t inside = 0; inside < 6; ++inside) {
    ScriptPlayer player;
    Push(&player, bytes, 0, before + inside);
    EXPECT_EQ(player.scanPos, static_cast<int32_t>(before));
    EXPECT_EQ(player.numFramesComplete, 0);
    Push(&player, bytes, before + inside, bytes.size() - 1);
    EXPECT_EQ(player.numFramesComplete, 1);
  }
}

TEST(Intake, CountsCompleteFrames) {
  const Bytes bytes = ThreeFrames();
  ScriptPlayer player;
  std::string counts;
  for (size_t i = 0; i < bytes.size(); ++i) {
    Push(&player, bytes, i, i + 1);
    const std::string count = std::to_string(player.numFramesComplete) + ' ';
    if (!counts.ends_with(count)) counts += count;
  }
  EXPECT_EQ(counts, "-1 0 1 2 16000 ");
}

TEST(Intake, AllFramesAreCompleteWithTheLastByteThoughTheLastTagIsNot) {
  MovieWriter movie(100, 100);
  movie.FrameEnd().LyingTag(43, 500, Bytes{1, 2, 3});
  ScriptPlayer player;
  Push(&player, movie.Finish());
  EXPECT_EQ(player.numFramesComplete, 16000);
}

TEST(Intake, FrameEndWithABodyCounts) {
  MovieWriter movie(100, 100);
  movie.Tag(1, Bytes{1, 2, 3, 4}).Tag(1, Bytes(80)).End();
  const Bytes bytes = movie.Finish();
  ScriptPlayer player;
  Push(&player, bytes, 0, bytes.size() - 1);
  EXPECT_EQ(player.numFramesComplete, 1);
}

TEST(Intake, EightByteFileWaitsForItsBodyForGood) {
  const Bytes bytes = {'V', 'X', 'F', 4, 8, 0, 0, 0};
  ScriptPlayer player;
  Push(&player, bytes);
  Push(&player, ThreeFrames());
  EXPECT_EQ(player.scriptLen, 8);
  EXPECT_EQ(player.len, 8);
  EXPECT_EQ(player.scriptErr, 0);
  EXPECT_FALSE(player.gotHeader);
  EXPECT_EQ(player.numFramesComplete, -1);
  EXPECT_EQ(player.DrawFrame(0, true), 1);
}

TEST(Intake, NineteenBytesAreNeededWhateverTheRectangle) {
  MovieWriter movie(100, 100);
  movie.header().rectBits = 12;
  movie.FrameEnd().FrameEnd().FrameEnd().End();
  const Bytes bytes = movie.Finish();
  ScriptPlayer player;
  Push(&player, bytes, 0, 18);
  EXPECT_FALSE(player.gotHeader);
  Push(&player, bytes, 18, 19);
  EXPECT_TRUE(player.gotHeader);
}

TEST(Intake, MovieThatEndsInsideItsHeaderReadsZerosBehindItsEnd) {
  MovieWriter movie({0, 4000, 0, 2000}, 0x0C00);
  movie.header().rectBits = 31;
  Bytes bytes = movie.Finish();
  bytes.resize(22);
  bytes[4] = 22;
  ScriptPlayer player;
  Push(&player, bytes);
  EXPECT_TRUE(player.gotHeader);
  EXPECT_EQ(player.frame.xmax, 4000);
  EXPECT_EQ(player.frameRate, 0);
  EXPECT_EQ(player.numFrames, 0);
  EXPECT_EQ(player.DoTag(), kScriptWaiting);
}

TEST(Intake, WrongSignatureFailsForGood) {
  Bytes bytes = ThreeFrames();
  bytes[1] = 'Y';
  ScriptPlayer player;
  Push(&player, bytes, 0, 8);
  EXPECT_EQ(player.scriptErr, -1);
  Push(&player, ThreeFrames());
  EXPECT_EQ(player.scriptLen, -1);
  EXPECT_EQ(player.DrawFrame(0, true), -1);
}

int32_t ErrorOfDeclaredLength(uint32_t length) {
  author::BitWriter out;
  out.Append(Bytes{'V', 'X', 'F', 4});
  out.U32(length);
  ScriptPlayer player;
  Push(&player, out.bytes());
  EXPECT_EQ(player.DrawFrame(0, true), player.scriptErr == 0 ? kScriptWaiting : player.scriptErr);
  return player.scriptErr;
}

TEST(Intake, DeclaredLengthUnder8IsABadHeader) {
  EXPECT_EQ(ErrorOfDeclaredLength(7), -1);
  EXPECT_EQ(ErrorOfDeclaredLength(0), -1);
  EXPECT_EQ(ErrorOfDeclaredLength(8), 0);
}

TEST(Intake, DeclaredLengthFrom2GbOnIsNegativeAndSoABadHeader) {
  EXPECT_EQ(ErrorOfDeclaredLength(0x80000000u), -1);
  EXPECT_EQ(ErrorOfDeclaredLength(0xFFFFFFFFu), -1);
}

TEST(Intake, DeclaredLengthAboveTheLimitIsOutOfMemory) {
  EXPECT_EQ(ErrorOfDeclaredLength(uint32_t{kMaxMovieBytes} + 1), -2);
  EXPECT_EQ(ErrorOfDeclaredLength(0x7FFFFFFFu), -2);
}

TEST(Intake, GreatestDeclaredLengthTakesNoMemoryUntilUsed) {
  author::BitWriter out;
  out.Append(Bytes{'V', 'X', 'F', 4});
  out.U32(kMaxMovieBytes);
  ScriptPlayer player;
  Push(&player, out.bytes());
  EXPECT_EQ(player.scriptErr, 0);
  EXPECT_EQ(player.scriptLen, kMaxMovieBytes);
}

TEST(Intake, BytesBehindTheDeclaredLengthAreDropped) {
  Bytes bytes = ThreeFrames();
  const int32_t length = static_cast<int32_t>(bytes.size());
  bytes.insert(bytes.end(), 100, 0x41);
  ScriptPlayer player;
  Push(&player, bytes);
  EXPECT_EQ(player.len, length);
  Push(&player, bytes);
  EXPECT_EQ(player.len, length);
}

TEST(Intake, FewerBytesThanDeclaredKeepWaiting) {
  MovieWriter movie(100, 100);
  movie.header().declaredLength = 5000;
  movie.FrameEnd();
  TestPlayer player;
  player.Push(movie.Finish());
  EXPECT_EQ(player.numFramesComplete, 0);
  EXPECT_EQ(player.curFrame, 0);
  EXPECT_EQ(player.DrawFrame(1, false), kScriptWaiting);
}

TEST(Intake, ZeroRateCountsAsOneFrameASecondOfDelay) {
  MovieWriter movie({0, 2000, 0, 2000}, 0);
  movie.FrameEnd().End();
  ScriptPlayer player;
  Push(&player, movie.Finish());
  EXPECT_EQ(player.frameRate, 0);
  EXPECT_EQ(player.frameDelay, 1000);
}

TEST(Intake, ClearScriptTakesAnotherMovie) {
  ScriptPlayer player;
  Push(&player, {'V', 'X', 'F', 4, 7, 0, 0, 0});
  player.ClearScript();
  EXPECT_EQ(player.scriptErr, 0);
  Push(&player, ThreeFrames());
  EXPECT_EQ(player.numFramesComplete, 16000);
}

TEST(Intake, TextsGrowAndEndInAZero) {
  ScriptPlayer player;
  player.variableLoader = true;
  std::string expected;
  for (int i = 0; i < 3000; ++i) {
    const std::string piece(static_cast<size_t>(i % 50), static_cast<char>('a' + i % 26));
    player.PushDataBuf(reinterpret_cast<const uint8_t*>(piece.data()),
                       static_cast<int32_t>(piece.size()));
    expected += piece;
  }
  EXPECT_EQ(player.len, static_cast<int32_t>(expected.size()));
  EXPECT_GE(player.scriptLen, player.len);
  EXPECT_STREQ(reinterpret_cast<const char*>(player.script), expected.c_str());
  EXPECT_FALSE(player.gotHeader);
}

TEST(Intake, FirstChunkOfATextLeavesRoomFor2049More) {
  ScriptPlayer player;
  player.variableLoader = true;
  player.PushDataBuf(reinterpret_cast<const uint8_t*>("a=1"), 3);
  EXPECT_EQ(player.scriptLen, 3 + 2049);
}

TEST(Intake, TextsEndAtTheirBudget) {
  ScriptPlayer player;
  player.variableLoader = true;
  const Bytes piece(16 << 20, 'x');
  for (int i = 0; i < 6; ++i) Push(&player, piece);
  EXPECT_EQ(player.len, kMaxLoadedText);
  EXPECT_EQ(player.script[player.len], 0);
}

TEST(PushDataComplete, ShowsTheFirstFrameAsSoonAsItIsIn) {
  const Bytes bytes = ThreeFrames();
  TestPlayer player;
  size_t shown = 0;
  for (size_t i = 0; i < bytes.size(); ++i) {
    player.PushDataBuf(&bytes[i], 1);
    player.PushDataComplete();
    if (player.loaded && !shown) shown = i;
  }
  EXPECT_EQ(player.curFrame, 0);
  EXPECT_GT(shown, 0u);
  EXPECT_LT(shown, bytes.size() - 4);
  EXPECT_TRUE(player.running);
  EXPECT_EQ(player.display.backgroundColor.blue, 3);
}

TEST(PushDataComplete, LoadsAMovieThatIsWhollyInThoughItHasNoFrame) {
  MovieWriter movie(100, 100);
  movie.End();
  TestPlayer player;
  player.Push(movie.Finish());
  EXPECT_TRUE(player.loaded);
  EXPECT_EQ(player.curFrame, -1);
}

TEST(PushDataComplete, SwitchesToHighQualityForStills) {
  MovieWriter movie(100, 100);
  movie.FrameEnd().End();
  for (bool automatic : {false, true}) {
    TestPlayer player;
    player.highQuality = false;
    player.autoQuality = automatic;
    player.Push(movie.Finish());
    EXPECT_EQ(player.highQuality, automatic);
  }
}

TEST(PushDataComplete, SetsTheCameraInAnyCaseUntilLoaded) {
  TestPlayer player;
  player.TakeCalls();
  player.PushDataComplete();
  EXPECT_EQ(player.TakeCalls(), "CheckUpdate ");
  player.Push(ThreeFrames());
  player.TakeCalls();
  player.PushDataComplete();
  EXPECT_EQ(player.TakeCalls(), "");
}

TEST(PushDataComplete, DoesNothingForLayersAndLoneMovies) {
  TestPlayer player;
  ScriptPlayer* layer = player.OpenLayer(3, false);
  ASSERT_NE(layer, nullptr);
  Push(layer, ThreeFrames());
  layer->PushDataComplete();
  EXPECT_EQ(layer->curFrame, -1);
  ScriptPlayer alone;
  Push(&alone, ThreeFrames());
  alone.PushDataComplete();
  EXPECT_EQ(alone.curFrame, -1);
}

}  // namespace
}  // namespace vexel
