// `vexel render`: pictures of a movie's frames.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>

#include "frame_name.h"
#include "headless_player.h"
#include "movie_file.h"
#include "options.h"
#include "picture_out.h"
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
};

// Where standard error is a terminal, a line that tells how far it is.
class Progress {
 public:
  explicit Progress(int32_t total) : total_(total), shown_(isatty(STDERR_FILENO) != 0) {}
  ~Progress() {
    if (shown_) std::fprintf(stderr, "\r\033[K");
  }
  void Show(int32_t frame) const {
    if (shown_) std::fprintf(stderr, "\rframe %d of %d", frame + 1, total_);
  }

 private:
  int32_t total_;
  bool shown_;
};

// Redraws what is dirty after the first frame and after each step, into the
// same buffer.
void RenderAll(HeadlessPlayer* player, const RenderOptions& options, int32_t frames) {
  const FrameName name(options.out);
  const Progress progress(frames);
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
  if (PictureKindOf(options.out) == PictureKind::kNone)
    throw Failure(kMisused, options.out, "must end in .png or .raw");
  if (options.all && !FrameName(options.out).valid())
    throw Failure(kMisused, options.out, "must hold one %d or %0Nd, for --all");
  const MovieFile movie = LoadMovie(options.movie);
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
  CLI::App* verb = app->add_subcommand("render", "write pictures of a movie, without a window");
  AddMovieArgument(verb, &options->movie);
  verb->add_option("-o", options->out, "the picture, .png or .raw")->required()->type_name("OUT");
  CLI::Option* frame = AddNumberOption(verb, "--frame", "N", 0, 0x7FFFFFFF, &options->frame,
                                       "steps after the first frame (0)");
  CLI::Option* at = AddNumberOption(verb, "--at", "MS", 0, 0xFFFFFFFF, &options->atMs,
                                    "instead: play up to this time in milliseconds");
  CLI::Option* all =
      verb->add_flag("--all", options->all, "instead: every frame; OUT holds one %d or %0Nd");
  frame->excludes(at)->excludes(all);
  at->excludes(all);
  AddViewOptions(verb, &options->view);
  AddFormatOption(verb, &options->view);
  verb->footer(
      "Examples: vexel render clock.vxf --frame 12 -o clock.png\n"
      "          vexel render clock.vxf --all --size 640x480 -o 'clock-%03d.png'");
  verb->callback([=] {
    options->at = at->count() > 0;
    Render(*options);
  });
}

}  // namespace vexel::tools
