// The mirror image of the writer's records.
#include "author/language/record_reader.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace vexel::author {

namespace {

constexpr uint32_t kLongCount = 255;
constexpr int kMinEdgeBits = 2;
bool SameBytes(std::span<const uint8_t> bytes, const BitWriter& written) {
  return std::equal(bytes.begin(), bytes.end(), written.bytes().begin(), written.bytes().end());
}

}  // namespace

void RecordReader::MoveTo(size_t offset) {
  if (offset > bytes_.size()) ok_ = false;
  at_ = std::min(offset, bytes_.size());
  freeBits_ = 0;
}

uint8_t RecordReader::U8() {
  freeBits_ = 0;
  if (at_ >= bytes_.size()) {
    ok_ = false;
    return 0;
  }
  return bytes_[at_++];
}

uint16_t RecordReader::U16() {
  const uint32_t low = U8();
  return static_cast<uint16_t>(low | uint32_t{U8()} << 8);
}

uint32_t RecordReader::U32() {
  const uint32_t low = U16();
  return low | uint32_t{U16()} << 16;
}

uint32_t RecordReader::Bits(int width) {
  uint32_t value = 0;
  for (int i = 0; i < width; ++i) {
    if (freeBits_ == 0) {
      open_ = U8();
      freeBits_ = 8;
    }
    --freeBits_;
    value = value << 1 | ((open_ >> freeBits_) & 1);
  }
  return value;
}

int32_t RecordReader::SBits(int width) {
  if (width == 0) return 0;
  const uint32_t value = Bits(width);
  const uint32_t sign = 1u << (width - 1);
  return static_cast<int32_t>((value ^ sign) - sign);
}

std::span<const uint8_t> RecordReader::Take(size_t count) {
  freeBits_ = 0;
  if (count > left()) {
    ok_ = false;
    count = left();
  }
  const auto taken = bytes_.subspan(at_, count);
  at_ += count;
  return taken;
}

std::string RecordReader::Text() {
  const auto rest = Rest();
  const auto zero = std::find(rest.begin(), rest.end(), 0);
  std::string text(rest.begin(), zero);
  Take(text.size());
  U8();
  return text;
}

Color RecordReader::ReadColor(bool alpha) {
  Color color;
  color.red = U8();
  color.green = U8();
  color.blue = U8();
  color.alpha = alpha ? U8() : 255;
  return color;
}

Rect RecordReader::ReadRect(int* bits) {
  Align();
  const int width = static_cast<int>(Bits(5));
  Rect rect;
  rect.xmin = SBits(width);
  rect.xmax = SBits(width);
  rect.ymin = SBits(width);
  rect.ymax = SBits(width);
  Align();
  const std::array<int32_t, 4> values = {rect.xmin, rect.xmax, rect.ymin, rect.ymax};
  *bits = width == SignedWidth(values) ? kAuto : width;
  return rect;
}

Matrix RecordReader::ReadMatrix(MatrixForm* form) {
  Align();
  Matrix m;
  *form = {};
  const auto pair = [&](int32_t* first, int32_t* second, int* bits) {
    const int width = static_cast<int>(Bits(5));
    *first = SBits(width);
    *second = SBits(width);
    const std::array<int32_t, 2> values = {*first, *second};
    if (width != SignedWidth(values)) *bits = width;
  };
  const bool scale = Bits(1) != 0;
  if (scale) pair(&m.a, &m.d, &form->scaleBits);
  if (scale != (m.a != kOne || m.d != kOne)) form->scale = scale;
  const bool rotate = Bits(1) != 0;
  if (rotate) pair(&m.b, &m.c, &form->rotateBits);
  if (rotate != (m.b != 0 || m.c != 0)) form->rotate = rotate;
  pair(&m.tx, &m.ty, &form->translateBits);
  Align();
  return m;
}

Cxform RecordReader::ReadCxform(bool alpha, CxformForm* form) {
  Align();
  const size_t begin = at_;
  Cxform c;
  const int flags = static_cast<int>(Bits(2));
  const int width = static_cast<int>(Bits(4));
  if (flags & 1) {
    c.redMul = SBits(width);
    c.greenMul = SBits(width);
    c.blueMul = SBits(width);
    if (alpha) c.alphaMul = SBits(width);
  }
  if (flags & 2) {
    c.redAdd = SBits(width);
    c.greenAdd = SBits(width);
    c.blueAdd = SBits(width);
    if (alpha) c.alphaAdd = SBits(width);
  }
  Align();
  *form = {};
  if (!ok_) return c;
  const auto read = bytes_.subspan(begin, at_ - begin);
  for (const CxformForm& tried :
       {CxformForm{}, CxformForm{kAuto, width}, CxformForm{flags, kAuto}}) {
    BitWriter written;
    try {
      WriteCxform(written, c, alpha, tried);
    } catch (const std::range_error&) {
      continue;
    }
    if (SameBytes(read, written)) {
      *form = tried;
      return c;
    }
  }
  *form = {flags, width};
  return c;
}

uint32_t ReadStyleCount(RecordReader& in, bool* forcedLong) {
  uint32_t count = in.U8();
  *forcedLong = false;
  if (count == kLongCount) {
    count = in.U16();
    *forcedLong = count < kLongCount;
  }
  return count;
}

