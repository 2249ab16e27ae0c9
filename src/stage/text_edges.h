// Glyphs as edges.
#pragma once

#include "geometry/matrix.h"
#include "movie/fwd.h"

namespace vexel {

// Adds the outline of glyph number `glyph` of `font` under `mat` (glyph units to
// device units) to `object->edges`, in `color`, which the object owns. Returns
// how many bytes of the font were read.
int32_t AddGlyphEdges(SObject* object, SCharacter* font, uint32_t glyph, const MATRIX* mat,
                      RColor* color);

// Builds the edges and colours of a static text, the object's character.
void BuildTextEdges(SObject* object, const STransform* t);

}  // namespace vexel
