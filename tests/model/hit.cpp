// What lies under a point: every fill's edges are counted along a ray.
#include "field.h"
#include "render.h"

namespace vexel::model {

static bool Inside(const Rect& r, Point p) {
  return p.x >= r.xmin && p.x <= r.xmax && p.y >= r.ymin && p.y <= r.ymax;
}

// Crossings of the ray from `p` to the right.
static i32 Crossings(const Curve& c, Point p, int depth) {
  const Rect b = CurveBounds(c);
  if (b.xmax < p.x || b.ymin > p.y || b.ymax <= p.y) return 0;
  if (Inside(b, p) && depth < 12 && PointLength({b.xmax - b.xmin, b.ymax - b.ymin}) > 4) {
    Curve first, second;
    CurveDivide(c, first, second);
    return static_cast<u16>(Crossings(first, p, depth + 1) + Crossings(second, p, depth + 1));
  }
  const i32 top = c.a1.y < c.a2.y ? c.a1.y : c.a2.y;
  const i32 bottom = c.a1.y < c.a2.y ? c.a2.y : c.a1.y;
  return top != bottom && p.y >= top && p.y < bottom;
}

bool Object::FieldAt(const STransform& t, Point p) const {
  return field && !(field->flags & Field::kNoSelect) &&
         Inside(character->bounds, Transform(Invert(t.mat), p));
}

bool Object::HitTestOne(const STransform& t, Point p) {
  if (character && character->type == kEditText) return FieldAt(t, p);
  if (!Inside(devBounds, p)) return false;
  if (edges.empty()) BuildEdges(t);
  bool crossed = false;
  for (const REdge& e : edges) {
    if (e.y1 > p.y || p.y >= e.y2) continue;
    const Curve curve{{e.x1, e.y1}, {e.cx, e.cy}, {e.x2, e.y2}, e.isLine};
    if (Crossings(curve, p, 0) == 0) continue;
    crossed = true;
    if (e.fillRule == 2) {
      if (e.color1) e.color1->visible = static_cast<int8_t>(e.color1->visible + e.dir);
    } else {
      if (e.color1) e.color1->visible ^= 1;
      if (e.fillRule == 0 && e.color2) e.color2->visible ^= 1;
    }
  }
  // An outline that isn't closed leaves marks behind a picture's last row, which
  // a test without a crossing does not see.
  if (!crossed) return false;
  bool hit = false;
  for (const auto& color : colors) {
    hit = hit || color->visible != 0;
    color->visible = 0;
  }
  return hit;
}

void Object::HitTest(Object*& found, STransform t, Point p) {
  t.mat = Concat(mat, t.mat);
  t.cxform.ConcatWith(cxform);
  if (HitTestOne(t, p)) found = this;
  for (Object* child = firstChild; child;) {
    if (child->clipDepth) {
      child = child->HitClipper(t, p);
    } else {
      child->HitTest(found, t, p);
      child = child->next;
    }
  }
}

Object* Object::HitClipper(STransform t, Point p) {
  t.mat = Concat(mat, t.mat);
  t.cxform.ConcatWith(cxform);
  if (HitTestOne(t, p)) return next;
  Object* after = next;
  while (after && after->depth <= clipDepth) after = after->next;
  return after;
}

void Object::HitButton(Object*& found, STransform t, Point p) {
  t.mat = Concat(mat, t.mat);
  t.cxform.ConcatWith(cxform);
  if (FieldAt(t, p)) {
    found = this;
    return;
  }
  if (character && character->type == kButton && ButtonAt(t, p)) found = this;
  for (Object* child = firstChild; child;) {
    if (child->clipDepth) {
      child = child->HitClipper(t, p);
    } else {
      child->HitButton(found, t, p);
      child = child->next;
    }
  }
}

Object* Stage::HitButton(Point pixel) {
  const i32 scale = antialias ? 4 : 1;
  const Point p{pixel.x * scale, pixel.y * scale};
  if (!Inside(devViewRect, p)) return nullptr;
  Object* found = nullptr;
  root.HitButton(found, STransform{camera, {}}, p);
  return found;
}

Object* Stage::HitTest(Point pixel) {
  Object* found = nullptr;
  const i32 scale = antialias ? 4 : 1;
  root.HitTest(found, STransform{camera, {}}, {pixel.x * scale, pixel.y * scale});
  return found;
}

}  // namespace vexel::model
