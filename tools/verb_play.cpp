// `vexel play`: a movie in a window. The work is a program of its own, so that
// this one stays free of what a window needs.
#include "options.h"
#include "verbs.h"

namespace vexel::tools {

void AddPlayVerb(CLI::App* app) {
  AddProgramVerb(app, "play", "play a movie in a window", "vexel-player");
}

}  // namespace vexel::tools
