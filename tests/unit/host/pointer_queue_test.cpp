#include "host/pointer_queue.h"

#include <gtest/gtest.h>

#include <memory>

#include "host/fake_host.h"

namespace vexel {
namespace {

using test::MakePacket;
using test::Ptr;

void* Entry(uintptr_t n) {
  return reinterpret_cast<void*>(n);
}

TEST(PointerQueue, GivesBackInOrder) {
  CPointerQueue queue;
  EXPECT_TRUE(queue.IsEmpty());
  for (uintptr_t i = 1; i <= 3; ++i) ASSERT_TRUE(queue.Enque(Entry(i)));
  EXPECT_EQ(queue.GetCount(), 3);
  for (uintptr_t i = 1; i <= 3; ++i) EXPECT_EQ(queue.Deque(), Entry(i));
  EXPECT_TRUE(queue.IsEmpty());
}

TEST(PointerQueue, IsNullWhenEmpty) {
  CPointerQueue queue;
  EXPECT_EQ(queue.Deque(), nullptr);
  ASSERT_TRUE(queue.Enque(Entry(1)));
  queue.Deque();
  EXPECT_EQ(queue.Deque(), nullptr);
  EXPECT_EQ(queue.GetCount(), 0);
}

TEST(PointerQueue, KeepsTheOrderThroughSeveralGrowths) {
  CPointerQueue queue;
  uintptr_t in = 0, out = 0;
  // The head stands far from 0 whenever the ring is full.
  for (int round = 0; round < 5; ++round) {
    for (int i = 0; i < 2000; ++i) ASSERT_TRUE(queue.Enque(Entry(++in)));
    for (int i = 0; i < 700; ++i) ASSERT_EQ(queue.Deque(), Entry(++out));
  }
  EXPECT_EQ(queue.GetCount(), 5 * 1300);
  while (!queue.IsEmpty()) ASSERT_EQ(queue.Deque(), Entry(++out));
  EXPECT_EQ(out, in);
}

TEST(PacketQueue, HandsOnTheReferenceThatItTook) {
  const Ptr<IZEMPacket> packet = MakePacket({1, 2, 3});
  CPacketQueue queue;
  ASSERT_TRUE(queue.Enque(packet.get()));
  EXPECT_EQ(queue.Deque(), packet.get());
  EXPECT_EQ(packet->Release(), 1u);
}

TEST(PacketQueue, ReleasesWhatIsLeft) {
  const Ptr<IZEMPacket> packet = MakePacket({1, 2, 3});
  {
    CPacketQueue queue;
    for (int i = 0; i < 5; ++i) ASSERT_TRUE(queue.Enque(packet.get()));
  }
  packet->AddRef();
  EXPECT_EQ(packet->Release(), 1u);
}

TEST(EventQueue, CopiesEvents) {
  CEventQueue queue;
  _QKxEvent event = {4, Entry(1), Entry(2), Entry(3), 5, 6};
  ASSERT_TRUE(queue.Enque(event));
  ASSERT_TRUE(queue.Enque(event));  // stays: the queue deletes it
  event.event = 99;
  const std::unique_ptr<_QKxEvent> copy(queue.Deque());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->event, 4u);
  EXPECT_EQ(copy->param2, Entry(3));
  EXPECT_EQ(copy->handled, 6);
}

}  // namespace
}  // namespace vexel
