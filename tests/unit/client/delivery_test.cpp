#include "client/stream/delivery.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "client/stream/linear_packetizer.h"
#include "client/stream/nonlinear_packetizer.h"
#include "client/stream/record_writer.h"
#include "unit/client/test_movies.h"

namespace vexel::client {
namespace {

using Bytes = std::vector<uint8_t>;

// A clock and a position to be moved, and what is handed over.
class Receiver {
 public:
  explicit Receiver(const DeliverySetup& setup, Bytes file)
      : file_(std::move(file)), delivery(setup, file_, Ends()) {}

  // Everything that happens of itself while nobody moves the position, one event
  // after another, until the buffer is full or `until` is reached.
  void Run(uint64_t until = UINT64_MAX) {
    for (;;) {
      bool any = true;
      while (any) {
        any = delivery.RunDue();
        any = delivery.EndIfAllIn() || any;
      }
      const uint64_t next = delivery.NextEvent();
      if (next == Delivery::kNever || next > until) break;
      EXPECT_GT(next, now) << "what is due is done";
      now = next;
    }
    if (until != UINT64_MAX) now = until;
  }
  // The position moves on with the clock.
  void Play(uint32_t ms) {
    for (const uint64_t end = now + ms; now < end;) {
      Run(now + 1);
      position++;
    }
    Run(now);
  }

 private:
  DeliveryEnds Ends() {
    DeliveryEnds ends;
    ends.now = [this] { return now; };
    ends.position = [this] { return position; };
    ends.packet = [this](const NetworkPacket& packet) {
      packets.push_back(packet);
      arrivals.push_back(now);
      if (onPacket) onPacket(packet);
    };
    ends.lostPacket = [this] { lost++; };
    return ends;
  }
  Bytes file_;

 public:
  uint64_t now = 1000;
  uint32_t position = 0;
  std::vector<NetworkPacket> packets;
  std::vector<uint64_t> arrivals;  // of each of them
  uint32_t lost = 0;
  std::function<void(const NetworkPacket&)> onPacket;
  Delivery delivery;
};

Bytes Request(size_t position, size_t length) {
  Bytes request;
  AppendBig(static_cast<uint32_t>(position), 4, &request);
  AppendBig(static_cast<uint32_t>(length), 4, &request);
  AppendBig(0, 4, &request);
  return request;
}

size_t PositionOf(const NetworkPacket& packet) {
  return BigAt(packet.bytes, 0, 4);
}

bool IsResent(const NetworkPacket& packet) {
  return packet.bytes[kNonLinearFlagsAt] & kResent;
}

// Asks for what was missing, as soon as a packet shows a gap; and keeps the
// file as far as it was handed over.
class Asking {
 public:
  explicit Asking(Receiver* receiver)
      : receiver_(receiver), file(receiver->delivery.movie().bytes().size()) {
    const auto head = receiver->delivery.Header().opaque;
    std::copy(head.begin(), head.end(), file.begin());
    end_ = head.size();
    receiver->onPacket = [this](const NetworkPacket& packet) { Take(packet); };
  }

 private:
  void Take(const NetworkPacket& packet) {
    const size_t position = PositionOf(packet);
    const auto payload = std::span(packet.bytes).subspan(kNonLinearHead);
    std::copy(payload.begin(), payload.end(), file.begin() + static_cast<std::ptrdiff_t>(position));
    if (IsResent(packet)) return;
    EXPECT_GE(position, end_) << "in order";
    if (position > end_) receiver_->delivery.Request(Request(end_, position - end_));
    end_ = position + payload.size();
  }
  Receiver* receiver_;
  size_t end_;  // behind the last byte that came in order

