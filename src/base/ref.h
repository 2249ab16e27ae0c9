// Interface pointers that are kept: one way to replace and to drop them, so that
// counts are right when the new object is the old one, and when the release of
// the old one comes back into the owner.
#pragma once

#include "zem/zem_unknown.h"

namespace vexel {

// `held` becomes `fresh`, either may be null: first a reference to the new
// object, then the old one goes.
template <class T>
void ReplaceRef(T*& held, T* fresh) {
  T* old = held;
  if (fresh) fresh->AddRef();
  held = fresh;
  if (old) old->Release();
}

// Drops what is held. The pointer is null before the object hears of it.
template <class T>
void ReleaseAndClear(T*& held) {
  T* old = held;
  held = nullptr;
  if (old) old->Release();
}

// Asks `object` for the interface `id`, whose class T must be, and holds the
// answer in place of `held`. A failure leaves `held` as it is; a null `object`
// is ZEM_BAD_ARGUMENT.
template <class T>
[[nodiscard]] INT32 QueryAndReplace(IUnknown* object, const ZEMID& id, T*& held) {
  if (!object) return ZEM_BAD_ARGUMENT;
  void* fresh = nullptr;
  INT32 result = object->QueryInterface(id, &fresh);
  if (result < 0) return result;
  if (!fresh) return ZEM_NO_INTERFACE;
  T* old = held;
  held = static_cast<T*>(fresh);
  if (old) old->Release();
  return result;
}

// The whole QueryInterface of an object with one interface of its own: answers
// for `own` and IUnknown with `self`, and with a reference.
template <class T>
INT32 AnswerQuery(T* self, const ZEMID& own, const ZEMID& id, void** out) {
  if (!out) return ZEM_BAD_ARGUMENT;
  if (!ZEMIsEqualID(id, own) && !ZEMIsEqualID(id, IID_IUnknown)) {
    *out = nullptr;
    return ZEM_NO_INTERFACE;
  }
  self->AddRef();
  *out = self;
  return ZEM_OK;
}

// Keeps an object, or null, alive to the end of a block.
template <class T>
class ScopedRef {
 public:
  explicit ScopedRef(T* object) : m_object(object) {
    if (m_object) m_object->AddRef();
  }
  ~ScopedRef() {
    if (m_object) m_object->Release();
  }
  ScopedRef(const ScopedRef&) = delete;
  ScopedRef& operator=(const ScopedRef&) = delete;

 private:
  T* m_object;
};

}  // namespace vexel
