#include "author/fonts/wanted.h"

#include "author/codes.h"

namespace vexel::author {

namespace {

// Of many characters the first are named, the others counted.
constexpr size_t kNamed = 8;

std::string NamesOf(const std::vector<uint32_t>& characters) {
  std::string names;
  for (size_t i = 0; i < characters.size() && i < kNamed; ++i)
    names += (i == 0 ? "" : ", ") + CharacterName(characters[i]);
  if (characters.size() > kNamed)
    names += " and " + std::to_string(characters.size() - kNamed) + " more";
  return names;
}

}  // namespace

bool WantedOfText(const std::string& text, std::vector<WantedGlyph>* wanted, std::string* error) {
  for (uint32_t character : CharactersOf(text)) {
    const uint32_t code = CodeOfCharacter(character);
    if (code == kNoCode) {
      *error = CharacterName(character) + " has no code in movies";
      return false;
    }
    wanted->push_back({character, static_cast<uint16_t>(code)});
  }
  return true;
}

std::vector<WantedGlyph> WantedOfRange(const FontFile& file, uint32_t first, uint32_t last) {
  std::vector<WantedGlyph> wanted;
  for (uint32_t character = first; character <= last; ++character) {
    const uint32_t code = CodeOfCharacter(character);
    if (code != kNoCode && file.GlyphOf(character) != 0)
      wanted.push_back({character, static_cast<uint16_t>(code)});
  }
  return wanted;
}

std::vector<WantedGlyph> WantedOfBytes(const FontFile& file) {
  std::vector<WantedGlyph> wanted;
  for (uint32_t byte = ' '; byte <= 0xFF; ++byte) {
    const uint32_t character = CharacterOfByte(static_cast<uint8_t>(byte));
    if (character != kNoCode && file.GlyphOf(character) != 0)
      wanted.push_back({character, static_cast<uint16_t>(byte)});
  }
  return wanted;
}

Font TakeGlyphs(const FontFile& file, std::span<const WantedGlyph> wanted,
                std::vector<std::string>* warnings) {
  Embedded made = EmbedFont(file, wanted);
  if (made.font.glyphs.empty()) throw FontError("has none of the characters");
  if (!made.missing.empty()) warnings->push_back("lacks " + NamesOf(made.missing));
  if (made.holed != 0) {
    warnings->push_back("overlapping outlines stay so (" + std::to_string(made.holed) + " glyphs)");
  }
  return std::move(made.font);
}

bool TakeFont(const std::string& bytes, const std::string& text, Font* font,
              std::vector<std::string>* warnings, std::string* error) {
  try {
    std::vector<WantedGlyph> wanted;
    if (!WantedOfText(text, &wanted, error)) return false;
    const FontFile file(Bytes(bytes.begin(), bytes.end()));
    if (text.empty()) wanted = WantedOfBytes(file);
    *font = TakeGlyphs(file, wanted, warnings);
    return true;
  } catch (const FontError& failure) {
    *error = failure.what();
    return false;
  }
}

}  // namespace vexel::author
