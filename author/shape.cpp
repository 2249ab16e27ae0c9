// Packing of style tables and shape records. The index widths in force are the
// only state: new tables in the middle of a shape change them.
#include "author/shape.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace vexel::author {

namespace {

// A count of 255 in the byte announces the 16-bit count.
constexpr size_t kLongCount = 255;
// An edge states its width less 2, in 4 bits.
constexpr int kMinEdgeBits = 2;
constexpr int kMaxEdgeBits = 17;

void WriteFillStyle(BitWriter& out, const FillStyle& fill, bool alpha) {
  out.U8(fill.type);
  if (fill.type & 0x10) {
    WriteMatrix(out, fill.matrix, fill.matrixForm);
    if (fill.stops.size() > 255) throw std::range_error("a gradient holds at most 255 stops");
    out.U8(static_cast<uint32_t>(fill.stops.size()));
    for (const GradientStop& stop : fill.stops) {
      out.U8(stop.position);
      WriteColor(out, stop.color, alpha);
    }
  } else if (fill.type & 0x40) {
    out.U16(fill.bitmap);
    WriteMatrix(out, fill.matrix, fill.matrixForm);
  } else {
    WriteColor(out, fill.color, alpha);
  }
}

int EdgeWidth(int forced, std::span<const int32_t> values) {
  const int bits = forced == kAuto ? std::max(kMinEdgeBits, SignedWidth(values)) : forced;
  if (bits < kMinEdgeBits || bits > kMaxEdgeBits) {
    throw std::range_error("the deltas of an edge have 2 to 17 bits");
  }
  return bits;
}

// The records of one shape, with the index widths as they stand.
class RecordWriter {
 public:
  RecordWriter(BitWriter& out, int fillBits, int lineBits, bool alpha) : out_(out), alpha_(alpha) {
    Widths(fillBits, lineBits);
  }

  void Write(const ShapeRecord& record) {
    switch (record.kind) {
      case RecordKind::kChange:
        Change(record);
        break;
      case RecordKind::kLine:
        Line(record);
        break;
      case RecordKind::kCurve:
        Curve(record);
        break;
    }
  }

  void End() {
    out_.Bits(0, 6);
    out_.Align();
  }

 private:
  void Widths(int fillBits, int lineBits) {
    fillBits_ = fillBits;
    lineBits_ = lineBits;
    out_.Align();
    out_.Bits(static_cast<uint32_t>(fillBits), 4);
    out_.Bits(static_cast<uint32_t>(lineBits), 4);
  }

  void Change(const ShapeRecord& record) {
    // All flags clear would read as the end of the shape.
    if (record.flags == 0 || record.flags > 0x1F) {
      throw std::range_error("a style change has at least one of five flags");
    }
    out_.Bits(0, 1);
    out_.Bits(record.flags, 5);
    if (record.flags & kChangeMove) {
      const std::array<int32_t, 2> values = {record.move.x, record.move.y};
      const int bits = record.bits == kAuto ? SignedWidth(values) : record.bits;
      out_.Bits(static_cast<uint32_t>(bits), 5);
      for (int32_t value : values) out_.SBits(value, bits);
    }
    if (record.flags & kChangeFill0) out_.Bits(record.fill0, fillBits_);
    if (record.flags & kChangeFill1) out_.Bits(record.fill1, fillBits_);
    if (record.flags & kChangeLine) out_.Bits(record.line, lineBits_);
    if (record.flags & kChangeStyles) {
      out_.Align();
      WriteStyleTables(out_, record.styles, alpha_);
      Widths(FillBits(record.styles), LineBits(record.styles));
    }
  }

  void Line(const ShapeRecord& record) {
    const Point delta = record.anchor;
    LineForm form = record.lineForm;
    if (form == LineForm::kAuto) {
      form = delta.x == 0   ? LineForm::kVertical
             : delta.y == 0 ? LineForm::kHorizontal
                            : LineForm::kBoth;
    }
    if ((form == LineForm::kVertical && delta.x != 0) ||
        (form == LineForm::kHorizontal && delta.y != 0)) {
      throw std::range_error("an edge along one axis has a delta in the other");
    }
    const std::array<int32_t, 2> values = {delta.x, delta.y};
    const int bits = EdgeWidth(record.bits, values);
    out_.Bits(3, 2);
    out_.Bits(static_cast<uint32_t>(bits - kMinEdgeBits), 4);
    out_.Bits(form == LineForm::kBoth, 1);
    if (form != LineForm::kBoth) out_.Bits(form == LineForm::kVertical, 1);
    if (form != LineForm::kVertical) out_.SBits(delta.x, bits);
    if (form != LineForm::kHorizontal) out_.SBits(delta.y, bits);
  }

