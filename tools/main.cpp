// The command `vexel`: looks at movies, plays them without a window, and makes
// them. Results go to standard output, messages to standard error.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <new>

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
  int status = kDone;
  try {
    status = Run(argc, argv);
  } catch (const Failure& failure) {
    std::fflush(stdout);
    if (*failure.what() != 0) std::fprintf(stderr, "%s\n", failure.what());
    status = failure.status();
  } catch (const std::bad_alloc&) {
    Warn("memory", "not enough");
    status = kFailed;
  }
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
    Warn("standard output", "cannot be written: " + SystemError());
    if (status == kDone) status = kFailed;
  }
  return status;
}
