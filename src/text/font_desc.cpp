// Looking characters up in a font: the bytes behind its outlines are a code
// table, then ascent, descent and leading, then an advance for each glyph.
// Where the file says that they lie is believed as far as the font's bytes go;
// beyond them everything reads as 0.
#include "text/font_desc.h"

#include <new>

#include "movie/character.h"
#include "movie/font_format.h"

namespace vexel {

namespace {

constexpr int32_t kShortCodes = 256;
// Of the small memory in FindGlyphs: not looked up yet. No glyph has this
// number, and FindGlyph doesn't answer it.
constexpr int32_t kUnknown = -1;

// From the layout block's start, in bytes.
constexpr int32_t kAscentAt = 0;
constexpr int32_t kDescentAt = 2;
constexpr int32_t kAdvancesAt = 6;

int32_t CodeBytes(const SCharacter* font) {
  return font->fontFlags & kFontWideCodes ? 2 : 1;
}

uint32_t ByteAt(const SCharacter* font, int64_t at) {
  return at >= 0 && at < font->data.length ? font->data.bytes[at] : 0u;
}

uint32_t WordAt(const SCharacter* font, int64_t at) {
  return ByteAt(font, at) | ByteAt(font, at + 1) << 8;
}

// A signed word of the layout block.
int32_t LayoutAt(const FontDesc& desc, int32_t at) {
  if (!desc.font) return 0;
  const int64_t block =
      int64_t{desc.codeTableOffset} + int64_t{desc.font->glyphCount} * CodeBytes(desc.font);
  return static_cast<int16_t>(WordAt(desc.font, block + at));
}

}  // namespace

uint16_t FontDesc::FindGlyph(uint16_t code) const {
  if (!font) return kNoGlyph;
  const int32_t bytes = CodeBytes(font);
  int32_t low = 0;
  int32_t high = font->glyphCount - 1;
  while (low <= high) {
    const int32_t middle = (low + high) / 2;
    const int64_t at = int64_t{codeTableOffset} + int64_t{middle} * bytes;
    const uint32_t entry = bytes == 2 ? WordAt(font, at) : ByteAt(font, at);
    if (entry == code) return static_cast<uint16_t>(middle);
    if (entry < code) {
      low = middle + 1;
    } else {
      high = middle - 1;
    }
  }
  return kNoGlyph;
}

uint16_t* FontDesc::FindGlyphs(const uint16_t* text, int32_t count) const {
  if (count <= 0) return nullptr;
  auto* glyphs = new (std::nothrow) uint16_t[static_cast<size_t>(count)];
  if (!glyphs) return nullptr;
  // A text has few different characters: each is searched for once.
  int32_t known[kShortCodes];
  for (int32_t& glyph : known) glyph = kUnknown;
  for (int32_t i = 0; i < count; ++i) {
    const uint16_t code = text[i];
    if (code >= kShortCodes) {
      glyphs[i] = FindGlyph(code);
      continue;
    }
    if (known[code] == kUnknown) known[code] = FindGlyph(code);
    glyphs[i] = static_cast<uint16_t>(known[code]);
  }
  return glyphs;
}

int32_t FontDesc::Ascent() const {
  return LayoutAt(*this, kAscentAt);
}

int32_t FontDesc::Descent() const {
  return LayoutAt(*this, kDescentAt);
}

int32_t FontDesc::Advance(uint16_t glyph) const {
  if (!font || glyph >= font->glyphCount) return 0;
  return LayoutAt(*this, kAdvancesAt + 2 * int32_t{glyph});
}

}  // namespace vexel
