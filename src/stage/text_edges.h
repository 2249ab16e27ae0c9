// Glyphs as edges.
#pragma once

#include <cstdint>

#include "geometry/matrix.h"
#include "movie/fwd.h"

namespace vexel {

// A few bytes of text can name long glyphs any number of times: one whose
// glyphs have cost more than this, by AddGlyphEdges, is cut short.
inline constexpr int32_t kMaxGlyphBytes = 1 << 24;

// Entry `entry` of a font's table of offsets into its data; 0 beyond the data.
uint32_t FontOffset(const SCharacter* font, uint32_t entry);

// Adds the outline of glyph number `glyph` of `font` under `mat` (glyph units to
// device units) to `object->edges`, in `color`, which the object owns. Returns
// what that cost, in bytes of the font read.
int32_t AddGlyphEdges(SObject* object, SCharacter* font, uint32_t glyph, const MATRIX* mat,
                      RColor* color);

// Builds the edges and colours of a static text, the object's character.
void BuildTextEdges(SObject* object, const STransform* t);

}  // namespace vexel
