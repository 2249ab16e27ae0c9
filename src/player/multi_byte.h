// Characters of more than one byte. This platform's texts have none, so the
// multi-byte forms of the text actions do what the plain ones do; the lead byte
// question stands here for all who step through texts. This header includes
// nothing of ours, so every folder of the ring uses it.
#pragma once

#include <cstdint>

namespace vexel {

constexpr bool PlayerIsMultiByte() {
  return false;
}
// True for a byte that makes one character with the byte behind it.
constexpr bool PlayerIsLeadByte(uint8_t) {
  return false;
}

// Characters of `text` with `multiByte` on a multi-byte platform, else bytes;
// 0 for null.
int32_t PlayerStringLength(const char* text, bool multiByte);

// The place `n` characters into `text`, its end at the most.
const char* PlayerStringIndex(const char* text, int32_t n);

// A new text, for FreeStr, of `count` characters from `start`, both cut to the
// text; a negative count takes the rest. `start` is wider than an index: the
// callers count from 1. Null for null or without memory.
char* PlayerStringExtract(const char* text, int64_t start, int32_t count, bool multiByte);

}  // namespace vexel
