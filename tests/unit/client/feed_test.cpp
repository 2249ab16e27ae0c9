#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>

#include "client/core/values.h"
#include "client/feed/network_feed.h"
#include "client/feed/progressive_feed.h"
#include "client/stream/nonlinear_packetizer.h"
#include "movie/tags.h"
#include "unit/client/responses.h"
#include "unit/client/test_movies.h"

namespace vexel::client {
namespace {

using Bytes = std::vector<uint8_t>;

std::span<const uint8_t> Half(const Bytes& file) {
  return std::span(file).first(file.size() / 2);
}

// Twelve frames at twelve a second.
Bytes TwelveFrames() {
  return FramesOf(std::vector<size_t>(12, 100), 12);
}

// A movie that stops itself.
Bytes Scripted() {
  author::MovieWriter movie(100, 80, 12);
  movie.Tag(kTagFrameActions, Bytes{7, 0});
  movie.FrameEnd();
  movie.End();
  return movie.Finish();
}

class Progressive : public testing::Test {
 protected:
  GrowingMovie movie;
  std::vector<StreamPacket> packets;
  ProgressiveFeed feed{&movie, [this](const StreamPacket& packet) { packets.push_back(packet); }};
};

TEST_F(Progressive, FramesAreHandedOverAsTheyComeIn) {
  const Bytes file = TwelveFrames();
  movie.Append(Half(file));
  feed.Run();
  feed.Run();
  EXPECT_EQ(packets.size(), 1u);
  EXPECT_FALSE(feed.ended());
  movie.Append(std::span(file).subspan(file.size() / 2));
  feed.Run();
  EXPECT_EQ(packets.size(), 2u);
  EXPECT_TRUE(feed.ended());
}

TEST_F(Progressive, TheClockWaitsForTheFrameThatIsDue) {
  const Bytes file = TwelveFrames();
  movie.Append(Half(file));
  const size_t in = feed.framesIn();
  ASSERT_GT(in, 0u);
  ASSERT_LT(in, 12u);
  EXPECT_EQ(feed.frames(), 12u);
  EXPECT_FALSE(feed.Waits(feed.DueTime(in) - 1));
  EXPECT_TRUE(feed.Waits(feed.DueTime(in)));
  EXPECT_EQ(feed.percent(), movie.percent());
  movie.Append(std::span(file).subspan(file.size() / 2));
  EXPECT_FALSE(feed.Waits(5000));
}

TEST_F(Progressive, AMovieWithoutScriptsGoesRoundOnceItIsKnown) {
  const Bytes file = TwelveFrames();
  movie.Append(Half(file));
  feed.Run();
  EXPECT_FALSE(feed.goesRound());
  movie.Append(std::span(file).subspan(file.size() / 2));
  feed.Run();
  EXPECT_TRUE(feed.goesRound());
}

TEST_F(Progressive, AMovieThatSteersItselfDoesNot) {
  movie.Append(Scripted());
  feed.Run();
  EXPECT_FALSE(feed.goesRound());
}

class Network : public testing::Test {
 protected:
  // `file` is copied.
  void Make(const DeliverySetup& setup, const Bytes& file) {
    movie.Append(file);
    movie.Finish();
    feed = std::make_unique<NetworkFeed>(
        setup, &movie,
        NetworkFeed::Ends{.loop = &loop,
                          .position = [this] { return position; },
                          .handOver = [this](IZEMPacket* packet) { Take(packet); }});
  }
  void Take(IZEMPacket* packet) {
    if (packet->IsLost()) {
      lost++;
      return;
    }
    Ref<IZEMBuffer> buffer;
    buffer.Out() = packet->GetBuffer();
    const auto bytes = BytesOf(buffer.get());
    packets.emplace_back(bytes.begin(), bytes.end());
  }
  bool Filled() {
    return loop.RunUntil([this] { return !feed->Waits(position); }, kTestMs);
  }

