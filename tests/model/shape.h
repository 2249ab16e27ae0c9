// Shape records, and edges made of them.
#pragma once

#include <vector>

#include "stage.h"
#include "stroker.h"

namespace vexel::model {

struct ShapeParser : Parser {
  struct LineStyle {
    RColor* color = nullptr;
    i32 thickness = 0;
  };
  enum : int { kMove = 1, kFill0 = 2, kFill1 = 4, kLine = 8, kNewStyles = 16, kEnd = 128 };

  Movie* movie = nullptr;
  Raster* raster = nullptr;
  ColorList own;
  ColorList* colorList = &own;
  Matrix mat;
  ColorTransform cxform;
  i32 ratio = 0;
  i32 layer = 0, nLines = 0, nFills = 0;
  std::vector<RColor*> fillTable{nullptr};
  std::vector<LineStyle> lineTable{LineStyle{}};
  int nFillBits = 0, nLineBits = 0;
  bool getAlpha = false;
  u32 line = 0, fill0 = 0, fill1 = 0;
  Point curPt, curPtDev;

  ShapeParser(Movie* m, Bytes data, i64 at, const Matrix& matrix);
  void GetStyles();
  void GetMorphStyles();
  void ReadWidths();
  int GetEdge(Curve& out);

  RColor* Fill(u32 i) const { return i < fillTable.size() ? fillTable[i] : nullptr; }
  LineStyle LineAt(u32 i) const { return i < lineTable.size() ? lineTable[i] : LineStyle{}; }

 protected:
  RColor* NewColor(i32 order);
  void SetSolid(RColor* c, Rgbi value);
  void SetBitmap(RColor* c, int id);
  void SetupColor(RColor* c);
  void FinishRamp(RColor* c, bool translucent);
};

struct CharacterParser : ShapeParser {
  Object* object;
  bool useWinding = false;
  bool preclip = false;
  int fillRule = 0, depth = 0;
  RColor *color1 = nullptr, *color2 = nullptr;

  CharacterParser(Object* o, Bytes data, i64 at, const Matrix& matrix);
  void BuildEdges(bool getStyles, const Rect& devBounds);
  void BuildMorphEdges(const Rect& devBounds);

 private:
  void Prepare(const Rect& devBounds, Stroker& stroker);
  void MakeClipper();
};

RColor* CreateClipColor(Object* o);

}  // namespace vexel::model
