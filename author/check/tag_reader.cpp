#include "author/check/tag_reader.h"

#include <algorithm>

#include "author/bit_writer.h"

namespace vexel::author {

std::span<const uint8_t> TagReader::Take(size_t count) {
  Align();
  if (left() < count) throw CutShort{at(), what_};
  const auto taken = bytes_.subspan(pos_, count);
  pos_ += count;
  return taken;
}

std::string_view TagReader::Text() {
  Align();
  const auto begin = bytes_.begin() + static_cast<std::ptrdiff_t>(pos_);
  const auto end = std::find(begin, bytes_.end(), 0);
  if (end == bytes_.end()) throw CutShort{at(), what_};
  const size_t size = static_cast<size_t>(end - begin);
  pos_ += size + 1;
  return {reinterpret_cast<const char*>(&*begin), size};
}

uint32_t TagReader::Bits(int width) {
  uint32_t value = 0;
  while (width > 0) {
    if (freeBits_ == 0) {
      if (left() == 0) throw CutShort{at(), what_};
      bits_ = bytes_[pos_++];
      freeBits_ = 8;
    }
    const int count = std::min(width, freeBits_);
    value = value << count | (bits_ >> (freeBits_ - count) & ((1u << count) - 1));
    freeBits_ -= count;
    width -= count;
  }
  return value;
}

int32_t TagReader::SBits(int width) {
  if (width == 0) return 0;
  const uint32_t value = Bits(width);
  const uint32_t sign = 1u << (width - 1);
  return static_cast<int32_t>((value ^ sign) - sign);
}

void TagReader::Rect() {
  Align();
  const int width = static_cast<int>(Bits(5));
  int needed = 0;
  for (int i = 0; i < 4; ++i) needed = std::max(needed, SignedWidth(SBits(width)));
  Width(width, needed, 4);
  Align();
}

void TagReader::Matrix() {
  Align();
  const auto pair = [this] {
    const int width = static_cast<int>(Bits(5));
    const int32_t first = SBits(width);
    const int32_t second = SBits(width);
    Width(width, std::max(SignedWidth(first), SignedWidth(second)), 2);
  };
  if (Bits(1)) pair();
  if (Bits(1)) pair();
  pair();
  Align();
}

void TagReader::Cxform(bool alpha) {
  Align();
  const uint32_t flags = Bits(2);
  const int width = static_cast<int>(Bits(4));
  int needed = 0;
  int fields = 0;
  for (uint32_t part = 1; part <= 2; ++part) {
    if (!(flags & part)) continue;
    for (int i = 0; i < (alpha ? 4 : 3); ++i, ++fields) {
      needed = std::max(needed, SignedWidth(SBits(width)));
    }
  }
  Width(width, needed, fields);
  Align();
}

}  // namespace vexel::author
