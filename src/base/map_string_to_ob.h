// A map of texts to pointers, which it does not own. Keys are told apart by
// case unless SetCaseSensitive says otherwise.
#pragma once

#include "base/cqk_string.h"
#include "base/map_table.h"

namespace vexel {

struct StringObAssoc {
  StringObAssoc* next;
  UINT32 bucket;
  CQKString key;
  void* value;
};

class CQKMapStringToOb : public MapTable<StringObAssoc> {
 public:
  // Entries are allocated `blockItems` at a time.
  explicit CQKMapStringToOb(INT32 blockItems = 10) : MapTable(blockItems), caseSensitive(true) {}

  // 0: letters A to Z are the same as a to z. To be called while the map is
  // empty: entries stay in the buckets of the rule that they came under.
  void SetCaseSensitive(int sensitive);

  // False without memory.
  bool SetAt(const char* key, void* value);
  bool Lookup(const char* key, void*& value) const;
  // The value under `key`, made null if there is none. Without memory: a place
  // that nobody reads.
  void*& operator[](const char* key);
  bool RemoveKey(const char* key);
  // Give the entry at `at` and move on. Not to be called with a null position;
  // the plain key lives as long as its entry.
  void GetNextAssoc(void*& at, CQKString& key, void*& value) const;
  void GetNextAssoc(void*& at, const char*& key, void*& value) const;
  UINT32 HashKey(const char* key) const;

 private:
  StringObAssoc* Find(const char* key) const;
  StringObAssoc* Make(const char* key);

  bool caseSensitive;
};

}  // namespace vexel
