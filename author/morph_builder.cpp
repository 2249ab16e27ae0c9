// The two halves of a morph are drawn together, so that each edge of the start
// meets its edge of the end. The end half carries moves alone: players take
// styles from the start.
#include "author/morph_builder.h"

#include <algorithm>

namespace vexel::author {

namespace {

void WriteMorphFill(BitWriter& out, const MorphFill& fill, bool alpha) {
  out.U8(fill.type);
  if (fill.type & 0x10) {
    WriteMatrix(out, fill.startMatrix);
    WriteMatrix(out, fill.endMatrix);
    out.U8(static_cast<uint32_t>(fill.stops.size()));
    for (const MorphStop& stop : fill.stops) {
      out.U8(stop.startPosition);
      WriteColor(out, stop.startColor, alpha);
      out.U8(stop.endPosition);
      WriteColor(out, stop.endColor, alpha);
    }
  } else if (fill.type & 0x40) {
    out.U16(fill.bitmap);
    WriteMatrix(out, fill.startMatrix);
    WriteMatrix(out, fill.endMatrix);
  } else {
    WriteColor(out, fill.startColor, alpha);
    WriteColor(out, fill.endColor, alpha);
  }
}

void GrowRect(Rect& rect, Point point) {
  rect.xmin = std::min(rect.xmin, point.x);
  rect.xmax = std::max(rect.xmax, point.x);
  rect.ymin = std::min(rect.ymin, point.y);
  rect.ymax = std::max(rect.ymax, point.y);
}

Rect Grown(const Rect& rect, int32_t thickness) {
  const int32_t half = (thickness + 1) / 2;
  return {rect.xmin - half, rect.xmax + half, rect.ymin - half, rect.ymax + half};
}

}  // namespace

MorphFill MorphFill::Solid(Color start, Color end) {
  MorphFill fill;
  fill.startColor = start;
  fill.endColor = end;
  return fill;
}

uint32_t MorphBuilder::AddFill(const MorphFill& fill) {
  fills_.push_back(fill);
  return static_cast<uint32_t>(fills_.size());
}

uint32_t MorphBuilder::AddLine(const MorphLine& line) {
  lines_.push_back(line);
  thickestStart_ = std::max<int32_t>(thickestStart_, line.startWidth);
  thickestEnd_ = std::max<int32_t>(thickestEnd_, line.endWidth);
  return static_cast<uint32_t>(lines_.size());
}

MorphBuilder& MorphBuilder::Fill0(uint32_t fill) {
  pending_.flags |= kChangeFill0;
  pending_.fill0 = fill;
  return *this;
}

MorphBuilder& MorphBuilder::Fill1(uint32_t fill) {
  pending_.flags |= kChangeFill1;
  pending_.fill1 = fill;
  return *this;
}

MorphBuilder& MorphBuilder::Line(uint32_t line) {
  pending_.flags |= kChangeLine;
  pending_.line = line;
  return *this;
}

MorphBuilder& MorphBuilder::Style(uint32_t fill, uint32_t line) {
  return Fill0(0).Fill1(fill).Line(line);
}

MorphBuilder& MorphBuilder::MoveTo(Point start, Point end) {
  pending_.flags |= kChangeMove;
  pending_.move = start;
  pendingEnd_ = end;
  start_.pen = start;
  end_.pen = end;
  return *this;
}

void MorphBuilder::Flush() {
  if (pending_.flags == 0) return;
  start_.records.push_back(pending_);
  if (pending_.flags & kChangeMove) end_.records.push_back(ShapeRecord::Move(pendingEnd_));
  pending_ = {};
}

void MorphBuilder::Grow(Point start, Point end) {
  if (!drawn_) {
    start_.bounds = {start.x, start.x, start.y, start.y};
    end_.bounds = {end.x, end.x, end.y, end.y};
    drawn_ = true;
  }
  GrowRect(start_.bounds, start);
  GrowRect(end_.bounds, end);
}

MorphBuilder& MorphBuilder::LineTo(Point start, Point end) {
  Flush();
  Grow(start_.pen, end_.pen);
  Grow(start, end);
  start_.records.push_back(ShapeRecord::LineBy(start - start_.pen));
  end_.records.push_back(ShapeRecord::LineBy(end - end_.pen));
  start_.pen = start;
  end_.pen = end;
  return *this;
}

MorphBuilder& MorphBuilder::CurveTo(Point startControl, Point startAnchor, Point endControl,
                                    Point endAnchor) {
  Flush();
  Grow(start_.pen, end_.pen);
  Grow(startControl, endControl);
  Grow(startAnchor, endAnchor);
  start_.records.push_back(
      ShapeRecord::CurveBy(startControl - start_.pen, startAnchor - startControl));
  end_.records.push_back(ShapeRecord::CurveBy(endControl - end_.pen, endAnchor - endControl));
  start_.pen = startAnchor;
  end_.pen = endAnchor;
  return *this;
}

Rect MorphBuilder::StartBounds() const {
  return Grown(start_.bounds, thickestStart_);
}

Rect MorphBuilder::EndBounds() const {
  return Grown(end_.bounds, thickestEnd_);
}

void MorphBuilder::Write(BitWriter& out, bool alpha) const {
  BitWriter body;
  WriteStyleCount(body, fills_.size(), longFillCount);
  for (const MorphFill& fill : fills_) WriteMorphFill(body, fill, alpha);
  WriteStyleCount(body, lines_.size(), longLineCount);
  for (const MorphLine& line : lines_) {
    body.U16(line.startWidth);
    body.U16(line.endWidth);
    WriteColor(body, line.startColor, alpha);
    WriteColor(body, line.endColor, alpha);
  }
  WriteEdges(body, start_.records, UnsignedWidth(static_cast<uint32_t>(fills_.size())),
             UnsignedWidth(static_cast<uint32_t>(lines_.size())));
  // The offset counts from the byte behind itself to the end half.
  out.U32(static_cast<uint32_t>(body.size()));
  out.Append(body.bytes());
  std::vector<ShapeRecord> end = end_.records;
  end.resize(end.size() - std::min(end.size(), endRecordsMissing));
  WriteEdges(out, end, 0, 0);
}

}  // namespace vexel::author
