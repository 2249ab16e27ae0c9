#include "parsed_text.h"

#include <charconv>

namespace vexel::tools {

bool ParseNumber(const std::string& text, int64_t min, int64_t max, int64_t* out) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, *out);
  return error == std::errc() && stop == end && *out >= min && *out <= max;
}

bool ParseSize(const std::string& text, int64_t min, int64_t max, int32_t* width, int32_t* height) {
  const size_t x = text.find('x');
  int64_t w, h;
  if (x == std::string::npos || !ParseNumber(text.substr(0, x), min, max, &w) ||
      !ParseNumber(text.substr(x + 1), min, max, &h))
    return false;
  *width = static_cast<int32_t>(w);
  *height = static_cast<int32_t>(h);
  return true;
}

bool ParseQuality(const std::string& text, bool* high) {
  *high = text == "high";
  return *high || text == "low";
}

}  // namespace vexel::tools
