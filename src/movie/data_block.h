// Counted blocks of movie bytes. Tag bodies, action blocks and character data
// are read in place, long after the tag that brought them: everything that
// keeps a pointer into movie bytes holds a reference on their block, and the
// last reference frees them. One thread, so the count is a plain integer.
#pragma once

#include <cstdint>
#include <cstdlib>

namespace vexel {

class DataBlock {
 public:
  // A block of `size` zero bytes with one reference, or null when memory is
  // out or `size` is negative. Large blocks cost pages only where written.
  static DataBlock* Create(int32_t size) {
    if (size < 0) return nullptr;
    auto* block = static_cast<DataBlock*>(calloc(1, sizeof(DataBlock) + static_cast<size_t>(size)));
    if (!block) return nullptr;
    block->m_refs = 1;
    block->m_size = size;
    return block;
  }

  void AddRef() { ++m_refs; }
  void Release() {
    if (--m_refs == 0) free(this);
  }

  uint8_t* Bytes() { return reinterpret_cast<uint8_t*>(this + 1); }
  int32_t Size() const { return m_size; }

 private:
  int32_t m_refs;
  int32_t m_size;
};

// A reference on a block; empty by default.
class DataRef {
 public:
  DataRef() = default;
  // Takes over the reference that the caller holds (as from Create).
  static DataRef Adopt(DataBlock* block) {
    DataRef ref;
    ref.m_block = block;
    return ref;
  }
  DataRef(const DataRef& other) : m_block(other.m_block) {
    if (m_block) m_block->AddRef();
  }
  DataRef(DataRef&& other) noexcept : m_block(other.m_block) { other.m_block = nullptr; }
  DataRef& operator=(DataRef other) noexcept {
    DataBlock* mine = m_block;
    m_block = other.m_block;
    other.m_block = mine;
    return *this;
  }
  ~DataRef() { Reset(); }

  void Reset() {
    if (m_block) m_block->Release();
    m_block = nullptr;
  }

  explicit operator bool() const { return m_block != nullptr; }
  DataBlock* Get() const { return m_block; }
  uint8_t* Bytes() const { return m_block ? m_block->Bytes() : nullptr; }
  int32_t Size() const { return m_block ? m_block->Size() : 0; }

 private:
  DataBlock* m_block = nullptr;
};

// A piece of a block: what a character or a queued action keeps. `bytes` lies
// inside `block`, or is null; `length` is how many bytes may be read there.
struct DataSpan {
  DataRef block;
  uint8_t* bytes = nullptr;
  int32_t length = 0;
};

}  // namespace vexel
