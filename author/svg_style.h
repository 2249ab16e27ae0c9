// The computed style of an element: presentation attributes, style sheets, the style
// attribute and what is inherited, brought together.
#pragma once

#include <string>
#include <vector>

#include "author/outline.h"
#include "author/svg_css.h"
#include "author/svg_values.h"

namespace vexel::author {

enum class SvgPaintKind { kNone, kColor, kCurrentColor, kReference };

struct SvgPaint {
  SvgPaintKind kind = SvgPaintKind::kNone;
  SvgColor color;
  std::string reference;                        // id of a paint server
  SvgPaintKind fallback = SvgPaintKind::kNone;  // behind a reference; its colour is `color`
  bool hasFallback = false;
};

struct SvgStyle {
  // Inherited.
  SvgPaint fill{SvgPaintKind::kColor, {}, {}, SvgPaintKind::kNone, false};
  SvgPaint stroke;
  double fillOpacity = 1, strokeOpacity = 1;
  Winding fillRule = Winding::kNonZero, clipRule = Winding::kNonZero;
  double strokeWidth = 1;
  StrokeCap cap = StrokeCap::kButt;
  StrokeJoin join = StrokeJoin::kMiter;
  double miterLimit = 4;
  std::vector<double> dashes;
  double dashOffset = 0;
  SvgColor color;
  bool visible = true;
  bool strokeFirst = false;   // paint-order
  bool linearFilters = true;  // color-interpolation-filters
  double fontSize = 16;
  bool markers = false;  // some marker property refers to something

  // Not inherited.
  double opacity = 1;
  bool display = true;
  bool overflowVisible = false;
  bool fixedStroke = false;            // vector-effect: non-scaling-stroke
  bool blended = false;                // mix-blend-mode is not normal
  std::string clipPath, mask, filter;  // ids; empty for none
  SvgPaint stopColor{SvgPaintKind::kColor, {}, {}, SvgPaintKind::kNone, false};
  double stopOpacity = 1;
};

// Percentages in styles refer to `diagonal`, the root of the mean square of the
// viewport's sides.
SvgStyle ComputeStyle(const xmlNode* element, const SvgStyle& parent, const StyleSheet& sheet,
                      double diagonal);

// The id in url(#id), else empty.
std::string ReferenceIn(std::string_view value);

}  // namespace vexel::author
