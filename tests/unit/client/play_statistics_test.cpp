#include "client/desktop/play_statistics.h"

#include <gtest/gtest.h>

namespace vexel::client {
namespace {

TEST(PlayStatistics, CountsEachFrameOnce) {
  PlayStatistics statistics;
  for (const size_t frame : {0, 1, 1, 2, 2, 2, 3}) statistics.Show(frame);
  EXPECT_EQ(statistics.due(), 4u);
  EXPECT_EQ(statistics.shown(), 4u);
}

TEST(PlayStatistics, FramesThatArePassedOverWereDueButNotShown) {
  PlayStatistics statistics;
  for (const size_t frame : {0, 1, 5, 6}) statistics.Show(frame);
  EXPECT_EQ(statistics.due(), 7u);
  EXPECT_EQ(statistics.shown(), 4u);
}

TEST(PlayStatistics, NothingIsDueBetweenTwoPlacesOfASeek) {
  PlayStatistics statistics;
  statistics.Show(0);
  statistics.Jump();
  statistics.Show(100);
  statistics.Show(101);
  statistics.Jump();
  statistics.Show(2);
  EXPECT_EQ(statistics.due(), 4u);
  EXPECT_EQ(statistics.shown(), 4u);
}

TEST(PlayStatistics, TellsWhatItCountedInOneLine) {
  PlayStatistics statistics;
  statistics.Show(0);
  statistics.Show(3);
  const std::string line = statistics.Line(17);
  EXPECT_NE(line.find(" s, 4 frames due, 2 shown, 17 pictures, "), std::string::npos) << line;
  EXPECT_NE(line.find(" s of processor time ("), std::string::npos) << line;
}

}  // namespace
}  // namespace vexel::client
