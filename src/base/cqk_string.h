// The string of the plug-in's wing: counted, shared until written to, with room
// to grow. The player's own texts are plain char* and know nothing of it.
//
// A string never fails to exist: without memory a new one is empty, and an old
// one keeps its text. Used on the host's thread only; counts are plain integers.
#pragma once

#include <cstring>

#include "base/qk_text.h"
#include "zem/zem_types.h"

namespace vexel {

// Marks characters that nobody counts or frees; 0x88CA6C00.
inline constexpr INT32 kStaticRefs = -2000000000;

// Precedes the characters in the same allocation.
struct CStringData {
  INT32 refs;         // who shares it; kStaticRefs: never counted, never freed
  INT32 length;       // characters, without the terminator
  INT32 allocLength;  // room, without the terminator

  char* Characters() { return reinterpret_cast<char*>(this + 1); }
};

// The characters of the empty string that all empty strings share.
inline char*& AfxGetEmptyString() {
  extern char* g_emptyText;
  return g_emptyText;
}

class CQKString {
 public:
  CQKString() { Init(); }
  CQKString(const CQKString& other) {
    Init();
    CStringData* block = other.Header();
    if (block->refs < 0) {
      AssignCopy(block->length, block->Characters());
    } else {
      block->refs++;
      data = block->Characters();
    }
  }
  CQKString(const char* text);  // null is empty
  CQKString(char c, int count);
  CQKString(const char* text, int count);  // which may contain zeros
  ~CQKString() { SafeRelease(Header()); }

  CQKString& operator=(const CQKString& other);
  CQKString& operator=(const char* text);
  CQKString& operator=(char c);
  // Here in the header, since most appending has room already and knows the
  // length of what it appends.
  CQKString& operator+=(const CQKString& other) {
    ConcatInPlace(other.GetLength(), other.data);
    return *this;
  }
  CQKString& operator+=(const char* text) {
    ConcatInPlace(TextLength(text), text);
    return *this;
  }
  CQKString& operator+=(char c) {
    ConcatInPlace(1, &c);
    return *this;
  }
  // Appends `count` characters, which may contain zeros.
  void Append(const char* text, INT32 count) { ConcatInPlace(count, text); }

  // The characters, zero-terminated, until the string changes.
  operator const char*() const { return data; }
  INT32 GetLength() const { return Header()->length; }
  INT32 GetAllocLength() const { return Header()->allocLength; }
  bool IsEmpty() const { return Header()->length == 0; }

  // Bounds are clamped; where nothing remains, the result is empty.
  CQKString Mid(int first) const;
  CQKString Mid(int first, int count) const;
  CQKString Left(int count) const;
  CQKString Right(int count) const;
  // The longest beginning of characters that are in `set`, or are not.
  CQKString SpanIncluding(const char* set) const;
  CQKString SpanExcluding(const char* set) const;

  // An index, or -1.
  int Find(char c) const;
  int Find(const char* text) const;
  int ReverseFind(char c) const;
  int FindOneOf(const char* set) const;

  // Memory for `room` characters and the terminator, with the text in it, to be
  // written to until ReleaseBuffer says how long the text is; -1: up to its
  // terminator. Null without memory.
  char* GetBuffer(int room);
  void ReleaseBuffer(int newLength);
  char* GetBufferSetLength(int newLength);
  void FreeExtra();
  void SetMinBufSize(int room);
  void Empty();

  void TrimLeft();
  void TrimRight();
  void MakeUpper();  // ASCII
  void MakeLower();
  void Center(short width);
  // Replaces the first `find`, or `all`; says whether there was one. Null
  // arguments change nothing.
  bool FindAndReplace(const char* find, const char* replace, int all);
  void AppendEndOfLine();
  void AppendULONG(UINT32 value);
  // In room for 512 characters, or as many as it takes. The text ends at its
  // first zero, even one that "%c" wrote.
  void Format(const char* format, ...) __attribute__((format(printf, 2, 3)));

  // A text of fields with a delimiter between them, counted from 1. Made for a
  // loop with a rising `n`: each call goes on where the last one stood.
  UINT32 CountFields(char delimiter) const;
  CQKString NthField(char delimiter, UINT32 n);

 private:
  CStringData* Header() const { return reinterpret_cast<CStringData*>(data) - 1; }
  void ForgetField() {
    lastFieldIndex = 0;
    lastFieldEnd = nullptr;
  }

  void Init() {
    data = AfxGetEmptyString();
    ForgetField();
  }
  void Release() {
    SafeRelease(Header());
    Init();
  }
  static void SafeRelease(CStringData* block) {
    if (!block || block->refs == kStaticRefs) return;
    if (--block->refs <= 0) delete[] reinterpret_cast<char*>(block);
  }
  bool NewBuffer(INT32 length, int64_t room);
  bool OptAllocBuffer(INT32 length);
  bool ExactAllocBuffer(INT32 length);
  void AllocCopy(CQKString& target, INT32 count, INT32 first) const;
  void AssignCopy(INT32 count, const char* source);
  void ConcatCopy(INT32 count1, const char* source1, INT32 count2, const char* source2);
  void ConcatInPlace(INT32 count, const char* source) {
    if (count <= 0) return;
    CStringData* block = Header();
    if (block->refs > 1 || count > block->allocLength - block->length) {
      ConcatElsewhere(count, source);
      return;
    }
    ForgetField();
    // Even of our own text, the source ends where the new characters begin.
    memcpy(data + block->length, source, static_cast<size_t>(count));
    block->length += count;
    data[block->length] = 0;
  }
  void ConcatElsewhere(INT32 count, const char* source);
  bool CopyBeforeWrite();
  bool AllocBeforeWrite(INT32 length, CStringData*& old);
  bool MoveToExact(INT32 room);
  // 0 for null; what an INT32 can't hold is cut off.
  static INT32 TextLength(const char* text) {
    if (!text) return 0;
    size_t length = strlen(text);
    return length > 0x7FFFFFFF ? 0x7FFFFFFF : static_cast<INT32>(length);
  }

  friend CQKString operator+(const CQKString& a, const CQKString& b);
  friend CQKString operator+(const CQKString& a, const char* b);
  friend CQKString operator+(const char* a, const CQKString& b);
  friend CQKString operator+(const CQKString& a, char b);
  friend CQKString operator+(char a, const CQKString& b);

  char* data;             // behind its CStringData; never null
  UINT32 lastFieldIndex;  // the field that NthField gave last; 0 is none
  char* lastFieldEnd;     // its last character, the one before it if it is empty
};

inline bool operator==(const CQKString& a, const char* b) {
  return QKCompareStrings(a, b, 0xFFFFFFFF) == 0;
}

// Make `count` empty strings of raw memory, and end them.
void ConstructElements(CQKString* elements, INT32 count);
void DestructElements(CQKString* elements, INT32 count);

}  // namespace vexel
