// Shapes, morphs and the glyphs of fonts: their styles and edges.
#include <algorithm>

#include "author/bit_writer.h"
#include "author/check/checker.h"
#include "author/shape.h"

namespace vexel::author {

namespace {

constexpr uint8_t kGradientBit = 0x10;
constexpr uint8_t kBitmapBit = 0x40;
constexpr uint32_t kLongCount = 255;
constexpr uint16_t kNoCharacter = 65535;

bool IsKnownFill(uint32_t type) {
  return type == kFillSolid || type == kFillLinear || type == kFillRadial ||
         type == kFillBitmapTiled || type == kFillBitmapClipped;
}

}  // namespace

uint32_t Checker::StyleCount(TagReader* in) {
  const uint32_t count = in->U8();
  return count == kLongCount ? in->U16() : count;
}

void Checker::FillStyle(Tag* tag, TagReader* in, uint16_t id, bool alpha, bool morph) {
  in->Reading("a fill style");
  const uint32_t type = in->U8();
  if (!IsKnownFill(type)) {
    Add(FindingKind::kUnknown, *tag, "a fill has the type " + std::to_string(type));
  }
  const int times = morph ? 2 : 1;
  if (type & kGradientBit) {
    for (int i = 0; i < times; ++i) in->Matrix();
    const uint32_t count = in->U8();
    if (count == 0) Damaged(*tag, "a gradient has no colours");
    for (uint32_t i = 0; i < count * static_cast<uint32_t>(times); ++i) {
      in->U8();
      in->Color(alpha);
    }
  } else if (type & kBitmapBit) {
    const auto bitmap = static_cast<uint16_t>(in->U16());
    if (bitmap != kNoCharacter) Use(*tag, UseKind::kFill, bitmap, id);
    for (int i = 0; i < times; ++i) in->Matrix();
  } else {
    for (int i = 0; i < times; ++i) in->Color(alpha);
  }
}

Checker::StyleCounts Checker::Styles(Tag* tag, TagReader* in, uint16_t id, bool alpha, bool morph) {
  StyleCounts counts;
  in->Reading("the count of fill styles");
  counts.fills = StyleCount(in);
  for (uint32_t i = 0; i < counts.fills; ++i) FillStyle(tag, in, id, alpha, morph);
  in->Reading("the count of line styles");
  counts.lines = StyleCount(in);
  in->Reading("a line style");
  for (uint32_t i = 0; i < counts.lines; ++i) {
    for (int k = 0; k < (morph ? 2 : 1); ++k) in->U16();
    for (int k = 0; k < (morph ? 2 : 1); ++k) in->Color(alpha);
  }
  return counts;
}

void Checker::Edges(Tag* tag, TagReader* in, uint16_t id, StyleCounts counts, bool alpha,
                    bool tables) {
  in->Reading("the edges");
  in->Align();
  int fillBits = static_cast<int>(in->Bits(4));
  int lineBits = static_cast<int>(in->Bits(4));
  bool reported = false;  // once a shape
  const auto style = [&](int bits, uint32_t count, const char* what) {
    const uint32_t index = in->Bits(bits);
    if (index <= count || reported) return;
    reported = true;
    Damaged(*tag, std::string(what) + " style " + std::to_string(index) + " is used, there are " +
                      std::to_string(count));
  };
  for (;;) {
    if (in->Bits(1)) {
      const bool straight = in->Bits(1);
      const int width = static_cast<int>(in->Bits(4)) + 2;
      int needed = 2;
      int fields = 4;
      if (straight) {
        fields = in->Bits(1) ? 2 : 1;
        if (fields == 1) in->Bits(1);
      }
      for (int i = 0; i < fields; ++i) needed = std::max(needed, SignedWidth(in->SBits(width)));
      in->Width(width, needed, fields);
      continue;
    }
    const uint32_t flags = in->Bits(5);
    if (flags == 0) break;
    if (flags & kChangeMove) {
      const int width = static_cast<int>(in->Bits(5));
      const int32_t x = in->SBits(width);
      const int32_t y = in->SBits(width);
      in->Width(width, std::max(SignedWidth(x), SignedWidth(y)), 2);
    }
    if (flags & kChangeFill0) style(fillBits, counts.fills, "fill");
    if (flags & kChangeFill1) style(fillBits, counts.fills, "fill");
    if (flags & kChangeLine) style(lineBits, counts.lines, "line");
    if (flags & kChangeStyles) {
      if (!tables) {
        Damaged(*tag, "the outline of a glyph or the end of a morph has styles of its own");
        return;
      }
      counts = Styles(tag, in, id, alpha, false);
      in->Reading("the edges");
      in->Align();
      fillBits = static_cast<int>(in->Bits(4));
      lineBits = static_cast<int>(in->Bits(4));
    }
  }
  in->Align();
}

void Checker::Shape(Tag* tag, uint16_t id) {
  const bool alpha = tag->code == kTagDefineShape3;
  TagReader& in = tag->body;
  in.Reading("the bounds");
  in.Rect();
  const StyleCounts counts = Styles(tag, &in, id, alpha, false);
  Edges(tag, &in, id, counts, alpha, true);
}

void Checker::Morph(Tag* tag, uint16_t id) {
  TagReader& in = tag->body;
  in.Reading("the bounds");
  in.Rect();
  in.Rect();
  in.Reading("the offset of the end shape");
  const uint32_t offset = in.U32();
  const size_t base = in.pos();
  const StyleCounts counts = Styles(tag, &in, id, true, true);
  Edges(tag, &in, id, counts, true, false);
  if (offset > in.size() - base) {
    Damaged(*tag, "the end shape would begin behind the tag");
    in.Take(in.left());
    return;
  }
  TagReader end = in.From(base + offset);
  // The end shape takes its styles from the start: its own numbers are passed
  // over.
  Edges(tag, &end, id, {0xFFFF, 0xFFFF}, true, false);
  if (end.at() > in.at()) in.Take(end.at() - in.at());
}

void Checker::Glyphs(Tag* tag, size_t table, uint32_t count, bool wide) {
  TagReader offsets = tag->body.From(table);
  // Glyphs may share their bytes, but a font in which all do, each a little,
  // would take forever.
  size_t budget = 4 * tag->body.size() + 4096;
  for (uint32_t i = 0; i < count; ++i) {
    offsets.Reading("the offsets of glyphs");
    const uint32_t offset = wide ? offsets.U32() : offsets.U16();
    if (offset >= tag->body.size() - table) {
      Damaged(*tag, "glyph " + std::to_string(i) + " would begin behind the tag");
      continue;
    }
    TagReader glyph = tag->body.From(table + offset);
    glyph.Reading("a glyph");
    Edges(tag, &glyph, 0, {1, 0}, false, false);
    if (glyph.pos() > budget) {
      Damaged(*tag, "the glyphs of the font overlap each other");
      return;
    }
    budget -= glyph.pos();
  }
}

}  // namespace vexel::author
