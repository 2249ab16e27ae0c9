// Copying a built glyph instead of reading it again. Everything that makes edges
// of curves goes by differences of coordinates and halves rounded down, so a
// shift of the glyph shifts its edges, as long as no limit on coordinates is
// near.
#include "stage/glyph_edges.h"

#include "movie/character.h"
#include "movie/font_format.h"
#include "movie/sparser.h"
#include "raster/edge.h"
#include "stage/character_parser.h"
#include "stage/display_list.h"

namespace vexel {

namespace {

// What starting a parser costs, as bytes of a glyph.
constexpr int32_t kGlyphCost = 32;

// Bytes of glyphs read that count as a tag: a small file can place a text of
// long glyphs that can't be copied any number of times.
constexpr int32_t kBytesPerTag = 4;

// Within it no curve is dropped, divided or held because of where it lies.
constexpr SCOORD kSafe = 16000;

bool IsSafe(const SRECT& extent, const SPOINT& shift) {
  if (RectIsEmpty(&extent)) return true;
  const auto within = [](SCOORD v, SCOORD by) {
    const int64_t to = int64_t{v} + by;
    return to >= -kSafe && to <= kSafe;
  };
  return within(extent.xmin, shift.x) && within(extent.xmax, shift.x) &&
         within(extent.ymin, shift.y) && within(extent.ymax, shift.y);
}

bool SameLinear(const MATRIX& m, const MATRIX& n) {
  return m.a == n.a && m.b == n.b && m.c == n.c && m.d == n.d;
}

REdgePoint Shifted(const REdgePoint& p, const SPOINT& shift) {
  return {static_cast<int16_t>(p.x + shift.x), static_cast<int16_t>(p.y + shift.y)};
}

}  // namespace

uint32_t FontOffset(const SCharacter* font, uint32_t entry) {
  const bool wide = (font->fontFlags & kFontWideOffsets) != 0;
  const int32_t size = font->data.length;
  const int64_t at = int64_t{entry} * (wide ? 4 : 2);
  SParser table(font->data.bytes, size, static_cast<int32_t>(at < size ? at : size));
  return wide ? table.GetDWord() : table.GetWord();
}

// Leaves `built` free unless the glyph can be copied: one that defines styles of
// its own makes colours each time.
void GlyphEdges::Build(SCharacter* font, uint32_t glyph, const MATRIX* mat, RColor* color,
                       Built* built) {
  DisplayList* display = m_object->display;
  built->font = nullptr;
  built->cost = kGlyphCost;
  if (!display->SpendTags(1)) return;
  const int32_t size = font->data.length;
  const int64_t offset = FontOffset(font, glyph);
  const int32_t start = static_cast<int32_t>(offset < size ? offset : size);
  const RColor* colors = m_object->colors;
  const int32_t edgesBefore = display->edgeCount;
  SCharacterParser parser(font->player, font->data.bytes, size, start, mat);
  parser.object = m_object;
  parser.UseGlyphColor(color);
  RectSetEmpty(&built->extent);
  parser.extent = &built->extent;
  parser.BuildEdges(false, &m_object->devBounds);
  built->cost += parser.pos - start;
  display->SpendTags(built->cost / kBytesPerTag);
  built->count = display->edgeCount - edgesBefore;
  built->newest = m_object->edges;
  built->glyph = glyph;
  built->mat = *mat;
  const bool whole = display->edgeCount < kMaxEdges;
  const bool plain = color && m_object->colors == colors;
  if (whole && plain && IsSafe(built->extent, {0, 0})) built->font = font;
}

// False, with nothing added, where a shift is not the same as building.
bool GlyphEdges::Copy(const Built& built, const MATRIX* mat, RColor* color) {
  const SPOINT shift = {WrapSub(mat->tx, built.mat.tx), WrapSub(mat->ty, built.mat.ty)};
  DisplayList* display = m_object->display;
  if (!color || !SameLinear(built.mat, *mat) || !IsSafe(built.extent, shift) ||
      built.count > kMaxEdges - display->edgeCount) {
    return false;
  }
  // The copies take the order of the list, which is from the newest on.
  REdge* head = nullptr;
  REdge** link = &head;
  const REdge* from = built.newest;
  for (int32_t i = 0; i < built.count; ++i, from = from->next) {
    REdge* edge = display->NewEdge();
    if (!edge) break;
    *edge = *from;
    edge->anchor1 = Shifted(from->anchor1, shift);
    edge->control = Shifted(from->control, shift);
    edge->anchor2 = Shifted(from->anchor2, shift);
    edge->color1 = color;
    if (from->color2) edge->color2 = color;
    *link = edge;
    link = &edge->next;
  }
  *link = m_object->edges;
  m_object->edges = head;
  return true;
}

int32_t GlyphEdges::Add(SCharacter* font, uint32_t glyph, const MATRIX* mat, RColor* color) {
  Built* built = &m_built[glyph % kBuilt];
  if (built->font != font || built->glyph != glyph || !Copy(*built, mat, color))
    Build(font, glyph, mat, color, built);
  return built->cost;
}

}  // namespace vexel
