// `vexel run`: plays a movie by a script.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>

#include "headless_player.h"
#include "movie_file.h"
#include "options.h"
#include "parsed_option.h"
#include "results.h"
#include "run_script.h"
#include "status.h"
#include "trace.h"
#include "verbs.h"

namespace vexel::tools {

namespace {

struct RunOptions {
  std::string movie;
  std::string script;
  ViewOptions view;
  int64_t seed = 1;
  bool json = false;
  int trace = 0;
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
  Results results(options.json);
  Trace trace(options.trace, &results);
  const PlayOptions play = {.seed = static_cast<uint32_t>(options.seed),
                            .calls = &trace,
                            .observer = trace.Observer(),
                            .actions = trace.Actions()};
  HeadlessPlayer player(movie, options.view, play);
  WarnIfEndsEarly(movie);
  player.Redraw();
  RunScript commands(&player, &results, fromInput ? "standard input" : options.script);
  while (commands.RunNext(&script)) {
    // Whoever feeds the lines one by one waits for their results.
    if (fromInput) std::fflush(stdout);
  }
  if (script.bad()) throw Failure(kFailed, options.script, "cannot be read");
}

}  // namespace

void AddRunVerb(CLI::App* app) {
  const auto options = std::make_shared<RunOptions>();
  CLI::App* verb = AddVerb(app, "run", "play a movie by a script, without a window");
  AddMovieArgument(verb, &options->movie);
  AddNeededText(verb, "SCRIPT", "", &options->script, "one command a line; - reads standard input");
  AddViewOptions(verb, &options->view);
  AddNumberOption(verb, "--seed", "N", 0, 0xFFFFFFFF, &options->seed,
                  "where random numbers start (1)");
  AddFlag(verb, "--json", &options->json, "results as JSON, one object a line");
  AddTraceOption(verb, &options->trace);
  SetFooter(verb,
            "Example: printf 'clock 500\\nshot half.png\\n' | vexel run clock.vxf -\n"
            "What a text field copies is printed as 'clip TEXT'; after 'key paste' it waits for "
            "the line 'paste TEXT'.");
  SetRun(verb, [=] { Run(*options); });
}

}  // namespace vexel::tools
