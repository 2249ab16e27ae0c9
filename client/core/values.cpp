#include "client/core/values.h"

#include <algorithm>

#include "base/cqk_buffer.h"
#include "base/cqk_header.h"
#include "base/cqk_packet.h"

namespace vexel::client {

Ref<IZEMBuffer> NewBuffer(std::span<const uint8_t> bytes) {
  const Ref<IZEMBuffer> buffer(new CQKBuffer);
  buffer->Set(bytes.data(), static_cast<UINT32>(bytes.size()));
  return buffer;
}

Ref<IZEMBuffer> NewTextBuffer(std::string_view text) {
  const std::string copy(text);
  return NewBuffer({reinterpret_cast<const uint8_t*>(copy.c_str()), copy.size() + 1});
}

Ref<IZEMPacket> NewPacket(IZEMBuffer* buffer, uint32_t time, uint16_t stream) {
  const Ref<IZEMPacket> packet = NewEmptyPacket();
  packet->Set(buffer, time, stream, 0, 0);
  return packet;
}

Ref<IZEMPacket> NewLostPacket() {
  const Ref<IZEMPacket> packet = NewEmptyPacket();
  packet->SetAsLost();
  return packet;
}

Ref<IZEMPacket> NewEmptyPacket() {
  return Ref<IZEMPacket>(new CQKPacket);
}

Ref<IZEMValues> NewValues() {
  return Ref<IZEMValues>(new CQKHeader);
}

Ref<IZEMValues> NewHeader(uint32_t rendererFlags, uint32_t packets, std::span<const uint8_t> head) {
  const Ref<IZEMValues> header = NewValues();
  header->SetPropertyULONG32("StreamVersion", 0);
  header->SetPropertyULONG32("ContentVersion", 0);
  header->SetPropertyULONG32("RendererFlags", rendererFlags);
  header->SetPropertyULONG32("NumPackets", packets);
  header->SetPropertyBuffer("OpaqueData", NewBuffer(head).get());
  return header;
}

std::span<const uint8_t> BytesOf(IZEMBuffer* buffer) {
  UINT8* data = nullptr;
  UINT32 size = 0;
  if (!buffer || buffer->Get(data, size) < 0 || !data) return {};
  return {data, size};
}

std::string TextOf(IZEMBuffer* buffer) {
  const std::span<const uint8_t> bytes = BytesOf(buffer);
  return std::string(bytes.begin(), std::find(bytes.begin(), bytes.end(), uint8_t{0}));
}

}  // namespace vexel::client
