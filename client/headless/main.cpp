// The program behind `vexel stream`: a client without a window.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "client/headless/stream_script.h"
#include "client/stream/delivery_options.h"
#include "tools/escapes.h"
#include "tools/installation.h"
#include "tools/parsed_option.h"
#include "tools/status.h"

namespace vexel::client {

namespace {

using tools::AddNumberOption;
using tools::Failure;
using tools::kFailed;
using tools::kMisused;

struct Options {
  std::string script;
  int64_t duration = -1;
  bool log = false;
  DeliveryOptions delivery;
  StreamSetup setup;
};

void AddOptions(CLI::App* app, Options* options) {
  StreamSetup* setup = &options->setup;
  app->add_option("MOVIE", setup->movie, "the movie's file")->required();
  app->add_option("SCRIPT", options->script, "one command a line; - reads standard input")
      ->required();
  options->delivery.AddTo(app);
  AddNumberOption(app, "--duration", "MS", 1, 0xFFFFFFFF, &options->duration,
                  "what the stream says of its length (the movie's own)");
  app->add_option("--browser", setup->browser, "command that opens pages, besides printing them")
      ->type_name("COMMAND");
  app->add_option("--plugin", setup->plugin, "the plug-in (vexel.so of this installation)")
      ->type_name("FILE");
  app->add_flag("--log", options->log, "the plug-in's reports on standard error");
  app->footer(
      "Commands of a script: clock MS, wait MS, serve MS, begin, pause, seek MS, down X Y,\n"
      "move X Y, up X Y, key NAME, type TEXT, resize WxH, menu [ID], prefs KEY=VALUE, stats,\n"
      "shot FILE.\n"
      "Example: printf 'clock 500\\nshot half.png\\nstats\\n' | vexel stream --loss 5 clock.vxf -");
}

void Play(const Options& options) {
  std::ifstream file;
  const bool fromInput = options.script == "-";
  if (!fromInput) {
    file.open(options.script);
    if (!file) throw Failure(kFailed, options.script, "cannot be opened: " + tools::SystemError());
  }
  std::istream& script = fromInput ? std::cin : file;

  StreamSetup setup = options.setup;
  setup.delivery = options.delivery.Setup();
  if (options.duration > 0) setup.durationMs = static_cast<uint32_t>(options.duration);
  if (setup.plugin.empty()) setup.plugin = tools::PluginPath();
  setup.print = [](const std::string& line) { std::printf("%s\n", tools::Escaped(line).c_str()); };
  if (options.log)
    setup.report = [](const LogReport& report) { tools::Warn("plug-in", ReportLine(report)); };

  const std::string movie = setup.movie;
  const std::string plugin = setup.plugin;
  std::unique_ptr<StreamClient> client;
  try {
    client = std::make_unique<StreamClient>(std::move(setup));
  } catch (const std::runtime_error& error) {
    throw Failure(kFailed, movie, error.what());
  }
  if (client->endsEarly()) tools::Warn(movie, "ends early; it is streamed as far as it came");
  try {
    StreamScript commands(client.get(), fromInput ? "standard input" : options.script);
    while (commands.RunNext(&script)) {
      if (fromInput) std::fflush(stdout);
    }
    if (!client->started()) client->Start();
  } catch (const std::runtime_error& error) {
    throw Failure(kFailed, plugin, error.what());
  }
  if (script.bad()) throw Failure(kFailed, options.script, "cannot be read");
}

void Main(int argc, char** argv) {
  CLI::App app("stream a movie through the plug-in, without a window", "vexel stream");
  Options options;
  AddOptions(&app, &options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) throw Failure(kMisused, "stream", error.what());
    app.exit(error);
    return;
  }
  Play(options);
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
