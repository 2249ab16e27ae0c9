// Reads the packed records of tags back, widths and all. It stands on a known
// end: a read beyond it gives zeros and clears ok().
#pragma once

#include <span>

#include "author/font.h"

namespace vexel::author {

class RecordReader {
 public:
  explicit RecordReader(std::span<const uint8_t> bytes) : bytes_(bytes) {}

  bool ok() const { return ok_; }
  void Fail() { ok_ = false; }
  size_t at() const { return at_; }
  size_t left() const { return bytes_.size() - at_; }
  std::span<const uint8_t> Rest() const { return bytes_.subspan(at_); }
  void MoveTo(size_t offset);

  // Byte-sized values drop what is left of an open byte.
  uint8_t U8();
  uint16_t U16();
  int16_t S16() { return static_cast<int16_t>(U16()); }
  uint32_t U32();
  uint32_t Bits(int width);
  int32_t SBits(int width);
  void Align() { freeBits_ = 0; }
  std::span<const uint8_t> Take(size_t count);
  // Up to the zero byte, which is passed.
  std::string Text();

  Color ReadColor(bool alpha);
  // The forms come out as what must be forced: kAuto where the smallest width
  // would give the same bytes.
  Rect ReadRect(int* bits);
  Matrix ReadMatrix(MatrixForm* form);
  Cxform ReadCxform(bool alpha, CxformForm* form);

  // Tables without the index widths.
  bool ReadStyles(StyleTables* styles, bool alpha);
  // Index widths, which come out by themselves, then records up to the end.
  bool ReadEdges(std::vector<ShapeRecord>* records, int* fillBits, int* lineBits, bool alpha);
  // Both, with the widths in the tables where they must be forced.
  bool ReadShape(StyleTables* styles, std::vector<ShapeRecord>* records, bool alpha);

 private:
  bool ReadFill(FillStyle* fill, bool alpha);
  bool ReadChange(ShapeRecord* record, int* fillBits, int* lineBits, uint32_t flags, bool alpha);
  void ReadEdge(ShapeRecord* record);

  std::span<const uint8_t> bytes_;
  size_t at_ = 0;
  uint32_t open_ = 0;  // the byte whose bits are being read
  int freeBits_ = 0;
  bool ok_ = true;
};

// The count of styles, and whether it needed the long form.
uint32_t ReadStyleCount(RecordReader& in, bool* forcedLong);

// A font of the second form behind its id: flags to advances. What is left in
// `in` is the font's `behind`. False if the record ends early.
bool ReadFont2(RecordReader& in, Font* font);

}  // namespace vexel::author
