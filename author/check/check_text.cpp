// Fonts, static text and text fields.
#include <algorithm>

#include "author/check/checker.h"
#include "author/font.h"
#include "author/text.h"

namespace vexel::author {

void Checker::Font(Tag* tag, uint16_t id) {
  TagReader& in = tag->body;
  if (in.left() < 2) {
    in.Take(in.left());
    characters_[id].glyphs = 0;
    return;
  }
  // The first offset tells how many there are.
  const size_t table = in.pos();
  const uint32_t count = in.From(table).U16() / 2;
  if (characters_[id].at == tag->at) characters_[id].glyphs = static_cast<int>(count);
  Glyphs(tag, table, count, false);
  in.Take(in.left());
}

void Checker::Font2(Tag* tag, uint16_t id) {
  TagReader& in = tag->body;
  in.Reading("the font's flags");
  const uint32_t flags = in.U16();
  in.Reading("the font's name");
  in.Take(in.U8());
  in.Reading("the count of glyphs");
  const uint32_t count = in.U16();
  if (characters_[id].at == tag->at) characters_[id].glyphs = static_cast<int>(count);
  const bool wide = flags & kFontWideOffsets;
  const size_t table = in.pos();
  Glyphs(tag, table, count, wide);

  TagReader last = in.From(table);
  last.Reading("the offset of the codes");
  last.Take(count * (wide ? 4u : 2u));
  const uint32_t codesAt = wide ? last.U32() : last.U16();
  if (codesAt > in.size() - table) {
    Damaged(*tag, "the codes of the glyphs would begin behind the tag");
    in.Take(in.left());
    return;
  }
  TagReader codes = in.From(table + codesAt);
  codes.Reading("the codes of the glyphs");
  uint32_t before = 0;
  bool rising = true;
  for (uint32_t i = 0; i < count; ++i) {
    const uint32_t code = flags & kFontWideCodes ? codes.U16() : codes.U8();
    if (i > 0 && code <= before) rising = false;
    before = code;
  }
  if (!rising) Damaged(*tag, "the codes do not rise, so that glyphs are not found by them");
  if (flags & kFontHasLayout) {
    codes.Reading("the layout");
    codes.Take(6 + 2 * size_t{count});
  }
  in.Take(in.left());
}

void Checker::Text(Tag* tag, uint16_t id) {
  const bool alpha = tag->code == kTagDefineText2;
  TagReader& in = tag->body;
  in.Reading("the bounds");
  in.Rect();
  in.Reading("the matrix");
  in.Matrix();
  in.Reading("the widths of fields");
  const auto glyphBits = static_cast<int>(in.U8());
  const auto advanceBits = static_cast<int>(in.U8());
  if (glyphBits > 31 || advanceBits > 31) {
    Damaged(*tag, "fields of more than 31 bits");
    in.Take(in.left());
    return;
  }
  int32_t font = -1;
  uint32_t highest = 0;  // glyph since the font was chosen
  const auto use = [&] {
    if (font < 0) return;
    Use(*tag, UseKind::kFont, static_cast<uint16_t>(font), id, static_cast<int32_t>(highest));
  };
  in.Reading("a run of text");
  while (const uint32_t flags = in.U8()) {
    if (flags & kRunFont) {
      use();
      font = static_cast<int32_t>(in.U16());
      highest = 0;
    }
    if (flags & kRunColor) in.Color(alpha);
    if (flags & kRunX) in.U16();
    if (flags & kRunY) in.U16();
    if (flags & kRunFont) in.U16();
    // Required: a count of 0 stands for 256 glyphs.
    uint32_t count = in.U8();
    if (count == 0) count = 256;
    for (uint32_t i = 0; i < count; ++i) {
      highest = std::max(highest, in.Bits(glyphBits));
      in.SBits(advanceBits);
    }
    in.Align();
    if (font < 0) Damaged(*tag, "text stands before any font is chosen");
  }
  use();
}

void Checker::EditText(Tag* tag, uint16_t id) {
  TagReader& in = tag->body;
  in.Reading("the bounds");
  in.Rect();
  in.Reading("the field's flags");
  const uint32_t flags = in.U16();
  in.Reading("the field's font");
  if (flags & kEditFont) {
    const auto font = static_cast<uint16_t>(in.U16());
    in.U16();
    // A font of 0 is the player's own.
    if (font != 0) Use(*tag, UseKind::kFont, font, id);
  }
  in.Reading("the field's colour");
  if (flags & kEditColor) in.Color(true);
  in.Reading("the field's greatest length");
  if (flags & kEditMaxLength) in.U16();
  in.Reading("the field's layout");
  if (flags & kEditLayout) in.Take(9);
  in.Reading("the field's variable");
  const std::string_view variable = in.Text();
  // Typing goes to the frame of this label.
  frameNames_.texts.insert(Lower(variable) + "_changed");
  in.Reading("the field's text");
  if (flags & kEditInitialText) in.Text();
}

}  // namespace vexel::author
