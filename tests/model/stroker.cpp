// Curves made fit for the rasterizer, and strokes turned into outlines.
#include "stroker.h"

namespace vexel::model {

static void MakeVertLine(Curve& c, i32 x) {
  c.a1.x = c.c.x = c.a2.x = x;
  if (c.a1.y < -32000) c.a1.y = -32000;
  if (c.a2.y > 32000) c.a2.y = 32000;
  c.c.y = (c.a1.y + c.a2.y) / 2;
  c.isLine = true;
}

static i16 Narrow(i32 v) {
  return static_cast<i16>(v < -32768 ? -32768 : v > 32767 ? 32767 : v);
}

static i32 Quotient(i64 num, i64 den) {
  if (den == 0) return num == 0 ? 0 : num > 0 ? kMax : kMin;
  const i32 q = static_cast<i32>(static_cast<u32>(static_cast<u64>(num * 65536 / den)));
  if (q == kMin && (num < 0) == (den < 0)) return kMax;
  return q;
}

void AddCurve(const EdgeSink& sink, const Curve& original) {
  auto both = [&sink](const Curve& first, const Curve& second) {
    if (++*sink.depth > 16) return;
    AddCurve(sink, first);
    AddCurve(sink, second);
    --*sink.depth;
  };
  auto halves = [&] {
    Curve first, second;
    CurveDivide(original, first, second);
    both(first, second);
  };

  Curve c = original;
  int8_t dir = 1;
  if (c.a1.y > c.a2.y) {
    std::swap(c.a1, c.a2);
    dir = -1;
  }
  if (sink.preclip) {
    const Rect b = CurveBounds(c);
    if (b.ymax < -16000 || b.ymin > 16000) return;
  }
  if (!c.isLine) {
    const i32 y1 = c.a1.y, y2 = c.a2.y, cy = c.c.y;
    if (cy < y1 && y1 - cy <= 2 && y1 - cy > 0) {
      c.c.y = y1;
    } else if (cy > y2 && cy - y2 <= 2 && cy - y2 > 0) {
      c.c.y = y2;
    } else if (cy < y1 || cy > y2) {
      const i64 a = original.a1.y, k = original.c.y, b = original.a2.y;
      Curve first, second;
      CurveDivide(original, Quotient(a - k, a - 2 * k + b), first, second);
      both(first, second);
      return;
    }
    if (y2 - y1 > 256) {
      halves();
      return;
    }
  }
  if (c.a1.y == c.a2.y) return;
  if (sink.preclip) {
    const Rect b = CurveBounds(c);
    if (b.ymax < -16000 || b.ymin > 16000) return;
    const bool inside = b.xmin >= -32000 && b.xmax <= 32000 && b.ymin >= -32000 && b.ymax <= 32000;
    if (!inside) {
      if (b.xmax < -16000) {
        MakeVertLine(c, -32000);
      } else if (b.xmin > 16000) {
        MakeVertLine(c, 32000);
      } else if (*sink.depth <= 15) {
        halves();
        return;
      }
    }
  }
  REdge e;
  e.x1 = Narrow(c.a1.x);
  e.y1 = Narrow(c.a1.y);
  e.cx = Narrow(c.c.x);
  e.cy = Narrow(c.c.y);
  e.x2 = Narrow(c.a2.x);
  e.y2 = Narrow(c.a2.y);
  if (e.y2 <= e.y1) return;
  e.isLine = CurveFlatness(c) <= 1;
  e.dir = dir;
  e.fillRule = sink.fillRule;
  e.color1 = sink.color1;
  e.color2 = sink.color2;
  sink.list->push_front(e);
}

// ---- strokes ---------------------------------------------------------------

static int Sign(i32 v) {
  return v > 0 ? 1 : v < 0 ? -1 : 0;
}

void Stroker::Begin(i32 width, RColor* c) {
  started = false;
  if (antialias) {
    if (width < 4) width = 4;
  } else if (width < 1) {
    width = 1;
  }
  thickness = width;
  thick = width >= 4;
  color = c;
}

void Stroker::Edge(Point a, Point b) {
  Outline(Line(a, b));
}

void Stroker::Outline(const Curve& c) {
  AddCurve({edges, preclip, &depth, 2, color, nullptr}, c);
}

void Stroker::Add(const Curve& curve) {
  Curve c = curve;
  if (c.a1 == c.a2 && c.a1 == c.c) return;
  if (!thick) {
    if (c.isLine) {
      ThinLine(c);
    } else {
      ThinCurve(c, 0);
    }
    return;
  }
  if (antialias && c.isLine && (thickness == 4 || thickness == 8 || thickness == 12)) {
    auto snap = [this](i32 v) { return thickness == 8 ? (v + 2) & ~3 : (v & ~3) + 2; };
    if (c.a1.x == c.a2.x && Abs(c.a1.y - c.a2.y) >= 13) {
      c.a1.x = c.a2.x = snap(c.a1.x);
    } else if (c.a1.y == c.a2.y && Abs(c.a1.x - c.a2.x) >= 13) {
      c.a1.y = c.a2.y = snap(c.a1.y);
    }
  }
  ThickCurve(c);
}

// How far the two sides of a thin line from a to b stand off.
void Stroker::Shifts(Point a, Point b, Point& left, Point& right) const {
  const i32 dy = b.y - a.y, dx = a.x - b.x;
  const bool steep = Abs(dy) > Abs(dx);
  const int s = Sign(steep ? dy : dx);
  int l = 0, r = 0;
  if (thickness == 1) {
    if (s > 0) {
      l = s;
    } else {
      r = -s;
    }
  } else if (thickness == 2) {
    l = s;
    r = -s;
  } else {
    l = s;
    r = -2 * s;
  }
  left = steep ? Point{l, 0} : Point{0, l};
  right = steep ? Point{r, 0} : Point{0, r};
}

static Point operator+(Point a, Point b) {
  return {a.x + b.x, a.y + b.y};
}
static Point operator-(Point a, Point b) {
  return {a.x - b.x, a.y - b.y};
}

void Stroker::Connect(Point l1, Point l2, Point r1, Point r2, Point a, Point b) {
  if (started) {
    if (thick) {
      Join(l1, prevLeft, prevPoint);
      Join(prevRight, r1, prevPoint);
    } else {
      Edge(l1, prevLeft);
      Edge(prevRight, r1);
    }
  } else {
    startLeft = l1;
    startPoint = a;
    startRight = r1;
    started = true;
  }
  prevLeft = l2;
  prevPoint = b;
  prevRight = r2;
}

void Stroker::ThinLine(const Curve& c) {
  Point l, r;
  Shifts(c.a1, c.a2, l, r);
  Edge(c.a2 + l, c.a1 + l);
  Edge(c.a1 + r, c.a2 + r);
  Connect(c.a1 + l, c.a2 + l, c.a1 + r, c.a2 + r, c.a1, c.a2);
}

void Stroker::ThinCurve(const Curve& c, int level) {
  if (CurveFlatness(c) > 2 && level < 16) {
    const i32 dy1 = c.c.y - c.a1.y, dx1 = c.a1.x - c.c.x;
    const i32 dy2 = c.a2.y - c.c.y, dx2 = c.c.x - c.a2.x;
    const bool whole = (Abs(dy1) > Abs(dx1)) == (Abs(dy2) > Abs(dx2)) &&
                       (dy1 == 0 || Sign(dy2) != -Sign(dy1)) &&
                       (dx1 == 0 || Sign(dx2) != -Sign(dx1));
    if (!whole) {
      Curve first, second;
      CurveDivide(c, first, second);
      ThinCurve(first, level + 1);
      ThinCurve(second, level + 1);
      return;
    }
  }
  Point l, r;
  Shifts(c.a1, c.a2, l, r);
  const Curve left{c.a1 + l, c.c + l, c.a2 + l, c.isLine},
      right{c.a1 + r, c.c + r, c.a2 + r, c.isLine};
  Outline(CurveReverse(left));
  Outline(right);
  Connect(left.a1, left.a2, right.a1, right.a2, c.a1, c.a2);
}

void Stroker::ThickCurve(const Curve& c) {
  if (CurveIsExtreme(c) && depth < 5) {
    Curve first, second;
    CurveDivide(c, first, second);
    ++depth;
    ThickCurve(first);
    ThickCurve(second);
    --depth;
    return;
  }
  const i32 h = thickness / 2;
  const Point zero{}, chord{c.a2.y - c.a1.y, c.a1.x - c.a2.x};
  Point n1{c.c.y - c.a1.y, c.a1.x - c.c.x};
  if (n1 == zero) n1 = chord;
  n1 = PointNormalize(n1, h);
  Point n2 = n1;
  if (!c.isLine) {
    n2 = {c.a2.y - c.c.y, c.c.x - c.a2.x};
    if (n2 == zero) n2 = chord;
    n2 = PointNormalize(n2, h);
  }
  const Point l1 = c.a1 + n1, l2 = c.a2 + n2, r1 = c.a1 - n1, r2 = c.a2 - n2;
  if (c.isLine) {
    Edge(l2, l1);
    Edge(r1, r2);
  } else {
    Outline(CurveReverse(CurveAdjust(c, l1, l2)));
    Outline(CurveAdjust(c, r1, r2));
  }
  Connect(l1, l2, r1, r2, c.a1, c.a2);
}

void Stroker::Join(Point a, Point b, Point center) {
  if (PointFastDistance(a, b) < 4) {
    Edge(a, b);
    return;
  }
  i32 a1 = PointAngle(a, center);
  const i32 a2 = PointAngle(b, center);
  while (a1 < a2) a1 += 0x1680000;
  const i32 d = a1 - a2;
  if (d < 0x10001 || d > 0xB40000) {
    Edge(a, b);
    return;
  }
  int n = (d + 44 * 0x10000) / (45 * 0x10000);
  if (n < 1) n = 1;
  const i32 step = -d / n;
  const i32 r = FixedDiv(thickness / 2, Cos(step / 2));
  std::vector<Point> ctrl;
  for (int i = 0; i < n; ++i) ctrl.push_back(PointPolar(r, a1 + step / 2 + i * step, center));
  Point from = a;
  for (int i = 0; i < n; ++i) {
    Point to = b;
    if (i + 1 < n) to = {(ctrl[i].x + ctrl[i + 1].x) >> 1, (ctrl[i].y + ctrl[i + 1].y) >> 1};
    Outline({from, ctrl[i], to, false});
    from = to;
  }
}

void Stroker::End() {
  if (!started) return;
  if (startPoint == prevPoint) {
    if (thick) {
      Join(startLeft, prevLeft, prevPoint);
      Join(prevRight, startRight, prevPoint);
    } else {
      Edge(startLeft, prevLeft);
      Edge(prevRight, startRight);
    }
  } else if (thick) {
    Join(startLeft, startRight, startPoint);
    Join(prevRight, prevLeft, prevPoint);
  } else {
    Edge(startLeft, startRight);
    Edge(prevRight, prevLeft);
  }
}

}  // namespace vexel::model
