// `vexel import`: a movie made of a picture, by the program beside this one.
#include <memory>

#include "verbs.h"
#include "worker.h"

namespace vexel::tools {

void AddImportVerb(CLI::App* app) {
  const auto art = std::make_shared<std::string>();
  const auto out = std::make_shared<std::string>();
  CLI::App* verb = app->add_subcommand("import", "make a movie of a picture");
  verb->add_option("ART", *art, "the picture, .svg, .png or .jpg")->required();
  verb->add_option("-o", *out, "the movie")->required()->type_name("MOVIE");
  verb->footer("Example: vexel import tiger.svg -o tiger.vxf");
  verb->callback([=] { RunWorker("vexel-import", {*art, *out}); });
}

}  // namespace vexel::tools
