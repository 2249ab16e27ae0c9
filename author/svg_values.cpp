// The grammars come as templates that hand events to a context; the contexts
// below turn events into our own types and keep what is not finite out.
#include "author/svg_values.h"

#include <svgpp/factory/integer_color.hpp>
#include <svgpp/parser/color.hpp>
#include <svgpp/parser/path_data.hpp>
#include <svgpp/parser/transform_list.hpp>
#include <svgpp/policy/error.hpp>
#include <svgpp/policy/path.hpp>
#include <svgpp/policy/value_events.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace vexel::author {
namespace {

// Coordinates beyond this are no picture; keeping them out keeps every later
// product finite.
constexpr double kHuge = 1e9;

bool Sane(double v) {
  return std::isfinite(v) && std::fabs(v) < kHuge;
}

using Absolute = svgpp::tag::coordinate::absolute;

// An arc from point to point as cubics of at most an eighth of a turn. Radii that do not
// reach are scaled up; an arc without radius is a line.
void AddArc(Vec2 from, Vec2 to, double rx, double ry, double degrees, bool large, bool sweep,
            VectorPath* out) {
  constexpr double kPi = 3.14159265358979323846;
  if (from == to) return;
  if (!(rx > 0) || !(ry > 0)) {
    out->LineTo(to);
    return;
  }
  double angle = std::fmod(degrees, 360) * kPi / 180, c = std::cos(angle), s = std::sin(angle);
  // The ends, with the ellipse turned upright and shrunk to the unit circle.
  auto toUnit = [&](Vec2 p) { return Vec2{(c * p.x + s * p.y) / rx, (c * p.y - s * p.x) / ry}; };
  auto fromUnit = [&](Vec2 p) {
    return Vec2{c * rx * p.x - s * ry * p.y, s * rx * p.x + c * ry * p.y};
  };
  Vec2 p = toUnit(from), q = toUnit(to), half = 0.5 * (q - p);
  double reach = Length(half);
  if (!(reach > 1e-12) || !std::isfinite(reach)) {
    out->LineTo(to);
    return;
  }
  double radius = std::fmax(1.0, reach);
  double height = std::sqrt(std::fmax(0.0, radius * radius - reach * reach));
  if (large == sweep) height = -height;
  Vec2 center = 0.5 * (p + q) + (height / reach) * Vec2{-half.y, half.x};
  double a0 = std::atan2(p.y - center.y, p.x - center.x);
  double span = std::atan2(q.y - center.y, q.x - center.x) - a0;
  if (sweep && span < 0) span += 2 * kPi;
  if (!sweep && span > 0) span -= 2 * kPi;
  int n = static_cast<int>(std::ceil(std::fabs(span) / (kPi / 4) - 1e-9));
  n = std::clamp(n, 1, 9);
  double step = span / n, k = 4.0 / 3 * std::tan(step / 4);
  for (int i = 0; i < n; i++) {
    double u = a0 + step * i, v = u + step;
    Vec2 pu{std::cos(u), std::sin(u)}, pv{std::cos(v), std::sin(v)};
    Vec2 c1 = center + radius * (pu + k * Vec2{-pu.y, pu.x});
    Vec2 c2 = center + radius * (pv - k * Vec2{-pv.y, pv.x});
    out->CubicTo(fromUnit(c1), fromUnit(c2), i + 1 == n ? to : fromUnit(center + radius * pv));
  }
}

// Turns a grammar's failure into its result.
struct QuietErrors {
  template <class... Args>
  static bool parse_failed(const Args&...) {
    return false;
  }
};

struct PathContext {
  VectorPath* out = nullptr;
  Vec2 pen, start;
  bool ended = false;  // an insane coordinate ends the path, as malformed data does

