// Fonts, static text and text fields as statements.
#include <algorithm>

#include "author/language/dumper.h"
#include "author/script/cursor.h"

namespace vexel::author {

namespace {

// Prints a glyph: its letter if it is one, and its outline.
std::string GlyphText(ShapePrinter& printer, const Glyph& glyph, bool coded, bool advanced) {
  StatementText statement("glyph");
  if (coded) {
    if (glyph.code > 0x20 && glyph.code < 0x7F)
      statement.Word(QuoteText(std::string(1, static_cast<char>(glyph.code))));
    else
      statement.Stored(Field::kCode, {glyph.code});
  }
  if (advanced) statement.Stored(Field::kAdvance, {glyph.advance});
  if (glyph.fillBits != 1) statement.Part("fills", glyph.fillBits);
  if (glyph.lineBits != 0) statement.Part("lines", glyph.lineBits);
  std::string text = statement.Take();
  if (!glyph.outline.empty())
    text += " {\n" + Indented(printer.Records(nullptr, glyph.outline)) + "}";
  return text + "\n";
}

}  // namespace

std::string Dumper::SayFont(const FramedTag& tag, RecordReader& in, Manner manner) {
  StatementText statement(Head("font", in.U16()));
  statement.Stored(Field::kForm, {1});
  std::string block;
  if (in.left() > 0) {
    const size_t origin = in.at();
    const size_t count = in.U16() / 2;
    ShapePrinter printer(maker_.characters(), 1, true, manner == Manner::kRecords);
    in.MoveTo(origin + count * 2);
    for (size_t i = 0; i < count && in.ok(); ++i) {
      Glyph glyph;
      if (!in.ReadEdges(&glyph.outline, &glyph.fillBits, &glyph.lineBits, false)) return {};
      block += GlyphText(printer, glyph, false, false);
    }
  }
  return Finish(statement, tag, in, block.empty() ? "" : " {\n" + Indented(block) + "}");
}

std::string Dumper::SayFont2(const FramedTag& tag, RecordReader& in, Manner manner) {
  StatementText statement(Head("font", in.U16()));
  Font font;
  if (!ReadFont2(in, &font)) return {};
  const bool layout = font.flags & kFontHasLayout;
  if (!font.name.empty()) statement.Text(Field::kName, font.name);
  if (layout) {
    statement.Stored(Field::kAscent, {font.ascent});
    statement.Stored(Field::kDescent, {font.descent});
    statement.Stored(Field::kLeading, {font.leading});
  }
  const uint16_t looks = kFontBold | kFontItalic;
  if ((font.flags & ~looks) == FontFlagsFor(font, layout)) {
    if (font.flags & kFontBold) statement.Flag(Field::kBold);
    if (font.flags & kFontItalic) statement.Flag(Field::kItalic);
  } else {
    statement.Stored(Field::kFlags, {font.flags});
  }
  ShapePrinter printer(maker_.characters(), 1, true, manner == Manner::kRecords);
  std::string block;
  for (const Glyph& glyph : font.glyphs) block += GlyphText(printer, glyph, true, layout);
  return Finish(statement, tag, in, block.empty() ? "" : " {\n" + Indented(block) + "}");
}

std::string Dumper::SayFontInfo(const FramedTag& tag, RecordReader& in) {
  StatementText statement("fontinfo " + Reference(in.U16()));
  const auto name = in.Take(in.U8());
  statement.Text(Field::kName, std::string(name.begin(), name.end()));
  const uint8_t flags = in.U8();
  if (flags) statement.Stored(Field::kFlags, {flags});
  // Nothing in the tag tells how wide the codes are; an even count with zeros
  // for high bytes looks wide.
  const auto rest = in.Rest();
  bool wide = !rest.empty() && rest.size() % 2 == 0;
  for (size_t i = 1; i < rest.size() && wide; i += 2) wide = rest[i] == 0;
  std::string codes;
  bool above = false;
  while (in.left() > 0) {
    const uint16_t code = wide ? in.U16() : in.U8();
    above = above || code > 255;
    if (!codes.empty()) codes += ", ";
    codes += std::to_string(code);
  }
  if (!codes.empty()) statement.Word("codes").Word(codes);
  if (wide && !above) statement.Part("wide", 1);
  return Finish(statement, tag, in);
}

std::string Dumper::SayText(const FramedTag& tag, RecordReader& in) {
  const bool alpha = tag.code == kTagDefineText2;
  StatementText statement(Head("text", in.U16()));
  if (!alpha) statement.Stored(Field::kForm, {1});
  int boundsBits;
  const Rect bounds = in.ReadRect(&boundsBits);
  statement.AddRect(Field::kBounds, bounds).Part("bounds", boundsBits);
  MatrixForm form;
  const Matrix matrix = in.ReadMatrix(&form);
  statement.AddMatrix(matrix, form, false);
  const int glyphBits = in.U8(), advanceBits = in.U8();
  if (glyphBits > 32 || advanceBits > 32) return {};
  int neededGlyph = 0, neededAdvance = 0;
  std::string block;
  while (in.ok()) {
    const uint8_t flags = in.U8();
    if (flags == 0) break;
    StatementText run("run");
    uint16_t font = 0;
    int usual = 0;
    if (flags & kRunFont) font = in.U16();
    std::optional<Color> color;
    if (flags & kRunColor) color = in.ReadColor(alpha);
    std::optional<int16_t> x, y;
    if (flags & kRunX) x = in.S16();
    if (flags & kRunY) y = in.S16();
    if (flags & kRunFont)
      run.Character(Field::kFont, Reference(font)).Stored(Field::kHeight, {in.U16()});
    if (color) run.Colored(Field::kColor, *color);
    if (x) run.Stored(Field::kPenX, {*x});
    if (y) run.Stored(Field::kPenY, {*y});
    usual = flags & (kRunFont | kRunColor | kRunX | kRunY);
    if (usual == 0) usual = 0x80;
    if (flags != usual) run.Stored(Field::kFlags, {flags});
    const int count = in.U8();
    std::string glyphs;
    for (int i = 0; i < count && in.ok(); ++i) {
      const uint32_t index = in.Bits(glyphBits);
      const int32_t advance = in.SBits(advanceBits);
      neededGlyph = std::max(neededGlyph, UnsignedWidth(index));
      neededAdvance = std::max(neededAdvance, SignedWidth(advance));
      if (i > 0) glyphs += ", ";
      glyphs += std::to_string(index) + ", " + ScaledText(advance, kPixel);
    }
    in.Align();
    if (count > 0) run.Word("glyphs").Word(glyphs);
    block += run.Take() + "\n";
  }
  if (glyphBits != neededGlyph) statement.Part("glyph", glyphBits);
  if (advanceBits != neededAdvance) statement.Part("advance", advanceBits);
  return Finish(statement, tag, in, " {\n" + Indented(block) + "}");
}

std::string Dumper::SayEdit(const FramedTag& tag, RecordReader& in) {
  StatementText statement(Head("edit", in.U16()));
  int boundsBits;
  const Rect bounds = in.ReadRect(&boundsBits);
  statement.AddRect(Field::kBounds, bounds).Part("bounds", boundsBits);
  uint16_t flags = in.U16();
  if (flags & kEditFont) {
    const uint16_t font = in.U16();
    statement.Character(Field::kFont, Reference(font)).Stored(Field::kHeight, {in.U16()});
  }
  if (flags & kEditColor) statement.Colored(Field::kColor, in.ReadColor(true));
  if (flags & kEditMaxLength) statement.Stored(Field::kMaxLength, {in.U16()});
  if (flags & kEditLayout) {
    const uint8_t align = in.U8();
    const uint16_t left = in.U16(), right = in.U16(), indent = in.U16();
    const int16_t spacing = in.S16();
    statement.Stored(Field::kAlign, {align});
    if (left || right) statement.Stored(Field::kMargins, {left, right});
    if (indent) statement.Stored(Field::kIndent, {indent});
    if (spacing) statement.Stored(Field::kSpacing, {spacing});
  }
  static constexpr std::pair<Field, uint16_t> kWords[] = {
      {Field::kReadOnly, kEditReadOnly},   {Field::kPassword, kEditPassword},
      {Field::kMultiline, kEditMultiline}, {Field::kWrap, kEditWordWrap},
      {Field::kOutlines, kEditOutlines},   {Field::kBorder, kEditBorder},
      {Field::kNoSelect, kEditNoSelect},
  };
  uint16_t known = kEditFont | kEditColor | kEditMaxLength | kEditLayout | kEditInitialText;
  for (const auto& [field, bit] : kWords) {
    if (flags & bit) statement.Flag(field);
    known |= bit;
  }
  const std::string variable = in.Text();
  if (!variable.empty()) statement.Text(Field::kVariable, variable);
  if (flags & kEditInitialText) statement.Text(Field::kText, in.Text());
  flags = static_cast<uint16_t>(flags & ~known);
  if (flags) statement.Stored(Field::kFlags, {flags});
  return Finish(statement, tag, in);
}

}  // namespace vexel::author
