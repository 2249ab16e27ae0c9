// A movie on its way: a source that sends its packets ahead of their time, a
// network that loses some, a receiver that puts the rest in order and hands them
// over, and a way back by which lost ones are asked for. It knows one clock and
// one position; who moves them, and when, is its user's business.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include "client/stream/jitter_buffer.h"
#include "client/stream/lossy_network.h"
#include "client/stream/movie_index.h"
#include "client/stream/packetizer.h"
#include "client/stream/resend_gate.h"

namespace vexel::client {

struct DeliverySetup {
  bool linear = false;
  size_t packetBytes = 1400;
  uint32_t keyEveryMs = 2000;  // linear; 0 for none
  uint32_t leadMs = 5000;      // packets are sent so long before they are due
  uint32_t jitterMs = 200;     // a missing packet is waited for so long
  bool resends = true;
  NetworkSetup network{};
};

// What a delivery runs between.
struct DeliveryEnds {
  std::function<uint64_t()> now;       // the network's clock, milliseconds, never goes back
  std::function<uint32_t()> position;  // of the presentation, milliseconds
  // Hand over to the plug-in, which may ask for others and may have the
  // presentation jump meanwhile.
  std::function<void(const NetworkPacket&)> packet;
  std::function<void()> lostPacket;
};

struct DeliveryStats {
  uint32_t sent = 0;        // packets, without answers and repeats
  uint32_t lost = 0;        // of them, on the way
  uint32_t doubles = 0;     // dropped by the receiver
  uint32_t reported = 0;    // handed to the plug-in as lost
  uint32_t late = 0;        // handed over as resends, since they came too late
  uint32_t requests = 0;    // of the plug-in
  uint32_t repeats = 0;     // packets at the stream's end that the receiver asked for
  uint32_t resent = 0;      // packets that answered either
  uint32_t resentLost = 0;  // of them, on the way
  uint64_t dummyBytes = 0;  // of the file, filled in since they were missing
  uint32_t lateWrites = 0;  // answers and late packets handed to the plug-in
};

class Delivery {
 public:
  // Copies the file. Nothing is sent yet. Throws std::runtime_error for one that
  // can't be streamed.
  Delivery(const DeliverySetup& setup, std::span<const uint8_t> file, DeliveryEnds ends);
  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;

  const MovieIndex& movie() const { return movie_; }
  StreamHeader Header() const { return packetizer_->Header(); }

  // Sends, answers, receives and hands over all that is due at this moment. True
  // if anything was handed on: then there may be more at once.
  bool RunDue();
  // To be called behind RunDue: asks for what the stream's end lacks, and then
  // ends it. True if it ended just now.
  bool EndIfAllIn();
  // All packets are handed over or given up. A jump may begin anew.
  bool ended() const { return ended_; }

  // When something happens of itself, by the network's clock. kNever says that
  // the receiver's buffer is full: all that was sent has come or was given up.
  uint64_t NextEvent() const;
  static constexpr uint64_t kNever = UINT64_MAX;
  // So far has the position to go until the next packet is sent, milliseconds;
  // kNever if all are out.
  uint64_t UntilNextSend() const;
  // Of what was sent since the beginning or the last jump, so much is here or
  // given up.
  int filledPercent() const;

  // The plug-in asks for something. May be called inside the ends' functions.
  void Request(std::span<const uint8_t> request);
  // The clock has jumped. May be called inside the ends' functions.
  void JumpTo(uint32_t time);

  DeliveryStats stats() const;

 private:
  void SendDue();
  void SendNumbered(const StreamPacket& packet);
  void ForgetArrived();
  void AnswerRequests();
  void HandOver(JitterBuffer::Output output);
  void HandOverResent();

  DeliverySetup setup_;
  DeliveryEnds ends_;
  MovieIndex movie_;
  std::unique_ptr<Packetizer> packetizer_;
  LossyNetwork network_;
  JitterBuffer jitter_;
  ResendGate gate_;
  size_t nextPacket_ = 0;                 // of the packetizer's
  uint32_t numbers_ = 0;                  // given to packets so far
  uint32_t fillsFrom_ = 0;                // the first one since the beginning or the last jump
  std::deque<StreamPacket> outstanding_;  // the last ones sent, neither here nor given up
  std::multimap<uint64_t, std::vector<uint8_t>> requests_;  // by their arrival at the source
  bool repeatsAsked_ = false;
  bool ended_ = false;
  DeliveryStats stats_;
};

}  // namespace vexel::client
