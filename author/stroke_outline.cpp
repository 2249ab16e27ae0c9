// Strokes as regions. Each contour is walked once along either side; the walks,
// joined by caps or closed into rings, wind the same way wherever the stroke
// covers, so that a union under the winding rule gives the region.
#include <algorithm>

#include "author/outline.h"

namespace vexel::author {
namespace {

constexpr double kPi = 3.14159265358979323846;

// Dashes of one path, at most. At a thousandth of a picture each they fill it.
constexpr size_t kMaxDashes = 20000;

void AddPoint(Vec2 p, char smooth, Polyline* line) {
  if (!line->points.empty() && line->points.back() == p) return;
  line->points.push_back(p);
  line->smooth.push_back(smooth);
}

class StrokeWalker {
 public:
  StrokeWalker(const StrokeStyle& style, double tolerance, Polygons* out)
      : style_(style), half_(style.width / 2), out_(out) {
    // An arc's middle lies r (1 - cos(step / 2)) off its chord.
    double ratio = std::clamp(1 - tolerance / std::fmax(half_, tolerance), -1.0, 1.0);
    arcStep_ = std::clamp(2 * std::acos(ratio), 0.02, kPi / 4);
  }

  void Stroke(const Polyline& line) {
    size_t n = line.points.size();
    if (n == 1) {
      Dot(line.points[0]);
    } else if (line.closed && n > 2) {
      Ring(line, false);
      Ring(line, true);
    } else {
      Polygon outline;
      Side(line, false, &outline);
      Cap(line.points[n - 1], Direction(line.points[n - 2], line.points[n - 1]), &outline);
      Side(line, true, &outline);
      Cap(line.points[0], Direction(line.points[1], line.points[0]), &outline);
      out_->push_back(std::move(outline));
    }
  }

 private:
  static Vec2 Direction(Vec2 from, Vec2 to) {
    Vec2 d = to - from;
    double length = Length(d);
    return length > 0 ? (1 / length) * d : Vec2{1, 0};
  }
  Vec2 Offset(Vec2 direction) const { return {direction.y * half_, -direction.x * half_}; }

  // A contour of one point: what the caps alone cover.
  void Dot(Vec2 p) {
    if (style_.cap == StrokeCap::kButt) return;
    Polygon outline;
    Cap(p, {1, 0}, &outline);
    Cap(p, {-1, 0}, &outline);
    out_->push_back(std::move(outline));
  }

  // From the walked side to the other, around the end of a line in `direction`.
  void Cap(Vec2 p, Vec2 direction, Polygon* outline) {
    Vec2 side = Offset(direction);
    outline->push_back(p + side);
    if (style_.cap == StrokeCap::kSquare) {
      Vec2 ahead = half_ * direction;
      outline->push_back(p + side + ahead);
      outline->push_back(p - side + ahead);
    } else if (style_.cap == StrokeCap::kRound) {
      Arc(p, side, kPi, outline);
    }
    outline->push_back(p - side);
  }

  // Points strictly between `from` and its image turned by `angle` around `center`.
  void Arc(Vec2 center, Vec2 from, double angle, Polygon* outline) {
    int n = static_cast<int>(std::ceil(std::fabs(angle) / arcStep_));
    for (int i = 1; i < n; i++) {
      double a = angle * i / n, c = std::cos(a), s = std::sin(a);
      outline->push_back(center + Vec2{c * from.x - s * from.y, s * from.x + c * from.y});
    }
  }

  void Join(Vec2 p, Vec2 in, Vec2 on, bool smooth, Polygon* outline) {
    Vec2 a = Offset(in), b = Offset(on);
    double turn = std::atan2(Cross(in, on), author::Dot(in, on));
    if (turn < -kPi + 1e-9) turn = kPi;  // straight back: both sides are outer ones
    outline->push_back(p + a);
    if (turn <= 0) {
      // The inner side: through the point itself, so that no wedge is left out.
      outline->push_back(p);
    } else if (smooth || style_.join == StrokeJoin::kRound) {
      Arc(p, a, turn, outline);
    } else if (style_.join == StrokeJoin::kMiter) {
      double cosine = std::cos(turn / 2);
      if (cosine > 1e-6 && 1 / cosine <= style_.miterLimit)
        outline->push_back(p + (0.5 / (cosine * cosine)) * (a + b));
    }
    outline->push_back(p + b);
  }

