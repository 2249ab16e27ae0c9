// Puts messages into records, and records into packets.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "client/stream/packetizer.h"

namespace vexel::client {

// Records, several to a packet: an 8-byte head and a payload.
//   whole      length (2)                       0 (2)    time (4)
//   fragment   flags and length (2)             id (2)   offset in the message (4)
inline constexpr size_t kRecordHead = 8;
inline constexpr size_t kMaxRecordPayload = 4095;
enum RecordFlags : uint32_t { kRecordFirst = 0x80, kRecordFragment = 0x40, kRecordLast = 0x20 };

class RecordWriter {
 public:
  // Adds packets of at most `packetBytes` to `out`.
  RecordWriter(size_t packetBytes, std::vector<StreamPacket>* out)
      : packetBytes_(packetBytes), out_(out) {}

  // Whole, even if the packet then grows beyond its size. At most
  // kMaxRecordPayload bytes.
  void Whole(std::span<const uint8_t> message, uint32_t time);
  // Bytes [begin, end) of a message, in as many records as it takes.
  void Fragments(uint16_t id, std::span<const uint8_t> message, size_t begin, size_t end,
                 uint32_t time);
  // Whole if it fits a record and a packet, else in fragments.
  void Message(uint16_t id, std::span<const uint8_t> message, uint32_t time);
  // The next record begins a packet.
  void EndPacket() { open_ = false; }

 private:
  void Record(uint32_t flags, uint32_t id, uint32_t timeOrOffset, std::span<const uint8_t> payload,
              uint32_t time);
  size_t LargestPayload() const;

  size_t packetBytes_;
  std::vector<StreamPacket>* out_;
  bool open_ = false;  // the last packet takes more records
};

}  // namespace vexel::client
