#include "client/stream/delivery.h"

#include <algorithm>
#include <utility>

#include "client/stream/linear_packetizer.h"
#include "client/stream/nonlinear_packetizer.h"

namespace vexel::client {

namespace {

std::unique_ptr<Packetizer> Packetize(const DeliverySetup& setup, const MovieIndex& movie) {
  if (setup.linear)
    return std::make_unique<LinearPacketizer>(&movie, setup.packetBytes, setup.keyEveryMs);
  return std::make_unique<NonLinearPacketizer>(&movie, setup.packetBytes);
}

}  // namespace

Delivery::Delivery(const DeliverySetup& setup, std::span<const uint8_t> file, DeliveryEnds ends)
    : setup_(setup),
      ends_(std::move(ends)),
      movie_(file),
      packetizer_(Packetize(setup, movie_)),
      network_(setup.network),
      jitter_(setup.jitterMs) {
  // Messages of a linear stream stand alone.
  if (setup_.linear) gate_.Open();
}

void Delivery::SendNumbered(const StreamPacket& packet) {
  outstanding_.push_back(packet);
  network_.Send(ends_.now(), {.number = numbers_++, .time = packet.time, .bytes = packet.bytes});
}

// A movie may go round for days: only what may have to be repeated is kept.
void Delivery::ForgetArrived() {
  const uint32_t first = numbers_ - static_cast<uint32_t>(outstanding_.size());
  const auto count = static_cast<std::ptrdiff_t>(jitter_.next() - first);
  outstanding_.erase(outstanding_.begin(), outstanding_.begin() + count);
}

void Delivery::SendDue() {
  const std::vector<StreamPacket>& packets = packetizer_->packets();
  const uint64_t horizon = uint64_t{ends_.position()} + setup_.leadMs;
  while (nextPacket_ < packets.size() && packets[nextPacket_].time <= horizon)
    SendNumbered(packets[nextPacket_++]);
}

uint64_t Delivery::UntilNextSend() const {
  const std::vector<StreamPacket>& packets = packetizer_->packets();
  if (nextPacket_ == packets.size()) return kNever;
  const uint64_t horizon = uint64_t{ends_.position()} + setup_.leadMs;
  return packets[nextPacket_].time - std::min<uint64_t>(packets[nextPacket_].time, horizon);
}

// Called inside a packet's hand-over: what it asks for is looked at later.
void Delivery::Request(std::span<const uint8_t> request) {
  stats_.requests++;
  requests_.emplace(ends_.now() + setup_.network.delayMs,
                    std::vector<uint8_t>(request.begin(), request.end()));
}

void Delivery::AnswerRequests() {
  const uint64_t now = ends_.now();
  const auto end = requests_.upper_bound(now);
  for (auto it = requests_.begin(); it != end; ++it) {
    const std::vector<StreamPacket> answer = packetizer_->Answer(it->second);
    if (!setup_.linear && !answer.empty()) stats_.dummyBytes += BigAt(it->second, 4, 4);
    for (const StreamPacket& packet : answer)
      network_.Send(now, {.isAnswer = true, .time = packet.time, .bytes = packet.bytes});
  }
  requests_.erase(requests_.begin(), end);
}

void Delivery::HandOver(JitterBuffer::Output output) {
  NetworkPacket& packet = output.packet;
  switch (output.kind) {
    case JitterBuffer::Kind::kLost:
      ends_.lostPacket();
      return;
    case JitterBuffer::Kind::kInOrder:
      ends_.packet(packet);
      if (!setup_.linear) gate_.PassedInOrder(packet.bytes);
      break;
    case JitterBuffer::Kind::kLate:
      if (!packetizer_->MakeLate(&packet.bytes)) return;
      gate_.Put(std::move(packet));
      break;
    case JitterBuffer::Kind::kAnswer:
      gate_.Put(std::move(packet));
      break;
  }
  HandOverResent();
}

void Delivery::HandOverResent() {
  for (const NetworkPacket& packet : gate_.Take()) {
    stats_.lateWrites++;
    ends_.packet(packet);
  }
}

bool Delivery::RunDue() {
  const uint32_t before = numbers_;
  SendDue();
  AnswerRequests();
  bool any = numbers_ != before;
  for (NetworkPacket& packet : network_.Receive(ends_.now())) {
    jitter_.Put(ends_.now(), std::move(packet));
    any = true;
  }
  for (JitterBuffer::Output& output : jitter_.Take(ends_.now())) {
    HandOver(std::move(output));
    any = true;
  }
  ForgetArrived();
  return any;
}

// The plug-in misses what a later packet shows to be missing. Of the last ones
// there is no later one, so the receiver, which knows how many there are, asks
// for them itself, once.
bool Delivery::EndIfAllIn() {
  if (ended_ || nextPacket_ < packetizer_->packets().size()) return false;
  if (network_.NextArrival() != LossyNetwork::kNever ||
      jitter_.NextDeadline() != JitterBuffer::kNever)
    return false;
  const auto missing = jitter_.MissingTail(numbers_);
  if (!missing.empty() && setup_.resends && !std::exchange(repeatsAsked_, true)) {
    for (const uint32_t number : missing) {
      stats_.repeats++;
      const StreamPacket& packet = outstanding_[number - missing.front()];
      // There and back again.
      network_.Send(
          ends_.now() + setup_.network.delayMs,
          {.number = number, .isRepeat = true, .time = packet.time, .bytes = packet.bytes});
    }
    return false;
  }
  ended_ = true;
  gate_.Open();
  HandOverResent();
  return true;
}

uint64_t Delivery::NextEvent() const {
  uint64_t next = std::min(network_.NextArrival(), jitter_.NextDeadline());
  if (!requests_.empty()) next = std::min(next, requests_.begin()->first);
  return next;
}

int Delivery::filledPercent() const {
  const uint64_t sent = numbers_ - fillsFrom_;
  return sent == 0 ? 100 : static_cast<int>((jitter_.next() - fillsFrom_) * uint64_t{100} / sent);
}

void Delivery::JumpTo(uint32_t time) {
  Packetizer::Jump jump = packetizer_->JumpTo(time, nextPacket_);
  if (!jump.first.empty()) {
    // A new beginning: what is under way is of the past.
    jitter_.JumpTo(numbers_);
    ForgetArrived();
    for (const StreamPacket& packet : jump.first) SendNumbered(packet);
    nextPacket_ = jump.next;
    ended_ = repeatsAsked_ = false;
  }
  fillsFrom_ = jitter_.next();
}

DeliveryStats Delivery::stats() const {
  DeliveryStats stats = stats_;
  stats.sent = numbers_;
  stats.lost = network_.lost();
  stats.doubles = jitter_.doubles();
  stats.reported = jitter_.reported();
  stats.late = jitter_.late();
  stats.resent = network_.answers();
  stats.resentLost = network_.answersLost();
  return stats;
}

}  // namespace vexel::client
