// Memory and sharing of CQKString. A block is a CStringData and its characters;
// it is shared by whoever copied the string, and copied by who writes to it.
#include "base/cqk_string.h"

#include <cstring>
#include <new>

namespace vexel {

namespace {

constexpr INT32 kReserve = 16;
// From this length on the reserve no longer grows with the text.
constexpr INT32 kLongText = 2048;

struct EmptyText {
  CStringData header;
  char terminator;
};
EmptyText g_empty = {{kStaticRefs, 0, 0}, 0};

}  // namespace

char* g_emptyText = g_empty.header.Characters();

// A new block in place of `data`, which is not released; false leaves all.
bool CQKString::NewBuffer(INT32 length, int64_t room) {
  if (room > 0x7FFFFFFF - static_cast<int64_t>(sizeof(CStringData)) - 1) return false;
  char* memory = new (std::nothrow) char[sizeof(CStringData) + static_cast<size_t>(room) + 1];
  if (!memory) return false;
  CStringData* block = new (memory) CStringData{1, length, static_cast<INT32>(room)};
  data = block->Characters();
  data[length] = data[room] = 0;
  ForgetField();
  return true;
}

// With room to grow: twice the length of a short text, 16 more of a long one.
bool CQKString::OptAllocBuffer(INT32 length) {
  int64_t x = length > kReserve ? length : kReserve;
  return NewBuffer(length, x > kReserve && x < kLongText ? 2 * x : x + kReserve);
}

bool CQKString::ExactAllocBuffer(INT32 length) {
  if (length > 0) return NewBuffer(length, length);
  Init();
  return true;
}

// Makes the unshared memory of `length` characters that AssignCopy fills. `old`
// is for the caller to release once it is filled: its characters may be the
// source. Null: the memory is the same as before.
bool CQKString::AllocBeforeWrite(INT32 length, CStringData*& old) {
  old = nullptr;
  if (Header()->refs <= 1 && length <= Header()->allocLength) return true;
  CStringData* block = Header();
  if (!OptAllocBuffer(length)) return false;
  old = block;
  return true;
}

bool CQKString::CopyBeforeWrite() {
  ForgetField();
  if (Header()->refs <= 1) return true;
  return MoveToExact(Header()->length);
}

// To an unshared block of just `room` characters, not below the length.
bool CQKString::MoveToExact(INT32 room) {
  CStringData* old = Header();
  if (!ExactAllocBuffer(room)) return false;
  if (room > 0) {
    memcpy(data, old->Characters(), static_cast<size_t>(old->length));
    Header()->length = old->length;
    data[old->length] = 0;
  }
  SafeRelease(old);
  return true;
}

void CQKString::AllocCopy(CQKString& target, INT32 count, INT32 first) const {
  if (count <= 0 || !target.OptAllocBuffer(count)) return;
  memcpy(target.data, data + first, static_cast<size_t>(count));
}

void CQKString::AssignCopy(INT32 count, const char* source) {
  ForgetField();
  CStringData* old;
  if (!AllocBeforeWrite(count, old)) return;
  if (data == AfxGetEmptyString()) return;
  if (count > 0) memmove(data, source, static_cast<size_t>(count));
  data[count] = 0;
  Header()->length = count;
  SafeRelease(old);
}

// Of a string that has nothing yet.
void CQKString::ConcatCopy(INT32 count1, const char* source1, INT32 count2, const char* source2) {
  int64_t length = static_cast<int64_t>(count1) + count2;
  if (length == 0 || length > 0x7FFFFFFF || !OptAllocBuffer(static_cast<INT32>(length))) return;
  if (count1 > 0) memcpy(data, source1, static_cast<size_t>(count1));
  if (count2 > 0) memcpy(data + count1, source2, static_cast<size_t>(count2));
}

// Of a text that is shared or has no room.
void CQKString::ConcatElsewhere(INT32 count, const char* source) {
  ForgetField();
  CStringData* block = Header();
  // The source may lie in the old block, which stays until all is copied.
  ConcatCopy(block->length, block->Characters(), count, source);
  if (Header() != block) SafeRelease(block);
}

CQKString::CQKString(const char* text) {
  Init();
  AssignCopy(TextLength(text), text);
}

CQKString::CQKString(char c, int count) {
  Init();
  if (count > 0 && OptAllocBuffer(count)) memset(data, c, static_cast<size_t>(count));
}

CQKString::CQKString(const char* text, int count) {
  Init();
  if (text && count > 0) AssignCopy(count, text);
}

CQKString& CQKString::operator=(const CQKString& other) {
  if (data == other.data) return *this;
  CStringData* block = other.Header();
  bool counted = Header()->refs >= 0 || data == AfxGetEmptyString();
  if (!counted || block->refs < 0) {
    AssignCopy(block->length, block->Characters());
  } else {
    block->refs++;
    Release();
    data = block->Characters();
  }
  return *this;
}

CQKString& CQKString::operator=(const char* text) {
  AssignCopy(TextLength(text), text);
  return *this;
}

CQKString& CQKString::operator=(char c) {
  AssignCopy(1, &c);
  return *this;
}

CQKString operator+(const CQKString& a, const CQKString& b) {
  CQKString sum;
  sum.ConcatCopy(a.GetLength(), a.data, b.GetLength(), b.data);
  return sum;
}

CQKString operator+(const CQKString& a, const char* b) {
  CQKString sum;
  sum.ConcatCopy(a.GetLength(), a.data, CQKString::TextLength(b), b);
  return sum;
}

CQKString operator+(const char* a, const CQKString& b) {
  CQKString sum;
  sum.ConcatCopy(CQKString::TextLength(a), a, b.GetLength(), b.data);
  return sum;
}

CQKString operator+(const CQKString& a, char b) {
  CQKString sum;
  sum.ConcatCopy(a.GetLength(), a.data, 1, &b);
  return sum;
}

CQKString operator+(char a, const CQKString& b) {
  CQKString sum;
  sum.ConcatCopy(1, &a, b.GetLength(), b.data);
  return sum;
}

char* CQKString::GetBuffer(int room) {
  ForgetField();
  CStringData* block = Header();
  if (block->refs <= 1 && room <= block->allocLength) return data;
  return MoveToExact(room > block->length ? room : block->length) ? data : nullptr;
}

void CQKString::ReleaseBuffer(int newLength) {
  if (!CopyBeforeWrite() || data == AfxGetEmptyString()) return;
  CStringData* block = Header();
  size_t room = static_cast<size_t>(block->allocLength);
  if (newLength < 0) newLength = static_cast<int>(strnlen(data, room));
  if (newLength > block->allocLength) newLength = block->allocLength;
  block->length = newLength;
  data[newLength] = 0;
}

char* CQKString::GetBufferSetLength(int newLength) {
  if (newLength < 0 || !GetBuffer(newLength)) return nullptr;
  ReleaseBuffer(newLength);
  return data;
}

void CQKString::FreeExtra() {
  if (Header()->length != Header()->allocLength) MoveToExact(Header()->length);
}

void CQKString::SetMinBufSize(int room) {
  if (Header()->allocLength < room) MoveToExact(room);
}

void CQKString::Empty() {
  Release();
}

void ConstructElements(CQKString* elements, INT32 count) {
  for (INT32 i = 0; i < count; i++) new (&elements[i]) CQKString;
}

void DestructElements(CQKString* elements, INT32 count) {
  for (INT32 i = 0; i < count; i++) elements[i].~CQKString();
}

}  // namespace vexel
