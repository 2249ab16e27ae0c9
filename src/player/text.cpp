// Copies, comparison and the tick clock.
#include "player/text.h"

#include <cstdlib>
#include <cstring>

namespace vexel {

namespace {

TickClock g_clock = nullptr;

char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

}  // namespace

char* CreateStr(const char* text, int32_t n) {
  if (!text || n < 0) return nullptr;
  char* copy = static_cast<char*>(malloc(static_cast<size_t>(n) + 1));
  if (!copy) return nullptr;
  memcpy(copy, text, static_cast<size_t>(n));
  copy[n] = '\0';
  return copy;
}

char* CreateStr(const char* text) {
  return text ? CreateStr(text, static_cast<int32_t>(strlen(text))) : nullptr;
}

void FreeStr(char* text) {
  free(text);
}

bool StrEqual(const char* a, const char* b) {
  if (!a || !b) return false;
  while (LowerAscii(*a) == LowerAscii(*b)) {
    if (!*a) return true;
    ++a;
    ++b;
  }
  return false;
}

const char* StripPrefix(const char* text, const char* prefix) {
  if (!text || !prefix) return nullptr;
  for (; *prefix; ++text, ++prefix) {
    if (LowerAscii(*text) != LowerAscii(*prefix)) return nullptr;
  }
  return text;
}

int32_t ToInt(const char* text) {
  int64_t value = 0;
  if (!text) return 0;
  for (; *text >= '0' && *text <= '9'; ++text) {
    value = value * 10 + (*text - '0');
    if (value > INT32_MAX) return INT32_MAX;
  }
  return static_cast<int32_t>(value);
}

void SetTickClock(TickClock clock) {
  g_clock = clock;
}

uint32_t GetTime() {
  return g_clock ? g_clock() : 0;
}

}  // namespace vexel
