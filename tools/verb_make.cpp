// `vexel make`: a movie made of a text, by the program beside this one.
#include <memory>

#include "verbs.h"
#include "worker.h"

namespace vexel::tools {

void AddMakeVerb(CLI::App* app) {
  const auto text = std::make_shared<std::string>();
  const auto out = std::make_shared<std::string>();
  CLI::App* verb = app->add_subcommand("make", "make a movie of a text");
  verb->add_option("TEXT", *text, "the text, see docs/text-form.md")->required();
  verb->add_option("-o", *out, "the movie")->required()->type_name("MOVIE");
  verb->footer("Example: vexel make landscape.vxt -o landscape.vxf");
  verb->callback([=] { RunWorker("vexel-text", {"make", *text, *out}); });
}

}  // namespace vexel::tools