  void Curve(const ShapeRecord& record) {
    const std::array<int32_t, 4> values = {record.control.x, record.control.y, record.anchor.x,
                                           record.anchor.y};
    const int bits = EdgeWidth(record.bits, values);
    out_.Bits(2, 2);
    out_.Bits(static_cast<uint32_t>(bits - kMinEdgeBits), 4);
    for (int32_t value : values) out_.SBits(value, bits);
  }

  BitWriter& out_;
  int fillBits_ = 0;
  int lineBits_ = 0;
  bool alpha_;
};

}  // namespace

FillStyle FillStyle::Solid(Color color) {
  FillStyle fill;
  fill.color = color;
  return fill;
}

FillStyle FillStyle::Linear(const Matrix& matrix, std::vector<GradientStop> stops) {
  FillStyle fill;
  fill.type = kFillLinear;
  fill.matrix = matrix;
  fill.stops = std::move(stops);
  return fill;
}

FillStyle FillStyle::Radial(const Matrix& matrix, std::vector<GradientStop> stops) {
  FillStyle fill = Linear(matrix, std::move(stops));
  fill.type = kFillRadial;
  return fill;
}

FillStyle FillStyle::Bitmap(uint16_t id, const Matrix& matrix, bool clipped) {
  FillStyle fill;
  fill.type = clipped ? kFillBitmapClipped : kFillBitmapTiled;
  fill.bitmap = id;
  fill.matrix = matrix;
  return fill;
}

ShapeRecord ShapeRecord::Move(Point to) {
  ShapeRecord record;
  record.flags = kChangeMove;
  record.move = to;
  return record;
}

ShapeRecord ShapeRecord::LineBy(Point delta) {
  ShapeRecord record;
  record.kind = RecordKind::kLine;
  record.anchor = delta;
  return record;
}

ShapeRecord ShapeRecord::CurveBy(Point control, Point anchor) {
  ShapeRecord record;
  record.kind = RecordKind::kCurve;
  record.control = control;
  record.anchor = anchor;
  return record;
}

int FillBits(const StyleTables& styles) {
  return styles.fillBits == kAuto ? UnsignedWidth(static_cast<uint32_t>(styles.fills.size()))
                                  : styles.fillBits;
}

int LineBits(const StyleTables& styles) {
  return styles.lineBits == kAuto ? UnsignedWidth(static_cast<uint32_t>(styles.lines.size()))
                                  : styles.lineBits;
}

void WriteStyleCount(BitWriter& out, size_t count, bool forceLong) {
  if (count < kLongCount && !forceLong) {
    out.U8(static_cast<uint32_t>(count));
    return;
  }
  if (count > 0xFFFF) throw std::range_error("a style table holds at most 65535 styles");
  out.U8(kLongCount);
  out.U16(static_cast<uint32_t>(count));
}

void WriteStyleTables(BitWriter& out, const StyleTables& styles, bool alpha) {
  out.Align();
  WriteStyleCount(out, styles.fills.size(), styles.longFillCount);
  for (const FillStyle& fill : styles.fills) WriteFillStyle(out, fill, alpha);
  WriteStyleCount(out, styles.lines.size(), styles.longLineCount);
  for (const LineStyle& line : styles.lines) {
    out.U16(line.width);
    WriteColor(out, line.color, alpha);
  }
}

void WriteEdges(BitWriter& out, const std::vector<ShapeRecord>& records, int fillBits, int lineBits,
                bool alpha) {
  RecordWriter writer(out, fillBits, lineBits, alpha);
  for (const ShapeRecord& record : records) writer.Write(record);
  writer.End();
}

void WriteShape(BitWriter& out, const StyleTables& styles, const std::vector<ShapeRecord>& records,
                bool alpha) {
  WriteStyleTables(out, styles, alpha);
  WriteEdges(out, records, FillBits(styles), LineBits(styles), alpha);
}

}  // namespace vexel::author
