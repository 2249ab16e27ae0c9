// model_agrees [FIRST COUNT [full]]
// Plays random movies with the player and with the model and compares the
// buffers byte by byte, and what lies under random points. Each movie is drawn in one pixel format
// at one quality, whole and frame by frame; `full` takes all formats and both qualities.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "nasty_movie.h"
#include "render.h"
#include "support/random_movie.h"
#include "tools/headless_player.h"

namespace {

using vexel::model::Buffer;
using vexel::model::MakeNastyMovie;
using vexel::model::NastyMovie;
using vexel::model::Options;
using vexel::model::Player;
using vexel::tools::HeadlessPlayer;
using vexel::tools::MovieFile;
using vexel::tools::ViewOptions;

const char* const kNames[] = {"pix1",   "pix2",  "pix4",  "pix8",  "pix16",
                              "pix16A", "pix24", "pix32", "pix32A"};

int failures = 0;
long hits = 0;

bool Same(const vexel::CBitBuffer& a, const Buffer& b, const std::string& what) {
  if (a.rowBytes != b.rowBytes || a.width != b.width || a.height != b.height) {
    std::printf("%s: %d x %d against %d x %d\n", what.c_str(), a.width, a.height, b.width,
                b.height);
    ++failures;
    return false;
  }
  int rows = 0, firstY = -1, firstByte = 0, lastY = 0, bytes = 0;
  for (int y = 0; y < b.height; ++y) {
    const uint8_t* p = a.baseAddr + y * a.rowBytes;
    const uint8_t* q = b.bytes.data() + y * b.rowBytes;
    bool differs = false;
    for (int i = 0; i < b.rowBytes; ++i) {
      if (p[i] == q[i]) continue;
      if (firstY < 0) {
        firstY = y;
        firstByte = i;
      }
      differs = true;
      ++bytes;
    }
    if (differs) {
      lastY = y;
      ++rows;
    }
  }
  if (rows == 0) return true;
  std::printf(
      "%s: %d bytes differ in %d rows, first at byte %d of row %d (0x%02x, model 0x%02x), last row "
      "%d\n",
      what.c_str(), bytes, rows, firstByte, firstY, a.baseAddr[firstY * a.rowBytes + firstByte],
      b.bytes[static_cast<size_t>(firstY * b.rowBytes + firstByte)], lastY);
  ++failures;
  return false;
}

// The depths down to the object, which name it in both trees.
template <class T>
std::string Chain(const T* object) {
  if (!object) return "nothing";
  std::string out;
  for (; object->parent; object = object->parent) {
    out.insert(0, '.' + std::to_string(object->depth));
  }
  return out;
}

struct Road {
  HeadlessPlayer player;
  Player model;
  Road(const MovieFile& file, const ViewOptions& view, const Options& options)
      : player(file, view), model(file.bytes, options) {}
  void Redraw() {
    player.display.InvalidateRect(&player.display.devViewRect);
    player.Redraw();
    model.Redraw();
  }
};

// Points all over the view and a little beyond.
bool SameHits(Road& road, uint64_t seed, const std::string& what) {
  uint64_t lot = seed;
  for (int i = 0; i < 40; ++i) {
    lot = lot * 6364136223846793005u + 1442695040888963407u;
    const int x =
        static_cast<int>((lot >> 40) % static_cast<uint64_t>(road.player.bits.width + 4)) - 2;
    const int y =
        static_cast<int>((lot >> 20) % static_cast<uint64_t>(road.player.bits.height + 4)) - 2;
    const vexel::SPOINT pixel = {x, y};
    const std::string is = Chain(road.player.display.HitTest(&pixel));
    const std::string model = Chain(road.model.HitTest({x, y}));
    hits += model != "nothing";
    if (is == model) continue;
    std::printf("%s: at %d, %d lies %s, model %s\n", what.c_str(), x, y, is.c_str(), model.c_str());
    ++failures;
    return false;
  }
  return true;
}

// Every fourth is one of those that the rest of the tests play, without what
// the model does not draw.
NastyMovie AnyMovie(uint64_t seed) {
  if (seed % 4 != 2) return MakeNastyMovie(seed);
  vexel::author::RandomMovieOptions options;
  options.buttons = false;
  NastyMovie movie;
  movie.bytes = vexel::author::RandomMovie(static_cast<uint32_t>(seed), options);
  vexel::model::Movie probe;
  probe.Push(movie.bytes);
  movie.width = (probe.frame.xmax - probe.frame.xmin) / 20;
  movie.height = (probe.frame.ymax - probe.frame.ymin) / 20;
  movie.frames = probe.main.numFrames;
  return movie;
}

void Compare(uint64_t seed, int format, bool high) {
  const NastyMovie movie = AnyMovie(seed);
  MovieFile file;
  file.path = "random";
  file.bytes = movie.bytes;
  file.width = movie.width;
  file.height = movie.height;
  ViewOptions view;
  view.pixelFormat = format;
  view.highQuality = high;
  // the movie's own size, or another that stretches it
  if (seed % 40 == 7) {
    // wide enough for spans of several slabs and for more than 2000 units
    view.width = 300 + static_cast<int>(seed / 40 % 500);
    view.height = 20 + static_cast<int>(seed / 7 % 90);
  } else if (seed % 3 == 1) {
    view.width = 1 + static_cast<int>(seed / 3 % 150);
    view.height = 1 + static_cast<int>(seed / 7 % 90);
  } else {
    view.width = movie.width;
    view.height = movie.height;
  }
  const Options options{view.width, view.height, high, format};
  const std::string what = "seed " + std::to_string(seed) + " flavor " +
                           std::to_string(static_cast<int>(movie.flavor)) + " " + kNames[format] +
                           (high ? " high" : " low") + " " + std::to_string(view.width) + "x" +
                           std::to_string(view.height);
  {
    Road road(file, view, options);
    const int frame = static_cast<int>(seed % 13);
    road.player.Step(frame);
    for (int i = 0; i < frame; ++i) road.model.Step();
    road.Redraw();
    if (!Same(road.player.bits, road.model.Bits(), what + " --frame " + std::to_string(frame)))
      return;
  }
  {
    Road road(file, view, options);
    const uint32_t time = static_cast<uint32_t>(seed * 37 % 2000);
    road.player.DoPlay(time);
    road.model.DoPlay(time);
    road.Redraw();
    if (!Same(road.player.bits, road.model.Bits(), what + " --at " + std::to_string(time))) return;
  }
  Road road(file, view, options);
  for (int i = 0; i < movie.frames + 2; ++i) {
    if (i > 0) {
      road.player.Step(1);
      road.model.Step();
      // Bounds and edges are still those of the last picture.
      if (!SameHits(road, seed + static_cast<uint64_t>(i), what + " stepped " + std::to_string(i)))
        return;
    }
    road.player.Redraw();
    road.model.Redraw();
    if (!Same(road.player.bits, road.model.Bits(), what + " --all " + std::to_string(i))) return;
    if (!SameHits(road, seed * 99 + static_cast<uint64_t>(i), what + " drawn " + std::to_string(i)))
      return;
  }
}

}  // namespace

int main(int argc, char** argv) {
  const uint64_t first = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1;
  const uint64_t count = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 300;
  const bool full = argc > 3 && std::strcmp(argv[3], "full") == 0;
  for (uint64_t seed = first; seed < first + count; ++seed) {
    if (full) {
      for (int format = 0; format < 9; ++format) {
        Compare(seed, format, true);
        Compare(seed, format, false);
      }
    } else {
      const int mix = static_cast<int>((seed * 2654435761u >> 7) % 24);
      Compare(seed, mix < 18 ? mix / 2 : vexel::model::pix32, mix % 2 == 0);
    }
    std::fflush(stdout);
  }
  std::printf("%d differences, %ld points hit something\n", failures, hits);
  return failures == 0 ? 0 : 1;
}
