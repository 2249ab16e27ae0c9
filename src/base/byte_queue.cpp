#include "base/byte_queue.h"

#include <cstring>
#include <new>

namespace vexel {

namespace {

constexpr uint64_t kMaxBytes = 0x7FFFFFFF;

}  // namespace

CBigByteQueue::CBigByteQueue()
    : buffer(nullptr),
      head(nullptr),
      tail(nullptr),
      bufferEnd(nullptr),
      bufferSize(0),
      elementSize(1),
      maxSize(0) {}

CBigByteQueue::CBigByteQueue(UINT32 bytes, UINT32 bytesPerElement) : CBigByteQueue() {
  if (bytesPerElement > 0) elementSize = bytesPerElement;
  uint64_t wanted = Base_GranulatedSize(bytes, elementSize) + 1;
  if (wanted > kMaxBytes) return;
  buffer = new (std::nothrow) UINT8[wanted];
  if (!buffer) return;
  bufferSize = static_cast<UINT32>(wanted);
  bufferEnd = buffer + bufferSize;
  Base_SetEmpty();
}

CBigByteQueue::CBigByteQueue(const CBigByteQueue& other) : CBigByteQueue() {
  CopyState(other);
}

CBigByteQueue& CBigByteQueue::operator=(const CBigByteQueue& other) {
  if (this != &other) CopyState(other);
  return *this;
}

CBigByteQueue::~CBigByteQueue() {
  delete[] buffer;
}

void CBigByteQueue::CopyState(const CBigByteQueue& other) {
  delete[] buffer;
  elementSize = other.elementSize;
  maxSize = other.maxSize;
  bufferSize = other.bufferSize;
  buffer = bufferSize > 0 ? new (std::nothrow) UINT8[bufferSize] : nullptr;
  if (!buffer) {
    bufferSize = 0;
    head = tail = bufferEnd = nullptr;
    return;
  }
  memcpy(buffer, other.buffer, bufferSize);
  bufferEnd = buffer + bufferSize;
  head = buffer + (other.head - other.buffer);
  tail = buffer + (other.tail - other.buffer);
}

bool CBigByteQueue::IsQueueValid() const {
  return buffer && bufferSize > 0 && elementSize > 0 && bufferEnd == buffer + bufferSize &&
         head >= buffer && head < bufferEnd && tail >= buffer && tail < bufferEnd;
}

UINT32 CBigByteQueue::DeQueue(void* out, UINT32 elements) {
  UINT32 queued = GetQueuedItemCount();
  return Base_DeQueueBytes(out, (elements < queued ? elements : queued) * elementSize);
}

UINT32 CBigByteQueue::EnQueue(const void* in, UINT32 elements) {
  if (elements > GetAvailableElements()) return 0;
  return Base_EnQueueBytes(in, elements * elementSize);
}

UINT32 CBigByteQueue::PeekAt(UINT32 index, void* out) const {
  if (index >= GetQueuedItemCount()) return 0;
  CopyOut(index * elementSize, out, elementSize);
  return elementSize;
}

bool CBigByteQueue::Grow(UINT32 elements) {
  if (!IsQueueValid() || bufferSize == maxSize) return false;
  UINT32 used = Base_GetUsedByteCount();
  // One more, for the byte that stays free.
  uint64_t needed = used + static_cast<uint64_t>(elements) * elementSize + 1;
  if (needed > kMaxBytes || (maxSize > 0 && needed > maxSize)) return false;
  uint64_t newSize = static_cast<uint64_t>(bufferSize) * 2;
  while (newSize < needed) newSize *= 2;
  if (maxSize > 0 && newSize > maxSize) newSize = maxSize;
  UINT8* fresh = newSize <= kMaxBytes ? new (std::nothrow) UINT8[newSize] : nullptr;
  if (!fresh) return false;
  Base_DeQueueBytes(fresh + 1, used);
  delete[] buffer;
  buffer = head = fresh;
  tail = fresh + used;
  bufferSize = static_cast<UINT32>(newSize);
  bufferEnd = buffer + bufferSize;
  return true;
}

UINT32 CBigByteQueue::Base_EnQueueBytes(const void* in, UINT32 bytes) {
  if (bytes == 0 || bytes > Base_GetAvailableBytes()) return 0;
  UINT8* from = Base_Normalize(tail, 1);
  UINT32 first = static_cast<UINT32>(bufferEnd - from);
  if (first > bytes) first = bytes;
  memcpy(from, in, first);
  if (first < bytes) memcpy(buffer, static_cast<const UINT8*>(in) + first, bytes - first);
  tail = Base_Normalize(tail, bytes);
  return bytes;
}

UINT32 CBigByteQueue::Base_DeQueueBytes(void* out, UINT32 bytes) {
  UINT32 taken = Base_PeekBuff(out, bytes);
  if (taken > 0) head = Base_Normalize(head, taken);
  return taken;
}

UINT32 CBigByteQueue::Base_PeekBuff(void* out, UINT32 bytes) const {
  UINT32 used = Base_GetUsedByteCount();
  if (bytes > used) bytes = used;
  CopyOut(0, out, bytes);
  return bytes;
}

// Copies from `offset` bytes behind the next to be read; all of it is there.
void CBigByteQueue::CopyOut(UINT32 offset, void* out, UINT32 bytes) const {
  if (bytes == 0) return;
  const UINT8* from = Base_Normalize(head, offset + 1);
  UINT32 first = static_cast<UINT32>(bufferEnd - from);
  if (first > bytes) first = bytes;
  memcpy(out, from, first);
  if (first < bytes) memcpy(static_cast<UINT8*>(out) + first, buffer, bytes - first);
}

UINT32 CBigByteQueue::Base_GetUsedByteCount() const {
  return static_cast<UINT32>(tail >= head ? tail - head : bufferSize - (head - tail));
}

void CBigByteQueue::Base_SetEmpty() {
  head = tail = buffer ? bufferEnd - 1 : nullptr;
}

UINT8* CBigByteQueue::Base_Normalize(UINT8* p, UINT32 offset) const {
  uint64_t place = static_cast<uint64_t>(p - buffer) + offset;
  while (place >= bufferSize) place -= bufferSize;
  return buffer + place;
}

uint64_t CBigByteQueue::Base_GranulatedSize(UINT32 bytes, UINT32 bytesPerElement) {
  if (bytesPerElement == 0) return bytes;
  uint64_t elements = (static_cast<uint64_t>(bytes) + bytesPerElement - 1) / bytesPerElement;
  return elements * bytesPerElement;
}

CBigByteGrowingQueue::~CBigByteGrowingQueue() = default;

UINT32 CBigByteGrowingQueue::EnQueue(const void* in, UINT32 elements) {
  if (GetAvailableElements() < elements) Grow(elements);
  return CBigByteQueue::EnQueue(in, elements);
}

}  // namespace vexel