  template <class... Points>
  bool Take(const Points&... p) {
    ended = ended || !((Sane(p.x) && Sane(p.y)) && ...);
    return !ended;
  }
  void path_move_to(double x, double y, Absolute) {
    if (!Take(Vec2{x, y})) return;
    out->MoveTo({x, y});
    pen = start = {x, y};
  }
  void path_line_to(double x, double y, Absolute) {
    if (!Take(Vec2{x, y})) return;
    out->LineTo({x, y});
    pen = {x, y};
  }
  void path_quadratic_bezier_to(double x1, double y1, double x, double y, Absolute) {
    if (!Take(Vec2{x1, y1}, Vec2{x, y})) return;
    out->QuadTo({x1, y1}, {x, y});
    pen = {x, y};
  }
  void path_cubic_bezier_to(double x1, double y1, double x2, double y2, double x, double y,
                            Absolute) {
    if (!Take(Vec2{x1, y1}, Vec2{x2, y2}, Vec2{x, y})) return;
    out->CubicTo({x1, y1}, {x2, y2}, {x, y});
    pen = {x, y};
  }
  void path_elliptical_arc_to(double rx, double ry, double degrees, bool large, bool sweep,
                              double x, double y, Absolute) {
    if (!Take(Vec2{rx, ry}, Vec2{x, y}) || !Sane(degrees)) return;
    AddArc(pen, {x, y}, rx, ry, degrees, large, sweep, out);
    pen = {x, y};
  }
  void path_close_subpath() {
    if (!ended) out->Close();
    pen = start;
  }
  void path_exit() {}
};

// The library's `minimal` form, with quadratics left as they are, and arcs too: its own
// cubics for them never end when the arc has no length.
struct PathForm : svgpp::policy::path::minimal {
  static const bool quadratic_bezier_as_cubic = false;
  static const bool arc_as_cubic_bezier = false;
};

struct TransformContext {
  Affine* out;
  template <class Matrix>
  void transform_matrix(const Matrix& m) {
    *out = {m[0], m[1], m[2], m[3], m[4], m[5]};
  }
};

struct ColorContext {
  unsigned value = 0;  // 0xRRGGBB
  template <class Value>
  void set(svgpp::tag::attribute::color, Value v) {
    value = static_cast<unsigned>(v);
  }
  template <class Source, class Value>
  void set(svgpp::tag::attribute::color, Source, Value v) {
    value = static_cast<unsigned>(v);
  }
};

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char p, char q) {
           return (p >= 'A' && p <= 'Z' ? p + 32 : p) == (q >= 'A' && q <= 'Z' ? q + 32 : q);
         });
}

bool TakeNumber(std::string_view* text, double* out) {
  std::string_view s = *text;
  if (!s.empty() && s[0] == '+') s.remove_prefix(1);
  double value = 0;
  auto [end, error] = std::from_chars(s.data(), s.data() + s.size(), value);
  if (error != std::errc() || !std::isfinite(value)) return false;
  // "1em" is a number and a unit; from_chars leaves the "em" by itself.
  text->remove_prefix(static_cast<size_t>(end - text->data()));
  *out = value;
  return true;
}

uint8_t Channel(double v) {
  return static_cast<uint8_t>(std::clamp(v, 0.0, 255.0) + 0.5);
}

bool ParseHexColor(std::string_view hex, SvgColor* out) {
  int digit[8];
  if (hex.size() > 8) return false;
  for (size_t i = 0; i < hex.size(); i++) {
    char c = hex[i];
    if (c >= '0' && c <= '9')
      digit[i] = c - '0';
    else if ((c | 32) >= 'a' && (c | 32) <= 'f')
      digit[i] = (c | 32) - 'a' + 10;
    else
      return false;
  }
  if (hex.size() == 4) {
    *out = {static_cast<uint8_t>(digit[0] * 17), static_cast<uint8_t>(digit[1] * 17),
            static_cast<uint8_t>(digit[2] * 17), digit[3] / 15.0};
    return true;
  }
  if (hex.size() != 8) return false;
  *out = {static_cast<uint8_t>(digit[0] * 16 + digit[1]),
          static_cast<uint8_t>(digit[2] * 16 + digit[3]),
          static_cast<uint8_t>(digit[4] * 16 + digit[5]), (digit[6] * 16 + digit[7]) / 255.0};
  return true;
}

double HueChannel(double p, double q, double t) {
  t -= std::floor(t);
  if (t < 1.0 / 6) return p + (q - p) * 6 * t;
  if (t < 0.5) return q;
  if (t < 2.0 / 3) return p + (q - p) * (2.0 / 3 - t) * 6;
  return p;
}

// The arguments of a colour function, and which of them are percentages.
bool ParseColorFunction(std::string_view name, std::string_view args, SvgColor* out) {
  double v[4] = {0, 0, 0, 1};
  bool percent[4] = {};
  int n = 0;
  while (n < 4) {
    while (!args.empty() && (args[0] == ' ' || args[0] == ',' || args[0] == '/' ||
                             args[0] == '\t' || args[0] == '\n'))
      args.remove_prefix(1);
    if (args.empty()) break;
    if (!TakeNumber(&args, &v[n])) return false;
    if (!args.empty() && args[0] == '%') {
      percent[n] = true;
      args.remove_prefix(1);
    } else if (args.substr(0, 3) == "deg") {
      args.remove_prefix(3);
    }
    n++;
  }
  if (n < 3) return false;
  double alpha = std::clamp(percent[3] ? v[3] / 100 : v[3], 0.0, 1.0);
  if (name == "rgb" || name == "rgba") {
    for (int i = 0; i < 3; i++)
      if (percent[i]) v[i] = v[i] * 255 / 100;
    *out = {Channel(v[0]), Channel(v[1]), Channel(v[2]), alpha};
    return true;
  }
  if (name != "hsl" && name != "hsla") return false;
  double h = v[0] / 360, s = std::clamp(v[1] / 100, 0.0, 1.0), l = std::clamp(v[2] / 100, 0.0, 1.0);
  double q = l < 0.5 ? l * (1 + s) : l + s - l * s, p = 2 * l - q;
  *out = {Channel(255 * HueChannel(p, q, h + 1.0 / 3)), Channel(255 * HueChannel(p, q, h)),
          Channel(255 * HueChannel(p, q, h - 1.0 / 3)), alpha};
  return true;
}

}  // namespace

