// Curves made fit for the rasterizer, and strokes turned into outlines.
#pragma once

#include "stage.h"

namespace vexel::model {

// Where edges go and what they carry.
struct EdgeSink {
  EdgeList* list = nullptr;
  bool preclip = false;
  int* depth = nullptr;
  int fillRule = 2;
  RColor *color1 = nullptr, *color2 = nullptr;
};
void AddCurve(const EdgeSink& sink, const Curve& c);

struct Stroker {
  bool antialias = false, preclip = false, thick = false, started = false;
  EdgeList* edges = nullptr;
  RColor* color = nullptr;
  i32 thickness = 0;
  int depth = 0;
  Point startLeft, startPoint, startRight, prevLeft, prevPoint, prevRight;

  void Begin(i32 width, RColor* c);
  void Add(const Curve& c);
  void End();

 private:
  void ThinLine(const Curve& c);
  void ThinCurve(const Curve& c, int level);
  void ThickCurve(const Curve& c);
  void Join(Point a, Point b, Point center);
  void Edge(Point a, Point b);
  void Outline(const Curve& c);
  void Shifts(Point a, Point b, Point& left, Point& right) const;
  void Connect(Point l1, Point l2, Point r1, Point r2, Point a, Point b);
};

}  // namespace vexel::model
