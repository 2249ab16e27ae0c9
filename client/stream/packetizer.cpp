#include "client/stream/packetizer.h"

namespace vexel::client {

StreamHeader Packetizer::Header() const {
  StreamHeader header;
  header.duration = movie().duration();
  header.rendererFlags = rendererFlags_;
  header.packets = static_cast<uint32_t>(packets_.size());
  header.opaque.assign(movie().head().begin(), movie().head().end());
  return header;
}

void AppendBig(uint32_t value, int byteCount, std::vector<uint8_t>* out) {
  for (int shift = (byteCount - 1) * 8; shift >= 0; shift -= 8)
    out->push_back(static_cast<uint8_t>(value >> shift));
}

uint32_t BigAt(std::span<const uint8_t> bytes, size_t at, int byteCount) {
  uint32_t value = 0;
  for (int i = 0; i < byteCount; i++) value = value << 8 | bytes[at + static_cast<size_t>(i)];
  return value;
}

}  // namespace vexel::client
