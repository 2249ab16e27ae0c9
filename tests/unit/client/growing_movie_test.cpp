#include "client/stream/growing_movie.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

#include "client/stream/movie_index.h"
#include "client/stream/nonlinear_packetizer.h"
#include "unit/client/test_movies.h"

namespace vexel::client {
namespace {

using Bytes = std::vector<uint8_t>;

// What the packets bring, in their order.
struct Taken {
  Bytes payload;
  size_t frames = 0;
};

void Take(GrowingMovie* movie, Taken* taken) {
  const auto packet = movie->TakePacket();
  if (!packet) return;
  EXPECT_EQ(BigAt(packet->bytes, 0, 4), movie->head().size() + taken->payload.size());
  EXPECT_EQ(BigAt(packet->bytes, 4, 2), taken->frames);
  EXPECT_EQ(BigAt(packet->bytes, kNonLinearFlagsAt, 1), 0u);
  taken->frames = BigAt(packet->bytes, 6, 2) + 1;
  taken->payload.insert(taken->payload.end(), packet->bytes.begin() + kNonLinearHead,
                        packet->bytes.end());
}

void ExpectWhole(const Bytes& file, const GrowingMovie& movie, const Taken& taken) {
  const MovieIndex index(file);
  EXPECT_TRUE(movie.finished());
  EXPECT_EQ(movie.framesIn(), index.frames());
  EXPECT_EQ(taken.frames, index.frames());
  const auto rest = index.Slice(index.bounds()[0], index.bytes().size());
  EXPECT_EQ(taken.payload, Bytes(rest.begin(), rest.end()));
}

TEST(GrowingMovie, AWholeFileIsOnePacket) {
  const Bytes file = FramesOf({0, 10, 0, 300});
  GrowingMovie movie;
  movie.Append(file);
  EXPECT_TRUE(movie.complete());
  Taken taken;
  Take(&movie, &taken);
  EXPECT_FALSE(movie.TakePacket());
  ExpectWhole(file, movie, taken);
}

TEST(GrowingMovie, BytesOneByOneBringTheSameFrames) {
  const Bytes file = FramesOf({0, 10, 0, 300});
  GrowingMovie movie;
  Taken taken;
  for (const uint8_t byte : file) {
    movie.Append({&byte, 1});
    if (movie.ready()) Take(&movie, &taken);
  }
  ExpectWhole(file, movie, taken);
}

TEST(GrowingMovie, RandomCutsBringTheSameFrames) {
  const Bytes file = FramesOf({100, 0, 62, 63, 64, 5000, 0, 0, 7});
  for (uint32_t seed = 1; seed <= 100; seed++) {
    std::mt19937 random(seed);
    GrowingMovie movie;
    Taken taken;
    for (size_t at = 0; at < file.size();) {
      const size_t size = std::min<size_t>(1 + random() % 700, file.size() - at);
      movie.Append(std::span(file).subspan(at, size));
      if (movie.ready()) Take(&movie, &taken);
      at += size;
    }
    SCOPED_TRACE(seed);
    ExpectWhole(file, movie, taken);
  }
}

TEST(GrowingMovie, AFileThatBreaksOffEndsInAFrameOfWhatIsThere) {
  const Bytes file = FramesOf({0, 10, 300});
  GrowingMovie movie;
  movie.Append(std::span(file).first(file.size() - 100));
  EXPECT_EQ(movie.framesIn(), 2u);
  EXPECT_FALSE(movie.finished());
  movie.Finish();
  EXPECT_FALSE(movie.complete());
  EXPECT_EQ(movie.framesIn(), 3u);
}

TEST(GrowingMovie, WhatFollowsTheDeclaredLengthIsPassedOver) {
  Bytes file = FramesOf({0, 10});
  const size_t length = file.size();
  file.resize(length + 50, 0x55);
  GrowingMovie movie;
  movie.Append(file);
  EXPECT_TRUE(movie.complete());
  EXPECT_EQ(movie.bytes().size(), length);
}

TEST(GrowingMovie, OtherFilesAreRefused) {
  const Bytes letter = {'D', 'e', 'a', 'r'};
  EXPECT_THROW(GrowingMovie().Append(letter), std::runtime_error);
  EXPECT_THROW(GrowingMovie().Finish(), std::runtime_error);
  Bytes file = FramesOf({0});
  file[4] = 9;  // a length that ends inside the head
  file[5] = file[6] = file[7] = 0;
  EXPECT_THROW(GrowingMovie().Append(file), std::runtime_error);
  file[7] = 0x70;  // more than any movie has
  EXPECT_THROW(GrowingMovie().Append(file), std::runtime_error);
}

TEST(GrowingMovie, AFramesDueTimeIsTheFirstAtWhichItIsDue) {
  const Bytes file = FramesOf({0, 0, 0});
  GrowingMovie movie;
  movie.Append(file);
  for (size_t frame = 1; frame < 500; frame++) {
    const uint32_t time = movie.DueTime(frame);
    EXPECT_EQ(movie.FrameDueAt(time), frame);
    EXPECT_EQ(movie.FrameDueAt(time - 1), frame - 1);
  }
}

}  // namespace
}  // namespace vexel::client