 public:
  Bytes file;
};

// Ten frames of some bytes at ten a second.
Bytes TenFrames() {
  return FramesOf(std::vector<size_t>(10, 100));
}

TEST(Delivery, SendsPacketsSoLongBeforeTheyAreDue) {
  Receiver receiver({.packetBytes = 116, .leadMs = 250}, TenFrames());
  receiver.Run();
  ASSERT_FALSE(receiver.packets.empty());
  EXPECT_LE(receiver.packets.back().time, 250u);
  const auto next = receiver.delivery.UntilNextSend();
  ASSERT_GT(next, 0u);
  const size_t before = receiver.packets.size();
  receiver.position += static_cast<uint32_t>(next) - 1;
  receiver.Run();
  EXPECT_EQ(receiver.packets.size(), before);
  receiver.position++;
  receiver.Run();
  EXPECT_GT(receiver.packets.size(), before);
  receiver.position = 1000;
  receiver.Run();
  EXPECT_EQ(receiver.delivery.UntilNextSend(), Delivery::kNever);
  EXPECT_TRUE(receiver.delivery.ended());
}

TEST(Delivery, TheBufferIsFullOnceAllThatWasSentHasCome) {
  Receiver receiver({.packetBytes = 116, .network = {.delayMs = 40}}, TenFrames());
  EXPECT_EQ(receiver.delivery.filledPercent(), 100);
  receiver.delivery.RunDue();
  EXPECT_EQ(receiver.delivery.filledPercent(), 0);
  EXPECT_EQ(receiver.delivery.NextEvent(), receiver.now + 40);
  receiver.Run();
  EXPECT_EQ(receiver.delivery.filledPercent(), 100);
  EXPECT_EQ(receiver.delivery.NextEvent(), Delivery::kNever);
  EXPECT_EQ(receiver.now, 1040u);
}

TEST(Delivery, FillingTellsHowFarItIs) {
  Receiver receiver({.packetBytes = 116, .jitterMs = 100, .network = {.drop = {5}}}, TenFrames());
  receiver.delivery.RunDue();
  const auto sent = static_cast<int>(receiver.delivery.stats().sent);
  ASSERT_GT(sent, 6);
  EXPECT_EQ(receiver.delivery.filledPercent(), 5 * 100 / sent);
  receiver.Run();
  EXPECT_EQ(receiver.delivery.filledPercent(), 100);
}

TEST(Delivery, WhatIsMissingIsReportedOnceTheWaitIsOver) {
  Receiver receiver({.packetBytes = 116, .jitterMs = 70, .network = {.drop = {2}}}, TenFrames());
  receiver.Run();
  EXPECT_EQ(receiver.lost, 1u);
  EXPECT_EQ(receiver.delivery.stats().reported, 1u);
  EXPECT_EQ(receiver.arrivals[1], 1000u);
  EXPECT_EQ(receiver.arrivals[2], 1070u);
}

TEST(Delivery, ARequestTravelsBothWays) {
  Receiver receiver({.packetBytes = 116, .jitterMs = 0, .network = {.drop = {2}, .delayMs = 30}},
                    TenFrames());
  const Asking asking(&receiver);
  receiver.Run();
  EXPECT_TRUE(IsResent(receiver.packets.back()));
  EXPECT_EQ(receiver.arrivals.back(), 1000u + 30 + 30 + 30);
  EXPECT_EQ(receiver.delivery.stats().requests, 1u);
  EXPECT_EQ(receiver.delivery.stats().dummyBytes, 100u);
}

TEST(Delivery, WhateverIsLostTheFileIsWholeOnceAllAnswersHaveCome) {
  for (uint64_t seed = 1; seed <= 40; seed++) {
    SCOPED_TRACE(seed);
    const Bytes file = author::RandomMovie(static_cast<uint32_t>(seed));
    DeliverySetup setup{.packetBytes = 64 + seed * 9, .leadMs = 100, .jitterMs = 20};
    setup.network = {.loss = 0.4, .reorder = 0.3, .duplicate = 0.3, .delayMs = 15, .seed = seed};
    Receiver receiver(setup, file);
    const Asking asking(&receiver);
    receiver.Play(receiver.delivery.movie().duration() + 500);
    EXPECT_TRUE(receiver.delivery.ended());
    EXPECT_EQ(asking.file, file);
  }
}

TEST(Delivery, ThePacketsThatNobodyWouldMissAreAskedForOnce) {
  Receiver receiver({.packetBytes = 65535, .network = {.drop = {0}, .delayMs = 25}}, TenFrames());
  receiver.Run();
  ASSERT_EQ(receiver.packets.size(), 1u);
  EXPECT_EQ(receiver.arrivals[0], 1000u + 25 + 25);
  EXPECT_EQ(receiver.delivery.stats().repeats, 1u);
  EXPECT_TRUE(receiver.delivery.ended());
}

TEST(Delivery, AnEndThatIsLostAgainIsGivenUp) {
  Receiver receiver({.packetBytes = 65535, .network = {.drop = {0}, .answerLoss = 1}}, TenFrames());
  receiver.Run();
  receiver.Run();
  EXPECT_TRUE(receiver.packets.empty());
  EXPECT_TRUE(receiver.delivery.ended());
}

TEST(Delivery, WithoutAWayBackTheEndIsGivenUpAtOnce) {
  Receiver receiver({.packetBytes = 65535, .resends = false, .network = {.drop = {0}}},
                    TenFrames());
  receiver.Run();
  EXPECT_TRUE(receiver.packets.empty());
  EXPECT_EQ(receiver.delivery.stats().repeats, 0u);
  EXPECT_TRUE(receiver.delivery.ended());
}

TEST(Delivery, TheEndIsToldOnce) {
  Receiver receiver({}, TenFrames());
  while (receiver.delivery.RunDue()) {
  }
  EXPECT_TRUE(receiver.delivery.EndIfAllIn());
  EXPECT_FALSE(receiver.delivery.EndIfAllIn());
}

TEST(Delivery, AJumpOfANonLinearStreamChangesNothingOfItsOrder) {
  Receiver receiver({.packetBytes = 116, .leadMs = 0}, TenFrames());
  receiver.Run();
  receiver.position = 700;
  receiver.delivery.JumpTo(700);
  receiver.Run();
  size_t end = receiver.delivery.Header().opaque.size();
  for (const NetworkPacket& packet : receiver.packets) {
    EXPECT_EQ(PositionOf(packet), end);
    end += packet.bytes.size() - kNonLinearHead;
  }
  EXPECT_GE(receiver.packets.back().time, 600u);
}

// The first byte of a linear packet's last message.
uint8_t LastFlags(const NetworkPacket& packet) {
  uint8_t flags = 0;
  for (size_t at = 0; at + kRecordHead < packet.bytes.size();) {
    flags = packet.bytes[at + kRecordHead];
    at += kRecordHead + (BigAt(packet.bytes, at, 2) & 0xFFF);
  }
  return flags;
}

TEST(Delivery, AJumpOfALinearStreamBeginsAnewWithAFrameToBeShownAtOnce) {
  Receiver receiver({.linear = true, .leadMs = 0, .network = {.delayMs = 40}}, TenFrames());
  receiver.Run();
  receiver.position = 200;
  receiver.delivery.RunDue();
  receiver.packets.clear();
  // What is under way is of the past.
  receiver.position = 700;
  receiver.delivery.JumpTo(700);
  EXPECT_EQ(receiver.delivery.filledPercent(), 0);
  receiver.Run();
  ASSERT_EQ(receiver.packets.size(), 1u);
  EXPECT_EQ(LastFlags(receiver.packets[0]), kFrameMessage | kAtOnce | 7u << 4);
  receiver.position = 800;
  receiver.Run();
  ASSERT_EQ(receiver.packets.size(), 2u);
  EXPECT_EQ(LastFlags(receiver.packets[1]), kFrameMessage | 8u << 4);
}

TEST(Delivery, ALinearStreamGoesRoundAsOftenAsOneLikes) {
  DeliverySetup setup{.linear = true};
  setup.network = {.loss = 0.1, .reorder = 0.2, .duplicate = 0.2};
  Receiver receiver(setup, TenFrames());
  for (int round = 0; round < 50; round++) {
    receiver.packets.clear();
    receiver.Run();
    EXPECT_TRUE(receiver.delivery.ended());
    EXPECT_GE(receiver.packets.size() + receiver.lost, 10u) << round;
    receiver.lost = 0;
    receiver.delivery.JumpTo(0);
    EXPECT_FALSE(receiver.delivery.ended());
  }
}

TEST(Delivery, APacketMayHaveThePresentationJump) {
  Receiver receiver({.linear = true, .network = {.reorder = 0.5, .duplicate = 0.5}}, TenFrames());
  int jumps = 0;
  receiver.onPacket = [&](const NetworkPacket&) {
    if (jumps == 20) return;
    jumps++;
    receiver.delivery.JumpTo(static_cast<uint32_t>(jumps % 10 * 100));
  };
  receiver.Run();
  EXPECT_EQ(jumps, 20);
  EXPECT_TRUE(receiver.delivery.ended());
  EXPECT_EQ(receiver.delivery.filledPercent(), 100);
}

TEST(Delivery, BytesThatAreNoMovieAreRefused) {
  EXPECT_THROW(Receiver({}, Bytes{'V', 'X'}), std::runtime_error);
  EXPECT_THROW(Receiver({.linear = true}, Bytes(100, 7)), std::runtime_error);
}

}  // namespace
}  // namespace vexel::client
