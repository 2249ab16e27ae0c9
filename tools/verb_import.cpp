// `vexel import`: a movie made of a picture, by the program beside this one.
#include <memory>

#include "options.h"
#include "verbs.h"
#include "worker.h"

namespace vexel::tools {

void AddImportVerb(CLI::App* app) {
  const auto art = std::make_shared<std::string>();
  const auto out = std::make_shared<std::string>();
  CLI::App* verb = AddVerb(app, "import", "make a movie of a picture");
  AddNeededText(verb, "ART", "", art.get(), "the picture, .svg, .png or .jpg");
  AddNeededText(verb, "-o", "MOVIE", out.get(), "the movie");
  SetFooter(verb, "Example: vexel import tiger.svg -o tiger.vxf");
  SetRun(verb, [=] { RunWorker("vexel-import", {*art, *out}); });
}

}  // namespace vexel::tools
