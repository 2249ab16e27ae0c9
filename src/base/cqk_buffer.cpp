// The buffer knows two kinds of blocks beside its own 16 bytes: those of the
// allocator that the client may lend, and those of array new. `external` tells
// them apart, so a block goes back where it came from even if the allocator was
// set or left in between.
#include "base/cqk_buffer.h"

#include <cstring>
#include <new>

#include "base/ref.h"

namespace vexel {

IMalloc* CQKBuffer::m_zMallocInterface = nullptr;

CQKBuffer::CQKBuffer()
    : refCount(0), data(nullptr), size(0), allocated(0), external(false), inlineData{} {}

CQKBuffer::CQKBuffer(UINT8* block, UINT32 blockSize)
    : refCount(1),
      data(block),
      size(block ? blockSize : 0),
      allocated(size),
      external(true),
      inlineData{} {}

CQKBuffer::~CQKBuffer() {
  FreeBlock(data, external);
}

INT32 CQKBuffer::QueryInterface(const ZEMID& id, void** out) {
  return AnswerQuery<IZEMBuffer>(this, IID_IZEMBuffer, id, out);
}

UINT32 CQKBuffer::AddRef() {
  return static_cast<UINT32>(++refCount);
}

UINT32 CQKBuffer::Release() {
  INT32 left = --refCount;
  if (left <= 0) delete this;
  return static_cast<UINT32>(left);
}

INT32 CQKBuffer::Get(UINT8*& bytes, UINT32& count) {
  bytes = data;
  count = size;
  return ZEM_OK;
}

// Room for `count` bytes, which may be the object's own; null without memory.
UINT8* CQKBuffer::NewBlock(UINT32 count, bool& fromNew) {
  fromNew = false;
  if (count <= kInlineBytes) return inlineData;
  if (m_zMallocInterface) return static_cast<UINT8*>(m_zMallocInterface->Alloc(count));
  fromNew = true;
  return new (std::nothrow) UINT8[count];
}

void CQKBuffer::FreeBlock(UINT8* block, bool fromNew) {
  if (!block || block == inlineData) return;
  if (fromNew) {
    delete[] block;
  } else if (m_zMallocInterface) {
    m_zMallocInterface->Free(block);
  }
}

INT32 CQKBuffer::Set(const UINT8* bytes, UINT32 count) {
  if (refCount > 1) return ZEM_UNEXPECTED;
  if (!bytes && count > 0) return ZEM_BAD_ARGUMENT;
  if (data == inlineData) data = nullptr;
  if (data && count > allocated) {
    FreeBlock(data, external);
    data = nullptr;
  }
  if (!data) {
    data = NewBlock(count, external);
    if (!data) {
      size = allocated = 0;
      external = false;
      return ZEM_OUT_OF_MEMORY;
    }
    allocated = count;
  }
  if (count > 0) memmove(data, bytes, count);
  size = count;
  return ZEM_OK;
}

INT32 CQKBuffer::SetSize(UINT32 count) {
  if (refCount > 1) return ZEM_UNEXPECTED;
  if (count > allocated) {
    bool fromNew;
    UINT8* block = NewBlock(count, fromNew);
    if (!block) return ZEM_OUT_OF_MEMORY;
    if (size > 0) memmove(block, data, size);
    memset(block + size, 0, count - size);
    FreeBlock(data, external);
    data = block;
    external = fromNew;
    allocated = count;
  }
  size = count;
  return ZEM_OK;
}

CQKBuffer& CQKBuffer::operator=(const char* text) {
  if (text) Set(reinterpret_cast<const UINT8*>(text), static_cast<UINT32>(strlen(text)) + 1);
  return *this;
}

CQKBuffer& CQKBuffer::operator=(const unsigned char* text) {
  return *this = reinterpret_cast<const char*>(text);
}

CQKBuffer& CQKBuffer::operator=(const CQKString& text) {
  Set(reinterpret_cast<const UINT8*>(static_cast<const char*>(text)),
      static_cast<UINT32>(text.GetLength()) + 1);
  return *this;
}

INT32 CQKBuffer::FromCharArray(const char* text, IZEMBuffer** out) {
  return FromCharArray(text, text ? static_cast<UINT32>(strlen(text)) + 1 : 0, out);
}

INT32 CQKBuffer::FromCharArray(const char* text, UINT32 count, IZEMBuffer** out) {
  if (!out) return ZEM_BAD_ARGUMENT;
  *out = nullptr;
  if (!text) return ZEM_FAILED;
  CQKBuffer* made = new (std::nothrow) CQKBuffer;
  if (!made) return ZEM_OUT_OF_MEMORY;
  made->AddRef();
  INT32 result = made->Set(reinterpret_cast<const UINT8*>(text), count);
  if (result < 0) {
    made->Release();
    return result;
  }
  *out = made;
  return ZEM_OK;
}

void CQKBuffer::SetAllocator(IMalloc* allocator) {
  ReplaceRef(m_zMallocInterface, allocator);
}

void CQKBuffer::ReleaseAllocator() {
  ReleaseAndClear(m_zMallocInterface);
}

}  // namespace vexel
