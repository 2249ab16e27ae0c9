// Shapes, morphs, fonts and texts from the movie writer, placed and built.
#pragma once

#include <vector>

#include "edge_fixture.h"
#include "raster/rcolor.h"
#include "support/stage_fixture.h"

namespace vexel::test {

inline constexpr author::Color kRed = {255, 0, 0, 255};
inline constexpr author::Color kBlue = {0, 0, 255, 255};

class ShapeFixture : public StageFixture {
 protected:
  ShapeFixture() { stage.antialias = false; }

  SCharacter* DefineBytes(uint16_t id, uint8_t type, author::BitWriter out) {
    SCharacter* character = Define(id, type);
    character->data = CopyBytes(out.Take());
    return character;
  }
  SCharacter* DefineShape(uint16_t id, const author::ShapeBuilder& shape) {
    author::BitWriter out;
    author::WriteShape(out, shape.styles(), shape.records(), false);
    return DefineBytes(id, charShape, out);
  }
  SCharacter* DefineMorph(uint16_t id, const author::MorphBuilder& morph) {
    author::BitWriter out;
    morph.Write(out);
    SCharacter* character = DefineBytes(id, charMorphShape, out);
    character->tagCode = 46;
    return character;
  }
  // The shape of a filled rectangle in red.
  SCharacter* DefineRect(uint16_t id, author::Rect rect) {
    author::ShapeBuilder shape;
    shape.AddFill(kRed);
    shape.Style(1).Rectangle(rect);
    return DefineShape(id, shape);
  }

  // Builds anew, one unit of the movie being one of the device.
  static std::vector<PlainEdge> Build(SObject* object, const MATRIX* mat = nullptr) {
    STransform t;
    MatrixIdentity(&t.mat);
    t.cxform.Clear();
    if (mat) t.mat = *mat;
    object->FreeCache();
    object->devBounds = {0, 0, 0, 0};
    object->BuildEdges(&t);
    return Edges(object->edges);
  }

  static std::vector<RColor*> Colors(const SObject* object) {
    std::vector<RColor*> colors;
    for (RColor* c = object->colors; c; c = c->next) colors.push_back(c);
    return colors;
  }
  // The colour of a style by its order.
  static RColor* Color(const SObject* object, uint32_t order) {
    for (RColor* c : Colors(object))
      if (c->order == order) return c;
    return nullptr;
  }
};

}  // namespace vexel::test
