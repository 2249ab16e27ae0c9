// `vexel run`: plays a movie by a script.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>

#include "headless_player.h"
#include "movie_file.h"
#include "options.h"
#include "run_script.h"
#include "status.h"
#include "verbs.h"

namespace vexel::tools {

namespace {

struct RunOptions {
  std::string movie;
  std::string script;
  ViewOptions view;
};

void Run(const RunOptions& options) {
  std::ifstream file;
  const bool fromInput = options.script == "-";
  if (!fromInput) {
    file.open(options.script);
    if (!file) throw Failure(kFailed, options.script, "cannot be opened: " + SystemError());
  }
  std::istream& script = fromInput ? std::cin : file;

  const MovieFile movie = LoadMovie(options.movie);
  HeadlessPlayer player(movie, options.view);
  WarnIfEndsEarly(movie);
  player.Redraw();
  RunScript commands(&player, fromInput ? "standard input" : options.script);
  for (std::string line; std::getline(script, line);) {
    if (line.ends_with('\r')) line.pop_back();
    commands.RunLine(line);
    // Whoever feeds the lines one by one waits for their results.
    if (fromInput) std::fflush(stdout);
  }
  if (script.bad()) throw Failure(kFailed, options.script, "cannot be read");
}

}  // namespace

void AddRunVerb(CLI::App* app) {
  const auto options = std::make_shared<RunOptions>();
  CLI::App* verb = app->add_subcommand("run", "play a movie by a script, without a window");
  AddMovieArgument(verb, &options->movie);
  verb->add_option("SCRIPT", options->script, "one command a line; - reads standard input")
      ->required();
  AddViewOptions(verb, &options->view);
  verb->footer("Example: printf 'clock 500\\nshot half.png\\n' | vexel run clock.vxf -");
  verb->callback([=] { Run(*options); });
}

}  // namespace vexel::tools
