// Fonts, static text and text fields.
#include <algorithm>
#include <cmath>

#include "author/codes.h"
#include "author/language/maker.h"
#include "author/script/cursor.h"

namespace vexel::author {

namespace {

constexpr size_t kMaxGlyphs = 65535;
constexpr uint32_t kLastByteCode = 255;
constexpr int64_t kAlignMiddle = 2;  // of a run; 0 begins at x, 1 ends there

bool HasLayout(const Clauses& clauses) {
  return clauses.Has(Field::kAscent) || clauses.Has(Field::kDescent) ||
         clauses.Has(Field::kLeading);
}

// The measures that are said; the others stay.
void SetMeasures(const Clauses& clauses, Font* font) {
  const auto set = [&](Field field, int16_t* value) {
    *value = static_cast<int16_t>(clauses.StoredOr(field, *value));
  };
  set(Field::kAscent, &font->ascent);
  set(Field::kDescent, &font->descent);
  set(Field::kLeading, &font->leading);
}

}  // namespace

uint16_t FontFlagsFor(const Font& font, bool layout) {
  uint16_t flags = kFontAnsi;
  if (layout) flags |= kFontHasLayout;
  for (const Glyph& glyph : font.glyphs) {
    if (glyph.code > kLastByteCode) flags |= kFontWideCodes;
  }
  return flags;
}

void Maker::FontCharacter() {
  const uint16_t id = NewCharacter();
  const Clauses clauses = ReadClauses();
  const std::string name = clauses.Has(Field::kName) ? clauses.TextOf(Field::kName) : "";
  FontState state;
  state.form = clauses.StoredOr(Field::kForm, 2) == 1 ? 1 : 2;
  const bool ready = clauses.Has(Field::kBlocks) || clauses.Has(Field::kFile);
  if (clauses.Has(Field::kFile)) {
    state.font = FontOfFile(clauses);
    if (in_.AtBlock()) in_.Fail("a font of a file has its glyphs already");
  } else if (clauses.Has(Field::kBlocks)) {
    state.font = BlockFont(name.empty() ? "Blocks" : name);
  } else {
    state.font.name = name;
    state.layout = HasLayout(clauses);
    SetMeasures(clauses, &state.font);
  }
  if (clauses.Has(Field::kChars) && !clauses.Has(Field::kFile))
    clauses.Fail(Field::kChars, "chars goes with file");
  FontState* const outer = font_;
  font_ = &state;
  if (in_.AtBlock()) RunBlock(kInFont);
  font_ = outer;
  Font& font = state.font;
  if (!ready) font.flags = FontFlagsFor(font, state.layout);
  if (clauses.Has(Field::kFlags)) font.flags = static_cast<uint16_t>(clauses.Stored(Field::kFlags));
  if (clauses.Has(Field::kBold)) font.flags |= kFontBold;
  if (clauses.Has(Field::kItalic)) font.flags |= kFontItalic;
  BitWriter body;
  body.U16(id);
  if (state.form == 1)
    WriteFont(body, font);
  else
    WriteFont2(body, font);
  Emit(state.form == 1 ? kTagDefineFont : kTagDefineFont2, body, clauses);
  fonts_[id] = std::move(font);
}

Font Maker::FontOfFile(const Clauses& clauses) {
  if (clauses.Has(Field::kBlocks)) clauses.Fail(Field::kBlocks, "a file or blocks, not both");
  const SourcePlace place = clauses.Get(Field::kFile).place;
  const std::string path = Beside(clauses.TextOf(Field::kFile));
  const std::string bytes = ReadFile(path, place);
  Font font;
  std::vector<std::string> warnings;
  std::string error;
  const std::string chars = clauses.Has(Field::kChars) ? clauses.TextOf(Field::kChars) : "";
  if (!files_.ReadFont(bytes, chars, &font, &warnings, &error))
    throw SourceError(place, path + ": " + error);
  for (const std::string& warning : warnings) made_.warnings.push_back(path + ": " + warning);
  if (clauses.Has(Field::kName)) font.name = clauses.TextOf(Field::kName);
  SetMeasures(clauses, &font);
  in_.Work(font.glyphs.size() * 64);
  return font;
}

void Maker::GlyphEntry() {
  Glyph glyph;
  bool coded = false;
  if (in_.Peek().kind == TokenKind::kText) {
    const SourcePlace place = in_.Place();
    const std::string letter = in_.NeedText("a letter");
    if (letter.size() != 1) throw SourceError(place, "a letter is one byte; others are `code`");
    glyph.code = static_cast<uint8_t>(letter[0]);
    coded = true;
  }
  const Clauses clauses = ReadClauses();
  clauses.CheckParts({"fills", "lines"});
  FontState& font = *font_;
  if (font.font.glyphs.size() >= kMaxGlyphs) in_.Fail("more than 65535 glyphs");
  if (clauses.Has(Field::kCode)) {
    if (coded) clauses.Fail(Field::kCode, "the letter is said already");
    glyph.code = static_cast<uint16_t>(clauses.Stored(Field::kCode));
  }
  glyph.advance = static_cast<int16_t>(clauses.StoredOr(Field::kAdvance, 0));
  if (clauses.Has(Field::kAdvance)) font.layout = true;
  if (clauses.Part("fills") != kAuto) glyph.fillBits = clauses.Part("fills");
  if (clauses.Part("lines") != kAuto) glyph.lineBits = clauses.Part("lines");
  ShapeState state;
  state.unit = 1;
  state.styles = false;
  if (in_.AtBlock()) DrawIn(state);
  glyph.outline = state.builder.records();
  in_.Work(glyph.outline.size());
  font.font.glyphs.push_back(std::move(glyph));
}

void Maker::FontInfo() {
  BitWriter body;
  body.U16(CharacterRef("a font"));
  const Clauses clauses = ReadClauses();
  clauses.CheckParts({"wide"});
  Font font;
  if (clauses.Has(Field::kName)) font.name = clauses.TextOf(Field::kName);
  bool wide = false;
  if (clauses.Has(Field::kCodes)) {
    for (size_t i = 0; i < clauses.CountOf(Field::kCodes); ++i) {
      Glyph glyph;
      glyph.code = static_cast<uint16_t>(clauses.Stored(Field::kCodes, i));
      wide = wide || glyph.code > kLastByteCode;
      font.glyphs.push_back(std::move(glyph));
    }
  }
  if (clauses.Part("wide") != kAuto) wide = clauses.Part("wide") != 0;
  const int64_t flags = clauses.StoredOr(Field::kFlags, 0);
  if (flags > 255) clauses.Fail(Field::kFlags, "flags is 0 to 255 here");
  WriteFontInfo(body, font, static_cast<uint8_t>(flags), wide);
  Emit(kTagDefineFontInfo, body, clauses);
}

void Maker::TextCharacter() {
  const uint16_t id = NewCharacter();
  const Clauses clauses = ReadClauses();
  clauses.CheckParts({"glyph", "advance", "bounds"});
  TextState state;
  state.alpha = clauses.StoredOr(Field::kForm, 2) != 1;
  state.text.matrix = clauses.ToMatrix();
  state.text.glyphBits = clauses.Part("glyph");
  state.text.advanceBits = clauses.Part("advance");
  TextState* const outer = text_;
  text_ = &state;
  RunBlock(kInText);
  text_ = outer;
  const Rect bounds = clauses.Has(Field::kBounds) ? clauses.ToRect(Field::kBounds) : state.bounds;
  BitWriter body;
  body.U16(id);
  WriteRect(body, bounds, clauses.Part("bounds"));
  WriteStaticText(body, state.text, state.alpha);
  Emit(state.alpha ? kTagDefineText2 : kTagDefineText, body, clauses);
}

void Maker::Run() {
  const Clauses clauses = ReadClauses();
  TextState& text = *text_;
  TextRun run;
  if (clauses.Has(Field::kFont)) {
    run.font = static_cast<uint16_t>(clauses.Stored(Field::kFont));
    text.font = *run.font;
    text.height = static_cast<uint16_t>(clauses.StoredOr(Field::kHeight, text.height));
    run.height = text.height;
  } else if (clauses.Has(Field::kHeight)) {
    clauses.Fail(Field::kHeight, "a height goes with a font");
  }
  if (clauses.Has(Field::kColor)) {
    run.color = clauses.Get(Field::kColor).color;
    if (!text.alpha && run.color->alpha != 255)
      clauses.Fail(Field::kColor, "form 1 of a text holds no alpha");
  }
  if (clauses.Has(Field::kPenX)) {
    run.x = static_cast<int16_t>(clauses.Stored(Field::kPenX));
    text.pen.x = *run.x;
  }
  if (clauses.Has(Field::kPenY)) {
    run.y = static_cast<int16_t>(clauses.Stored(Field::kPenY));
    text.pen.y = *run.y;
  }
  if (clauses.Has(Field::kGlyphs)) {
    if (clauses.Has(Field::kText)) clauses.Fail(Field::kText, "text or glyphs, not both");
    const Clause& glyphs = clauses.Get(Field::kGlyphs);
    if (glyphs.numbers.size() % 2 != 0)
      clauses.Fail(Field::kGlyphs, "each glyph takes a number and an advance");
    for (size_t i = 0; i < glyphs.numbers.size(); i += 2) {
      const double index = glyphs.numbers[i];
      if (index < 0 || index != std::floor(index))
        clauses.Fail(Field::kGlyphs, "the number of a glyph is a whole one from 0");
      run.glyphs.push_back({static_cast<uint32_t>(index),
                            static_cast<int32_t>(std::lround(glyphs.numbers[i + 1] * kPixel))});
    }
  }
  if (clauses.Has(Field::kText)) RunLetters(clauses, &run);
  if (clauses.Has(Field::kAlign)) AlignRun(clauses, &run);
  run.flags = static_cast<int>(clauses.StoredOr(Field::kFlags, kAuto));
  run.count = static_cast<int>(clauses.StoredOr(Field::kCount, kAuto));
  if (run.flags == 0 || run.flags > 255) clauses.Fail(Field::kFlags, "flags is 1 to 255 here");
  GrowText(run);
  in_.Work(run.glyphs.size() + 8);
  text.text.runs.push_back(std::move(run));
}

void Maker::RunLetters(const Clauses& clauses, TextRun* run) {
  const auto found = fonts_.find(text_->font);
  if (found == fonts_.end()) clauses.Fail(Field::kText, "the font is not one of this text's own");
  std::vector<uint32_t> codes;
  for (uint32_t letter : CharactersOf(clauses.TextOf(Field::kText))) {
    // Fonts written by hand may have letters for control characters.
    const uint32_t code = letter < ' ' ? letter : CodeOfCharacter(letter);
    if (code == kNoCode || found->second.Find(code) == kAuto) {
      clauses.Fail(Field::kText,
                   letter > ' ' && letter < 0x7F
                       ? "the font has no " + QuoteText(std::string(1, static_cast<char>(letter)))
                       : "the font has no " + CharacterName(letter));
    }
    codes.push_back(code);
  }
  if (codes.size() > 255) clauses.Fail(Field::kText, "a run has at most 255 letters");
  run->glyphs = MakeRun(found->second, text_->font, text_->height, codes).glyphs;
}

// Moves the pen to the left, so that the run ends at x or has it in the middle.
void Maker::AlignRun(const Clauses& clauses, TextRun* run) {
  if (!run->x) clauses.Fail(Field::kAlign, "align goes with x");
  const int64_t align = clauses.Stored(Field::kAlign);
  if (align > kAlignMiddle) clauses.Fail(Field::kAlign, "align is 0 to 2 here");
  if (align == 0) return;
  int64_t width = 0;
  for (const auto& glyph : run->glyphs) width += glyph.advance;
  const int64_t x = *run->x - (align == kAlignMiddle ? width / 2 : width);
  if (x < INT16_MIN || x > INT16_MAX) clauses.Fail(Field::kAlign, "the letters lead too far");
  run->x = static_cast<int16_t>(x);
  text_->pen.x = *run->x;
}

// Bounds from the line's height and the advances of its letters.
void Maker::GrowText(const TextRun& run) {
  TextState& text = *text_;
  int64_t width = 0;
  for (const auto& glyph : run.glyphs) width += glyph.advance;
  const auto clamped = [](int64_t value) {
    return static_cast<int32_t>(std::clamp<int64_t>(value, -(1 << 24), 1 << 24));
  };
  const Rect line{text.pen.x, clamped(text.pen.x + width), text.pen.y - text.height,
                  text.pen.y + text.height / 4};
  if (!text.hasBounds) text.bounds = line;
  text.hasBounds = true;
  text.bounds = {std::min({text.bounds.xmin, line.xmin, line.xmax}),
                 std::max({text.bounds.xmax, line.xmin, line.xmax}),
                 std::min(text.bounds.ymin, line.ymin), std::max(text.bounds.ymax, line.ymax)};
  text.pen.x = clamped(text.pen.x + width);
}

void Maker::Edit() {
  const uint16_t id = NewCharacter();
  const Clauses clauses = ReadClauses();
  clauses.CheckParts({"bounds"});
  if (!clauses.Has(Field::kBounds)) in_.Fail("a text field takes bounds");
  EditTextField field;
  field.flags = static_cast<uint16_t>(clauses.StoredOr(Field::kFlags, 0));
  static constexpr std::pair<Field, uint16_t> kFlags[] = {
      {Field::kReadOnly, kEditReadOnly},   {Field::kPassword, kEditPassword},
      {Field::kMultiline, kEditMultiline}, {Field::kWrap, kEditWordWrap},
      {Field::kOutlines, kEditOutlines},   {Field::kBorder, kEditBorder},
      {Field::kNoSelect, kEditNoSelect},
  };
  for (const auto& [flag, bit] : kFlags) {
    if (clauses.Has(flag)) field.flags |= bit;
  }
  if (clauses.Has(Field::kFont)) field.font = static_cast<uint16_t>(clauses.Stored(Field::kFont));
  field.height = static_cast<uint16_t>(clauses.StoredOr(Field::kHeight, field.height));
  if (clauses.Has(Field::kColor)) field.color = clauses.Get(Field::kColor).color;
  if (clauses.Has(Field::kMaxLength))
    field.maxLength = static_cast<uint16_t>(clauses.Stored(Field::kMaxLength));
  EditTextLayout layout;
  layout.align = static_cast<uint8_t>(clauses.StoredOr(Field::kAlign, 0));
  if (clauses.Has(Field::kMargins)) {
    layout.leftMargin = static_cast<uint16_t>(clauses.Stored(Field::kMargins, 0));
    layout.rightMargin = static_cast<uint16_t>(clauses.Stored(Field::kMargins, 1));
  }
  layout.indent = static_cast<uint16_t>(clauses.StoredOr(Field::kIndent, 0));
  layout.leading = static_cast<int16_t>(clauses.StoredOr(Field::kSpacing, 0));
  if (clauses.Has(Field::kAlign) || clauses.Has(Field::kMargins) || clauses.Has(Field::kIndent) ||
      clauses.Has(Field::kSpacing)) {
    field.layout = layout;
  }
  if (clauses.Has(Field::kVariable)) field.variable = clauses.TextOf(Field::kVariable);
  if (clauses.Has(Field::kText)) field.initialText = clauses.TextOf(Field::kText);
  BitWriter body;
  body.U16(id);
  WriteRect(body, clauses.ToRect(Field::kBounds), clauses.Part("bounds"));
  WriteEditText(body, field);
  Emit(kTagDefineEditText, body, clauses);
}

}  // namespace vexel::author
