#include <gtest/gtest.h>

#include <algorithm>

#include "client/stream/jitter_buffer.h"
#include "client/stream/lossy_network.h"

namespace vexel::client {
namespace {

using Kind = JitterBuffer::Kind;

std::vector<NetworkPacket> Cross(LossyNetwork* network, uint32_t count) {
  for (uint32_t i = 0; i < count; i++) network->Send(i, {.number = i, .bytes = {}});
  return network->Receive(count + 1000);
}

std::vector<uint32_t> Numbers(const std::vector<NetworkPacket>& packets) {
  std::vector<uint32_t> numbers;
  for (const NetworkPacket& packet : packets) numbers.push_back(packet.number);
  return numbers;
}

TEST(LossyNetwork, WithoutFaultsAllArriveInOrderAfterTheDelay) {
  LossyNetwork network({.delayMs = 50});
  network.Send(10, {.number = 0, .bytes = {}});
  network.Send(10, {.number = 1, .bytes = {}});
  EXPECT_EQ(network.NextArrival(), 60u);
  EXPECT_TRUE(network.Receive(59).empty());
  EXPECT_EQ(Numbers(network.Receive(60)), (std::vector<uint32_t>{0, 1}));
  EXPECT_EQ(network.NextArrival(), LossyNetwork::kNever);
}

TEST(LossyNetwork, DropsTheNumbersThatAreListed) {
  LossyNetwork network({.drop = {1, 3}});
  EXPECT_EQ(Numbers(Cross(&network, 5)), (std::vector<uint32_t>{0, 2, 4}));
  EXPECT_EQ(network.lost(), 2u);
}

TEST(LossyNetwork, LosesAboutItsShareAndTheSameBySeed) {
  LossyNetwork a({.loss = 0.2, .seed = 7}), b({.loss = 0.2, .seed = 7}),
      c({.loss = 0.2, .seed = 8});
  const auto first = Numbers(Cross(&a, 10000));
  EXPECT_EQ(first, Numbers(Cross(&b, 10000)));
  EXPECT_NE(first, Numbers(Cross(&c, 10000)));
  EXPECT_NEAR(a.lost(), 2000, 150);
}

TEST(LossyNetwork, ReorderedPacketsAreOvertakenByAFewAndNoneIsLost) {
  LossyNetwork network({.reorder = 0.3, .seed = 3});
  auto numbers = Numbers(Cross(&network, 1000));
  EXPECT_FALSE(std::is_sorted(numbers.begin(), numbers.end()));
  for (size_t i = 0; i < numbers.size(); i++) EXPECT_NEAR(numbers[i], i, 8);
  std::sort(numbers.begin(), numbers.end());
  for (size_t i = 0; i < 1000; i++) EXPECT_EQ(numbers[i], i);
}

TEST(LossyNetwork, DuplicatesArriveTwice) {
  LossyNetwork network({.duplicate = 1});
  EXPECT_EQ(Numbers(Cross(&network, 2)), (std::vector<uint32_t>{0, 0, 1, 1}));
}

TEST(LossyNetwork, AnswersHaveALossOfTheirOwn) {
  LossyNetwork network({.loss = 1});
  network.Send(0, {.isAnswer = true, .bytes = {}});
  EXPECT_EQ(network.Receive(0).size(), 1u);
  LossyNetwork other({.answerLoss = 1});
  other.Send(0, {.isAnswer = true, .bytes = {}});
  other.Send(0, {.number = 0, .bytes = {}});
  EXPECT_EQ(other.Receive(0).size(), 1u);
  EXPECT_EQ(other.answersLost(), 1u);
}

void Put(JitterBuffer* buffer, uint64_t now, std::initializer_list<uint32_t> numbers) {
  for (const uint32_t number : numbers) buffer->Put(now, {.number = number, .bytes = {}});
}

std::vector<std::pair<Kind, uint32_t>> Taken(JitterBuffer* buffer, uint64_t now) {
  std::vector<std::pair<Kind, uint32_t>> taken;
  for (const auto& output : buffer->Take(now))
    taken.emplace_back(output.kind, output.packet.number);
  return taken;
}

using Outputs = std::vector<std::pair<Kind, uint32_t>>;

TEST(JitterBuffer, PutsPacketsInOrder) {
  JitterBuffer buffer(100);
  Put(&buffer, 0, {1, 2, 0});
  EXPECT_EQ(Taken(&buffer, 0),
            (Outputs{{Kind::kInOrder, 0}, {Kind::kInOrder, 1}, {Kind::kInOrder, 2}}));
}

TEST(JitterBuffer, DropsDoubles) {
  JitterBuffer buffer(100);
  Put(&buffer, 0, {0, 2, 2});
  EXPECT_EQ(Taken(&buffer, 0), (Outputs{{Kind::kInOrder, 0}}));
  Put(&buffer, 1, {0});
  EXPECT_TRUE(Taken(&buffer, 1).empty());
  EXPECT_EQ(buffer.doubles(), 2u);
}

TEST(JitterBuffer, ReportsWhatIsMissingAsLostOnceTheWaitIsOver) {
  JitterBuffer buffer(100);
  Put(&buffer, 10, {0, 3});
  EXPECT_EQ(Taken(&buffer, 10), (Outputs{{Kind::kInOrder, 0}}));
  EXPECT_EQ(buffer.NextDeadline(), 110u);
  EXPECT_TRUE(Taken(&buffer, 109).empty());
  EXPECT_EQ(Taken(&buffer, 110),
            (Outputs{{Kind::kLost, 1}, {Kind::kLost, 2}, {Kind::kInOrder, 3}}));
  EXPECT_EQ(buffer.reported(), 2u);
}

TEST(JitterBuffer, HandsOverAsLateWhatComesAfterItWasReported) {
  JitterBuffer buffer(100);
  Put(&buffer, 0, {1});
  Taken(&buffer, 100);
  Put(&buffer, 150, {0});
  EXPECT_EQ(Taken(&buffer, 150), (Outputs{{Kind::kLate, 0}}));
  Put(&buffer, 160, {0});
  EXPECT_TRUE(Taken(&buffer, 160).empty());
  EXPECT_EQ(buffer.doubles(), 1u);
}

TEST(JitterBuffer, AnswersAreNotHeldUpByAGap) {
  JitterBuffer buffer(100);
  Put(&buffer, 0, {5});
  buffer.Put(1, {.isAnswer = true, .bytes = {}});
  EXPECT_EQ(Taken(&buffer, 1), (Outputs{{Kind::kAnswer, 0}}));
}

TEST(JitterBuffer, NamesTheEndThatNobodyWouldMiss) {
  JitterBuffer buffer(100);
  Put(&buffer, 0, {0, 2});
  EXPECT_TRUE(buffer.MissingTail(5).empty());
  Taken(&buffer, 100);
  EXPECT_EQ(buffer.MissingTail(5), (std::vector<uint32_t>{3, 4}));
  EXPECT_TRUE(buffer.MissingTail(3).empty());
}

TEST(JitterBuffer, InAnyOrderWithDoublesAllComesOutOnce) {
  LossyNetwork network({.reorder = 0.5, .duplicate = 0.5, .seed = 11});
  JitterBuffer buffer(1000);
  for (NetworkPacket& packet : Cross(&network, 500)) buffer.Put(0, std::move(packet));
  const auto taken = Taken(&buffer, 0);
  ASSERT_EQ(taken.size(), 500u);
  for (uint32_t i = 0; i < 500; i++) EXPECT_EQ(taken[i], std::make_pair(Kind::kInOrder, i));
}

}  // namespace
}  // namespace vexel::client
