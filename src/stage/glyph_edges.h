// Glyphs as edges, for texts of either kind.
#pragma once

#include <cstdint>

#include "geometry/matrix.h"
#include "geometry/rect.h"
#include "movie/fwd.h"

namespace vexel {

// A few bytes of text can name long glyphs any number of times: one whose
// glyphs have cost more than this, by GlyphEdges::Add, is cut short.
inline constexpr int32_t kMaxGlyphBytes = 1 << 24;

// Entry `entry` of a font's table of offsets into its data; 0 beyond the data.
uint32_t FontOffset(const SCharacter* font, uint32_t entry);

// Builds the glyphs of one text. A text repeats its letters, and the outline of
// a glyph is the same wherever it stands: it is read once, and copied with a
// shift from the object's own list of edges for as long as that list grows.
class GlyphEdges {
 public:
  // The edges go to the head of `object->edges`, which must not be freed while
  // this is in use.
  explicit GlyphEdges(SObject* object) : m_object(object) {}

  // Adds the outline of glyph number `glyph` of `font` under `mat` (glyph units
  // to device units) in `color`, which the object owns; null adds nothing.
  // Returns what that cost, in bytes of the font, read now or earlier. Reading
  // is paid for with tags; once they are spent, only copies are added.
  int32_t Add(SCharacter* font, uint32_t glyph, const MATRIX* mat, RColor* color);

 private:
  // A glyph as the list of edges has it.
  struct Built {
    SCharacter* font = nullptr;  // null while the entry is free
    uint32_t glyph;
    MATRIX mat;     // under which it was built
    SRECT extent;   // of its curves, device units
    REdge* newest;  // the first of its edges in the list
    int32_t count;  // of them
    int32_t cost;
  };
  // All glyphs of a font of single bytes have places of their own.
  static constexpr uint32_t kBuilt = 256;

  void Build(SCharacter* font, uint32_t glyph, const MATRIX* mat, RColor* color, Built* built);
  bool Copy(const Built& built, const MATRIX* mat, RColor* color);

  SObject* m_object;
  Built m_built[kBuilt];  // each glyph has one place, the last to come takes it
};

}  // namespace vexel
