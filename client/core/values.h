// Buffers, packets and lists of values, made and read by the client. They are
// the plug-in's own classes, compiled into the client.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "client/core/object.h"

namespace vexel::client {

Ref<IZEMBuffer> NewBuffer(std::span<const uint8_t> bytes);
// With a terminating zero.
Ref<IZEMBuffer> NewTextBuffer(std::string_view text);
// Time in milliseconds of the stream.
Ref<IZEMPacket> NewPacket(IZEMBuffer* buffer, uint32_t time, uint16_t stream);
Ref<IZEMPacket> NewLostPacket();
// To be filled.
Ref<IZEMPacket> NewEmptyPacket();
Ref<IZEMValues> NewValues();
// What tells the plug-in of a stream, but for how long it is: its kind, how many
// packets it has (0 for unknown), and what stands in front of the movie's tags.
Ref<IZEMValues> NewHeader(uint32_t rendererFlags, uint32_t packets, std::span<const uint8_t> head);

// The bytes of a buffer, borrowed from it; none for null.
std::span<const uint8_t> BytesOf(IZEMBuffer* buffer);
// Its bytes up to the first zero.
std::string TextOf(IZEMBuffer* buffer);

}  // namespace vexel::client
