#include "export/gif_times.h"

#include <gtest/gtest.h>

#include <vector>

namespace vexel::tools {
namespace {

struct Shown {
  int64_t frame;
  int64_t start;
  int64_t length;
};

std::vector<Shown> GifFrames(FrameRate rate, int64_t count) {
  std::vector<Shown> frames;
  GifTimes times(rate, count);
  for (int64_t i = 0; i < count; i++) {
    if (const std::optional<GifTime> time = times.Next())
      frames.push_back({i, time->start, time->length});
  }
  return frames;
}

TEST(GifTimes, ErrorsOfRoundingAreCarriedOn) {
  const std::vector<Shown> frames = GifFrames({12, 1}, 7);
  ASSERT_EQ(frames.size(), 7u);
  const int64_t starts[] = {0, 8, 17, 25, 33, 42, 50};
  for (size_t i = 0; i < 7; i++) EXPECT_EQ(frames[i].start, starts[i]);
  EXPECT_EQ(frames[1].length, 9);
  EXPECT_EQ(frames[6].length, 8);  // the film ends at 58.33
}

TEST(GifTimes, TheFilmIsAsLongAsItsFrames) {
  for (const FrameRate rate : {FrameRate{12, 1}, {30000, 1001}, {50, 1}, {25, 2}, {1, 100}}) {
    int64_t length = 0;
    for (const Shown& frame : GifFrames(rate, 1000)) length += frame.length;
    EXPECT_EQ(length, (200000 * int64_t{rate.den} + rate.num) / (2 * rate.num)) << rate.num;
  }
}

TEST(GifTimes, NoFrameIsShorterThanPlayersShow) {
  const std::vector<Shown> frames = GifFrames({60, 1}, 60);
  EXPECT_EQ(frames.size(), 40u);
  for (const Shown& frame : frames) {
    EXPECT_GE(frame.length, 2);
    EXPECT_EQ(frame.start, (frame.frame * 200 + 60) / 120);
  }
  EXPECT_EQ(GifFrames({1000, 1}, 3).size(), 1u);
}

}  // namespace
}  // namespace vexel::tools
