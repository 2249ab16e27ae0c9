// The reassembler between a host in memory and a handler that records.
#pragma once

#include "host/cdescatterizer.h"
#include "host/fake_host.h"
#include "host/wire_packets.h"

namespace vexel::test {

// Receives what the reassembler delivers.
class RecordingHandler final : public IOnPacketHandler {
 public:
  INT32 OnPacket(IZEMPacket* packet, INT32 timeOffset) override {
    messages.push_back({BytesOf(packet), packet->GetTime()});
    offsets += timeOffset;
    return result;
  }
  INT32 AddLateWriteBuffer(IZEMBuffer* buffer) override {
    const Bytes bytes = BytesOf(buffer);
    const UINT32 position = UINT32{bytes[0]} << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3];
    lateWrites.push_back({position, Bytes(bytes.begin() + 4, bytes.end())});
    return result;
  }

  struct Message {
    Bytes bytes;
    UINT32 time;
  };
  struct LateWrite {
    UINT32 position;
    Bytes bytes;
  };
  std::vector<Message> messages;
  std::vector<LateWrite> lateWrites;
  INT32 offsets = 0;
  INT32 result = ZEM_OK;
};

// A buffer of a client that is out of memory: it tells a size and has no bytes.
class HollowBuffer final : public Fake<IZEMBuffer> {
 public:
  HollowBuffer() : Fake(IID_IZEMBuffer) {}
  INT32 Get(UINT8*& data, UINT32& size) override {
    data = nullptr;
    size = GetSize();
    return ZEM_OK;
  }
  INT32 Set(const UINT8*, UINT32) override { return ZEM_OUT_OF_MEMORY; }
  INT32 SetSize(UINT32) override { return ZEM_OUT_OF_MEMORY; }
  UINT32 GetSize() override { return 100; }
  UINT8* GetBuffer() override { return nullptr; }
};

inline Ptr<IZEMPacket> MakeHollowPacket() {
  Ptr<IZEMPacket> packet = MakePacket({});
  packet->Set(New<HollowBuffer>().get(), 0, 0, 0, 0);
  return packet;
}

// A reassembler between a factory and a handler, with a way back.
struct Reassembly {
  explicit Reassembly(bool nonLinear, UINT32 start = 0, UINT32 length = 0) {
    reassembler.SetStream(stream.get(), backChannel.get());
    reassembler.StartHeader(nonLinear, 0);
    reassembler.SetFileStart(start, length);
  }

  INT32 Put(const Bytes& bytes, UINT32 time = 0, INT32 offset = 0) {
    return reassembler.OnPacket(MakePacket(bytes, time).get(), offset);
  }
  // The bytes of the requests that were sent.
  std::vector<Bytes> Requests() const {
    std::vector<Bytes> requests;
    for (const auto& packet : backChannel->sent) requests.push_back(BytesOf(packet.get()));
    return requests;
  }

  Ptr<FakeFactory> factory = New<FakeFactory>();
  Ptr<FakeStream> stream = New<FakeStream>();
  Ptr<FakeBackChannel> backChannel = New<FakeBackChannel>();
  RecordingHandler handler;
  CDeScatterizer reassembler{factory.get(), &handler};
};

}  // namespace vexel::test
