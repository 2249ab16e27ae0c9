// What the tests of edge building share: a stage to draw from, and lists of
// edges made comparable.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <vector>

#include "geometry/curve.h"
#include "raster/edge.h"
#include "stage/display_list.h"

namespace vexel::test {

// An edge without its links.
struct PlainEdge {
  int x1, y1, cx, cy, x2, y2;
  bool isLine;
  int rule;
  int dir;
  RColor* color1;
  RColor* color2;
  bool operator==(const PlainEdge&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const PlainEdge& e) {
  return out << "(" << e.x1 << "," << e.y1 << ") (" << e.cx << "," << e.cy << ") (" << e.x2 << ","
             << e.y2 << ")" << (e.isLine ? " line" : " curve") << " rule " << e.rule << " dir "
             << e.dir << " colors " << e.color1 << " " << e.color2;
}

// The edges in the order they were added.
inline std::vector<PlainEdge> Edges(const REdge* list) {
  std::vector<PlainEdge> edges;
  for (const REdge* e = list; e; e = e->next)
    edges.push_back({e->anchor1.x, e->anchor1.y, e->control.x, e->control.y, e->anchor2.x,
                     e->anchor2.y, e->isLine, e->fillRule, e->dir, e->color1, e->color2});
  std::reverse(edges.begin(), edges.end());
  return edges;
}

inline SRECT BoundsOf(const std::vector<PlainEdge>& edges) {
  SRECT r;
  RectSetEmpty(&r);
  for (const PlainEdge& e : edges) {
    const SPOINT a = {e.x1, e.y1}, b = {e.x2, e.y2};
    RectUnionPoint(&a, &r);
    RectUnionPoint(&b, &r);
  }
  return r;
}

// The winding number at the middle of unit cell (x, y), edges taken as lines.
inline int WindingAt(const std::vector<PlainEdge>& edges, int x, int y) {
  int winding = 0;
  for (const PlainEdge& e : edges) {
    if (y < e.y1 || y >= e.y2) continue;
    const double at = e.x1 + (e.x2 - e.x1) * (y + 0.5 - e.y1) / (e.y2 - e.y1);
    if (at < x + 0.5) winding += e.dir;
  }
  return winding;
}

inline CURVE LineOf(SPOINT a, SPOINT b) {
  CURVE c;
  CurveSetLine(&a, &b, &c);
  return c;
}

inline CURVE CurveOf(SPOINT a, SPOINT control, SPOINT b) {
  return {a, control, b, false};
}

// A stage and one list of edges, which goes back to the stage's pool.
class EdgeTest : public testing::Test {
 protected:
  ~EdgeTest() override { display.FreeEdges(&list); }
  std::vector<PlainEdge> Take() {
    std::vector<PlainEdge> edges = Edges(list);
    display.FreeEdges(&list);
    return edges;
  }

  DisplayList display;
  REdge* list = nullptr;
};

}  // namespace vexel::test
