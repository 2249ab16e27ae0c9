// A TrueType or OpenType font in memory, measured on the square of 1024 units
// that movies draw glyphs on. FreeType reads it, unscaled and without hints:
// what comes out is the designer's outline and nothing else.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "author/types.h"
#include "author/vector_path.h"

namespace vexel::author {

// The file is no font that can be used; what() says why, in a phrase.
class FontError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class FontFile {
 public:
  // Takes the bytes of the file; of a collection, its first font. Throws
  // FontError if they are no font with outlines.
  explicit FontFile(Bytes bytes);
  ~FontFile();
  FontFile(const FontFile&) = delete;
  FontFile& operator=(const FontFile&) = delete;

  const std::string& family() const;  // may be empty
  bool bold() const;
  bool italic() const;
  // Units of the square, rounded; the descent counts downward from the
  // baseline, the leading is what the font asks for between two lines.
  int16_t ascent() const;
  int16_t descent() const;
  int16_t leading() const;

  // The glyph of a Unicode character; 0 if the font lacks it.
  uint32_t GlyphOf(uint32_t character) const;
  // In units of the square, rounded. Throws FontError if the glyph is damaged.
  int16_t Advance(uint32_t glyph) const;
  // Closed contours of lines, quadratics and cubics, the pen at (0, 0) on the
  // baseline, y downward, in units of the square and not rounded; they fill by
  // the non-zero rule. Throws FontError if the glyph is damaged.
  VectorPath Outline(uint32_t glyph) const;
  // What the font's kerning table adds between two glyphs, rounded.
  int16_t Kerning(uint32_t left, uint32_t right) const;

 private:
  struct Face;
  std::unique_ptr<Face> face_;
};

// Reads a whole file. Throws FontError with the system's words.
Bytes ReadFontFile(const std::string& path);

}  // namespace vexel::author
