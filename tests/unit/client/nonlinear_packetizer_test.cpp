#include "client/stream/nonlinear_packetizer.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>

#include "unit/client/test_movies.h"

namespace vexel::client {
namespace {

struct Head {
  size_t position, first, last;
  uint32_t flags;
  size_t headOffset, headLength, tailStart;
  std::vector<uint8_t> payload;
};

Head HeadOf(const StreamPacket& packet) {
  const std::span<const uint8_t> b = packet.bytes;
  return {BigAt(b, 0, 4), BigAt(b, 4, 2),  BigAt(b, 6, 2),  BigAt(b, 8, 1),
          BigAt(b, 9, 3), BigAt(b, 12, 2), BigAt(b, 14, 2), {b.begin() + 16, b.end()}};
}

// A receiver that knows nothing of the movie: collects the bytes of frames by
// what the heads say.
class Receiver {
 public:
  void Take(const StreamPacket& packet) {
    const Head head = HeadOf(packet);
    const auto& bytes = head.payload;
    const bool startsInside = head.flags & kStartsInside;
    const bool endsInside = head.flags & kEndsInside;
    const bool single = head.first == head.last;
    if (startsInside) {
      const size_t size = single ? bytes.size() : head.headLength;
      Put(head.first, head.headOffset, bytes, 0, size);
      EXPECT_EQ(head.position - head.headOffset, startOf_[head.first]);
    }
    const size_t start = startsInside ? head.headLength : 0;
    const size_t stop = endsInside ? head.tailStart : bytes.size();
    if (!(startsInside && single) && start < stop)
      whole_.insert(whole_.end(), bytes.begin() + start, bytes.begin() + stop);
    if (endsInside && !(startsInside && single)) {
      startOf_[head.last] = head.position + head.tailStart;
      Put(head.last, 0, bytes, head.tailStart, bytes.size());
    }
    // A frame is whole where it ends.
    if (startsInside && !(single && endsInside)) {
      const auto& frame = frames_[head.first];
      const auto at = startsInside && !single ? whole_.end() - (stop - start) : whole_.end();
      whole_.insert(at, frame.begin(), frame.end());
    }
  }
  const std::vector<uint8_t>& bytes() const { return whole_; }