std::string_view Trim(std::string_view s) {
  auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f'; };
  while (!s.empty() && blank(s.front())) s.remove_prefix(1);
  while (!s.empty() && blank(s.back())) s.remove_suffix(1);
  return s;
}

bool ParsePathData(std::string_view text, VectorPath* out) {
  using namespace svgpp;
  PathContext context;
  context.out = out;
  bool ok =
      value_parser<tag::type::path_data, path_policy<PathForm>, error_policy<QuietErrors>>::parse(
          tag::attribute::d(), context, Trim(text), tag::source::attribute());
  return ok && !context.ended;
}

std::vector<Vec2> ParsePoints(std::string_view text) {
  std::vector<double> v = ParseNumbers(text);
  std::vector<Vec2> points;
  for (size_t i = 0; i + 1 < v.size() && Sane(v[i]) && Sane(v[i + 1]); i += 2)
    points.push_back({v[i], v[i + 1]});
  return points;
}

bool ParseTransform(std::string_view text, Affine* out) {
  using namespace svgpp;
  Affine m;
  TransformContext context{&m};
  bool ok = value_parser<tag::type::transform_list, error_policy<QuietErrors>>::parse(
      tag::attribute::transform(), context, Trim(text), tag::source::attribute());
  if (!ok || !m.IsFinite()) return false;
  *out = m;
  return true;
}

bool ParseColor(std::string_view text, SvgColor* out) {
  using namespace svgpp;
  text = Trim(text);
  if (EqualsIgnoringCase(text, "transparent")) {
    *out = {0, 0, 0, 0};
    return true;
  }
  if (EqualsIgnoringCase(text, "rebeccapurple")) {  // younger than the library's list
    *out = {102, 51, 153, 1};
    return true;
  }
  if (text.size() > 1 && text[0] == '#' && (text.size() == 5 || text.size() == 9))
    return ParseHexColor(text.substr(1), out);
  if (size_t open = text.find('('); open != std::string_view::npos) {
    size_t close = text.find(')', open);
    if (close == std::string_view::npos) return false;
    return ParseColorFunction(Trim(text.substr(0, open)), text.substr(open + 1, close - open - 1),
                              out);
  }
  ColorContext context;
  if (!value_parser<tag::type::color, error_policy<QuietErrors>>::parse(
          tag::attribute::color(), context, text, tag::source::css()))
    return false;
  *out = {static_cast<uint8_t>(context.value >> 16), static_cast<uint8_t>(context.value >> 8),
          static_cast<uint8_t>(context.value), 1};
  return true;
}

bool ParseLength(std::string_view text, const LengthBase& base, double* out) {
  static constexpr struct {
    const char* unit;
    double pixels;
  } kUnits[] = {{"", 1},           {"px", 1},         {"pt", 96.0 / 72}, {"pc", 16},
                {"mm", 96 / 25.4}, {"cm", 96 / 2.54}, {"in", 96}};
  text = Trim(text);
  double value;
  if (!TakeNumber(&text, &value)) return false;
  if (text == "%")
    value *= base.percent / 100;
  else if (text == "em" || text == "rem")
    value *= base.fontSize;
  else if (text == "ex")
    value *= base.fontSize / 2;
  else {
    auto unit = std::find_if(std::begin(kUnits), std::end(kUnits),
                             [&](const auto& u) { return text == u.unit; });
    if (unit == std::end(kUnits)) return false;
    value *= unit->pixels;
  }
  if (!Sane(value)) return false;
  *out = value;
  return true;
}

std::vector<double> ParseNumbers(std::string_view text) {
  std::vector<double> numbers;
  for (;;) {
    while (!text.empty() && (text[0] == ' ' || text[0] == ',' || text[0] == '\t' ||
                             text[0] == '\n' || text[0] == '\r'))
      text.remove_prefix(1);
    double v;
    if (text.empty() || !TakeNumber(&text, &v)) return numbers;
    numbers.push_back(v);
  }
}

bool ParseFraction(std::string_view text, double* out) {
  text = Trim(text);
  double value;
  if (!TakeNumber(&text, &value)) return false;
  if (text == "%")
    value /= 100;
  else if (!text.empty())
    return false;
  *out = value;
  return true;
}

}  // namespace vexel::author
