// Packets put together again: both stream layouts, without loss and with one
// packet in twenty lost, in packets of 1,400 bytes.
#include <benchmark/benchmark.h>

#include <random>

#include "host/stream_packets.h"

namespace vexel {
namespace {

using test::Bytes;
using test::Ptr;

constexpr UINT32 kPacket = 1400;
constexpr UINT32 kFileSize = 8 << 20;

// Takes what comes and forgets it, as a client that plays does.
class Sink final : public IOnPacketHandler {
 public:
  INT32 OnPacket(IZEMPacket* packet, INT32) override {
    benchmark::DoNotOptimize(packet);
    return ZEM_OK;
  }
  INT32 AddLateWriteBuffer(IZEMBuffer* buffer) override {
    benchmark::DoNotOptimize(buffer);
    return ZEM_OK;
  }
};

// A file of frames of 0.2 to 4 kB, in packets; about `loss` percent are lost.
std::vector<Ptr<IZEMPacket>> FilePackets(int loss) {
  std::mt19937 random(1);
  test::FramedFile file;
  UINT32 end = 20;
  file.bounds.push_back(end);
  while (end < kFileSize) file.bounds.push_back(end += 200 + random() % 3800);
  file.bytes.resize(end);
  std::vector<Ptr<IZEMPacket>> packets;
  for (UINT32 p = 20; p < end; p += kPacket - 16) {
    const bool lost = static_cast<int>(random() % 100) < loss;
    const UINT32 q = std::min(end, p + kPacket - 16);
    packets.push_back(lost ? test::MakeLostPacket() : test::MakePacket(file.Cut(p, q)));
  }
  return packets;
}

// Messages of 0.1 to 12 kB; those that do not fit a packet come in fragments.
std::vector<Ptr<IZEMPacket>> MessagePackets(int loss) {
  std::mt19937 random(1);
  std::vector<Ptr<IZEMPacket>> packets;
  Bytes packet;
  const auto flush = [&] {
    const bool lost = static_cast<int>(random() % 100) < loss;
    packets.push_back(lost ? test::MakeLostPacket() : test::MakePacket(packet));
    packet.clear();
  };
  UINT32 total = 0;
  for (UINT16 id = 1; total < kFileSize; id = static_cast<UINT16>(id % 60000 + 1)) {
    const UINT32 size = random() % 3 ? 100 + random() % 600 : 1000 + random() % 11000;
    total += size;
    if (size <= 700) {
      if (packet.size() + 8 + size > kPacket) flush();
      test::Append(packet, test::WholeRecord(id, Bytes(size)));
      continue;
    }
    for (UINT32 at = 0; at < size;) {
      if (packet.size() + 100 > kPacket) flush();
      const UINT32 room = kPacket - 8 - static_cast<UINT32>(packet.size());
      const UINT32 n = std::min(room, size - at);
      test::Append(packet, test::FragmentRecord(id, at, Bytes(n), at + n == size));
      at += n;
    }
  }
  flush();
  return packets;
}

void Run(benchmark::State& state, const std::vector<Ptr<IZEMPacket>>& packets, bool nonLinear) {
  const auto factory = test::New<test::FakeFactory>();
  Sink sink;
  for (auto _ : state) {
    CDeScatterizer reassembler(factory.get(), &sink);
    reassembler.StartHeader(nonLinear, 0);
    reassembler.SetFileStart(20, 0);
    for (const auto& packet : packets) reassembler.OnPacket(packet.get(), 0);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(packets.size()) * kPacket);
}

void BM_ReassembleFile(benchmark::State& state) {
  Run(state, FilePackets(static_cast<int>(state.range(0))), true);
}
BENCHMARK(BM_ReassembleFile)->ArgName("loss")->Arg(0)->Arg(5)->Unit(benchmark::kMillisecond);

void BM_ReassembleMessages(benchmark::State& state) {
  Run(state, MessagePackets(static_cast<int>(state.range(0))), false);
}
BENCHMARK(BM_ReassembleMessages)->ArgName("loss")->Arg(0)->Arg(5)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vexel
