#include "client/stream/movie_index.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "unit/client/test_movies.h"

namespace vexel::client {
namespace {

TEST(MovieIndex, FramesEndBehindTheirTags) {
  const author::Bytes file = FramesOf({0, 10, 0});
  const MovieIndex movie(file);
  ASSERT_EQ(movie.frames(), 3u);
  const size_t first = movie.bounds()[0];
  EXPECT_EQ(movie.bounds()[1], first + 2);
  EXPECT_EQ(movie.bounds()[2], first + 2 + 12 + 2);
}

TEST(MovieIndex, TheLastFrameTakesTheEndTagAlong) {
  const author::Bytes file = FramesOf({0, 0});
  const MovieIndex movie(file);
  EXPECT_EQ(movie.bounds()[2], file.size());
}

TEST(MovieIndex, AMovieWithoutAFramesEndIsOneFrame) {
  author::MovieWriter writer(10, 10);
  writer.Tag(999, author::Bytes(5, 1));
  const author::Bytes file = writer.Finish();
  const MovieIndex movie(file);
  ASSERT_EQ(movie.frames(), 1u);
  EXPECT_EQ(movie.bounds()[1], file.size());
}

TEST(MovieIndex, ATagThatOverrunsTheFileIsLeftOut) {
  author::Bytes file = FramesOf({0, 30});
  file.resize(file.size() - 10);
  const MovieIndex movie(file);
  EXPECT_EQ(movie.tags().size(), 1u);
  EXPECT_EQ(movie.frames(), 1u);
  EXPECT_EQ(movie.bounds()[1], file.size());
}

TEST(MovieIndex, TellsOfAFileThatEndsEarly) {
  author::Bytes file = FramesOf({0, 30});
  EXPECT_FALSE(MovieIndex(file).endsEarly());
  author::Bytes more = file;
  more[4]++;
  EXPECT_TRUE(MovieIndex(more).endsEarly());
  file.resize(file.size() - 2);
  EXPECT_TRUE(MovieIndex(file).endsEarly());
}

TEST(MovieIndex, BytesBehindTheDeclaredLengthAreCutOff) {
  author::Bytes file = FramesOf({0});
  const size_t size = file.size();
  file.resize(size + 50);
  EXPECT_EQ(MovieIndex(file).bytes().size(), size);
}

TEST(MovieIndex, WhatIsNoMovieIsRefused) {
  const author::Bytes movie = FramesOf({0});
  EXPECT_THROW(MovieIndex({}), std::runtime_error);
  for (size_t size = 0; size <= MovieIndex(movie).bounds()[0]; size++)
    EXPECT_THROW(MovieIndex(std::span(movie).first(size)), std::runtime_error) << size;
  author::Bytes other = movie;
  other[0] = 'X';
  EXPECT_THROW(MovieIndex{other}, std::runtime_error);
}

TEST(MovieIndex, FramesAreDueByTheRate) {
  const author::Bytes file = FramesOf({0, 0, 0, 0}, 12);
  const MovieIndex movie(file);
  EXPECT_EQ(movie.DueTime(1), 83u);
  EXPECT_EQ(movie.duration(), 333u);
  for (size_t k = 0; k < movie.frames(); k++) {
    EXPECT_EQ(movie.FrameDueAt(movie.DueTime(k)), k);
    if (k > 0) {
      EXPECT_EQ(movie.FrameDueAt(movie.DueTime(k) - 1), k - 1);
    }
  }
  EXPECT_EQ(movie.FrameDueAt(0xFFFFFFFF), 3u);
}

TEST(MovieIndex, ARateOfNoneIsNoDivisionByIt) {
  author::MovieWriter writer(author::Rect{0, 100, 0, 100}, 0);
  writer.FrameEnd().FrameEnd().End();
  const MovieIndex movie(writer.Finish());
  EXPECT_GT(movie.DueTime(1), 0u);
}

}  // namespace
}  // namespace vexel::client
