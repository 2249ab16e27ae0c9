#include "author/script/float_text.h"

#include <bit>
#include <charconv>
#include <cstdio>

namespace vexel::author {

std::string FloatText(uint32_t bits) {
  char text[64];
  constexpr uint32_t kExponent = 0x7F800000;
  if ((bits & kExponent) == kExponent) {
    std::snprintf(text, sizeof(text), "bits 0x%08x", static_cast<unsigned>(bits));
    return text;
  }
  const auto result = std::to_chars(text, text + sizeof(text), std::bit_cast<float>(bits));
  return std::string(text, result.ptr);
}

std::optional<uint32_t> ParseFloat(std::string_view text) {
  float value = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  // Words for infinities would be taken too, but numbers here begin with a
  // digit, a sign or a point.
  const size_t first = text.starts_with('-') ? 1 : 0;
  if (text.size() == first || text[first] > '9') return std::nullopt;
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return std::bit_cast<uint32_t>(value);
}

}  // namespace vexel::author
