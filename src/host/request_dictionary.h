// When each character was last asked for: a flat table, without allocation.
#pragma once

#include "zem/zem_types.h"

namespace vexel {

class CRequestDictionary {
 public:
  static constexpr INT32 kEntries = 2048;
  // The time of what was never asked for.
  static constexpr UINT32 kNever = 0xFFFFD00D;

  // Appends. Required: a full table forgets what is new, without a word.
  void Store(UINT16 id, UINT32 time) {
    if (m_nCount < kEntries) m_Entries[m_nCount++] = {id, time};
  }
  // The time stored first for this character, or kNever.
  UINT32 When(UINT16 id) const {
    const INT32 i = Find(id);
    return i < 0 ? kNever : m_Entries[i].time;
  }
  // Overwrites the first entry of this character, or stores a new one.
  void ReStore(UINT16 id, UINT32 time) {
    const INT32 i = Find(id);
    if (i < 0) {
      Store(id, time);
    } else {
      m_Entries[i].time = time;
    }
  }
  void RemoveAll() { m_nCount = 0; }

 private:
  struct Entry {
    UINT16 id;
    UINT32 time;  // milliseconds of the stream
  };
  INT32 Find(UINT16 id) const {
    for (INT32 i = 0; i < m_nCount; ++i) {
      if (m_Entries[i].id == id) return i;
    }
    return -1;
  }

  Entry m_Entries[kEntries];
  INT32 m_nCount = 0;
};

}  // namespace vexel
