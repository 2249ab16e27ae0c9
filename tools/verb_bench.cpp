// `vexel bench`: how long a movie's frames take, step and redraw, in one
// process.
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <vector>

#include "headless_player.h"
#include "movie_file.h"
#include "options.h"
#include "parsed_option.h"
#include "status.h"
#include "verbs.h"

namespace vexel::tools {

namespace {

struct BenchOptions {
  std::string movie;
  ViewOptions view;
  int64_t frames = 200;
  bool full = false;
  bool jitter = false;
};

// A quarter of a pixel in twentieths, and how many of them make a pixel.
constexpr SCOORD kQuarterPixel = 5;
constexpr SCOORD kQuarters = 4;

// Moves all of the movie's root to 0.25, 0.5, 0.75, 0 pixels and so on, so that
// nothing can be taken from the frame before.
void Jitter(HeadlessPlayer* player, SCOORD tx, int64_t frame) {
  SObject* root = player->rootObject;
  if (!root) return;
  root->mat.tx = WrapAdd(tx, static_cast<SCOORD>((frame + 1) % kQuarters) * kQuarterPixel);
  root->Modify();
}

int64_t PeakKib() {
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

void Bench(const BenchOptions& options) {
  using Clock = std::chrono::steady_clock;
  const MovieFile movie = LoadMovie(options.movie);
  HeadlessPlayer player(movie, options.view);
  WarnIfEndsEarly(movie);
  player.Redraw();
  const SCOORD tx = player.rootObject ? player.rootObject->mat.tx : 0;

  std::vector<int64_t> times;
  int64_t pixels = 0, edges = 0;
  for (int64_t i = 0; i < options.frames; i++) {
    const Clock::time_point start = Clock::now();
    player.Step(1);
    if (options.full) player.display.InvalidateRect(&player.display.devViewRect);
    if (options.jitter) Jitter(&player, tx, i);
    player.Redraw();
    times.push_back(std::chrono::nanoseconds(Clock::now() - start).count());
    for (const SRECT& r : player.painted()) pixels += int64_t{r.xmax - r.xmin} * (r.ymax - r.ymin);
    // All objects keep their edges between paints; none are run without one.
    if (!player.painted().empty()) edges += player.display.edgeCount;
  }

  std::sort(times.begin(), times.end());
  const auto print = [](const char* key, int64_t value) {
    std::printf("%s: %lld\n", key, static_cast<long long>(value));
  };
  print("frames", options.frames);
  print("ns_per_frame", times[times.size() / 2]);
  print("ns_per_frame_min", times.front());
  print("pixels_per_frame", pixels / options.frames);
  print("edges_per_frame", edges / options.frames);
  print("peak_kib", PeakKib());
}

}  // namespace

void AddBenchVerb(CLI::App* app) {
  const auto options = std::make_shared<BenchOptions>();
  CLI::App* verb = AddVerb(app, "bench", "time a movie's frames");
  AddMovieArgument(verb, &options->movie);
  AddNumberOption(verb, "--frames", "N", 1, 10000000, &options->frames, "how many (200)");
  AddFlag(verb, "--full", &options->full, "redraw the whole view each time");
  AddFlag(verb, "--jitter", &options->jitter, "move everything by a quarter pixel each time");
  AddViewOptions(verb, &options->view);
  AddFormatOption(verb, &options->view);
  SetFooter(verb, "Example: vexel bench tiger.vxf --size 1920x1080 --full --jitter");
  SetRun(verb, [=] { Bench(*options); });
}

}  // namespace vexel::tools
