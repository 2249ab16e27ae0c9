// Bit packing from the highest bit down, one byte at a time: movies are small,
// and the plain way is the one that is seen to be right.
#include "author/bit_writer.h"

#include <algorithm>
#include <bit>
#include <stdexcept>
#include <utility>

namespace vexel::author {

namespace {

void Require(bool fits, const char* what) {
  if (!fits) throw std::range_error(what);
}

}  // namespace

void BitWriter::U8(uint32_t value) {
  Require(value <= 0xFF, "a byte holds 0 to 255");
  Align();
  bytes_.push_back(static_cast<uint8_t>(value));
}

void BitWriter::U16(uint32_t value) {
  Require(value <= 0xFFFF, "16 bits hold 0 to 65535");
  U8(value & 0xFF);
  U8(value >> 8);
}

void BitWriter::S16(int32_t value) {
  Require(value >= -32768 && value <= 32767, "16 bits hold -32768 to 32767");
  U16(static_cast<uint16_t>(value));
}

void BitWriter::U32(uint32_t value) {
  U16(value & 0xFFFF);
  U16(value >> 16);
}

void BitWriter::Append(std::span<const uint8_t> bytes) {
  Align();
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

void BitWriter::Text(std::string_view text) {
  Align();
  bytes_.insert(bytes_.end(), text.begin(), text.end());
  bytes_.push_back(0);
}

void BitWriter::Bits(uint32_t value, int width) {
  Require(width >= 0 && width <= 32, "a bit field has 0 to 32 bits");
  Require(UnsignedWidth(value) <= width, "the value needs more bits than its field has");
  for (int bit = width - 1; bit >= 0; --bit) {
    if (freeBits_ == 0) {
      bytes_.push_back(0);
      freeBits_ = 8;
    }
    --freeBits_;
    bytes_.back() |= static_cast<uint8_t>(((value >> bit) & 1) << freeBits_);
  }
}

void BitWriter::SBits(int32_t value, int width) {
  Require(width >= 0 && width <= 32, "a bit field has 0 to 32 bits");
  Require(SignedWidth(value) <= width, "the value needs more bits than its signed field has");
  const auto word = static_cast<uint32_t>(value);
  Bits(width == 32 ? word : word & ((1u << width) - 1), width);
}

void BitWriter::Align() {
  freeBits_ = 0;
}

void BitWriter::Patch16(size_t offset, uint32_t value) {
  Require(value <= 0xFFFF && offset + 2 <= bytes_.size(), "patch of 16 bits out of range");
  bytes_[offset] = static_cast<uint8_t>(value);
  bytes_[offset + 1] = static_cast<uint8_t>(value >> 8);
}

void BitWriter::Patch32(size_t offset, uint32_t value) {
  Require(offset + 4 <= bytes_.size(), "patch of 32 bits out of range");
  Patch16(offset, value & 0xFFFF);
  Patch16(offset + 2, value >> 16);
}

Bytes BitWriter::Take() {
  freeBits_ = 0;
  return std::exchange(bytes_, {});
}

int UnsignedWidth(uint32_t value) {
  return std::bit_width(value);
}

int SignedWidth(int32_t value) {
  if (value == 0) return 0;
  const auto word = static_cast<uint32_t>(value);
  return std::bit_width(value < 0 ? ~word : word) + 1;
}

int SignedWidth(std::span<const int32_t> values) {
  int width = 0;
  for (int32_t value : values) width = std::max(width, SignedWidth(value));
  return width;
}

}  // namespace vexel::author
