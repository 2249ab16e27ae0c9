// Morphs: styles with two ends, and two outlines that go edge by edge.
#include <algorithm>

#include "author/language/maker.h"

namespace vexel::author {

namespace {

// Pieces of each cubic curve, the same in both halves.
constexpr int kMorphCubicPieces = 4;

size_t EdgeCount(const ShapeBuilder& builder) {
  return static_cast<size_t>(
      std::count_if(builder.records().begin(), builder.records().end(),
                    [](const ShapeRecord& record) { return record.kind != RecordKind::kChange; }));
}

int WidthFor(int forced, size_t count) {
  return forced == kAuto ? UnsignedWidth(static_cast<uint32_t>(count)) : forced;
}

// A half's outline, grown by half its thickest line.
Rect Grown(const Rect& rect, int32_t thickness) {
  const int32_t half = (thickness + 1) / 2;
  return {rect.xmin - half, rect.xmax + half, rect.ymin - half, rect.ymax + half};
}

void WriteFill(BitWriter& out, const PaintDef& def) {
  const FillStyle& start = def.start;
  const FillStyle& end = def.end ? *def.end : def.start;
  out.U8(start.type);
  if (start.type & 0x10) {
    if (start.stops.size() != end.stops.size())
      throw std::range_error("both ends of a gradient have as many stops");
    WriteMatrix(out, start.matrix, start.matrixForm);
    WriteMatrix(out, end.matrix, end.matrixForm);
    out.U8(static_cast<uint32_t>(start.stops.size()));
    for (size_t i = 0; i < start.stops.size(); ++i) {
      out.U8(start.stops[i].position);
      WriteColor(out, start.stops[i].color, true);
      out.U8(end.stops[i].position);
      WriteColor(out, end.stops[i].color, true);
    }
  } else if (start.type & 0x40) {
    out.U16(start.bitmap);
    WriteMatrix(out, start.matrix, start.matrixForm);
    WriteMatrix(out, end.matrix, end.matrixForm);
  } else {
    WriteColor(out, start.color, true);
    WriteColor(out, end.color, true);
  }
}

}  // namespace

void Maker::Morph() {
  const uint16_t id = NewCharacter();
  const Clauses clauses = ReadClauses();
  clauses.CheckParts({"bounds", "endbounds", "longfills", "longlines"});
  MorphState state;
  MorphState* const outer = morph_;
  ShapeState* const outerShape = shape_;
  morph_ = &state;
  shape_ = nullptr;
  RunBlock(kInMorph);
  morph_ = outer;
  shape_ = outerShape;
  if (!state.start || !state.end) in_.Fail("a morph has a start and an end");
  const bool handmade = state.start->handmade || state.end->handmade;
  const size_t startEdges = EdgeCount(state.start->builder);
  const size_t endEdges = EdgeCount(state.end->builder);
  if (!handmade && startEdges != endEdges) {
    in_.Fail("the start of this morph has " + std::to_string(startEdges) + " edges, its end " +
             std::to_string(endEdges));
  }

  int32_t startThickest = 0, endThickest = 0;
  for (const PenDef& pen : state.lines) {
    startThickest = std::max<int32_t>(startThickest, pen.start.width);
    endThickest = std::max<int32_t>(endThickest, (pen.end ? *pen.end : pen.start).width);
  }
  const auto bounds = [&](Field field, const ShapeState& half, int32_t thickest) {
    return clauses.Has(field) ? clauses.ToRect(field) : Grown(half.builder.Bounds(), thickest);
  };
  BitWriter body;
  body.U16(id);
  WriteRect(body, bounds(Field::kBounds, *state.start, startThickest), clauses.Part("bounds"));
  WriteRect(body, bounds(Field::kEndBounds, *state.end, endThickest), clauses.Part("endbounds"));

  BitWriter tables;
  const auto isLong = [&](const char* part) { return clauses.Part(part) > 0; };
  WriteStyleCount(tables, state.fills.size(), isLong("longfills"));
  for (const PaintDef& fill : state.fills) WriteFill(tables, fill);
  WriteStyleCount(tables, state.lines.size(), isLong("longlines"));
  for (const PenDef& pen : state.lines) {
    const LineStyle& end = pen.end ? *pen.end : pen.start;
    tables.U16(pen.start.width);
    tables.U16(end.width);
    WriteColor(tables, pen.start.color, true);
    WriteColor(tables, end.color, true);
  }
  WriteEdges(tables, state.start->builder.records(), WidthFor(state.fillBits, state.fills.size()),
             WidthFor(state.lineBits, state.lines.size()));
  // The offset counts from behind itself to the end half.
  body.U32(static_cast<uint32_t>(tables.size()));
  body.Append(tables.bytes());
  WriteEdges(body, state.end->builder.records(), state.endFillBits, state.endLineBits);
  Emit(kTagDefineMorphShape, body, clauses);
}

void Maker::MorphHalf(std::unique_ptr<ShapeState>* half, int* fillBits, int* lineBits) {
  if (*half) in_.Fail("this half of the morph is there already");
  const Clauses clauses = ReadClauses();
  clauses.CheckParts({"fills", "lines"});
  if (clauses.Part("fills") != kAuto) *fillBits = clauses.Part("fills");
  if (clauses.Part("lines") != kAuto) *lineBits = clauses.Part("lines");
  auto state = std::make_unique<ShapeState>();
  state->styles = false;
  state->cubicPieces = kMorphCubicPieces;
  state->paints = morph_->paints;
  state->pens = morph_->pens;
  in_.Work(morph_->paints.size() + morph_->pens.size());
  DrawIn(*state);
  *half = std::move(state);
}

void Maker::MorphStart() {
  MorphHalf(&morph_->start, &morph_->fillBits, &morph_->lineBits);
}

void Maker::MorphEnd() {
  MorphHalf(&morph_->end, &morph_->endFillBits, &morph_->endLineBits);
}

}  // namespace vexel::author
