// Parts, searches, editing and fields of CQKString.
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "base/cqk_string.h"

namespace vexel {

namespace {

// Room that Format starts with; longer texts get more.
constexpr int kFormatRoom = 512;

int IndexOf(const char* text, const char* found) {
  return found ? static_cast<int>(found - text) : -1;
}

// The next delimiter, or the terminator, which is never a delimiter itself.
char* FieldEnd(char* p, char delimiter) {
  while (*p && *p != delimiter) p++;
  return p;
}

}  // namespace

CQKString CQKString::Mid(int first) const {
  return Mid(first, GetLength());
}

CQKString CQKString::Mid(int first, int count) const {
  INT32 length = GetLength();
  if (first < 0) first = 0;
  if (first > length) first = length;
  if (count > length - first) count = length - first;
  if (count == length) return *this;
  CQKString part;
  AllocCopy(part, count, first);
  return part;
}

CQKString CQKString::Left(int count) const {
  return Mid(0, count);
}

CQKString CQKString::Right(int count) const {
  if (count < 0) count = 0;
  INT32 length = GetLength();
  return Mid(count < length ? length - count : 0);
}

CQKString CQKString::SpanIncluding(const char* set) const {
  return Left(set ? static_cast<int>(strspn(data, set)) : 0);
}

CQKString CQKString::SpanExcluding(const char* set) const {
  return set ? Left(static_cast<int>(strcspn(data, set))) : *this;
}

int CQKString::Find(char c) const {
  return IndexOf(data, QKFindChar(data, c));
}

int CQKString::Find(const char* text) const {
  return text ? IndexOf(data, QKFindString(data, text)) : -1;
}

int CQKString::ReverseFind(char c) const {
  return IndexOf(data, QKReverseFindChar(data, c));
}

int CQKString::FindOneOf(const char* set) const {
  return set ? IndexOf(data, strpbrk(data, set)) : -1;
}

void CQKString::TrimLeft() {
  INT32 blanks = 0;
  while (safe_isspace(data[blanks])) blanks++;
  if (blanks == 0 || !CopyBeforeWrite()) return;
  Header()->length -= blanks;
  memmove(data, data + blanks, static_cast<size_t>(Header()->length) + 1);
}

void CQKString::TrimRight() {
  INT32 length = GetLength();
  while (length > 0 && safe_isspace(data[length - 1])) length--;
  if (length == GetLength() || !CopyBeforeWrite()) return;
  Header()->length = length;
  data[length] = 0;
}

void CQKString::MakeUpper() {
  if (!CopyBeforeWrite()) return;
  for (INT32 i = 0; i < GetLength(); i++) {
    if (data[i] >= 'a' && data[i] <= 'z') data[i] = static_cast<char>(data[i] - 0x20);
  }
}

void CQKString::MakeLower() {
  if (!CopyBeforeWrite()) return;
  for (INT32 i = 0; i < GetLength(); i++) {
    if (data[i] >= 'A' && data[i] <= 'Z') data[i] = static_cast<char>(data[i] + 0x20);
  }
}

// Required: blanks go to the left side only, and only half of what true
// centring takes; halves are those of 16-bit numbers.
void CQKString::Center(short width) {
  TrimLeft();
  TrimRight();
  int half = static_cast<int16_t>(GetLength()) / 2;
  int halfWidth = width / 2;
  if (half < halfWidth) *this = CQKString(' ', halfWidth - half) + *this;
}

bool CQKString::FindAndReplace(const char* find, const char* replace, int all) {
  if (!find || !replace) return false;
  INT32 count = static_cast<INT32>(strlen(find));
  CQKString result;
  bool found = false;
  const char* from = data;
  // An empty text to find would be found without end.
  while (count > 0 && (all || !found)) {
    const char* match = QKFindString(from, find);
    if (!match) break;
    result.ConcatInPlace(static_cast<INT32>(match - from), from);
    result += replace;
    from = match + count;
    found = true;
  }
  result.ConcatInPlace(GetLength() - static_cast<INT32>(from - data), from);
  *this = result;
  return found;
}

void CQKString::AppendEndOfLine() {
  *this += "\n";
}

// Required: above 0x7FFFFFFF the number shows negative.
void CQKString::AppendULONG(UINT32 value) {
  char digits[16];
  snprintf(digits, sizeof digits, "%d", static_cast<int>(value));
  *this += digits;
}

// Written beside the string first: arguments may be its own characters.
void CQKString::Format(const char* format, ...) {
  char text[kFormatRoom + 1];
  va_list arguments;
  va_start(arguments, format);
  int length = vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  if (length <= kFormatRoom) {
    char* buffer = GetBuffer(kFormatRoom);
    if (!buffer) return;
    memcpy(buffer, text, length < 0 ? 0 : static_cast<size_t>(length));
    buffer[length < 0 ? 0 : length] = 0;
    ReleaseBuffer(-1);
    return;
  }
  CQKString longer;
  char* buffer = longer.GetBuffer(length);
  if (!buffer) return;
  va_start(arguments, format);
  vsnprintf(buffer, static_cast<size_t>(length) + 1, format, arguments);
  va_end(arguments);
  longer.ReleaseBuffer(-1);
  *this = longer;
}

UINT32 CQKString::CountFields(char delimiter) const {
  UINT32 fields = 1;
  for (char* p = data; *(p = FieldEnd(p, delimiter)); p++) fields++;
  return fields;
}

CQKString CQKString::NthField(char delimiter, UINT32 n) {
  char* p = data;
  UINT32 toGo = n;
  if (lastFieldIndex != 0 && lastFieldIndex < n && lastFieldEnd) {
    p = lastFieldEnd + 1;
    // Over the delimiter, whatever it is by now; an end in between ends all.
    if (!*p || !*++p) {
      ForgetField();
      return CQKString();
    }
    toGo = n - lastFieldIndex;
  }
  for (; toGo > 1; toGo--) {
    p = FieldEnd(p, delimiter);
    if (!*p || !*++p) return CQKString();
  }
  char* end = FieldEnd(p, delimiter);
  lastFieldEnd = end - 1;
  lastFieldIndex = n;
  return CQKString(p, static_cast<int>(end - p));
}

}  // namespace vexel
