// The command `vexel`: looks at movies, plays them without a window, and makes
// them. Results go to standard output, messages to standard error.
#include <CLI/CLI.hpp>

#include "status.h"
#include "verbs.h"

namespace vexel::tools {

namespace {

int Run(int argc, char** argv) {
  CLI::App app("vexel, for vector movies", "vexel");
  app.require_subcommand(1);
  app.footer("'vexel VERB --help' tells more of a verb.");
  AddInfoVerb(&app);
  AddCheckVerb(&app);
  AddRenderVerb(&app);
  AddThumbnailVerb(&app);
  AddImportVerb(&app);
  AddFontVerb(&app);
  AddDumpVerb(&app);
  AddMakeVerb(&app);
  AddWatchVerb(&app);
  AddRunVerb(&app);
  AddStreamVerb(&app);
  AddPlayVerb(&app);
  AddBenchVerb(&app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      app.exit(error);
      return kDone;
    }
    const auto verbs = app.get_subcommands();
    if (!verbs.empty()) throw Failure(kMisused, verbs.front()->get_name(), error.what());
    if (argc > 1) throw Failure(kMisused, argv[1], "is no verb; 'vexel --help' lists them");
    throw Failure(kMisused, "the verb is missing", "'vexel --help' lists them");
  }
  return kDone;
}

}  // namespace

}  // namespace vexel::tools

int main(int argc, char** argv) {
  using namespace vexel::tools;
  return RunProgram([=] { return Run(argc, argv); });
}
