// Fonts are a table of offsets with the outlines behind it; the second form
// adds code table and layout block.
#include "author/font.h"

#include <stdexcept>

namespace vexel::author {

namespace {

// Writes the offsets, `extra` entries longer than the glyphs, then the
// outlines. The extra entry of the second form points behind the outlines.
void WriteGlyphs(BitWriter& out, const Font& font, bool wide, size_t extra) {
  BitWriter shapes;
  const size_t entries = font.glyphs.size() + extra;
  const size_t tableSize = entries * (wide ? 4 : 2);
  const auto offset = [&] {
    const size_t at = tableSize + shapes.size();
    if (wide) {
      out.U32(static_cast<uint32_t>(at));
    } else {
      out.U16(static_cast<uint32_t>(at));
    }
  };
  for (const Glyph& glyph : font.glyphs) {
    offset();
    WriteEdges(shapes, glyph.outline, glyph.fillBits, glyph.lineBits);
  }
  if (extra) offset();
  out.Append(shapes.bytes());
}

void WriteName(BitWriter& out, const std::string& name) {
  if (name.size() > 255) throw std::range_error("a font name has at most 255 bytes");
  out.U8(static_cast<uint32_t>(name.size()));
  for (char c : name) out.U8(static_cast<uint8_t>(c));
}

void WriteCode(BitWriter& out, uint16_t code, bool wide) {
  if (wide) {
    out.U16(code);
  } else {
    out.U8(code);
  }
}

void WriteCodes(BitWriter& out, const Font& font, bool wide) {
  for (const Glyph& glyph : font.glyphs) WriteCode(out, glyph.code, wide);
}

}  // namespace

int Font::Find(uint32_t code) const {
  for (size_t i = 0; i < glyphs.size(); ++i) {
    if (glyphs[i].code == code) return static_cast<int>(i);
  }
  return kAuto;
}

int32_t Font::Width(std::string_view text) const {
  int32_t width = 0;
  for (char c : text) {
    const int index = Find(static_cast<uint8_t>(c));
    if (index != kAuto) width += glyphs[static_cast<size_t>(index)].advance;
  }
  return width;
}

void WriteFont(BitWriter& out, const Font& font) {
  WriteGlyphs(out, font, false, 0);
}

void WriteFont2(BitWriter& out, const Font& font) {
  out.U16(font.flags);
  WriteName(out, font.name);
  out.U16(static_cast<uint32_t>(font.glyphs.size()));
  WriteGlyphs(out, font, font.flags & kFontWideOffsets, 1);
  WriteCodes(out, font, font.flags & kFontWideCodes);
  if (font.flags & kFontHasLayout) {
    out.S16(font.ascent);
    out.S16(font.descent);
    out.S16(font.leading);
    for (const Glyph& glyph : font.glyphs) out.S16(glyph.advance);
  }
  out.Append(font.behind);
}

Bytes BoundsAndKerning(const Font& font, std::span<const KerningPair> pairs) {
  BitWriter out;
  for (const Glyph& glyph : font.glyphs) {
    ShapeBuilder shape;
    for (const ShapeRecord& record : glyph.outline) shape.Record(record);
    WriteRect(out, shape.Bounds());
  }
  out.U16(static_cast<uint32_t>(pairs.size()));
  for (const KerningPair& pair : pairs) {
    WriteCode(out, pair.left, font.flags & kFontWideCodes);
    WriteCode(out, pair.right, font.flags & kFontWideCodes);
    out.S16(pair.adjustment);
  }
  return out.Take();
}

void WriteFontInfo(BitWriter& out, const Font& font, uint8_t flags, bool wideCodes) {
  WriteName(out, font.name);
  out.U8(flags);
  WriteCodes(out, font, wideCodes);
}

}  // namespace vexel::author
