// The reader of shapes and glyphs: style tables become colour sources, edge
// records come out one at a time as curves in device units. Nothing is kept in
// between: a shape is parsed anew whenever its edges are built.
#pragma once

#include <cstdint>

#include "geometry/curve.h"
#include "geometry/matrix.h"
#include "movie/fwd.h"
#include "movie/sparser.h"
#include "raster/color_transform.h"

namespace vexel {

// What GetEdge returns for an edge, and for the end of the shape; anything else
// is the flags of a style change.
inline constexpr int32_t kEdgeRecord = 0;
inline constexpr int32_t kEndOfShape = 128;

// Flags of a style change.
enum EdgeFlags : int32_t {
  kEdgeMove = 0x01,
  kEdgeFill0 = 0x02,
  kEdgeFill1 = 0x04,
  kEdgeLine = 0x08,
  kEdgeNewStyles = 0x10,
};

// Bits of a fill style's type byte, tested in this order; neither is a solid.
inline constexpr uint8_t kFillGradient = 0x10;
inline constexpr uint8_t kFillBitmap = 0x40;

struct LineStyle {
  RColor* color;
  int32_t thickness;  // device units
};

// Made on the stack for one pass over a character.
class SShapeParser : public SParser {
 public:
  // Over `size` bytes at `data` (not owned), from offset `pos`. `mat` maps the
  // shape to device units. Without `player` there are no colours and no
  // bitmaps.
  SShapeParser(ScriptPlayer* player, const uint8_t* data, int32_t size, int32_t pos,
               const MATRIX* mat);
  // Frees `ownColors`.
  ~SShapeParser();
  SShapeParser(const SShapeParser&) = delete;
  SShapeParser& operator=(const SShapeParser&) = delete;

  // Read the style tables at `pos`, GetStyles the index widths as well. False
  // when memory or the budget of colours is out: the colours made so far stay
  // on the list, and the caller gives the character up.
  [[nodiscard]] bool GetStyles();
  [[nodiscard]] bool GetMorphStyles();

  // Starts a bit read with the widths of fill and line indexes, which stand in
  // front of all edge records: GetStyles reads them, for glyphs and morphs the
  // caller does.
  void GetIndexWidths();

  // Completes a colour whose style has been read: inverts the matrices that
  // samplers need, and builds its cache. Nothing without `raster`.
  void SetupColor(RColor* color);

  // The next record: kEdgeRecord with the edge in `out`, kEndOfShape, or the
  // flags of a style change, which has been carried out. Data that ends early
  // reads as the end of the shape.
  int32_t GetEdge(CURVE* out);

  DisplayList* display = nullptr;  // whose pool supplies the colours
  ScriptPlayer* player;
  RColor* ownColors = nullptr;      // freed with the parser
  RColor** colorList = &ownColors;  // where new colours are linked, at the head
  MATRIX mat;                       // shape to device
  ColorTransform cxform;            // applied to every colour; starts clear
  SFIXED ratio = 0;                 // morph position, 0 to 1.0
  CRaster* raster = nullptr;        // for the caches of colours; null for none
  int32_t layer = 0;                // added to a style's index to give its colour's order
  int32_t nLines = 0;
  int32_t nFills = 0;
  // The tables in use. Index 1 is the first style; 0 stands for no style.
  RColor** fillTable = inlineFills;
  LineStyle* lineTable = inlineLines;
  int32_t nFillBits = 0;  // width of a fill index in edge records
  int32_t nLineBits = 0;
  bool getAlpha = false;    // colours have an alpha byte
  bool useWinding = false;  // a glyph: areas fill by winding, not even-odd
  int32_t line = 0;         // the styles selected, as indexes, unchecked
  int32_t fill0 = 0;
  int32_t fill1 = 0;
  SPOINT curPt = {0, 0};  // the pen in shape units
  SPOINT curPtDev;        // the pen through `mat`

 private:
  // Shapes with up to 254 styles of a kind need no heap.
  static constexpr int32_t kInlineStyles = 256;
  RColor* inlineFills[kInlineStyles];
  LineStyle inlineLines[kInlineStyles];
  int32_t fillRoom = kInlineStyles;  // entries of the tables in use
  int32_t lineRoom = kInlineStyles;

  // The next record, if it is an edge well before the data's end; else nothing
  // is read.
  bool GetEdgeThroughWindow(CURVE* out);
  void GetLineEdge(CURVE* out, const SPOINT& delta);
  void GetCurveEdge(CURVE* out, const SPOINT& control, const SPOINT& anchor);
  bool GetTables(bool morph);
  bool GetFillTable(int32_t* count);
  bool GetLineTable(int32_t* count);
  RColor* NewStyleColor(int32_t order);
  void GetFill(RColor* color);
  void GetMorphFill(RColor* color);
  void GetLine(LineStyle* style);
  void GetMorphLine(LineStyle* style);
  void GetBitmapFill(RColor* color, uint8_t type, bool morph);
  void StartGradient(RColor* color, uint8_t type);
  void AddStop(RColor* color, uint8_t position, SRGB stop, bool fades);
  void FinishGradient(RColor* color);
};

}  // namespace vexel
