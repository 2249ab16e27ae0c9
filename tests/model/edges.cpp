// From a placed character to edges and colours, and the walk that paints.
#include "field.h"
#include "shape.h"

namespace vexel::model {

RColor* CreateClipColor(Object* o) {
  auto c = std::make_shared<RColor>();
  c->SetUp(&o->stage->raster);
  c->order = 0;
  c->type = kClip;
  c->transparent = true;
  c->BuildCache();
  o->colors.push_front(c);
  return c.get();
}

CharacterParser::CharacterParser(Object* o, Bytes data, i64 at, const Matrix& matrix)
    : ShapeParser(o->character->movie, std::move(data), at, matrix), object(o) {}

void CharacterParser::MakeClipper() {
  RColor* c = CreateClipColor(object);
  for (size_t i = 1; i < fillTable.size(); ++i) fillTable[i] = c;
  for (size_t i = 1; i < lineTable.size(); ++i) lineTable[i].color = nullptr;
}

void CharacterParser::Prepare(const Rect& b, Stroker& stroker) {
  depth = 0;
  stroker.edges = &object->edges;
  stroker.antialias = object->stage->antialias;
  preclip = !(b.xmin >= -32000 && b.xmax < 32001 && b.ymin >= -32000 && b.ymax < 32001);
  stroker.preclip = preclip;
  raster = &object->stage->raster;
  colorList = &object->colors;
}

void CharacterParser::BuildEdges(bool getStyles, const Rect& devBounds) {
  Stroker stroker;
  Prepare(devBounds, stroker);
  if (getStyles) {
    GetStyles();
    if (object->clipDepth) MakeClipper();
  } else {
    ReadWidths();
  }
  color1 = color2 = nullptr;
  bool filling = false, stroking = false;
  Curve c;
  for (int r; (r = GetEdge(c)) != kEnd;) {
    if (r == 0) {
      if (filling) AddCurve({&object->edges, preclip, &depth, fillRule, color1, color2}, c);
      if (stroking) stroker.Add(c);
      continue;
    }
    if (r & (kFill0 | kFill1)) {
      color1 = Fill(fill0);
      color2 = Fill(fill1);
      if (!color1 && color2) {
        color1 = color2;
        color2 = nullptr;
      }
      fillRule = color2 ? 0 : useWinding ? 2 : 1;
      filling = color1 || color2;
    }
    if (r & (kMove | kLine)) {
      if (stroking) stroker.End();
      const LineStyle style = LineAt(line);
      stroking = style.color != nullptr;
      if (stroking) stroker.Begin(style.thickness, style.color);
    }
  }
  if (stroking) stroker.End();
}

void CharacterParser::BuildMorphEdges(const Rect& devBounds) {
  Stroker stroker;
  Prepare(devBounds, stroker);
  const i64 offset = GetDWord();
  i64 at = pos + offset;
  if (at > Size()) at = Size();
  ShapeParser other(movie, script, at, mat);
  other.ReadWidths();
  GetMorphStyles();
  if (object->clipDepth) MakeClipper();
  ReadWidths();
  color1 = color2 = nullptr;
  bool filling = false, stroking = false;
  Curve start;
  for (int r; (r = GetEdge(start)) != kEnd;) {
    if (r == 0) {
      Curve end;
      int e = other.GetEdge(end);
      if (e != 0) e = other.GetEdge(end);
      if (e != 0) {
        end.a1 = end.c = end.a2 = other.curPtDev;
        end.isLine = true;
      }
      auto mix = [this](Point p, Point q) {
        return Point{Lerp(p.x, q.x, ratio), Lerp(p.y, q.y, ratio)};
      };
      const Curve c{mix(start.a1, end.a1), mix(start.c, end.c), mix(start.a2, end.a2),
                    start.isLine && end.isLine};
      if (filling) AddCurve({&object->edges, preclip, &depth, fillRule, color1, color2}, c);
      if (stroking) stroker.Add(c);
      continue;
    }
    if (r & (kMove | kLine)) {
      if (stroking) stroker.End();
      const LineStyle style = LineAt(line);
      stroking = style.color != nullptr && style.thickness > 0;
      if (stroking) stroker.Begin(style.thickness, style.color);
    }
    if (r & (kFill0 | kFill1)) {
      color1 = Fill(fill0);
      color2 = Fill(fill1);
      if (color1 == color2) color2 = nullptr;
      fillRule = color2 ? 0 : useWinding ? 2 : 1;
      filling = color1 || color2;
    }
  }
  if (stroking) stroker.End();
}

// ---- objects ---------------------------------------------------------------

void Object::BuildEdges(const STransform& t) {
  if (!edges.empty() || !colors.empty()) return;
  if (!character || character->type > 9) return;
  if (character->movie->main.scriptErr != 0) return;
  if (character->type == kShape) {
    CharacterParser p(this, character->data, 0, t.mat);
    p.getAlpha = character->tagCode == 32;
    p.cxform = t.cxform;
    p.BuildEdges(true, devBounds);
  } else if (character->type == kMorph) {
    CharacterParser p(this, character->data, 0, t.mat);
    p.getAlpha = character->tagCode == 46;
    p.cxform = t.cxform;
    p.ratio = ratio;
    p.BuildMorphEdges(devBounds);
  } else if (character->type == kEditText) {
    if (field) field->Draw(t);
  } else if (character->type == kText) {
    BuildText(t);
  }
}

void Object::BuildText(const STransform& t) {
  Parser p;
  p.script = character->data;
  const bool hasAlpha = character->tagCode == 33;
  const Matrix textMat = Concat(p.GetMatrix(), t.mat);
  const int glyphBits = static_cast<int>(p.GetByte());
  const int advanceBits = static_cast<int>(p.GetByte());
  RColor* color = clipDepth ? CreateClipColor(this) : nullptr;
  u32 layer = 0;
  CharacterRef font;
  Matrix run;
  for (u32 flags; (flags = p.GetByte()) != 0;) {
    if (flags & 8) {
      font = character->movie->Find(static_cast<int>(p.GetWord()));
      if (font && font->type != kFont) font = nullptr;
    }
    if (flags & 4) {
      Rgbi value = p.GetRgbi(hasAlpha);
      if (!clipDepth) {
        auto c = std::make_shared<RColor>();
        c->SetUp(&stage->raster);
        c->order = layer;
        colors.push_front(c);
        color = c.get();
        t.cxform.Apply(value);
        if (value.alpha < 255) {
          Premultiply(value);
          c->transparent = true;
        }
        c->rgb = value;
        c->BuildCache();
        ++layer;
      }
    }
    if (flags & 1) run.tx = static_cast<i16>(p.GetWord());
    if (flags & 2) run.ty = static_cast<i16>(p.GetWord());
    if (flags & 8) run.a = run.d = static_cast<i32>(p.GetWord()) * 64;
    u8 count = static_cast<u8>(p.GetByte());
    const bool wraps = count == 0;  // then 256 glyphs, but not into the closing byte
    p.InitBits();
    do {
      const i64 glyph = p.GetBits(glyphBits);
      const i32 advance = p.GetSBits(advanceBits);
      if (font) {
        const Matrix m = Concat(run, textMat);
        Parser table;
        table.script = font->data;
        table.pos = glyph * (font->fontFlags & 8 ? 4 : 2);
        const i64 offset = font->fontFlags & 8 ? table.GetDWord() : table.GetWord();
        CharacterParser g(this, font->data, offset, m);
        g.useWinding = true;
        g.nFills = 1;
        g.fillTable.push_back(color);
        g.BuildEdges(false, devBounds);
      }
      run.tx += advance;
      const i64 left = (p.Size() - 1 - p.pos) * 8 + p.bitPos;
      if (wraps && glyphBits + advanceBits > left) break;
      if (p.pos >= p.Size() && p.bitPos == 0) break;
    } while (--count != 0);
  }
}

void Object::Draw(Raster& raster, STransform t, const RColor* clipper) {
  t.mat = Concat(mat, t.mat);
  t.cxform.ConcatWith(cxform);
  if (RectTestIntersect(devBounds, raster.edgeClip)) {
    BuildEdges(t);
    raster.AddEdges(edges, colors, clipper);
    drawn = true;
  }
  for (Object* child = firstChild; child;) {
    if (child->clipDepth) {
      child = child->DrawClipBracket(raster, t, clipper);
    } else {
      child->Draw(raster, t, clipper);
      child = child->next;
    }
  }
}

Object* Object::DrawClipBracket(Raster& raster, const STransform& t, const RColor* clipper) {
  STransform own = t;
  own.mat = Concat(mat, t.mat);
  own.cxform.ConcatWith(cxform);
  BuildEdges(own);
  if (colors.empty()) return next;
  drawn = true;
  const RColor* mask = colors.front().get();
  Object* s = next;
  while (s && s->depth <= clipDepth) {
    if (s->clipDepth) {
      s = s->DrawClipBracket(raster, t, mask);
    } else {
      s->Draw(raster, t, mask);
      s = s->next;
    }
  }
  if (!clipper) clipper = &kOutermost;
  raster.AddEdges(edges, colors, clipper);
  return s;
}

}  // namespace vexel::model
