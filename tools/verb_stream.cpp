// `vexel stream`: plays a movie through the plug-in. The work is a program of
// its own, so that this one stays free of what a client needs.
#include <memory>

#include "options.h"
#include "verbs.h"

namespace vexel::tools {

void AddStreamVerb(CLI::App* app) {
  AddProgramVerb(app, "stream", "stream a movie through the plug-in, by a script", "vexel-stream");
}

}  // namespace vexel::tools
