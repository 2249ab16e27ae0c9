// The program behind `vexel play`: a window that plays movies.
#include <CLI/CLI.hpp>
#include <stdexcept>

#include "client/desktop/application.h"
#include "client/stream/delivery_options.h"
#include "tools/installation.h"
#include "tools/status.h"

namespace vexel::client {

namespace {

using tools::Failure;
using tools::kFailed;
using tools::kMisused;

void AddOptions(CLI::App* app, PlayOptions* options, DeliveryOptions* delivery, bool* log) {
  app->add_option("MOVIE", options->movie, "a movie's file, or its http address");
  app->add_option("--plugin", options->plugin, "the plug-in (vexel.so of this installation)")
      ->type_name("FILE");
  app->add_flag("--log", *log, "the plug-in's reports on standard error");
  delivery->AddTo(app);
  app->footer(
      "Keys: space plays and stops, comma and full stop go a frame back and on, F and F11\n"
      "fill the screen, Escape leaves it, F1 shows all keys. Behind a click on the movie all\n"
      "keys but F11 are the movie's, until Escape.\n"
      "With any of the options from --mode on, movies are cut into packets, which cross a\n"
      "network that is made up, in real time; see vexel-stream(1).\n"
      "Examples: vexel play clock.vxf\n"
      "  vexel play --mode linear --loss 5 --delay 80 clock.vxf");
}

void Play(PlayOptions options, bool log) {
  if (options.plugin.empty()) options.plugin = tools::PluginPath();
  if (log) options.report = [](const LogReport& one) { tools::Warn("plug-in", ReportLine(one)); };
  try {
    RunApplication(options);
  } catch (const std::runtime_error& error) {
    throw Failure(kFailed, "play", error.what());
  }
}

void Main(int argc, char** argv) {
  CLI::App app("play a movie in a window", "vexel play");
  PlayOptions options;
  bool log = false;
  DeliveryOptions delivery;
  AddOptions(&app, &options, &delivery, &log);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) throw Failure(kMisused, "play", error.what());
    app.exit(error);
    return;
  }
  if (delivery.given()) options.delivery = delivery.Setup();
  Play(std::move(options), log);
}

}  // namespace

}  // namespace vexel::client

int main(int argc, char** argv) {
  using namespace vexel::tools;
  return RunProgram([=] {
    vexel::client::Main(argc, argv);
    return kDone;
  });
}
