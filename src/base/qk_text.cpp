#include "base/qk_text.h"

#include <cctype>
#include <cstring>

namespace vexel {

bool DBCSEnabled = false;

bool QKIsDBCSEnabled() {
  DBCSEnabled = false;
  return DBCSEnabled;
}

bool QKIsLeadByte(char) {
  return false;
}

const char* QKGetNextChar(const char* p) {
  return p + 1;
}

const char* QKGetPrevChar(const char*, const char* p) {
  return p ? p - 1 : nullptr;
}

bool QKIsEqual(const char* p, char c) {
  return *p == c;
}

const char* QKFindChar(const char* text, char c) {
  if (!QKIsDBCSEnabled()) return strchr(text, c);
  while (!QKIsEqual(text, c)) {
    if (!*text) return nullptr;
    text = QKGetNextChar(text);
  }
  return text;
}

const char* QKReverseFindChar(const char* text, char c) {
  if (!QKIsDBCSEnabled()) return strrchr(text, c);
  const char* found = nullptr;
  for (;; text = QKGetNextChar(text)) {
    if (QKIsEqual(text, c)) found = text;
    if (!*text) return found;
  }
}

const char* QKFindString(const char* text, const char* find) {
  if (!QKIsDBCSEnabled()) return strstr(text, find);
  size_t count = strlen(find);
  for (; strncmp(text, find, count) != 0; text = QKGetNextChar(text)) {
    if (!*text) return nullptr;
  }
  return text;
}

int QKCompareStrings(const char* a, const char* b, unsigned int count) {
  if (!a || !b) return (a != nullptr) - (b != nullptr);
  return strncmp(a, b, count);
}

bool safe_isspace(char c) {
  return isspace(static_cast<unsigned char>(c)) != 0;
}

UINT32 HashKey(const char* text) {
  UINT32 hash = 0;
  for (; *text; text++) hash = hash * 33 + static_cast<UINT32>(static_cast<signed char>(*text));
  return hash;
}

}  // namespace vexel
