// Pools of items.
#include "geometry/chunk_alloc.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <set>
#include <vector>

namespace vexel {
namespace {

TEST(ChunkAlloc, KeepsBlocksBelow65000Bytes) {
  EXPECT_EQ(ChunkAlloc(216, 128, false, 0).itemsPerBlock, 128);
  EXPECT_EQ(ChunkAlloc(1028, 100, false, 0).itemsPerBlock, 62);
  EXPECT_EQ(ChunkAlloc(100000, 4, false, 0).itemsPerBlock, 1);
  EXPECT_EQ(ChunkAlloc(1, 1000000, false, 0).itemSize, 16);
}

TEST(ChunkAlloc, KeepsEmptyBlocksIfAsked) {
  ChunkAlloc pool(32, 4, true, 0);
  void* item = pool.Alloc();
  pool.Free(item);
  ASSERT_NE(pool.firstBlock, nullptr);
  EXPECT_EQ(pool.firstBlock->used, 0);
  pool.FreeEmpties();
  EXPECT_EQ(pool.firstBlock, nullptr);
  EXPECT_EQ(pool.lastBlock, nullptr);
  EXPECT_EQ(pool.freeBlock, nullptr);
}

TEST(ChunkAlloc, GivesBackTheOnlyBlockAndMakesANewOne) {
  ChunkAlloc pool(32, 4, false, 0);
  pool.Free(pool.Alloc());
  EXPECT_EQ(pool.freeBlock, nullptr);
  EXPECT_EQ(pool.firstBlock, nullptr);
  EXPECT_NE(pool.Alloc(), nullptr);
  EXPECT_EQ(pool.firstBlock->index, 1u);
}

TEST(ChunkAlloc, HandsOutTheLastFreedFirst) {
  ChunkAlloc pool(32, 8, false, 0);
  void* items[4];
  for (void*& item : items) item = pool.Alloc();
  pool.Free(items[1]);
  pool.Free(items[3]);
  EXPECT_EQ(pool.Alloc(), items[3]);
  EXPECT_EQ(pool.Alloc(), items[1]);
}

TEST(ChunkAlloc, DoesNotReuseNumbersOfBlocks) {
  ChunkAlloc pool(32, 1, false, 0);
  void* a = pool.Alloc();
  void* b = pool.Alloc();
  EXPECT_EQ(pool.lastBlock->index, 1u);
  pool.Free(b);
  void* c = pool.Alloc();
  EXPECT_EQ(pool.lastBlock->index, 2u);
  pool.Free(a);
  pool.Free(c);
}

TEST(ChunkAlloc, FillsTheOldestBlockWithRoom) {
  ChunkAlloc pool(32, 2, true, 0);
  void* items[6];
  for (void*& item : items) item = pool.Alloc();
  pool.Free(items[5]);
  pool.Free(items[0]);
  EXPECT_EQ(pool.Alloc(), items[0]);
  EXPECT_EQ(pool.Alloc(), items[5]);
}

TEST(ChunkAlloc, KeepsItemsApartThroughRandomUse) {
  ChunkAlloc pool(24, 7, false, 0x1234);
  std::mt19937 random(7);
  std::vector<unsigned char*> items;
  for (int i = 0; i < 20000; ++i) {
    if (items.empty() || random() % 100 < (i < 10000 ? 60u : 45u)) {
      auto* item = static_cast<unsigned char*>(pool.Alloc());
      ASSERT_NE(item, nullptr);
      ASSERT_EQ(reinterpret_cast<uintptr_t>(item) % 8, 0u);
      std::memset(item, static_cast<int>(reinterpret_cast<uintptr_t>(item) >> 3), 24);
      items.push_back(item);
    } else {
      const size_t at = random() % items.size();
      unsigned char* item = items[at];
      for (int k = 0; k < 24; ++k)
        ASSERT_EQ(item[k], static_cast<unsigned char>(reinterpret_cast<uintptr_t>(item) >> 3));
      pool.Free(item);
      items[at] = items.back();
      items.pop_back();
    }
  }
  size_t used = 0;
  for (ChunkBlock* b = pool.firstBlock; b; b = b->next) {
    EXPECT_EQ(b->owner, &pool);
    EXPECT_EQ(b->fillPattern, 0x1234u);
    EXPECT_NE(b->used, 0);
    used += b->used;
  }
  EXPECT_EQ(used, items.size());
}

}  // namespace
}  // namespace vexel
