// Curves to simpler curves, and polygons back to curves.
#include "author/outline.h"

#include <algorithm>

namespace vexel::author {
namespace {

// More pieces than this add nothing that a movie unit could show.
constexpr int kMaxPieces = 128;

// A cubic and the best quadratic with its ends differ by this much times the third
// difference of its points.
constexpr double kCubicError = 0.048112522;  // sqrt(3) / 36

int PiecesFor(double ratio, double power) {
  if (!(ratio > 1)) return 1;
  return static_cast<int>(std::fmin(kMaxPieces, std::ceil(std::pow(ratio, power))));
}

void AddCubicAsQuads(Vec2 p0, Vec2 p1, Vec2 p2, Vec2 p3, double tolerance, VectorPath* out) {
  Vec2 third = p3 - p0 + 3 * (p1 - p2);
  int n = PiecesFor(kCubicError * Length(third) / tolerance, 1.0 / 3);
  Vec2 a = p0;
  // The cubic's value and derivative give each piece its end and its control point:
  // the crossing of the end tangents, taken at the mean of both.
  auto at = [&](double t) {
    double u = 1 - t;
    return u * u * u * p0 + 3 * u * u * t * p1 + 3 * u * t * t * p2 + t * t * t * p3;
  };
  auto slope = [&](double t) {
    double u = 1 - t;
    return 3 * u * u * (p1 - p0) + 6 * u * t * (p2 - p1) + 3 * t * t * (p3 - p2);
  };
  for (int i = 1; i <= n; i++) {
    double t0 = static_cast<double>(i - 1) / n, t1 = static_cast<double>(i) / n;
    Vec2 b = i == n ? p3 : at(t1);
    double third_step = (t1 - t0) / 3;
    Vec2 c1 = a + third_step * slope(t0), c2 = b - third_step * slope(t1);
    out->QuadTo(0.25 * (3 * (c1 + c2) - a - b), b);
    a = b;
  }
}

void AddPoint(Vec2 p, bool smooth, Polyline* line) {
  if (!line->points.empty() && line->points.back() == p) return;
  line->points.push_back(p);
  line->smooth.push_back(smooth);
}

void EndPolyline(bool close, Polyline* line, std::vector<Polyline>* out) {
  if (!line->points.empty()) {
    line->closed = close;
    if (close && line->points.size() > 1 && line->points.front() == line->points.back()) {
      line->points.pop_back();
      line->smooth.pop_back();
    }
    out->push_back(std::move(*line));
  }
  *line = {};
}

// The quadratic from `a` to `b` that comes closest to the points between, with each
// point's place on the curve guessed from the way to it.
struct QuadFit {
  Vec2 control;
  double error;  // greatest distance of a vertex or of the middle of a side
};

QuadFit FitQuad(const Polygon& ring, size_t first, size_t count) {
  auto point = [&](size_t i) { return ring[(first + i) % ring.size()]; };
  Vec2 a = point(0), b = point(count);
  std::vector<double> way(count + 1, 0);
  for (size_t i = 1; i <= count; i++) way[i] = way[i - 1] + Length(point(i) - point(i - 1));
  double total = way[count];
  Vec2 sum;
  double weight = 0;
  for (size_t i = 1; i < count; i++) {
    double t = way[i] / total, u = 1 - t, w = 2 * t * u;
    sum = sum + w * (point(i) - u * u * a - t * t * b);
    weight += w * w;
  }
  QuadFit fit{(1 / weight) * sum, 0};
  auto at = [&](double t) {
    double u = 1 - t;
    return u * u * a + 2 * u * t * fit.control + t * t * b;
  };
  auto measure = [&](Vec2 p, double t) {
    // The place was a guess: slide it once along the tangent.
    double u = 1 - t;
    Vec2 q = at(t), d = 2 * u * (fit.control - a) + 2 * t * (b - fit.control);
    double dd = Dot(d, d);
    if (dd > 0) q = at(std::clamp(t + Dot(p - q, d) / dd, 0.0, 1.0));
    fit.error = std::fmax(fit.error, Length(p - q));
  };
  for (size_t i = 1; i <= count; i++) {
    measure(point(i), way[i] / total);
    measure(Mix(point(i - 1), point(i), 0.5), (way[i - 1] + way[i]) / (2 * total));
  }
  return fit;
}

// Sides that turn by more than this (cosine of 25 degrees) meet in a corner.
constexpr double kCornerCosine = 0.906;

void FitRing(const Polygon& ring, double tolerance, VectorPath* out) {
  size_t n = ring.size();
  if (n < 3) return;
  std::vector<char> corner(n);
  size_t start = 0;
  for (size_t i = n; i-- > 0;) {
    Vec2 in = ring[i] - ring[(i + n - 1) % n], on = ring[(i + 1) % n] - ring[i];
    corner[i] = Dot(in, on) < kCornerCosine * Length(in) * Length(on);
    if (corner[i]) start = i;
  }
  out->MoveTo(ring[start]);
  for (size_t done = 0; done < n;) {
    size_t first = (start + done) % n;
    size_t reach = 1;  // sides until the next corner
    while (done + reach < n && !corner[(first + reach) % n]) reach++;
    // The longest run that one quadratic can stand for: double, then halve.
    size_t best = 1;
    QuadFit bestFit{};
    auto fits = [&](size_t count) {
      QuadFit fit = FitQuad(ring, first, count);
      if (!(fit.error <= tolerance)) return false;
      best = count;
      bestFit = fit;
      return true;
    };
    size_t low = 2, high = 3;
    while (high <= reach && fits(high)) {
      low = high;
      high *= 2;
    }
    high = std::min(high, reach + 1);
    while (low + 1 < high) {
      size_t middle = (low + high) / 2;
      if (fits(middle))
        low = middle;
      else
        high = middle;
    }
    done += best;
    if (done >= n) {
      if (best > 1) out->QuadTo(bestFit.control, ring[start]);
      break;
    }
    Vec2 end = ring[(start + done) % n];
    if (best > 1)
      out->QuadTo(bestFit.control, end);
    else
      out->LineTo(end);
  }
  out->Close();
}

}  // namespace

VectorPath CubicsToQuads(const VectorPath& path, double tolerance) {
  VectorPath out;
  out.commands.reserve(path.commands.size());
  Vec2 pen, start;
  for (const PathCommand& c : path.commands) {
    if (c.op == PathOp::kCubic)
      AddCubicAsQuads(pen, c.c1, c.c2, c.p, tolerance, &out);
    else
      out.commands.push_back(c);
    if (c.op == PathOp::kMove) start = c.p;
    pen = c.op == PathOp::kClose ? start : c.p;
  }
  return out;
}

std::vector<Polyline> Flatten(const VectorPath& path, double tolerance) {
  std::vector<Polyline> lines;
  Polyline line;
  Vec2 pen, start;
  VectorPath quads = CubicsToQuads(path, tolerance / 2);
  for (size_t k = 0; k < quads.commands.size(); k++) {
    const PathCommand& c = quads.commands[k];
    if (c.op == PathOp::kMove || c.op == PathOp::kClose) {
      bool dot = c.op == PathOp::kClose && k > 0 && quads.commands[k - 1].op == PathOp::kMove;
      if (dot) AddPoint(pen, false, &line);
      EndPolyline(c.op == PathOp::kClose, &line, &lines);
      if (c.op == PathOp::kMove) start = c.p;
      pen = start;
      continue;
    }
    if (line.points.empty()) AddPoint(pen, false, &line);
    if (c.op == PathOp::kLine) {
      // A zero-length line adds nothing; a contour left with one point is a dot.
      AddPoint(c.p, false, &line);
    } else {
      int n = PiecesFor(Length(pen - 2 * c.c1 + c.p) / (2 * tolerance), 0.5);
      for (int i = 1; i <= n; i++) {
        double t = static_cast<double>(i) / n, u = 1 - t;
        AddPoint(i == n ? c.p : u * u * pen + 2 * u * t * c.c1 + t * t * c.p, i < n, &line);
      }
      // Pieces of one cubic meet smoothly; what follows a curve as a curve with the
      // same tangent does too.
      if (k + 1 < quads.commands.size() && quads.commands[k + 1].op == PathOp::kQuad) {
        Vec2 in = c.p - c.c1, on = quads.commands[k + 1].c1 - c.p;
        if (Dot(in, on) > 0.999 * Length(in) * Length(on) && !line.smooth.empty())
          line.smooth.back() = 1;
      }
    }
    pen = c.p;
  }
  EndPolyline(false, &line, &lines);
  return lines;
}

Polygons FlattenFill(const VectorPath& path, double tolerance) {
  Polygons polygons;
  for (Polyline& line : Flatten(path, tolerance))
    if (line.points.size() > 2) polygons.push_back(std::move(line.points));
  return polygons;
}

double SignedArea(const Polygons& region) {
  double twice = 0;
  for (const Polygon& p : region)
    for (size_t i = 0; i < p.size(); i++) twice += Cross(p[i], p[(i + 1) % p.size()]);
  return twice / 2;
}

VectorPath FitCurves(const Polygons& region, double tolerance) {
  VectorPath out;
  for (const Polygon& ring : region) FitRing(ring, tolerance, &out);
  return out;
}

bool ResolveWinding(const VectorPath& path, Winding rule, double tolerance, WorkBudget* budget,
                    VectorPath* out) {
  Polygons raw = FlattenFill(path, tolerance), winding, toggling;
  *out = raw.empty() ? VectorPath() : CubicsToQuads(path, tolerance);
  if (raw.empty() || rule == Winding::kEvenOdd) return true;
  if (!UnionPolygons(raw, Winding::kNonZero, tolerance, budget, &winding) ||
      !UnionPolygons(raw, Winding::kEvenOdd, tolerance, budget, &toggling))
    return false;
  double around = 0;
  for (const Polygon& p : winding)
    for (size_t i = 0; i < p.size(); i++) around += Length(p[(i + 1) % p.size()] - p[i]);
  // The regions agree if they differ by less than a hair along their border.
  if (std::fabs(std::fabs(SignedArea(winding)) - std::fabs(SignedArea(toggling))) >
      around * tolerance / 8)
    *out = FitCurves(winding, tolerance);
  return true;
}

}  // namespace vexel::author
