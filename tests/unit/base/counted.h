// Objects for tests that tell how many references they have. They live on the
// stack and are never deleted.
#pragma once

#include <cstdlib>

#include "zem/zem.h"

namespace vexel {

// An object of the interface T, which answers for `id` and IUnknown.
template <class T>
class Counted : public T {
 public:
  explicit Counted(const ZEMID& id) : m_id(id) {}

  INT32 QueryInterface(const ZEMID& id, void** out) override {
    if (!ZEMIsEqualID(id, m_id) && !ZEMIsEqualID(id, IID_IUnknown)) {
      *out = nullptr;
      return ZEM_NO_INTERFACE;
    }
    AddRef();
    *out = static_cast<T*>(this);
    return ZEM_OK;
  }
  UINT32 AddRef() override { return static_cast<UINT32>(++refs); }
  UINT32 Release() override { return static_cast<UINT32>(--refs); }

  int refs = 0;

 private:
  const ZEMID& m_id;
};

// Memory that counts what it lends; out of memory while `full`.
class CountedMalloc : public Counted<IMalloc> {
 public:
  CountedMalloc() : Counted(IID_IMalloc) {}
  void* Alloc(UINT32 size) override {
    if (full) return nullptr;
    lent++;
    return malloc(size);
  }
  void* Realloc(void* block, UINT32 size) override { return realloc(block, size); }
  void Free(void* block) override {
    lent--;
    free(block);
  }

  int lent = 0;
  bool full = false;
};

}  // namespace vexel
