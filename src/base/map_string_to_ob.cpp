#include "base/map_string_to_ob.h"

#include <strings.h>

#include <cstring>

namespace vexel {

void CQKMapStringToOb::SetCaseSensitive(int sensitive) {
  caseSensitive = sensitive != 0;
}

UINT32 CQKMapStringToOb::HashKey(const char* key) const {
  if (caseSensitive) return vexel::HashKey(key);
  UINT32 hash = 0;
  for (; *key; key++) {
    char c = *key;
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c | 0x20);
    hash = hash * 33 + static_cast<UINT32>(static_cast<signed char>(c));
  }
  return hash;
}

StringObAssoc* CQKMapStringToOb::Find(const char* key) const {
  for (StringObAssoc* at = BucketHead(HashKey(key) % hashTableSize); at; at = at->next) {
    if ((caseSensitive ? strcmp(at->key, key) : strcasecmp(at->key, key)) == 0) return at;
  }
  return nullptr;
}

// The entry of `key`, which is made if need be; null without memory.
StringObAssoc* CQKMapStringToOb::Make(const char* key) {
  StringObAssoc* entry = Find(key);
  if (entry) return entry;
  entry = NewAssoc(HashKey(key) % hashTableSize);
  if (entry) entry->key = key;
  return entry;
}

bool CQKMapStringToOb::SetAt(const char* key, void* value) {
  StringObAssoc* entry = Make(key);
  if (!entry) return false;
  entry->value = value;
  return true;
}

bool CQKMapStringToOb::Lookup(const char* key, void*& value) const {
  StringObAssoc* entry = Find(key);
  if (!entry) return false;
  value = entry->value;
  return true;
}

void*& CQKMapStringToOb::operator[](const char* key) {
  static void* nowhere;
  StringObAssoc* entry = Make(key);
  if (entry) return entry->value;
  nowhere = nullptr;
  return nowhere;
}

bool CQKMapStringToOb::RemoveKey(const char* key) {
  StringObAssoc* entry = Find(key);
  if (entry) RemoveAssoc(entry);
  return entry != nullptr;
}

void CQKMapStringToOb::GetNextAssoc(void*& at, CQKString& key, void*& value) const {
  StringObAssoc* entry = Step(at);
  if (!entry) return;
  key = entry->key;
  value = entry->value;
}

void CQKMapStringToOb::GetNextAssoc(void*& at, const char*& key, void*& value) const {
  StringObAssoc* entry = Step(at);
  if (!entry) return;
  key = entry->key;
  value = entry->value;
}

}  // namespace vexel
