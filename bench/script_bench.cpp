// The action language: loops in scripts, and what scripts ask of the stage.
// Times are per turn of the loop. A run may take 200,000 actions, so a loop of
// 10,000 turns is one block, queued again and again.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "author/writer.h"
#include "support/test_player.h"

namespace {

using vexel::author::ActionBuilder;
using vexel::test::TestPlayer;

constexpr int kTurns = 10000;

vexel::DataSpan Block(const ActionBuilder& actions) {
  const vexel::author::Bytes bytes = actions.Finish();
  vexel::DataSpan span;
  span.block = vexel::DataRef::Adopt(vexel::DataBlock::Create(static_cast<int32_t>(bytes.size())));
  span.bytes = span.block.Bytes();
  span.length = static_cast<int32_t>(bytes.size());
  memcpy(span.bytes, bytes.data(), bytes.size());
  return span;
}

// i = i + 1, and back to `start` while that is below kTurns.
ActionBuilder& CountAndLoop(ActionBuilder& block, ActionBuilder::Label start) {
  using namespace vexel;
  return block.Push("i")
      .GetVariable("i")
      .Push("1")
      .Op(kActionAdd)
      .Op(kActionSetVariable)
      .GetVariable("i")
      .Push(std::to_string(kTurns))
      .Op(kActionLess)
      .If(start);
}

void Run(TestPlayer& player, const vexel::DataSpan& block) {
  player.display.actionList.PushAction(block, &player);
  player.DoActions();
}

void RunLoop(benchmark::State& state, TestPlayer& player, const ActionBuilder& setUp,
             const ActionBuilder& loop, int turns) {
  player.loaded = true;
  const vexel::DataSpan before = Block(setUp);
  const vexel::DataSpan block = Block(loop);
  for (auto _ : state) {
    Run(player, before);
    Run(player, block);
  }
  if (player.actionsHalted) state.SkipWithError("the loop is too long");
  state.counters["turn"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * turns,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_ScriptCount(benchmark::State& state) {
  TestPlayer player(0, 0);
  ActionBuilder loop;
  const auto start = loop.NewLabel();
  loop.Bind(start);
  CountAndLoop(loop, start);
  RunLoop(state, player, ActionBuilder().SetVariable("i", "0"), loop, kTurns);
}
BENCHMARK(BM_ScriptCount);

// set(name, get(name) + 1), the name out of a variable; and the count.
void BM_ScriptVariable(benchmark::State& state) {
  using namespace vexel;
  TestPlayer player(0, 0);
  for (int i = 0; i < 20; ++i) player.SetVariable(("other" + std::to_string(i)).c_str(), "0");
  ActionBuilder loop;
  const auto start = loop.NewLabel();
  loop.Bind(start)
      .GetVariable("name")
      .GetVariable("name")
      .Op(kActionGetVariable)
      .Push("1")
      .Op(kActionAdd)
      .Op(kActionSetVariable);
  CountAndLoop(loop, start);
  RunLoop(
      state, player,
      ActionBuilder().SetVariable("i", "0").SetVariable("name", "total").SetVariable("total", "0"),
      loop, kTurns);
}
BENCHMARK(BM_ScriptVariable);

// s = s & "x" up to 64 KiB, eight of them between two counts.
void BM_ScriptAppend(benchmark::State& state) {
  using namespace vexel;
  constexpr int kAppends = 8;
  TestPlayer player(0, 0);
  ActionBuilder loop;
  const auto start = loop.NewLabel();
  loop.Bind(start);
  for (int i = 0; i < kAppends; ++i) {
    loop.Push("s").GetVariable("s").Push("x").Op(kActionConcat).Op(kActionSetVariable);
  }
  loop.Push("i").GetVariable("i").Push("1").Op(kActionAdd).Op(kActionSetVariable);
  loop.GetVariable("i").Push("2048").Op(kActionLess).If(start);
  player.loaded = true;
  const DataSpan clear = Block(ActionBuilder().SetVariable("s", "").SetVariable("i", "0"));
  const DataSpan again = Block(ActionBuilder().SetVariable("i", "0"));
  const DataSpan block = Block(loop);
  for (auto _ : state) {
    Run(player, clear);
    for (int i = 0; i < 4; ++i) {
      Run(player, again);
      Run(player, block);
    }
  }
  if (player.actionsHalted) state.SkipWithError("the loop is too long");
  state.counters["turn"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * 65536,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_ScriptAppend);

// x = x + 0.1 while x is below a tenth of the turns.
void BM_ScriptTenths(benchmark::State& state) {
  using namespace vexel;
  TestPlayer player(0, 0);
  ActionBuilder loop;
  const auto start = loop.NewLabel();
  loop.Bind(start)
      .Push("x")
      .GetVariable("x")
      .Push("0.1")
      .Op(kActionAdd)
      .Op(kActionSetVariable)
      .GetVariable("x")
      .Push(std::to_string(kTurns / 10))
      .Op(kActionLess)
      .If(start);
  RunLoop(state, player, ActionBuilder().SetVariable("x", "0"), loop, kTurns);
}
BENCHMARK(BM_ScriptTenths);

// c = the next character of a text of 64 KiB; and the count.
void BM_ScriptScan(benchmark::State& state) {
  using namespace vexel;
  TestPlayer player(0, 0);
  player.SetVariable("s", std::string(65536, 'x').c_str());
  ActionBuilder loop;
  const auto start = loop.NewLabel();
  loop.Bind(start)
      .Push("c")
      .GetVariable("s")
      .GetVariable("i")
      .Push("1")
      .Op(kActionSubstring)
      .Op(kActionSetVariable);
  CountAndLoop(loop, start);
  RunLoop(state, player, ActionBuilder().SetVariable("i", "0"), loop, kTurns);
}
BENCHMARK(BM_ScriptScan);

// Sprites a, b, c and d inside each other.
vexel::author::Bytes NestedMovie() {
  using namespace vexel::author;
  MovieWriter movie(100, 100);
  TagStream inner;
  inner.FrameEnd().End();
  movie.DefineSprite(1, inner);
  const char* names[] = {"d", "c", "b", "a"};
  for (uint16_t i = 0; i < 3; ++i) {
    TagStream sprite;
    sprite.Place({.depth = 1, .character = static_cast<uint16_t>(i + 1), .name = names[i]});
    sprite.FrameEnd().End();
    movie.DefineSprite(static_cast<uint16_t>(i + 2), sprite);
  }
  movie.Place({.depth = 1, .character = 4, .name = names[3]}).FrameEnd().End();
  return movie.Finish();
}

// x of a sprite = x of it + 1, by path; and the count.
void BM_ScriptProperty(benchmark::State& state) {
  using namespace vexel;
  TestPlayer player(0, 0);
  player.Push(NestedMovie());
  ActionBuilder loop;
  const auto start = loop.NewLabel();
  loop.Bind(start)
      .Push("a")
      .Push("0")
      .Push("a")
      .Push("0")
      .Op(kActionGetProperty)
      .Push("1")
      .Op(kActionAdd)
      .Op(kActionSetProperty);
  CountAndLoop(loop, start);
  RunLoop(state, player, ActionBuilder().SetVariable("i", "0"), loop, kTurns);
}
BENCHMARK(BM_ScriptProperty);

// A set-target four levels deep; and the count.
void BM_ScriptTarget(benchmark::State& state) {
  using namespace vexel;
  TestPlayer player(0, 0);
  player.Push(NestedMovie());
  ActionBuilder loop;
  const auto start = loop.NewLabel();
  loop.Bind(start).SetTarget("/a/b/c/d").SetTarget("");
  CountAndLoop(loop, start);
  RunLoop(state, player, ActionBuilder().SetVariable("i", "0"), loop, kTurns);
}
BENCHMARK(BM_ScriptTarget);

}  // namespace
