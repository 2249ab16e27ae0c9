// `vexel dump`: a movie as text, by the program beside this one.
#include <memory>

#include "verbs.h"
#include "worker.h"

namespace vexel::tools {

void AddDumpVerb(CLI::App* app) {
  const auto movie = std::make_shared<std::string>();
  CLI::App* verb = app->add_subcommand("dump", "print a movie as text, which `make` turns back");
  verb->add_option("MOVIE", *movie, "the movie")->required();
  verb->footer("Example: vexel dump boat.vxf > boat.vxt");
  verb->callback([=] { RunWorker("vexel-text", {"dump", *movie}); });
}

}  // namespace vexel::tools