bool RecordReader::ReadFill(FillStyle* fill, bool alpha) {
  fill->type = U8();
  if (fill->type & 0x10) {
    fill->matrix = ReadMatrix(&fill->matrixForm);
    const size_t count = U8();
    for (size_t i = 0; i < count && ok_; ++i) {
      const uint8_t position = U8();
      fill->stops.push_back({position, ReadColor(alpha)});
    }
  } else if (fill->type & 0x40) {
    fill->bitmap = U16();
    fill->matrix = ReadMatrix(&fill->matrixForm);
  } else {
    fill->color = ReadColor(alpha);
  }
  return ok_;
}

bool RecordReader::ReadStyles(StyleTables* styles, bool alpha) {
  Align();
  const uint32_t fills = ReadStyleCount(*this, &styles->longFillCount);
  for (uint32_t i = 0; i < fills && ok_; ++i) {
    FillStyle fill;
    if (ReadFill(&fill, alpha)) styles->fills.push_back(std::move(fill));
  }
  if (!ok_) return false;
  const uint32_t lines = ReadStyleCount(*this, &styles->longLineCount);
  for (uint32_t i = 0; i < lines && ok_; ++i) {
    LineStyle line;
    line.width = U16();
    line.color = ReadColor(alpha);
    styles->lines.push_back(line);
  }
  return ok_;
}

bool RecordReader::ReadChange(ShapeRecord* record, int* fillBits, int* lineBits, uint32_t flags,
                              bool alpha) {
  record->flags = static_cast<uint8_t>(flags);
  if (flags & kChangeMove) {
    const int width = static_cast<int>(Bits(5));
    record->move.x = SBits(width);
    record->move.y = SBits(width);
    const std::array<int32_t, 2> values = {record->move.x, record->move.y};
    if (width != SignedWidth(values)) record->bits = width;
  }
  if (flags & kChangeFill0) record->fill0 = Bits(*fillBits);
  if (flags & kChangeFill1) record->fill1 = Bits(*fillBits);
  if (flags & kChangeLine) record->line = Bits(*lineBits);
  if (flags & kChangeStyles) {
    if (!ReadStyles(&record->styles, alpha)) return false;
    Align();
    *fillBits = static_cast<int>(Bits(4));
    *lineBits = static_cast<int>(Bits(4));
    if (*fillBits != FillBits(record->styles)) record->styles.fillBits = *fillBits;
    if (*lineBits != LineBits(record->styles)) record->styles.lineBits = *lineBits;
  }
  return ok_;
}

// Behind the bit that tells edges from changes.
void RecordReader::ReadEdge(ShapeRecord* record) {
  const bool straight = Bits(1) != 0;
  const int width = static_cast<int>(Bits(4)) + kMinEdgeBits;
  std::array<int32_t, 4> values = {};
  if (!straight) {
    record->kind = RecordKind::kCurve;
    for (int32_t& value : values) value = SBits(width);
    record->control = {values[0], values[1]};
    record->anchor = {values[2], values[3]};
  } else {
    record->kind = RecordKind::kLine;
    LineForm form = LineForm::kBoth;
    if (Bits(1) == 0) form = Bits(1) != 0 ? LineForm::kVertical : LineForm::kHorizontal;
    if (form != LineForm::kVertical) values[0] = SBits(width);
    if (form != LineForm::kHorizontal) values[1] = SBits(width);
    record->anchor = {values[0], values[1]};
    const LineForm usual = values[0] == 0   ? LineForm::kVertical
                           : values[1] == 0 ? LineForm::kHorizontal
                                            : LineForm::kBoth;
    if (form != usual) record->lineForm = form;
  }
  if (width != std::max(kMinEdgeBits, SignedWidth(values))) record->bits = width;
}

bool RecordReader::ReadEdges(std::vector<ShapeRecord>* records, int* fillBits, int* lineBits,
                             bool alpha) {
  Align();
  *fillBits = static_cast<int>(Bits(4));
  *lineBits = static_cast<int>(Bits(4));
  int fills = *fillBits, lines = *lineBits;
  while (ok_) {
    ShapeRecord record;
    if (Bits(1) != 0) {
      ReadEdge(&record);
    } else {
      const uint32_t flags = Bits(5);
      if (flags == 0) break;
      if (!ReadChange(&record, &fills, &lines, flags, alpha)) return false;
    }
    records->push_back(std::move(record));
  }
  Align();
  return ok_;
}

bool RecordReader::ReadShape(StyleTables* styles, std::vector<ShapeRecord>* records, bool alpha) {
  if (!ReadStyles(styles, alpha)) return false;
  int fillBits, lineBits;
  if (!ReadEdges(records, &fillBits, &lineBits, alpha)) return false;
  if (fillBits != FillBits(*styles)) styles->fillBits = fillBits;
  if (lineBits != LineBits(*styles)) styles->lineBits = lineBits;
  return true;
}

bool ReadFont2(RecordReader& in, Font* font) {
  font->flags = in.U16();
  const auto name = in.Take(in.U8());
  font->name.assign(name.begin(), name.end());
  const size_t count = in.U16();
  in.Take((count + 1) * (font->flags & kFontWideOffsets ? 4 : 2));
  for (size_t i = 0; i < count && in.ok(); ++i) {
    Glyph glyph;
    if (!in.ReadEdges(&glyph.outline, &glyph.fillBits, &glyph.lineBits, false)) return false;
    font->glyphs.push_back(std::move(glyph));
  }
  for (Glyph& glyph : font->glyphs) glyph.code = font->flags & kFontWideCodes ? in.U16() : in.U8();
  if (font->flags & kFontHasLayout) {
    font->ascent = in.S16();
    font->descent = in.S16();
    font->leading = in.S16();
    for (Glyph& glyph : font->glyphs) glyph.advance = in.S16();
  }
  return in.ok();
}

}  // namespace vexel::author
