// The plug-in's own IZEMBuffer, made without the host's class factory. Payloads
// of up to 16 bytes live in the object.
#pragma once

#include "base/cqk_string.h"
#include "zem/zem_values.h"

namespace vexel {

class CQKBuffer : public IZEMBuffer {
 public:
  // Empty, with a count of 0: the maker takes the first reference.
  CQKBuffer();
  // Takes over `block`, of array new, with a count of 1.
  CQKBuffer(UINT8* block, UINT32 blockSize);
  CQKBuffer(const CQKBuffer&) = delete;

  INT32 QueryInterface(const ZEMID& id, void** out) override;
  UINT32 AddRef() override;
  UINT32 Release() override;

  INT32 Get(UINT8*& bytes, UINT32& count) override;
  // `bytes` may lie inside this buffer. ZEM_UNEXPECTED with more than one
  // reference; ZEM_OUT_OF_MEMORY leaves the buffer empty.
  INT32 Set(const UINT8* bytes, UINT32 count) override;
  // Within the room that there is, bytes that were cut off come back; beyond it,
  // new bytes are 0. ZEM_UNEXPECTED with more than one reference;
  // ZEM_OUT_OF_MEMORY leaves the buffer as it is.
  INT32 SetSize(UINT32 count) override;
  UINT32 GetSize() override { return size; }
  UINT8* GetBuffer() override { return data; }

  virtual ~CQKBuffer();

  // Texts are set with their terminating zero.
  CQKBuffer& operator=(const char* text);
  CQKBuffer& operator=(const unsigned char* text);
  CQKBuffer& operator=(const CQKString& text);
  CQKBuffer& operator=(const CQKBuffer&) = delete;

  // Make a buffer with one reference for the caller: of a text with its zero, or
  // of `count` bytes as they are. A null text: ZEM_FAILED, `*out` cleared.
  static INT32 FromCharArray(const char* text, IZEMBuffer** out);
  static INT32 FromCharArray(const char* text, UINT32 count, IZEMBuffer** out);

  // The process's allocator of blocks, instead of array new; held with a
  // reference. It is set before buffers are made and stays while they live: what
  // it lent and it was not given back when it left, went with it.
  static void SetAllocator(IMalloc* allocator);
  static void ReleaseAllocator();

 private:
  static constexpr UINT32 kInlineBytes = 16;

  UINT8* NewBlock(UINT32 count, bool& fromNew);
  void FreeBlock(UINT8* block, bool fromNew);

  static IMalloc* m_zMallocInterface;

  INT32 refCount;
  UINT8* data;       // null, `inlineData`, or an owned block
  UINT32 size;       // bytes in use
  UINT32 allocated;  // bytes of room at `data`
  bool external;     // the block is of array new, not of the allocator
  UINT8 inlineData[kInlineBytes];
};

}  // namespace vexel
