// Words of 16 and 32 bits in pixel memory, at any alignment. memcpy of a
// constant size is one load or store.
#pragma once

#include <cstdint>
#include <cstring>

namespace vexel {

inline uint32_t Load16(const uint8_t* at) {
  uint16_t v;
  std::memcpy(&v, at, sizeof v);
  return v;
}
inline uint32_t Load32(const uint8_t* at) {
  uint32_t v;
  std::memcpy(&v, at, sizeof v);
  return v;
}
inline void Store16(uint8_t* at, uint32_t v) {
  const auto low = static_cast<uint16_t>(v);
  std::memcpy(at, &low, sizeof low);
}
inline void Store32(uint8_t* at, uint32_t v) {
  std::memcpy(at, &v, sizeof v);
}

}  // namespace vexel
