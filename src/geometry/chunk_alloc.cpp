// New items come from the oldest block with room, so that later blocks drain and
// can be given back.
#include "geometry/chunk_alloc.h"

#include <cstdlib>
#include <new>

namespace vexel {

static constexpr int32_t kMaxBlockBytes = 65000;
static constexpr int32_t kBackBytes = sizeof(ChunkBlock*);
static constexpr int32_t kMinSlotBytes = kBackBytes + static_cast<int32_t>(sizeof(void*));
static_assert(sizeof(ChunkBlock) % 8 == 0, "slots start aligned");
static_assert(kMaxBlockBytes / 16 <= 0xFFFF, "used counts all slots");

ChunkAlloc::ChunkAlloc(int size, int count, bool keepEmptyBlocks, uint32_t pattern)
    : itemSize((size + kBackBytes + 7) & ~7),
      itemsPerBlock(count),
      fillPattern(pattern),
      nextIndex(0),
      keepEmpties(keepEmptyBlocks),
      firstBlock(nullptr),
      lastBlock(nullptr),
      freeBlock(nullptr) {
  if (itemSize < kMinSlotBytes) itemSize = kMinSlotBytes;
  if (itemsPerBlock > kMaxBlockBytes / itemSize) itemsPerBlock = kMaxBlockBytes / itemSize;
  if (itemsPerBlock < 1) itemsPerBlock = 1;
}

ChunkAlloc::~ChunkAlloc() {
  while (firstBlock) FreeChunk(firstBlock);
}

bool ChunkAlloc::CreateChunk() {
  const size_t slotBytes = static_cast<size_t>(itemSize);
  const size_t count = static_cast<size_t>(itemsPerBlock);
  char* memory = static_cast<char*>(std::malloc(sizeof(ChunkBlock) + slotBytes * count));
  if (!memory) return false;
  char* slots = memory + sizeof(ChunkBlock);
  auto* block =
      new (memory) ChunkBlock{fillPattern, this, nullptr, lastBlock, nullptr, 0, nextIndex++};
  for (size_t i = count; i-- > 0;)
    block->freeList = new (slots + i * slotBytes) ChunkSlot{block, block->freeList};
  if (lastBlock)
    lastBlock->next = block;
  else
    firstBlock = block;
  lastBlock = block;
  freeBlock = block;
  return true;
}

void* ChunkAlloc::AllocElsewhere() {
  // The blocks before freeBlock are full: Free moves it to the oldest with room.
  while (freeBlock && !freeBlock->freeList) freeBlock = freeBlock->next;
  if (!freeBlock && !CreateChunk()) return nullptr;
  return Alloc();
}

void ChunkAlloc::FreeChunk(ChunkBlock* block) {
  if (block->prev)
    block->prev->next = block->next;
  else
    firstBlock = block->next;
  if (block->next)
    block->next->prev = block->prev;
  else
    lastBlock = block->prev;
  if (freeBlock == block) freeBlock = firstBlock;
  std::free(block);
}

void ChunkAlloc::FreeEmpties() {
  for (ChunkBlock* block = firstBlock; block;) {
    ChunkBlock* next = block->next;
    if (block->used == 0) FreeChunk(block);
    block = next;
  }
}

}  // namespace vexel
