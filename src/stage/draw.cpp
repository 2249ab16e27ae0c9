// The walk over the tree in paint order, and where the edges of an object come
// from. An object's own edges lie beneath its children, which follow in
// ascending depth; a mask comes after what it clips, as a layer above it.
#include "movie/character.h"
#include "movie/script_player.h"
#include "movie/tags.h"
#include "raster/raster.h"
#include "raster/rcolor.h"
#include "stage/character_parser.h"
#include "stage/display_list.h"
#include "stage/object.h"
#include "stage/text_edges.h"
#include "text/edit_text.h"

namespace vexel {

// A mask inside more masks than this doesn't clip.
static constexpr int32_t kMaxBrackets = kMaxNesting;

STransform Concatenated(const SObject* object, const STransform& t) {
  STransform inner = t;
  MatrixConcat(&object->mat, &t.mat, &inner.mat);
  inner.cxform.Concat(&object->cxform);
  return inner;
}

static SObject* DrawBracket(SObject* object, CRaster* raster, const STransform& t, RColor* clipper,
                            int32_t brackets);

// `brackets` counts the masks around the object.
static void DrawObject(SObject* object, CRaster* raster, const STransform& outer, RColor* clipper,
                       int32_t brackets) {
  if (!object->visible) return;
  const bool shown = RectTestIntersect(&object->devBounds, &raster->edgeClip);
  const bool built = object->edges || object->colors;
  // Most objects stand still and have no children: their transform, the most
  // of what they cost, is needed for nothing.
  STransform t;
  if (object->firstChild || (shown && !built)) t = Concatenated(object, outer);
  if (shown) {
    if (!built) object->BuildEdges(&t);
    raster->AddEdges(object->edges, object->colors, clipper);
    object->drawn = true;
  }
  for (SObject* child = object->firstChild; child;) {
    if (child->clipDepth != 0) {
      child = DrawBracket(child, raster, t, clipper, brackets);
    } else {
      DrawObject(child, raster, t, clipper, brackets);
      child = child->next;
    }
  }
}

static SObject* DrawBracket(SObject* object, CRaster* raster, const STransform& t, RColor* clipper,
                            int32_t brackets) {
  if (brackets >= kMaxBrackets) return object->next;
  const STransform inner = Concatenated(object, t);
  object->BuildEdges(&inner);
  // A mask without an area, such as a sprite, leaves its siblings to the caller.
  if (!object->colors) return object->next;
  object->drawn = true;
  SObject* s = object->next;
  while (s && s->depth <= object->clipDepth) {
    if (s->clipDepth != 0) {
      s = DrawBracket(s, raster, t, object->colors, brackets + 1);
    } else {
      DrawObject(s, raster, t, object->colors, brackets + 1);
      s = s->next;
    }
  }
  raster->AddEdges(object->edges, object->colors, clipper ? clipper : OutermostClip());
  return s;
}

void SObject::Draw(CRaster* raster, STransform t, RColor* clipper) {
  DrawObject(this, raster, t, clipper, 0);
}

SObject* SObject::DrawClipBracket(CRaster* raster, STransform t, RColor* clipper) {
  return DrawBracket(this, raster, t, clipper, 0);
}

void SObject::BuildEdges(const STransform* t) {
  if (edges || colors || !character || character->player->scriptErr != 0) return;
  const DataSpan& data = character->data;
  switch (character->type) {
    case charShape:
    case charMorphShape: {
      SCharacterParser parser(character->player, data.bytes, data.length, 0, &t->mat);
      parser.cxform = t->cxform;
      parser.object = this;
      if (character->type == charShape) {
        parser.getAlpha = character->tagCode == kTagDefineShape3;
        parser.BuildEdges(true, &devBounds);
      } else {
        parser.getAlpha = character->tagCode == kTagDefineMorphShape;
        parser.ratio = ratio;
        parser.BuildMorphEdges(&devBounds);
      }
      break;
    }
    case charText:
      BuildTextEdges(this, t);
      break;
    case charEditText:
      if (editText) editText->Draw(t, true);
      break;
    default:
      break;
  }
}

}  // namespace vexel
