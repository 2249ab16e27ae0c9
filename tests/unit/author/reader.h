// A second reader of packed movies, written apart from the player's: it keeps
// one bit index and takes the plainest way.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vexel::author {

class Reader {
 public:
  explicit Reader(std::vector<uint8_t> bytes, size_t at = 0) : bytes_(bytes), bit_(at * 8) {}

  uint32_t Bits(int width) {
    uint32_t value = 0;
    for (int i = 0; i < width; ++i, ++bit_) {
      value = value << 1 | ((bytes_.at(bit_ / 8) >> (7 - bit_ % 8)) & 1);
    }
    return value;
  }
  int32_t SBits(int width) {
    if (width == 0) return 0;
    const uint32_t value = Bits(width);
    const int64_t range = int64_t(1) << width;
    return static_cast<int32_t>(value >= range / 2 ? value - range : value);
  }
  void Align() { bit_ = (bit_ + 7) / 8 * 8; }
  uint32_t U8() {
    Align();
    return Bits(8);
  }
  uint32_t U16() {
    const uint32_t low = U8();
    return low | U8() << 8;
  }
  int32_t S16() { return static_cast<int16_t>(U16()); }
  uint32_t U32() {
    const uint32_t low = U16();
    return low | U16() << 16;
  }
  std::string Text() {
    std::string text;
    while (const uint32_t c = U8()) text.push_back(static_cast<char>(c));
    return text;
  }
  std::vector<uint8_t> Rest() {
    Align();
    return {bytes_.begin() + static_cast<std::ptrdiff_t>(bit_ / 8), bytes_.end()};
  }
  void Skip(size_t bytes) { bit_ += bytes * 8; }
  size_t pos() const { return (bit_ + 7) / 8; }
  bool done() const { return pos() >= bytes_.size(); }

 private:
  std::vector<uint8_t> bytes_;
  size_t bit_;
};

}  // namespace vexel::author
