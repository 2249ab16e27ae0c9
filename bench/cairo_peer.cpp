// Draws a picture with cairo as `vexel bench --full --jitter` draws its movie: the same
// imported paths and paints, the same fit into 1280x720, the same way of a quarter pixel
// a frame, with cairo's antialiasing of 4x4 samples. Paths and patterns are made once;
// each frame clears to white and draws all.
//
//   cairo_peer ART [FRAMES]
#include <cairo/cairo.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "author/importers.h"
#include "author/scene.h"
#include "author/scene_raster.h"

int main(int argc, char** argv) {
  using namespace vexel::author;
  using Clock = std::chrono::steady_clock;
  constexpr int kWidth = 1280, kHeight = 720;
  if (argc < 2) {
    std::fprintf(stderr, "usage: cairo_peer ART [FRAMES]\n");
    return 2;
  }
  const std::string art = argv[1];
  const int frames = argc > 2 ? std::max(1, std::atoi(argv[2])) : 200;
  std::vector<uint8_t> bytes;
  std::string error;
  Scene scene;
  if (ReadArtFile(art, &bytes, &error)) {
    const ImportResult result = ImportScene(ArtKindOfName(art), bytes.data(), bytes.size(), &scene);
    error = result.error;
  }
  if (!error.empty()) {
    std::fprintf(stderr, "cairo_peer: %s: %s\n", art.c_str(), error.c_str());
    return 1;
  }

  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kWidth, kHeight);
  cairo_t* cairo = cairo_create(surface);
  cairo_set_antialias(cairo, CAIRO_ANTIALIAS_FAST);
  const double scale = std::min(kWidth / scene.width, kHeight / scene.height);
  std::vector<long long> times;
  {
    const CairoScene drawing(scene.items, scene.bitmaps);
    for (int frame = 0; frame < frames; frame++) {
      const auto start = Clock::now();
      cairo_identity_matrix(cairo);
      cairo_set_source_rgb(cairo, 1, 1, 1);
      cairo_paint(cairo);
      cairo_translate(cairo, (kWidth - scene.width * scale) / 2 + 0.25 * ((frame + 1) % 4),
                      (kHeight - scene.height * scale) / 2);
      cairo_scale(cairo, scale, scale);
      drawing.Draw(cairo);
      cairo_surface_flush(surface);
      times.push_back(std::chrono::nanoseconds(Clock::now() - start).count());
    }
  }
  const bool good = cairo_status(cairo) == CAIRO_STATUS_SUCCESS;
  cairo_destroy(cairo);
  cairo_surface_destroy(surface);
  if (!good) {
    std::fprintf(stderr, "cairo_peer: %s: cannot be drawn\n", art.c_str());
    return 1;
  }
  std::sort(times.begin(), times.end());
  std::printf("frames: %d\nns_per_frame: %lld\nns_per_frame_min: %lld\n", frames,
              times[times.size() / 2], times[0]);
  return 0;
}
