// What a pointer or a key costs on a full stage: a hit test over thousands of
// objects and of buttons, and the tab order of hundreds. Figures are events a
// second.
#include <benchmark/benchmark.h>

#include "author/writer.h"
#include "player/key_codes.h"
#include "support/test_player.h"

namespace vexel {
namespace {

constexpr int kSide = 1000;  // pixels of the stage

// So many instances of a button, or of its shape, in rows of 100, ten pixels
// apart and five pixels wide.
class Field {
 public:
  Field(int count, bool buttons) {
    author::ShapeBuilder shape;
    shape.AddFill(author::Color{255, 0, 0, 255});
    shape.Style(1).Rectangle(author::Rect::Pixels(0, 0, 5, 5));
    author::MovieWriter movie(kSide, kSide);
    movie.DefineShape(1, shape);
    movie.DefineButton2(2, false,
                        {{author::kButtonUp, 1, 1, {}, {}},
                         {author::kButtonOver, 1, 2, {}, {}},
                         {author::kButtonDown, 1, 3, {}, {}},
                         {author::kButtonHit, 1, 4, {}, {}}},
                        {});
    for (int i = 0; i < count; ++i) {
      movie.Place(buttons ? 2 : 1, static_cast<uint16_t>(10 + 5 * i),
                  author::Matrix::Translate(200 * (i % 100), 200 * (i / 100)));
    }
    movie.FrameEnd().End();
    player.Push(movie.Finish());
    player.display.CalcUpdate();
  }

  test::TestPlayer player{kSide, kSide};
};

// Points that lie on an object, one after the other.
SPOINT PointOn(int i, int count) {
  i %= count;
  return {10 * (i % 100) + 2, 10 * (i / 100) + 2};
}

void BM_HitTest(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  Field field(count, false);
  int i = 0;
  for (auto _ : state) {
    const SPOINT pt = PointOn(i += 37, count);
    benchmark::DoNotOptimize(field.player.display.HitTest(&pt));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_HitTest)->Arg(5000);

void BM_HitButton(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  Field field(count, state.range(1) != 0);
  int i = 0;
  for (auto _ : state) {
    const SPOINT pt = PointOn(i += 37, count);
    benchmark::DoNotOptimize(field.player.display.HitButton(&pt));
    field.player.display.ResetTagBudget();
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_HitButton)->ArgNames({"objects", "buttons"})->Args({5000, 0})->Args({5000, 1});

void BM_TabMap(benchmark::State& state) {
  Field field(static_cast<int>(state.range(0)), true);
  for (auto _ : state) {
    delete[] field.player.BuildButtonTabMap();
    field.player.display.ResetTagBudget();
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_TabMap)->Arg(500)->Arg(5000);

// A key as the host gives it: list, sort, leave one button and enter the next.
void BM_TabKey(benchmark::State& state) {
  Field field(static_cast<int>(state.range(0)), true);
  for (auto _ : state) field.player.HandleKeyDown(kKeyTab, 0);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_TabKey)->Arg(500);

void BM_ArrowKey(benchmark::State& state) {
  Field field(static_cast<int>(state.range(0)), true);
  field.player.HandleKeyDown(kKeyTab, 0);
  bool right = false;
  for (auto _ : state) {
    right = !right;
    field.player.HandleKeyDown(right ? kKeyRight : kKeyLeft, 0);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ArrowKey)->Arg(500);

}  // namespace
}  // namespace vexel
