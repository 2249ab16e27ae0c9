// Waiting frames.
#include "host/frame_ring.h"

#include <gtest/gtest.h>

#include "host/fake_host.h"

namespace vexel::test {
namespace {

bool Push(FrameRing& ring, UINT32 time) {
  return ring.Push(MakePacket({1}, time).get());
}

UINT32 TakeTime(FrameRing& ring) {
  return Ptr<IZEMPacket>::Adopt(ring.Take())->GetTime();
}

TEST(FrameRing, WithoutARingNoFrameIsTaken) {
  FrameRing ring;
  EXPECT_FALSE(Push(ring, 1));
  EXPECT_EQ(ring.Front(), nullptr);
  EXPECT_EQ(ring.Take(), nullptr);
}

TEST(FrameRing, FramesComeOutInTheirOrder) {
  FrameRing ring;
  ring.Create();
  for (UINT32 i = 0; i < 5; ++i) EXPECT_TRUE(Push(ring, i));
  EXPECT_EQ(ring.Count(), 5u);
  for (UINT32 i = 0; i < 5; ++i) {
    EXPECT_EQ(ring.Front()->GetTime(), i);
    EXPECT_EQ(TakeTime(ring), i);
  }
  EXPECT_EQ(ring.Front(), nullptr);
}

TEST(FrameRing, FrameTooManyDoublesTheRing) {
  FrameRing ring;
  ring.Create();
  for (UINT32 i = 0; i < 2048; ++i) EXPECT_TRUE(Push(ring, i));
  EXPECT_EQ(ring.Size(), 2048u);
  EXPECT_TRUE(Push(ring, 2048));
  EXPECT_EQ(ring.Size(), 4096u);
  for (UINT32 i = 0; i <= 2048; ++i) EXPECT_EQ(TakeTime(ring), i);
}

// The mask changes under running counts: entries are to be found again wherever
// the ring happens to start, also behind an odd number of turns.
TEST(FrameRing, GrowthKeepsTheOrderAtEveryReadCount) {
  for (UINT32 before : {1u, 7u, 2047u, 2048u, 2049u, 3000u, 4095u, 6144u, 6145u}) {
    FrameRing ring;
    ring.Create();
    for (UINT32 i = 0; i < before; ++i) {
      EXPECT_TRUE(Push(ring, 0));
      TakeTime(ring);
    }
    for (UINT32 i = 0; i < 9000; ++i) ASSERT_TRUE(Push(ring, i)) << before;
    EXPECT_EQ(ring.Size(), 16384u);
    for (UINT32 i = 0; i < 9000; ++i) ASSERT_EQ(TakeTime(ring), i) << before;
  }
}

TEST(FrameRing, GrowthEndsAt65536Frames) {
  FrameRing ring;
  ring.Create();
  const Ptr<IZEMPacket> packet = MakePacket({1});
  for (int i = 0; i < 65536; ++i) ASSERT_TRUE(ring.Push(packet.get()));
  EXPECT_FALSE(ring.Push(packet.get()));
  EXPECT_EQ(ring.Count(), 65536u);
  ring.Clear();
  EXPECT_EQ(ring.Count(), 0u);
  EXPECT_TRUE(ring.Push(packet.get()));
}

TEST(FrameRing, WhatWaitsIsLetGo) {
  Ptr<IZEMPacket> packet = MakePacket({1});
  const auto references = [&packet] {
    const UINT32 count = packet->AddRef();
    packet->Release();
    return count - 1;
  };
  {
    FrameRing ring;
    ring.Create();
    EXPECT_TRUE(ring.Push(packet.get()));
    EXPECT_EQ(references(), 2u);
    ring.Create();
    EXPECT_EQ(references(), 1u);
    EXPECT_TRUE(ring.Push(packet.get()));
  }
  EXPECT_EQ(references(), 1u);
}

}  // namespace
}  // namespace vexel::test
