// Reads the fields of a tag, and notices what they waste.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace vexel::author {

// Thrown when a field reaches beyond the tag.
struct CutShort {
  size_t at;         // offset of the field in the movie
  const char* what;  // what was being read
};

class TagReader {
 public:
  // `base` is the offset of the bytes in the movie.
  TagReader(std::span<const uint8_t> bytes, size_t base) : bytes_(bytes), base_(base) {}

  // What the next fields belong to, for messages.
  void Reading(const char* what) { what_ = what; }

  uint32_t U8() { return Take(1)[0]; }
  uint32_t U16() {
    const auto b = Take(2);
    return b[0] | uint32_t{b[1]} << 8;
  }
  uint32_t U32() {
    const uint32_t low = U16();
    return low | U16() << 16;
  }
  std::span<const uint8_t> Take(size_t count);
  // Up to a zero byte, which is passed.
  std::string_view Text();

  // Fields of 0 to 31 bits. Reads of whole bytes begin at the next one.
  uint32_t Bits(int width);
  int32_t SBits(int width);
  void Align() { freeBits_ = 0; }

  void Color(bool alpha) { Take(alpha ? 4 : 3); }
  // Bit-packed records.
  void Rect();
  void Matrix();
  void Cxform(bool alpha);

  // Notes that a group of fields has a width that its values do not need.
  void Width(int used, int needed, int fields) {
    if (used > needed) wastedBits_ += int64_t{used - needed} * fields;
  }
  int64_t wastedBits() const { return wastedBits_; }

  size_t at() const { return base_ + pos_; }
  size_t left() const { return bytes_.size() - pos_; }
  size_t pos() const { return pos_; }
  // All of the bytes from an offset on, as a reader of their own.
  TagReader From(size_t pos) const { return TagReader(bytes_.subspan(pos), base_ + pos); }
  size_t size() const { return bytes_.size(); }

 private:
  std::span<const uint8_t> bytes_;
  size_t base_;
  size_t pos_ = 0;
  uint32_t bits_ = 0;  // the byte being read
  int freeBits_ = 0;   // how many of its low bits are unread
  int64_t wastedBits_ = 0;
  const char* what_ = "the record";
};

}  // namespace vexel::author
