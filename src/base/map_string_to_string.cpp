#include "base/map_string_to_string.h"

#include <cstring>

namespace vexel {

StringStringAssoc* CQKMapStringToString::Find(const char* key) const {
  for (StringStringAssoc* at = BucketHead(HashKey(key) % hashTableSize); at; at = at->next) {
    if (strcmp(at->key, key) == 0) return at;
  }
  return nullptr;
}

// The entry of `key`, which is made if need be; null without memory.
StringStringAssoc* CQKMapStringToString::Make(const char* key) {
  StringStringAssoc* entry = Find(key);
  if (entry) return entry;
  entry = NewAssoc(HashKey(key) % hashTableSize);
  if (entry) entry->key = key;
  return entry;
}

bool CQKMapStringToString::SetAt(const char* key, const char* value) {
  StringStringAssoc* entry = Make(key);
  if (!entry) return false;
  entry->value = value;
  return true;
}

const char* CQKMapStringToString::Lookup(const char* key) const {
  StringStringAssoc* entry = Find(key);
  return entry ? static_cast<const char*>(entry->value) : nullptr;
}

bool CQKMapStringToString::Lookup(const char* key, CQKString& value) const {
  StringStringAssoc* entry = Find(key);
  if (!entry) return false;
  value = entry->value;
  return true;
}

CQKString& CQKMapStringToString::operator[](const char* key) {
  static CQKString nowhere;
  StringStringAssoc* entry = Make(key);
  if (entry) return entry->value;
  nowhere.Empty();
  return nowhere;
}

bool CQKMapStringToString::RemoveKey(const char* key) {
  StringStringAssoc* entry = Find(key);
  if (entry) RemoveAssoc(entry);
  return entry != nullptr;
}

void CQKMapStringToString::GetNextAssoc(void*& at, CQKString& key, CQKString& value) const {
  StringStringAssoc* entry = Step(at);
  if (!entry) return;
  key = entry->key;
  value = entry->value;
}

}  // namespace vexel
