// `vexel render`: pictures of a movie's frames, and films.
#include <algorithm>
#include <memory>

#include "film_out.h"
#include "frame_name.h"
#include "headless_player.h"
#include "movie_file.h"
#include "options.h"
#include "parsed_option.h"
#include "picture_out.h"
#include "progress.h"
#include "status.h"
#include "verbs.h"

namespace vexel::tools {

namespace {

struct RenderOptions {
  std::string movie;
  std::string out;
  ViewOptions view;
  int64_t frame = 0;
  int64_t atMs = 0;
  bool at = false;
  bool all = false;
  FilmOptions film;
  int64_t toMs = 0;
};

// Redraws what is dirty after the first frame and after each step, into the
// same buffer.
void RenderAll(HeadlessPlayer* player, const RenderOptions& options, int32_t frames) {
  const FrameName name(options.out);
  const Progress progress("frame", frames, options.film.progress);
  for (int32_t i = 0; i < frames; i++) {
    progress.Show(i);
    if (i > 0) player->Step(1);
    player->Redraw();
    WritePicture(&player->bits, name.Of(i));
  }
}

// Nothing is drawn on the way, and the whole view at the end.
void RenderOne(HeadlessPlayer* player, const RenderOptions& options) {
  if (options.at) {
    player->DoPlay(static_cast<uint32_t>(options.atMs));
  } else {
    player->Step(options.frame);
  }
  player->display.InvalidateRect(&player->display.devViewRect);
  player->Redraw();
  WritePicture(&player->bits, options.out);
}

void Render(const RenderOptions& options) {
  const bool isFilm = IsFilmName(options.out);
  if (!isFilm && PictureKindOf(options.out) == PictureKind::kNone)
    throw Failure(kMisused, options.out,
                  "must end in .png or .raw, or for a film in .gif, .apng, .webm or .mp4");
  if (options.all && !FrameName(options.out).valid())
    throw Failure(kMisused, options.out, "must hold one %d or %0Nd, for --all");
  const MovieFile movie = LoadMovie(options.movie);
  if (isFilm) {
    WarnIfEndsEarly(movie);
    WriteFilm(movie, options.view, options.film, options.out);
    return;
  }
  HeadlessPlayer player(movie, options.view);
  WarnIfEndsEarly(movie);
  if (options.all) {
    RenderAll(&player, options, std::max(movie.frames, 1));
  } else {
    RenderOne(&player, options);
  }
}

}  // namespace

void AddRenderVerb(CLI::App* app) {
  const auto options = std::make_shared<RenderOptions>();
  CLI::App* verb = AddVerb(app, "render", "write pictures of a movie, or a film, without a window");
  AddMovieArgument(verb, &options->movie);
  AddNeededText(verb, "-o", "OUT", &options->out,
                "a picture, .png or .raw, or a film, .gif, .apng, .webm or .mp4");
  CLI::Option* frame = AddNumberOption(verb, "--frame", "N", 0, 0x7FFFFFFF, &options->frame,
                                       "steps after the first frame (0)");
  CLI::Option* at = AddNumberOption(verb, "--at", "MS", 0, 0xFFFFFFFF, &options->atMs,
                                    "instead: play up to this time in milliseconds");
  CLI::Option* all =
      AddFlag(verb, "--all", &options->all, "instead: every frame; OUT holds one %d or %0Nd");
  Exclude(frame, {at, all});
  Exclude(at, {all});
  CLI::Option* fps = AddParsed(
      verb, "--fps", "N", "a number from 0.01 to 1000 or a fraction",
      "pictures a second of a film: 25, 29.97 or 30000/1001 (the movie's rate)",
      [=](const std::string& text) { return ParseFrameRate(text, &options->film.rate.emplace()); });
  CLI::Option* from = AddNumberOption(verb, "--from", "MS", 0, 0xFFFFFFFF, &options->film.fromMs,
                                      "where a film begins, in milliseconds (0)");
  CLI::Option* to = AddNumberOption(verb, "--to", "MS", 0, 0xFFFFFFFF, &options->toMs,
                                    "where it ends (the end of the movie's last frame)");
  AddFlag(verb, "--progress", &options->film.progress,
          "tell how far it is, for other programs: a line a frame on standard error");
  AddViewOptions(verb, &options->view);
  AddFormatOption(verb, &options->view);
  SetFooter(verb,
            "Examples: vexel render clock.vxf --frame 12 -o clock.png\n"
            "          vexel render clock.vxf --all --size 640x480 -o 'clock-%03d.png'\n"
            "          vexel render clock.vxf --from 2000 --to 5000 -o clock.gif");
  SetRun(verb, [=] {
    options->at = IsGiven(at);
    if (IsGiven(to)) options->film.toMs = options->toMs;
    const bool isFilm = IsFilmName(options->out);
    for (const CLI::Option* option : {frame, at, all}) {
      if (isFilm && IsGiven(option))
        throw Failure(kMisused, "render", NameOf(option) + " is for pictures, not for films");
    }
    for (const CLI::Option* option : {fps, from, to}) {
      if (!isFilm && IsGiven(option))
        throw Failure(kMisused, "render", NameOf(option) + " is for films, not for pictures");
    }
    Render(*options);
  });
}

}  // namespace vexel::tools
