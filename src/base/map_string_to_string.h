// A map of texts to texts; keys are told apart by case.
#pragma once

#include "base/cqk_string.h"
#include "base/map_table.h"

namespace vexel {

struct StringStringAssoc {
  StringStringAssoc* next;
  UINT32 bucket;
  CQKString key;
  CQKString value;
};

class CQKMapStringToString : public MapTable<StringStringAssoc> {
 public:
  // Entries are allocated `blockItems` at a time.
  explicit CQKMapStringToString(INT32 blockItems = 10) : MapTable(blockItems) {}

  // False without memory.
  bool SetAt(const char* key, const char* value);
  bool Lookup(const char* key, CQKString& value) const;
  // The text under `key`, until it is replaced or removed; null if there is none.
  const char* Lookup(const char* key) const;
  // The value under `key`, made empty if there is none. Without memory: a place
  // that nobody reads.
  CQKString& operator[](const char* key);
  bool RemoveKey(const char* key);
  // Gives the entry at `at` and moves on. Not to be called with a null position.
  void GetNextAssoc(void*& at, CQKString& key, CQKString& value) const;
  UINT32 HashKey(const char* key) const { return vexel::HashKey(key); }

 private:
  StringStringAssoc* Find(const char* key) const;
  StringStringAssoc* Make(const char* key);
};

}  // namespace vexel
