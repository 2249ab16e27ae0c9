// `vexel make`: a movie made of a text, by the program beside this one.
#include <memory>

#include "verbs.h"
#include "worker.h"

namespace vexel::tools {

void AddMakeVerb(CLI::App* app) {
  const auto text = std::make_shared<std::string>();
  const auto out = std::make_shared<std::string>();
  const auto folders = std::make_shared<std::vector<std::string>>();
  CLI::App* verb = app->add_subcommand("make", "make a movie of a text");
  verb->add_option("TEXT", *text, "the text, see docs/text-form.md")->required();
  verb->add_option("-o", *out, "the movie")->required()->type_name("MOVIE");
  verb->add_option("-I", *folders, "look for files here too, after the text's own folder")
      ->type_name("FOLDER")
      ->allow_extra_args(false);
  verb->footer("Example: vexel make landscape.vxt -o landscape.vxf");
  verb->callback([=] {
    std::vector<std::string> arguments = {"make", *text, *out};
    arguments.insert(arguments.end(), folders->begin(), folders->end());
    RunWorker("vexel-text", arguments);
  });
}

}  // namespace vexel::tools
