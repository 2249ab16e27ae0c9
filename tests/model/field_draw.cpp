// Where a field's characters stand, and the edges made of them.
#include "field.h"
#include "field_record.h"

namespace vexel::model {

bool Field::Breaks(i32 i) const {
  if (i < 0 || i >= Length()) return false;
  return At(i) == 32 || At(i) == 45;
}

i32 Field::LineStart(i32 line) const {
  if (lineStarts.empty()) return 0;
  if (line < 0) line = 0;
  if (line > lineCount) line = lineCount;
  const i32 start = lineStarts[static_cast<size_t>(line)];
  return start < Length() ? start : Length();
}

i32 Field::LineNumber(i32 i) const {
  i32 line = 0;
  for (i32 k = 1; k < lineCount; ++k) {
    if (lineStarts[static_cast<size_t>(k)] > i) break;
    line = k;
  }
  return line;
}

i32 Field::LineEnd(i32 i) const {
  const i32 line = LineNumber(i);
  if (line >= lineCount - 1) return Length();
  // As drawn last; the text may be shorter by now.
  const i32 next = lineStarts[static_cast<size_t>(line + 1)];
  const i32 end = next > 0 ? next - 1 : 0;
  return end < Length() ? end : Length();
}

i32 Field::VisibleLines() const {
  if (lineHeight == 0) return 0;
  const i32 n = (textRect.ymax - textRect.ymin - ascent) / lineHeight;
  return (n < 0 ? 0 : n) + 1;
}

i32 Field::MaxVScroll() const {
  const i32 n = lineCount - VisibleLines();
  return n < 0 ? 0 : n;
}

bool Field::CalculateLineStarts(i32 maxWidth, i32 indent) {
  lineStarts.assign(1, 0);
  lineCount = 0;
  i32 x = indent, breakAt = -1, p = 0;
  auto endLine = [&] {
    ++lineCount;
    lineStarts.push_back(p);
    breakAt = -1;
  };
  for (;;) {
    const u16 c = At(p);
    if (p >= Length()) {
      endLine();
      return true;
    }
    if (c == 10 || c == 13) {
      ++p;
      endLine();
      x = c == 13 ? indent : 0;
      continue;
    }
    x += WidthAt(p);
    if (flags & kWrap && x > maxWidth) {
      // an empty line would not take it either
      if (breakAt < 0 && WidthAt(p) > maxWidth) return false;
      if (breakAt >= 0) p = breakAt + 1;
      endLine();
      x = 0;
      continue;
    }
    if (Breaks(p)) breakAt = p;
    ++p;
  }
}

void Field::FindCursor() {
  const i32 line = LineNumber(cursor), visible = VisibleLines();
  if (line < vscroll) vscroll = line;
  if (line >= vscroll + visible) vscroll = line - visible + 1;
  if (flags & kWrap) return;
  const i32 column = cursor - LineStart(line);
  if (hscroll < column) {
    i32 x = textRect.xmin;
    for (i32 i = hscroll; i < column; ++i) x += WidthAt(i);
    while (x > textRect.xmax && hscroll < column) x -= WidthAt(hscroll++);
  } else {
    hscroll = column;
    i32 sum = 0;
    while (hscroll > 0 && sum < (textRect.xmax - textRect.xmin) / 4) sum += WidthAt(--hscroll);
  }
}

RColor* Field::NewColor(Rgbi value, int order, const STransform& t) {
  if (object->clipDepth) return nullptr;
  auto c = std::make_shared<RColor>();
  c->SetUp(&object->stage->raster);
  c->order = static_cast<u32>(order);
  object->colors.push_front(c);
  t.cxform.Apply(value);
  if (value.alpha < 255) {
    Premultiply(value);
    c->transparent = true;
  }
  c->rgb = value;
  c->BuildCache();
  return c.get();
}

// The outline of a rectangle with a stroker, else its inside.
static void AddRect(Object* o, const Rect& r, const Matrix& m, RColor* color, Stroker* stroker) {
  const Point corner[] = {Transform(m, {r.xmin, r.ymin}), Transform(m, {r.xmin, r.ymax}),
                          Transform(m, {r.xmax, r.ymax}), Transform(m, {r.xmax, r.ymin})};
  if (stroker) stroker->Begin(1, color);
  for (int i = 0; i < 4; ++i) {
    const Curve side = Line(corner[i], corner[(i + 1) % 4]);
    if (stroker) {
      stroker->Add(side);
    } else {
      int depth = 0;
      AddCurve({&o->edges, false, &depth, 2, color, nullptr}, side);
    }
  }
  if (stroker) stroker->End();
}

void Field::Draw(const STransform& t) {
  drawn = Lay(t);
}

bool Field::Lay(const STransform& t) {
  Stage& stage = *object->stage;
  bool showCursor = stage.focus && stage.focus->field && stage.cursorBlink &&
                    stage.focus->field->character == object->character && !(flags & kReadOnly);
  devMatrix = t.mat;
  const FontDesc desc = GetFontDesc();
  fontHeight = desc.height;
  if (!desc.font) return false;
  const Record r = Read();
  Parser layout;
  layout.script = desc.font->data;
  layout.pos = desc.layout;
  ascent = static_cast<i16>(layout.GetWord()) * fontHeight / 1024;
  const i32 descent = static_cast<i16>(layout.GetWord()) * fontHeight / 1024;
  lineHeight = ascent + descent + r.leading;

  Stroker stroker;
  stroker.edges = &object->edges;
  stroker.antialias = stage.antialias;
  const Rgbi black{0, 0, 0, 255}, white{255, 255, 255, 255};
  RColor* const ink = NewColor(r.color, 1, t);
  RColor* const paper = NewColor(white, 0, t);
  RColor* const dark = NewColor(black, 2, t);
  RColor* const light = NewColor(white, 3, t);
  if (flags & kBorder) {
    AddRect(object, character->bounds, devMatrix, dark, &stroker);
    AddRect(object, character->bounds, devMatrix, paper, nullptr);
  }
  textRect = RectInset(character->bounds, 40);

  std::vector<int> glyphs;
  widths.clear();
  for (i32 i = 0; i < Length(); ++i) {
    const int g = FindGlyph(flags & kPassword ? 42 : At(i), desc);
    glyphs.push_back(g);
    i32 w = 0;
    if (g >= 0) {
      layout.pos = desc.layout + 6 + 2 * g;
      w = static_cast<i16>(static_cast<i16>(layout.GetWord()) * fontHeight / 1024);
    }
    widths.push_back(w);
  }
  widths.push_back(0);
  const i32 width = textRect.xmax - textRect.xmin;
  if (!CalculateLineStarts(width - r.left - r.right, r.indent)) return false;
  const i32 visible = VisibleLines();
  if (scrollToCursor) {
    FindCursor();
    scrollToCursor = false;
  }
  i32 top = textRect.ymin;
  i32 line = vscroll > lineCount ? lineCount - 1 : vscroll;
  i32 start = LineStart(line);
  Matrix glyphMat = MatrixScale(fontHeight * 64, fontHeight * 64);
  glyphMat.ty = ascent + top;
  lineX.assign(static_cast<size_t>(lineCount + 1), 0);
  i32 firstIndent = r.indent;
  const i32 low = anchor < cursor ? anchor : cursor, high = anchor < cursor ? cursor : anchor;
  for (i32 row = 0; row < visible; ++row) {
    const i32 bottom = top + fontHeight;
    const i32 next = line + 1 < lineCount ? line + 1 : lineCount;
    i32 x = textRect.xmin + r.left + firstIndent;
    firstIndent = 0;
    i32 n = LineStart(next) - start;
    if (n > 0 && (At(start + n - 1) == 13 || At(start + n - 1) == 10)) {
      if (At(start + n - 1) == 13) firstIndent = r.indent;
      --n;
    }
    if (hscroll <= n) {
      n -= hscroll;
      start += hscroll;
    } else {
      n = 0;
    }
    std::vector<i32> xs{x};
    for (i32 i = 0; i < n; ++i) {
      const i32 w = WidthAt(start + i);
      if (!(flags & kWrap) && x + w > textRect.xmax - r.right) {
        n = i;
        break;
      }
      x += w;
      xs.push_back(x);
    }
    const size_t last = static_cast<size_t>(n);
    i32 shift = 0;
    if (align == 1) shift = width - (xs[last] - xs[0]);
    if (align == 2) shift = (width + xs[0] - xs[last]) >> 1;
    for (i32& v : xs) v += shift;
    lineX[static_cast<size_t>(line)] = xs[0];

    auto within = [n](i32 v) { return v < 0 ? 0 : v > n ? n : v; };
    const i32 a = within(low - start), b = within(high - start);
    const i32 rectBottom = high - start > n ? top + lineHeight : bottom;
    for (i32 i = 0; i < n; ++i) {
      const int g = glyphs[static_cast<size_t>(start + i)];
      if (g < 0) continue;
      glyphMat.tx = xs[static_cast<size_t>(i)];
      Parser table;
      const bool wide = (desc.font->fontFlags & 8) != 0;
      table.script = desc.font->data;
      table.pos = i64{g} * (wide ? 4 : 2);
      const i64 offset = wide ? table.GetDWord() : table.GetWord();
      CharacterParser parser(object, desc.font->data, offset, Concat(glyphMat, devMatrix));
      parser.useWinding = true;
      parser.nFills = 1;
      parser.fillTable.push_back(i >= a && i < b ? light : ink);
      parser.BuildEdges(false, object->devBounds);
    }
    if (a != b) {
      const Rect mark{xs[static_cast<size_t>(a)], xs[static_cast<size_t>(b)], top, rectBottom};
      AddRect(object, mark, devMatrix, dark, nullptr);
    }
    if (showCursor) {
      const i32 c = cursor - start;
      if ((c >= 0 && c < n) ||
          (c == n && (atLineEnd || cursor >= Length() - 1 || c == 0 || At(cursor) == 13))) {
        stroker.Begin(1, ink);
        stroker.Add(Line(Transform(devMatrix, {xs[static_cast<size_t>(c)], top}),
                         Transform(devMatrix, {xs[static_cast<size_t>(c)], bottom})));
        stroker.End();
        showCursor = false;
      }
    }
    if (At(start) == 0) break;
    start = LineStart(next);
    line = next;
    top += lineHeight;
    glyphMat.ty += lineHeight;
  }
  if (!(flags & kNoSelect)) AutoScroll();
  return true;
}

}  // namespace vexel::model
