// Which glyphs to take of a font, by the characters that are asked for.
#pragma once

#include <string>
#include <vector>

#include "author/fonts/embed.h"

namespace vexel::author {

// The characters of a text, in UTF-8, or bytes of Windows-1252 where it is none. False, with
// a cause, for one that has no code in movies.
bool WantedOfText(const std::string& text, std::vector<WantedGlyph>* wanted, std::string* error);

// From `first` to `last`, those that the font has.
std::vector<WantedGlyph> WantedOfRange(const FontFile& file, uint32_t first, uint32_t last);

// Of Windows-1252, those that the font has: all that a field can show whose text is bytes.
std::vector<WantedGlyph> WantedOfBytes(const FontFile& file);

// EmbedFont; what a person should know of the font goes to `warnings`. Throws FontError if
// it has none of the characters.
Font TakeGlyphs(const FontFile& file, std::span<const WantedGlyph> wanted,
                std::vector<std::string>* warnings);

// The outlines of a font file's bytes, as texts of movies take them: of the characters of
// `text`, or of those of Windows-1252 if it is empty. False, with a cause, if there is none
// to take.
bool TakeFont(const std::string& bytes, const std::string& text, Font* font,
              std::vector<std::string>* warnings, std::string* error);

}  // namespace vexel::author
