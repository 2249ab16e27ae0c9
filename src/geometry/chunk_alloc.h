// Items of one fixed size, handed out from blocks of the heap. Edges, objects,
// colours, runs and ramps are made and dropped by the thousand in every frame;
// here each costs a few pointer moves, and any can go on its own, in any order.
//
// A block is a header followed by slots. The first word of a slot points back to
// its block for good; the item stands behind it, and while the slot is free the
// item's first word links to the next free slot.
#pragma once

#include <cstdint>

namespace vexel {

struct ChunkAlloc;

struct ChunkBlock;

// The words of a free slot; of one in use, the item begins at `next`.
struct ChunkSlot {
  ChunkBlock* block;
  ChunkSlot* next;

  static ChunkSlot* Of(void* item) {
    return reinterpret_cast<ChunkSlot*>(static_cast<char*>(item) - sizeof(ChunkBlock*));
  }
};

struct ChunkBlock {
  uint32_t fillPattern;  // the owner's mark, which nothing reads but a memory dump
  ChunkAlloc* owner;
  ChunkBlock* next;
  ChunkBlock* prev;
  ChunkSlot* freeList;  // first free slot
  uint16_t used;        // items handed out
  uint32_t index;       // number of creation
};

struct ChunkAlloc {
  // Items of size bytes, aligned to 8, count to a block (fewer if the block
  // would pass 65000 bytes). With keepEmpties a block without items stays until
  // FreeEmpties. Takes no memory.
  ChunkAlloc(int size, int count, bool keepEmpties, uint32_t fillPattern);
  // Frees all blocks, whatever they hold, without any action on the items.
  ~ChunkAlloc();
  ChunkAlloc(const ChunkAlloc&) = delete;
  ChunkAlloc& operator=(const ChunkAlloc&) = delete;

  // An item, its memory not cleared; null if there is no memory.
  [[nodiscard]] void* Alloc() {
    if (!freeBlock || !freeBlock->freeList) return AllocElsewhere();
    ChunkSlot* slot = freeBlock->freeList;
    freeBlock->freeList = slot->next;
    ++freeBlock->used;
    return &slot->next;
  }
  // Takes back an item of this allocator, which must not be free already.
  void Free(void* item) {
    ChunkSlot* slot = ChunkSlot::Of(item);
    ChunkBlock* block = slot->block;
    slot->next = block->freeList;
    block->freeList = slot;
    --block->used;
    if (block->used == 0 && !keepEmpties)
      FreeChunk(block);
    else if (!freeBlock || block->index < freeBlock->index)
      freeBlock = block;
  }
  // Gives back all blocks without items.
  void FreeEmpties();

  // Appends a new block and makes it freeBlock; false if there is no memory.
  bool CreateChunk();
  void FreeChunk(ChunkBlock* block);

  // Alloc when freeBlock has no room: the oldest block that has, or a new one.
  void* AllocElsewhere();

  int32_t itemSize;       // bytes of a slot: item, back pointer, rounded up to 8
  int32_t itemsPerBlock;  // at least 1
  uint32_t fillPattern;
  uint32_t nextIndex;  // number of the next block; numbers are not reused
  bool keepEmpties;
  ChunkBlock* firstBlock;  // list in the order of creation
  ChunkBlock* lastBlock;
  ChunkBlock* freeBlock;  // where Alloc looks first; null: nowhere
};

}  // namespace vexel
