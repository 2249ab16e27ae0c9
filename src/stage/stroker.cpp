// The life of a stroke, and thin lines.
#include "stage/stroker.h"

#include "raster/edge.h"
#include "stage/curve_edges.h"

namespace vexel {

// The least width of a thick line, a pixel when anti-aliased.
static constexpr int32_t kThick = 4;
// Levels of division of a thin curve. Turns in two directions need a few; only
// coordinates that wrap never become flat.
static constexpr int32_t kMaxThinLevels = 16;

void SStroker::BeginStroke(int32_t thickness, RColor* strokeColor) {
  const int32_t least = antialias ? kThick : 1;
  started = false;
  lineThickness = thickness < least ? least : thickness;
  thick = lineThickness >= kThick;
  color = strokeColor;
  lastPoint.x = kInt32Min;
}

// Puts long lines along an axis on the centres of pixels, if an odd number of
// pixels wide, or on their edges, if even; v is the coordinate across.
static SCOORD Snapped(SCOORD v, int32_t thickness) {
  return thickness == 8 ? WrapAdd(v, 2) & ~3 : WrapAdd(v & ~3, 2);
}

static void SnapLine(CURVE* c, int32_t thickness) {
  constexpr SCOORD kLong = 13;
  if (thickness != 4 && thickness != 8 && thickness != 12) return;
  const SPOINT d = c->anchor2 - c->anchor1;
  if (d.x == 0 && WrapAbs(d.y) >= kLong)
    c->anchor1.x = c->anchor2.x = Snapped(c->anchor1.x, thickness);
  else if (d.y == 0 && WrapAbs(d.x) >= kLong)
    c->anchor1.y = c->anchor2.y = Snapped(c->anchor1.y, thickness);
}

void SStroker::AddStrokeCurve(const CURVE* c) {
  if (c->anchor1 == c->anchor2 && c->anchor1 == c->control) return;
  if (!thick) {
    if (c->isLine)
      StrokeThinLine(c);
    else
      StrokeThinCurve(c, 0);
  } else if (antialias && c->isLine) {
    CURVE snapped = *c;
    SnapLine(&snapped, lineThickness);
    StrokeThickCurve(&snapped);
  } else {
    StrokeThickCurve(c);
  }
  lastPoint = c->anchor2;
}

void SStroker::EndStroke() {
  if (!started) {
    if (lastPoint.x != kInt32Min) StrokeDot();
  } else if (startPoint == prevPoint) {
    if (thick) {
      StrokeJoin(&startLeft, &prevLeft, &prevPoint);
      StrokeJoin(&prevRight, &startRight, &prevPoint);
    } else {
      AddEdge(&startLeft, &prevLeft);
      AddEdge(&prevRight, &startRight);
    }
  } else if (thick) {
    StrokeJoin(&startLeft, &startRight, &startPoint);
    StrokeJoin(&prevRight, &prevLeft, &prevPoint);
  } else {
    AddEdge(&startLeft, &startRight);
    AddEdge(&prevRight, &prevLeft);
  }
}

// The mark of a path whose segments all vanished: a disc, or a square.
void SStroker::StrokeDot() {
  const int32_t h = lineThickness / 2;
  const SCOORD top = WrapSub(lastPoint.y, h);
  const SCOORD bottom = WrapSub(WrapAdd(lastPoint.y, lineThickness), h);
  if (thick) {
    const SPOINT up = {lastPoint.x, top};
    const SPOINT down = {lastPoint.x, bottom};
    StrokeJoin(&up, &down, &lastPoint);
    StrokeJoin(&down, &up, &lastPoint);
    return;
  }
  const SCOORD left = WrapSub(lastPoint.x, h);
  const SCOORD right = WrapSub(WrapAdd(lastPoint.x, lineThickness), h);
  const SPOINT corners[4] = {{left, top}, {left, bottom}, {right, bottom}, {right, top}};
  AddEdge(&corners[0], &corners[1]);
  AddEdge(&corners[2], &corners[3]);
}

// How far the two sides of a thin line lie from the line.
struct ThinShift {
  SPOINT left;
  SPOINT right;
};

// For a line of 1 to 3 units with chord ab. A single unit lies on a side that
// depends on the direction of travel.
static ThinShift ShiftOf(const SPOINT& a, const SPOINT& b, int32_t thickness) {
  const SCOORD dy = WrapSub(b.y, a.y);
  const SCOORD dx = WrapSub(a.x, b.x);
  const bool steep = WrapAbs(dy) > WrapAbs(dx);
  const SCOORD along = steep ? dy : dx;
  const SCOORD s = along > 0 ? 1 : along < 0 ? -1 : 0;
  SCOORD left = s;
  SCOORD right = 0;
  if (thickness == 1) {
    if (s <= 0) {
      left = 0;
      right = -s;
    }
  } else {
    right = thickness == 2 ? -s : -2 * s;
  }
  return steep ? ThinShift{{left, 0}, {right, 0}} : ThinShift{{0, left}, {0, right}};
}

// Connects the sides l1 to l2 and r1 to r2 of segment c to those before it.
void SStroker::JoinThin(const SPOINT& l1, const SPOINT& l2, const SPOINT& r1, const SPOINT& r2,
                        const CURVE* c) {
  if (started) {
    AddEdge(&l1, &prevLeft);
    AddEdge(&prevRight, &r1);
  } else {
    startLeft = l1;
    startPoint = c->anchor1;
    startRight = r1;
    started = true;
  }
  prevLeft = l2;
  prevPoint = c->anchor2;
  prevRight = r2;
}

void SStroker::StrokeThinLine(const CURVE* c) {
  const ThinShift shift = ShiftOf(c->anchor1, c->anchor2, lineThickness);
  const SPOINT l1 = c->anchor1 + shift.left;
  const SPOINT l2 = c->anchor2 + shift.left;
  const SPOINT r1 = c->anchor1 + shift.right;
  const SPOINT r2 = c->anchor2 + shift.right;
  AddEdge(&l2, &l1);
  AddEdge(&r1, &r2);
  JoinThin(l1, l2, r1, r2, c);
}

static bool OppositeSigns(SCOORD a, SCOORD b) {
  return (a > 0 && b < 0) || (a < 0 && b > 0);
}

// Whether both arms of the curve go the same way along the same dominant axis,
// so that one shift serves all of it.
static bool GoesOneWay(const CURVE* c) {
  const SCOORD dy1 = WrapSub(c->control.y, c->anchor1.y);
  const SCOORD dx1 = WrapSub(c->anchor1.x, c->control.x);
  const SCOORD dy2 = WrapSub(c->anchor2.y, c->control.y);
  const SCOORD dx2 = WrapSub(c->control.x, c->anchor2.x);
  const bool steep1 = WrapAbs(dy1) > WrapAbs(dx1);
  const bool steep2 = WrapAbs(dy2) > WrapAbs(dx2);
  return steep1 == steep2 && !OppositeSigns(dy1, dy2) && !OppositeSigns(dx1, dx2);
}

void SStroker::StrokeThinCurve(const CURVE* c, int32_t level) {
  constexpr SCOORD kFlat = 2;
  if (level < kMaxThinLevels && CurveFlatness(c) > kFlat && !GoesOneWay(c)) {
    CURVE first, second;
    CurveDivide(c, &first, &second);
    StrokeThinCurve(&first, level + 1);
    StrokeThinCurve(&second, level + 1);
    return;
  }
  const ThinShift shift = ShiftOf(c->anchor1, c->anchor2, lineThickness);
  const CURVE left = {c->anchor1 + shift.left, c->control + shift.left, c->anchor2 + shift.left,
                      c->isLine};
  const CURVE right = {c->anchor1 + shift.right, c->control + shift.right, c->anchor2 + shift.right,
                       c->isLine};
  CURVE back;
  CurveReverse(&left, &back);
  AddCurve(&back);
  AddCurve(&right);
  JoinThin(left.anchor1, left.anchor2, right.anchor1, right.anchor2, c);
}

void SStroker::AddEdge(const SPOINT* a, const SPOINT* b) {
  if (a->y == b->y) return;
  CURVE c;
  CurveSetLine(a, b, &c);
  AddCurve(&c);
}

void SStroker::AddCurve(const CURVE* c) {
  const EdgeTarget target = {display, edgeList, color, nullptr, ruleWinding, preclip};
  AddCurveEdges(c, target, &depth);
}

}  // namespace vexel
