// A network made up by a seed: packets are lost, doubled, overtaken and late.
#pragma once

#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <vector>

namespace vexel::client {

// A packet on its way.
struct NetworkPacket {
  uint32_t number = 0;    // the sender's, counting; answers to requests have none
  bool isAnswer = false;  // to the plug-in's request
  bool isRepeat = false;  // a numbered one that the receiver asked for again
  uint32_t time = 0;      // when it is due, milliseconds of the presentation
  std::vector<uint8_t> bytes;
};

struct NetworkSetup {
  double loss = 0;            // shares, 0 to 1, of the numbered packets
  std::set<uint32_t> drop{};  // numbers, lost for sure
  double reorder = 0;         // overtaken by one to four packets
  double duplicate = 0;       // arrive a second time
  double answerLoss = 0;      // share of the answers and repeats, which meet no other fault
  uint32_t delayMs = 0;       // one way, each way
  uint64_t seed = 1;
};

// Times are milliseconds of any clock that never goes back.
class LossyNetwork {
 public:
  explicit LossyNetwork(const NetworkSetup& setup) : setup_(setup), random_(setup.seed) {}

  void Send(uint64_t now, NetworkPacket packet);
  // What has arrived, in the order of arrival.
  std::vector<NetworkPacket> Receive(uint64_t now);
  // When something arrives next, kNever for nothing under way.
  uint64_t NextArrival() const;
  static constexpr uint64_t kNever = UINT64_MAX;

  uint32_t sent() const { return sent_; }        // the numbered ones
  uint32_t lost() const { return lost_; }        // of them
  uint32_t answers() const { return answers_; }  // and repeats
  uint32_t answersLost() const { return answersLost_; }

 private:
  struct Held {
    int packetsToWait;
    uint64_t latest;  // goes then at the latest
    NetworkPacket packet;
  };
  bool Happens(double share);
  void Leave(uint64_t now, NetworkPacket packet);
  void ReleaseHeld(uint64_t now, bool packetPassed);

  NetworkSetup setup_;
  std::mt19937_64 random_;
  std::multimap<uint64_t, NetworkPacket> underWay_;  // by arrival; equal ones in order
  std::vector<Held> held_;
  uint32_t sent_ = 0, lost_ = 0, answers_ = 0, answersLost_ = 0;
};

}  // namespace vexel::client
