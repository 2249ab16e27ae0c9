#include "base/cqk_plex.h"

#include <cstdlib>

namespace vexel {

CQKPlex* CQKPlex::Create(CQKPlex*& head, UINT32 items, UINT32 itemSize) {
  uint64_t bytes = static_cast<uint64_t>(items) * itemSize;
  if (bytes > 0x7FFFFFFF) return nullptr;
  CQKPlex* block = static_cast<CQKPlex*>(malloc(sizeof(CQKPlex) + static_cast<size_t>(bytes)));
  if (!block) return nullptr;
  block->next = head;
  block->items = items;
  block->reserved = 0;
  head = block;
  return block;
}

void CQKPlex::FreeDataChain() {
  CQKPlex* block = this;
  while (block) {
    CQKPlex* next = block->next;
    free(block);
    block = next;
  }
}

}  // namespace vexel
