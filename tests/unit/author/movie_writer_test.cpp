#include "author/movie_writer.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>

#include "reader.h"

namespace vexel::author {
namespace {

TEST(MovieWriter, TheHeaderSaysLengthSizeRateAndFrames) {
  MovieWriter movie(10, 5, 12.5);
  movie.FrameEnd().FrameEnd().End();
  const Bytes bytes = movie.Finish();
  EXPECT_EQ((Bytes{bytes.begin(), bytes.begin() + 4}), (Bytes{'V', 'X', 'F', 4}));
  Reader in(bytes, 4);
  EXPECT_EQ(in.U32(), bytes.size());
  EXPECT_EQ(in.Bits(5), 9u);
  EXPECT_EQ(in.SBits(9), 0);
  EXPECT_EQ(in.SBits(9), 200);
  EXPECT_EQ(in.SBits(9), 0);
  EXPECT_EQ(in.SBits(9), 100);
  EXPECT_EQ(in.U16(), 0x0C80u);
  EXPECT_EQ(in.U16(), 2u);
  EXPECT_EQ(in.Rest(), movie.bytes());
}

TEST(MovieWriter, TheHeaderCanLie) {
  MovieWriter movie(1, 1);
  movie.header().declaredLength = 0x12345678;
  movie.header().frameCount = 999;
  movie.header().rectBits = 31;
  movie.header().signature = {'A', 'B', 'C'};
  const Bytes bytes = movie.Finish();
  EXPECT_EQ(bytes[0], 'A');
  Reader in(bytes, 4);
  EXPECT_EQ(in.U32(), 0x12345678u);
  EXPECT_EQ(in.Bits(5), 31u);
  EXPECT_EQ(bytes.size(), 8u + 17 + 4);
  EXPECT_EQ(bytes[bytes.size() - 2], 999 & 255);
}

TEST(MovieWriter, RateAndVersionCanBeGivenRaw) {
  MovieWriter movie(Rect{1, 2, 3, 4}, 0x1801, 6);
  const Bytes bytes = movie.Finish();
  EXPECT_EQ(bytes[3], 6);
  EXPECT_EQ((Bytes{bytes.end() - 4, bytes.end()}), (Bytes{0x01, 0x18, 0, 0}));
  EXPECT_THROW(MovieWriter(1, 1, 256), std::range_error);
  EXPECT_THROW(MovieWriter(1, 1, -1), std::range_error);
}

TEST(MovieWriter, FilesAreWrittenWhole) {
  const std::string path = testing::TempDir() + "movie_writer_test.vxf";
  EXPECT_TRUE(WriteFile(path, Bytes{1, 2, 3}));
  FILE* file = std::fopen(path.c_str(), "rb");
  ASSERT_NE(file, nullptr);
  uint8_t data[8];
  EXPECT_EQ(std::fread(data, 1, sizeof(data), file), 3u);
  std::fclose(file);
  std::remove(path.c_str());
  EXPECT_FALSE(WriteFile("/nonexistent/movie.vxf", Bytes{1}));
}

}  // namespace
}  // namespace vexel::author
