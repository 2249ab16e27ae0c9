// Bytes, little-endian numbers and bit fields, as movies pack them: bit fields
// run from the highest bit of a byte down, and every byte-sized value begins on
// a byte boundary.
#pragma once

#include <span>
#include <string_view>

#include "author/types.h"

namespace vexel::author {

// Grows a byte sequence. Values that do not fit their field throw
// std::range_error, and the writer is then left as it was.
class BitWriter {
 public:
  // Byte-sized values close an open byte first, with zero bits.
  void U8(uint32_t value);
  void U16(uint32_t value);
  void S16(int32_t value);
  void U32(uint32_t value);
  void Append(std::span<const uint8_t> bytes);
  void Text(std::string_view text);  // the bytes of the text and a closing zero

  // Fields of 0 to 32 bits. A width of 0 writes nothing and takes only 0.
  void Bits(uint32_t value, int width);
  void SBits(int32_t value, int width);
  void Align();

  // Overwrites numbers at a byte offset that was written before.
  void Patch16(size_t offset, uint32_t value);
  void Patch32(size_t offset, uint32_t value);

  // Bytes so far, an open one included.
  size_t size() const { return bytes_.size(); }
  bool aligned() const { return freeBits_ == 0; }
  const Bytes& bytes() const { return bytes_; }
  Bytes Take();

 private:
  Bytes bytes_;
  int freeBits_ = 0;  // unwritten low bits of the last byte
};

// The smallest width of a field that holds the value: 0 for 0, and for signed
// fields one more than the magnitude asks.
int UnsignedWidth(uint32_t value);
int SignedWidth(int32_t value);
int SignedWidth(std::span<const int32_t> values);

}  // namespace vexel::author
