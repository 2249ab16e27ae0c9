#include "base/byte_queue.h"

#include <gtest/gtest.h>

#include <deque>
#include <random>
#include <vector>

namespace vexel {
namespace {

// Moves the ring's ends `bytes` on, so that what follows wraps.
void Turn(CBigByteQueue& queue, UINT32 bytes) {
  UINT8 byte = 0;
  for (UINT32 i = 0; i < bytes; i++) {
    ASSERT_EQ(queue.Base_EnQueueBytes(&byte, 1), 1u);
    ASSERT_EQ(queue.Base_DeQueueBytes(&byte, 1), 1u);
  }
}

TEST(CBigByteQueue, ForTenBytesTakesExactlyTen) {
  CBigByteQueue queue(10, 1);
  EXPECT_EQ(queue.Base_GetMaxBufferSize(), 11u);
  EXPECT_EQ(queue.EnQueue("0123456789", 10), 10u);
  EXPECT_EQ(queue.EnQueue("a", 1), 0u);
  char out[10];
  EXPECT_EQ(queue.DeQueue(out, 10), 10u);
  EXPECT_EQ(std::string(out, 10), "0123456789");
  EXPECT_TRUE(queue.IsEmpty());
}

TEST(CBigByteQueue, RefusesWholeWhatDoesNotFitWhole) {
  CBigByteQueue queue(10, 1);
  ASSERT_EQ(queue.EnQueue("0123456", 7), 7u);
  EXPECT_EQ(queue.EnQueue("789a", 4), 0u);
  EXPECT_EQ(queue.EnQueue("789", 3), 3u);
  EXPECT_EQ(queue.EnQueue("", 0), 0u);
  EXPECT_EQ(queue.GetQueuedItemCount(), 10u);
}

TEST(CBigByteQueue, WrappedBytesComeOutInOrder) {
  for (UINT32 turn = 0; turn <= 11; turn++) {
    CBigByteQueue queue(10, 1);
    Turn(queue, turn);
    ASSERT_EQ(queue.EnQueue("0123456789", 10), 10u);
    char out[10];
    ASSERT_EQ(queue.Base_PeekBuff(out, 10), 10u);
    ASSERT_EQ(std::string(out, 10), "0123456789") << turn;
    ASSERT_EQ(queue.DeQueue(out, 10), 10u);
    ASSERT_EQ(std::string(out, 10), "0123456789") << turn;
  }
}

TEST(CBigByteQueue, PeeksAtTheLastElementAcrossTheWrap) {
  for (UINT32 turn = 0; turn <= 13; turn++) {
    CBigByteQueue queue(12, 4);
    Turn(queue, turn);
    ASSERT_EQ(queue.EnQueue("aaaabbbbcdef", 3), 12u);
    char out[4];
    ASSERT_EQ(queue.PeekAt(2, out), 4u);
    ASSERT_EQ(std::string(out, 4), "cdef") << turn;
    ASSERT_EQ(queue.PeekAt(3, out), 0u);
  }
}

TEST(CBigByteQueue, RoundsUpToWholeElements) {
  CBigByteQueue queue(10, 4);
  EXPECT_EQ(queue.Base_GetMaxBufferSize(), 13u);
  EXPECT_EQ(queue.GetMaxAvailableElements(), 3u);
  EXPECT_EQ(CBigByteQueue::Base_GranulatedSize(8, 4), 8u);
  EXPECT_EQ(CBigByteQueue::Base_GranulatedSize(9, 4), 12u);
  EXPECT_EQ(CBigByteQueue::Base_GranulatedSize(9, 0), 9u);
}

TEST(CBigByteQueue, AnElementOfNoBytesCountsAsOne) {
  CBigByteQueue queue(3, 0);
  EXPECT_EQ(queue.EnQueue("abc", 3), 3u);
  EXPECT_EQ(queue.GetQueuedItemCount(), 3u);
}

TEST(CBigByteQueue, WithoutAnArrayTakesNothing) {
  CBigByteQueue none;
  CBigByteQueue huge(0xFFFFFFFF, 1);
  for (CBigByteQueue* queue : {&none, &huge}) {
    char byte = 0;
    EXPECT_FALSE(queue->IsQueueValid());
    EXPECT_EQ(queue->EnQueue("a", 1), 0u);
    EXPECT_EQ(queue->DeQueue(&byte, 1), 0u);
    EXPECT_EQ(queue->PeekAt(0, &byte), 0u);
    EXPECT_FALSE(queue->Grow(1));
    queue->FlushQueue();
    EXPECT_TRUE(queue->IsEmpty());
  }
}

TEST(CBigByteQueue, PeekingTakesNoMoreThanThereIs) {
  for (UINT32 turn = 0; turn <= 11; turn++) {
    CBigByteQueue queue(10, 1);
    Turn(queue, turn);
    ASSERT_EQ(queue.EnQueue("abcde", 5), 5u);
    std::vector<char> out(100, 'z');
    ASSERT_EQ(queue.Base_PeekBuff(out.data(), 100), 5u) << turn;
    ASSERT_EQ(out[5], 'z');
  }
}

TEST(CBigByteQueue, CopiesKeepTheFillState) {
  CBigByteQueue queue(6, 1);
  Turn(queue, 5);
  ASSERT_EQ(queue.EnQueue("abcd", 4), 4u);
  CBigByteQueue copy(queue);
  CBigByteQueue assigned;
  assigned = copy;
  char out[4];
  EXPECT_EQ(queue.DeQueue(out, 4), 4u);
  EXPECT_EQ(assigned.GetAvailableElements(), 2u);
  EXPECT_EQ(assigned.DeQueue(out, 4), 4u);
  EXPECT_EQ(std::string(out, 4), "abcd");
  EXPECT_EQ(copy.GetQueuedItemCount(), 4u);
}

TEST(CBigByteGrowingQueue, WithoutALimitDoublesAsNeeded) {
  CBigByteGrowingQueue queue(10, 1);
  std::string text(1000, 'x');
  EXPECT_EQ(queue.EnQueue("0123456789", 10), 10u);
  EXPECT_EQ(queue.EnQueue("a", 1), 1u);
  EXPECT_EQ(queue.Base_GetMaxBufferSize(), 22u);
  EXPECT_EQ(queue.EnQueue(text.data(), 1000), 1000u);
  EXPECT_EQ(queue.Base_GetMaxBufferSize(), 22u * 64);
  char out[11];
  EXPECT_EQ(queue.DeQueue(out, 11), 11u);
  EXPECT_EQ(std::string(out, 11), "0123456789a");
}

TEST(CBigByteGrowingQueue, AtItsLimitRefuses) {
  CBigByteGrowingQueue queue(10, 1);
  queue.SetMaxSize(15);
  EXPECT_EQ(queue.EnQueue("0123456789", 10), 10u);
  EXPECT_EQ(queue.EnQueue("abcd", 4), 4u);
  EXPECT_EQ(queue.Base_GetMaxBufferSize(), 15u);
  EXPECT_EQ(queue.EnQueue("e", 1), 0u);
  EXPECT_EQ(queue.GetQueuedItemCount(), 14u);
}

TEST(CBigByteGrowingQueue, GrowsByOneMoreThanNeededForTheFreeByte) {
  CBigByteGrowingQueue queue(10, 1);
  std::string text(22, 'x');
  // Twice 11 bytes would hold 22, if none had to stay free.
  EXPECT_EQ(queue.EnQueue(text.data(), 22), 22u);
  EXPECT_EQ(queue.Base_GetMaxBufferSize(), 44u);
}

TEST(CBigByteGrowingQueue, DoesNotGrowBeyondTwoGigabytes) {
  CBigByteGrowingQueue queue(10, 4);
  EXPECT_FALSE(queue.Grow(0xFFFFFFFF));
  EXPECT_FALSE(queue.Grow(0x20000000));
  EXPECT_EQ(queue.Base_GetMaxBufferSize(), 13u);
}

TEST(CBigByteGrowingQueue, AgreesWithADequeOverRandomUse) {
  std::mt19937 random(20261121);
  for (int round = 0; round < 200; round++) {
    UINT32 element = 1 + random() % 5;
    CBigByteGrowingQueue queue(random() % 40, element);
    if (random() % 2) queue.SetMaxSize(60 + random() % 200);
    std::deque<UINT8> twin;
    for (int step = 0; step < 200; step++) {
      UINT8 bytes[400];
      UINT32 elements = random() % 12;
      if (random() % 2) {
        for (UINT8& byte : bytes) byte = static_cast<UINT8>(random());
        UINT32 moved = queue.EnQueue(bytes, elements);
        ASSERT_TRUE(moved == 0 || moved == elements * element);
        twin.insert(twin.end(), bytes, bytes + moved);
      } else {
        UINT32 moved = queue.DeQueue(bytes, elements);
        ASSERT_EQ(moved, std::min<size_t>(elements, twin.size() / element) * element);
        for (UINT32 i = 0; i < moved; i++, twin.pop_front()) ASSERT_EQ(bytes[i], twin.front());
      }
      ASSERT_EQ(queue.Base_GetUsedByteCount(), twin.size());
      ASSERT_TRUE(queue.IsQueueValid());
    }
  }
}

}  // namespace
}  // namespace vexel
