// The file's own bytes in file order, each packet with the numbers of the
// frames that it touches, so that a receiver can fill a gap with as many frames
// and bytes, and have the true bytes written over them later.
#pragma once

#include "client/stream/packetizer.h"

namespace vexel::client {

// Offsets in the 16-byte head of a packet:
//   position 0 (4)   first frame 4 (2)   last frame 6 (2)   flags 8 (1)
//   head offset 9 (3)   head length 12 (2)   tail start 14 (2)
inline constexpr size_t kNonLinearHead = 16;
inline constexpr size_t kNonLinearFlagsAt = 8;
enum NonLinearFlags : uint32_t {
  kStartsInside = 1,  // the first frame began in an earlier packet
  kEndsInside = 2,    // the last frame goes on in a later one
  kResent = 4,
};

class NonLinearPacketizer : public Packetizer {
 public:
  // Packets of at most `packetBytes`, head included. Throws std::runtime_error
  // for a movie beyond what the heads can say: 65,536 frames of 16 MiB.
  NonLinearPacketizer(const MovieIndex* movie, size_t packetBytes);

  // A range of the file is answered with all frames that overlap it, each whole
  // in a packet of its own, however large: such bytes are written at once.
  std::vector<StreamPacket> Answer(std::span<const uint8_t> request) const override;
  // The file goes on in its order, whatever the clock says.
  Jump JumpTo(uint32_t time, size_t sent) const override;
  bool MakeLate(std::vector<uint8_t>* bytes) const override;

 private:
  StreamPacket Cut(size_t begin, size_t end, uint32_t extraFlags) const;
};

}  // namespace vexel::client
