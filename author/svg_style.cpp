// One table names the properties that matter here, with a function that takes the
// value in; the cascade itself is only an order of calls. A value that is no value of
// its property leaves what stood before.
#include "author/svg_style.h"

#include <libxml/tree.h>

#include <algorithm>
#include <unordered_map>

#include "author/svg_document.h"

namespace vexel::author {
namespace {

struct Context {
  const SvgStyle* parent;
  double diagonal;
  SvgStyle* style;
};

using Setter = void (*)(std::string_view value, const Context& context);

bool ParsePaint(std::string_view value, SvgPaint* out) {
  SvgPaint paint;
  if (value == "none") {
    paint.kind = SvgPaintKind::kNone;
  } else if (value == "currentColor" || value == "currentcolor") {
    paint.kind = SvgPaintKind::kCurrentColor;
  } else if (value.substr(0, 4) == "url(") {
    paint.kind = SvgPaintKind::kReference;
    paint.reference = ReferenceIn(value);
    size_t close = value.find(')');
    std::string_view rest =
        close == std::string_view::npos ? std::string_view() : Trim(value.substr(close + 1));
    SvgPaint fallback;
    if (!rest.empty() && rest.substr(0, 4) != "url(" && ParsePaint(rest, &fallback)) {
      paint.hasFallback = true;
      paint.fallback = fallback.kind;
      paint.color = fallback.color;
    }
  } else if (ParseColor(value, &paint.color)) {
    paint.kind = SvgPaintKind::kColor;
  } else {
    return false;
  }
  *out = std::move(paint);
  return true;
}

void SetOpacity(std::string_view value, double* out) {
  if (double v; ParseFraction(value, &v)) *out = std::clamp(v, 0.0, 1.0);
}

void SetLength(std::string_view value, const Context& c, double* out) {
  if (double v; ParseLength(value, {c.diagonal, c.style->fontSize}, &v)) *out = v;
}

void SetRule(std::string_view value, Winding* out) {
  if (value == "evenodd") *out = Winding::kEvenOdd;
  if (value == "nonzero") *out = Winding::kNonZero;
}

void SetDashes(std::string_view value, const Context& c) {
  if (value == "none") {
    c.style->dashes.clear();
    return;
  }
  std::vector<double> dashes;
  while (!(value = Trim(value)).empty()) {
    size_t end = value.find_first_of(", \t\n\r");
    double v;
    if (!ParseLength(value.substr(0, end), {c.diagonal, c.style->fontSize}, &v)) return;
    dashes.push_back(v);
    if (end == std::string_view::npos) break;
    value.remove_prefix(end + 1);
  }
  if (dashes.size() <= 256) c.style->dashes = std::move(dashes);
}

void SetFontSize(std::string_view value, const Context& c) {
  double size = c.parent->fontSize;
  if (ParseLength(value, {size, size}, &size) && size >= 0) c.style->fontSize = size;
}

// A property: how it takes a value, and how it takes its parent's.
struct Property {
  Setter set;
  void (*inherit)(const SvgStyle& parent, SvgStyle* style);
};

#define COPY(field) [](const SvgStyle& p, SvgStyle* s) { s->field = p.field; }

const std::unordered_map<std::string_view, Property>& Properties() {
  using V = std::string_view;
  using C = const Context&;
  static const std::unordered_map<std::string_view, Property> table = {
      {"fill", {[](V v, C c) { ParsePaint(v, &c.style->fill); }, COPY(fill)}},
      {"stroke", {[](V v, C c) { ParsePaint(v, &c.style->stroke); }, COPY(stroke)}},
      {"stop-color", {[](V v, C c) { ParsePaint(v, &c.style->stopColor); }, COPY(stopColor)}},
      {"color", {[](V v, C c) { ParseColor(v, &c.style->color); }, COPY(color)}},
      {"fill-opacity", {[](V v, C c) { SetOpacity(v, &c.style->fillOpacity); }, COPY(fillOpacity)}},
      {"stroke-opacity",
       {[](V v, C c) { SetOpacity(v, &c.style->strokeOpacity); }, COPY(strokeOpacity)}},
      {"stop-opacity", {[](V v, C c) { SetOpacity(v, &c.style->stopOpacity); }, COPY(stopOpacity)}},
      {"opacity", {[](V v, C c) { SetOpacity(v, &c.style->opacity); }, COPY(opacity)}},
      {"fill-rule", {[](V v, C c) { SetRule(v, &c.style->fillRule); }, COPY(fillRule)}},
      {"clip-rule", {[](V v, C c) { SetRule(v, &c.style->clipRule); }, COPY(clipRule)}},
      {"stroke-width",
       {[](V v, C c) {
          double width = c.style->strokeWidth;
          SetLength(v, c, &width);
          if (width >= 0) c.style->strokeWidth = width;
        },
        COPY(strokeWidth)}},
      {"stroke-linecap",
       {[](V v, C c) {
          if (v == "butt") c.style->cap = StrokeCap::kButt;
          if (v == "round") c.style->cap = StrokeCap::kRound;
          if (v == "square") c.style->cap = StrokeCap::kSquare;
        },
        COPY(cap)}},
      {"stroke-linejoin",
       {[](V v, C c) {
          if (v == "miter" || v == "miter-clip" || v == "arcs") c.style->join = StrokeJoin::kMiter;
          if (v == "round") c.style->join = StrokeJoin::kRound;
          if (v == "bevel") c.style->join = StrokeJoin::kBevel;
        },
        COPY(join)}},
      {"stroke-miterlimit",
       {[](V v, C c) {
          if (double limit; ParseFraction(v, &limit) && limit >= 1) c.style->miterLimit = limit;
        },
        COPY(miterLimit)}},
      {"stroke-dasharray", {[](V v, C c) { SetDashes(v, c); }, COPY(dashes)}},
      {"stroke-dashoffset",
       {[](V v, C c) { SetLength(v, c, &c.style->dashOffset); }, COPY(dashOffset)}},
      {"visibility", {[](V v, C c) { c.style->visible = v == "visible"; }, COPY(visible)}},
      {"display", {[](V v, C c) { c.style->display = v != "none"; }, COPY(display)}},
      {"overflow",
       {[](V v, C c) { c.style->overflowVisible = v == "visible" || v == "auto"; },
        COPY(overflowVisible)}},
      {"font-size", {SetFontSize, COPY(fontSize)}},
      {"paint-order",
       {[](V v, C c) {
          size_t stroke = v.find("stroke"), fill = v.find("fill");
          c.style->strokeFirst = stroke != V::npos && (fill == V::npos || stroke < fill);
        },
        COPY(strokeFirst)}},
      {"color-interpolation-filters",
       {[](V v, C c) { c.style->linearFilters = v != "sRGB"; }, COPY(linearFilters)}},
      {"vector-effect",
       {[](V v, C c) { c.style->fixedStroke = v == "non-scaling-stroke"; }, COPY(fixedStroke)}},
      {"mix-blend-mode", {[](V v, C c) { c.style->blended = v != "normal"; }, COPY(blended)}},
      {"clip-path", {[](V v, C c) { c.style->clipPath = ReferenceIn(v); }, COPY(clipPath)}},
      {"mask", {[](V v, C c) { c.style->mask = ReferenceIn(v); }, COPY(mask)}},
      {"filter", {[](V v, C c) { c.style->filter = ReferenceIn(v); }, COPY(filter)}},
  };
  return table;
}

#undef COPY

void Apply(std::string_view name, std::string_view value, const Context& c) {
  value = Trim(value);
  if (name.substr(0, 6) == "marker") {
    if (value != "none") c.style->markers = !ReferenceIn(value).empty();
    return;
  }
  auto property = Properties().find(name);
  if (property == Properties().end()) return;
  if (value == "inherit")
    property->second.inherit(*c.parent, c.style);
  else
    property->second.set(value, c);
}

// The inherited half of a parent's style, with the other half as it begins.
SvgStyle Inherited(const SvgStyle& parent) {
  static const SvgStyle initial;
  SvgStyle s = parent;
  s.opacity = 1;
  s.display = true;
  s.overflowVisible = false;
  s.fixedStroke = false;
  s.blended = false;
  s.clipPath.clear();
  s.mask.clear();
  s.filter.clear();
  s.stopColor = initial.stopColor;
  s.stopOpacity = 1;
  return s;
}

}  // namespace

std::string ReferenceIn(std::string_view value) {
  size_t open = value.find("url(");
  if (open == std::string_view::npos) return {};
  size_t close = value.find(')', open);
  if (close == std::string_view::npos) return {};
  std::string_view inside = Trim(value.substr(open + 4, close - open - 4));
  if (inside.size() >= 2 && (inside[0] == '"' || inside[0] == '\''))
    inside = Trim(inside.substr(1, inside.size() - 2));
  if (inside.empty() || inside[0] != '#') return {};
  return std::string(inside.substr(1));
}

SvgStyle ComputeStyle(const xmlNode* element, const SvgStyle& parent, const StyleSheet& sheet,
                      double diagonal) {
  SvgStyle style = Inherited(parent);
  std::vector<CssDeclaration> own;  // attributes, then the style attribute
  for (const xmlAttr* a = element->properties; a; a = a->next) {
    if (a->ns || !a->name) continue;
    std::string_view name(reinterpret_cast<const char*>(a->name));
    if (!Properties().contains(name) && name.substr(0, 6) != "marker") continue;
    own.push_back({std::string(name), Attribute(element, std::string(name).c_str()), false});
  }
  size_t attributes = own.size();
  for (CssDeclaration& d : ParseCssDeclarations(Attribute(element, "style")))
    own.push_back(std::move(d));

  std::vector<const CssDeclaration*> order;
  for (size_t i = 0; i < attributes; i++) order.push_back(&own[i]);
  for (const CssDeclaration* d : sheet.Match(element)) order.push_back(d);
  for (size_t i = attributes; i < own.size(); i++) order.push_back(&own[i]);
  std::stable_sort(
      order.begin(), order.end(),
      [](const CssDeclaration* a, const CssDeclaration* b) { return a->important < b->important; });
  // Lengths may be in multiples of the font's size.
  Context context{&parent, diagonal, &style};
  for (const CssDeclaration* d : order)
    if (d->property == "font-size") Apply(d->property, d->value, context);
  for (const CssDeclaration* d : order)
    if (d->property != "font-size") Apply(d->property, d->value, context);
  return style;
}

}  // namespace vexel::author
