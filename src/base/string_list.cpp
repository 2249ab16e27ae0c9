#include "base/string_list.h"

#include <strings.h>

#include <cstring>
#include <new>

namespace vexel {

CQKStringList::~CQKStringList() {
  CQKStringList::RemoveAll();
}

void CQKStringList::RemoveAll() {
  while (!IsEmpty()) delete RemoveHeadString();
}

void* CQKStringList::AddHeadString(const char* text) {
  return AddStringBefore(GetHeadPosition(), text);
}

void* CQKStringList::AddTailString(const char* text) {
  return AddStringBefore(nullptr, text);
}

// In front of position `at`, or at the tail for null.
void* CQKStringList::AddStringBefore(void* at, const char* text) {
  CQKString* entry = new (std::nothrow) CQKString(text);
  if (!entry) return nullptr;
  void* added = at ? InsertBefore(at, entry) : AddTail(entry);
  if (!added) delete entry;
  return added;
}

void* CQKStringList::AddStringAlphabetic(const char* text) {
  if (!text) text = "";
  void* before = GetHeadPosition();
  for (void* at = before; at; before = at) {
    if (strcasecmp(text, *GetNextString(at)) < 0) break;
  }
  return AddStringBefore(before, text);
}

void* CQKStringList::FindString(const char* text, void* start, int caseSensitive) const {
  if (!text) return nullptr;
  void* at = start ? start : GetHeadPosition();
  while (at) {
    void* here = at;
    const char* entry = *GetNextString(at);
    if ((caseSensitive ? strcmp(entry, text) : strcasecmp(entry, text)) == 0) return here;
  }
  return nullptr;
}

// Required: without `caseSensitive` case matters just as much.
void* CQKStringList::FindPrefixSubstring(const char* text, void* start, int caseSensitive) const {
  if (!text) return nullptr;
  size_t length = strlen(text);
  void* at = start ? start : GetHeadPosition();
  while (at) {
    void* here = at;
    const CQKString& entry = *GetNextString(at);
    if (static_cast<size_t>(entry.GetLength()) < length) continue;
    if (caseSensitive ? strncmp(entry, text, length) == 0 : entry.Find(text) == 0) {
      return here;
    }
  }
  return nullptr;
}

}  // namespace vexel
