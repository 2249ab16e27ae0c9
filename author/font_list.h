// What a movie says of its fonts, for tables and checks.
#pragma once

#include <span>
#include <vector>

#include "author/font.h"

namespace vexel::author {

struct ListedFont {
  uint16_t id = 0;
  Font font;
  // The record's bytes are those that the writer makes of `font`: offsets and
  // outlines lie where they should.
  bool exact = false;

  // Of the blank, in units of the square; 0 if the font has none.
  int16_t BlankAdvance() const;
};

// Adds the fonts of the second form on the main timeline of a movie, in its
// order. False if the movie is none or ends early; `fonts` then has those
// before.
bool ListFonts(std::span<const uint8_t> movie, std::vector<ListedFont>* fonts);

}  // namespace vexel::author
