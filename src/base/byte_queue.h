// A ring of fixed-size elements over one array of bytes. One byte of the array
// always stays free, so that a full ring differs from an empty one.
#pragma once

#include "zem/zem_types.h"

namespace vexel {

class CBigByteQueue {
 public:
  // Without an array: not valid, takes nothing.
  CBigByteQueue();
  // Room for `bytes`, rounded up to whole elements. Without memory the queue is
  // not valid.
  CBigByteQueue(UINT32 bytes, UINT32 bytesPerElement);
  // Copies have the same room, and the same elements in it.
  CBigByteQueue(const CBigByteQueue& other);
  CBigByteQueue& operator=(const CBigByteQueue& other);

  virtual ~CBigByteQueue();
  virtual bool IsQueueValid() const;
  // Both count in elements and return the bytes moved. What doesn't fit whole is
  // refused whole, with 0; reading takes what there is.
  virtual UINT32 DeQueue(void* out, UINT32 elements);
  virtual UINT32 EnQueue(const void* in, UINT32 elements);

  // Copies the element `index`, counted from the next to be read; its size, or 0.
  UINT32 PeekAt(UINT32 index, void* out) const;
  // Most bytes of the array that Grow may reach; 0: no limit.
  void SetMaxSize(UINT32 bytes) { maxSize = bytes; }
  // Doubles the array until `elements` more have room. False: nothing changed.
  bool Grow(UINT32 elements);
  void FlushQueue() { Base_SetEmpty(); }
  bool IsEmpty() const { return head == tail; }

  UINT32 GetQueuedItemCount() const { return Base_GetUsedByteCount() / elementSize; }
  UINT32 GetAvailableElements() const { return Base_GetAvailableBytes() / elementSize; }
  UINT32 GetMaxAvailableElements() const { return Base_GetMaxAvailableBytes() / elementSize; }

  UINT32 Base_EnQueueBytes(const void* in, UINT32 bytes);
  UINT32 Base_DeQueueBytes(void* out, UINT32 bytes);
  // Copies without taking; the bytes copied, at most those there are.
  UINT32 Base_PeekBuff(void* out, UINT32 bytes) const;
  UINT32 Base_GetMaxBufferSize() const { return bufferSize; }
  UINT32 Base_GetUsedByteCount() const;
  UINT32 Base_GetAvailableBytes() const {
    return Base_GetMaxAvailableBytes() - Base_GetUsedByteCount();
  }
  UINT32 Base_GetMaxAvailableBytes() const { return bufferSize > 0 ? bufferSize - 1 : 0; }
  void Base_SetEmpty();
  // The place `offset` bytes behind `p`, inside the ring.
  UINT8* Base_Normalize(UINT8* p, UINT32 offset) const;
  // `bytes`, rounded up to whole elements.
  static uint64_t Base_GranulatedSize(UINT32 bytes, UINT32 bytesPerElement);

 private:
  void CopyOut(UINT32 offset, void* out, UINT32 bytes) const;
  void CopyState(const CBigByteQueue& other);

  UINT8* buffer;     // owned
  UINT8* head;       // the byte before the next to be read
  UINT8* tail;       // the byte written last
  UINT8* bufferEnd;  // one past the array
  UINT32 bufferSize;
  UINT32 elementSize;
  UINT32 maxSize;  // of the array; 0: no limit
};

// Makes room for what would not fit.
class CBigByteGrowingQueue : public CBigByteQueue {
 public:
  CBigByteGrowingQueue(UINT32 bytes, UINT32 bytesPerElement)
      : CBigByteQueue(bytes, bytesPerElement) {}
  ~CBigByteGrowingQueue() override;
  UINT32 EnQueue(const void* in, UINT32 elements) override;
};

}  // namespace vexel
