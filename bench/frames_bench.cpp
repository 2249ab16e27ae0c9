// Frames as a viewer sees them. Whole frames: everything moves by a quarter of a
// pixel each time, so all edges and colours are built anew and all pixels drawn.
// Small changes: a sprite crosses a picture that stands still, and one dirty
// redraw follows each step; a crowd of still objects around it shows what an
// unchanged object costs.
//
// The folder that VEXEL_ART names holds the art: pictures that the importers
// read, or movies. Without it the demo movie stands alone.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "author/importers.h"
#include "author/writer.h"
#include "support/test_player.h"

namespace vexel {
namespace {

namespace fs = std::filesystem;

constexpr int kSpritePixels = 64;

author::Bytes ReadMovie(const fs::path& path) {
  if (author::ArtKindOfName(path.string()) != author::ArtKind::kUnknown) {
    return author::ImportArtFile(path.string()).movie;
  }
  std::ifstream file(path, std::ios::binary);
  return author::Bytes(std::istreambuf_iterator<char>(file), {});
}

// Moves everything by a quarter of a pixel, and by none after three quarters.
void Jitter(SObject* root, int frame) {
  root->mat.tx = (frame & 3) * author::kPixel / 4;
  root->Modify();
}

void WholeFrames(benchmark::State& state, const fs::path& path, int width, int height) {
  test::TestPlayer player(width, height);
  player.Push(ReadMovie(path));
  if (!player.rootObject) {
    state.SkipWithError("no movie");
    return;
  }
  player.display.Update();
  int frame = 0;
  for (auto _ : state) {
    player.StepThreads();
    Jitter(player.rootObject, ++frame);
    player.display.InvalidateRect(&player.display.devViewRect);
    player.display.Update();
  }
  state.counters["edges"] = player.display.edgeCount;
  state.counters["objects"] = player.display.objectCount;
}

// A disc of 64 pixels across in a layer of its own, over what layer 0 shows.
class Crossing {
 public:
  explicit Crossing(test::TestPlayer* player) : m_player(player) {
    const int32_t scale = player->display.camera.mat.a;
    m_pixel = int64_t{kFixedOne} * kDevPerPixel / (scale > 0 ? scale : 1);
    const auto size = static_cast<int32_t>(kSpritePixels * m_pixel);
    author::ShapeBuilder disc;
    disc.Style(disc.AddFill(author::Color{200, 40, 40}));
    disc.Ellipse({size / 2, size / 2}, size / 2, size / 2);
    author::MovieWriter movie(1, 1);
    movie.DefineShape(1, disc).Place(1, 1).FrameEnd().End();
    const author::Bytes bytes = movie.Finish();
    ScriptPlayer* layer = player->OpenLayer(1, false);
    layer->PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()));
    layer->DrawFrame(0, true);
    m_disc = layer->rootObject->firstChild;
    player->display.Update();
  }

  // One step along a slope through the picture, and the redraw that it needs.
  void Step() {
    ++m_step;
    m_disc->mat.tx = static_cast<int32_t>(m_step * 7 % (m_player->client.xmax - 64) * m_pixel);
    m_disc->mat.ty = static_cast<int32_t>(m_step * 3 % (m_player->client.ymax - 64) * m_pixel);
    m_disc->Modify();
    m_player->display.Update();
  }

 private:
  test::TestPlayer* m_player;
  SObject* m_disc;
  int64_t m_pixel;  // movie units of a pixel
  int64_t m_step = 0;
};

void SpriteOverPicture(benchmark::State& state, const fs::path& path) {
  test::TestPlayer player(1920, 1080);
  player.Push(ReadMovie(path));
  Crossing crossing(&player);
  for (auto _ : state) crossing.Step();
  state.counters["edges"] = player.display.edgeCount;
  state.counters["objects"] = player.display.objectCount;
}

// `state.range(0)` small boxes in rows over the whole view.
void SpriteOverCrowd(benchmark::State& state) {
  constexpr int kWidth = 1920;
  constexpr int kHeight = 1080;
  author::ShapeBuilder box;
  box.Style(box.AddFill(author::Color{40, 80, 200}));
  box.Rectangle(author::Rect::Pixels(0, 0, 4, 4));
  author::MovieWriter movie(kWidth, kHeight);
  movie.DefineShape(1, box);
  const auto count = static_cast<int>(state.range(0));
  for (int i = 0; i < count; ++i) {
    const int x = i * 12 % kWidth;
    const int y = i * 12 / kWidth * 8 % kHeight;
    movie.Place(1, static_cast<uint16_t>(i + 1),
                author::Matrix::Translate(x * author::kPixel, y * author::kPixel));
  }
  movie.FrameEnd().End();
  test::TestPlayer player(kWidth, kHeight);
  player.Push(movie.Finish());
  Crossing crossing(&player);
  for (auto _ : state) crossing.Step();
  if (count == 0) return;  // what the rest is measured against
  state.counters["per_object"] = benchmark::Counter(
      count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(SpriteOverCrowd)->Arg(0)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

std::vector<fs::path> Pictures() {
  std::vector<fs::path> paths;
  const fs::path demo = fs::path(DEMO_DIR) / "harbour.vxf";
  std::error_code error;
  if (fs::exists(demo, error)) paths.push_back(demo);
  if (const char* folder = std::getenv("VEXEL_ART")) {
    std::vector<fs::path> art(fs::directory_iterator(folder, error), {});
    std::sort(art.begin(), art.end());
    paths.insert(paths.end(), art.begin(), art.end());
  }
  return paths;
}

[[maybe_unused]] const int kRegistered = [] {
  for (const fs::path& path : Pictures()) {
    const std::string name = path.filename().string();
    benchmark::RegisterBenchmark(("WholeFrames/" + name).c_str(), [path](benchmark::State& state) {
      WholeFrames(state, path, 1280, 720);
    })->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(
        ("SpriteOverPicture/" + name).c_str(),
        [path](benchmark::State& state) { SpriteOverPicture(state, path); })
        ->Unit(benchmark::kMicrosecond);
  }
  return 0;
}();

}  // namespace
}  // namespace vexel
