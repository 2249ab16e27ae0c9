// Outlines as statements: selections and paths where the writer would make the
// same records of them, single records elsewhere.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "author/language/dumper.h"

namespace vexel::author {

namespace {

// Beyond this, in stored units, paths are not read.
constexpr int64_t kPathFar = 1 << 20;
constexpr size_t kPathLine = 84;

// The bounds that the maker finds by itself.
Rect BoundsOf(const std::vector<ShapeRecord>& records, int32_t thickest, bool* found) {
  int64_t x = 0, y = 0, xmin = 0, xmax = 0, ymin = 0, ymax = 0;
  bool drawn = false;
  const auto grow = [&] {
    if (!drawn) {
      xmin = xmax = x;
      ymin = ymax = y;
      drawn = true;
    }
    xmin = std::min(xmin, x);
    xmax = std::max(xmax, x);
    ymin = std::min(ymin, y);
    ymax = std::max(ymax, y);
  };
  for (const ShapeRecord& record : records) {
    if (record.kind == RecordKind::kChange) {
      if (record.flags & kChangeMove) {
        x = record.move.x;
        y = record.move.y;
      }
      continue;
    }
    grow();
    if (record.kind == RecordKind::kCurve) {
      x += record.control.x;
      y += record.control.y;
      grow();
    }
    x += record.anchor.x;
    y += record.anchor.y;
    grow();
  }
  const int64_t half = drawn ? (thickest + 1) / 2 : 0;
  *found = xmin > -(1 << 30) && xmax < (1 << 30) && ymin > -(1 << 30) && ymax < (1 << 30);
  const auto cut = [](int64_t v) { return static_cast<int32_t>(v); };
  return {cut(xmin - half), cut(xmax + half), cut(ymin - half), cut(ymax + half)};
}

int32_t Thickest(const StyleTables& styles, int32_t least) {
  for (const LineStyle& line : styles.lines) least = std::max<int32_t>(least, line.width);
  return least;
}

void AddTableParts(StatementText& statement, const StyleTables& styles) {
  statement.Part("fills", styles.fillBits).Part("lines", styles.lineBits);
  if (styles.longFillCount) statement.Part("longfills", 1);
  if (styles.longLineCount) statement.Part("longlines", 1);
}

// Positions that an even spread does not give.
std::string StopsText(const std::vector<GradientStop>& stops, bool alpha) {
  if (stops.empty()) return "none";
  bool even = true;
  for (size_t i = 0; i < stops.size(); ++i) {
    const double position = stops.size() == 1 ? 0 : double(i) / double(stops.size() - 1);
    even = even && std::lround(position * 255) == stops[i].position;
  }
  std::string text;
  for (const GradientStop& stop : stops) {
    if (!text.empty()) text += ", ";
    if (!even) text += PercentText(stop.position, 255) + " ";
    Color color = stop.color;
    if (!alpha) color.alpha = 255;
    text += ColorText(color);
  }
  return text;
}

// Whether a linear gradient is said by two points, and those.
bool AlongOf(const Matrix& m, Rect* line) {
  if (m.d != m.a || m.c != -m.b || m.a % 2 != 0 || m.b % 2 != 0) return false;
  const int32_t dx = m.a / 2, dy = m.b / 2;
  const int64_t x = int64_t{m.tx} - (dx - (dx & 1)) / 2, y = int64_t{m.ty} - (dy - (dy & 1)) / 2;
  const auto far = [](int64_t v) { return std::abs(v) > 0x3000000; };
  if (far(x) || far(y) || far(dx) || far(dy)) return false;
  *line = {static_cast<int32_t>(x), static_cast<int32_t>(x + dx), static_cast<int32_t>(y),
           static_cast<int32_t>(y + dy)};
  return true;
}

bool IsRound(const Matrix& m) {
  const auto fits = [](int32_t v) { return v % 4 == 0 && std::abs(int64_t{v} / 4) < 0x3000000; };
  return m.b == 0 && m.c == 0 && fits(m.a) && fits(m.d);
}

}  // namespace

std::string ShapePrinter::PaintFields(const FillStyle& fill) const {
  StatementText text("");
  if (fill.type & 0x10) {
    const Matrix& m = fill.matrix;
    Rect line;
    if (fill.type == kFillLinear && AlongOf(m, &line)) {
      text.Flag(Field::kLinear).AddRect(Field::kAlong, line);
      text.AddMatrix({}, fill.matrixForm, false);
    } else if (fill.type == kFillRadial && IsRound(m)) {
      text.Flag(Field::kRadial).Stored(Field::kCenter, {m.tx, m.ty});
      if (m.a == m.d)
        text.Stored(Field::kRadius, {m.a / 4});
      else
        text.Stored(Field::kRadius, {m.a / 4, m.d / 4});
      text.AddMatrix({}, fill.matrixForm, false);
    } else {
      if (fill.type == kFillLinear)
        text.Flag(Field::kLinear);
      else if (fill.type == kFillRadial)
        text.Flag(Field::kRadial);
      else
        text.Stored(Field::kType, {fill.type});
      text.AddMatrix(m, fill.matrixForm, false);
    }
    text.Word("stops").Word(StopsText(fill.stops, alpha_));
  } else if (fill.type & 0x40) {
    if (fill.type != kFillBitmapTiled && fill.type != kFillBitmapClipped)
      text.Stored(Field::kType, {fill.type});
    text.Character(Field::kPicture, ReferenceTo(names_, fill.bitmap));
    if (fill.type == kFillBitmapClipped) text.Flag(Field::kClipped);
    text.AddMatrix(fill.matrix, fill.matrixForm, false, double(kOne) * kPixel);
  } else if (fill.type == kFillSolid) {
    text.Word(ColorText(fill.color));
  } else {
    text.Stored(Field::kType, {fill.type}).Colored(Field::kColor, fill.color);
  }
  return text.Take();
}

std::string ShapePrinter::Tables(const StyleTables& styles) const {
  std::string out;
  size_t number = 0;
  for (const FillStyle& fill : styles.fills)
    out += "paint p" + std::to_string(++number) + PaintFields(fill) + "\n";
  number = 0;
  for (const LineStyle& line : styles.lines) {
    StatementText pen("pen l" + std::to_string(++number));
    pen.Stored(Field::kWidth, {line.width}).Colored(Field::kColor, line.color);
    out += pen.Take() + "\n";
  }
  return out;
}

std::string ShapePrinter::PaintName(uint32_t index) const {
  if (index == 0) return "none";
  return index <= paints_ ? std::string("p").append(std::to_string(index)) : std::to_string(index);
}

std::string ShapePrinter::PenName(uint32_t index) const {
  if (index == 0) return "none";
  return index <= pens_ ? std::string("l").append(std::to_string(index)) : std::to_string(index);
}

void ShapePrinter::AddPoint(char command, int64_t x, int64_t y) {
  if (command != ' ') {
    if (!path_.empty()) path_ += ' ';
    path_ += command;
  } else {
    path_ += ' ';
  }
  path_ += Number(x);
  path_ += ' ';
  path_ += Number(y);
}

void ShapePrinter::FlushPath() {
  if (!select_.empty()) out_ += select_ + "\n";
  select_.clear();
  if (path_.empty()) return;
  out_ += "path";
  if (path_.size() <= kPathLine) {
    out_ += " \"";
    out_ += path_;
    out_ += "\"\n";
  } else {
    // Cut between commands, each of which begins with a letter.
    for (size_t at = 0; at < path_.size();) {
      size_t end = path_.size();
      if (end - at > kPathLine) {
        end = path_.find_last_of("MLQ", at + kPathLine);
        if (end == std::string::npos || end <= at) end = path_.find_first_of("MLQ", at + 1);
        if (end == std::string::npos) end = path_.size();
      }
      out_ += "\n  \"";
      out_.append(path_, at, end - at);
      out_ += '"';
      at = end;
    }
    out_ += "\n";
  }
  path_.clear();
}

void ShapePrinter::ChangeStatement(const ShapeRecord& record) {
  FlushPath();
  std::string text;
  const bool styles = record.flags & kChangeStyles;
  text = record.flags == kChangeStyles ? "layer" : "change";
  if (record.flags & kChangeMove)
    text += " to " + Number(record.move.x) + ", " + Number(record.move.y);
  if (record.flags & kChangeFill0) text += " fill0 " + PaintName(record.fill0);
  if (record.flags & kChangeFill1) text += " fill " + PaintName(record.fill1);
  if (record.flags & kChangeLine) text += " stroke " + PenName(record.line);
  StatementText statement(text);
  if (record.bits != kAuto) statement.Stored(Field::kBits, {record.bits});
  if (styles) AddTableParts(statement, record.styles);
  out_ += statement.Take();
  if (styles) {
    out_ += " {\n" + Indented(Tables(record.styles)) + "}";
    paints_ = record.styles.fills.size();
    pens_ = record.styles.lines.size();
  }
  out_ += "\n";
}

void ShapePrinter::EdgeStatement(const ShapeRecord& record) {
  FlushPath();
  const bool curve = record.kind == RecordKind::kCurve;
  std::string text =
      curve ? "curve " + Number(record.control.x) + ", " + Number(record.control.y) + ", "
            : std::string("edge ");
  StatementText statement(text + Number(record.anchor.x) + ", " + Number(record.anchor.y));
  if (record.bits != kAuto) statement.Stored(Field::kBits, {record.bits});
  if (record.lineForm == LineForm::kBoth) statement.Flag(Field::kBoth);
  if (record.lineForm == LineForm::kVertical) statement.Flag(Field::kVertical);
  if (record.lineForm == LineForm::kHorizontal) statement.Flag(Field::kHorizontal);
  out_ += statement.Take() + "\n";
}

std::string ShapePrinter::Records(const StyleTables* first,
                                  const std::vector<ShapeRecord>& records) {
  out_.clear();
  x_ = y_ = 0;
  if (first) {
    paints_ = first->fills.size();
    pens_ = first->lines.size();
  }
  for (size_t i = 0; i < records.size(); ++i) {
    const ShapeRecord& record = records[i];
    if (record.kind == RecordKind::kChange) {
      const bool beforeEdge = i + 1 < records.size() && records[i + 1].kind != RecordKind::kChange;
      const bool far =
          (record.flags & kChangeMove) && (std::abs(int64_t{record.move.x}) > kPathFar ||
                                           std::abs(int64_t{record.move.y}) > kPathFar);
      if (record.flags & kChangeMove) {
        x_ = record.move.x;
        y_ = record.move.y;
      }
      if (plain_ || !beforeEdge || far || record.bits != kAuto || (record.flags & kChangeStyles)) {
        ChangeStatement(record);
        continue;
      }
      // A path may go on over a move alone.
      if (record.flags != kChangeMove) FlushPath();
      if (record.flags & kChangeFill0) select_ += " fill0 " + PaintName(record.fill0);
      if (record.flags & kChangeFill1) select_ += " fill " + PaintName(record.fill1);
      if (record.flags & kChangeLine) select_ += " stroke " + PenName(record.line);
      if (!select_.empty() && select_[0] == ' ') select_.erase(0, 1);
      if (record.flags & kChangeMove) AddPoint('M', x_, y_);
      continue;
    }
    int64_t cx = x_, cy = y_;
    if (record.kind == RecordKind::kCurve) {
      cx += record.control.x;
      cy += record.control.y;
    }
    const int64_t x = cx + record.anchor.x, y = cy + record.anchor.y;
    const auto far = [](int64_t v) { return std::abs(v) > kPathFar; };
    const bool odd = plain_ || record.bits != kAuto || record.lineForm != LineForm::kAuto ||
                     far(x_) || far(y_) || far(cx) || far(cy) || far(x) || far(y);
    x_ = x;
    y_ = y;
    if (odd) {
      EdgeStatement(record);
    } else if (record.kind == RecordKind::kCurve) {
      AddPoint('Q', cx, cy);
      AddPoint(' ', x, y);
    } else {
      AddPoint('L', x, y);
    }
  }
  FlushPath();
  return std::move(out_);
}

std::string Dumper::SayShape(const FramedTag& tag, RecordReader& in, Manner manner) {
  const uint16_t id = in.U16();
  int boundsBits;
  const Rect bounds = in.ReadRect(&boundsBits);
  const bool alpha = tag.code == kTagDefineShape3;
  StyleTables styles;
  std::vector<ShapeRecord> records;
  if (!in.ReadShape(&styles, &records, alpha)) return {};
  StatementText statement(Head("shape", id));
  if (!alpha) statement.Stored(Field::kForm, {tag.code == kTagDefineShape ? 1 : 2});
  int32_t thickest = Thickest(styles, 0);
  for (const ShapeRecord& record : records) thickest = Thickest(record.styles, thickest);
  bool found;
  const Rect usual = BoundsOf(records, thickest, &found);
  if (!found || !(usual == bounds)) statement.AddRect(Field::kBounds, bounds);
  statement.Part("bounds", boundsBits);
  AddTableParts(statement, styles);
  ShapePrinter printer(maker_.characters(), kPixel, alpha, manner == Manner::kRecords);
  std::string block = printer.Tables(styles);
  block += printer.Records(&styles, records);
  return Finish(statement, tag, in, " {\n" + Indented(block) + "}");
}

std::string Dumper::SayMorph(const FramedTag& tag, RecordReader& in, Manner manner) {
  const uint16_t id = in.U16();
  int boundsBits, endBoundsBits;
  const Rect bounds = in.ReadRect(&boundsBits);
  const Rect endBounds = in.ReadRect(&endBoundsBits);
  const uint32_t offset = in.U32();
  const size_t origin = in.at();

  ShapePrinter printer(maker_.characters(), kPixel, true, manner == Manner::kRecords);
  std::string block;
  bool longFills, longLines;
  const uint32_t fills = ReadStyleCount(in, &longFills);
  for (uint32_t i = 0; i < fills && in.ok(); ++i) {
    FillStyle start, end;
    start.type = end.type = in.U8();
    if (start.type & 0x40 && !(start.type & 0x10)) start.bitmap = end.bitmap = in.U16();
    if (start.type & 0x50) {
      start.matrix = in.ReadMatrix(&start.matrixForm);
      end.matrix = in.ReadMatrix(&end.matrixForm);
    } else {
      start.color = in.ReadColor(true);
      end.color = in.ReadColor(true);
    }
    const size_t stops = start.type & 0x10 ? in.U8() : 0;
    for (size_t stop = 0; stop < stops && in.ok(); ++stop) {
      for (FillStyle* side : {&start, &end}) {
        const uint8_t position = in.U8();
        side->stops.push_back({position, in.ReadColor(true)});
      }
    }
    const std::string first = printer.PaintFields(start), second = printer.PaintFields(end);
    block += "paint p" + std::to_string(i + 1) + first;
    if (first != second) block += " to" + second;
    block += "\n";
  }
  const uint32_t lines = ReadStyleCount(in, &longLines);
  int32_t thickest = 0, endThickest = 0;
  for (uint32_t i = 0; i < lines && in.ok(); ++i) {
    const uint16_t width = in.U16(), endWidth = in.U16();
    const Color color = in.ReadColor(true), endColor = in.ReadColor(true);
    thickest = std::max<int32_t>(thickest, width);
    endThickest = std::max<int32_t>(endThickest, endWidth);
    StatementText pen("pen l" + std::to_string(i + 1));
    pen.Stored(Field::kWidth, {width}).Colored(Field::kColor, color);
    if (endWidth != width || !(endColor == color)) {
      pen.Word("to").Stored(Field::kWidth, {endWidth}).Colored(Field::kColor, endColor);
    }
    block += pen.Take() + "\n";
  }
  std::vector<ShapeRecord> startRecords, endRecords;
  int startFillBits = 0, startLineBits = 0, endFillBits = 0, endLineBits = 0;
  if (!in.ok() || !in.ReadEdges(&startRecords, &startFillBits, &startLineBits, true)) return {};
  if (in.at() != origin + offset) return {};
  if (!in.ReadEdges(&endRecords, &endFillBits, &endLineBits, true)) return {};

  StyleTables names;
  names.fills.resize(fills);
  names.lines.resize(lines);
  StatementText start("start"), end("end");
  if (startFillBits != UnsignedWidth(fills)) start.Part("fills", startFillBits);
  if (startLineBits != UnsignedWidth(lines)) start.Part("lines", startLineBits);
  if (endFillBits != 0) end.Part("fills", endFillBits);
  if (endLineBits != 0) end.Part("lines", endLineBits);
  block += start.Take() + " {\n" + Indented(printer.Records(&names, startRecords)) + "}\n";
  block += end.Take() + " {\n" + Indented(printer.Records(&names, endRecords)) + "}\n";

  StatementText statement(Head("morph", id));
  bool found;
  if (!(BoundsOf(startRecords, thickest, &found) == bounds) || !found)
    statement.AddRect(Field::kBounds, bounds);
  if (!(BoundsOf(endRecords, endThickest, &found) == endBounds) || !found)
    statement.AddRect(Field::kEndBounds, endBounds);
  statement.Part("bounds", boundsBits).Part("endbounds", endBoundsBits);
  if (longFills) statement.Part("longfills", 1);
  if (longLines) statement.Part("longlines", 1);
  return Finish(statement, tag, in, " {\n" + Indented(block) + "}");
}

}  // namespace vexel::author
