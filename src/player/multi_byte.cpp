// Lengths and pieces of texts, in characters or in bytes.
#include "player/multi_byte.h"

#include <algorithm>
#include <cstring>

#include "player/text.h"

namespace vexel {

namespace {

// Bytes of the character at `at`, which is not the end.
int32_t CharacterSize(const char* at) {
  return PlayerIsLeadByte(static_cast<uint8_t>(*at)) && at[1] ? 2 : 1;
}

}  // namespace

int32_t PlayerStringLength(const char* text, bool multiByte) {
  if (!text) return 0;
  if (!multiByte || !PlayerIsMultiByte()) return static_cast<int32_t>(strlen(text));
  int32_t count = 0;
  for (; *text; text += CharacterSize(text)) ++count;
  return count;
}

const char* PlayerStringIndex(const char* text, int32_t n) {
  for (; n > 0 && *text; --n) text += CharacterSize(text);
  return text;
}

char* PlayerStringExtract(const char* text, int64_t start, int32_t count, bool multiByte) {
  if (!text) return nullptr;
  const int32_t length = PlayerStringLength(text, multiByte);
  const int32_t first = static_cast<int32_t>(std::clamp<int64_t>(start, 0, length));
  if (count < 0 || count > length - first) count = length - first;
  if (!multiByte || !PlayerIsMultiByte()) return CreateStr(text + first, count);
  const char* begin = PlayerStringIndex(text, first);
  return CreateStr(begin, static_cast<int32_t>(PlayerStringIndex(begin, count) - begin));
}

}  // namespace vexel
