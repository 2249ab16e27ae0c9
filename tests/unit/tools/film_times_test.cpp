#include "film_times.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vexel::tools {
namespace {

FrameRate Parsed(const std::string& text) {
  FrameRate rate{0, 0};
  return ParseFrameRate(text, &rate) ? rate : FrameRate{0, 0};
}

constexpr FrameRate kNone{0, 0};

TEST(FilmTimes, RatesAreReadAsExactFractions) {
  EXPECT_EQ(Parsed("25"), (FrameRate{25, 1}));
  EXPECT_EQ(Parsed("29.97"), (FrameRate{2997, 100}));
  EXPECT_EQ(Parsed("12.500"), (FrameRate{25, 2}));
  EXPECT_EQ(Parsed("30000/1001"), (FrameRate{30000, 1001}));
  EXPECT_EQ(Parsed("50/4"), (FrameRate{25, 2}));
  EXPECT_EQ(Parsed("0.01"), (FrameRate{1, 100}));
  EXPECT_EQ(Parsed("1000"), (FrameRate{1000, 1}));
}

TEST(FilmTimes, WhatIsNoRateIsRefused) {
  for (const char* text :
       {"",       "0",  "0.0", "0.009",  "1001", "1000.1", "-1",    "-0.5",
        "1.-5",   "2.", ".5",  "1.0000", "1/0",  "0/1",    "1/2/3", "65536/65535",
        "5000/1", "x",  "25 ", " 25",    "1e3",  "1/200"}) {
    EXPECT_EQ(Parsed(text), kNone) << text;
  }
}

TEST(FilmTimes, ARateWhoseTermsAreTooLargeIsRefused) {
  EXPECT_EQ(Parsed("65.535"), (FrameRate{13107, 200}));
  EXPECT_EQ(Parsed("99.999"), kNone);
}

TEST(FilmTimes, TheMoviesRateIsTakenExactly) {
  EXPECT_EQ(FrameRateOfMovie(0x0C00), (FrameRate{12, 1}));
  EXPECT_EQ(FrameRateOfMovie(0x0C80), (FrameRate{25, 2}));
  EXPECT_EQ(FrameRateOfMovie(0x0001), (FrameRate{1, 256}));
  EXPECT_EQ(FrameRateOfMovie(0xFFFF), (FrameRate{65535, 256}));
}

TEST(FilmTimes, AFrameThatBeginsAtATimeIsNotBeforeIt) {
  const FrameRate rate{12, 1};
  EXPECT_EQ(FramesBefore(rate, 0), 0);
  EXPECT_EQ(FramesBefore(rate, 1), 1);
  EXPECT_EQ(FramesBefore(rate, 250), 3);
  EXPECT_EQ(FramesBefore(rate, 251), 4);
  EXPECT_EQ(FramesBefore({30000, 1001}, 1001), 30);
  EXPECT_EQ(FramesBefore({65535, 256}, 0xFFFFFFFF), 1099494851);
}

TEST(FilmTimes, NoRoundingAddsUp) {
  EXPECT_EQ(FrameStartMs({3, 1}, 1), 333);
  EXPECT_EQ(FrameStartMs({3, 1}, 3000000), 1000000000);
}

// The whole frames that a player's clock has counted at a time.
int64_t Counted(int64_t ms, int32_t clockRate) {
  return ms < 0 ? 0 : clockRate * ms / 1000 + 1;
}

TEST(FilmTimes, TheClockShowsEveryFrameOnceAtTheMoviesOwnRate) {
  for (int32_t clockRate = 1; clockRate <= 255; clockRate++) {
    for (int64_t i = 0; i < 1000; i++) {
      ASSERT_EQ(Counted(ClockMs({clockRate, 1}, i, 0, clockRate), clockRate), i) << clockRate;
    }
  }
}

TEST(FilmTimes, TheClockShowsEveryFrameTwiceAtTwiceTheRate) {
  for (int64_t i = 0; i < 1000; i++) ASSERT_EQ(Counted(ClockMs({24, 1}, i, 0, 12), 12), i / 2) << i;
}

TEST(FilmTimes, TheClockBeginsWhereTheFilmDoes) {
  EXPECT_EQ(Counted(ClockMs({24, 1}, 0, 1000, 12), 12), 12);
  EXPECT_EQ(Counted(ClockMs({24, 1}, 1, 1000, 12), 12), 12);
  EXPECT_EQ(Counted(ClockMs({24, 1}, 2, 1000, 12), 12), 13);
}

TEST(FilmTimes, LateTimesDoNotOverflow) {
  EXPECT_EQ(ClockMs({65535, 66}, 4264749999, 0, 255), 4295010295);
}

}  // namespace
}  // namespace vexel::tools
