// Where the reassembler delivers: the thread manager, and behind it the engine.
#pragma once

#include "zem/zem_values.h"

namespace vexel {

// Not counted: whoever delivers knows that the receiver lives longer.
class IOnPacketHandler {
 public:
  // A finished message or a stretch of the movie file, in a packet of its own.
  // Borrowed; its time is in milliseconds of the stream, `timeOffset` is 0 as
  // the reassembler delivers.
  virtual INT32 OnPacket(IZEMPacket* packet, INT32 timeOffset) = 0;
  // Bytes that came too late to go out in order: 4 bytes of file position, big
  // endian, and what belongs there. A failure means "not now": the caller keeps
  // the buffer and may offer it again.
  virtual INT32 AddLateWriteBuffer(IZEMBuffer* buffer) = 0;

 protected:
  ~IOnPacketHandler() = default;
};

}  // namespace vexel
