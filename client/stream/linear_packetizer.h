// A movie cut into messages that stand alone: each character's definition one,
// each frame one. Whoever misses a character asks for it by its number; whoever
// misses a frame waits for the next key frame.
#pragma once

#include <map>
#include <vector>

#include "client/stream/packetizer.h"

namespace vexel::client {

// The first byte of a message.
enum MessageFlags : uint32_t {
  kFrameMessage = 1,  // and the frame's sequence number in bits 7..4
  kAtOnce = 4,        // of a frame; of an object: it was asked for
  kKeyFrame = 8,
};

class LinearPacketizer : public Packetizer {
 public:
  // Packets of at most `packetBytes`, but for a frame's message of up to 4095
  // bytes, which is not cut: a fragment has no time. A key frame comes every
  // `keyEveryMs`, or never if that is 0; while the stage holds what a key frame
  // can't say, it is put off, by as much again at most.
  LinearPacketizer(const MovieIndex* movie, size_t packetBytes, uint32_t keyEveryMs);

  // Ranges of an object's message.
  std::vector<StreamPacket> Answer(std::span<const uint8_t> request) const override;
  // The objects up to there that are not out, and the frame as a key frame.
  Jump JumpTo(uint32_t time, size_t sent) const override;
  // Objects only: a late frame is no use any more.
  bool MakeLate(std::vector<uint8_t>* bytes) const override;

 private:
  using Bytes = std::vector<uint8_t>;
  struct Object {
    uint16_t id;
    Bytes message;
  };
  struct Frame {
    std::vector<size_t> objects;  // in objects_, defined in this frame
    Bytes controls;               // its own control tags
    Bytes besides;                // those of them that place and remove nothing
    size_t packetsEnd = 0;        // the frame and all before it lie in packets below
  };

  void ReadFrames();
  void AddObject(Frame* frame, const MovieTag& tag);
  void Amend(const MovieTag& tag);
  void AddTables(Frame* frame, const MovieTag& tag);
  Bytes FrameMessage(size_t frame, uint32_t flags, std::span<const uint8_t> body) const;

  size_t packetBytes_;
  std::vector<Object> objects_;
  std::vector<Frame> frames_;
  std::map<uint16_t, size_t> objectOf_;  // by identifier, the last one sent
  uint16_t tablesId_ = 0;                // an identifier that no character has
};

}  // namespace vexel::client
