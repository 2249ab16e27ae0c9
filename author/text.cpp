// Static text runs and the record of an editable field.
#include "author/text.h"

#include <algorithm>
#include <stdexcept>

namespace vexel::author {

namespace {

// A flags byte of 0 closes a text, so a run without parts sets a bit that no
// reader asks for.
constexpr int kRunPlain = 0x80;

void WriteRun(BitWriter& out, const TextRun& run, int glyphBits, int advanceBits, bool alpha) {
  int flags = run.flags;
  if (flags == kAuto) {
    flags = (run.font ? kRunFont : 0) | (run.color ? kRunColor : 0) | (run.x ? kRunX : 0) |
            (run.y ? kRunY : 0);
    if (flags == 0) flags = kRunPlain;
  }
  out.U8(static_cast<uint32_t>(flags));
  if (flags & kRunFont) out.U16(run.font.value_or(0));
  if (flags & kRunColor) WriteColor(out, run.color.value_or(Color{}), alpha);
  if (flags & kRunX) out.S16(run.x.value_or(0));
  if (flags & kRunY) out.S16(run.y.value_or(0));
  if (flags & kRunFont) out.U16(run.height);
  const int count = run.count == kAuto ? static_cast<int>(run.glyphs.size()) : run.count;
  out.U8(static_cast<uint32_t>(count));
  for (const GlyphEntry& glyph : run.glyphs) {
    out.Bits(glyph.index, glyphBits);
    out.SBits(glyph.advance, advanceBits);
  }
  out.Align();
}

}  // namespace

void WriteStaticText(BitWriter& out, const StaticText& text, bool alpha) {
  int glyphBits = 0;
  int advanceBits = 0;
  for (const TextRun& run : text.runs) {
    for (const GlyphEntry& glyph : run.glyphs) {
      glyphBits = std::max(glyphBits, UnsignedWidth(glyph.index));
      advanceBits = std::max(advanceBits, SignedWidth(glyph.advance));
    }
  }
  if (text.glyphBits != kAuto) glyphBits = text.glyphBits;
  if (text.advanceBits != kAuto) advanceBits = text.advanceBits;
  WriteMatrix(out, text.matrix);
  out.U8(static_cast<uint32_t>(glyphBits));
  out.U8(static_cast<uint32_t>(advanceBits));
  for (const TextRun& run : text.runs) WriteRun(out, run, glyphBits, advanceBits, alpha);
  out.U8(0);
}

TextRun MakeRun(const Font& font, uint16_t fontId, uint16_t height, std::string_view text) {
  std::vector<uint32_t> codes;
  for (char c : text) codes.push_back(static_cast<uint8_t>(c));
  return MakeRun(font, fontId, height, codes);
}

TextRun MakeRun(const Font& font, uint16_t fontId, uint16_t height,
                std::span<const uint32_t> codes) {
  TextRun run;
  run.font = fontId;
  run.height = height;
  for (uint32_t code : codes) {
    const int index = font.Find(code);
    if (index == kAuto) continue;
    const int32_t advance = font.glyphs[static_cast<size_t>(index)].advance;
    run.glyphs.push_back({static_cast<uint32_t>(index), advance * height / kGlyphEm});
  }
  return run;
}

void WriteEditText(BitWriter& out, const EditTextField& field) {
  uint32_t flags = field.flags;
  if (field.font) flags |= kEditFont;
  if (field.color) flags |= kEditColor;
  if (field.maxLength) flags |= kEditMaxLength;
  if (field.layout) flags |= kEditLayout;
  if (field.initialText) flags |= kEditInitialText;
  out.U16(flags);
  if (flags & kEditFont) {
    out.U16(field.font.value_or(0));
    out.U16(field.height);
  }
  if (flags & kEditColor) WriteColor(out, field.color.value_or(Color{}), true);
  if (flags & kEditMaxLength) out.U16(field.maxLength.value_or(0));
  if (flags & kEditLayout) {
    const EditTextLayout layout = field.layout.value_or(EditTextLayout{});
    out.U8(layout.align);
    out.U16(layout.leftMargin);
    out.U16(layout.rightMargin);
    out.U16(layout.indent);
    out.S16(layout.leading);
  }
  out.Text(field.variable);
  if (flags & kEditInitialText) out.Text(field.initialText.value_or(""));
}

}  // namespace vexel::author