  EventLoop loop;
  GrowingMovie movie;
  uint32_t position = 0;
  std::vector<Bytes> packets;
  int lost = 0;
  std::unique_ptr<NetworkFeed> feed;
};

TEST_F(Network, TheClockWaitsUntilTheBufferIsFull) {
  Make({.network = {.delayMs = 30}}, TwelveFrames());
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(feed->Waits(0));
  feed->Run();
  EXPECT_TRUE(feed->Waits(0));
  EXPECT_TRUE(packets.empty());
  EXPECT_TRUE(Filled());
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(29));
  EXPECT_EQ(packets.size(), 1u);
  EXPECT_EQ(feed->percent(), 100);
  EXPECT_TRUE(feed->ended());
}

TEST_F(Network, WithoutDelayAndLossNothingIsWaitedFor) {
  Make({}, TwelveFrames());
  feed->Run();
  EXPECT_FALSE(feed->Waits(0));
}

TEST_F(Network, WhatIsMissingIsToldAfterItsTimeAndAnswersCome) {
  Make({.packetBytes = 116, .jitterMs = 20, .network = {.drop = {3}, .delayMs = 5}},
       TwelveFrames());
  EXPECT_TRUE(feed->resends());
  feed->Run();
  EXPECT_TRUE(Filled());
  EXPECT_EQ(lost, 1);
  const size_t before = packets.size();
  Bytes request;
  AppendBig(static_cast<uint32_t>(movie.head().size() + 300), 4, &request);
  AppendBig(100, 4, &request);
  AppendBig(0, 4, &request);
  feed->Request(request);
  feed->Run();
  EXPECT_TRUE(loop.RunUntil([&] { return packets.size() > before; }, kTestMs));
  EXPECT_TRUE(packets.back()[kNonLinearFlagsAt] & kResent);
}

TEST_F(Network, ASourceWithoutAWayBackTakesNoRequests) {
  Make({.resends = false}, TwelveFrames());
  EXPECT_FALSE(feed->resends());
}

TEST_F(Network, PacketsAreSentAsThePositionMovesOn) {
  Make({.packetBytes = 116, .leadMs = 0}, TwelveFrames());
  feed->Run();
  const size_t before = packets.size();
  position = 500;
  feed->Run();
  EXPECT_GT(packets.size(), before);
  EXPECT_FALSE(feed->ended());
}

TEST_F(Network, AJumpFillsTheBufferAnew) {
  Make({.linear = true, .network = {.delayMs = 10}}, TwelveFrames());
  feed->Run();
  EXPECT_TRUE(Filled());
  EXPECT_TRUE(feed->ended());
  const size_t before = packets.size();
  feed->JumpTo(0);
  EXPECT_TRUE(feed->Waits(0));
  EXPECT_FALSE(feed->ended());
  feed->Run();
  EXPECT_TRUE(Filled());
  EXPECT_EQ(packets.size(), 2 * before);
}

TEST_F(Network, TimesOfALinearStreamAreThoseOfItsPackets) {
  const Bytes file = FramesOf({10, 10, 10, 10}, 2.5);
  Make({.linear = true}, file);
  EXPECT_EQ(feed->DueTime(2), 800u);
  EXPECT_EQ(feed->FrameDueAt(800), 2u);
  // Else the plug-in counts whole frames a second.
  const NetworkFeed other({}, &movie, {.loop = &loop, .position = {}, .handOver = {}});
  EXPECT_EQ(other.DueTime(2), 1000u);
}

TEST_F(Network, ALinearMovieGoesRoundWhateverItsScripts) {
  Make({.linear = true}, Scripted());
  EXPECT_TRUE(feed->goesRound());
  const NetworkFeed other({}, &movie, {.loop = &loop, .position = {}, .handOver = {}});
  EXPECT_FALSE(other.goesRound());
}

}  // namespace
}  // namespace vexel::client
