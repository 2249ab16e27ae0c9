// `vexel play`: a movie in a window. The work is a program of its own, so that
// this one stays free of what a window needs.
#include "verbs.h"
#include "worker.h"

namespace vexel::tools {

void AddPlayVerb(CLI::App* app) {
  CLI::App* verb = app->add_subcommand("play", "play a movie in a window");
  // All words are the program's, help included.
  verb->prefix_command();
  verb->set_help_flag();
  verb->callback([verb] { RunWorker("vexel-player", verb->remaining()); });
}

}  // namespace vexel::tools
