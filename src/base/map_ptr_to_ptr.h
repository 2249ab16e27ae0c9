// A map of pointers to pointers. What equal keys are, a descendant may say.
#pragma once

#include "base/map_table.h"

namespace vexel {

struct PtrAssoc {
  PtrAssoc* next;
  UINT32 bucket;
  void* key;
  void* value;
};

class CQKMapPtrToPtr : public MapTable<PtrAssoc> {
 public:
  // Entries are allocated `blockItems` at a time.
  explicit CQKMapPtrToPtr(INT32 blockItems = 10) : MapTable(blockItems) {}

  // False without memory.
  bool SetAt(void* key, void* value);
  bool Lookup(void* key, void*& value) const;
  // The entry, which is a position too; null if there is none.
  PtrAssoc* Lookup(void* key) const;
  // The value under `key`, made null if there is none. Without memory: a place
  // that nobody reads.
  void*& operator[](void* key);
  bool RemoveKey(void* key);
  // The position behind the removed entry; null if that was the last, or there
  // is none.
  void* Remove(void* key);

  // Gives the entry at `at` and moves on. Not to be called with a null position.
  void GetNextAssoc(void*& at, void*& key, void*& value) const;
  void* Begin() const { return FirstFrom(0); }
  void* End() const { return nullptr; }
  uintptr_t HashKey(void* key) const { return ActualHash(key); }

 protected:
  virtual uintptr_t ActualHash(void* key) const { return reinterpret_cast<uintptr_t>(key) >> 4; }
  // 0: equal.
  virtual intptr_t ActualKeyCompare(void* a, void* b) const {
    return static_cast<intptr_t>(reinterpret_cast<uintptr_t>(a) - reinterpret_cast<uintptr_t>(b));
  }
  virtual bool ActualIsKeyValid(void*) const { return true; }

 public:
  virtual ~CQKMapPtrToPtr() = default;

 private:
  UINT32 Bucket(void* key) const { return static_cast<UINT32>(HashKey(key) % hashTableSize); }
  PtrAssoc* Make(void* key);
};

}  // namespace vexel
