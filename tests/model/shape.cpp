// The style tables and edge records of shapes, morphs and glyphs.
#include "shape.h"

namespace vexel::model {

ShapeParser::ShapeParser(Movie* m, Bytes data, i64 at, const Matrix& matrix) {
  movie = m;
  script = std::move(data);
  pos = at;
  tagEnd = 0x20000000;
  mat = matrix;
  curPtDev = Transform(mat, curPt);
}

RColor* ShapeParser::NewColor(i32 order) {
  auto c = std::make_shared<RColor>();
  c->SetUp(raster);
  c->order = static_cast<u32>(order);
  colorList->push_front(c);
  return c.get();
}

void ShapeParser::SetSolid(RColor* c, Rgbi value) {
  c->type = kSolid;
  cxform.Apply(value);
  if (value.alpha < 255) {
    Premultiply(value);
    c->transparent = true;
  }
  c->rgb = value;
}

void ShapeParser::SetBitmap(RColor* c, int id) {
  c->rgb = Rgbi{};
  c->rgb.red = c->rgb.alpha = 255;
  const CharacterRef ch = movie->Find(id);
  if (ch && ch->type == kBits) {
    c->type = kBitmap;
    c->cxform = cxform;
    BuildBits(*ch);
    c->bitmap = ch->bits;
  }
}

void ShapeParser::FinishRamp(RColor* c, bool translucent) {
  if (translucent) c->transparent = true;
  if (cxform.flags != 0) {
    cxform.Apply(c->ramp);
    if (cxform.MakesTransparent()) c->transparent = true;
  }
}

void ShapeParser::SetupColor(RColor* c) {
  if (!raster) return;
  if (c->type == kBitmap || c->type == kGradient) {
    const int shift = c->type == kBitmap ? 16 : 8;
    Matrix m = mat;
    if (raster->antialias) m = Concat(m, MatrixScale(0x4000, 0x4000));
    Matrix s = c->styleMat;
    m.tx = static_cast<i32>(static_cast<u32>(m.tx) << shift);
    m.ty = static_cast<i32>(static_cast<u32>(m.ty) << shift);
    s.tx = static_cast<i32>(static_cast<u32>(s.tx) << shift);
    s.ty = static_cast<i32>(static_cast<u32>(s.ty) << shift);
    c->inverse = Invert(Concat(s, m));
  }
  if (c->type == kBitmap) {
    c->transparent = c->bitmap->transparent || cxform.MakesTransparent();
    if (!c->bitmap->valid) c->type = kSolid;
  }
  c->BuildCache();
}

void ShapeParser::GetStyles() {
  nFills = static_cast<i32>(GetByte());
  if (nFills == 255) nFills = static_cast<i32>(GetWord());
  fillTable.assign(1, nullptr);
  for (i32 i = 1; i <= nFills && pos < Size(); ++i) {
    RColor* c = NewColor(i + layer);
    fillTable.push_back(c);
    const u32 type = GetByte();
    c->fillStyle = type;
    if (type & 0x10) {
      c->type = kGradient;
      c->styleMat = GetMatrix();
      const int n = static_cast<int>(GetByte());
      bool translucent = n == 0;
      for (int k = 0; k < n; ++k) {
        const u8 ratio8 = static_cast<u8>(GetByte());
        const Srgb color = GetSrgb(getAlpha);
        if (color.alpha < 255) translucent = true;
        if (k >= 8) continue;
        c->ramp.ratio[k] = ratio8;
        c->ramp.color[k] = color;
      }
      c->ramp.n = n > 8 ? 8 : n == 0 ? 1 : n;
      FinishRamp(c, translucent);
    } else if (type & 0x40) {
      const int id = static_cast<int>(GetWord());
      c->styleMat = GetMatrix();
      SetBitmap(c, id);
    } else {
      SetSolid(c, GetRgbi(getAlpha));
    }
    SetupColor(c);
  }
  nLines = static_cast<i32>(GetByte());
  if (nLines == 255) nLines = static_cast<i32>(GetWord());
  lineTable.assign(1, LineStyle{});
  for (i32 i = 1; i <= nLines && pos < Size(); ++i) {
    RColor* c = NewColor(i + nFills + layer);
    const i32 thickness = TransformThickness(mat, static_cast<i32>(GetWord()));
    lineTable.push_back({c, thickness});
    SetSolid(c, GetRgbi(getAlpha));
    SetupColor(c);
  }
  ReadWidths();
}

void ShapeParser::GetMorphStyles() {
  nFills = static_cast<i32>(GetByte());
  if (nFills == 255) nFills = static_cast<i32>(GetWord());
  fillTable.assign(1, nullptr);
  for (i32 i = 1; i <= nFills && pos < Size(); ++i) {
    RColor* c = NewColor(i + layer);
    fillTable.push_back(c);
    const u32 type = GetByte();
    c->fillStyle = type;
    if (type & 0x10) {
      c->type = kGradient;
      const Matrix m1 = GetMatrix();
      const Matrix m2 = GetMatrix();
      c->styleMat = Lerp(m1, m2, ratio);
      const int n = static_cast<int>(GetByte());
      bool translucent = n == 0;
      for (int k = 0; k < n; ++k) {
        const i32 r1 = static_cast<i32>(GetByte());
        const Srgb c1 = GetSrgb(getAlpha);
        const i32 r2 = static_cast<i32>(GetByte());
        const Srgb c2 = GetSrgb(getAlpha);
        if (c1.alpha < 255 || c2.alpha < 255) translucent = true;
        if (k >= 8) continue;
        c->ramp.ratio[k] = static_cast<u8>(Lerp(r1, r2, ratio));
        c->ramp.color[k] = Lerp(c1, c2, ratio);
      }
      c->ramp.n = n > 8 ? 8 : n == 0 ? 1 : n;
      FinishRamp(c, translucent);
    } else if (type & 0x40) {
      const int id = static_cast<int>(GetWord());
      c->styleMat = GetMatrix();
      GetMatrix();
      SetBitmap(c, id);
    } else {
      const Rgbi c1 = GetRgbi(getAlpha);
      const Rgbi c2 = GetRgbi(getAlpha);
      SetSolid(c, Lerp(c1, c2, ratio));
    }
    SetupColor(c);
  }
  nLines = static_cast<i32>(GetByte());
  if (nLines == 255) nLines = static_cast<i32>(GetWord());
  lineTable.assign(1, LineStyle{});
  for (i32 i = 1; i <= nLines && pos < Size(); ++i) {
    RColor* c = NewColor(i + nFills + layer);
    const i32 w1 = static_cast<i32>(GetWord());
    const i32 w2 = static_cast<i32>(GetWord());
    const i32 thickness = TransformThickness(mat, static_cast<u16>(Lerp(w1, w2, ratio)));
    lineTable.push_back({c, thickness});
    const Rgbi c1 = GetRgbi(getAlpha);
    const Rgbi c2 = GetRgbi(getAlpha);
    SetSolid(c, Lerp(c1, c2, ratio));
    SetupColor(c);
  }
}

void ShapeParser::ReadWidths() {
  InitBits();
  nFillBits = static_cast<int>(GetBits(4));
  nLineBits = static_cast<int>(GetBits(4));
}

int ShapeParser::GetEdge(Curve& out) {
  if (GetBits(1)) {
    out.a1 = curPtDev;
    out.isLine = GetBits(1) != 0;
    const int n = static_cast<int>(GetBits(4)) + 2;
    if (out.isLine) {
      if (GetBits(1)) {
        const i32 dx = GetSBits(n);
        const i32 dy = GetSBits(n);
        curPt.x += dx;
        curPt.y += dy;
      } else if (GetBits(1)) {
        curPt.y += GetSBits(n);
      } else {
        curPt.x += GetSBits(n);
      }
      out.a2 = Transform(mat, curPt);
      out.c = {(out.a1.x + out.a2.x) >> 1, (out.a1.y + out.a2.y) >> 1};
    } else {
      curPt.x += GetSBits(n);
      curPt.y += GetSBits(n);
      out.c = Transform(mat, curPt);
      curPt.x += GetSBits(n);
      curPt.y += GetSBits(n);
      out.a2 = Transform(mat, curPt);
    }
    curPtDev = out.a2;
    return 0;
  }
  const int flags = static_cast<int>(GetBits(5));
  if (flags == 0) return kEnd;
  if (flags & kMove) {
    const int n = static_cast<int>(GetBits(5));
    curPt.x = GetSBits(n);
    curPt.y = GetSBits(n);
    curPtDev = Transform(mat, curPt);
  }
  if (flags & kFill0) fill0 = GetBits(nFillBits);
  if (flags & kFill1) fill1 = GetBits(nFillBits);
  if (flags & kLine) line = GetBits(nLineBits);
  if (flags & kNewStyles) {
    layer += nLines + nFills;
    GetStyles();
  }
  return flags;
}

}  // namespace vexel::model
