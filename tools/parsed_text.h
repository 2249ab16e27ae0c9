// Values that command lines and scripts both hold.
#pragma once

#include <cstdint>
#include <string>

namespace vexel::tools {

// A whole decimal number with an optional minus sign, nothing else around it.
bool ParseNumber(const std::string& text, int64_t min, int64_t max, int64_t* out);
// "640x480", both from `min` to `max`.
bool ParseSize(const std::string& text, int64_t min, int64_t max, int32_t* width, int32_t* height);
// "high" or "low".
bool ParseQuality(const std::string& text, bool* high);

}  // namespace vexel::tools
