// The reassembler beside its plain twin, over packets by seed.
#include <gtest/gtest.h>

#include <random>

#include "host/plain_reassembly.h"

namespace vexel {
namespace {

using test::Append;
using test::Bytes;
using test::FragmentRecord;
using test::TwinReassembly;
using test::WholeRecord;

struct Random {
  explicit Random(unsigned seed) : engine(seed) {}
  UINT32 Below(UINT32 n) { return static_cast<UINT32>(engine() % n); }
  bool OneIn(UINT32 n) { return Below(n) == 0; }
  Bytes Fill(UINT32 n) {
    Bytes bytes(n);
    for (UINT8& byte : bytes) byte = static_cast<UINT8>(engine());
    return bytes;
  }
  void Damage(Bytes& bytes) {
    if (!bytes.empty() && OneIn(6))
      bytes[Below(static_cast<UINT32>(bytes.size()))] ^= static_cast<UINT8>(1 + Below(255));
    if (OneIn(20)) bytes.resize(Below(static_cast<UINT32>(bytes.size()) + 1));
  }
  std::mt19937 engine;
};

TEST(ReassemblyTwin, LinearPacketsGiveTheSame) {
  size_t messages = 0, requests = 0;
  for (unsigned seed = 1; seed <= 400; ++seed) {
    Random random(seed);
    TwinReassembly twin(false, 0, 0);
    for (int i = 0; i < 60; ++i) {
      Bytes packet;
      for (UINT32 n = random.Below(5); n-- > 0;) {
        // Few messages of few parts, so that they complete and collide.
        const UINT32 slot = random.Below(6);
        if (slot == 0) {
          Append(packet, WholeRecord(random.Below(1000), random.Fill(random.Below(30))));
          continue;
        }
        const UINT16 id = static_cast<UINT16>(slot < 4 ? slot : 59996 + slot);
        const UINT32 part = random.Below(random.OneIn(4) ? 20 : 4);
        const UINT32 size = random.OneIn(8) ? random.Below(20) : 8;
        Append(packet,
               FragmentRecord(id, part * 8, random.Fill(size), part == 3 || random.OneIn(20)));
      }
      random.Damage(packet);
      ASSERT_TRUE(twin.Put(packet, 0, static_cast<INT32>(random.Below(200)) - 100)) << seed;
      if (random.OneIn(4))
        twin.RequestCharacter(static_cast<UINT16>(random.Below(5)), random.Below(30000));
    }
    ASSERT_TRUE(twin.Agree()) << "seed " << seed << ": " << twin.what;
    messages += twin.plain.messages.size();
    requests += twin.plain.requests.size();
  }
  EXPECT_GT(messages, 5000u);
  EXPECT_GT(requests, 4000u);
}

TEST(ReassemblyTwin, NonLinearPacketsGiveTheSame) {
  size_t messages = 0, lateWrites = 0;
  for (unsigned seed = 1; seed <= 400; ++seed) {
    Random random(seed);
    test::FramedFile file;
    UINT32 end = 20;
    file.bounds.push_back(end);
    for (int i = 0; i < 12; ++i) file.bounds.push_back(end += 2 + random.Below(60));
    file.bytes = random.Fill(end);
    TwinReassembly twin(true, 20, random.OneIn(2) ? end : end + 3000);
    UINT32 p = 20;
    for (int i = 0; i < 60; ++i) {
      // Mostly onward; some lost, doubled, swapped or sent again.
      if (random.OneIn(6) || p >= end) p = 20 + random.Below(end - 20);
      const UINT32 q = p + 1 + random.Below(std::min(end - p, 50u));
      Bytes packet = file.Cut(p, q, random.OneIn(3));
      if (random.OneIn(3)) random.Damage(packet);
      // A position far away would only cost time.
      if (packet.size() > 1) packet[0] = packet[1] = 0;
      if (!random.OneIn(5)) {
        ASSERT_TRUE(twin.Put(packet, random.Below(2000), static_cast<INT32>(random.Below(200))))
            << seed;
      }
      p = q;
    }
    ASSERT_TRUE(twin.Agree()) << "seed " << seed << ": " << twin.what;
    messages += twin.plain.messages.size();
    lateWrites += twin.plain.lateWrites.size();
  }
  EXPECT_GT(messages, 4000u);
  EXPECT_GT(lateWrites, 2000u);
}

TEST(ReassemblyTwin, MessagesThatFillTheBudgetGiveTheSame) {
  for (unsigned seed = 1; seed <= 6; ++seed) {
    Random random(seed);
    TwinReassembly twin(false, 0, 0);
    for (int i = 0; i < 60; ++i) {
      const UINT16 id = static_cast<UINT16>(1 + random.Below(12));
      const UINT32 offset = random.OneIn(3) ? random.Below(100) : random.Below(1 << 24);
      const Bytes record = FragmentRecord(id, offset, random.Fill(5), random.OneIn(9));
      ASSERT_TRUE(twin.Put(record, 0, 0)) << seed;
      twin.RequestCharacter(id, static_cast<UINT32>(i) * 20000);
    }
    ASSERT_TRUE(twin.Agree()) << "seed " << seed << ": " << twin.what;
  }
}

}  // namespace
}  // namespace vexel
