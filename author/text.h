// Static text and editable text fields.
#pragma once

#include <optional>

#include "author/font.h"

namespace vexel::author {

enum TextRunFlags : uint8_t {
  kRunX = 0x01,
  kRunY = 0x02,
  kRunColor = 0x04,
  kRunFont = 0x08,
};

struct GlyphEntry {
  uint32_t index = 0;
  int32_t advance = 0;  // movie units, before the text's matrix
};

// A run of glyphs. What a run does not say stays as the run before left it.
struct TextRun {
  std::optional<uint16_t> font;  // together with the height
  uint16_t height = 240;
  std::optional<Color> color;
  std::optional<int16_t> x;
  std::optional<int16_t> y;
  std::vector<GlyphEntry> glyphs;  // at most 255
  int flags = kAuto;               // the byte; 0 would end the text
  int count = kAuto;
};

struct StaticText {
  Matrix matrix;
  std::vector<TextRun> runs;
  int glyphBits = kAuto;
  int advanceBits = kAuto;
};

// Behind id and bounds.
void WriteStaticText(BitWriter& out, const StaticText& text, bool alpha);

// A run of characters in a font at a height; characters that the font lacks are
// left out.
TextRun MakeRun(const Font& font, uint16_t fontId, uint16_t height,
                std::span<const uint32_t> codes);
// The same of bytes, which are codes.
TextRun MakeRun(const Font& font, uint16_t fontId, uint16_t height, std::string_view text);

enum EditTextFlags : uint16_t {
  kEditFont = 0x0001,
  kEditMaxLength = 0x0002,
  kEditColor = 0x0004,
  kEditReadOnly = 0x0008,
  kEditPassword = 0x0010,
  kEditMultiline = 0x0020,
  kEditWordWrap = 0x0040,
  kEditInitialText = 0x0080,
  kEditOutlines = 0x0100,
  kEditBorder = 0x0800,
  kEditNoSelect = 0x1000,
  kEditLayout = 0x2000,
};

struct EditTextLayout {
  uint8_t align = 0;  // 0 left, 1 right, 2 centre
  uint16_t leftMargin = 0;
  uint16_t rightMargin = 0;
  uint16_t indent = 0;
  int16_t leading = 0;
};

// The optional parts set their own flags; `flags` adds the others.
struct EditTextField {
  uint16_t flags = 0;
  std::optional<uint16_t> font;  // together with the height
  uint16_t height = 240;
  std::optional<Color> color;
  std::optional<uint16_t> maxLength;
  std::optional<EditTextLayout> layout;
  std::string variable;
  std::optional<std::string> initialText;
};

// Behind id and bounds.
void WriteEditText(BitWriter& out, const EditTextField& field);

}  // namespace vexel::author
