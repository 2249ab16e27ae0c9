// The plug-in's own strings, lists and maps beside the standard library's, at
// the sizes that the plug-in uses them: header names, a page of a form, tables
// of a few values.
#include <benchmark/benchmark.h>

#include <deque>
#include <list>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/byte_queue.h"
#include "base/cqk_string.h"
#include "base/map_ptr_to_ptr.h"
#include "base/map_string_to_ob.h"
#include "base/simple_list.h"

namespace {

using namespace vexel;

const char kPart[] = "        <input type=\"hidden\" name=\"";
constexpr int kParts = 40;
constexpr int kItems = 100;

template <class String>
void AppendParts(benchmark::State& state) {
  for (auto _ : state) {
    String s;
    for (int i = 0; i < kParts; i++) s += kPart;
    benchmark::DoNotOptimize(s);
  }
}
BENCHMARK(AppendParts<CQKString>)->Name("base/string_append/own");
BENCHMARK(AppendParts<std::string>)->Name("base/string_append/std");

template <class String>
void AppendChars(benchmark::State& state) {
  for (auto _ : state) {
    String s;
    for (int i = 0; i < 1000; i++) s += 'x';
    benchmark::DoNotOptimize(s);
  }
}
BENCHMARK(AppendChars<CQKString>)->Name("base/string_chars/own");
BENCHMARK(AppendChars<std::string>)->Name("base/string_chars/std");

template <class String>
void CopyString(benchmark::State& state) {
  String s("Mozilla/5.0 (X11; Linux x86_64) and so on, longer than a short string");
  for (auto _ : state) {
    String copy(s);
    benchmark::DoNotOptimize(copy);
  }
}
BENCHMARK(CopyString<CQKString>)->Name("base/string_copy/own");
BENCHMARK(CopyString<std::string>)->Name("base/string_copy/std");

std::vector<std::string> Names(int count) {
  std::vector<std::string> names;
  for (int i = 0; i < count; i++) names.push_back("Property-Name-" + std::to_string(i));
  return names;
}

void LookupOwn(benchmark::State& state) {
  auto names = Names(static_cast<int>(state.range(0)));
  CQKMapStringToOb map;
  for (auto& name : names) map[name.c_str()] = &name;
  for (auto _ : state) {
    for (auto& name : names) {
      void* value = nullptr;
      benchmark::DoNotOptimize(map.Lookup(name.c_str(), value));
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(LookupOwn)->Name("base/string_map_lookup/own")->Arg(10)->Arg(100);

template <class Map>
void LookupStandard(benchmark::State& state) {
  auto names = Names(static_cast<int>(state.range(0)));
  Map map;
  for (auto& name : names) map[name] = &name;
  for (auto _ : state) {
    for (auto& name : names) benchmark::DoNotOptimize(map.find(name));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
using Hashed = std::unordered_map<std::string, void*>;
using Sorted = std::map<std::string, void*>;
BENCHMARK(LookupStandard<Hashed>)->Name("base/string_map_lookup/unordered")->Arg(10)->Arg(100);
BENCHMARK(LookupStandard<Sorted>)->Name("base/string_map_lookup/sorted")->Arg(10)->Arg(100);

void FillMapOwn(benchmark::State& state) {
  static int keys[kItems];
  for (auto _ : state) {
    CQKMapPtrToPtr map(kItems);
    for (int& key : keys) map[&key] = &key;
    benchmark::DoNotOptimize(map);
  }
}
BENCHMARK(FillMapOwn)->Name("base/pointer_map_fill/own");

void FillMapStandard(benchmark::State& state) {
  static int keys[kItems];
  for (auto _ : state) {
    std::unordered_map<void*, void*> map;
    for (int& key : keys) map[&key] = &key;
    benchmark::DoNotOptimize(map);
  }
}
BENCHMARK(FillMapStandard)->Name("base/pointer_map_fill/unordered");

void ListOwn(benchmark::State& state) {
  static int items[kItems];
  CQKSimpleList list;
  for (auto _ : state) {
    for (int& item : items) list.AddTail(&item);
    while (!list.IsEmpty()) benchmark::DoNotOptimize(list.RemoveHead());
  }
}
BENCHMARK(ListOwn)->Name("base/list/own");

void ListStandard(benchmark::State& state) {
  static int items[kItems];
  std::list<void*> list;
  for (auto _ : state) {
    for (int& item : items) list.push_back(&item);
    for (; !list.empty(); list.pop_front()) benchmark::DoNotOptimize(list.front());
  }
}
BENCHMARK(ListStandard)->Name("base/list/std");

void QueueOwn(benchmark::State& state) {
  CBigByteGrowingQueue queue(2024, 1);
  char bytes[654] = {};
  for (auto _ : state) {
    queue.EnQueue(bytes, sizeof bytes);
    benchmark::DoNotOptimize(queue.DeQueue(bytes, sizeof bytes));
  }
}
BENCHMARK(QueueOwn)->Name("base/byte_queue/own");

void QueueStandard(benchmark::State& state) {
  std::deque<char> queue;
  char bytes[654] = {};
  for (auto _ : state) {
    queue.insert(queue.end(), bytes, bytes + sizeof bytes);
    std::copy(queue.begin(), queue.end(), bytes);
    queue.clear();
    benchmark::DoNotOptimize(bytes);
  }
}
BENCHMARK(QueueStandard)->Name("base/byte_queue/deque");

}  // namespace
