#include "client/stream/record_writer.h"

#include <algorithm>

namespace vexel::client {

size_t RecordWriter::LargestPayload() const {
  return std::min(kMaxRecordPayload, packetBytes_ - kRecordHead);
}

void RecordWriter::Record(uint32_t flags, uint32_t id, uint32_t timeOrOffset,
                          std::span<const uint8_t> payload, uint32_t time) {
  if (open_ && out_->back().bytes.size() + kRecordHead + payload.size() > packetBytes_)
    open_ = false;
  if (!open_) out_->push_back({time, {}});
  open_ = true;
  std::vector<uint8_t>* bytes = &out_->back().bytes;
  AppendBig(flags << 8 | static_cast<uint32_t>(payload.size()), 2, bytes);
  AppendBig(id, 2, bytes);
  AppendBig(timeOrOffset, 4, bytes);
  bytes->insert(bytes->end(), payload.begin(), payload.end());
}

void RecordWriter::Whole(std::span<const uint8_t> message, uint32_t time) {
  Record(0, 0, time, message, time);
}

void RecordWriter::Fragments(uint16_t id, std::span<const uint8_t> message, size_t begin,
                             size_t end, uint32_t time) {
  for (size_t at = begin; at < end;) {
    const size_t size = std::min(end - at, LargestPayload());
    const uint32_t flags = kRecordFragment | (at == 0 ? kRecordFirst : 0u) |
                           (at + size == message.size() ? kRecordLast : 0u);
    Record(flags, id, static_cast<uint32_t>(at), message.subspan(at, size), time);
    at += size;
  }
}

void RecordWriter::Message(uint16_t id, std::span<const uint8_t> message, uint32_t time) {
  if (message.size() <= LargestPayload()) {
    Whole(message, time);
  } else {
    Fragments(id, message, 0, message.size(), time);
  }
}

}  // namespace vexel::client