 private:
  void Put(size_t frame, size_t offset, const std::vector<uint8_t>& bytes, size_t from, size_t to) {
    EXPECT_EQ(frames_[frame].size(), offset);
    frames_[frame].insert(frames_[frame].end(), bytes.begin() + from, bytes.begin() + to);
  }
  std::map<size_t, std::vector<uint8_t>> frames_;
  std::map<size_t, size_t> startOf_;
  std::vector<uint8_t> whole_;
};

std::vector<uint8_t> Request(size_t position, size_t length) {
  std::vector<uint8_t> request;
  AppendBig(static_cast<uint32_t>(position), 4, &request);
  AppendBig(static_cast<uint32_t>(length), 4, &request);
  AppendBig(0, 4, &request);
  return request;
}

TEST(NonLinearPacketizer, AReceiverGetsTheFileByTheHeadsAlone) {
  for (uint32_t seed = 1; seed <= 40; seed++) {
    const MovieIndex movie(author::RandomMovie(seed));
    for (const size_t size : {64, 100, 333, 1400, 65535}) {
      const NonLinearPacketizer packetizer(&movie, size);
      Receiver receiver;
      for (const StreamPacket& packet : packetizer.packets()) {
        EXPECT_LE(packet.bytes.size(), size);
        receiver.Take(packet);
      }
      std::vector<uint8_t> file = packetizer.Header().opaque;
      file.insert(file.end(), receiver.bytes().begin(), receiver.bytes().end());
      EXPECT_TRUE(std::equal(file.begin(), file.end(), movie.bytes().begin(), movie.bytes().end()))
          << "seed " << seed << ", packets of " << size;
    }
  }
}

TEST(NonLinearPacketizer, TheHeadSaysWhereFramesAreCut) {
  // Frames of 44 bytes, packets of 48.
  const author::Bytes file = FramesOf({40, 40, 40, 40});
  const MovieIndex movie(file);
  const size_t begin = movie.bounds()[0];
  const NonLinearPacketizer packetizer(&movie, 64);
  ASSERT_EQ(packetizer.packets().size(), 4u);
  const Head first = HeadOf(packetizer.packets()[0]);
  EXPECT_EQ(first.position, begin);
  EXPECT_EQ(first.first, 0u);
  EXPECT_EQ(first.last, 1u);
  EXPECT_EQ(first.flags, kEndsInside);
  EXPECT_EQ(first.headLength, 0u);
  EXPECT_EQ(first.tailStart, 44u);
  const Head second = HeadOf(packetizer.packets()[1]);
  EXPECT_EQ(second.position, begin + 48);
  EXPECT_EQ(second.first, 1u);
  EXPECT_EQ(second.last, 2u);
  EXPECT_EQ(second.flags, kStartsInside | kEndsInside);
  EXPECT_EQ(second.headOffset, 4u);
  EXPECT_EQ(second.headLength, 40u);
  EXPECT_EQ(second.tailStart, 40u);
  EXPECT_EQ(packetizer.packets()[1].time, 100u);
}

TEST(NonLinearPacketizer, APieceFromWithinAFrameHasNoTail) {
  const author::Bytes file = FramesOf({300});
  const MovieIndex movie(file);
  const NonLinearPacketizer packetizer(&movie, 64);
  const Head middle = HeadOf(packetizer.packets()[1]);
  EXPECT_EQ(middle.flags, kStartsInside | kEndsInside);
  EXPECT_EQ(middle.headOffset, 48u);
  EXPECT_EQ(middle.headLength, 48u);
  EXPECT_EQ(middle.tailStart, 0u);
}

TEST(NonLinearPacketizer, APacketThatEndsWithAFrameEndsInsideNone) {
  const author::Bytes file = FramesOf({44, 44});
  const MovieIndex movie(file);
  const NonLinearPacketizer packetizer(&movie, 64);
  EXPECT_EQ(HeadOf(packetizer.packets()[0]).flags, 0u);
  EXPECT_EQ(HeadOf(packetizer.packets()[1]).first, 1u);
}

TEST(NonLinearPacketizer, ARangeIsAnsweredWithTheWholeFramesThatOverlapIt) {
  const author::Bytes file = FramesOf({40, 40, 40, 40});
  const MovieIndex movie(file);
  const NonLinearPacketizer packetizer(&movie, 64);
  const auto answer = packetizer.Answer(Request(movie.bounds()[1] + 5, 44));
  ASSERT_EQ(answer.size(), 2u);
  for (size_t i = 0; i < 2; i++) {
    const Head head = HeadOf(answer[i]);
    EXPECT_EQ(head.flags, kResent);
    EXPECT_EQ(head.position, movie.bounds()[1 + i]);
    EXPECT_EQ(head.first, 1 + i);
    EXPECT_EQ(head.last, 1 + i);
    const auto frame = movie.Slice(movie.bounds()[1 + i], movie.bounds()[2 + i]);
    EXPECT_EQ(head.payload, std::vector<uint8_t>(frame.begin(), frame.end()));
  }
}

TEST(NonLinearPacketizer, AnAnswerIsAsLargeAsItsFrame) {
  const author::Bytes file = FramesOf({100000});
  const MovieIndex movie(file);
  const NonLinearPacketizer packetizer(&movie, 1400);
  const auto answer = packetizer.Answer(Request(movie.bounds()[0], 10));
  ASSERT_EQ(answer.size(), 1u);
  EXPECT_EQ(answer[0].bytes.size(), movie.bounds()[1] - movie.bounds()[0] + kNonLinearHead);
}

TEST(NonLinearPacketizer, RequestsThatMakeNoSenseAreNotAnswered) {
  const author::Bytes file = FramesOf({40});
  const MovieIndex movie(file);
  const NonLinearPacketizer packetizer(&movie, 64);
  EXPECT_TRUE(packetizer.Answer({}).empty());
  EXPECT_TRUE(packetizer.Answer(Request(0, 0)).empty());
  EXPECT_TRUE(packetizer.Answer(Request(file.size(), 1)).empty());
  // What a position that has gone stale asks for: the unsigned difference.
  EXPECT_TRUE(packetizer.Answer(Request(movie.bounds()[0], 0xFFFFFF00)).empty());
  EXPECT_TRUE(packetizer.Answer(Request(movie.bounds()[0], file.size() + 1)).empty());
}

TEST(NonLinearPacketizer, ALatePacketIsMarkedAsResent) {
  const author::Bytes file = FramesOf({300});
  const MovieIndex movie(file);
  const NonLinearPacketizer packetizer(&movie, 64);
  StreamPacket late = packetizer.packets()[1];
  EXPECT_TRUE(packetizer.MakeLate(&late.bytes));
  EXPECT_EQ(HeadOf(late).flags, kStartsInside | kEndsInside | kResent);
}

TEST(NonLinearPacketizer, AMovieWithTooManyFramesIsRefused) {
  author::MovieWriter writer(10, 10);
  for (int i = 0; i < 65537; i++) writer.FrameEnd();
  writer.header().frameCount = 0;
  const MovieIndex movie(writer.Finish());
  EXPECT_THROW(NonLinearPacketizer(&movie, 1400), std::runtime_error);
}

TEST(NonLinearPacketizer, TheHeaderTellsOfTheStream) {
  const author::Bytes file = FramesOf({40, 40});
  const MovieIndex movie(file);
  const NonLinearPacketizer packetizer(&movie, 64);
  const StreamHeader header = packetizer.Header();
  EXPECT_EQ(header.rendererFlags, 1u);
  EXPECT_EQ(header.duration, 200u);
  EXPECT_EQ(header.packets, packetizer.packets().size());
  EXPECT_EQ(header.opaque.size(), movie.bounds()[0]);
}

}  // namespace
}  // namespace vexel::client
