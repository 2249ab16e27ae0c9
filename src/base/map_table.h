// What the three maps share: chained buckets, and entries taken from blocks.
// The table never grows by itself; whoever expects many entries says so with
// InitHashTable. Iteration goes bucket by bucket, the newest entry of a bucket
// first.
#pragma once

#include <cstring>
#include <new>

#include "base/cqk_plex.h"

namespace vexel {

// An Assoc has `next`, `bucket`, `key` and `value`. Positions are Assoc
// pointers; -1 stands before the first entry, null behind the last.
template <class Assoc>
class MapTable {
 public:
  explicit MapTable(INT32 blockItems)
      : hashTable(nullptr),
        hashTableSize(kInitialBuckets),
        count(0),
        freeList(nullptr),
        blocks(nullptr),
        blockSize(blockItems > 0 ? blockItems : 1) {}
  ~MapTable() { RemoveAll(); }
  MapTable(const MapTable&) = delete;
  MapTable& operator=(const MapTable&) = delete;

  INT32 GetCount() const { return count; }
  bool IsEmpty() const { return count == 0; }
  UINT32 GetHashTableSize() const { return hashTableSize; }

  // Sets the number of buckets, 0 for the initial one; only an empty map takes
  // it. `allocNow`: makes the table too, instead of at the first insertion.
  void InitHashTable(UINT32 size, bool allocNow = true) {
    if (count > 0) return;
    delete[] hashTable;
    hashTable = nullptr;
    hashTableSize = size > 0 ? size : kInitialBuckets;
    if (allocNow) MakeTable();
  }

  // Ends all entries and frees the blocks and the table.
  void RemoveAll() {
    for (UINT32 bucket = 0; hashTable && bucket < hashTableSize; bucket++) {
      for (Assoc* at = hashTable[bucket]; at;) {
        Assoc* next = at->next;
        at->~Assoc();
        at = next;
      }
    }
    delete[] hashTable;
    hashTable = nullptr;
    count = 0;
    freeList = nullptr;
    if (blocks) blocks->FreeDataChain();
    blocks = nullptr;
  }

  void* GetStartPosition() const { return count > 0 ? StartPosition() : nullptr; }

 protected:
  static constexpr UINT32 kInitialBuckets = 17;

  struct FreeItem {
    FreeItem* next;
  };

  static void* StartPosition() { return reinterpret_cast<void*>(static_cast<intptr_t>(-1)); }

  Assoc* BucketHead(UINT32 bucket) const { return hashTable ? hashTable[bucket] : nullptr; }

  // A new entry at the head of its bucket; null without memory.
  Assoc* NewAssoc(UINT32 bucket) {
    if (!hashTable && !MakeTable()) return nullptr;
    if (!freeList && !AddBlock()) return nullptr;
    FreeItem* item = freeList;
    freeList = item->next;
    Assoc* fresh = new (item) Assoc();
    fresh->bucket = bucket;
    fresh->next = hashTable[bucket];
    hashTable[bucket] = fresh;
    count++;
    return fresh;
  }

  // Takes `entry` out of its bucket.
  void RemoveAssoc(Assoc* entry) {
    Assoc** link = &hashTable[entry->bucket];
    while (*link != entry) link = &(*link)->next;
    *link = entry->next;
    entry->~Assoc();
    freeList = new (entry) FreeItem{freeList};
    count--;
  }

  // The entry behind `at` in the order of iteration; null at the end.
  Assoc* Next(const Assoc* at) const {
    if (at->next) return at->next;
    return FirstFrom(at->bucket + 1);
  }

  // The entry at position `at`, which moves on; null if there is none.
  Assoc* Step(void*& at) const {
    Assoc* entry = at == StartPosition() ? FirstFrom(0) : static_cast<Assoc*>(at);
    at = entry ? Next(entry) : nullptr;
    return entry;
  }

  Assoc* FirstFrom(UINT32 bucket) const {
    for (; hashTable && bucket < hashTableSize; bucket++) {
      if (hashTable[bucket]) return hashTable[bucket];
    }
    return nullptr;
  }

  Assoc** hashTable;     // heads of buckets; made at the first insertion
  UINT32 hashTableSize;  // buckets
  INT32 count;
  FreeItem* freeList;  // ended entries, of `blocks`
  CQKPlex* blocks;
  INT32 blockSize;  // entries of a block

 private:
  bool MakeTable() {
    hashTable = new (std::nothrow) Assoc* [hashTableSize] {};
    return hashTable != nullptr;
  }

  bool AddBlock() {
    CQKPlex* block = CQKPlex::Create(blocks, static_cast<UINT32>(blockSize), sizeof(Assoc));
    if (!block) return false;
    Assoc* items = static_cast<Assoc*>(block->Data());
    for (INT32 i = blockSize; i-- > 0;) freeList = new (items + i) FreeItem{freeList};
    return true;
  }
};

}  // namespace vexel
