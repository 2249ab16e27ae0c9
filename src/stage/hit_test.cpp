// Which object lies under a point. The walks follow the paint order, and each
// hit replaces the one before, so the last one found is the topmost.
//
// A point is in an object if it lies inside any of its fills or strokes, by the
// same cached edges that drawing uses; what an object's bounds exclude costs
// one comparison, and builds no edges.
#include "geometry/curve.h"
#include "geometry/matrix.h"
#include "geometry/rect.h"
#include "movie/character.h"
#include "movie/edit_text_flags.h"
#include "raster/edge.h"
#include "raster/rcolor.h"
#include "stage/button.h"
#include "stage/display_list.h"

namespace vexel {

namespace {

// Building edges for a test costs a tag for so many bytes of the character.
constexpr int32_t kBytesPerTag = 4;

bool IsKind(const SObject* object, CharacterType type) {
  return object->character && object->character->type == type;
}

bool IsSelectableText(const SObject* object) {
  return IsKind(object, charEditText) && !(EditTextFlags(object->character) & kEditTextNoSelect);
}

bool InTextBounds(const SObject* object, const MATRIX* mat, const SPOINT* pt) {
  MATRIX inverse;
  MatrixInvert(mat, &inverse);
  SPOINT local;
  MatrixTransformPoint(&inverse, pt, &local);
  return RectPointIn(&object->character->bounds, &local);
}

SPOINT Point(const REdgePoint& p) {
  return {p.x, p.y};
}

bool RayCrosses(const REdge* edge, const SPOINT* pt) {
  if (edge->anchor1.y > pt->y || pt->y >= edge->anchor2.y) return false;
  const CURVE curve = {Point(edge->anchor1), Point(edge->control), Point(edge->anchor2),
                       edge->isLine};
  return CurveXRaySect(&curve, pt, 0) != 0;
}

void Toggle(RColor* color) {
  if (color) color->visible ^= 1;
}

// Counts a crossing in the colours, as painting the edge would do.
void CountCrossing(const REdge* edge) {
  switch (edge->fillRule) {
    case ruleEvenOdd:
      Toggle(edge->color1);
      break;
    case ruleWinding:
      if (edge->color1)
        edge->color1->visible = static_cast<int8_t>(edge->color1->visible + edge->dir);
      break;
    default:
      Toggle(edge->color1);
      Toggle(edge->color2);
      break;
  }
}

// An area that is there for a test only, holding its character.
struct TestArea : SObject {
  TestArea(DisplayList* stage, SCharacter* what, const MATRIX& where) {
    display = stage;
    character = what;
    character->AddRef();
    mat = where;
    cxform.Clear();
  }
  ~TestArea() { Free(); }
};

// True if the point is in one of the button's hit records.
bool InHitArea(const SObject* button, const STransform& t, const SPOINT* pt) {
  ButtonRecordReader records(button->character, button->display);
  ButtonRecord record;
  while (records.Next(&record)) {
    if ((record.states & kButtonHitArea) == 0) continue;
    SCharacter* character = records.FindCharacter(record);
    if (!character) continue;
    TestArea area(button->display, character, record.mat);
    area.depth = static_cast<uint16_t>(record.layer + button->depth);
    STransform inner = t;
    MatrixConcat(&record.mat, &t.mat, &inner.mat);
    area.CalcDevBounds(&inner.mat);
    if (area.HitTestOne(&inner, pt)) return true;
  }
  return false;
}

}  // namespace

bool SObject::HitTestOne(const STransform* t, const SPOINT* pt) {
  if (IsKind(this, charEditText)) {
    return IsSelectableText(this) && InTextBounds(this, &t->mat, pt);
  }
  if (!RectPointIn(&devBounds, pt)) return false;
  if (!edges && character) {
    if (!display->SpendTags(1 + character->data.length / kBytesPerTag)) return false;
    BuildEdges(t);
  }
  bool crossed = false;
  for (const REdge* edge = edges; edge; edge = edge->next) {
    if (!RayCrosses(edge, pt)) continue;
    CountCrossing(edge);
    crossed = true;
  }
  if (!crossed) return false;
  bool inside = false;
  for (RColor* color = colors; color; color = color->next) {
    inside |= color->visible != 0;
    color->visible = 0;
  }
  return inside;
}

SObject* SObject::HitClipper(const STransform& outer, const SPOINT* pt) {
  const STransform t = Concatenated(this, outer);
  if (HitTestOne(&t, pt)) return next;
  SObject* s = next;
  while (s && s->depth <= clipDepth) s = s->next;
  return s;
}

// Most objects are nowhere near the point and have no children, so that their
// transform, the most of what they cost, is needed for nothing.
void SObject::HitTest(SObject*& found, const STransform& outer, const SPOINT* pt) {
  if (!visible) return;
  const bool near = IsKind(this, charEditText) || RectPointIn(&devBounds, pt);
  if (!near && !firstChild) return;
  const STransform t = Concatenated(this, outer);
  if (near && HitTestOne(&t, pt)) found = this;
  for (SObject* child = firstChild; child;) {
    if (child->clipDepth != 0) {
      child = child->HitClipper(t, pt);
    } else {
      child->HitTest(found, t, pt);
      child = child->next;
    }
  }
}

void SObject::HitButton(SObject*& found, const STransform& outer, const SPOINT* pt) {
  if (!visible) return;
  const bool isText = IsSelectableText(this);
  const bool isButton = IsKind(this, charButton);
  if (!isText && !isButton && !firstChild) return;
  const STransform t = Concatenated(this, outer);
  if (isText && InTextBounds(this, &t.mat, pt)) {
    found = this;
    return;
  }
  if (isButton && InHitArea(this, t, pt)) found = this;
  for (SObject* child = firstChild; child;) {
    if (child->clipDepth != 0) {
      child = child->HitClipper(t, pt);
    } else {
      child->HitButton(found, t, pt);
      child = child->next;
    }
  }
}

SPOINT DisplayList::DevPoint(const SPOINT* pixel) const {
  if (!antialias) return *pixel;
  return {WrapMul(pixel->x, kDevPerPixel), WrapMul(pixel->y, kDevPerPixel)};
}

SObject* DisplayList::HitTest(const SPOINT* pixel) {
  const SPOINT pt = DevPoint(pixel);
  SObject* found = nullptr;
  root.HitTest(found, camera, &pt);
  return found;
}

SObject* DisplayList::HitButton(const SPOINT* pixel) {
  const SPOINT pt = DevPoint(pixel);
  SObject* found = nullptr;
  if (RectPointIn(&devViewRect, &pt)) root.HitButton(found, camera, &pt);
  return found;
}

}  // namespace vexel
