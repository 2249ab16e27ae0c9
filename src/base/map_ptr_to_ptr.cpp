#include "base/map_ptr_to_ptr.h"

namespace vexel {

PtrAssoc* CQKMapPtrToPtr::Lookup(void* key) const {
  if (!hashTable || !ActualIsKeyValid(key)) return nullptr;
  for (PtrAssoc* at = BucketHead(Bucket(key)); at; at = at->next) {
    if (ActualKeyCompare(at->key, key) == 0) return at;
  }
  return nullptr;
}

bool CQKMapPtrToPtr::Lookup(void* key, void*& value) const {
  PtrAssoc* entry = Lookup(key);
  if (!entry) return false;
  value = entry->value;
  return true;
}

// The entry of `key`, which is made if need be; null without memory and for a
// key that is not valid.
PtrAssoc* CQKMapPtrToPtr::Make(void* key) {
  PtrAssoc* entry = Lookup(key);
  if (entry || !ActualIsKeyValid(key)) return entry;
  entry = NewAssoc(Bucket(key));
  if (entry) entry->key = key;
  return entry;
}

bool CQKMapPtrToPtr::SetAt(void* key, void* value) {
  PtrAssoc* entry = Make(key);
  if (!entry) return false;
  entry->value = value;
  return true;
}

void*& CQKMapPtrToPtr::operator[](void* key) {
  static void* nowhere;
  PtrAssoc* entry = Make(key);
  if (entry) return entry->value;
  nowhere = nullptr;
  return nowhere;
}

bool CQKMapPtrToPtr::RemoveKey(void* key) {
  PtrAssoc* entry = Lookup(key);
  if (entry) RemoveAssoc(entry);
  return entry != nullptr;
}

void* CQKMapPtrToPtr::Remove(void* key) {
  PtrAssoc* entry = Lookup(key);
  if (!entry) return nullptr;
  void* behind = Next(entry);
  RemoveAssoc(entry);
  return behind;
}

void CQKMapPtrToPtr::GetNextAssoc(void*& at, void*& key, void*& value) const {
  PtrAssoc* entry = Step(at);
  if (!entry) return;
  key = entry->key;
  value = entry->value;
}

}  // namespace vexel
