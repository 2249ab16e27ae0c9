// `vexel make`: a movie made of a text, by the program beside this one.
#include <memory>

#include "options.h"
#include "verbs.h"
#include "worker.h"

namespace vexel::tools {

void AddMakeVerb(CLI::App* app) {
  const auto text = std::make_shared<std::string>();
  const auto out = std::make_shared<std::string>();
  const auto folders = std::make_shared<std::vector<std::string>>();
  CLI::App* verb = AddVerb(app, "make", "make a movie of a text");
  AddNeededText(verb, "TEXT", "", text.get(), "the text, see docs/text-form.md");
  AddNeededText(verb, "-o", "MOVIE", out.get(), "the movie");
  AddFolderOption(verb, folders.get());
  SetFooter(verb, "Example: vexel make landscape.vxt -o landscape.vxf");
  SetRun(verb, [=] {
    std::vector<std::string> arguments = {"make", *text, *out};
    arguments.insert(arguments.end(), folders->begin(), folders->end());
    RunWorker("vexel-text", arguments);
  });
}

}  // namespace vexel::tools
