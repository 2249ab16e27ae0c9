// Taking movies in, seeking through them, and reading shapes.
#include <benchmark/benchmark.h>

#include "author/writer.h"
#include "movie/shape_parser.h"
#include "support/test_player.h"

namespace vexel {
namespace {

using author::Bytes;
using author::MovieWriter;

author::ShapeBuilder Outline(int edges) {
  author::ShapeBuilder shape;
  shape.Style(shape.AddFill(author::Color{200, 40, 40}));
  uint32_t seed = 1;
  const auto random = [&](int32_t range) {
    seed = seed * 1664525 + 1013904223;
    return static_cast<int32_t>(seed >> 8) % range - range / 2;
  };
  for (int i = 0; i < edges; ++i) {
    const author::Point pen = shape.pen();
    if (i % 3 == 0) {
      shape.LineTo({pen.x + random(200), pen.y + random(200)});
    } else {
      const author::Point control = {pen.x + random(300), pen.y + random(300)};
      shape.CurveTo(control, {control.x + random(300), control.y + random(300)});
    }
  }
  return shape;
}

// Frames that move ten objects each.
Bytes LongMovie(int frames) {
  MovieWriter movie(100, 100);
  movie.DefineShape(1, Outline(20));
  for (uint16_t depth = 1; depth <= 10; ++depth) movie.Place(1, depth);
  for (int i = 0; i < frames; ++i) {
    for (uint16_t depth = 1; depth <= 10; ++depth) {
      movie.Move(depth, author::Matrix::Translate(i + depth, i * depth));
    }
    movie.FrameEnd();
  }
  movie.End();
  return movie.Finish();
}

// Bytes as they come from a stream, a kilobyte at a time.
void BM_Intake(benchmark::State& state) {
  const Bytes movie = LongMovie(10000);
  constexpr size_t kPiece = 1024;
  for (auto _ : state) {
    ScriptPlayer player;
    for (size_t at = 0; at < movie.size(); at += kPiece) {
      const size_t n = std::min(kPiece, movie.size() - at);
      player.PushDataBuf(movie.data() + at, static_cast<int32_t>(n));
    }
    benchmark::DoNotOptimize(player.numFramesComplete);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(movie.size()));
}
BENCHMARK(BM_Intake);

// Back and forth between the ends of 10,000 frames.
void BM_SeekOver10000Frames(benchmark::State& state) {
  test::TestPlayer player;
  player.Push(LongMovie(10000));
  for (auto _ : state) {
    player.display.ResetTagBudget();
    player.Seek(9999);
    player.Seek(9998);
  }
}
BENCHMARK(BM_SeekOver10000Frames)->Unit(benchmark::kMillisecond);

// What a shape costs that is read anew for each frame, an edge at a time.
void BM_ReadEdges(benchmark::State& state) {
  const author::ShapeBuilder shape = Outline(10000);
  author::BitWriter out;
  author::WriteShape(out, shape.styles(), shape.records(), true);
  const Bytes bytes = out.Take();
  test::TestPlayer player;
  const MATRIX matrix = {0x3456, 0x0123, -0x0234, 0x3111, 1234, 567};
  int64_t edges = 0;
  for (auto _ : state) {
    SShapeParser parser(&player, bytes.data(), static_cast<int32_t>(bytes.size()), 0, &matrix);
    parser.getAlpha = true;
    if (!parser.GetStyles()) break;
    CURVE edge;
    int32_t sum = 0;
    while (parser.GetEdge(&edge) != kEndOfShape) {
      sum ^= edge.anchor2.x;
      ++edges;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(edges);
}
BENCHMARK(BM_ReadEdges);

}  // namespace
}  // namespace vexel
