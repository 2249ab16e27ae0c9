// `vexel stream`: plays a movie through the plug-in. The work is a program of
// its own, so that this one stays free of what a client needs.
#include <memory>

#include "verbs.h"
#include "worker.h"

namespace vexel::tools {

void AddStreamVerb(CLI::App* app) {
  CLI::App* verb = app->add_subcommand("stream", "stream a movie through the plug-in, by a script");
  // All words are the program's, help included.
  verb->prefix_command();
  verb->set_help_flag();
  verb->callback([verb] { RunWorker("vexel-stream", verb->remaining()); });
}

}  // namespace vexel::tools
