// From the bytes of shapes to edges, as an animation does it that moves by a
// fraction of a pixel each frame, so that nothing built before fits. Figures are
// edges, or strokes, a second.
#include <benchmark/benchmark.h>

#include <random>

#include "author/writer.h"
#include "movie/character.h"
#include "movie/script_player.h"
#include "stage/display_list.h"
#include "support/test_player.h"

namespace vexel {
namespace {

// A stage with one object, anti-aliased.
class Scene {
 public:
  Scene(uint8_t type, author::BitWriter out) {
    m_character = m_player.CreateCharacter(1);
    m_character->type = type;
    m_character->tagCode = type == charMorphShape ? 46 : 2;
    const author::Bytes bytes = out.Take();
    m_character->data.block = DataRef::Adopt(DataBlock::Create(static_cast<int32_t>(bytes.size())));
    m_character->data.bytes = m_character->data.block.Bytes();
    m_character->data.length = static_cast<int32_t>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), m_character->data.bytes);
    PlaceInfo info;
    MatrixIdentity(&info.mat);
    info.cxform.Clear();
    info.flags = kPlaceCharacter | kPlaceMatrix;
    info.depth = 1;
    info.character = m_character;
    m_player.display.antialias = true;
    m_object = m_player.display.PlaceObject(&m_player.display.root, &info);
    m_object->devBounds = {0, 4000, 0, 4000};
    m_object->ratio = 0x6789;
  }

  // Builds the object, scaled from twentieths to quarter-pixels and moved a bit
  // further each time; returns how many edges it has.
  int64_t Build() {
    STransform t;
    MatrixScale(kFixedOne / 5, kFixedOne / 5, &t.mat);
    m_jitter = (m_jitter + 1) & 63;
    t.mat.tx = m_jitter;
    t.mat.ty = m_jitter >> 2;
    t.cxform.Clear();
    m_object->FreeCache();
    m_object->BuildEdges(&t);
    return m_player.display.edgeCount;
  }

 private:
  test::TestPlayer m_player;
  SCharacter* m_character;
  SObject* m_object;
  int32_t m_jitter = 0;
};

void Run(benchmark::State& state, uint8_t type, author::BitWriter out, int64_t perBuild = 0) {
  Scene scene(type, std::move(out));
  int64_t items = 0;
  for (auto _ : state) {
    const int64_t edges = scene.Build();
    items += perBuild != 0 ? perBuild : edges;
  }
  state.SetItemsProcessed(items);
}

// Outlines of a few hundred pixels, drawn with a seeded pen.
constexpr int kPaths = 40;
constexpr int kSegments = 50;

author::BitWriter MakeShape(bool curves, uint16_t lineWidth, bool fill) {
  std::mt19937 random(1);
  const auto near = [&](author::Point p, int reach) {
    const auto step = [&] { return static_cast<int32_t>(random() % (2u * reach)) - reach; };
    return author::Point{p.x + step(), p.y + step()};
  };
  author::ShapeBuilder shape;
  shape.AddFill(author::Color{200, 100, 0, 255});
  if (lineWidth != 0) shape.AddLine(lineWidth, {0, 0, 0, 255});
  for (int i = 0; i < kPaths; ++i) {
    shape.Style(fill ? 1 : 0, lineWidth != 0 ? 1 : 0);
    shape.MoveTo({static_cast<int32_t>(random() % 18000), static_cast<int32_t>(random() % 18000)});
    for (int k = 0; k < kSegments; ++k) {
      const author::Point anchor = near(shape.pen(), 400);
      if (curves)
        shape.CurveTo(near(shape.pen(), 300), anchor);
      else
        shape.LineTo(anchor);
    }
    shape.Close();
  }
  author::BitWriter out;
  author::WriteShape(out, shape.styles(), shape.records(), false);
  return out;
}

void EdgesOfLines(benchmark::State& state) {
  Run(state, charShape, MakeShape(false, 0, true));
}
void EdgesOfCurves(benchmark::State& state) {
  Run(state, charShape, MakeShape(true, 0, true));
}

void EdgesOfMorph(benchmark::State& state) {
  std::mt19937 random(2);
  const auto point = [&] {
    return author::Point{static_cast<int32_t>(random() % 18000),
                         static_cast<int32_t>(random() % 18000)};
  };
  author::MorphBuilder morph;
  morph.AddFill({255, 0, 0, 255}, {0, 0, 255, 255});
  morph.Fill0(1).MoveTo(point(), point());
  for (int i = 0; i < 1000; ++i) morph.CurveTo(point(), point(), point(), point());
  author::BitWriter out;
  morph.Write(out);
  Run(state, charMorphShape, std::move(out));
}

// A segment each, whatever edges it takes.
void StrokeHairlines(benchmark::State& state) {
  Run(state, charShape, MakeShape(true, 1, false), kPaths * kSegments);
}
void StrokeThickLines(benchmark::State& state) {
  Run(state, charShape, MakeShape(false, 100, false), kPaths * kSegments);
}
void StrokeThickCurves(benchmark::State& state) {
  Run(state, charShape, MakeShape(true, 100, false), kPaths * kSegments);
}

BENCHMARK(EdgesOfLines);
BENCHMARK(EdgesOfCurves);
BENCHMARK(EdgesOfMorph);
BENCHMARK(StrokeHairlines);
BENCHMARK(StrokeThickLines);
BENCHMARK(StrokeThickCurves);

}  // namespace
}  // namespace vexel
