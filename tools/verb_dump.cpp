// `vexel dump`: a movie as text, by the program beside this one.
#include <memory>

#include "options.h"
#include "verbs.h"
#include "worker.h"

namespace vexel::tools {

void AddDumpVerb(CLI::App* app) {
  const auto movie = std::make_shared<std::string>();
  CLI::App* verb = AddVerb(app, "dump", "print a movie as text, which `make` turns back");
  AddNeededText(verb, "MOVIE", "", movie.get(), "the movie");
  SetFooter(verb, "Example: vexel dump boat.vxf > boat.vxt");
  SetRun(verb, [=] { RunWorker("vexel-text", {"dump", *movie}); });
}

}  // namespace vexel::tools
