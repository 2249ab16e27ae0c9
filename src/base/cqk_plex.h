// A chain of raw blocks, from which the maps take their entries many at a time.
#pragma once

#include "zem/zem_types.h"

namespace vexel {

// The head of a block; its items stand right behind, aligned to 16 bytes.
struct alignas(16) CQKPlex {
  CQKPlex* next;
  UINT32 items;
  UINT32 reserved;

  void* Data() { return this + 1; }

  // Pushes a block of `items` * `itemSize` bytes on `head`. Null without memory.
  static CQKPlex* Create(CQKPlex*& head, UINT32 items, UINT32 itemSize);
  // Frees this block and all behind it.
  void FreeDataChain();
};

}  // namespace vexel
