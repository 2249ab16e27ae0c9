// Shapes as data: style tables, records in file order, and their packing.
// ShapeBuilder draws; here every odd form that a file can have can be said.
#pragma once

#include "author/records.h"

namespace vexel::author {

// Bits of the fill type byte. A gradient of any other type is linear; bit 0
// tells a clipped bitmap from a tiled one.
enum FillType : uint8_t {
  kFillSolid = 0x00,
  kFillLinear = 0x10,
  kFillRadial = 0x12,
  kFillBitmapTiled = 0x40,
  kFillBitmapClipped = 0x41,
};

struct GradientStop {
  uint8_t position = 0;  // 0 to 255 along the gradient
  Color color;
};

struct FillStyle {
  uint8_t type = kFillSolid;
  Color color;    // solid
  Matrix matrix;  // gradient square or bitmap pixels to the shape
  MatrixForm matrixForm;
  std::vector<GradientStop> stops;  // at most 255 are written; players keep 8
  uint16_t bitmap = 0;              // character id

  static FillStyle Solid(Color color);
  static FillStyle Linear(const Matrix& matrix, std::vector<GradientStop> stops);
  static FillStyle Radial(const Matrix& matrix, std::vector<GradientStop> stops);
  // The matrix maps pixels, so a bitmap at its own size has the scale 20.
  static FillStyle Bitmap(uint16_t id, const Matrix& matrix, bool clipped = false);
};

struct LineStyle {
  uint16_t width = kPixel;
  Color color;
};

struct StyleTables {
  std::vector<FillStyle> fills;
  std::vector<LineStyle> lines;
  bool longFillCount = false;  // the 16-bit count, also where a byte would do
  bool longLineCount = false;
  int fillBits = kAuto;  // widths of the indexes, 0 to 15
  int lineBits = kAuto;
};

// Flags of a style change.
enum ChangeFlags : uint8_t {
  kChangeMove = 0x01,
  kChangeFill0 = 0x02,
  kChangeFill1 = 0x04,
  kChangeLine = 0x08,
  kChangeStyles = 0x10,
};

enum class RecordKind : uint8_t { kChange, kLine, kCurve };

// How a straight edge says its deltas.
enum class LineForm : uint8_t { kAuto, kBoth, kVertical, kHorizontal };

struct ShapeRecord {
  RecordKind kind = RecordKind::kChange;

  uint8_t flags = 0;  // change: which of the following five stand in the file
  Point move;         // absolute
  uint32_t fill0 = 0;
  uint32_t fill1 = 0;
  uint32_t line = 0;
  StyleTables styles;

  Point control;  // curve: from the pen to the control point
  Point anchor;   // both edges: from the pen (curve: from the control point) to the end
  LineForm lineForm = LineForm::kAuto;

  int bits = kAuto;  // width of the values: 0 to 31 in a move, 2 to 17 in an edge

  static ShapeRecord Move(Point to);
  static ShapeRecord LineBy(Point delta);
  static ShapeRecord CurveBy(Point control, Point anchor);
};

// The body of a shape behind its bounds: tables, widths, records, end record.
void WriteShape(BitWriter& out, const StyleTables& styles, const std::vector<ShapeRecord>& records,
                bool alpha);
// Records behind their two widths alone: glyphs, and both halves of a morph.
void WriteEdges(BitWriter& out, const std::vector<ShapeRecord>& records, int fillBits, int lineBits,
                bool alpha = false);
// A count of styles: a byte, or 255 and 16 bits.
void WriteStyleCount(BitWriter& out, size_t count, bool forceLong);
// The tables without the index widths that follow them in a shape.
void WriteStyleTables(BitWriter& out, const StyleTables& styles, bool alpha);

// The widths that the tables ask for.
int FillBits(const StyleTables& styles);
int LineBits(const StyleTables& styles);

}  // namespace vexel::author
