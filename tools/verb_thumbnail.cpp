// `vexel thumbnail`: the small picture by which a file manager shows a movie.
// It comes from inside the movie, as many begin with nothing on the stage.
#include <algorithm>
#include <cstdint>
#include <memory>

#include "headless_player.h"
#include "movie_file.h"
#include "options.h"
#include "out_file.h"
#include "parsed_option.h"
#include "png_out.h"
#include "verbs.h"

namespace vexel::tools {

namespace {

constexpr int64_t kMaxSide = 2048;

// Steps before the picture: a third of the movie, and no more than some seconds,
// so that a folder full of movies is soon shown.
constexpr int32_t kPart = 3;
constexpr int32_t kMaxSteps = 100;

struct ThumbnailOptions {
  std::string movie;
  std::string out;
  int64_t side = 128;
};

// The movie's form, with `side` pixels at the longer side.
ViewOptions ViewOf(const MovieFile& movie, int64_t side) {
  const int64_t width = std::max(movie.width, 1);
  const int64_t height = std::max(movie.height, 1);
  const int64_t longer = std::max(width, height);
  const auto scaled = [&](int64_t length) {
    return static_cast<int32_t>(std::max<int64_t>((length * side + longer / 2) / longer, 1));
  };
  ViewOptions view;
  view.width = scaled(width);
  view.height = scaled(height);
  return view;
}

void WriteThumbnail(const ThumbnailOptions& options) {
  const MovieFile movie = LoadMovie(options.movie);
  HeadlessPlayer player(movie, ViewOf(movie, options.side));
  WarnIfEndsEarly(movie);
  player.Step(std::clamp(movie.frames / kPart, 0, kMaxSteps));
  player.display.InvalidateRect(&player.display.devViewRect);
  player.Redraw();
  OutFile out(options.out);
  WritePng(&player.bits, options.out, out.stream());
  out.Commit();
}

}  // namespace

void AddThumbnailVerb(CLI::App* app) {
  const auto options = std::make_shared<ThumbnailOptions>();
  CLI::App* verb = AddVerb(app, "thumbnail", "write a small picture for a file manager");
  AddMovieArgument(verb, &options->movie);
  AddNeededText(verb, "-o", "OUT", &options->out, "the picture, a PNG whatever its name");
  AddNumberOption(verb, "--size", "N", 1, kMaxSide, &options->side,
                  "pixels of its longer side (128)");
  SetFooter(verb, "Example: vexel thumbnail clock.vxf -o clock.png --size 256");
  SetRun(verb, [=] { WriteThumbnail(*options); });
}

}  // namespace vexel::tools