  // One side of an open line, without its end points.
  void Side(const Polyline& line, bool back, Polygon* outline) {
    size_t n = line.points.size();
    auto index = [&](size_t i) { return back ? n - 1 - i : i; };
    for (size_t i = 1; i + 1 < n; i++) {
      Vec2 p = line.points[index(i)];
      Join(p, Direction(line.points[index(i - 1)], p), Direction(p, line.points[index(i + 1)]),
           line.smooth[index(i)], outline);
    }
  }

  void Ring(const Polyline& line, bool back) {
    Polygon outline;
    size_t n = line.points.size();
    auto index = [&](size_t i) { return back ? n - 1 - i % n : i % n; };
    for (size_t i = 0; i < n; i++) {
      Vec2 p = line.points[index(i)];
      Join(p, Direction(line.points[index(i + n - 1)], p), Direction(p, line.points[index(i + 1)]),
           line.smooth[index(i)], &outline);
    }
    out_->push_back(std::move(outline));
  }

  const StrokeStyle& style_;
  double half_;
  double arcStep_;
  Polygons* out_;
};

}  // namespace

bool CutDashes(const std::vector<double>& dashes, double offset, std::vector<Polyline>* lines) {
  double period = 0;
  for (double d : dashes) {
    if (!(d >= 0)) return true;  // a negative dash makes the line solid
    period += d;
  }
  if (!(period > 0)) return true;
  size_t turns = dashes.size() % 2 ? 2 : 1;  // an odd list is run through twice
  double whole = 0;
  for (const Polyline& line : *lines) {
    size_t n = line.points.size();
    for (size_t i = 1; i < n + line.closed; i++)
      whole += Length(line.points[i % n] - line.points[i - 1]);
  }
  if (whole / period * static_cast<double>(dashes.size()) > kMaxDashes) return false;
  period *= static_cast<double>(turns);
  offset = std::fmod(offset, period);
  if (offset < 0) offset += period;

  std::vector<Polyline> cut;
  for (const Polyline& line : *lines) {
    size_t n = line.points.size();
    size_t k = 0;
    double left = offset;
    while (left >= dashes[k % dashes.size()]) {
      left -= dashes[k % dashes.size()];
      k++;
    }
    left = dashes[k % dashes.size()] - left;
    bool on = k % 2 == 0;
    const bool onAtStart = on;
    size_t firstDash = cut.size();
    Polyline dash;
    if (on) AddPoint(line.points[0], 0, &dash);
    for (size_t i = 1; i < n + line.closed; i++) {
      Vec2 a = line.points[i - 1], b = line.points[i % n];
      double length = Length(b - a), gone = 0;
      while (length - gone > left) {
        gone += left;
        Vec2 p = Mix(a, b, gone / length);
        if (on) {
          AddPoint(p, 0, &dash);
          cut.push_back(std::move(dash));
        }
        dash = {};
        on = !on;
        k++;
        left = dashes[k % dashes.size()];
        if (on) AddPoint(p, 0, &dash);
      }
      left -= length - gone;
      if (on) AddPoint(b, line.smooth[i % n], &dash);
    }
    if (!on || dash.points.empty()) continue;
    if (line.closed && onAtStart && cut.size() > firstDash) {
      // The dash that runs through the start of a closed contour is one piece.
      Polyline& first = cut[firstDash];
      dash.points.insert(dash.points.end(), first.points.begin() + 1, first.points.end());
      dash.smooth.insert(dash.smooth.end(), first.smooth.begin() + 1, first.smooth.end());
      first = std::move(dash);
    } else {
      cut.push_back(std::move(dash));
    }
  }
  *lines = std::move(cut);
  return true;
}

bool StrokeRegion(const VectorPath& path, const StrokeStyle& style, double tolerance,
                  WorkBudget* budget, Polygons* out) {
  std::vector<Polyline> lines = Flatten(path, tolerance);
  if (!style.dashes.empty() && !CutDashes(style.dashes, style.dashOffset, &lines)) return false;
  Polygons outlines;
  StrokeWalker walker(style, tolerance, &outlines);
  for (const Polyline& line : lines) walker.Stroke(line);
  return UnionPolygons(outlines, Winding::kNonZero, tolerance, budget, out);
}

}  // namespace vexel::author
