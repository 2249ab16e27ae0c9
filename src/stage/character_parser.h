// Turns shapes, morph shapes and glyphs into the edges of a placed object. A
// shape is a walk around areas: the parser follows it, edge by edge, with the
// colours of both sides in hand.
#pragma once

#include "movie/shape_parser.h"
#include "stage/curve_edges.h"

namespace vexel {

// One pass over one character: construct, set what the base needs (`getAlpha`,
// `cxform`, `ratio`, `useWinding`) and `object`, then one of the two calls.
class SCharacterParser : public SShapeParser {
 public:
  using SShapeParser::SShapeParser;

  // Adds the edges of a shape to `object->edges`, and its colours to
  // `object->colors` if it has style tables (getStyles). A glyph has none: set
  // its colour with UseGlyphColor first. `devBounds`, the object's bounds in
  // device units, tells whether coordinates may pass 16 bits; null: they don't.
  void BuildEdges(bool getStyles, const SRECT* devBounds);
  // The same for a morph shape at `ratio`.
  void BuildMorphEdges(const SRECT* devBounds);

  // Makes this the parser of a glyph in `color` (not owned, may be null):
  // areas fill by winding, and fill 1 is that colour.
  void UseGlyphColor(RColor* color);

  // Adds a curve in device units in the present colours.
  void AddCurve(const CURVE* curve);

  bool preclip = false;      // the bounds leave the safe range: test each curve
  uint8_t fillRule = 0;      // FillRule of the next edges
  RColor* color1 = nullptr;  // the colours on the two sides of the next edges
  RColor* color2 = nullptr;
  int32_t depth = 0;          // divisions under way in AddCurve
  SObject* object = nullptr;  // receives the edges, not owned
  SRECT* extent = nullptr;    // grows by the box of each curve; null for none

 private:
  void SetUp(SStroker* stroker, const SRECT* devBounds);
  void ClearColors();
  void MakeClipper();
  // The fill of an index; null for none, and for one beyond the table.
  RColor* Fill(int32_t index) const;
  uint8_t RuleOfColors() const;
  void SelectFills();
  void SelectMorphFills();
  // Ends the stroke, and begins that of the selected line. A morph draws no
  // line without a width.
  void SelectLine(SStroker* stroker, bool wantWidth);
  void AddEdge(const CURVE* curve, SStroker* stroker);

  bool filling = false;
  bool stroking = false;
};

}  // namespace vexel
