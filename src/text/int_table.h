// An owned array of integers that knows its size: what a layout leaves behind
// is read after the text has changed, and an index past the end reads as 0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

namespace vexel {

class IntTable {
 public:
  IntTable() = default;
  ~IntTable() { delete[] m_entries; }
  IntTable(const IntTable&) = delete;
  IntTable& operator=(const IntTable&) = delete;

  // `count` entries of 0 in place of the old ones; false, and empty, without
  // memory.
  bool Reset(int32_t count) {
    delete[] m_entries;
    m_entries = new (std::nothrow) int32_t[static_cast<size_t>(count)]();
    m_count = m_entries ? count : 0;
    return m_entries;
  }
  // Takes over an array of new[].
  void Take(int32_t* entries, int32_t count) {
    delete[] m_entries;
    m_entries = entries;
    m_count = count;
  }

  int32_t Count() const { return m_count; }
  int32_t At(int32_t i) const { return i >= 0 && i < m_count ? m_entries[i] : 0; }
  int32_t* Entries() { return m_entries; }
  const int32_t* Entries() const { return m_entries; }

 private:
  int32_t* m_entries = nullptr;
  int32_t m_count = 0;
};

}  // namespace vexel
