// A movie cut into packets, and the answers to what was lost of them.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "client/stream/movie_index.h"

namespace vexel::client {

struct StreamPacket {
  uint32_t time = 0;  // when it is due, milliseconds of the presentation
  std::vector<uint8_t> bytes;
};

// A stream's packets are the movie file; without it they are messages.
inline constexpr uint32_t kNonLinearRenderer = 1;

// What the plug-in is told before the packets.
struct StreamHeader {
  uint32_t duration = 0;       // milliseconds
  uint32_t rendererFlags = 0;  // kNonLinearRenderer or 0
  uint32_t packets = 0;
  std::vector<uint8_t> opaque;
};

class Packetizer {
 public:
  virtual ~Packetizer() = default;

  StreamHeader Header() const;
  // In the order of sending; their times never go back.
  const std::vector<StreamPacket>& packets() const { return packets_; }
  // Packets for a request of the plug-in's; none for one that can't be met.
  virtual std::vector<StreamPacket> Answer(std::span<const uint8_t> request) const = 0;
  // What to send in place of the rest once the clock has jumped, if `sent`
  // packets are out. Those of `packets()` from the returned `next` on follow.
  struct Jump {
    std::vector<StreamPacket> first;
    size_t next;
  };
  virtual Jump JumpTo(uint32_t time, size_t sent) const = 0;
  // A packet that comes too late to be put in its place, marked so that the
  // plug-in takes it for an answer. False if it is of no use any more.
  virtual bool MakeLate(std::vector<uint8_t>* bytes) const = 0;

 protected:
  Packetizer(const MovieIndex* movie, uint32_t rendererFlags)
      : movie_(movie), rendererFlags_(rendererFlags) {}
  const MovieIndex& movie() const { return *movie_; }
  std::vector<StreamPacket> packets_;

 private:
  const MovieIndex* movie_;  // not owned
  uint32_t rendererFlags_;
};

// Smallest and largest size of a packet, bytes.
inline constexpr size_t kMinPacket = 64;
inline constexpr size_t kMaxPacket = 65535;

// Numbers on the wire are big-endian.
void AppendBig(uint32_t value, int byteCount, std::vector<uint8_t>* out);
uint32_t BigAt(std::span<const uint8_t> bytes, size_t at, int byteCount);

}  // namespace vexel::client
