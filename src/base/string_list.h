// A list of texts: its entries are owned CQKString*.
#pragma once

#include "base/cqk_string.h"
#include "base/simple_list.h"

namespace vexel {

class CQKStringList : public CQKSimpleList {
 public:
  CQKStringList() = default;
  ~CQKStringList() override;
  void RemoveAll() override;

  // The new entry's position, null without memory.
  void* AddHeadString(const char* text);
  void* AddTailString(const char* text);
  // Before the first entry that `text` sorts before, whatever the case.
  void* AddStringAlphabetic(const char* text);
  // The caller's from now on; null if the list is empty.
  CQKString* RemoveHeadString() { return static_cast<CQKString*>(RemoveHead()); }
  CQKString* RemoveTailString() { return static_cast<CQKString*>(RemoveTail()); }

  // The first position, from `start` or the head on, whose entry is `text`, or
  // begins with it; null if there is none.
  void* FindString(const char* text, void* start, int caseSensitive) const;
  void* FindPrefixSubstring(const char* text, void* start, int caseSensitive) const;

  // The entry at `at`, then moving on; null behind the end.
  CQKString* GetNextString(void*& at) const { return static_cast<CQKString*>(GetNext(at)); }

 private:
  void* AddStringBefore(void* at, const char* text);
};

}  // namespace vexel
